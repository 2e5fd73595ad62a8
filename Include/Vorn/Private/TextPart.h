// TextPart, TextSplitter: parts of texts and their search. Support of Vorn/Text/TextPieces.h; not for direct use.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/CharacterSet.h"
#include "Vorn/Text/TextView.h"

#include <optional>
#include <string>
#include <type_traits>

namespace Vorn {

/// A part of a text in units of its encoding, between boundaries of characters.
struct TextPart {
    unsigned int start;
    unsigned int length;

    VORN_API static TextPart trim(TextView text, const CharacterSet& set, bool atStart, bool atEnd) noexcept;
    VORN_API static TextPart substring(TextView text, unsigned int start, unsigned int count);
    VORN_API static TextPart slice(TextView text, unsigned int offset, unsigned int length);
    VORN_API static unsigned int startOfLast(TextView text, unsigned int count) noexcept;
    VORN_API static TextPart removePrefix(TextView text, TextView prefix) noexcept;
    VORN_API static TextPart removeSuffix(TextView text, TextView suffix) noexcept;

    /// A String over a part of the text of a record, or of none. It has the encoding of the view.
    VORN_API static String share(StringData* parent, TextView text, TextPart part);
};

/// Divides a text.
class TextSplitter {
public:
    struct Lines {};

    static constexpr unsigned int BLOCK = 256; // bytes that are searched at a time
    static constexpr unsigned int SPARE = 8;

    /// A piece, and where the next one begins.
    struct Cursor {
        unsigned int start = 0;
        unsigned int end = 0;
        unsigned int nextStart = 0; // NOT_FOUND behind the last piece
        unsigned int count = 0;     // the pieces up to this one
        unsigned int lineFeed = 0;  // the first LF from `start` on, if it has been searched already
        unsigned int block = 0;     // the offset that those in `separators` are counted from
        unsigned int found = 0;     // the separators behind the next one that have been found already
        unsigned int used = 0;      // of these
        bool isDone = true;
        bool isFirst = true;
        unsigned char separators[BLOCK + SPARE]; // their last bytes
    };

    /// The owner is the record of the text if that is a String, otherwise null.
    TextSplitter(TextView text, const String& owner, const CharacterSet& separators, unsigned int maximum,
                 bool skipsEmpty)
        : TextSplitter(text, owner, maximum, skipsEmpty) {
        setSet(separators);
    }
    TextSplitter(TextView text, const String& owner, TextView separator, unsigned int maximum, bool skipsEmpty)
        : TextSplitter(text, owner, maximum, skipsEmpty) {
        setText(separator);
    }
    TextSplitter(TextView text, const String& owner, Lines, unsigned int maximum, bool skipsEmpty)
        : TextSplitter(text, owner, maximum, skipsEmpty) {
        m_kind = Kind::LINES;
    }

    /// Moves to the next piece; a new cursor moves to the first one.
    void next(Cursor& cursor) const {
        if (cursor.used == cursor.found)
            findNext(cursor);
        else
            useFound(cursor);
    }

    /// Returns the last separator, or a part that starts at NOT_FOUND.
    VORN_API TextPart findLast() const;

    /// The text. That of a String is looked up, because a record can move it.
    TextView getText() const {
        const StringData* const data = m_owner.getData();
        if (!data) return m_text;
        const unsigned int length = m_text.getLength();
        if (m_text.isUTF8()) return TextView(data->getPrivateBuffer<unsigned char>(), length);
        return TextView(data->getPrivateBuffer<UTF16Char>(), length);
    }

    /// The piece at a cursor.
    TextView getPiece(const Cursor& cursor) const {
        const TextView text = getText();
        const unsigned int length = cursor.end - cursor.start;
        return text.isUTF8() ? TextView(text.getUTF8() + cursor.start, length)
                             : TextView(text.getUTF16() + cursor.start, length);
    }

    StringData* getOwner() const { return m_owner.getData(); }

private:
    enum class Kind : unsigned char { BYTE, TEXT, SET, LINES, NOTHING };

    TextSplitter(TextView text, const String& owner, unsigned int maximum, bool skipsEmpty)
        : m_text(text), m_owner(owner), m_maximum(maximum), m_kind(Kind::NOTHING), m_skipsEmpty(skipsEmpty) {}

    VORN_API void findNext(Cursor& cursor) const;
    VORN_API void setSet(const CharacterSet& set);
    VORN_API void setText(TextView text);

