// What a module that is compiled with or without RTTI binds and finds, for modules of either kind.
#pragma once

#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/SharedPtr.h"

#include <cstddef>
#include <vector>

/// An object that listens.
struct Target {
    void take(int value) { sum += value; }
    int sum = 0;
};

/// A callable that a delegate stores.
struct Adder {
    void operator()(int value) const { *sum += value; }
    int* sum;
};

using Signal = Vorn::Event<int>;

/// What the bindings of a module refer to.
struct Targets {
    Target object;
    Vorn::SharedPtr<Target> shared = Vorn::makeShared<Target>();
    void (*function)(int) = nullptr;
    int sum = 0;
};

/// The operations of one module. Each is compiled with the module's flags, with what it inlines from the headers.
struct Module {
    const char* name;
    bool hasRTTI;
    std::vector<Signal::Listener> (*bind)(Targets&); ///< a listener of each kind
    std::vector<std::size_t> (*hash)(const std::vector<Signal::Listener>&);
    void (*add)(Signal&, Targets&);            ///< the listeners of `bind`
    unsigned int (*remove)(Signal&, Targets&); ///< those of methods; returns their number
    void (*raise)();                           ///< throws `Exception<1>` by an assertion
};

/// The modules.
/// @{
Module ModuleWithRTTI();
Module ModuleWithoutRTTI();
__attribute__((visibility("default"))) Module LibraryWithoutRTTI();
/// @}
