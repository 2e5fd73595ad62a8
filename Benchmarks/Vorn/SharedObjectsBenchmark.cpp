// Shared pointers and events, compared with other libraries in the same run, in a program with threads.
#include "Support/Measure.h"

#include <Vorn/SharedObjects/Event.h>

#include <benchmark/benchmark.h>
#include <boost/signals2.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

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

// The object is reached by each copy, so that a copy without an object cannot pass.
template <class Pointer>
void copyAndDestroy(Run& run, const Pointer& pointer) {
    run.expect(hasThreads, true);
    run.expect(Pointer(pointer).get(), pointer.get());
    for (auto _ : run.loop()) {
        Pointer copy(pointer);
        benchmark::DoNotOptimize(copy.get());
    }
    run.expect(pointer->value, 1);
}

template <class Make>
void makeAndDestroy(Run& run, Make make) {
    run.expect(make()->value, 1);
    for (auto _ : run.loop()) benchmark::DoNotOptimize(make().get());
}

template <class Make>
bool addCopy(const std::string& pointer, Make make) {
    return addBenchmark("Objects/copy a pointer/" + pointer, 1, [=](Run& run) { copyAndDestroy(run, make()); });
}

template <class Make>
bool addMake(const std::string& maker, Make make) {
    return addBenchmark("Objects/make an object/" + maker, 1, [=](Run& run) { makeAndDestroy(run, make); });
}

[[maybe_unused]] const bool pointers =
    addCopy("Vorn::SharedPtr", [] { return Vorn::makeShared<Object>(); }) &&
    addCopy("Vorn::SharedPtr, thread-safe", [] { return Vorn::makeSharedThreadsafe<Object>(); }) &&
    addCopy("std::shared_ptr", [] { return std::make_shared<Object>(); }) &&
    addCopy("boost::intrusive_ptr", [] { return boost::intrusive_ptr<IntrusiveObject>(new IntrusiveObject); }) &&
    addMake("Vorn::makeShared", [] { return Vorn::makeShared<Object>(); }) &&
    addMake("std::make_shared", [] { return std::make_shared<Object>(); }) &&
    addMake("std::shared_ptr of new", [] { return std::shared_ptr<Object>(new Object); });

// Dispatch. Each listener adds to its own sum.

struct Counter {
    void hear() { ++sum; }
    long sum = 0;
};

class Audience {
public:
    explicit Audience(const Run& run) : m_counters(run.size()) {}
    std::vector<Counter>& counters() { return m_counters; }

    void expectAllHeard(Run& run) const {
        for (const Counter& counter : m_counters) run.expect(counter.sum, run.iterations());
    }

private:
    std::vector<Counter> m_counters;
};

void dispatchVornEvent(Run& run) {
    Audience audience(run);
    Vorn::Event<> event;
    for (Counter& counter : audience.counters()) event.add(Vorn::Event<>::Listener::bind<&Counter::hear>(counter));
    for (auto _ : run.loop()) event();
    audience.expectAllHeard(run);
}

void dispatchStdFunctions(Run& run) {
    Audience audience(run);
    std::vector<std::function<void()>> functions;
    for (Counter& counter : audience.counters()) functions.push_back([&counter] { counter.hear(); });
    for (auto _ : run.loop()) {
        for (const std::function<void()>& function : functions) function();
        benchmark::ClobberMemory();
    }
    audience.expectAllHeard(run);
}

void dispatchBoostSignal(Run& run) {
    Audience audience(run);
    boost::signals2::signal<void()> signal;
    for (Counter& counter : audience.counters()) signal.connect([&counter] { counter.hear(); });
    for (auto _ : run.loop()) signal();
    audience.expectAllHeard(run);
}

[[maybe_unused]] const bool dispatches =
    addBenchmarks("Events/dispatch/Vorn::Event", {1, 10, 100, 1000}, dispatchVornEvent) &&
    addBenchmarks("Events/dispatch/vector of std::function", {1, 10, 100, 1000}, dispatchStdFunctions) &&
    addBenchmarks("Events/dispatch/boost::signals2", {1, 10, 100, 1000}, dispatchBoostSignal);

// Removes one of the listeners and adds it again.

void removeAndAddVornEvent(Run& run) {
    Audience audience(run);
    Vorn::Event<> event;
    for (Counter& counter : audience.counters()) event.add(Vorn::Event<>::Listener::bind<&Counter::hear>(counter));
    std::size_t next = 0;
    for (auto _ : run.loop()) {
        const auto listener = Vorn::Event<>::Listener::bind<&Counter::hear>(audience.counters()[next]);
        event.remove(listener);
        event.add(listener);
        next = (next + 37) % audience.counters().size();
    }
    run.expect(event.getDelegateCount(), audience.counters().size());
    event();
    for (const Counter& counter : audience.counters()) run.expect(counter.sum, 1);
}

// Adding an existing listener moves it, so one call is enough.
void addAgainVornEvent(Run& run) {
    Audience audience(run);
    Vorn::Event<> event;
    for (Counter& counter : audience.counters()) event.add(Vorn::Event<>::Listener::bind<&Counter::hear>(counter));
    std::size_t next = 0;
    for (auto _ : run.loop()) {
        event.add(Vorn::Event<>::Listener::bind<&Counter::hear>(audience.counters()[next]));
        next = (next + 37) % audience.counters().size();
    }
    run.expect(event.getDelegateCount(), audience.counters().size());
    event();
    for (const Counter& counter : audience.counters()) run.expect(counter.sum, 1);
}

void removeAndAddBoostSignal(Run& run) {
    Audience audience(run);
    boost::signals2::signal<void()> signal;
    std::vector<boost::signals2::connection> connections;
    for (Counter& counter : audience.counters()) connections.push_back(signal.connect([&counter] { counter.hear(); }));
    std::size_t next = 0;
    for (auto _ : run.loop()) {
        Counter& counter = audience.counters()[next];
        connections[next].disconnect();
        connections[next] = signal.connect([&counter] { counter.hear(); });
        next = (next + 37) % audience.counters().size();
    }
    run.expect(signal.num_slots(), audience.counters().size());
    signal();
    for (const Counter& counter : audience.counters()) run.expect(counter.sum, 1);
}

[[maybe_unused]] const bool changes =
    addBenchmarks("Events/remove and add/Vorn::Event", {1, 10, 100, 1000}, removeAndAddVornEvent) &&
    addBenchmarks("Events/remove and add/boost::signals2", {1, 10, 100, 1000}, removeAndAddBoostSignal) &&
    addBenchmarks("Events/add again/Vorn::Event", {1, 10, 100, 1000}, addAgainVornEvent);

} // namespace
