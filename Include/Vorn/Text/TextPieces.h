/// @file
/// TextPieces: parts of texts, and texts divided at separators, without a copy.
///
///     TextView key = trim("  speed ");                            // "speed"
///     String file = removeSuffix(path, ".png");                   // shares the block of the String `path`
///     for (TextView word : split(line, ',')) use(trim(word));     // allocates nothing
///     for (const TextPiece& row : lines(page)) rows.push_back(row.toString());
///     if (auto pair = splitOnce(line, '=')) set(pair->first, pair->second);
///
/// A part of a String (or UTF8String) is a String that shares its block of text; the whole text is the same record. A
/// part of any other text is a TextView. Parts of temporary standard strings do not compile, because they would dangle:
///
///     TextView name = trim(std::getenv("USER") + std::string(" "));   // wrong: does not compile
///
/// Parts begin and end at boundaries of characters. A separator, prefix or suffix is found where its characters are,
/// whatever the two encodings; U+0000 is found as the byte 0 and as 0xC0 0x80. Malformed units belong to no match, and
/// a malformed separator is found nowhere.
///
/// Cost: a part of a String allocates its record and nothing else; the empty part and the whole text allocate nothing.
/// Many parts keep a whole block alive: to keep a short part of a long text, use `makeString`.
///
/// Edits of a UTF8String change none of its parts: the first edit after a part was taken copies the text.
///
/// Threads: a part of a String and the String must be used by one thread at a time.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/Private/TextPart.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/CharacterSet.h"
#include "Vorn/Text/TextView.h"

#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>

namespace Vorn {

/// Returns the text without the characters of a set at both ends, by default without white space.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> trim(Text&& text, const CharacterSet& set = WHITE_SPACE) {
    return VornPrivate::partOf<Text>(text, [&](TextView view) { return TextPart::trim(view, set, true, true); });
}

/// Returns the text without the characters of a set at its start.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> trimStart(Text&& text, const CharacterSet& set = WHITE_SPACE) {
    return VornPrivate::partOf<Text>(text, [&](TextView view) { return TextPart::trim(view, set, true, false); });
}

/// Returns the text without the characters of a set at its end.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> trimEnd(Text&& text, const CharacterSet& set = WHITE_SPACE) {
    return VornPrivate::partOf<Text>(text, [&](TextView view) { return TextPart::trim(view, set, false, true); });
}

/// Returns `count` code points from number `start` on, or those that remain. Malformed units count as U+FFFD, one for
/// each longest part of a character.
///
/// Throws `Exception<4>`: "Invalid offset!" if the text has less than `start` code points. Reads the text up to the end
/// of the part.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> substring(Text&& text, unsigned int start, unsigned int count = NOT_FOUND) {
    return VornPrivate::partOf<Text>(text, [=](TextView view) { return TextPart::substring(view, start, count); });
}

/// Returns the last `count` code points, or the whole text if it has no more. Reads these code points only.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> last(Text&& text, unsigned int count) {
    return VornPrivate::partOf<Text>(text, [=](TextView view) {
        const unsigned int start = TextPart::startOfLast(view, count);
        return TextPart{start, view.getLength() - start};
    });
}

/// Returns the text without its last `count` code points; the empty text if it has no more.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> dropLast(Text&& text, unsigned int count) {
    return VornPrivate::partOf<Text>(text, [=](TextView view) {
        return TextPart{0, TextPart::startOfLast(view, count)};
    });
}

/// Returns the part from an offset on, which is as `find` and its like return it: in units of the text. `length` is
/// limited to what remains.
///
///     const unsigned int colon = find(line, ':');
///     String key = slice(line, 0, colon);   // the whole line if there is no colon
///
/// NOT_FOUND + 1 is 0, so that `slice(line, find(line, ':') + 1)` would be the whole line, too: write `splitOnce`.
///
/// Throws `Exception<4>`: "Invalid offset!" for an offset behind the end, and if the part would begin or end inside a
/// character.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> slice(Text&& text, unsigned int offset, unsigned int length = NOT_FOUND) {
    return VornPrivate::partOf<Text>(text, [=](TextView view) { return TextPart::slice(view, offset, length); });
}

/// Returns the text without `prefix`, once, if it starts with it; otherwise the whole text.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> removePrefix(Text&& text, TextView prefix) {
    return VornPrivate::partOf<Text>(text, [=](TextView view) { return TextPart::removePrefix(view, prefix); });
}

/// Returns the text without `suffix`, once, if it ends with it; otherwise the whole text.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PartOf<Text> removeSuffix(Text&& text, TextView suffix) {
    return VornPrivate::partOf<Text>(text, [=](TextView view) { return TextPart::removeSuffix(view, suffix); });
}

/// A piece of a String that is being divided: a view, which becomes a String on request. Valid as long as the range
/// that it comes from.
class TextPiece : public TextView {
public:
    /// The piece as a String that shares the block of the divided one. Allocates a record only.
    String toString() const { return TextPart::share(m_parent, *this, {m_start, getLength()}); }
    operator String() const { return toString(); } // NOLINT(google-explicit-constructor)

private:
    template <class Piece>
    friend class TextPieces;

    TextPiece(StringData* parent, TextView view, unsigned int start)
        : TextView(view), m_parent(parent), m_start(start) {}

    StringData* m_parent; // counted by the range
    unsigned int m_start; // the offset of the piece in units
};

