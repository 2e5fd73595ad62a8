/// @file
/// OrdinaryText: skips and counts ordinary text with the kernels of this processor. Private.
///
/// Kernels process blocks, and stop in front of a block that they cannot decide. The plain code of UTF8Runs.h and
/// UTF16Runs.h passes that block up to the first character that is not ordinary, about which the caller decides.
/// Nothing here throws.
#pragma once

#include "Kernels/TextKernels.h"
#include "UTF16Runs.h"
#include "UTF8Runs.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

// Kernels read the aligned block in which a terminated text ends, and memchr can be checked for its whole range.
// Sanitizers and memcheck refuse both.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(VORN_TEST_UNDER_MEMCHECK)
#define VORN_EXACT_READS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define VORN_EXACT_READS
#endif
#endif

namespace VornPrivate {

/// Text up to this length is left to the plain code, which needs no call.
constexpr unsigned int SHORT_TEXT = 16;

/// Returns the index of the first unit that is not plain ASCII, or the length.
template <class Unit>
inline unsigned int skipASCII(const Unit* text, unsigned int length) {
    if (length < SHORT_TEXT) return findPlainEnd(text, 0, length);
    const TextKernels& kernels = textKernels();
    if constexpr (sizeof(Unit) == 1)
        return findPlainEnd(text, static_cast<unsigned int>(kernels.skipASCII8(text, length)), length);
    else
        return findPlainEnd(text, static_cast<unsigned int>(kernels.skipASCII16(text, length)), length);
}

/// Copies plain ASCII. Returns the index of the first other unit, or the length.
template <class Dest, class Source>
inline unsigned int copyASCII(Dest* dest, const Source* source, unsigned int length) {
    unsigned int i = 0;
    if (length >= SHORT_TEXT) {
        if constexpr (sizeof(Source) == 1)
            i = static_cast<unsigned int>(textKernels().widenASCII(source, length, dest));
        else
            i = static_cast<unsigned int>(textKernels().narrowASCII(source, length, dest));
    }
    for (; i < length && isPlain(source[i]); ++i) dest[i] = static_cast<Dest>(source[i]);
    return i;
}

/// The characters in a run of ordinary UTF-16.
struct WideCounts {
    std::uint64_t extraBytes = 0; ///< bytes in UTF-8 less the number of units
    unsigned int pairs = 0;       ///< surrogate pairs
    bool beyondASCII = false;     ///< true if there are units above 0x7F
};

/// How a text of each encoding is passed. `Full` accepts characters above 0xFFFF. Without `Counts`, only the flags are
/// found, and a number above 0 stands for any. Units from `FirstOfTwo` on need at least two bytes in UTF-8.
template <bool Full, bool Counts>
struct UTF8Steps {
    using Unit = unsigned char;
    using Result = RunCounts;
    static constexpr unsigned int LONGEST = 4;
    static constexpr bool SKIPS_TERMINATED = !Counts; // ASCII changes no flag

    static unsigned int runKernel(const Unit* text, unsigned int length, RunCounts& counts) {
        const TextKernels& kernels = textKernels();
        const UTF8Run run = Counts ? kernels.measureUTF8(text, length, Full) : kernels.scanUTF8(text, length);
        counts.characters += static_cast<unsigned int>(run.characters);
        counts.fourBytes += static_cast<unsigned int>(run.fourBytes);
        counts.beyondASCII |= run.beyondASCII;
        return static_cast<unsigned int>(run.length);
    }
    template <bool Terminated>
    static unsigned int runPlain(const Unit* text, unsigned int i, unsigned int end, RunCounts& counts) {
        return skipOrdinary<Full, Terminated>(text, i, end, counts);
    }
    /// Returns true if the bytes can be the start of a character that continues behind them.
    static bool isIncomplete(const Unit* bytes, unsigned int count) {
        const unsigned int size = bytes[0] >= 0xF0 ? 4 : bytes[0] >= 0xE0 ? 3 : bytes[0] >= 0xC0 ? 2 : 1;
        return count < size && std::all_of(bytes + 1, bytes + count, isTrail);
    }
    static unsigned int findZero(const Unit* text, unsigned int length) {
        const void* const zero = std::memchr(text, 0, length);
        return zero ? static_cast<unsigned int>(static_cast<const Unit*>(zero) - text) : length;
    }
};

template <bool Full, bool Counts, unsigned int FirstOfTwo>
struct UTF16Steps {
    using Unit = UTF16Char;
    using Result = WideCounts;
    static constexpr unsigned int LONGEST = 2;
    static constexpr bool SKIPS_TERMINATED = false;

