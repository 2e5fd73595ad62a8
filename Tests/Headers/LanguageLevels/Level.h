// What a module that is compiled at one language level sees of the library, and what it hands to a module of another.
#pragma once

#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/SharedPtr.h"
#include "Vorn/String/String.h"

#include <string>
#include <utility>
#include <vector>

/// An object that both modules use.
struct SharedCounter : Vorn::DynamicObject {
    void add(int value) { sum += value; }
    int sum = 0;
};

using Signal = Vorn::Event<int>;

/// The operations of one module. Each is compiled at the level of its module, with what it inlines from the headers.
struct Level {
    long standard;                                                         ///< the value of __cplusplus
    std::vector<std::pair<std::string, std::string>> (*facts)();           ///< sizes, properties and results, by name
    Signal::Listener (*listenerOf)(const Vorn::SharedPtr<SharedCounter>&); ///< bound to SharedCounter::add
    void (*call)(Signal&, int);
    Vorn::SharedPtr<SharedCounter> (*make)();
    Vorn::String (*join)(const Vorn::String&, const Vorn::String&);
    void (*raise)(); ///< throws `Exception<1>` by an assertion in a function of the module
};

Level levelOfCpp17();
Level levelOfCpp20();
