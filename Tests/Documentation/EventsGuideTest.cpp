// Runs the rows of the table in Documentation/Events.md, which has the expected results, and the code of the page.
#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/ResultEvent.h"

#include "Support/GuidePage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace Vorn;

struct Scene;

// A listener that writes its letter down, and acts once.
struct Voice : DynamicObject {
    Voice(Scene& voiceScene, char letter) : scene(&voiceScene), name(letter) {}
    void say();
    Scene* scene;
    char name;
};

struct Owner {
    Event<> event;
};

struct Scene {
    Scene() {
        for (const char name : {'a', 'b', 'c', 'n'}) voices[name] = makeShared<Voice>(*this, name);
    }

    void add(char name, int priority) {
        held += held.find(name) == std::string::npos ? std::string(1, name) : "";
        connections[name] = owner->event.add<&Voice::say>(voices[name], priority);
    }
    void addWeak(char name, int priority) {
        held += name;
        connections[name] = owner->event.add<&Voice::say>(WeakPtr<Voice>(voices[name]), priority);
    }
    void remove(char name) { EXPECT_TRUE(owner->event.remove<&Voice::say>(voices[name])); }

    // The targets that the event held and does not hold any more.
    std::string released() {
        std::string result;
        std::sort(held.begin(), held.end());
        for (const char name : held) {
            const SharedPtr<Voice>& voice = voices[name];
            if (!voice || (voice.getUseCount() == 1 && voice.getWeakCount() == 0)) result += name;
        }
        return result;
    }

    std::string call() {
        said.clear();
        if (owner) {
            try {
                owner->event();
            } catch (const std::runtime_error&) {
            }
        }
        return said;
    }

    std::unique_ptr<Owner> owner = std::make_unique<Owner>();
    std::map<char, SharedPtr<Voice>> voices;
    std::map<char, Connection> connections;
    std::function<void(Scene&)> action;
    std::string said, held, releasedAtOnce;
};

void Voice::say() {
    Scene& now = *scene;
    const char own = name;
    now.said += own;
    if (own != 'b' || !now.action) return;
    const auto action = std::exchange(now.action, nullptr);
    struct Measure {
        ~Measure() { scene.releasedAtOnce = scene.released(); }
        Scene& scene;
    } measure{now};
    action(now);
}

constexpr int LOW = -5, OWN = 1, HIGH = 5;

struct Row {
    const char* name;
    std::function<void(Scene&)> action;
    std::function<void(Scene&)> prepare = nullptr;
};

