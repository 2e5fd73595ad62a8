/// @file
/// TextView: a non-owning view of a text in UTF-8 or UTF-16, the argument of every operation that only reads text.
///
///     bool isPicture(TextView path) { return endsWith(path, ".png"); }
///     isPicture(file.getName());                 // a String, in either encoding
///     isPicture("icon.png");                     // a literal, a std::string or a std::u16string_view
///
/// A view converts from strings, literals and standard text types without an allocation. It is not validated: units
/// that belong to no character count as U+FFFD, one for each longest part of a character. U+0000 is the byte 0xC0 0x80
/// in the UTF-8 text of a String and the byte 0 in other UTF-8; both are U+0000 for all operations. A null string
/// is an empty text; so is a pointer that is null, unless a length is given with it.
///
/// Cost: three words or less, passed by value. A terminated text is measured on construction.
///
/// Threads: as the text that is viewed.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/Private/Surprise.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace Vorn {

/// The encoding of a text in memory.
enum class TextEncoding : unsigned char { UTF8, UTF16 };

/// The offset that a search returns if it finds nothing.
inline constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;

} // namespace Vorn

namespace VornPrivate {

template <class Unit>
struct TextUnit : std::false_type {};
template <>
struct TextUnit<char> : std::true_type {};
template <>
struct TextUnit<unsigned char> : std::true_type {};
#if defined(__cpp_char8_t)
template <>
struct TextUnit<char8_t> : std::true_type {};
#endif
template <>
struct TextUnit<char16_t> : std::true_type {};
#if WCHAR_MAX <= 0xFFFF
template <>
struct TextUnit<wchar_t> : std::true_type {};
#endif

/// Defined for the types of code units: `char`, `unsigned char`, `char8_t`, `char16_t` and UTF16Char.
template <class Unit>
using IfTextUnit = std::enable_if_t<TextUnit<Unit>::value, int>;

/// The number of units before the first zero unit; 0 for null.
template <class Unit>
std::size_t terminatedLength(const Unit* text) {
    using Equivalent = std::conditional_t<sizeof(Unit) == 1, char, Vorn::UTF16Char>;
    return text ? std::char_traits<Equivalent>::length(reinterpret_cast<const Equivalent*>(text)) : 0;
}

} // namespace VornPrivate

namespace Vorn {

class TextView;
[[nodiscard]] VORN_API bool equals(TextView a, TextView b) noexcept;

/// A non-owning view of a text in UTF-8 or UTF-16.
/// @warning The view dangles after the text has been destroyed or moved; see `StringData::getTerminatedBuffer`. Pass
///     views as arguments; to keep a text, use `makeString`.
class TextView {
public:
    /// An empty view.
    constexpr TextView() noexcept : m_units(nullptr), m_length(0), m_encoding(TextEncoding::UTF8) {}

    TextView(std::nullptr_t) = delete;

    /// The text of a string, in an encoding that its record has. Builds no buffer. If the record has both buffers and
    /// one was converted inexactly, views the other one.
    TextView(const String& s VORN_LIFETIMEBOUND) : TextView() { // NOLINT(google-explicit-constructor)
        const StringData* const data = s.getData();
        if (!data) return;
        const UTF16Char* const units = data->getPrivateBuffer<UTF16Char>();
        const unsigned char* const bytes = data->getPrivateBuffer<unsigned char>();
        if (!units || (bytes && !isInUTF16(*data))) {
            set(bytes, data->getBufferInfo<unsigned char>().m_length, TextEncoding::UTF8);
        } else {
            set(units, data->getBufferInfo<UTF16Char>().m_length, TextEncoding::UTF16);
        }
    }

    /// A text that ends at its first zero unit; empty for null.
    ///
    /// Throws `Exception<4>`: "length : text too long!" for more than 0xFFFFFFFE units, as all constructors do.
    template <class Unit, VornPrivate::IfTextUnit<Unit> = 0>
    TextView(const Unit* text) // NOLINT(google-explicit-constructor)
        : TextView(text, VornPrivate::terminatedLength(text)) {}

    template <class Unit, class Traits, VornPrivate::IfTextUnit<Unit> = 0>
    TextView(std::basic_string_view<Unit, Traits> text) // NOLINT(google-explicit-constructor)
        : TextView(text.data(), text.size()) {}

    template <class Unit, class Traits, class Allocator, VornPrivate::IfTextUnit<Unit> = 0>
    // NOLINTNEXTLINE(google-explicit-constructor)
    TextView(const std::basic_string<Unit, Traits, Allocator>& text VORN_LIFETIMEBOUND)
        : TextView(text.data(), text.size()) {}

    /// A text of `length` units.
    template <class Unit, VornPrivate::IfTextUnit<Unit> = 0>
    TextView(const Unit* text, std::size_t length) : TextView() {
        if (length > VornPrivate::MAX_TEXT_LENGTH) VORN_THROW(E::PARAMETER, "length : text too long!");
        set(text, static_cast<unsigned int>(length), sizeof(Unit) == 1 ? TextEncoding::UTF8 : TextEncoding::UTF16);
    }

    [[nodiscard]] TextEncoding getEncoding() const noexcept { return m_encoding; }
    [[nodiscard]] bool isUTF8() const noexcept { return m_encoding == TextEncoding::UTF8; }

    [[nodiscard]] unsigned int getLength() const noexcept { return m_length; } ///< the length in units of its encoding
    [[nodiscard]] bool isEmpty() const noexcept { return m_length == 0; }

    /// The units of a text in UTF-8, not terminated. Null if the view is empty or in UTF-16.
    const unsigned char* getUTF8() const noexcept {
        return isUTF8() ? static_cast<const unsigned char*>(m_units) : nullptr;
    }

    /// The units of a text in UTF-16, not terminated. Null if the view is empty or in UTF-8.
    const UTF16Char* getUTF16() const noexcept { return isUTF8() ? nullptr : static_cast<const UTF16Char*>(m_units); }

    /// A part of the text, from a unit on; `length` is limited to what remains. Offsets count units. Throws
    /// `Exception<4>`: "offset <= m_length : Invalid offset!".
    [[nodiscard]] TextView slice(unsigned int offset, unsigned int length = NOT_FOUND) const {
        if (!VORN_LIKELY(offset <= m_length)) VORN_THROW(E::PARAMETER, "offset <= m_length : Invalid offset!");
        TextView part;
        const unsigned int remaining = m_length - offset;
        part.set(isUTF8() ? static_cast<const void*>(getUTF8() + offset) : getUTF16() + offset,
                 length < remaining ? length : remaining, m_encoding);
        return part;
    }

    /// Compares the code points of a view and of a text of any kind; see `equals` of TextOrder.h.
    friend bool operator==(TextView a, TextView b) noexcept { return equals(a, b); }
    friend bool operator!=(TextView a, TextView b) noexcept { return !equals(a, b); }

private:
    // True if the UTF-16 buffer of a record that has both buffers holds the text, and the UTF-8 buffer a conversion of
    // it that is not exact.
    VORN_API static bool isInUTF16(const StringData& data);

    void set(const void* units, unsigned int length, TextEncoding encoding) noexcept {
        m_units = length == 0 ? nullptr : units;
        m_length = length;
        m_encoding = encoding;
    }

    const void* m_units; // null if the view is empty
    unsigned int m_length;
    TextEncoding m_encoding;
};

} // namespace Vorn
