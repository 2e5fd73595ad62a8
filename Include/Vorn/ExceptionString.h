// ExceptionString: the two-word text of failure reports.
//
// A literal is only pointed at, so building, copying and destroying such a text touches no heap and reads no
// character. Text made at run time lives in one counted heap block that copies share.
//
// This type is for reports and nothing else: lengths of 16384 and more run into its flags, and running out of memory
// ends the process (`std::abort`), as does a text of more than 2^31 - 1 bytes. For text of the program itself take
// String.
//
// Threads: the count is a plain integer. All copies of one dynamic text belong to one thread at a time.
#pragma once

#include "Vorn/Config.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Vorn {

class ExceptionStringJoiner;
class String;

/// Text of a failure report: null, static (somebody else's characters) or dynamic (a shared heap block).
/// @warning Length and flags share one word without a guard. A length with bit 14 or bit 15 set (16384 to 65535, for
///     example) is stored in full, but `size` reports it without these bits. With bit 14 the text reads as being
///     created, and a static text with bit 15 is taken for a dynamic one.
class VORN_API ExceptionString {
public:
    /// A null text.
    ExceptionString() noexcept : m_sizeAndFlags(0), m_text(nullptr) {}

    /// A static text of `size` bytes, which is not negative. Nothing is read, measured or copied: the characters must
    /// outlive every copy, and need not be terminated. With a null `text`, `size` is kept all the same.
    ExceptionString(const char* text, int size) noexcept : m_sizeAndFlags(size), m_text(const_cast<char*>(text)) {}

    /// Copies the two words; takes a share of a dynamic block.
    ExceptionString(const ExceptionString& other) noexcept
        : m_sizeAndFlags(other.m_sizeAndFlags), m_text(other.m_text) {
        stringAddRef();
    }

    /// The joined text as one new block, or a null text if all parts are empty. Calls `abort` as `createString` does,
    /// also for a sum of more than 2^31 - 1 bytes.
    ExceptionString(const ExceptionStringJoiner& joiner);

    /// A dynamic copy of the bytes of `text`. The second argument is not read: it only selects this constructor. Calls
    /// `abort` as `createString` does, also for more than 2^31 - 1 bytes.
    ExceptionString(const std::string& text, float);

    /// A dynamic copy of the UTF-8 text of `text`, converted straight into the block if the string holds UTF-16 only;
    /// the string itself gains no buffer. A null string gives a dynamic empty text, not a null one. The second argument
    /// is not read. Throws `Exception<2>` where the conversion to UTF-8 does (`stringDataConvertCopyToUTF8`). Calls
    /// `abort` as `createString` does, also for more than 2^31 - 1 bytes.
    ExceptionString(const String& text, float);

    ~ExceptionString() { stringRelease(); }

    /// Gives up the own share first and copies then.
    /// @warning Assigning the only holder of a block to itself frees the block and leaves a null text.
    ExceptionString& operator=(const ExceptionString& other) noexcept;

    /// Gives up the own share and takes the joined text. If all parts are empty, a dynamic text becomes null and a
    /// static one stays as it is. Parts may be copies of this text: `s = s + x` works. Calls `abort` as the constructor
    /// from a joiner does.
    ExceptionString& operator=(const ExceptionStringJoiner& joiner);

    /// Starts a dynamic text of at most `size` bytes and returns the buffer for them, which is all zeros and terminated
    /// at `size`. Finish with `doneCreateString`. Calls `abort` if memory ends or `size` is negative.
    char* createString(int size);

    /// Ends what `createString` began: terminates the text at `size`, which may be less than was asked for.
    /// @warning Does not check that the text is being created.
    void doneCreateString(int size);

    /// Gives up the own share and becomes a static text; see the constructor with the same arguments.
    void setStaticString(const char* text, int size) noexcept;

    /// The characters; null for a null text. A dynamic text is terminated, a static one as far as its literal is.
    const char* getString() const noexcept {
        return hasBlock() ? m_text + sizeof(int) : m_text; // the count stands in front of the text
    }

    /// Length in bytes, without the bits that hold the flags.
    int size() const noexcept { return static_cast<int>(static_cast<unsigned int>(m_sizeAndFlags) & 0xFFFF3FFFu); }

    /// True for a text whose block this object shares.
    bool dynamic() const noexcept { return (m_sizeAndFlags & DYNAMIC) != 0; }

    /// True between `createString` and `doneCreateString`.
    bool creating() const noexcept { return (m_sizeAndFlags & CREATING) != 0; }

    /// True if there are no characters to point at, whatever the length says.
    bool isNull() const noexcept { return m_text == nullptr; }

    /// Number of texts that share the block; 0 for a static or null text.
    int refCount() const noexcept { return hasBlock() ? blockCount() : 0; }

private:
    friend class AllExceptions; // builds a report without ending the process

    static constexpr int DYNAMIC = 0x8000;
    static constexpr int CREATING = 0x4000;

    bool hasBlock() const noexcept { return dynamic() && m_text; }

    void stringAddRef() noexcept {
        if (hasBlock()) ++blockCount();
    }

    // Frees the block and clears both words with the last share. In every other case both words keep their old values,
    // and whoever goes on with the object overwrites them.
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

/// The parts of a text that is written as `a + b + c`, until they are concatenated into one block. It holds a copy or
/// a share of each part and lives as long as one expression. Growing throws `std::bad_alloc` if memory ends; all texts
/// are as before then.
class ExceptionStringJoiner {
public:
    ExceptionStringJoiner(const ExceptionString& first, const ExceptionString& second) : m_parts{first, second} {}

    void append(const ExceptionString& part) { m_parts.push_back(part); }
    const std::vector<ExceptionString>& getParts() const noexcept { return m_parts; }

private:
    std::vector<ExceptionString> m_parts;
};

/// A joiner of two texts, the left one first.
inline ExceptionStringJoiner operator+(const ExceptionString& left, const ExceptionString& right) {
    return ExceptionStringJoiner(left, right);
}

/// Appends one more text to `joiner` and returns it.
inline ExceptionStringJoiner& operator+(ExceptionStringJoiner& joiner, const ExceptionString& right) {
    joiner.append(right);
    return joiner;
}

/// The same for the joiner in the middle of `a + b + c`.
inline ExceptionStringJoiner operator+(ExceptionStringJoiner&& joiner, const ExceptionString& right) {
    joiner.append(right);
    return static_cast<ExceptionStringJoiner&&>(joiner);
}

} // namespace Vorn
