// The order in which events call their listeners, which change the events meanwhile.
#include "Digest/Digest.h"
#include "Support/Random.h"

#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/ResultEvent.h"

#include <algorithm>
#include <vector>

namespace {

struct Game {
    explicit Game(Digest& calledDigest) : digest(calledDigest) {}

    void add() {
        const int id = next++;
        const int priority = static_cast<int>(random.below(7)) - 3;
        const auto listener = [this, id](int value) { called(id, value); };
        connections.push_back(random.below(5) == 0 ? event.once(listener, priority) : event.add(listener, priority));
    }

    void remove() {
        if (connections.empty()) return;
        const unsigned int index = random.below(static_cast<unsigned int>(connections.size()));
        digest.add(event.remove(connections[index]));
        connections.erase(connections.begin() + static_cast<std::ptrdiff_t>(index));
    }

    void called(int id, int value) {
        digest.addAll(id, value, event.getDelegateCount(), event.isDispatching());
        switch (random.below(12)) {
        case 0: add(); break;
        case 1: remove(); break;
        case 2:
            if (depth < 3) call(value + 1);
            break;
        case 3: event.stop(); break;
        case 4:
            if (!connections.empty()) connections.front().block();
            break;
        case 5:
            if (!connections.empty()) connections.front().unblock();
            break;
        default: break;
        }
    }

    void call(int value) {
        ++depth;
        event(value);
        --depth;
        digest.add(-value);
    }

    Digest& digest;
    Random random{14};
    Vorn::Event<int> event;
    std::vector<Vorn::Connection> connections;
    int next = 0;
    int depth = 0;
};

} // namespace

void digestEvents(Digest& digest) {
    Game game(digest);
    for (int round = 0; round < 400; ++round) {
        for (unsigned int i = game.random.below(4); i-- > 0;) game.add();
        if (game.connections.size() > 12) game.event.clear(), game.connections.clear();
        if (game.random.below(9) == 0) game.event.disable();
        game.call(round);
        game.event.enable();
        if (game.random.below(3) == 0) game.remove();
    }

    Vorn::ResultEvent<int, int> results;
    for (int i = 0; i < 9; ++i) results.add([i](int value) { return value * 10 + i; }, (i * 5) % 7);
    for (const int result : results.collect(4)) digest.add(result);
}
