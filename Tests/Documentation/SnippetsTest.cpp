// Compiles and runs the snippets of the header comments, and checks that none is missing here: each line of code in a
// header's comment stands in this file, but for white space and a comment behind it. "..." in a snippet stands for any
// code. The example of the README is compiled by itself (see CMakeLists.txt beside this file), and lines that must not
// compile are tests of their own.
#include "Vorn/Vorn.h"

#include "Vorn/Private/Surprise.h"
#include "Vorn/Text/FormatFmt.h"

#include "Support/Report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

std::string withoutSpace(std::string text) {
    text.erase(std::remove_if(text.begin(), text.end(), [](unsigned char c) { return std::isspace(c); }), text.end());
    return text;
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    std::stringstream content;
    content << file.rdbuf();
    return content.str();
}

// A line of code in a comment is indented by five columns and ends with a semicolon or, in the tables of forms, is a
// call of a macro or of a template with its description behind it.
bool isCode(const std::string& line, std::string& code) {
    std::size_t start = line.find_first_not_of(' ');
    if (start == std::string::npos || line.compare(start, 2, "//") != 0) return false;
    start = line.find_first_not_of('/', start);
    if (start == std::string::npos || line.find_first_not_of(' ', start) != start + 5) return false;
    code = line.substr(start + 5);
    if (code.find("// wrong") != std::string::npos) return false;
    if (code.rfind("VORN_", 0) == 0 || code.rfind("Delegate<", 0) == 0) {
        const std::size_t description = code.find("  ");
        code.resize(std::min(description, code.size()));
        return description != std::string::npos;
    }
    code.resize(std::min(code.find("//"), code.size()));
    code.resize(code.find_last_not_of(' ') + 1);
    const bool isLoop = code.rfind("for (", 0) == 0 && code.size() > 4 && code.compare(code.size() - 4, 4, " ...") == 0;
    return isLoop || (!code.empty() && code.back() == ';');
}

// True if the parts of `code` between its dots stand in `source` one after the other, near to each other.
bool isCompiled(const std::string& source, const std::string& code) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t dots; (dots = code.find("...", start)) != std::string::npos; start = dots + 3)
        parts.push_back(withoutSpace(code.substr(start, dots - start)));
    parts.push_back(withoutSpace(code.substr(start)));
    for (std::size_t first = 0; (first = source.find(parts[0], first)) != std::string::npos; ++first) {
        std::size_t end = first + parts[0].size();
        bool isFound = true;
        for (std::size_t i = 1; i < parts.size() && isFound; ++i) {
            const std::size_t next = source.find(parts[i], end);
            isFound = next != std::string::npos && next - end < 200;
            end = next + parts[i].size();
        }
        if (isFound) return true;
    }
    return false;
}

TEST(Snippets, EachLineOfCodeInAHeaderIsCompiledHere) {
    const std::string source = withoutSpace(contentOf(VORN_SNIPPETS_SOURCE));
    unsigned int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(VORN_INCLUDE_DIRECTORY)) {
        if (entry.path().extension() != ".h") continue;
        std::istringstream header(contentOf(entry.path()));
        unsigned int number = 0;
        std::string code;
        for (std::string line; std::getline(header, line);) {
            ++number;
            if (!isCode(line, code)) continue;
            ++count;
            EXPECT_TRUE(isCompiled(source, code)) << entry.path() << ":" << number << ": " << code;
        }
    }
    EXPECT_GE(count, 30u) << "the rule that finds lines of code finds too few";
}

// What the snippets name.

struct Door : Vorn::DynamicObject {
    explicit Door(const char* doorName = "") : name(doorName) {}
    void open(int times = 1) { opened += times; }
    std::string name;
    int opened = 0;
};

int logged = 0;
void log(int value) { logged = value; }

#define text "text"
#define N 4

