/// @file
/// TextSearch: finds texts and characters in a text, in all encodings.
///
///     const unsigned int colon = find(line, ':');
///     const unsigned int next = findNext(line, "//", colon);          // NOT_FOUND if there is none
///     const bool isPicture = endsWithIgnoringASCIICase(path, u".PNG");
///     const unsigned int end = findAnyOf(line, " \t\r\n");
///
/// Text and needle can have different encodings. Offsets and results are in units of the text; NOT_FOUND stands for no
/// occurrence. A match begins and ends between characters. Malformed units match nothing, so a malformed needle is
/// found nowhere. U+0000 is the same in both of its spellings.
///
/// An empty needle is found as by `std::string_view`: at the start, at the end, or at the offset where the search
/// begins. It is counted once for each code point and once for the end.
///
/// Cost: linear in the sum of the lengths for every text and needle. A needle of another encoding is converted first,
/// which allocates if it is long.
///
/// Threads: the functions share no state.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/TextDecoding.h"
#include "Vorn/Text/TextView.h"
#include "Vorn/Types.h"

#include <type_traits>

namespace Vorn {

/// A code point as an argument: made from a character literal of any width or a number. A value that is no character,
/// such as a `char` above 0x7F, which is only a part of one, is found nowhere.
class CodePoint {
public:
    template <class Code,
              std::enable_if_t<std::is_integral<Code>::value && !std::is_same<Code, bool>::value && sizeof(Code) <= 4,
                               int> = 0>
    constexpr CodePoint(Code code) noexcept // NOLINT(google-explicit-constructor)
        : m_code(sizeof(Code) == 1 && (code & 0x80) ? 0xFFFFFFFF : static_cast<UTF32Char>(code)) {}

    constexpr UTF32Char value() const noexcept { return m_code; }

    /// True for every code point but the surrogates.
    constexpr bool isValid() const noexcept {
        return m_code <= VornPrivate::LAST_CODE_POINT && !VornPrivate::isSurrogateCode(m_code);
    }

private:
    UTF32Char m_code;
};

/// The offset of the first occurrence.
/// @{
[[nodiscard]] VORN_API unsigned int find(TextView text, TextView needle);
[[nodiscard]] VORN_API unsigned int find(TextView text, CodePoint c);
/// @}

/// The offset of the first occurrence that starts at or behind the offset `from`. NOT_FOUND if `from` is behind the
/// end.
/// @{
[[nodiscard]] VORN_API unsigned int findNext(TextView text, TextView needle, unsigned int from);
[[nodiscard]] VORN_API unsigned int findNext(TextView text, CodePoint c, unsigned int from);
/// @}

/// The offset of the last occurrence.
/// @{
[[nodiscard]] VORN_API unsigned int findLast(TextView text, TextView needle);
[[nodiscard]] VORN_API unsigned int findLast(TextView text, CodePoint c);
/// @}

/// The offset of the last occurrence that starts before the offset `before`.
/// @{
[[nodiscard]] VORN_API unsigned int findPrevious(TextView text, TextView needle, unsigned int before);
[[nodiscard]] VORN_API unsigned int findPrevious(TextView text, CodePoint c, unsigned int before);
/// @}

/// True if the needle occurs in the text.
/// @{
[[nodiscard]] inline bool contains(TextView text, TextView needle) { return find(text, needle) != NOT_FOUND; }
[[nodiscard]] inline bool contains(TextView text, CodePoint c) { return find(text, c) != NOT_FOUND; }
/// @}

/// True if the text begins with the needle.
/// @{
[[nodiscard]] VORN_API bool startsWith(TextView text, TextView needle) noexcept;
[[nodiscard]] VORN_API bool startsWith(TextView text, CodePoint c) noexcept;
/// @}

/// True if the text ends with the needle.
/// @{
[[nodiscard]] VORN_API bool endsWith(TextView text, TextView needle) noexcept;
[[nodiscard]] VORN_API bool endsWith(TextView text, CodePoint c) noexcept;
/// @}

/// The number of occurrences that do not overlap, counted from the start.
/// @{
[[nodiscard]] VORN_API unsigned int count(TextView text, TextView needle);
[[nodiscard]] VORN_API unsigned int count(TextView text, CodePoint c);
/// @}

/// The offset of the first or last character that is one of `set`, or of the first or last one that is none of them.
/// Malformed units are in no set.
///
/// Cost: characters beyond ASCII are compared with each of the set.
/// @{
[[nodiscard]] VORN_API unsigned int findAnyOf(TextView text, TextView set) noexcept;
[[nodiscard]] VORN_API unsigned int findNoneOf(TextView text, TextView set) noexcept;
[[nodiscard]] VORN_API unsigned int findLastAnyOf(TextView text, TextView set) noexcept;
[[nodiscard]] VORN_API unsigned int findLastNoneOf(TextView text, TextView set) noexcept;
/// @}

/// The first such character that starts at or behind the offset `from`. NOT_FOUND if `from` is behind the end.
/// @{
[[nodiscard]] VORN_API unsigned int findNextAnyOf(TextView text, TextView set, unsigned int from) noexcept;
[[nodiscard]] VORN_API unsigned int findNextNoneOf(TextView text, TextView set, unsigned int from) noexcept;
/// @}

// Forms that take A to Z and a to z for the same letters. All other characters are compared exactly.

/// True if the texts are equal but for the case of ASCII letters.
[[nodiscard]] VORN_API bool equalsIgnoringASCIICase(TextView a, TextView b) noexcept;

/// Compares by code point, with A to Z as a to z. Returns -1, 0 or 1.
[[nodiscard]] VORN_API int compareIgnoringASCIICase(TextView a, TextView b) noexcept;

/// As `find`, `findNext`, `contains`, `startsWith` and `endsWith`.
/// @{
[[nodiscard]] VORN_API unsigned int findIgnoringASCIICase(TextView text, TextView needle);
[[nodiscard]] VORN_API unsigned int findNextIgnoringASCIICase(TextView text, TextView needle, unsigned int from);
[[nodiscard]] inline bool containsIgnoringASCIICase(TextView text, TextView needle) {
    return findIgnoringASCIICase(text, needle) != NOT_FOUND;
}
[[nodiscard]] VORN_API bool startsWithIgnoringASCIICase(TextView text, TextView needle) noexcept;
[[nodiscard]] VORN_API bool endsWithIgnoringASCIICase(TextView text, TextView needle) noexcept;
/// @}

} // namespace Vorn