    static unsigned int runKernel(const Unit* text, unsigned int length, Result& counts) {
        const TextKernels& kernels = textKernels();
        const UTF16Run run =
            Counts ? kernels.measureUTF16(text, length, FirstOfTwo, Full) : kernels.scanUTF16(text, length);
        counts.extraBytes += run.extraBytes;
        counts.pairs += static_cast<unsigned int>(run.pairs);
        counts.beyondASCII |= run.beyondASCII;
        return static_cast<unsigned int>(run.length);
    }
    template <bool Terminated>
    static unsigned int runPlain(const Unit* text, unsigned int i, unsigned int end, Result& counts) {
        UnitCounts<FirstOfTwo> run;
        i = skipOrdinary<Full, Terminated>(text, i, end, run);
        counts.extraBytes += std::uint64_t(run.twoBytes) + run.threeBytes + std::uint64_t(2) * run.pairs;
        counts.pairs += run.pairs;
        counts.beyondASCII |= run.twoBytes != 0 || run.pairs != 0;
        return i;
    }
    static bool isIncomplete(const Unit* units, unsigned int count) {
        return count == 1 && (units[0] & 0xFC00) == 0xD800;
    }
    static unsigned int findZero(const Unit* text, unsigned int length) {
        return static_cast<unsigned int>(textKernels().findZero(text, length));
    }
};

/// Finds the charset of a short ordinary text by one call of a kernel. Returns false for any other text.
/// @{
inline bool findCharset(const unsigned char* text, unsigned int length, Vorn::StringDataSubCharset& charset) {
    const UTF8Run run = textKernels().scanUTF8(text, length);
    charset = run.fourBytes     ? Vorn::STRING_DATA_UNICODE
              : run.beyondASCII ? Vorn::STRING_DATA_UCS2
                                : Vorn::STRING_DATA_ASCII;
    return run.length == length;
}
inline bool findCharset(const UTF16Char* text, unsigned int length, Vorn::StringDataSubCharset& charset) {
    const UTF16Run run = textKernels().scanUTF16(text, length);
    charset = run.pairs         ? Vorn::STRING_DATA_UNICODE
              : run.beyondASCII ? Vorn::STRING_DATA_UCS2
                                : Vorn::STRING_DATA_ASCII;
    return run.length == length;
}
/// @}

/// Passes one text from its start to its end.
template <class Steps, bool Terminated>
class OrdinaryText {
public:
    using Unit = typename Steps::Unit;
    using Result = typename Steps::Result;

    /// A terminated text ends at its zero unit, or at the length of the longest text; `length` is ignored.
    OrdinaryText(const Unit* text, unsigned int length) : m_text(text), m_end(Terminated ? 0 : length) {}

    /// Skips ordinary text from `i` on and adds it to the result. Returns the index of the first character that is not
    /// ordinary, or the end.
    unsigned int skip(unsigned int i, Result& result) {
        if constexpr (!Terminated) {
            return skipTo(m_end, i, result);
        } else {
#ifdef VORN_EXACT_READS
            return Steps::template runPlain<true>(m_text, i, 0, result);
#else
            // Nothing behind the page of a unit is read before that unit is known to be ordinary.
            for (;;) {
                i = skipTo(m_end, i, result);
                const bool isEndKnown = m_end < m_pageEnd || m_end == MAX_TEXT_LENGTH;
                if (isEndKnown || !continuesAfterEnd(i)) return i;
                if (i == m_end && skipTerminatedASCII(i)) return i;
                findEnd();
            }
#endif
        }
    }

private:
    static constexpr unsigned int BLOCK = 64 / sizeof(Unit);

    unsigned int skipTo(unsigned int end, unsigned int i, Result& result) {
        bool isAtLimit = true;
        while (isAtLimit) {
            if (end - i >= SHORT_TEXT && i >= m_plainUntil) i += Steps::runKernel(m_text + i, end - i, result);
            if (i == end) return i;
            const unsigned int limit = i + std::min(end - i, BLOCK);
            i = Steps::template runPlain<false>(m_text, i, limit, result);
            // Also in front of a character that crosses the limit.
            isAtLimit = limit < end && limit - i < Steps::LONGEST;
        }
        // Where such characters are frequent, kernels would stop again and again.
        m_plainUntil = i + std::min(end - i, BLOCK);
        return i;
    }

    bool continuesAfterEnd(unsigned int i) const {
        return i == m_end || (m_end - i < Steps::LONGEST && Steps::isIncomplete(m_text + i, m_end - i));
    }

    // Skips ASCII, whose end needs no search of its own. Returns true if the text ends there.
    bool skipTerminatedASCII(unsigned int& i) {
        if constexpr (Steps::SKIPS_TERMINATED) {
            i += static_cast<unsigned int>(textKernels().skipTerminatedASCII(m_text + i, MAX_TEXT_LENGTH - i));
            m_end = i;
            m_pageEnd = i == MAX_TEXT_LENGTH || m_text[i] != 0 ? i : i + 1;
        }
        return m_end < m_pageEnd;
    }

    // Moves the known end to the zero unit in the next page, or to the end of that page.
    void findEnd() {
        constexpr std::uintptr_t PAGE = 4096;
        const auto bytes = PAGE - reinterpret_cast<std::uintptr_t>(m_text + m_end) % PAGE;
        const auto units = std::max(static_cast<unsigned int>(bytes / sizeof(Unit)), 1u);
        m_pageEnd = m_end + std::min(units, MAX_TEXT_LENGTH - m_end);
        m_end += Steps::findZero(m_text + m_end, m_pageEnd - m_end);
    }

    const Unit* m_text;
    unsigned int m_end;            // of a terminated text: all units in front of it are nonzero
    unsigned int m_pageEnd = 0;    // equal to `m_end` if the terminator is not found yet
    unsigned int m_plainUntil = 0; // the kernels run from here on
};

} // namespace VornPrivate
