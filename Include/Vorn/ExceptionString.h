/// @file
/// ExceptionString: the text of failure reports, in two words.
///
/// A static text refers to a literal: construction, copy and destruction allocate nothing and read no character. A
/// dynamic text is built at run time in one reference-counted block that copies share.
///
/// Use this type only for reports: lengths from 16384 on collide with its flags, and the process ends (`std::abort`) if
/// memory ends or a text is longer than 2^31 - 1 bytes. For other text use String.
///
/// Threads: the count is a plain integer. All copies of a dynamic text must be used by one thread at a time.
#pragma once

#include "Vorn/Config.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vorn {

class ExceptionStringJoiner;
class String;

/// The text of a failure report: null, static (borrowed characters) or dynamic (a shared block on the heap).
/// @warning Length and flags share one word, and lengths are not checked. A length with bit 14 or bit 15 set, such as
///     16384 to 65535, is stored completely, but `size` returns it without these bits. With bit 14 the text counts as
///     being created; a static text with bit 15 counts as dynamic. Keep texts below 16384 bytes.
class VORN_API ExceptionString {
public:
    /// A null text.
    ExceptionString() noexcept : m_sizeAndFlags(0), m_text(nullptr) {}

    /// A static text: refers to `size` bytes at `text`, which are NOT copied, read or measured.
    ///
    /// `size` is not negative and is also stored for a null `text`. The characters need no terminator.
    /// @warning The characters must outlive the object and all copies. For a copy of the characters write
    ///     `ExceptionString(std::string(text), 0.0f)`.
    ExceptionString(const char* text, int size) noexcept : m_sizeAndFlags(size), m_text(const_cast<char*>(text)) {}

    /// Copies the two words and acquires a reference to a dynamic block.
    ExceptionString(const ExceptionString& other) noexcept
        : m_sizeAndFlags(other.m_sizeAndFlags), m_text(other.m_text) {
        stringAddRef();
    }

    /// Joins all parts into one new block; a null text if all parts are empty. Calls `abort` if memory ends or the sum
    /// exceeds 2^31 - 1 bytes.
    ExceptionString(const ExceptionStringJoiner& joiner);

    /// A dynamic copy of `text`. The number is NOT used: it only selects this constructor. Calls `abort` if memory ends
    /// or the text exceeds 2^31 - 1 bytes.
    ExceptionString(const std::string& text, float);

    /// A dynamic copy of `text` in UTF-8. A null string gives a dynamic EMPTY text, not a null one. The number is not
    /// used.
    ///
    /// A string without UTF-8 is converted into the block and gets no buffer itself. Throws `Exception<2>` as
    /// `stringDataConvertCopyToUTF8` does. Calls `abort` if memory ends or the text exceeds 2^31 - 1 bytes.
    ExceptionString(const String& text, float);

    ~ExceptionString() { stringRelease(); }

    /// Releases the own reference, then copies `other`.
    /// @warning Self-assignment of the only owner of a block frees the block and leaves a null text.
    ExceptionString& operator=(const ExceptionString& other) noexcept;

    /// Releases the own reference and becomes the joined text. If all parts are empty, a static text stays UNCHANGED
    /// and a dynamic text becomes null.
    ///
    /// Parts may be copies of this text: `s = s + x` is valid. Calls `abort` if memory ends or the sum exceeds 2^31 - 1
    /// bytes.
    ExceptionString& operator=(const ExceptionStringJoiner& joiner);

    /// Begins a dynamic text of at most `size` bytes and returns the buffer to write it to, filled with zeros.
    ///
    /// Call `doneCreateString` when the text is written. Calls `abort` if memory ends or `size` is negative.
    char* createString(int size);

    /// Ends a text that `createString` began, and terminates it at `size`, which is at most the size passed there.
    /// @warning Does NOT check that `createString` was called. Call it once after each `createString`.
    void doneCreateString(int size);

    /// Releases the own reference and becomes a static text, as the constructor with the same parameters.
    void setStaticString(const char* text, int size) noexcept;

    /// The characters, or null for a null text. A dynamic text is terminated; a static text need not be.
    const char* getString() const noexcept {
        return hasBlock() ? m_text + sizeof(int) : m_text; // the count precedes the text
    }

    /// The length in bytes WITHOUT bits 14 and 15, which are flags: 16384 gives 0.
    int size() const noexcept { return static_cast<int>(static_cast<unsigned int>(m_sizeAndFlags) & 0xFFFF3FFFu); }

    /// Returns true for a dynamic text.
    bool dynamic() const noexcept { return (m_sizeAndFlags & DYNAMIC) != 0; }

    /// Returns true between `createString` and `doneCreateString`.
    bool creating() const noexcept { return (m_sizeAndFlags & CREATING) != 0; }

    /// Returns true if the pointer to the characters is null, with ANY length: `size() == 0` tests for an empty text.
    bool isNull() const noexcept { return m_text == nullptr; }

    /// The number of texts that share the block; 0 for a static or null text.
    int refCount() const noexcept { return hasBlock() ? blockCount() : 0; }

private:
    friend class AllExceptions; // builds a report without ending the process

    static constexpr int DYNAMIC = 0x8000;
    static constexpr int CREATING = 0x4000;

    bool hasBlock() const noexcept { return dynamic() && m_text; }

    void stringAddRef() noexcept {
        if (hasBlock()) ++blockCount();
    }

    // Releases the reference. The last release frees the block and clears both words; otherwise both words stay
    // unchanged and the caller must overwrite them.
    void stringRelease() noexcept {
        if (hasBlock() && --blockCount() == 0) freeBlock();
    }

    int& blockCount() const noexcept; // out of line: a compiler that sees a literal's address here warns of its size
    void freeBlock() noexcept;

    // As `createString`, but clears nothing. Returns null if memory ends or no `int` holds `size`, or if `size` is
    // negative; the old reference is released then as well.
    char* tryCreateString(std::int64_t size) noexcept;
    void doJoin(const ExceptionStringJoiner& joiner);

    int m_sizeAndFlags; // length in bytes, with DYNAMIC and CREATING inside the same word
    char* m_text;       // static: the first character; dynamic: the block, which is count, text and a zero byte
};

static_assert(sizeof(void*) != 4 || sizeof(ExceptionString) == 8, "two words");

/// The parts of an expression `a + b + c`, before they are joined into one block. It contains a copy of each part;
/// dynamic parts are shared. Use it only within one expression.
///
/// Construction and `append` throw `std::bad_alloc` if memory ends; all texts stay unchanged.
class ExceptionStringJoiner {
public:
    ExceptionStringJoiner(const ExceptionString& first, const ExceptionString& second) : m_parts{first, second} {}

    void append(const ExceptionString& part) { m_parts.push_back(part); }
    const std::vector<ExceptionString>& getParts() const noexcept { return m_parts; }

private:
    std::vector<ExceptionString> m_parts;
};

/// Begins a joiner with two texts.
inline ExceptionStringJoiner operator+(const ExceptionString& left, const ExceptionString& right) {
    return ExceptionStringJoiner(left, right);
}

/// Appends a text to `joiner` and returns the joiner.
inline ExceptionStringJoiner& operator+(ExceptionStringJoiner& joiner, const ExceptionString& right) {
    joiner.append(right);
    return joiner;
}

/// Appends a text to a temporary joiner, as in `a + b + c`, and returns the joiner.
inline ExceptionStringJoiner operator+(ExceptionStringJoiner&& joiner, const ExceptionString& right) {
    joiner.append(right);
    return static_cast<ExceptionStringJoiner&&>(joiner);
}

} // namespace Vorn
