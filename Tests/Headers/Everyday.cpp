// Everyday use of the templates of all headers. It is compiled under many flags and never run.
#include "Vorn/Vorn.h"

#include <map>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

namespace Everyday {

using namespace Vorn;

void check(int value);
int sizeOf(TextView text);
void listen(int value);
void pointers();
void events();
void trees();
void texts();
void numbers();
void geometry();

struct Door : DynamicObject {
    explicit Door(int openings = 0) : count(openings) {}
    void open(int width) { count += width; }
    int width() const { return count; }
    int count;
};
struct Gate final : Door, InterfaceBase {
    SharedObjectBase* getSharedObject() override { return this; }
};
struct Plain {
    int value = 0;
};
struct Branch final : TreeNode<Branch> {
    String name;
};

int sizeOf(TextView text) { return int(text.getLength()); }

void check(int value) {
    VORN_ASSERT(value > 0, "not positive!");
    VORN_INTERNAL_ASSERT(value < 100, "too large!", "Everyday::check");
    if (value == 50) VORN_THROW(E::PARAMETER, "fifty!");
}

void pointers() {
    const SharedPtr<Gate> gate = makeSharedThreadsafe<Gate>();
    SharedPtr<Door> door = gate;
    SharedPtr<InterfaceBase> interface(gate);
    const SharedPtr<const Door> same = constSharedCast<const Door>(door);
    const SharedPtr<Gate> cast = staticSharedCast<Gate>(door);
    const SharedPtr<Door> base = dynamicSharedCast<Door>(gate);
    SharedPtr<Plain> plain = makeShared<Plain>(), deleted(new Plain, [](Plain*object) { delete object; });
    const SharedPtr<Plain[]> several(new Plain[3]);
    SharedPtr<Plain> taken = std::move(plain);
    taken.swap(deleted);
    const WeakPtr<Door> weak = door;
    if (const auto locked = weak.lock()) check(locked->count);
    std::unordered_set<SharedPtr<Plain>> set{taken, deleted};
    const bool isOrdered = taken < deleted || taken == several.get() || door == nullptr || same != cast || base;
    std::ostringstream stream;
    stream << door << isOrdered << set.size() << weak.isExpired() << interface.getUseCount();
}

void listen(int value) { check(value); }

void events() {
    Door door;
    const SharedPtr<Door> shared = makeShared<Door>();
    const WeakPtr<Door> weak = shared;
    Event<int> event;
    ScopedConnection held = event.add([&door](int value) { door.open(value); });
    event.add(&listen, 2).block();
    event.add<&Door::open>(door);
    event.once<&Door::open>(shared);
    event.add<&Door::open>(weak, -1);
    event.addWhileAlive(shared, [](int value) { check(value); });
    event(3);
    event.forEach([](const Event<int>::Listener& listener, int priority) {
        if (listener.isNotNull()) check(priority);
    });
    event.remove<&Door::open>(shared);
    const ScopedBlock block(held.get());
    if (!event.contains(&listen)) event.clear();

    ResultEvent<int> widths;
    widths.add<&Door::width>(shared);
    const std::vector<int> all = widths.collect();
    const std::optional<int> wide = widths.callUntil([](int width) { return width > 2; });
    Delegate<int> width = Delegate<int>::bind<&Door::width>(door), other = width;
    std::unordered_map<Delegate<int>, int> order{{width, 1}};
    if (width == other && width.tryCall()) check(int(order.size() + all.size()) + wide.value_or(0));
    const Delegate<void> run = [text = std::string("a text")] { check(int(text.size())); };
    run();
    Delegate<void, void> old = Delegate<void, void>::bindCallable([] {});
    old.rebind(Delegate<void, void>());
}

void trees() {
    const SharedPtr<Branch> root = makeShared<Branch>();
    root->append(makeShared<Branch>());
    root->insert(0, makeShared<Branch>());
    root->sort([](const Branch& a, const Branch& b) { return sizeOf(a.name) < sizeOf(b.name); });
    for (Branch& branch : root->depthFirst()) branch.name = "a branch";
    for (const SharedPtr<Branch>& child : root->getChildren()) check(int(child->getDepth()));
}

void texts() {
    const String text = makeString("key = value, key = 2"), wide = makeString(u"wide"), codes = makeString(U"codes");
    UTF8String bytes("bytes");
    bytes.append(text);
    const std::string standard = toUTF8(text) + std::string(view(bytes));
    for (TextView piece : split(text, ',')) {
        if (const auto pair = splitOnce(trim(piece), '=')) check(int(pair->first.getLength()));
    }
    const String list = join(std::vector<String>{text, wide, codes}, ", ") + TextView(standard);
    TextBuilder builder;
    builder.append(text, 1, 2.5f, U'c', list).appendCodePoint(0xE9);
    const String edges = concat(builder.take(), "=", 12, toUpperASCII(bytes), repeat(wide, 2), padStart(text, 30));
    for (const UTF32Char c : codePoints(edges)) check(int(c));
    const std::map<String, int, CodePointLess> sorted{{text, 1}};
    const std::unordered_map<String, int, TextHash, TextEqual> hashed{{text, 1}};
    const Name name("a name");
    const std::unordered_set<Name> names{name};
    const StringOwnerMap<unsigned char> owners;
    check(int(sorted.count(text) + hashed.size() + names.size() + find(replaceAll(text, "key", "name"), "x")));
    std::istringstream input("words in a stream");
    std::ostringstream output;
    String word;
    while (input >> word) output << word << TextView(word) << name << (ordered(word) < ordered(text));
    check(sizeOf(VORN_TEXT("literal")));
}

void numbers() {
    const auto use = [](auto value) {
        using Number = decltype(value);
        char buffer[64];
        std::string text;
        appendText(text, value);
        if (parseInto(value, text) != NumberError::NONE) return;
        check(int(writeText(buffer, sizeof(buffer), value)) + sizeOf(toText(value)));
        if (parse<Number>(text)) check(int(*parsePrefix<Number>(text).value));
    };
    use(short(1));
    use(1);
    use(1u);
    use(1l);
    use(1ul);
    use(1ll);
    use(1ull);
    use(1.0f);
    use(1.0);
    check(sizeOf(toText(12, 16)) + sizeOf(toFixedText(1.5, 2)) + sizeOf(toHexText(0.1)));
}

void geometry() {
    const Vector2 point(1.0f, 2.0f);
    Matrix3 matrix;
    matrix.makeTransform(0.5f, Vector2::UNIT_SCALE, point);
    FloatRect rect(0.0f, 0.0f, 1.0f, 1.0f);
    rect = rect * matrix;
    const FloatRect around = boundsOf(std::vector<Vector2>{point, matrix * point});
    std::ostringstream stream;
    stream << exactNormalised(point) << anchored(around, point, RectPoint::LEFT) << matrix << (rect == around);
    if (const auto inverse = inverseAtAnyScale(matrix)) stream << *inverse * point;
}

} // namespace Everyday
