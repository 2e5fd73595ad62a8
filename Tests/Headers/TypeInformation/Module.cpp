// Compiled once for each module; VORN_MODULE is the name of its function.
#include "Headers/TypeInformation/Module.h"

#include <functional>

#define VORN_TEXT_OF(name) VORN_TEXT_OF_EXPANDED(name)
#define VORN_TEXT_OF_EXPANDED(name) #name

namespace {

std::vector<Signal::Listener> bind(Targets& targets) {
    using Listener = Signal::Listener;
    return {Listener(targets.function), Listener::bind<&Target::take>(targets.object),
            Listener::bindShared<&Target::take>(targets.shared), Listener::bindWeak<&Target::take>(targets.shared),
            Listener::bindCallable(Adder{&targets.sum})};
}

std::vector<std::size_t> hash(const std::vector<Signal::Listener>& listeners) {
    std::vector<std::size_t> hashes;
    for (const Signal::Listener& listener : listeners) hashes.push_back(std::hash<Signal::Listener>()(listener));
    return hashes;
}

void add(Signal& signal, Targets& targets) {
    for (const Signal::Listener& listener : bind(targets)) signal.add(listener);
}

unsigned int remove(Signal& signal, Targets& targets) {
    return unsigned(signal.remove<&Target::take>(targets.object)) +
           unsigned(signal.remove<&Target::take>(targets.shared));
}

void raise() { VORN_ASSERT(false, "raised!", "Module::raise"); }

} // namespace

Module VORN_MODULE() {
#if defined(__cpp_rtti)
    const bool hasRTTI = true;
#else
    const bool hasRTTI = false;
#endif
    return {VORN_TEXT_OF(VORN_MODULE), hasRTTI, &bind, &hash, &add, &remove, &raise};
}
