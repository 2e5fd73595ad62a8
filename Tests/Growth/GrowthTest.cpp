// Measures how the time of operations grows with n, and compares it with the exponents that Documentation/Growth.md
// documents. Each row of the page is an operation of the table below, and the other way round.
//
// The time of n, 4n, 16n and 64n is taken as the least of a few, in processor time, so that other programs disturb
// little; the exponent is the slope of the line through their logarithms. A slope above the documented one is measured
// again before the test fails. With --gtest_output=xml the report holds the exponents.
#include "Vorn/Vorn.h"

#include "Support/Sanitizers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

using namespace Vorn;

using Run = std::function<void()>;

struct Operation {
    const char* name;
    unsigned int smallest;                    // n of the first measurement
    std::function<Run(unsigned int)> prepare; // for n; what it returns is measured
    bool isOnce = false;                      // the run uses up what was prepared
};

void PrintTo(const Operation& operation, std::ostream* stream) { *stream << operation.name; }

volatile std::size_t observed; // keeps results from being dropped

template <class Value>
void observe(const Value& value) {
    observed = static_cast<std::size_t>(value);
}

template <class Value, class... Args>
std::shared_ptr<Value> shared(Args&&... args) {
    return std::make_shared<Value>(std::forward<Args>(args)...);
}

std::string repeated(const std::string& pattern, std::size_t size) {
    std::string text;
    while (text.size() + pattern.size() <= size) text += pattern;
    return text + std::string(size - text.size(), '.');
}

std::string plainText(unsigned int n) { return repeated("the quick brown fox jumps over the lazy dog ", n); }
std::string cyrillicText(unsigned int n) { return repeated("\xD1\x81\xD1\x8A\xD0\xB5\xD1\x88\xD1\x8C ", n); }
std::string supplementaryText(unsigned int n) { return repeated("\xF0\x9F\x98\x80\xF0\x9F\x90\x88", n); }

std::u16string wideText(unsigned int n) {
    std::u16string text;
    while (text.size() < n) text += u"\u0441\u044A\u0435\u0448\u044C a";
    return text.substr(0, n);
}

std::u16string pairedText(unsigned int n) {
    std::u16string text;
    while (text.size() < n) text += u"\U0001F600";
    return text;
}

std::basic_string<UTF16Char> units(const std::u16string& text) { return {text.begin(), text.end()}; }

String viewOf(const std::string& text) { return String(text.c_str(), static_cast<unsigned int>(text.size())); }
String viewOf(const std::basic_string<UTF16Char>& text) {
    return String(text.c_str(), static_cast<unsigned int>(text.size()));
}

// A terminated copy that owns its block.
String ownerOf(const std::string& text) {
    unsigned char* const block = new unsigned char[text.size() + 1];
    std::copy_n(text.c_str(), text.size() + 1, block);
    return String(block, static_cast<unsigned int>(text.size() + 1), STRING_DATA_DYNAMIC);
}

const unsigned char* bytes(const std::string& text) { return reinterpret_cast<const unsigned char*>(text.c_str()); }

// An operation on a text of n bytes.
template <class Use>
std::function<Run(unsigned int)> onText(std::string (*make)(unsigned int), Use use) {
    return [make, use](unsigned int n) -> Run {
        const auto text = shared<std::string>(make(n));
        return [text, use] { use(*text); };
    };
}

template <class Use>
std::function<Run(unsigned int)> onUnits(std::u16string (*make)(unsigned int), Use use) {
    return [make, use](unsigned int n) -> Run {
        const auto text = shared<std::basic_string<UTF16Char>>(units(make(n)));
        return [text, use] { use(*text); };
    };
}

// An operation on an editable string of n bytes, which it does not change.
template <class Use>
std::function<Run(unsigned int)> onString(std::string (*make)(unsigned int), Use use) {
    return [make, use](unsigned int n) -> Run {
        const auto string = shared<UTF8String>(ownerOf(make(n)));
        return [string, use] { use(*string); };
    };
}

