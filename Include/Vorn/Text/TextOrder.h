/// @file
/// TextOrder: order, equality and hash of texts by code point, the same in every pair of encodings.
///
///     std::map<String, Level, CodePointLess> levels;               // sorted by code point
///     std::unordered_map<String, Level, TextHash, TextEqual> table;
///     const auto found = levels.find("intro");                     // no string is made for the look-up
///
/// Texts are equal if their code points are: a String in UTF-8, one in UTF-16 and a literal can all be the same key.
/// U+0000 is the same in both of its spellings. Malformed units count as U+FFFD. A null string is an empty text.
///
/// The function objects are transparent: containers look up a key by anything that converts to TextView
/// (`std::unordered_map` in C++20). They serve String, UTF8String and standard strings as keys.
///
/// Cost: texts in the same encoding are compared by blocks of memory. Nothing is allocated.
///
/// Threads: the functions share no state.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Text/TextView.h"

#include <cstddef>
#if defined(__cpp_impl_three_way_comparison)
#include <compare>
#endif

namespace Vorn {

/// Compares two texts by code point. Returns -1, 0 or 1. A text is greater than its beginnings.
[[nodiscard]] VORN_API int compare(TextView a, TextView b) noexcept;

/// Returns true if two texts have the same code points.
[[nodiscard]] VORN_API bool equals(TextView a, // NOLINT(readability-redundant-declaration): with the view
                                   TextView b) noexcept;

/// A hash of the code points: equal texts have equal hashes in every encoding. The values are the same in every run of
/// the program, but not in all versions of the library.
[[nodiscard]] VORN_API std::size_t hashOfText(TextView text) noexcept;

/// Orders texts by code point.
struct CodePointLess {
    using is_transparent = void;
    bool operator()(TextView a, TextView b) const noexcept { return compare(a, b) < 0; }
};

/// Compares texts by their code points.
struct TextEqual {
    using is_transparent = void;
    bool operator()(TextView a, TextView b) const noexcept { return equals(a, b); }
};

/// Hashes texts by their code points.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(TextView text) const noexcept { return hashOfText(text); }
};

/// A view that compares by code point with operators: `ordered(a) < ordered(b)`, in C++20 also `<=>`. Use it as an
/// argument or inside a comparison; it refers to the text.
class OrderedText {
public:
    explicit OrderedText(TextView text) noexcept : m_text(text) {}

    TextView text() const noexcept { return m_text; }

    friend bool operator==(OrderedText a, OrderedText b) noexcept { return equals(a.m_text, b.m_text); }
#if defined(__cpp_impl_three_way_comparison)
    friend std::strong_ordering operator<=>(OrderedText a, OrderedText b) noexcept {
        return compare(a.m_text, b.m_text) <=> 0;
    }
#else
    friend bool operator!=(OrderedText a, OrderedText b) noexcept { return !(a == b); }
    friend bool operator<(OrderedText a, OrderedText b) noexcept { return compare(a.m_text, b.m_text) < 0; }
    friend bool operator>(OrderedText a, OrderedText b) noexcept { return b < a; }
    friend bool operator<=(OrderedText a, OrderedText b) noexcept { return !(b < a); }
    friend bool operator>=(OrderedText a, OrderedText b) noexcept { return !(a < b); }
#endif

private:
    TextView m_text;
};

/// Makes `<`, `==` and `<=>` of texts compare by code point.
[[nodiscard]] inline OrderedText ordered(TextView text) noexcept { return OrderedText(text); }

} // namespace Vorn
