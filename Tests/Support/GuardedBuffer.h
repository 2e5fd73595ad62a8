// Code units between two pages that cannot be read or written, so that a step beyond them ends the program in every
// preset and not only under a sanitizer. Where the system has no such pages, the units are in a block of their size.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <vector>

#if __has_include(<sys/mman.h>) && __has_include(<unistd.h>)
#define VORN_TEST_HAS_GUARD_PAGES
#include <sys/mman.h>
#include <unistd.h>
#endif

#if defined(VORN_TEST_HAS_GUARD_PAGES)

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
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        m_size = (std::max(size, sizeof(FreePages)) + page - 1) / page * page;
        void* const mapping = mmap(nullptr, m_size + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapping == MAP_FAILED) throw std::bad_alloc();
        m_start = static_cast<unsigned char*>(mapping) + page;
        if (mprotect(m_start, m_size, PROT_READ | PROT_WRITE) != 0) std::abort();
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