TEST(Snippets, Assert) {
    bool condition = false;
    const auto assertCondition = [&] { VORN_ASSERT(condition, text); };
    const auto assertInternally = [&] { VORN_INTERNAL_ASSERT(condition, text); };
    const auto throwText = [] { VORN_THROW(N, text); };
    EXPECT_THROW(assertCondition(), Vorn::Exception<1>);
    EXPECT_THROW(assertInternally(), Vorn::Exception<2>);
    EXPECT_THROW(throwText(), Vorn::Exception<4>);
    condition = true;
    EXPECT_NO_THROW(assertCondition());
}

#undef N
#undef text

TEST(Snippets, Types) {
    const Vorn::UTF16Char title[] = VORN_UTF16("Menü");
    EXPECT_STREQ(Vorn::String(title).getCString(), "Menü");
}

TEST(Snippets, TextView) {
    struct File {
        Vorn::String getName() const { return "icon.png"; }
    };
    using Vorn::TextView;
    const File file;
    unsigned int pictures = 0;
    const auto isPicture = [&](TextView path) { pictures += path.getLength() == 8; };
    isPicture(file.getName());
    isPicture("icon.png");
    EXPECT_EQ(pictures, 2u);
}

TEST(Snippets, CodePoints) {
    using namespace Vorn;
    const String name("d\xC3\xB6r!");
    unsigned int drawn = 0;
    const auto drawGlyph = [&](UTF32Char c) { drawn += c; };
    for (UTF32Char c : codePoints(name)) drawGlyph(c);
    const unsigned int third = offsetOfCodePoint(name, 3);
    EXPECT_EQ(drawn, 0x64u + 0xF6 + 0x72 + 0x21);
    EXPECT_EQ(third, 4u);
}

TEST(Snippets, MakeString) {
    using namespace Vorn;
    const std::string line = "line", download = "a\xFF", file = "\xFF";
    const String name = makeString(line);
    const String shown = makeStringReplacing(download);
    const MadeString read = tryMakeString(file);
    const String& title = VORN_TEXT("Options");
    EXPECT_EQ(std::string(name.getCString()), "line");
    EXPECT_EQ(std::string(shown.getCString()), "a\xEF\xBF\xBD");
    EXPECT_FALSE(read);
    EXPECT_EQ(std::string(title.getCString()), "Options");
}

TEST(Snippets, TextConversion) {
    using namespace Vorn;
    const String name = makeString("d\xC3\xB6r");
    char line[80];
    const std::string path = toUTF8(name);
    const std::u16string label = toUTF16(name);
    const ConvertedText part = toUTF8(name, line, 80);
    const String wide = inUTF16(name);
    EXPECT_EQ(path, "d\xC3\xB6r");
    EXPECT_TRUE(label == u"d\u00F6r");
    EXPECT_EQ(part.written, 4u);
    EXPECT_FALSE(TextView(wide).isUTF8());
}

TEST(Snippets, TextOrder) {
    using namespace Vorn;
    using Level = int;
    std::map<String, Level, CodePointLess> levels;
    std::unordered_map<String, Level, TextHash, TextEqual> table;
    levels[makeString("intro")] = 1;
    table[makeString("intro")] = 1;
    const auto found = levels.find("intro");
    EXPECT_EQ(found->second, 1);
}

TEST(Snippets, TextSearch) {
    using namespace Vorn;
    const String line = makeString("key: value // more"), path = makeString("icon.png");
    const unsigned int colon = find(line, ':');
    const unsigned int next = findNext(line, "//", colon);
    const bool isPicture = endsWithIgnoringASCIICase(path, u".PNG");
    const unsigned int end = findAnyOf(line, " \t\r\n");
    EXPECT_EQ(colon, 3u);
    EXPECT_EQ(next, 11u);
    EXPECT_TRUE(isPicture);
    EXPECT_EQ(end, 4u);
}

TEST(Snippets, PrintInt) {
    unsigned char text[11];
    unsigned int size = Vorn::printDec(-42, text, 11);
    EXPECT_EQ(std::string(text, text + size), "-42");
}

