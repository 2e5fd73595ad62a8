// Links modules that are compiled with RTTI, without it, and without it in a shared library. What the one binds, the
// other finds.
#include "Headers/TypeInformation/Module.h"

#include <gtest/gtest.h>

namespace {

using namespace Vorn;

int called = 0;
void listen(int value) { called += value; }

const char* const KINDS[] = {"function", "method", "method of a SharedPtr", "method of a WeakPtr", "callable"};

template <class Check>
void forEachPair(Check&& check) {
    const Module modules[] = {ModuleWithRTTI(), ModuleWithoutRTTI(), LibraryWithoutRTTI()};
    for (const Module& a : modules) {
        for (const Module& b : modules) {
            SCOPED_TRACE(std::string(a.name) + " and " + b.name);
            check(a, b);
        }
    }
}

TEST(TypeInformation, IsInOneModule) {
    EXPECT_TRUE(ModuleWithRTTI().hasRTTI);
    EXPECT_FALSE(ModuleWithoutRTTI().hasRTTI);
    EXPECT_FALSE(LibraryWithoutRTTI().hasRTTI);
}

TEST(TypeInformation, DelegatesOfAllModulesAreEqual) {
    forEachPair([](const Module& a, const Module& b) {
        Targets targets;
        targets.function = &listen;
        const auto first = a.bind(targets), second = b.bind(targets);
        ASSERT_EQ(first.size(), std::size(KINDS));
        for (std::size_t i = 0; i < first.size(); ++i) {
            for (std::size_t j = 0; j < second.size(); ++j) {
                EXPECT_EQ(first[i] == second[j], i == j) << KINDS[i] << " and " << KINDS[j];
            }
            EXPECT_EQ(*first[i].getPOD().typeInfo == *second[i].getPOD().typeInfo, true) << KINDS[i];
        }
        EXPECT_EQ(a.hash(first), b.hash(second));
        EXPECT_EQ(a.hash(second), b.hash(first));
    });
}

TEST(TypeInformation, ListenersOfOneModuleAreFoundByTheOther) {
    forEachPair([](const Module& a, const Module& b) {
        Targets targets;
        targets.function = &listen;
        Signal signal;
        a.add(signal, targets);
        b.add(signal, targets); // moves those that are there
        EXPECT_EQ(signal.getDelegateCount(), std::size(KINDS));
        called = 0;
        signal(3);
        EXPECT_EQ(called, 3);
        EXPECT_EQ(targets.sum, 3);
        EXPECT_EQ(targets.object.sum, 3);
        EXPECT_EQ(targets.shared->sum, 6);
        EXPECT_EQ(b.remove(signal, targets), 2u);
        EXPECT_EQ(signal.getDelegateCount(), 2u);
    });
}

TEST(TypeInformation, FailuresOfAllModulesAreCaught) {
    for (const Module& module : {ModuleWithRTTI(), ModuleWithoutRTTI(), LibraryWithoutRTTI()}) {
        SCOPED_TRACE(module.name);
        EXPECT_THROW(module.raise(), Exception<1>);
        EXPECT_THROW(module.raise(), AllExceptions);
        EXPECT_THROW(module.raise(), std::exception);
    }
}

} // namespace
