/// @file
/// TextBuilder: texts that are put together from texts, characters and numbers.
///
///     String title = concat(name, ", level ", 42);       // one allocation of text
///     String path = folder + "/" + file;                  // if one side of each + is a String
///     String list = join(names, ", ");
///     TextBuilder page;
///     for (const Row& row : rows) page.append(row.name, '\t', row.price, '\n');
///     String result = page.take();
///
/// The items are everything that a TextView can be made of, the character types `char` (ASCII), `char16_t` and
/// `char32_t`, and numbers, which are written as by `toText`. A UTF32Char is an `unsigned int` and so a number: to
/// write it as a character, use `appendCodePoint` or `char32_t`.
///
/// The result is in UTF-16 if all texts in it are, else in UTF-8. Characters, numbers and empty texts do not count. It
/// is always a valid String: a malformed view, and a character that no text can have, throw `Exception<7>` as in
/// `makeString` and CharacterSet. What is in a String already is not validated again.
///
/// A result of more than 0xFFFFFFFE units throws `Exception<4>`: "length : text too long!" before memory for it is
/// allocated. An empty result is the empty string, which is not null.
///
/// Threads: a builder must be used by one thread at a time.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/PlainItems.h"
#include "Vorn/Private/TextPart.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextNumbers.h"
#include "Vorn/Text/TextView.h"
#include "Vorn/Types.h"

#include <cstddef>
#include <initializer_list>
#include <type_traits>

namespace VornPrivate {

/// Defined for two texts of which one is a String.
template <class A, class B>
using IfAdded = std::enable_if_t<(IS_STRING<A> || IS_STRING<B>)&&std::is_convertible_v<const A&, Vorn::TextView> &&
                                     std::is_convertible_v<const B&, Vorn::TextView>,
                                 int>;

} // namespace VornPrivate

namespace Vorn {

/// A text, a character or a number as an argument of `concat` and `TextBuilder::append`. Refers to the text.
class TextItem {
public:
    template <class Text, VornPrivate::IfText<Text> = 0>
    TextItem(const Text& text) // NOLINT(google-explicit-constructor)
        : m_text(text), m_isValid(VornPrivate::IS_STRING<Text>) {}

    template <class Number, std::enable_if_t<VornPrivate::IS_NUMBER<Number>, int> = 0>
    TextItem(Number value) : m_isValid(true) { // NOLINT(google-explicit-constructor)
        m_size = static_cast<unsigned char>(NumberText::printAny(m_units, sizeof m_units, value, 10));
    }

    TextItem(char c);                                            // NOLINT(google-explicit-constructor)
    TextItem(char16_t c) : TextItem(static_cast<char32_t>(c)) {} // NOLINT(google-explicit-constructor)
    TextItem(char32_t c) : m_isValid(true) {
        m_size = writeCharacter(c, m_units);
    } // NOLINT(google-explicit-constructor)

    /// The item as a text in one encoding.
    TextView getText() const { return m_size ? TextView(m_units, m_size) : m_text; }

    bool isText() const noexcept { return m_size == 0; } ///< true if it is a text; characters and numbers are not
    bool isValid() const noexcept { return m_isValid; }  ///< true if the text need not be validated

private:
    VORN_API static unsigned char writeCharacter(char32_t c, char* units);

    TextView m_text;
    bool m_isValid;
    unsigned char m_size = 0; // of a character or number; 0 for a text
    char m_units[32] = {};    // a character or a number; the longest is -2.2250738585072014e-308
};

inline TextItem::TextItem(char c) : m_isValid(true), m_size(1) {
    if (static_cast<unsigned char>(c) > 127) VORN_THROW(E::PARAMETER, "Invalid ASCII character!");
    if (c == 0)
        m_size = writeCharacter(0, m_units);
    else
        m_units[0] = c;
}

/// Puts a text together, in memory that grows by half of its size.
class TextBuilder {
public:
    TextBuilder() noexcept = default;

    /// Takes the text of `other`, which is empty afterwards.
    VORN_API TextBuilder(TextBuilder&& other) noexcept;
    VORN_API TextBuilder& operator=(TextBuilder&& other) noexcept;
    VORN_API ~TextBuilder();

    /// Appends the items one after the other. If it throws, the text is as before.
    template <class... Items>
    TextBuilder& append(const Items&... items) {
        static_assert(sizeof...(Items) > 0, "append needs an item");
        VornPrivate::TextStore longer = m_store;
        if ((VornPrivate::tryAppend(longer, items) && ...)) {
            m_store = longer;
            return *this;
        }
        const TextItem all[] = {TextItem(items)...};
        appendItems(all, sizeof...(Items));
        return *this;
    }

    /// Appends a code point.
    TextBuilder& appendCodePoint(UTF32Char c) { return append(static_cast<char32_t>(c)); }

    /// Provides memory for a text of `length` units.
    VORN_API void reserve(unsigned int length);

    /// Returns the length in units of the present encoding.
    [[nodiscard]] unsigned int getLength() const noexcept { return m_store.length; }
    [[nodiscard]] bool isEmpty() const noexcept { return m_store.length == 0; }

    /// Removes the text and keeps the memory.
    void clear() noexcept {
        m_store.length = 0;
        m_store.hasText = false;
    }

    /// Returns a copy of the text in a block of its size. The builder keeps its text.
    [[nodiscard]] VORN_API String build() const;

    /// Returns the text and is empty afterwards. The block of the builder becomes that of the String, without a copy,
    /// unless a third of it or more would be unused: then the String has a block of its size, and the builder keeps the
    /// memory. If memory ends, the text can be lost.
    [[nodiscard]] VORN_API String take();

private:
    VORN_API void appendItems(const TextItem* items, std::size_t count);

    VornPrivate::TextStore m_store;
};

/// Support of the templates below, not for direct use.
struct TextJoining {
    [[nodiscard]] VORN_API static String concat(const TextItem* items, std::size_t count);
};

/// Returns the items one after the other. Allocates one block of text and its record.
template <class... Items>
[[nodiscard]] String concat(const Items&... items) {
    static_assert(sizeof...(Items) > 0, "concat needs an item");
    unsigned char room[512]; // most results are short
    VornPrivate::TextStore text;
    text.block = room;
    text.capacity = sizeof room;
    if ((VornPrivate::tryAppend(text, items) && ...)) return makeString(TextView(room, text.length));
    const TextItem all[] = {TextItem(items)...};
    return TextJoining::concat(all, sizeof...(Items));
}

/// Returns two texts, of which at least one is a String, one after the other. For more than two, `concat` allocates
/// less.
template <class A, class B, VornPrivate::IfAdded<A, B> = 0>
[[nodiscard]] String operator+(const A& a, const B& b) {
    return concat(a, b);
}

/// Returns the items of a range, with a separator between each two of them.
///
///     String list = join(names, ", ");
///     String row = join({"a", "b", "c"}, u';');
///
/// The range is visited once.
/// @{
template <class Range>
[[nodiscard]] String join(const Range& items, const TextItem& separator) {
    TextBuilder builder;
    bool isFirst = true;
    for (const auto& item : items) {
        if (isFirst)
            builder.append(item);
        else
            builder.append(separator, item);
        isFirst = false;
    }
    return builder.take();
}
[[nodiscard]] inline String join(std::initializer_list<TextView> items, const TextItem& separator) {
    return join<std::initializer_list<TextView>>(items, separator);
}
/// @}

} // namespace Vorn