// An operation on two records of n bytes that differ in their last one only.
template <class Use>
std::function<Run(unsigned int)> onPair(bool isMixed, Use use) {
    return [isMixed, use](unsigned int n) -> Run {
        const auto a = shared<String>(ownerOf(cyrillicText(n) + "a"));
        const auto narrow = shared<String>(ownerOf(cyrillicText(n) + "b"));
        if (!isMixed) return [a, narrow, use] { use(*a, *narrow); };
        const std::u16string last = u"b";
        std::u16string wide;
        const UTF16Char* const built = narrow->getData()->getBuffer<UTF16Char>();
        wide.assign(built, built + narrow->getData()->getUTF16Length());
        const auto text = shared<std::basic_string<UTF16Char>>(units(wide));
        const auto b = shared<String>(viewOf(*text));
        return [a, b, text, use] { use(*a, *b); };
    };
}

struct Pool : StringOwnerAllocWrapperBase {
    void* allocate(unsigned int size) override {
        blocks.push_back(std::make_unique<std::uint64_t[]>(size / 8 + 1));
        return blocks.back().get();
    }
    std::vector<std::unique_ptr<std::uint64_t[]>> blocks;
};

using ByteMap = StringOwnerMap<unsigned char>;

// Maps n buffers of one letter, `stride` bytes apart.
Run mapBuffers(unsigned int n, unsigned int stride) {
    const auto pool = shared<std::string>(std::size_t(n) * stride, 'a');
    return [pool, n, stride] {
        ByteMap map;
        for (unsigned int i = 0; i < n; ++i) map.mapString(bytes(*pool) + std::size_t(i) * stride, 1, false);
        observe(map.size());
    };
}

struct Target {
    void hear() { ++calls; }
    unsigned int calls = 0;
};
using Listeners = std::vector<Target>;
using Signal = Event<>;

Signal::Listener listenerOf(Target& target) { return Signal::Listener::bind<&Target::hear>(target); }

std::shared_ptr<Signal> eventOf(const std::shared_ptr<Listeners>& targets) {
    const auto event = shared<Signal>();
    for (Target& target : *targets) event->add(listenerOf(target));
    return event;
}

struct Node : TreeNode<Node> {};

SharedPtr<Node> flatTree(unsigned int n) {
    const SharedPtr<Node> root = makeShared<Node>();
    for (unsigned int i = 0; i < n; ++i) root->append(makeShared<Node>());
    return root;
}

// A chain of n nodes, built from the end.
SharedPtr<Node> deepTree(unsigned int n) {
    SharedPtr<Node> root = makeShared<Node>();
    for (unsigned int i = 0; i < n; ++i) {
        const SharedPtr<Node> parent = makeShared<Node>();
        parent->append(root);
        root = parent;
    }
    return root;
}

struct Link : SharedObjectBase {
    SharedPtr<Link> next;
};