TEST(Snippets, PrintFloat) {
    unsigned char text[32];
    unsigned int size = Vorn::printDec(1.5f, text, 32, 2, Vorn::FLOAT_EXPONENT_NONE);
    EXPECT_EQ(std::string(text, text + size), "1.50");
    size = Vorn::printHex(-3.0f, text, 32);
    EXPECT_EQ(std::string(text, text + size), "-0x1.8p1");
}

TEST(Snippets, ParseInt) {
    struct Row {
        const char* input;
        int value;
        bool isNumber;
    };
    for (const Row& row : {Row{"-42", -42, true}, Row{"0x1F", 31, true}, Row{"x", 0, false}}) {
        const auto* const text = reinterpret_cast<const unsigned char*>(row.input);
        const unsigned int length = 0xFFFFFFFF;
        unsigned int count;
        int value = Vorn::parseInt<int>(text, &count, length);
        EXPECT_EQ(value, row.value) << row.input;
        EXPECT_EQ(count != 0, row.isNumber) << row.input;
    }
}

TEST(Snippets, ParseFloat) {
    struct Row {
        const char* input;
        double expected;
    };
    for (const Row& row : {Row{"-2.5e10", -2.5e10}, Row{".5", 0.5}, Row{"5.", 5}, Row{"0x1.8p-3", 0.1875}}) {
        const auto* const text = reinterpret_cast<const unsigned char*>(row.input);
        const unsigned int length = 0xFFFFFFFF;
        unsigned int count = 0;
        double value = Vorn::parseDouble(text, &count, length);
        EXPECT_EQ(value, row.expected) << row.input;
        EXPECT_EQ(count, std::string(row.input).size()) << row.input;
    }
}

TEST(Snippets, TextNumbers) {
    const Vorn::TextView text = "-42";
    std::optional<int> count = Vorn::parse<int>(text);
    std::optional<float> size = Vorn::parse<float>("2.5e-3");
    Vorn::String label = Vorn::toText(0.1f);
    EXPECT_EQ(count, -42);
    EXPECT_EQ(size, 2.5e-3f);
    EXPECT_EQ(label, Vorn::String("0.1"));
}

struct Player {
    int jump() { return 1; }
    int crouch() { return 2; }
};

int move(Player& player, Vorn::Name name) {
    using Vorn::Name;
    switch (name.getHash()) {
    case Name::hashOf("jump"): return player.jump();
    case Name::hashOf("crouch"): return player.crouch();
    }
    return 0;
}

TEST(Snippets, Name) {
    using namespace Vorn;
    using Action = int;
    const String command("jump");
    const Name jump("jump");
    std::unordered_map<Name, Action> actions;
    const std::optional<Name> known = Name::lookUp(command);
    actions[jump] = 1;
    EXPECT_EQ(actions.at(*known), 1);
    Player player;
    EXPECT_EQ(move(player, jump), 1);
    EXPECT_EQ(move(player, Name("crouch")), 2);
}

TEST(Snippets, TextStreams) {
    using namespace Vorn;
    const Name name("door");
    std::istringstream file("one\ntwo\n");
    String line;
    std::vector<String> lines;
    std::cout << std::setw(12) << name << '\n';
    while (getLine(file, line)) lines.push_back(line);
    EXPECT_EQ(lines.size(), 2u);
}

TEST(Snippets, Format) {
    const Vorn::Name name("door");
    const Vorn::Vector2 position(1.5f, -2);
    const std::string line = fmt::format("{:>12} at {:.1f}", name, position);
    EXPECT_EQ(line, "        door at (1.5, -2.0)");
}

TEST(Snippets, Text) {
    using namespace Vorn;
    const std::string line = "# Title ";
    std::string shown;
    const auto show = [&](const String& text) { shown = toUTF8(text); };
    const String title = makeString(line);
    if (startsWith(title, "#")) show(trim(slice(title, 1)));
    EXPECT_EQ(shown, "Title");
}

