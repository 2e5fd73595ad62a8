/// @file
/// Name: a text that is stored once for the whole program, compared by address.
///
///     const Name jump("jump");                                  // finds or stores the text
///     std::unordered_map<Name, Action> actions;                 // hashes and compares without reading the text
///     const std::optional<Name> known = Name::lookUp(command);  // stores nothing
///
/// Texts with the same code points are the same name, whatever their encoding. A name is a pointer, is copied as one,
/// and stays valid until the program ends: texts are never removed. Use names for what a program has a limited number
/// of, such as identifiers, and not for input of unlimited variety.
///
/// The hash of a literal is a constant:
///
///     switch (name.getHash()) {
///     case Name::hashOf("jump"): return player.jump();
///     case Name::hashOf("crouch"): return player.crouch();
///     }
///
/// Two texts can have the same hash of 64 bits, with a chance of one in 10^19 for each pair. In one `switch` the
/// compiler reports it.
///
/// Cost: a look-up hashes the text and compares it once; storing a text allocates. Everything else reads a field.
///
/// Threads: all functions can be called by all threads at once. Look-ups take no lock; storing a new text takes one.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/TextView.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace VornPrivate {

/// The stored text of a name.
struct NameRecord {
    std::uint64_t hash;
    Vorn::String string;   // its record is constant, for all threads
    std::string_view text; // in UTF-8, U+0000 as a zero byte, with a terminator behind it
};

constexpr std::uint64_t mixNameHash(std::uint64_t hash, std::uint64_t word) noexcept {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15;
    return hash ^ (hash >> 32);
}

/// The hash of a text in UTF-8, the same at compile time, at run time and on every platform.
constexpr std::uint64_t hashOfName(std::string_view text) noexcept {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    const auto readWord = [](const char* bytes, std::size_t count) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, count);
        return word;
    };
    if (!__builtin_is_constant_evaluated()) {
        std::uint64_t hash = text.size();
        const char* at = text.data();
        std::size_t left = text.size();
        for (; left >= 8; left -= 8, at += 8) hash = mixNameHash(hash, readWord(at, 8));
        // The last bytes of a longer text are read with bytes before them, which are shifted out.
        std::uint64_t rest = 0;
        if (left != 0) {
            rest = text.size() >= 8 ? readWord(at + left - 8, 8) >> (64 - 8 * left) : 0;
            if (text.size() < 8) {
                for (std::size_t i = 0; i < left; ++i)
                    rest |= std::uint64_t{static_cast<unsigned char>(at[i])} << 8 * i;
            }
        }
        return mixNameHash(mixNameHash(hash, rest), 0);
    }
#endif
    const auto byteAt = [&](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(text[i])}; };
    std::uint64_t hash = text.size();
    std::size_t i = 0;
    for (; text.size() - i >= 8; i += 8) {
        hash = mixNameHash(hash, byteAt(i) | byteAt(i + 1) << 8 | byteAt(i + 2) << 16 | byteAt(i + 3) << 24 |
                                     byteAt(i + 4) << 32 | byteAt(i + 5) << 40 | byteAt(i + 6) << 48 |
                                     byteAt(i + 7) << 56);
    }
    std::uint64_t rest = 0;
    for (std::size_t shift = 0; i < text.size(); ++i, shift += 8) rest |= byteAt(i) << shift;
    return mixNameHash(mixNameHash(hash, rest), 0);
}

} // namespace VornPrivate

namespace Vorn {

/// A text that is stored once for the whole program.
class Name {
public:
    /// The name of the empty text.
    constexpr Name() noexcept : m_record(nullptr) {}

    /// The name of a text, which is stored if it is new.
    ///
    /// Throws `Exception<7>` for malformed text, with offset and reason, as `makeString` does. If memory ends, throws
    /// `std::bad_alloc` and stores nothing.
    explicit Name(TextView text) : m_record(intern(text)) {}

    /// The name of a text that is stored already, or nothing. Stores nothing and throws nothing for malformed text,
    /// which is no name.
    [[nodiscard]] static std::optional<Name> lookUp(TextView text) {
        const VornPrivate::NameRecord* record = nullptr;
        if (!find(text, record)) return std::nullopt;
        return Name(record);
    }

    [[nodiscard]] constexpr bool isEmpty() const noexcept { return !m_record; } ///< true for the empty text

    /// The text in UTF-8, terminated, U+0000 as a zero byte. Valid until the program ends.
    [[nodiscard]] std::string_view getText() const noexcept { return m_record ? m_record->text : std::string_view(""); }
    const char* c_str() const noexcept { return getText().data(); }
    operator TextView() const { return getText(); } // NOLINT(google-explicit-constructor)

    /// The text as a string that all threads may use at once; allocates nothing.
    const String& getString() const noexcept { return m_record ? m_record->string : String::s_emptyString; }

    /// The hash of the text; `hashOf` of the same text in UTF-8.
    [[nodiscard]] constexpr std::uint64_t getHash() const noexcept { return m_record ? m_record->hash : hashOf(""); }

    /// The hash that the name of a text in UTF-8 has, also at compile time.
    static constexpr std::uint64_t hashOf(std::string_view text) noexcept { return VornPrivate::hashOfName(text); }

    /// Names are equal if their texts are.
    /// @{
    friend constexpr bool operator==(Name a, Name b) noexcept { return a.m_record == b.m_record; }
    friend constexpr bool operator!=(Name a, Name b) noexcept { return a.m_record != b.m_record; }
    /// @}

    /// Orders by code point, the same in every run. Compares the texts.
    /// @{
    friend bool operator<(Name a, Name b) noexcept { return a != b && a.getText() < b.getText(); }
    friend bool operator>(Name a, Name b) noexcept { return b < a; }
    friend bool operator<=(Name a, Name b) noexcept { return !(b < a); }
    friend bool operator>=(Name a, Name b) noexcept { return !(a < b); }
    /// @}

private:
    constexpr explicit Name(const VornPrivate::NameRecord* record) noexcept : m_record(record) {}

    VORN_API static const VornPrivate::NameRecord* intern(TextView text);
    VORN_API static bool find(TextView text, const VornPrivate::NameRecord*& record);

    const VornPrivate::NameRecord* m_record; // null for the empty text
};

} // namespace Vorn

namespace std {

/// The hash of names for the containers of the standard library.
template <>
struct hash<Vorn::Name> {
    size_t operator()(Vorn::Name name) const noexcept {
        return name.getHash() & SIZE_MAX; // a cast would be useless where size_t has 64 bits
    }
};

} // namespace std

/// The name of a literal, found at the first use of this place and stored if it is new. Throws as the constructor does.
/// Anything but a literal does not compile.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define VORN_NAME(literal)                                                                                        \
    ([]() -> const ::Vorn::Name& {                                                                                \
        static const ::Vorn::Name vornName(::Vorn::TextView(literal "", sizeof(literal) / sizeof(*literal) - 1)); \
        return vornName;                                                                                          \
    }())
// NOLINTEND(bugprone-macro-parentheses)
