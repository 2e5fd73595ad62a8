/// @file
/// RecordMemory: memory for a string record, allocated before an operation changes anything. Private.
#pragma once

#include "Vorn/String/StringData.h"

#include <new>

namespace Vorn {

/// Memory for one StringData. Construct the record in it by placement new and pass the record to `own`; otherwise the
/// destructor frees the memory. The record is destroyed with `delete`.
class RecordMemory {
public:
    RecordMemory() : m_memory(::operator new(sizeof(StringData))) {}
    ~RecordMemory() { ::operator delete(m_memory); }

    RecordMemory(const RecordMemory&) = delete;
    RecordMemory& operator=(const RecordMemory&) = delete;

    void* get() const noexcept { return m_memory; }

    /// Transfers ownership of the memory to the record that was constructed in it. Returns the record.
    StringData* own(StringData* record) noexcept {
        m_memory = nullptr;
        return record;
    }

private:
    void* m_memory;
};

} // namespace Vorn