TEST(Snippets, Slice) {
    using namespace Vorn;
    const String line = makeString("key:value");
    const unsigned int colon = find(line, ':');
    String key = slice(line, 0, colon);
    EXPECT_EQ(toUTF8(key), "key");
    EXPECT_TRUE(equals(slice("key", 0, find("key", ':')), "key"));
}

TEST(Snippets, TextPieces) {
    using namespace Vorn;
    const CharacterSet quotes = anyOf("'\"");
    const CharacterSet dash = U'\u2013';
    bool isBlank = CharacterSet(WHITE_SPACE).contains(0x3000);
    EXPECT_TRUE(isBlank && quotes.contains('"') && dash.contains(0x2013));

    std::vector<std::string> used;
    const auto use = [&](TextView word) { used.push_back(toUTF8(word)); };
    const auto set = [&](TextView key, TextView value) { used = {toUTF8(key), toUTF8(value)}; };
    const auto open = set;
    {
        const String path = makeString("icon.png"), line = makeString("a, b"), page = makeString("one\ntwo\n");
        std::vector<String> rows;
        TextView key = trim("  speed ");
        String file = removeSuffix(path, ".png");
        EXPECT_EQ(toUTF8(key) + toUTF8(file), "speedicon");
        for (TextView word : split(line, ',')) use(trim(word));
        EXPECT_EQ(used, (std::vector<std::string>{"a", "b"}));
        for (const TextPiece& row : lines(page)) rows.push_back(row.toString());
        EXPECT_EQ(rows.size(), 2u);
    }
    {
        const String line = makeString("key=value");
        if (auto pair = splitOnce(line, '=')) set(pair->first, pair->second);
        EXPECT_EQ(used, (std::vector<std::string>{"key", "value"}));
    }
    {
        const String path = makeString("a/b/c");
        if (auto parts = splitOnceAtEnd(path, '/')) open(parts->first, parts->second);
        EXPECT_EQ(used, (std::vector<std::string>{"a/b", "c"}));
    }
    used.clear();
    for (TextView field : split("a,b,,c", ',')) use(field);
    EXPECT_EQ(used, (std::vector<std::string>{"a", "b", "", "c"}));
    const std::string row = "1;2,3";
    for (TextView field : split(row, anyOf(",;"))) use(field);
    EXPECT_EQ(used.size(), 7u);
    {
        const char* const path = "a::b::c";
        used.clear();
        for (TextView step : split(path, "::", 2)) use(step);
        EXPECT_EQ(used, (std::vector<std::string>{"a", "b::c"}));
    }
    used.clear();
    for (TextView word : splitNonEmpty("  two  words ")) use(word);
    EXPECT_EQ(used, (std::vector<std::string>{"two", "words"}));
}

TEST(Snippets, TextBuilder) {
    using namespace Vorn;
    struct Row {
        String name;
        float price;
    };
    const String name = makeString("Ann"), folder = makeString("data");
    const std::string file = "a.txt";
    const std::vector<String> names{makeString("a"), makeString("b")};
    const std::vector<Row> rows{{makeString("tea"), 1.5f}};
    String title = concat(name, ", level ", 42);
    String path = folder + "/" + file;
    String list = join(names, ", ");
    TextBuilder page;
    for (const Row& row : rows) page.append(row.name, '\t', row.price, '\n');
    String result = page.take();
    EXPECT_EQ(toUTF8(title), "Ann, level 42");
    EXPECT_EQ(toUTF8(path), "data/a.txt");
    EXPECT_EQ(toUTF8(list), "a, b");
    EXPECT_EQ(toUTF8(result), "tea\t1.5\n");
    String row = join({"a", "b", "c"}, u';');
    EXPECT_EQ(toUTF8(row), "a;b;c");
}