/// The pieces of a text, a range that finds each when it is reached. `Piece` is TextPiece if a String is divided, and
/// TextView otherwise.
///
/// A range keeps a String alive; a text of another kind must outlive it. Separators are copied.
template <class Piece>
class TextPieces {
public:
    /// A position in the range. Valid as long as the range.
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag; // by value, so not a forward iterator before C++20
        using iterator_concept = std::forward_iterator_tag;
        using value_type = Piece;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Piece;

        Iterator() noexcept : m_pieces(nullptr) {}

        Piece operator*() const { return m_pieces->at(m_cursor); }
        Iterator& operator++() {
            m_pieces->m_splitter.next(m_cursor);
            return *this;
        }
        Iterator operator++(int) {
            const Iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const Iterator& a, const Iterator& b) noexcept {
            return a.m_cursor.isDone == b.m_cursor.isDone &&
                   (a.m_cursor.isDone || a.m_cursor.start == b.m_cursor.start);
        }
        friend bool operator!=(const Iterator& a, const Iterator& b) noexcept { return !(a == b); }

    private:
        friend class TextPieces;
        explicit Iterator(const TextPieces* pieces) : m_pieces(pieces) { pieces->m_splitter.next(m_cursor); }

        const TextPieces* m_pieces;
        TextSplitter::Cursor m_cursor; // done in the end
    };
    using iterator = Iterator;
    using const_iterator = Iterator;
    using value_type = Piece;

    explicit TextPieces(TextSplitter&& splitter) : m_splitter(std::move(splitter)) {}

    Iterator begin() const& { return Iterator(this); }
    Iterator end() const& noexcept { return Iterator(); }
    void begin() && = delete; // the positions of a temporary range would dangle

private:
    friend class Iterator;

    Piece at(const TextSplitter::Cursor& cursor) const {
        const TextView view = m_splitter.getPiece(cursor);
        if constexpr (std::is_same_v<Piece, TextPiece>)
            return TextPiece(m_splitter.getOwner(), view, cursor.start);
        else
            return view;
    }

    TextSplitter m_splitter;
};

/// The pieces between the characters of a set, or between occurrences of a text. A text without a separator, also the
/// empty one, is one piece; separators at the ends and next to each other have empty pieces beside them.
///
///     for (TextView field : split("a,b,,c", ',')) ...      // "a", "b", "", "c"
///     for (TextView field : split(row, anyOf(",;"))) ...
///     for (TextView step : split(path, "::", 2)) ...       // the first, and the rest of the text
///
/// @param maximum The most pieces; the last of them is the rest of the text.
///
/// Throws `Exception<4>`: "separator : must not be empty!" for an empty text as separator. An empty set divides
/// nothing. Allocates nothing, but for the copy of a separator of more than 15 bytes or 7 units.
/// @{
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PiecesOf<Text> split(Text&& text, const CharacterSet& separators,
                                                unsigned int maximum = NOT_FOUND) {
    return VornPrivate::piecesOf<Text>(text, separators, maximum, false);
}
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PiecesOf<Text> split(Text&& text, TextView separator, unsigned int maximum = NOT_FOUND) {
    return VornPrivate::piecesOf<Text>(text, separator, maximum, false);
}
/// @}

/// The pieces as by `split` that are not empty; by default between white space.
///
///     for (TextView word : splitNonEmpty("  two  words ")) ...   // "two", "words"
///
/// @param maximum The most pieces; the last of them is the text from its start on, with all separators behind it.
/// @{
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PiecesOf<Text> splitNonEmpty(Text&& text, const CharacterSet& separators = WHITE_SPACE,
                                                        unsigned int maximum = NOT_FOUND) {
    return VornPrivate::piecesOf<Text>(text, separators, maximum, true);
}
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PiecesOf<Text> splitNonEmpty(Text&& text, TextView separator,
                                                        unsigned int maximum = NOT_FOUND) {
    return VornPrivate::piecesOf<Text>(text, separator, maximum, true);
}
/// @}

/// The lines of a text, without their ends: LF, CR LF or CR. The last line needs no end; behind an end that stands at
/// the end of the text there is no line, and the empty text has none.
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] VornPrivate::PiecesOf<Text> lines(Text&& text) {
    return VornPrivate::piecesOf<Text>(text, TextSplitter::Lines(), NOT_FOUND, false);
}

/// The parts before and behind the first separator, or nothing if there is none. Separators are those of `split`.
/// @{
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] std::optional<VornPrivate::PairOf<Text>> splitOnce(Text&& text, const CharacterSet& separators) {
    return VornPrivate::pairOf<Text>(text, separators, false);
}
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] std::optional<VornPrivate::PairOf<Text>> splitOnce(Text&& text, TextView separator) {
    return VornPrivate::pairOf<Text>(text, separator, false);
}
/// @}

/// The parts before and behind the last separator, or nothing if there is none.
///
///     if (auto parts = splitOnceAtEnd(path, '/')) open(parts->first, parts->second);
///
/// @{
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] std::optional<VornPrivate::PairOf<Text>> splitOnceAtEnd(Text&& text, const CharacterSet& separators) {
    return VornPrivate::pairOf<Text>(text, separators, true);
}
template <class Text, VornPrivate::IfText<Text> = 0>
[[nodiscard]] std::optional<VornPrivate::PairOf<Text>> splitOnceAtEnd(Text&& text, TextView separator) {
    return VornPrivate::pairOf<Text>(text, separator, true);
}
/// @}

} // namespace Vorn