const Operation OPERATIONS[] = {
    {"`String` over UTF-8 in ASCII", 4096, onText(plainText, [](const std::string& text) { viewOf(text); })},
    {"`String` over UTF-8 with 2-byte characters", 2048,
     onText(cyrillicText, [](const std::string& text) { viewOf(text); })},
    {"`String` over UTF-8 with 4-byte characters", 2048,
     onText(supplementaryText, [](const std::string& text) { viewOf(text); })},
    {"`String` over UTF-16", 2048,
     onUnits(wideText, [](const std::basic_string<UTF16Char>& text) { viewOf(text); })},
    {"`String` over UTF-16 with surrogate pairs", 2048,
     onUnits(pairedText, [](const std::basic_string<UTF16Char>& text) { viewOf(text); })},
    {"`getBuffer<UTF16Char>` of UTF-8", 2048, onText(cyrillicText,
                                                     [](const std::string& text) {
                                                         const String string = viewOf(text);
                                                         observe(string.getData()->getBuffer<UTF16Char>()[0]);
                                                     })},
    {"`getBuffer<unsigned char>` of UTF-16", 2048, onUnits(wideText,
                                                           [](const std::basic_string<UTF16Char>& text) {
                                                               const String string = viewOf(text);
                                                               observe(string.getCString()[0]);
                                                           })},
    {"`copyTo(std::string&)`", 4096, onString(plainText,
                                              [](const UTF8String& string) {
                                                  std::string copy;
                                                  string.copyTo(copy);
                                                  observe(copy.size());
                                              })},
    {"`getCString` of a text that is not terminated", 4096,
     onText(plainText, [](const std::string& text) { observe(viewOf(text).getCString()[0]); })},
    {"`a == b`", 2048, onPair(false, [](const String& a, const String& b) { observe(a == b); })},
    {"`a < b`", 2048, onPair(false, [](const String& a, const String& b) { observe(a < b); })},
    {"`a == b` across encodings", 2048, onPair(true, [](const String& a, const String& b) { observe(a == b); })},
    {"`a < b` across encodings", 2048, onPair(true, [](const String& a, const String& b) { observe(a < b); })},
    {"`hashOf`", 4096, onString(plainText, [](const UTF8String& string) { observe(hashOf(string)); })},
    {"`contains` of half a text of one letter", 2048,
     [](unsigned int n) -> Run {
         const auto text = shared<String>(ownerOf(std::string(n, 'a')));
         const auto needle = shared<std::string>(std::string(n / 2, 'a') + "b");
         return [text, needle] { observe(text->contains(needle->c_str())); };
     }},
    {"`contains` of a text that is not terminated", 2048,
     [](unsigned int n) -> Run {
         const auto text = shared<std::string>(n, 'a');
         const auto needle = shared<std::string>(std::string(n / 8, 'a') + "b");
         return [text, needle] { observe(viewOf(*text).contains(needle->c_str())); };
     }},
    {"`count`", 4096, onString(plainText, [](const UTF8String& string) { observe(string.count('o')); })},
    {"`endsWith` of three letters", 4096,
     onString(plainText, [](const UTF8String& string) { observe(string.endsWith("dog")); })},
    {"`getUnicodeLength`", 2048,
     onString(cyrillicText, [](const UTF8String& string) { observe(string.getUnicodeLength()); })},
    {"`getUnicodeCharAt` of the last character but n", 2048,
     onString(cyrillicText,
              [](const UTF8String& string) {
                  observe(string.getUnicodeCharAt(-static_cast<int>(string.getLength() / 2)));
              })},
    {"`substr` of the same encoding", 4096,
     onString(plainText,
              [](const UTF8String& string) {
                  const String part(string.getData()->substr<unsigned char>(10, string.getLength() - 20));
                  observe(part.getData()->getBufferInfo<unsigned char>().m_length);
              })},
    {"`substr` of the other encoding", 2048,
     onUnits(wideText,
             [](const std::basic_string<UTF16Char>& text) {
                 const String string = viewOf(text);
                 const unsigned int length = static_cast<unsigned int>(text.size());
                 const String part(string.getData()->substr<unsigned char>(0, length - 10));
                 observe(part.getData()->getBufferInfo<unsigned char>().m_length);
             })},
    {"n substrings made and destroyed", 512,
     [](unsigned int n) -> Run {
         const auto string = shared<String>(ownerOf(plainText(n + 1)));
         return [string, n] {
             std::vector<String> parts;
             parts.reserve(n);
             for (unsigned int i = 0; i < n; ++i)
                 parts.push_back(String(string->getData()->substr<unsigned char>(static_cast<int>(i), 1)));
             observe(parts.size());
         };
     }},
    {"`a += b`", 4096, onString(plainText,
                                [](const UTF8String& string) {
                                    String joined = string;
                                    joined += string;
                                    observe(joined.getData()->getUTF8Length());
                                })},
    {"n times `a += b` of one letter", 512,
     [](unsigned int n) -> Run {
         return [n] {
             String joined("a");
             const String letter("b");
             for (unsigned int i = 0; i < n; ++i) joined += letter;
             observe(joined.getData()->getUTF8Length());
         };
     }},
    {"n times `append` of a character", 512,
     [](unsigned int n) -> Run {
         return [n] {
             UTF8String string = String::getEmptyString();
             for (unsigned int i = 0; i < n; ++i) string.append('a');
             observe(string.getLength());
         };
     }},
    {"n times `append` of a text", 512,
     [](unsigned int n) -> Run {
         return [n] {
             UTF8String string = String::getEmptyString();
             const String word("word");
             for (unsigned int i = 0; i < n; ++i) string.append(word);
             observe(string.getLength());
         };
     }},
    {"n times `insert` at the start", 512,
     [](unsigned int n) -> Run {
         return [n] {
             UTF8String string = String::getEmptyString();
             for (unsigned int i = 0; i < n; ++i) string.insert('a', 0);
             observe(string.getLength());
         };
     }},
    {"n times `erase` at the start", 512,
     [](unsigned int n) -> Run {
         return [n] {
             UTF8String string(ownerOf(plainText(n)));
             for (unsigned int i = 0; i < n; ++i) string.erase(0, 1);
             observe(string.getLength());
         };
     }},
    {"`find` of an ASCII character", 16384,
     onString(plainText, [](const UTF8String& string) { observe(string.find(U'#')); })},
    {"`find` of another character", 4096,
     onString(cyrillicText, [](const UTF8String& string) { observe(string.find(U'\u0451')); })},
    {"`find` of a word", 4096, onString(plainText, [](const UTF8String& string) { observe(string.find("dogs")); })},
    {"`find` of half a text of one letter", 2048,
     [](unsigned int n) -> Run {
         const auto string = shared<UTF8String>(ownerOf(std::string(n, 'a')));
         const auto needle = shared<std::string>(std::string(n / 2, 'a') + "b");
         return [string, needle] { observe(string->find(needle->c_str())); };
     }},
    {"`find` of an `ASCIITable`", 4096,
     [](unsigned int n) -> Run {
         const auto string = shared<UTF8String>(ownerOf(plainText(n)));
         const auto table = shared<ASCIITable>(reinterpret_cast<const signed char*>("#+!"));
         return [string, table] { observe(string->find(*table)); };
     }},
    {"`skip` of a character", 4096, onString([](unsigned int n) { return std::string(n, 'a'); },
                                             [](const UTF8String& string) { observe(string.skip(U'a')); })},
    {"`skip` of a text", 4096, onString([](unsigned int n) { return std::string(n, 'a'); },
                                        [](const UTF8String& string) { observe(string.skip("aaaa")); })},
    {"`match` of a text", 4096, onString(plainText, [](const UTF8String& string) { observe(string.match("the")); })},
    {"`next` through the text", 2048, onString(cyrillicText,
                                               [](const UTF8String& string) {
                                                   const unsigned int length = string.getLength();
                                                   unsigned int index = 0;
                                                   while (index < length) index = string.next(index);
                                                   observe(index);
                                               })},
    {"`previous` through the text", 2048, onString(cyrillicText,
                                                   [](const UTF8String& string) {
                                                       unsigned int index = string.getLength();
                                                       while (index != 0) index = string.previous(index);
                                                       observe(index);
                                                   })},
    {"`parseUDec` of n digits", 2048,
     onText([](unsigned int n) { return std::string(n, '7'); },
            [](const std::string& text) { observe(parseUDec<unsigned int>(bytes(text))); })},
    {"`parseUHex` of n digits", 2048,
     onText([](unsigned int n) { return std::string(n, 'e'); },
            [](const std::string& text) { observe(parseUHex<unsigned int>(bytes(text))); })},
    {"`parseFloat` of n digits", 2048,
     onText([](unsigned int n) { return "0." + std::string(n, '7'); },
            [](const std::string& text) { observe(parseFloat(bytes(text)) * 1000); })},
    {"`printDec` of a float with n decimals", 262144,
     [](unsigned int n) -> Run {
         const auto text = shared<std::vector<unsigned char>>(n + 10);
         return [text, n] {
             observe(printDec(1.5, text->data(), static_cast<unsigned int>(text->size()), n, FLOAT_EXPONENT_NONE));
         };
     }},
    {"n buffers mapped, 24 bytes apart", 1024, [](unsigned int n) { return mapBuffers(n, 24); }},
    {"n buffers mapped at equal low address bits", 64, [](unsigned int n) { return mapBuffers(n, 16384); }},
    {"n lengths of one buffer mapped", 128,
     [](unsigned int n) -> Run {
         const auto text = shared<std::string>(n, 'a');
         return [text, n] {
             ByteMap map;
             for (unsigned int i = 0; i < n; ++i) map.mapString(bytes(*text), i, false);
             observe(map.size());
         };
     }},
    {"`mapString` of a known buffer", 1024,
     [](unsigned int n) -> Run {
         const auto pool = shared<std::string>(std::size_t(n) * 24, 'a');
         const auto map = shared<ByteMap>();
         for (unsigned int i = 0; i < n; ++i) map->mapString(bytes(*pool) + i * 24, 1, false);
         return [pool, map, n] {
             for (unsigned int i = 0; i < 64; ++i)
                 observe(map->mapString(bytes(*pool) + i * (n / 64) * 24, 1, false).getUnicodeLength());
         };
     }},
    {"n strings mapped by `mapStringNonInline` and unmapped", 512,
     [](unsigned int n) -> Run {
         const auto strings = shared<std::vector<String>>();
         for (unsigned int i = 0; i < n; ++i) strings->push_back(ownerOf("text"));
         return [strings] {
             ByteMap map;
             Pool pool;
             for (const String& string : *strings) map.mapStringNonInline(string, pool);
             for (const String& string : *strings)
                 map.unmapString(string.getData()->getPrivateBuffer<unsigned char>(), 4);
             observe(map.size());
         };
     }},
    {"`ExceptionString` joined from n parts", 128,
     [](unsigned int n) -> Run {
         return [n] {
             const ExceptionString part("x", 1);
             ExceptionStringJoiner joiner(part, part);
             for (unsigned int i = 0; i < n; ++i) joiner.append(part);
             observe(ExceptionString(joiner).size());
         };
     }},
    {"n times `s = s + x` of `ExceptionString`", 250,
     [](unsigned int n) -> Run {
         return [n] {
             ExceptionString joined("x", 1);
             const ExceptionString part("x", 1);
             for (unsigned int i = 0; i < n; ++i) joined = joined + part;
             observe(joined.size());
         };
     }},
    {"n listeners added to an event", 64,
     [](unsigned int n) -> Run {
         const auto targets = shared<Listeners>(n);
         return [targets] { observe(eventOf(targets)->getDelegateCount()); };
     }},
    {"an event with n listeners called", 64,
     [](unsigned int n) -> Run {
         const auto targets = shared<Listeners>(n);
         const auto event = eventOf(targets);
         return [targets, event] { (*event)(); };
     }},
    {"`contains` of an event with n listeners", 64,
     [](unsigned int n) -> Run {
         const auto targets = shared<Listeners>(n);
         const auto event = eventOf(targets);
         return [targets, event] { observe(event->contains(listenerOf(targets->back()))); };
     }},
    {"n listeners removed, the last first", 64,
     [](unsigned int n) -> Run {
         const auto targets = shared<Listeners>(n);
         const auto event = eventOf(targets);
         return [targets, event] {
             for (std::size_t i = targets->size(); i-- > 0;) event->remove(listenerOf((*targets)[i]));
         };
     },
     true},
    {"an event with n listeners destroyed", 64,
     [](unsigned int n) -> Run {
         const auto targets = shared<Listeners>(n);
         const auto event = shared<std::shared_ptr<Signal>>(eventOf(targets));
         return [targets, event] { event->reset(); };
     },
     true},
    {"n listeners added while the event is called", 64,
     [](unsigned int n) -> Run {
         const auto targets = shared<Listeners>(n);
         return [targets] {
             struct Adder {
                 void add() {
                     for (Target& target : *targets) event->add(listenerOf(target), -1);
                 }
                 Listeners* targets;
                 Signal* event;
             };
             Signal event;
             Target first;
             Adder adder{targets.get(), &event};
             event.add(listenerOf(first));
             event.add(Signal::Listener::bind<&Adder::add>(adder), 1);
             event();
             observe(event.getDelegateCount());
         };
     }},
    {"n copies of a `SharedPtr`", 512,
     [](unsigned int n) -> Run {
         const auto pointer = shared<SharedPtr<Node>>(makeShared<Node>());
         return [pointer, n] {
             std::vector<SharedPtr<Node>> copies(n, *pointer);
             observe(copies.size());
         };
     }},
    {"n nested shared objects destroyed", 512,
     [](unsigned int n) -> Run {
         const auto first = shared<SharedPtr<Link>>();
         for (unsigned int i = 0; i < n; ++i) {
             const SharedPtr<Link> link = makeShared<Link>();
             link->next = *first;
             *first = link;
         }
         return [first] { *first = SharedPtr<Link>(); };
     },
     true},
    {"n children appended to a node", 256, [](unsigned int n) -> Run { return [n] { flatTree(n); }; }},
    {"n children inserted in front", 128,
     [](unsigned int n) -> Run {
         return [n] {
             const SharedPtr<Node> root = makeShared<Node>();
             for (unsigned int i = 0; i < n; ++i) root->insert(0, makeShared<Node>());
         };
     }},
    {"n children removed, the first first", 128,
     [](unsigned int n) -> Run {
         const auto root = shared<SharedPtr<Node>>(flatTree(n));
         return [root] {
             while ((*root)->getChildCount() != 0) (*root)->removeAt(0);
         };
     },
     true},
    {"a node with children inserted n levels deep", 256,
     [](unsigned int n) -> Run {
         const auto root = shared<SharedPtr<Node>>(deepTree(n));
         Node* deepest = root->get();
         while (deepest->getChildCount() != 0) deepest = &deepest->getChild(0);
         const auto moved = shared<SharedPtr<Node>>(flatTree(1));
         return [root, deepest, moved] {
             deepest->append(*moved);
             deepest->removeAt(0);
         };
     }},
    {"`depthFirst` through n nodes", 256,
     [](unsigned int n) -> Run {
         const auto root = shared<SharedPtr<Node>>(flatTree(n));
         return [root] {
             unsigned int count = 0;
             for (Node& node : (*root)->depthFirst()) count += node.getIndex();
             observe(count);
         };
     }},
    {"a tree of n children destroyed", 512,
     [](unsigned int n) -> Run {
         const auto root = shared<SharedPtr<Node>>(flatTree(n));
         return [root] { *root = SharedPtr<Node>(); };
     },
     true},
    {"a tree of n levels destroyed", 512,
     [](unsigned int n) -> Run {
         const auto root = shared<SharedPtr<Node>>(deepTree(n));
         return [root] { *root = SharedPtr<Node>(); };
     },
     true},
};

