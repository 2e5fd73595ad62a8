/// @file
/// TextChange: changed copies of texts.
///
///     String shown = replaceAll(path, "\\", "/");
///     String name = toUpperASCII(key);
///     String number = padStart(toText(7), 3, U'0');   // "007"
///     String rule = repeat("=-", 20);
///
/// The result is a String in the encoding of the text, always valid: malformed views throw `Exception<7>` as in
/// `makeString`. A String that is not changed is returned as it is and allocates nothing.
///
/// A result of more than 0xFFFFFFFE units throws `Exception<4>`: "length : text too long!" before memory for it is
/// allocated.
///
/// There is no `reverse`: code points in reverse order put accents on other letters.
///
/// Threads: the functions share no state.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/TextPart.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/TextView.h"

namespace Vorn {

/// Support of the templates below, not for direct use. `string` is the text if it is a String, or null.
struct TextChange {
    VORN_API static String replace(TextView text, const String* string, TextView from, TextView to, bool onlyFirst);
    VORN_API static String replaceRange(TextView text, const String* string, unsigned int offset, unsigned int length,
                                        TextView to);
    VORN_API static String repeat(TextView text, const String* string, unsigned int count);
    VORN_API static String pad(TextView text, const String* string, unsigned int width, char32_t fill, bool atStart);
    VORN_API static String changeCase(TextView text, const String* string, bool toUpper);

    template <class Text>
    static const String* stringOf(const Text& text) noexcept {
        if constexpr (VornPrivate::IS_STRING<Text>)
            return &text;
        else
            return nullptr;
    }
};

/// Returns the text with `to` in place of each occurrence of `from`, from the start on; occurrences in `to` are not
/// replaced. Throws `Exception<4>`: "from : must not be empty!".
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String replaceAll(const Text& text, TextView from, TextView to) {
    return TextChange::replace(text, TextChange::stringOf(text), from, to, false);
}

/// Returns the text with `to` in place of the first occurrence of `from`. Throws as `replaceAll` does.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String replaceFirst(const Text& text, TextView from, TextView to) {
    return TextChange::replace(text, TextChange::stringOf(text), from, to, true);
}

/// Returns the text with `to` in place of the part from `offset` on, which has `length` units or what remains. Offset
/// and length are in units of the text, as `find` and its like return them.
///
/// Throws `Exception<4>`: "Invalid offset!" for an offset behind the end, and if the part begins or ends inside a
/// character.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String replaceRange(const Text& text, unsigned int offset, unsigned int length, TextView to) {
    return TextChange::replaceRange(text, TextChange::stringOf(text), offset, length, to);
}

/// Returns the text with `piece` inserted at an offset. Throws as `replaceRange` does.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String insert(const Text& text, unsigned int offset, TextView piece) {
    return replaceRange(text, offset, 0, piece);
}

/// Returns the text without the part from `offset` on, which has `length` units or what remains. Throws as
/// `replaceRange` does.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String erase(const Text& text, unsigned int offset, unsigned int length = NOT_FOUND) {
    return replaceRange(text, offset, length, TextView());
}

/// Returns the text `count` times, one after the other.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String repeat(const Text& text, unsigned int count) {
    return TextChange::repeat(text, TextChange::stringOf(text), count);
}

/// Returns the text with as many `fill` characters before it (`padStart`) or behind it (`padEnd`) that it has `width`
/// code points. Longer texts are not changed. Throws `Exception<7>`: "Invalid Unicode character!" for a fill that no
/// text can have.
/// @{
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String padStart(const Text& text, unsigned int width, char32_t fill = U' ') {
    return TextChange::pad(text, TextChange::stringOf(text), width, fill, true);
}
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String padEnd(const Text& text, unsigned int width, char32_t fill = U' ') {
    return TextChange::pad(text, TextChange::stringOf(text), width, fill, false);
}
/// @}

/// Returns the text with the letters a to z as A to Z, or the other way round. All other characters stay.
/// @{
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String toUpperASCII(const Text& text) {
    return TextChange::changeCase(text, TextChange::stringOf(text), true);
}
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] String toLowerASCII(const Text& text) {
    return TextChange::changeCase(text, TextChange::stringOf(text), false);
}
/// @}

} // namespace Vorn
