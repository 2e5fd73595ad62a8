// Delegates of every binding against a plain list: what they call, which are equal, and which references they hold.
#include "Vorn/SharedObjects/Delegate.h"

#include "Support/Stream.h"

#include <array>
#include <cstdint>
#include <vector>

namespace {

using Vorn::SharedPtr;

constexpr unsigned int DELEGATES = 5;
constexpr unsigned int TARGETS = 3;

struct Target {
    explicit Target(int targetValue) : value(targetValue) {}
    int add(int x) { return x + value; }
    void touch() { ++value; }
    int value;
};

int twice(int x) { return 2 * x; }

/// Fits into a delegate.
struct Small {
    int operator()(int x) const { return x - value; }
    int value;
};

/// Does not fit into a delegate, and is changed by calls.
struct Large {
    explicit Large(int largeValue) : value(largeValue) { ++s_alive; }
    Large(const Large& other) : value(other.value) { ++s_alive; }
    Large& operator=(const Large&) = delete;
    ~Large() { --s_alive; }
    int operator()(int x) { return x * ++value; }

    static inline int s_alive = 0;
    int value;
    std::array<int, 6> more{};
};

enum Kind { EMPTY, FUNCTION, METHOD, SHARED, WEAK, SMALL, LARGE, KINDS };

/// A target that may end: its value, and what holds it.
struct Life {
    int value = 0;
    bool isHeld = true; // by a handle
    int uses = 0;       // by delegates
    int weaks = 0;
    bool isAlive() const { return isHeld || uses > 0; }
};

/// What one delegate is bound to.
struct Bound {
    Kind kind = EMPTY;
    const void* object = nullptr; // identity; for SMALL null
    int value = 0;                // of SMALL
    std::size_t life = 0;         // of SHARED and WEAK, in m_lives; of LARGE, in m_larges
};

class Play {
public:
    using Delegate = Vorn::Delegate<int, int>;

    explicit Play(Stream stream) : m_stream(stream) {}

    void run() {
        for (unsigned int i = 0; i < TARGETS; ++i) makeTarget(i);
        while (!m_stream.ended()) {
            step();
            compare();
        }
        for (unsigned int i = 0; i < DELEGATES; ++i) {
            m_delegates[i].rebind(Delegate());
            bindModel(i, Bound());
        }
        compare();
        require(Large::s_alive == 0, "a callable is left behind");
    }

private:
    void makeTarget(unsigned int i) {
        const int value = static_cast<int>(m_lives.size()) * 3 + 1;
        m_handles[i] = Vorn::makeShared<Target>(value);
        m_current[i] = m_lives.size();
        m_lives.push_back({value});
    }

    void step() {
        const unsigned int choice = m_stream.next();
        const unsigned int first = choice % DELEGATES;
        const unsigned int second = choice / DELEGATES % DELEGATES;
        switch (m_stream.below(10)) {
        case 0:
        case 1:
        case 2: bind(first, static_cast<Kind>(choice / DELEGATES % KINDS), m_stream.next()); break;
        case 3:
            m_delegates[first] = m_delegates[second];
            bindModel(first, m_bound[second]);
            break;
        case 4:
            m_delegates[first].rebind(Delegate(m_delegates[second]));
            bindModel(first, m_bound[second]);
            break;
        case 5: call(first, static_cast<int>(choice)); break;
        case 6: tryCall(first, static_cast<int>(choice)); break;
        case 7: renew(choice % TARGETS); break;
        case 8: drop(choice % TARGETS); break;
        default: assignInReverse(choice % TARGETS, choice / TARGETS % TARGETS, choice & 0x40, choice & 0x80); break;
        }
    }

    void bind(unsigned int i, Kind kind, unsigned int choice) {
        const unsigned int target = choice % TARGETS;
        if ((kind == SHARED || kind == WEAK) && !m_handles[target]) kind = METHOD;
        Bound bound{kind, nullptr, 0, m_current[target]};
        switch (kind) {
        case FUNCTION: m_delegates[i].rebind(Delegate::bind<&twice>()); break;
        case METHOD:
            m_delegates[i].rebind(Delegate::bind<&Target::add>(m_plain));
            bound.object = &m_plain;
            break;
        case SHARED:
            m_delegates[i].rebind(Delegate::bindShared<&Target::add>(m_handles[target]));
            bound.object = m_handles[target].get();
            break;
        case WEAK:
            m_delegates[i].rebind(Delegate::bindWeak<&Target::add>(m_handles[target]));
            bound.object = m_handles[target].get();
            break;
        case SMALL:
            bound.value = static_cast<int>(choice % 4);
            m_delegates[i].rebind(Delegate::bindCallable(Small{bound.value}));
            break;
        case LARGE:
            bound.life = m_larges.size();
            m_larges.push_back({static_cast<int>(choice), 0});
            m_delegates[i].rebind(Delegate::bindCallable(Large(static_cast<int>(choice))));
            break;
        default: m_delegates[i].rebind(Delegate()); break;
        }
        bindModel(i, bound);
    }

    void count(const Bound& bound, int change) {
        if (bound.kind == SHARED) m_lives[bound.life].uses += change;
        if (bound.kind == WEAK) m_lives[bound.life].weaks += change;
        if (bound.kind == LARGE) m_larges[bound.life].second += change;
    }

    void bindModel(unsigned int i, Bound bound) {
        count(bound, 1);
        count(m_bound[i], -1);
        m_bound[i] = bound;
    }