#if VORN_TEST_HAS_ASAN || VORN_TEST_HAS_TSAN // many times slower
constexpr unsigned int SIZES = 3, FACTOR = 4;
#else
constexpr unsigned int SIZES = 4, FACTOR = 4;
#endif

// Seconds of one run for n, the least of a few.
double secondsOf(const Operation& operation, unsigned int n) {
    constexpr int MEASUREMENTS = 3;
    constexpr std::clock_t LEAST = CLOCKS_PER_SEC / 5000;
    double least = HUGE_VAL;
    for (int i = 0; i < MEASUREMENTS; ++i) {
        const Run run = operation.prepare(n);
        if (!operation.isOnce && i == 0) run(); // into the caches
        unsigned int runs = 0;
        const std::clock_t start = std::clock();
        std::clock_t elapsed;
        do {
            run();
            ++runs;
            elapsed = std::clock() - start;
        } while (!operation.isOnce && elapsed < LEAST);
        least = std::min(least, static_cast<double>(std::max<std::clock_t>(elapsed, 1)) / CLOCKS_PER_SEC / runs);
    }
    return least;
}

struct Fit {
    double exponent;
    std::string times;
};

Fit fitOf(const Operation& operation) {
    double sumX = 0, sumY = 0, sumXX = 0, sumXY = 0;
    Fit fit;
    unsigned int n = operation.smallest;
    for (unsigned int i = 0; i < SIZES; ++i, n *= FACTOR) {
        const double seconds = secondsOf(operation, n);
        const double x = std::log(n), y = std::log(seconds);
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
        fit.times += " n = " + std::to_string(n) + ": " + std::to_string(seconds * 1e6) + " us;";
    }
    fit.exponent = (SIZES * sumXY - sumX * sumY) / (SIZES * sumXX - sumX * sumX);
    return fit;
}