TEST(Snippets, TextChange) {
    using namespace Vorn;
    const String path = makeString("a\\b"), key = makeString("key");
    String shown = replaceAll(path, "\\", "/");
    String name = toUpperASCII(key);
    String number = padStart(toText(7), 3, U'0');
    String rule = repeat("=-", 20);
    EXPECT_EQ(toUTF8(shown), "a/b");
    EXPECT_EQ(toUTF8(name), "KEY");
    EXPECT_EQ(toUTF8(number), "007");
    EXPECT_EQ(rule.getData()->getUTF8Length(), 40u);
}

TEST(Snippets, Surprise) {
    const Vorn::String name("icon.png");
    VORN_ALLOW_SURPRISES_BEGIN
    const bool isOther = name.endsWith(".png");
    VORN_ALLOW_SURPRISES_END
    EXPECT_FALSE(isOther);
}

TEST(Snippets, Interop) {
    using Vorn::bytes;
    using Vorn::String;
    std::ostringstream captured;
    std::streambuf* const console = std::cout.rdbuf(captured.rdbuf());
    using namespace Vorn; // the literals too
    const String name = "door"_vs;
    std::unordered_map<String, Door> doors;
    doors[name].opened = 3;
    std::string collected;
    for (unsigned char byte : bytes(name)) collected += static_cast<char>(byte);
    if (name == std::string_view("door")) std::cout << name;
    std::cout.rdbuf(console);
    EXPECT_EQ(doors.at(String("door")).opened, 3);
    EXPECT_EQ(collected, "door");
    EXPECT_EQ(captured.str(), "door");
}

struct Board {
    void show(int value) { shown = value; }
    int shown = 0;
};

TEST(Snippets, Event) {
    using namespace Vorn;
    Board board;
    int added = 0;
    Event<int> scored;
    scored.add<&Board::show>(board);
    scored.add([&](int points) { added += points; }, -1);
    scored(3);
    EXPECT_EQ(board.shown, 3);
    EXPECT_EQ(added, 3);
}

TEST(Snippets, Connection) {
    using namespace Vorn;
    Event<int> scored;
    int added = 0;
    Connection connection = scored.add([&](int points) { added += points; });
    connection.disconnect();
    scored(3);
    EXPECT_EQ(added, 0);
}

TEST(Snippets, ResultEvent) {
    using namespace Vorn;
    ResultEvent<bool, int> asked;
    asked.add([](int door) { return door != 3; });
    const bool isAllowed = asked.callUntil([](bool answer) { return !answer; }, 3) == std::nullopt;
    EXPECT_FALSE(isAllowed);
}

TEST(Snippets, SharedAndWeakPtr) {
    Vorn::WeakPtr<Door> left;
    {
        const auto door = Vorn::makeShared<Door>("oak");
        const Vorn::SharedPtr<Door> same = door;
        EXPECT_EQ(door.getUseCount(), 2);
        const Vorn::WeakPtr<Door> watched = door;
        if (const auto locked = watched.lock()) locked->open();
        EXPECT_EQ(door->opened, 1);
        const Vorn::SharedPtr<int> opened(door, &door->opened);
        EXPECT_EQ(*opened, 1);
        left = watched;
    }
    EXPECT_FALSE(left.lock());
}

class SceneNode : public Vorn::TreeNode<SceneNode> {
public:
    void draw() { ++s_drawn; }
    int layer = 0;
    static inline int s_drawn = 0;
};

TEST(Snippets, TreeNode) {
    const auto root = Vorn::makeShared<SceneNode>();
    root->append(Vorn::makeShared<SceneNode>());
    for (SceneNode& node : root->depthFirst()) node.draw();
    EXPECT_EQ(SceneNode::s_drawn, 2);
    root->sort([](const SceneNode& a, const SceneNode& b) { return a.layer < b.layer; });
}

