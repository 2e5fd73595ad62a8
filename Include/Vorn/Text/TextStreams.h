/// @file
/// TextStreams: strings, views and names in the streams of the standard library.
///
///     std::cout << std::setw(12) << name << '\n';          // padded to 12 characters
///     while (getLine(file, line)) lines.push_back(line);   // each line is a String of its own
///
/// Text is read and written in UTF-8. A width counts code points, not bytes. `<<` of a String is declared in
/// Vorn/String/Interop.h.
///
/// Failures: as those of the standard's functions. Reading sets the stream's `badbit` if its buffer throws or a text is
/// too long for the memory, and throws again if the stream throws for `badbit`; it throws `std::bad_alloc` if there is
/// no memory for the string.
///
/// Cost: as for `std::string`; each string that is read has a record and a block of its own.
///
/// Threads: the functions use their arguments only.
#pragma once

#include "Vorn/Config.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/String.h"
#include "Vorn/Text/Name.h"
#include "Vorn/Text/TextView.h"

#include <iosfwd>
#include <type_traits>

namespace Vorn {

/// Support of the templates below, not for direct use.
struct TextStreams {
    VORN_API static void write(std::ostream& stream, TextView text);
    VORN_API static bool readWord(std::istream& stream, String& word);
    VORN_API static bool readLine(std::istream& stream, String& line, char delimiter);
};

/// Writes a text in UTF-8, padded with the stream's fill character to its width in code points, and sets the width to
/// 0. U+0000 is a zero byte, and malformed units are written as U+FFFD.
template <class Text, std::enable_if_t<std::is_same_v<Text, TextView> || std::is_same_v<Text, Name>, int> = 0>
std::ostream& operator<<(std::ostream& stream, const Text& text) {
    TextStreams::write(stream, text);
    return stream;
}

/// Reads a word: skips white space if the stream does so, and ends before white space, after as many code points as the
/// width states if it is not 0, or at the end of the stream. Sets the width to 0.
///
/// Sets the stream's `failbit` and leaves the string unchanged if there is no word or if it is malformed; the word has
/// been read then.
template <class S, std::enable_if_t<std::is_base_of_v<String, S>, int> = 0>
std::istream& operator>>(std::istream& stream, S& word) {
    String text;
    if (TextStreams::readWord(stream, text)) word = text;
    return stream;
}

/// Reads a line without its delimiter. Returns the stream. Sets its `failbit` and leaves the string unchanged at the
/// end of the stream, and for a malformed line, which has been read then. A "\r" before the delimiter belongs to the
/// line.
template <class S, std::enable_if_t<std::is_base_of_v<String, S>, int> = 0>
std::istream& getLine(std::istream& stream, S& line, char delimiter = '\n') {
    String text;
    if (TextStreams::readLine(stream, text, delimiter)) line = text;
    return stream;
}

} // namespace Vorn
