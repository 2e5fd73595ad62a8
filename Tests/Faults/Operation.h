// The table of operations that the fault tests run, with each of their allocations failing.
#pragma once

#include "Support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

/// What an operation does when memory ends.
enum class Outcome {
    THROWS,            // passes std::bad_alloc on
    SURVIVES,          // throws nothing
    ABORTS,            // ends the process
    ALLOCATES_NOTHING, // never needs memory
};

/// One run of an operation. The n-th allocation fails, and with `isLasting` all that follow fail too.
class Attempt {
public:
    Attempt(std::size_t n, bool isLasting) : m_n(n), m_isLasting(isLasting) {}

    /// Runs `operation` with the fault. If the fault struck, calls `expectState` afterwards, with memory available.
    template <class Operation, class State>
    void operator()(Operation&& operation, State&& expectState) {
        const std::size_t failuresBefore = failedAllocationCount();
        const std::size_t allocationsBefore = allocationCount();
        {
            const Fault fault(m_n, m_isLasting);
            try {
                operation();
            } catch (const std::bad_alloc&) {
                m_hasThrown = true;
            }
        }
        m_isHit = failedAllocationCount() != failuresBefore;
        m_allocations = allocationCount() - allocationsBefore;
        if (m_isHit) expectState();
    }

    template <class Operation>
    void operator()(Operation&& operation) {
        (*this)(operation, [] {});
    }

    bool isHit() const { return m_isHit; }
    bool hasThrown() const { return m_hasThrown; }
    std::size_t allocations() const { return m_allocations; }

private:
    struct Fault {
        Fault(std::size_t n, bool isLasting) { isLasting ? failAllocationsFrom(n) : failAllocation(n); }
        ~Fault() { failAllocation(0); }
        Fault(const Fault&) = delete;
        Fault& operator=(const Fault&) = delete;
    };

    std::size_t m_n;
    bool m_isLasting;
    bool m_isHit = false;
    bool m_hasThrown = false;
    std::size_t m_allocations = 0;
};

/// A row of the table.
struct Operation {
    std::string name; // an identifier
    Outcome outcome;

    /// The exported functions that the row runs, as `nm -C` lists them but without the namespace and with short names
    /// of the standard types. A name without parameters stands for all its overloads. An operation that a header
    /// defines has none.
    std::vector<std::string> symbols;

    /// Prepares its objects, runs the operation through the attempt once, and destroys everything that it made.
    void (*run)(Attempt& attempt);
};

std::vector<Operation> failureOperations();
std::vector<Operation> stringOperations();
std::vector<Operation> editOperations();
std::vector<Operation> mapOperations();
std::vector<Operation> numberOperations();
std::vector<Operation> objectOperations();
std::vector<Operation> textNumberOperations();
std::vector<Operation> textPieceOperations();
std::vector<Operation> textOperations();