TEST(Snippets, Delegate) {
    using namespace Vorn;
    Door door;
    SharedPtr<Door> sharedDoor = makeShared<Door>();
    const WeakPtr<Door> weakDoor = sharedDoor;
    Delegate<void, int> shown = [](int value) { EXPECT_EQ(value, 6); };
    shown(6);
    Delegate<void, int>::bind<&log>()(1);
    Delegate<void, int>::bind<&Door::open>(door)(2);
    Delegate<void, int>::bindShared<&Door::open>(sharedDoor)(3);
    const auto weak = Delegate<void, int>::bindWeak<&Door::open>(weakDoor);
    weak(4);
    Delegate<void, int>::bindCallable([](int) { ++logged; })(5);
    EXPECT_EQ(logged, 2);
    EXPECT_EQ(door.opened, 2);
    EXPECT_EQ(sharedDoor->opened, 7);
    sharedDoor = SharedPtr<Door>();
    weak(4);
    EXPECT_TRUE(weak.isExpired());
}

TEST(Snippets, DelegateRebind) {
    using namespace Vorn;
    const SharedPtr<Door> first = makeShared<Door>("first"), second = makeShared<Door>("second");
    using Opener = Delegate<void, int>;
    Opener a = Opener::bindShared<&Door::open>(first);
    const Opener b = Opener::bindShared<&Door::open>(second);
    a.rebind(b);
    a(2);
    EXPECT_EQ(second->opened, 2);
    EXPECT_EQ(first.getUseCount(), 1);
}

TEST(Snippets, Geometry) {
    const Vorn::FloatRect panel(0.0f, 0.0f, 100.0f, 50.0f), rect(1.0f, 2.0f, 3.0f, 4.0f);
    const Vorn::Matrix3 matrix = Vorn::Matrix3::IDENTITY;
    const auto badge = Vorn::anchored(panel, Vorn::Vector2(16.0f, 16.0f), Vorn::RectPoint::TOP_RIGHT, 4.0f);
    EXPECT_EQ(badge, Vorn::FloatRect(80.0f, 4.0f, 96.0f, 20.0f));
    const auto area = Vorn::boundsOf(rect, matrix);
    EXPECT_EQ(area, rect);
    testing::internal::CaptureStdout();
    std::cout << Vorn::Vector2(1.0f, 2.5f);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "(1, 2.5)");
}

struct Corner {
    Vorn::Vector2 corner;
    float radius;
};
struct Vertex {
    Vorn::Vector2 position;
    Corner box;
};
std::vector<Vorn::Vector2> makePoints() { return {Vorn::Vector2::UNIT_X, Vorn::Vector2::UNIT_Y}; }
std::vector<Vertex> makeVertices() {
    const Corner corner{Vorn::Vector2::UNIT_Y, 1.0f};
    return {{Vorn::Vector2::ZERO, corner}, {Vorn::Vector2::UNIT_X, corner}};
}

TEST(Snippets, GeometryBatch) {
    std::vector<Vorn::Vector2> points = makePoints();
    std::vector<Vertex> vertices = makeVertices();
    Vorn::VectorSpan all = points;
    Vorn::VectorSpan positions(vertices, &Vertex::position);
    Vorn::ConstVectorSpan corners(&vertices[0].box.corner, vertices.size(), sizeof(Vertex));
    EXPECT_EQ(all.count() + positions.count() + corners.count(), 6u);

    const Vorn::Matrix3 matrix(0.0f, -1.0f, 5.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f);
    std::vector<Vorn::Vector2> transformed(2, Vorn::Vector2::ZERO);
    Vorn::transform(matrix, points);                                        // in place
    Vorn::transform(matrix, points, transformed);                           // into another array
    Vorn::transform(matrix, Vorn::VectorSpan(vertices, &Vertex::position)); // inside larger elements
    const Vorn::FloatRect bounds = Vorn::boundsOf(points);
    EXPECT_EQ(bounds, Vorn::FloatRect(4.0f, 0.0f, 5.0f, 1.0f));
    EXPECT_EQ(transformed[0], Vorn::Vector2(4.0f, 5.0f));
    EXPECT_EQ(vertices[1].position, Vorn::Vector2(5.0f, 1.0f));
}

} // namespace
