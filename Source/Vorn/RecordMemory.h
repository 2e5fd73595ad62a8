// RecordMemory: memory for a string record, allocated before anything changes that the record is for.
#pragma once

#include "Vorn/String/StringData.h"

#include <new>

namespace Vorn {

/// Memory for one StringData. Build the record in it by placement new and pass that to `own`; otherwise the memory is
/// freed with this object. The record frees it as if plain `new` had made it.
class RecordMemory {
public:
    RecordMemory() : m_memory(::operator new(sizeof(StringData))) {}
    ~RecordMemory() { ::operator delete(m_memory); }

    RecordMemory(const RecordMemory&) = delete;
    RecordMemory& operator=(const RecordMemory&) = delete;

    void* get() const noexcept { return m_memory; }

    /// Leaves the memory to the record that was built in it, and returns that.
    StringData* own(StringData* record) noexcept {
        m_memory = nullptr;
        return record;
    }

private:
    void* m_memory;
};

} // namespace Vorn
