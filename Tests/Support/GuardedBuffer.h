// Code units between two pages that cannot be read or written, so that a step beyond them ends the program in every
// preset and not only under a sanitizer. Where the system has no such pages, the units are in a block of their size.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <vector>

#if defined(_WIN32)
#define VORN_TEST_HAS_GUARD_PAGES
#include "Support/Windows.h"
#elif __has_include(<sys/mman.h>) && __has_include(<unistd.h>)
#define VORN_TEST_HAS_GUARD_PAGES
#include <sys/mman.h>
#include <unistd.h>
#endif

#if defined(VORN_TEST_HAS_GUARD_PAGES)

inline std::size_t pageSize() {
#if defined(_WIN32)
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    return info.dwPageSize;
#else
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
#endif
}

/// Maps pages that can be read and written, with a page before and behind them that cannot.
inline unsigned char* mapGuardedPages(std::size_t size) {
    const std::size_t page = pageSize();
#if defined(_WIN32)
    void* const mapping = VirtualAlloc(nullptr, size + 2 * page, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS);
    if (!mapping) throw std::bad_alloc();
    unsigned char* const start = static_cast<unsigned char*>(mapping) + page;
    DWORD before;
    if (!VirtualProtect(start, size, PAGE_READWRITE, &before)) std::abort();
#else
    void* const mapping = mmap(nullptr, size + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapping == MAP_FAILED) throw std::bad_alloc();
    unsigned char* const start = static_cast<unsigned char*>(mapping) + page;
    if (mprotect(start, size, PROT_READ | PROT_WRITE) != 0) std::abort();
#endif
    return start;
}

/// Pages with a guard page before and behind them. They are mapped once and used again, because tests make many buffers
/// one after another, and listed without any allocation, because tests count those. For one thread.
class GuardedPages {
public:
    explicit GuardedPages(std::size_t size) : m_start(nullptr), m_size(0) {
        for (FreePages** link = &freePages(); *link; link = &(*link)->next) {
            FreePages* const pages = *link;
            if (pages->size < size) continue;
            *link = pages->next;
            m_start = reinterpret_cast<unsigned char*>(pages);
            m_size = pages->size;
            return;
        }
        const std::size_t page = pageSize();
        m_size = (std::max(size, sizeof(FreePages)) + page - 1) / page * page;
        m_start = mapGuardedPages(m_size);
    }
    ~GuardedPages() { freePages() = new (m_start) FreePages{freePages(), m_size}; }
    GuardedPages(const GuardedPages&) = delete;
    GuardedPages& operator=(const GuardedPages&) = delete;

    unsigned char* start() const { return m_start; }
    unsigned char* end() const { return m_start + m_size; }

private:
    struct FreePages {
        FreePages* next;
        std::size_t size;
    };
    static FreePages*& freePages() {
        static FreePages* first = nullptr;
        return first;
    }

    unsigned char* m_start;
    std::size_t m_size;
};

#else

class GuardedPages {
public:
    explicit GuardedPages(std::size_t size) : m_start(static_cast<unsigned char*>(std::malloc(size))), m_size(size) {
        if (!m_start && size != 0) throw std::bad_alloc();
    }
    ~GuardedPages() { std::free(m_start); }
    GuardedPages(const GuardedPages&) = delete;
    GuardedPages& operator=(const GuardedPages&) = delete;

    unsigned char* start() const { return m_start; }
    unsigned char* end() const { return m_start + m_size; }

private:
    unsigned char* m_start;
    std::size_t m_size;
};

#endif

/// Which end of the units touches a guard page.
enum class GuardedEdge { END, START };

/// A copy of units, with nothing behind them, or nothing in front of them.
template <class Unit>
class GuardedBuffer {
public:
    /// From any container of units, such as a vector or a string.
    template <class Units, class = typename Units::value_type>
    explicit GuardedBuffer(const Units& units, GuardedEdge edge = GuardedEdge::END)
        : GuardedBuffer(units.size(), edge) {
        std::transform(units.begin(), units.end(), m_data, [](auto unit) { return static_cast<Unit>(unit); });
    }

    /// `size` zero units.
    explicit GuardedBuffer(std::size_t size, GuardedEdge edge = GuardedEdge::END)
        : m_pages(size * sizeof(Unit)),
          m_data(reinterpret_cast<Unit*>(edge == GuardedEdge::END ? m_pages.end() - size * sizeof(Unit)
                                                                  : m_pages.start())),
          m_size(size) {
        std::fill_n(m_data, size, Unit(0));
    }

    Unit* data() const { return m_data; }
    std::vector<Unit> units() const { return std::vector<Unit>(m_data, m_data + m_size); }

private:
    GuardedPages m_pages;
    Unit* m_data;
    std::size_t m_size;
};