    // Moves to the piece before a separator that has been found already.
    void useFound(Cursor& cursor) const {
        cursor.start = cursor.nextStart;
        cursor.end = cursor.block + cursor.separators[cursor.used++];
        cursor.nextStart = cursor.end + 1;
        if (m_kind == Kind::LINES && cursor.end > cursor.start) {
            const unsigned char* const end = getText().getUTF8() + cursor.end;
            if (end[0] == '\n' && end[-1] == '\r') --cursor.end;
        }
    }

    bool hasOneLength() const;
    TextPart find(TextView text, unsigned int from) const;
    unsigned int findBlock(TextView text, Cursor& cursor) const;
    unsigned int findLineEnd(TextView text, Cursor& cursor) const;

    TextView m_text; // not valid if there is an owner
    String m_owner;
    CharacterSet m_set;
    std::string m_bytes;    // the separator in UTF-8
    std::u16string m_units; // the separator in UTF-16
    unsigned int m_maximum;
    Kind m_kind;
    bool m_skipsEmpty;
};

class TextPiece;
template <class Piece>
class TextPieces;

} // namespace Vorn

namespace VornPrivate {

template <class Text>
using Plain = std::remove_cv_t<std::remove_reference_t<Text>>;

/// Defined for everything that a TextView can be made of.
template <class Text>
using IfText = std::enable_if_t<std::is_convertible_v<const Plain<Text>&, Vorn::TextView>, int>;

template <class Text>
inline constexpr bool IS_STRING = std::is_base_of_v<Vorn::String, Plain<Text>>;

template <class Text>
inline constexpr bool IS_STANDARD_STRING = false;
template <class Unit, class Traits, class Allocator>
inline constexpr bool IS_STANDARD_STRING<std::basic_string<Unit, Traits, Allocator>> = true;

template <class Text>
using PartOf = std::conditional_t<IS_STRING<Text>, Vorn::String, Vorn::TextView>;
template <class Text>
using PairOf = std::pair<PartOf<Text>, PartOf<Text>>;
template <class Text>
using PiecesOf = Vorn::TextPieces<std::conditional_t<IS_STRING<Text>, Vorn::TextPiece, Vorn::TextView>>;

/// Refuses texts whose parts would dangle. `Text` is deduced from a forwarding reference.
template <class Text>
constexpr void refuseTemporary() {
    static_assert(std::is_lvalue_reference_v<Text> || !IS_STANDARD_STRING<Plain<Text>>,
                  "a part of this temporary string would dangle: keep the string in a variable, or pass a String");
}

/// A part of a text, which `find` returns for its view.
template <class Text, class Find>
PartOf<Text> partOf(const Plain<Text>& text, Find find) {
    refuseTemporary<Text>();
    const Vorn::TextView view(text);
    const Vorn::TextPart part = find(view);
    if constexpr (IS_STRING<Text>)
        return Vorn::TextPart::share(text.getData(), view, part);
    else
        return view.slice(part.start, part.length);
}

template <class Text, class Separator>
Vorn::TextSplitter splitterOf(const Plain<Text>& text, const Separator& separator, unsigned int maximum,
                              bool skipsEmpty) {
    refuseTemporary<Text>();
    if constexpr (IS_STRING<Text>)
        return Vorn::TextSplitter(text, text, separator, maximum, skipsEmpty);
    else
        return Vorn::TextSplitter(text, Vorn::String(), separator, maximum, skipsEmpty);
}

template <class Text, class Separator>
PiecesOf<Text> piecesOf(const Plain<Text>& text, const Separator& separator, unsigned int maximum, bool skipsEmpty) {
    return PiecesOf<Text>(splitterOf<Text>(text, separator, maximum, skipsEmpty));
}

template <class Text, class Separator>
std::optional<PairOf<Text>> pairOf(const Plain<Text>& text, const Separator& separator, bool isLast) {
    const Vorn::TextSplitter splitter = splitterOf<Text>(text, separator, 2, false);
    Vorn::TextPart found = {Vorn::NOT_FOUND, 0};
    if (isLast) {
        found = splitter.findLast();
    } else {
        Vorn::TextSplitter::Cursor cursor;
        splitter.next(cursor);
        if (cursor.nextStart != Vorn::NOT_FOUND) found = {cursor.end, cursor.nextStart - cursor.end};
    }
    if (found.start == Vorn::NOT_FOUND) return std::nullopt;
    const unsigned int behind = found.start + found.length;
    const auto part = [&](unsigned int start, unsigned int length) {
        return partOf<const Plain<Text>&>(text, [=](Vorn::TextView) { return Vorn::TextPart{start, length}; });
    };
    const unsigned int length = splitter.getText().getLength();
    return PairOf<Text>(part(0, found.start), part(behind, length - behind));
}

} // namespace VornPrivate