    bool hasTarget(const Bound& bound) const {
        return bound.kind != EMPTY && (bound.kind != WEAK || m_lives[bound.life].isAlive());
    }

    int expectedResult(const Bound& bound, int x) {
        if (!hasTarget(bound)) return 0;
        switch (bound.kind) {
        case FUNCTION: return 2 * x;
        case METHOD: return x + m_plain.value;
        case SMALL: return x - bound.value;
        case LARGE: return x * ++m_larges[bound.life].first;
        default: return x + m_lives[bound.life].value;
        }
    }

    void call(unsigned int i, int x) {
        const int expected = expectedResult(m_bound[i], x);
        require((x % 2 ? m_delegates[i].call(x) : m_delegates[i](x)) == expected, "another result");
    }

    void tryCall(unsigned int i, int x) {
        const bool isCalled = hasTarget(m_bound[i]);
        const int expected = expectedResult(m_bound[i], x);
        const std::optional<int> result = m_delegates[i].tryCall(x);
        require(result.has_value() == isCalled && result.value_or(0) == expected, "another result of tryCall");
    }

    void drop(unsigned int target) {
        m_handles[target].reset();
        m_lives[m_current[target]].isHeld = false;
    }

    void renew(unsigned int target) {
        drop(target);
        makeTarget(target);
    }

    // Delegate<void, void> counts in reverse when it is assigned: one reference more to the old context, one less to
    // the new one.
    void assignInReverse(unsigned int oldTarget, unsigned int newTarget, bool isOldWeak, bool isNewWeak) {
        if (!m_handles[oldTarget] || !m_handles[newTarget]) return;
        const auto bound = [&](unsigned int target, bool isWeak) {
            return isWeak ? Vorn::Delegate<void, void>::bindWeak<&Target::touch>(m_handles[target])
                          : Vorn::Delegate<void, void>::bindShared<&Target::touch>(m_handles[target]);
        };
        const auto references = [&](unsigned int target, bool isWeak) {
            return isWeak ? m_handles[target].getWeakCount() : m_handles[target].getUseCount();
        };
        Vorn::Delegate<void, void> left = bound(oldTarget, isOldWeak);
        const Vorn::Delegate<void, void> right = bound(newTarget, isNewWeak);
        const Vorn::DelegatePOD oldRecord = left.getPOD();
        const int oldReferences = references(oldTarget, isOldWeak);
        const int newReferences = references(newTarget, isNewWeak);
        left = right;
        if (oldTarget == newTarget && isOldWeak == isNewWeak) {
            require(references(oldTarget, isOldWeak) == oldReferences, "an equal delegate counts");
            return;
        }
        require(left == right, "an assigned delegate differs");
        require(references(oldTarget, isOldWeak) == oldReferences + 1, "the old context has another count");
        require(references(newTarget, isNewWeak) == newReferences - 1, "the new context has another count");
        for (int i = 0; i < 2; ++i) {
            oldRecord.contextAddRef(oldRecord.context, Vorn::DELEGATE_RELEASE_REF);
            right.getPOD().contextAddRef(right.getPOD().context, Vorn::DELEGATE_ADD_REF);
        }
        left();
        m_lives[m_current[newTarget]].value += 1;
    }

    bool areEqual(const Bound& a, const Bound& b) const {
        if (a.kind != b.kind) return false;
        if (a.kind == EMPTY) return true;
        if (a.kind == SMALL) return a.value == b.value;
        if (a.kind == LARGE) return a.life == b.life;
        return a.object == b.object;
    }

    void compare() {
        for (unsigned int i = 0; i < TARGETS; ++i) {
            const Life& life = m_lives[m_current[i]];
            if (!m_handles[i]) continue;
            require(m_handles[i].getUseCount() == 1 + life.uses, "another number of uses");
            require(m_handles[i].getWeakCount() == life.weaks, "another number of weak references");
            require(m_handles[i]->value == life.value, "another value");
        }
        int larges = 0;
        for (const auto& large : m_larges) larges += large.second > 0;
        require(Large::s_alive == larges, "another number of callables");
        for (unsigned int i = 0; i < DELEGATES; ++i) {
            const Bound& bound = m_bound[i];
            const Delegate& delegate = m_delegates[i];
            require(delegate.isNull() == (bound.kind == EMPTY), "another state");
            require(delegate.isNotNull() != delegate.isNull() && bool(delegate) != delegate.isNull(),
                    "states disagree");
            require(delegate.isExpired() == (bound.kind == WEAK && !hasTarget(bound)), "another life of the target");
            for (unsigned int j = 0; j <= i; ++j) {
                require((delegate == m_delegates[j]) == areEqual(bound, m_bound[j]), "equality differs");
                require((delegate != m_delegates[j]) != (delegate == m_delegates[j]), "inequality is no negation");
            }
        }
    }

    Stream m_stream;
    Target m_plain{77};
    std::vector<Life> m_lives;                    // of all targets that were made
    std::vector<std::pair<int, int>> m_larges;    // value and references of each large callable
    std::array<std::size_t, TARGETS> m_current{}; // the life of each handle's target, in m_lives
    std::array<SharedPtr<Target>, TARGETS> m_handles;
    std::array<Delegate, DELEGATES> m_delegates;
    std::array<Bound, DELEGATES> m_bound;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Play(Stream(data, size)).run();
    return 0;
}
