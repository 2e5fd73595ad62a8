/// @file
/// MakeString: owned strings from any kind of text, in one call.
///
///     const String name = makeString(line);                 // from std::string, std::u16string, char8_t, ...
///     const String shown = makeStringReplacing(download);   // malformed parts become U+FFFD
///     const MadeString read = tryMakeString(file);          // no exception
///     const String& title = VORN_TEXT("Options");           // allocates at its first use only
///
/// The text is copied and validated once. The string owns the copy: it is terminated, and is freed with the last
/// reference. It has the encoding of the text; code points become UTF-8. U+0000 is accepted as a zero unit and, in
/// UTF-8, as 0xC0 0x80. An empty text shares the record of `StringData::s_emptyString`.
///
/// Malformed are: units that belong to no character, overlong forms, surrogates without their other half, and
/// noncharacters (U+FDD0 to U+FDEF, and the last two code points of each plane), which no String contains.
///
/// Cost: two allocations, one for the text and one for the string record.
///
/// Threads: the functions share no state. The strings of VORN_TEXT and `makeStaticString` may be used by all threads.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/TextView.h"
#include "Vorn/Types.h"

#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace VornPrivate {

template <class Unit>
struct IsCodePointUnit
    : std::bool_constant<std::is_same<Unit, char32_t>::value || std::is_same<Unit, Vorn::UTF32Char>::value ||
                         (std::is_same<Unit, wchar_t>::value && sizeof(wchar_t) == 4)> {};

/// Defined for ranges of code points that are neither texts nor views of char32_t.
template <class Range>
using IfCodePoints =
    std::enable_if_t<IsCodePointUnit<std::decay_t<decltype(*std::begin(std::declval<const Range&>()))>>::value &&
                         !std::is_array<Range>::value && !std::is_convertible<const Range&, std::u32string_view>::value,
                     int>;

/// The elements of a range as a text.
template <class Range>
std::u32string collectCodePoints(const Range& range) {
    std::u32string codes;
    for (const auto code : range) codes.push_back(static_cast<char32_t>(code));
    return codes;
}

} // namespace VornPrivate

namespace Vorn {

/// A string, or the place and the reason of what is malformed in a text.
struct MadeString {
    String text;                          ///< null if the text is malformed
    unsigned int errorOffset = NOT_FOUND; ///< the first malformed unit, in units of the text, or NOT_FOUND
    const char* error = nullptr;          ///< the reason, such as "an overlong form", or null

    explicit operator bool() const noexcept { return !error; } ///< true if there is a string
};

/// Makes an owned string of a text or of code points.
///
/// Throws `Exception<7>` for malformed text, with the offset and the reason: "Malformed UTF-8 at offset 5: an overlong
/// form!". Throws `Exception<4>`: "length : text too long!" if the string would have more than 0xFFFFFFFE units.
/// @{
[[nodiscard]] VORN_API String makeString(TextView text);
[[nodiscard]] VORN_API String makeString(std::u32string_view codes);
template <class Range, VornPrivate::IfCodePoints<Range> = 0>
[[nodiscard]] String makeString(const Range& codes) {
    return makeString(std::u32string_view(VornPrivate::collectCodePoints(codes)));
}
/// @}

/// Makes an owned string of any text or code points. Writes U+FFFD for each maximal subpart of a character that is
/// malformed, for each noncharacter and for each code that is no code point. Throws `Exception<4>` as `makeString`
/// does.
/// @{
[[nodiscard]] VORN_API String makeStringReplacing(TextView text);
[[nodiscard]] VORN_API String makeStringReplacing(std::u32string_view codes);
template <class Range, VornPrivate::IfCodePoints<Range> = 0>
[[nodiscard]] String makeStringReplacing(const Range& codes) {
    return makeStringReplacing(std::u32string_view(VornPrivate::collectCodePoints(codes)));
}
/// @}

/// Makes an owned string of a text or code points, or returns the offset and the reason if they are malformed. Throws
/// `Exception<4>` as `makeString` does.
/// @{
[[nodiscard]] VORN_API MadeString tryMakeString(TextView text);
[[nodiscard]] VORN_API MadeString tryMakeString(std::u32string_view codes);
template <class Range, VornPrivate::IfCodePoints<Range> = 0>
[[nodiscard]] MadeString tryMakeString(const Range& codes) {
    return tryMakeString(std::u32string_view(VornPrivate::collectCodePoints(codes)));
}
/// @}

/// Makes a string that is never freed, which all threads may use at once: its record is constant and holds the text in
/// UTF-8 and UTF-16. For tables and literals that are made once; VORN_TEXT calls it. Throws as `makeString` does.
[[nodiscard]] VORN_API String makeStaticString(TextView text);

} // namespace Vorn

/// The string of a literal ("...", u8"..." or u"..."), made by `makeStaticString` at the first use of this place. Later
/// uses, in any thread, allocate nothing. The value is a `const Vorn::String&` that is valid until the program ends.
/// Throws `Exception<7>` for a malformed literal. Anything but a literal does not compile.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define VORN_TEXT(literal)                                                                                   \
    ([]() -> const ::Vorn::String& {                                                                         \
        alignas(::Vorn::String) static unsigned char vornPlace[sizeof(::Vorn::String)];                      \
        static const ::Vorn::String* const vornText = ::new (static_cast<void*>(vornPlace))::Vorn::String(   \
            ::Vorn::makeStaticString(::Vorn::TextView(literal "", sizeof(literal) / sizeof(*literal) - 1))); \
        return *vornText;                                                                                    \
    }())
// NOLINTEND(bugprone-macro-parentheses)
