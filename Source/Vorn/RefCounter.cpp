#include "Vorn/SharedObjects/RefCounter.h"

#include "RefCounterRelease.h"
#include "Vorn/Assert.h"

namespace Vorn {

namespace {

// Forces one exported definition of the inline function, for modules that do not inline it.
[[gnu::used]] bool (*const exportedValidRefCounter)(const RefCounter*) = &validRefCounter;

} // namespace

bool consistentRefCounters(const RefCounter* c, const RefCounter* o) {
    return !c || !o || c == o || !c->m_ptr || !o->m_ptr || c->m_ptr != o->m_ptr;
}

void assertValidAndConsistent(const RefCounter* c, const RefCounter* o) {
    VORN_INTERNAL_ASSERT(validRefCounter(c), "Invalid reference counter!");
    VORN_INTERNAL_ASSERT(validRefCounter(o), "Invalid reference counter!");
    VORN_INTERNAL_ASSERT(consistentRefCounters(c, o), "Multiple reference counter for the same object!");
}

void releaseUseCount(RefCounter* c) {
    VORN_INTERNAL_ASSERT(c && (c)->m_useCount > 0, "can't release when use count == 0");
    VornPrivate::releaseCheckedUseCount(c);
}

void releaseWeakCount(RefCounter* c) {
    if (!c) return;
    VORN_INTERNAL_ASSERT(c->m_weakCount, "can't release when weak count == 0");
    VornPrivate::releaseCheckedWeakCount(c);
}

} // namespace Vorn