const std::vector<Row>& rows() {
    static const std::vector<Row> all = {
        {"nothing", [](Scene&) {}},
        {"removes itself", [](Scene& s) { s.remove('b'); }},
        {"removes the earlier `a`", [](Scene& s) { s.remove('a'); }},
        {"removes the later `c`", [](Scene& s) { EXPECT_TRUE(s.connections['c'].disconnect()); }},
        {"adds `n` and removes it",
         [](Scene& s) {
             s.add('n', HIGH);
             s.remove('n');
         }},
        {"removes all", [](Scene& s) { s.owner->event.clear(); }},
        {"adds `n` and removes all",
         [](Scene& s) {
             s.add('n', HIGH);
             s.owner->event.clear();
         }},
        {"removes all and adds `n`",
         [](Scene& s) {
             s.owner->event.clear();
             s.add('n', HIGH);
         }},
        {"adds `n` with a lower priority", [](Scene& s) { s.add('n', LOW); }},
        {"adds `n` with a lower priority, and removes `c` and itself",
         [](Scene& s) {
             s.add('n', LOW);
             s.remove('c');
             s.remove('b');
         }},
        {"adds `n` with its own priority", [](Scene& s) { s.add('n', OWN); }},
        {"adds `n` with a higher priority", [](Scene& s) { s.add('n', HIGH); }},
        {"adds itself again with its priority", [](Scene& s) { s.add('b', OWN); }},
        {"adds itself again with a higher priority", [](Scene& s) { s.add('b', HIGH); }},
        {"adds `a` again with a higher priority", [](Scene& s) { s.add('a', HIGH); }},
        {"adds `c` again with a lower priority", [](Scene& s) { s.add('c', LOW); }},
        {"adds `c` again with a lower priority and calls the event",
         [](Scene& s) {
             s.add('c', LOW);
             s.owner->event();
         }},
        {"adds `a` again and then `n`, both with a higher priority",
         [](Scene& s) {
             s.add('a', HIGH);
             s.add('n', HIGH);
         }},
        {"adds `n` with a higher priority, and then `a` and `c` again",
         [](Scene& s) {
             for (const char name : {'n', 'a', 'c'}) s.add(name, HIGH);
         }},
        {"adds `n` with a higher priority and again with a lower one",
         [](Scene& s) {
             s.add('n', HIGH);
             s.add('n', LOW);
         }},
        {"adds `n` with a lower priority, again with a higher one, and calls the event",
         [](Scene& s) {
             s.add('n', LOW);
             s.add('n', HIGH);
             s.owner->event();
         }},
        {"removes `c` and adds it again",
         [](Scene& s) {
             s.remove('c');
             s.add('c', 2);
         }},
        {"removes itself and adds itself again",
         [](Scene& s) {
             s.remove('b');
             s.add('b', OWN);
         }},
        {"is called once, by `once`", [](Scene& s) { EXPECT_FALSE(s.connections['b']); },
         [](Scene& s) { s.owner->event.once<&Voice::say>(s.voices['b'], OWN); }},
        {"blocks `a` and `c`",
         [](Scene& s) {
             s.connections['a'].block();
             s.connections['c'].block();
         }},
        {"disables the event", [](Scene& s) { s.owner->event.disable(); }},
        {"disables the event and calls it",
         [](Scene& s) {
             s.owner->event.disable();
             s.owner->event();
         }},
        {"stops the call", [](Scene& s) { s.owner->event.stop(); }},
        {"throws", [](Scene&) { throw std::runtime_error("row"); }},
        {"adds `n` with a higher priority and throws",
         [](Scene& s) {
             s.add('n', HIGH);
             throw std::runtime_error("row");
         }},
        {"calls the event", [](Scene& s) { s.owner->event(); }},
        {"removes itself and calls the event",
         [](Scene& s) {
             s.remove('b');
             s.owner->event();
         }},
        {"removes `c` and calls the event",
         [](Scene& s) {
             s.remove('c');
             s.owner->event();
         }},
        {"adds `n` with a higher priority and calls the event",
         [](Scene& s) {
             s.add('n', HIGH);
             s.owner->event();
         }},
        {"calls the event and then stops",
         [](Scene& s) {
             s.owner->event();
             s.owner->event.stop();
         }},
        {"moves the event to another one",
         [](Scene& s) {
             auto moved = std::make_unique<Owner>();
             moved->event = std::move(s.owner->event);
             s.owner = std::move(moved);
         }},
        {"assigns a new event", [](Scene& s) { s.owner->event = Event<>(); }},
        {"destroys the event", [](Scene& s) { s.owner.reset(); }},
        {"destroys the owner of the event, which it listens for",
         [](Scene& s) {
             const auto owner = std::move(s.owner); // a listener in its own owner's destructor
         }},
        {"releases the object of `c`, which is weak", [](Scene& s) { s.voices['c'].reset(); },
         [](Scene& s) {
             s.remove('c');
             s.held.erase(s.held.find('c'), 1);
             s.addWeak('c', 2);
         }},
    };
    return all;
}

std::vector<std::vector<std::string>> pageRows() {
    std::ifstream page(VORN_EVENTS_PAGE);
    EXPECT_TRUE(page) << VORN_EVENTS_PAGE;
    std::vector<std::vector<std::string>> result;
    bool isInTable = false;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("| What `b` does |", 0) == 0) {
            isInTable = true;
            std::getline(page, line);
            continue;
        }
        isInTable = isInTable && line.rfind("| ", 0) == 0;
        if (!isInTable) continue;
        std::vector<std::string> cells;
        for (std::size_t start = 2, end; (end = line.find(" |", start)) != std::string::npos; start = end + 3) {
            const std::string cell = line.substr(start, end - start);
            cells.push_back(cell == "\xE2\x80\x94" ? "" : cell);
        }
        EXPECT_EQ(cells.size(), 6u) << line;
        cells.resize(6);
        result.push_back(cells);
    }
    return result;
}

TEST(EventsGuide, EachRowOfTheTableHolds) {
    const auto page = pageRows();
    ASSERT_EQ(page.size(), rows().size());
    for (std::size_t i = 0; i < page.size(); ++i) {
        const Row& row = rows()[i];
        SCOPED_TRACE(row.name);
        ASSERT_EQ(page[i][0], row.name);
        Scene scene;
        scene.add('a', 0);
        scene.add('b', OWN);
        scene.add('c', 2);
        if (row.prepare) row.prepare(scene);
        scene.action = row.action;
        EXPECT_EQ(scene.call(), page[i][1]);
        EXPECT_EQ(scene.releasedAtOnce, page[i][4]);
        EXPECT_EQ(scene.released(), page[i][5]);
        EXPECT_EQ(scene.call(), page[i][2]);
        EXPECT_EQ(scene.owner ? std::to_string(scene.owner->event.getDelegateCount()) : "0", page[i][3]);
    }
}

