// Shared pointers and events, compared with other libraries in the same run, in a program with threads.
#include <Vorn/SharedObjects/Event.h>

#include <benchmark/benchmark.h>
#include <boost/signals2.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

void expect(bool correct, const char* what) {
    if (!correct) throw std::runtime_error(std::string("wrong answer of ") + what);
}

// The standard library uses no atomic counts until a program has started a thread; games have many threads.
const bool hasThreads = [] {
    std::thread([] {}).join();
    return true;
}();

// Copy and destroy.

struct Object {
    int value = 1;
};
struct IntrusiveObject : boost::intrusive_ref_counter<IntrusiveObject> {
    int value = 1;
};

template <class Pointer>
void copyAndDestroy(benchmark::State& state, const Pointer& pointer) {
    for (auto _ : state) {
        Pointer copy(pointer);
        benchmark::DoNotOptimize(copy.get());
    }
    expect(hasThreads && pointer->value == 1, "copyAndDestroy");
}

BENCHMARK_CAPTURE(copyAndDestroy, Vorn::SharedPtr, Vorn::makeShared<Object>());
BENCHMARK_CAPTURE(copyAndDestroy, std::shared_ptr, std::make_shared<Object>());
BENCHMARK_CAPTURE(copyAndDestroy, boost::intrusive_ptr, boost::intrusive_ptr<IntrusiveObject>(new IntrusiveObject));
BENCHMARK_CAPTURE(copyAndDestroy, Vorn::SharedPtr_threadsafe, Vorn::makeSharedThreadsafe<Object>());

template <class Make>
void makeAndDestroy(benchmark::State& state, Make make) {
    for (auto _ : state) benchmark::DoNotOptimize(make().get());
}

BENCHMARK_CAPTURE(makeAndDestroy, Vorn::makeShared, [] { return Vorn::makeShared<Object>(); });
BENCHMARK_CAPTURE(makeAndDestroy, std::make_shared, [] { return std::make_shared<Object>(); });
BENCHMARK_CAPTURE(makeAndDestroy, std::shared_ptr_of_new, [] { return std::shared_ptr<Object>(new Object); });

// Dispatch. Each listener adds to its own sum.

struct Counter {
    void hear() { ++sum; }
    long sum = 0;
};

class Audience {
public:
    explicit Audience(const benchmark::State& state) : m_counters(static_cast<std::size_t>(state.range(0))) {}
    std::vector<Counter>& counters() { return m_counters; }

    void expectAllHeard(const benchmark::State& state) const {
        for (const Counter& counter : m_counters)
            expect(counter.sum == static_cast<long>(state.iterations()), "dispatch");
    }

private:
    std::vector<Counter> m_counters;
};

void dispatchVornEvent(benchmark::State& state) {
    Audience audience(state);
    Vorn::Event<> event;
    for (Counter& counter : audience.counters()) event.add(Vorn::Event<>::Listener::bind<&Counter::hear>(counter));
    for (auto _ : state) event();
    audience.expectAllHeard(state);
}

void dispatchStdFunctions(benchmark::State& state) {
    Audience audience(state);
    std::vector<std::function<void()>> functions;
    for (Counter& counter : audience.counters()) functions.push_back([&counter] { counter.hear(); });
    for (auto _ : state) {
        for (const std::function<void()>& function : functions) function();
        benchmark::ClobberMemory();
    }
    audience.expectAllHeard(state);
}

void dispatchBoostSignal(benchmark::State& state) {
    Audience audience(state);
    boost::signals2::signal<void()> signal;
    for (Counter& counter : audience.counters()) signal.connect([&counter] { counter.hear(); });
    for (auto _ : state) signal();
    audience.expectAllHeard(state);
}

BENCHMARK(dispatchVornEvent)->Arg(1)->Arg(10)->Arg(100);
BENCHMARK(dispatchStdFunctions)->Arg(1)->Arg(10)->Arg(100);
BENCHMARK(dispatchBoostSignal)->Arg(1)->Arg(10)->Arg(100);

// Removes one of the listeners and adds it again.

void removeAndAddVornEvent(benchmark::State& state) {
    Audience audience(state);
    Vorn::Event<> event;
    for (Counter& counter : audience.counters()) event.add(Vorn::Event<>::Listener::bind<&Counter::hear>(counter));
    std::size_t next = 0;
    for (auto _ : state) {
        const auto listener = Vorn::Event<>::Listener::bind<&Counter::hear>(audience.counters()[next]);
        event.remove(listener);
        event.add(listener);
        next = (next + 37) % audience.counters().size();
    }
    expect(event.getDelegateCount() == audience.counters().size(), "removeAndAdd");
}

// Adding an existing listener moves it, so one call is enough.
void addAgainVornEvent(benchmark::State& state) {
    Audience audience(state);
    Vorn::Event<> event;
    for (Counter& counter : audience.counters()) event.add(Vorn::Event<>::Listener::bind<&Counter::hear>(counter));
    std::size_t next = 0;
    for (auto _ : state) {
        event.add(Vorn::Event<>::Listener::bind<&Counter::hear>(audience.counters()[next]));
        next = (next + 37) % audience.counters().size();
    }
    expect(event.getDelegateCount() == audience.counters().size(), "addAgain");
}

void removeAndAddBoostSignal(benchmark::State& state) {
    Audience audience(state);
    boost::signals2::signal<void()> signal;
    std::vector<boost::signals2::connection> connections;
    for (Counter& counter : audience.counters()) connections.push_back(signal.connect([&counter] { counter.hear(); }));
    std::size_t next = 0;
    for (auto _ : state) {
        Counter& counter = audience.counters()[next];
        connections[next].disconnect();
        connections[next] = signal.connect([&counter] { counter.hear(); });
        next = (next + 37) % audience.counters().size();
    }
    expect(signal.num_slots() == audience.counters().size(), "removeAndAdd");
}

BENCHMARK(removeAndAddVornEvent)->Arg(100);
BENCHMARK(addAgainVornEvent)->Arg(100);
BENCHMARK(removeAndAddBoostSignal)->Arg(100);

} // namespace
