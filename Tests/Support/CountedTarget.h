// Records and contexts whose every change the tests can follow.
#pragma once

#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Vorn/SharedObjects/DelegateBase.h"
#include "Vorn/SharedObjects/RefCounter.h"

#include <string>
#include <vector>

/// What happened, in order.
inline std::vector<std::string>& journal() {
    static std::vector<std::string> entries;
    return entries;
}

inline std::vector<std::string> takeJournal() {
    std::vector<std::string> entries;
    entries.swap(journal());
    return entries;
}

/// A record that writes down when it is asked for its deleter, and whether it is locked then.
class JournalCounter final : public Vorn::RefCounter {
public:
    JournalCounter(int useCount, int weakCount, void* object, bool isThreadsafe = false, bool hasDeleter = true)
        : m_hasDeleter(hasDeleter) {
        journal().reserve(64); // so that writing does not allocate
        m_useCount = useCount;
        m_weakCount = weakCount;
        m_ptr = object;
        m_isThreadsafe = isThreadsafe;
    }

    Deleter getDeleter() override {
        const bool isFree = m_mutex.try_lock();
        if (isFree) m_mutex.unlock();
        journal().push_back(std::string("deleter") + (m_ptr ? " object" : "") + (isFree ? "" : " locked"));
        s_liveBefore = liveAllocationCount();
        return m_hasDeleter ? &destroy : nullptr;
    }

private:
    static void destroy(void* object) {
        const bool isRecordGone = liveAllocationCount() < s_liveBefore;
        journal().push_back((isRecordGone ? "destroy after record " : "destroy ") + *static_cast<std::string*>(object));
    }

    static inline std::size_t s_liveBefore = 0;
    bool m_hasDeleter;
};

/// A context of a delegate that counts its own references and writes each change down.
struct JournalContext {
    explicit JournalContext(const char* contextName) : name(contextName) {}

    static void addRef(void* context, Vorn::DelegateContextAddRef op) {
        JournalContext& self = *static_cast<JournalContext*>(context);
        self.references += op == Vorn::DELEGATE_ADD_REF ? 1 : -1;
        journal().push_back((op == Vorn::DELEGATE_ADD_REF ? "+" : "-") + self.name);
    }

    std::string name;
    int references = 0;
};

/// The type of a test's bindings.
template <int N>
struct JournalBinding {};

/// A record of a delegate to `object`; calling it writes the object's text down.
template <int N = 0>
Vorn::DelegatePOD journalDelegate(std::string& object, JournalContext* context = nullptr) {
    return {&object, context,
            [](void* target, void*) { journal().push_back("call " + *static_cast<std::string*>(target)); },
            context ? &JournalContext::addRef : nullptr, &typeid(JournalBinding<N>)};
}
