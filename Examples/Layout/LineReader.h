// LineReader: parses one line of a panel file.
#pragma once

#include <Vorn/String/String.h>

#include <stdexcept>
#include <string>
#include <string_view>

/// The reason why a line cannot be read, as a message for users.
class LineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads words, numbers and names in order. Throws LineError for unexpected text. The line is borrowed and must be
/// followed by a line break or a zero byte, because the parser of floats reads the byte after a number.
class LineReader {
public:
    explicit LineReader(std::string_view line) : m_rest(line) {}

    /// Skips leading blanks and returns their number.
    std::size_t skipBlanks();

    /// Returns true if only blanks or a comment remain.
    bool isAtEnd();

    /// Reads the text up to the next blank; empty at the end of the line.
    std::string_view word();

    /// Reads a name in double quotes.
    Vorn::String name();

    /// Reads a number from `least` to `most`, which is an integer if the limits are integers.
    /// @{
    float number(float least, float most);
    unsigned int number(unsigned int least, unsigned int most);
    /// @}

    /// Reads a colour of six hexadecimal digits.
    unsigned int colour();

private:
    std::string_view m_rest; // the text that has not been read yet
};