// Exponents by operation, from the tables of the page.
std::map<std::string, int> documentedExponents() {
    std::ifstream page(VORN_GROWTH_PAGE);
    std::map<std::string, int> exponents;
    for (std::string line; std::getline(page, line);) {
        const std::size_t end = line.find(" | ");
        if (line.rfind("| ", 0) != 0 || end == std::string::npos) continue;
        const std::string name = line.substr(2, end - 2);
        if (name == "Operation" || name == "---") continue;
        EXPECT_TRUE(exponents.emplace(name, std::stoi(line.substr(end + 3))).second) << name << " stands there twice";
    }
    return exponents;
}

TEST(Growth, ThePageListsEachOperation) {
    auto documented = documentedExponents();
    for (const Operation& operation : OPERATIONS)
        EXPECT_EQ(documented.erase(operation.name), 1u) << operation.name << " is not in Documentation/Growth.md";
    for (const auto& row : documented) ADD_FAILURE() << row.first << " is documented, but not measured";
}

class GrowthTest : public testing::TestWithParam<Operation> {};

TEST_P(GrowthTest, StaysBelowTheDocumentedExponent) {
    constexpr double TOLERANCE = 0.35, LOOSENESS = 0.9;
    constexpr int ATTEMPTS = 4;
    const Operation& operation = GetParam();
    const auto documented = documentedExponents();
    const auto row = documented.find(operation.name);
    ASSERT_NE(row, documented.end()) << operation.name;
    Fit fit = fitOf(operation);
    for (int i = 1; i < ATTEMPTS && fit.exponent > row->second + TOLERANCE; ++i) {
        const Fit again = fitOf(operation);
        if (again.exponent < fit.exponent) fit = again;
    }
    RecordProperty("exponent", std::to_string(fit.exponent));
    EXPECT_LE(fit.exponent, row->second + TOLERANCE) << operation.name << ":" << fit.times;
    // A measurement that grows much more slowly does not measure what the page documents.
    EXPECT_GE(fit.exponent, row->second - LOOSENESS) << operation.name << ":" << fit.times;
}

INSTANTIATE_TEST_SUITE_P(Operations, GrowthTest, testing::ValuesIn(OPERATIONS));

} // namespace

int main(int argc, char** argv) {
#ifdef __GLIBC__
    // Fresh pages of large blocks would cost more than what is measured.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
#endif
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