struct Board {
    void show(int points) { shown = points; }
    int shown = 0;
};
int logged = 0;
void log(int points) { logged += points; }

TEST(EventsGuide, TheCodeOfThePageRuns) {
    Board board;
    int total = 0;
    static int calls;
    calls = 0;
    Event<int> scored;
    scored.add<&Board::show>(board);
    scored.add([&total](int points) { total += points; }, -1);
    scored(3);
    EXPECT_EQ(board.shown + total, 6);

    Connection connection = scored.add([] { ++calls; });
    connection.block();
    connection.disconnect();
    scored.remove<&Board::show>(board);
    scored.removeAll(board);
    ScopedConnection scoped = scored.add(&log);
    scored.once([] { ++calls; });
    scored(4);
    scored(4);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(logged, 8);
    EXPECT_EQ(board.shown, 3);

    auto shared = makeShared<Board>();
    scored.addWhileAlive(shared, [b = shared.get()](int points) { b->show(points); });
    scored(5);
    EXPECT_EQ(shared->shown, 5);
    shared.reset();
    scored(5);

    ResultEvent<bool, int> asked;
    asked.add([](int door) { return door != 3; });
    const std::vector<bool> answers = asked.collect(3);
    const auto refusal = asked.callUntil([](bool answer) { return !answer; }, 3);
    EXPECT_EQ(answers, std::vector<bool>{false});
    EXPECT_TRUE(refusal);
}

TEST(EventsGuide, TheSentencesOfThePageHold) {
    Event<int> event;
    int calls = 0;
    Connection connection = event.add(&log);
    connection.block();
    event.once(&log);
    EXPECT_TRUE(connection.isBlocked()) << "blocking survives adding again";
    connection.unblock();
    logged = 0;
    event(1);
    event(1);
    EXPECT_EQ(logged, 1) << "the last of add and once decides";

    {
        ScopedConnection first = event.add(&log);
        const ScopedConnection second = event.add(&log);
        EXPECT_EQ(event.getDelegateCount(), 1u);
        EXPECT_TRUE(first.disconnect());
        EXPECT_FALSE(second.isConnected());
        EXPECT_EQ(first.get(), Connection()) << "a connection to nothing";
    }
    event.add(std::function<void(int)>());
    EXPECT_THROW(event(1), std::bad_function_call);
    event.clear();

    Event<Board*, int> shown;
    shown.add(&Board::show);
    shown.add(&Board::show);
    EXPECT_EQ(shown.getDelegateCount(), 2u);

    event.add([&calls] { ++calls; });
    event.disable();
    Event<int> other = std::move(event);
    EXPECT_TRUE(other.isDisabled() && !event.isDisabled());
    swap(event, other);
    EXPECT_TRUE(event.isDisabled() && !other.isDisabled());
    event(1);
    EXPECT_EQ(calls, 0);
}

TEST(EventsGuide, ATargetIsReleasedAtTheEndOfTheCallThatCallsIt) {
    Event<int> event;
    struct Target {
        Event<int>& event;
        void remove() { EXPECT_EQ(event.removeAll(this), 1u); }
    };
    auto target = makeShared<Target>(Target{event});
    const WeakPtr<Target> weak(target);
    event.add<&Target::remove>(target, 1);
    target.reset();
    event.add([&](int depth) {
        if (depth == 0) return;
        event(depth - 1);
        EXPECT_TRUE(weak.lock() == nullptr) << "only the inner call called it";
    });
    event(1);

    target = makeShared<Target>(Target{event});
    const WeakPtr<Target> again(target);
    event.clear();
    event.add<&Target::remove>(target);
    target.reset();
    event.add([&] { EXPECT_TRUE(again.lock() != nullptr) << "its call is running"; }, 1);
    event(0);
    EXPECT_TRUE(again.lock() == nullptr);
}

TEST(EventsGuide, EachBlockOfCodeIsCompiledHere) {
    expectCodeStandsIn(VORN_EVENTS_SOURCE, GuidePage(VORN_EVENTS_PAGE));
}

} // namespace
