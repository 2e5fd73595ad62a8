// LineReader: takes one line of a panel file apart.
#pragma once

#include <Vorn/String/String.h>

#include <stdexcept>
#include <string>
#include <string_view>

/// Why a line cannot be read, for people.
class LineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads words, numbers and names one behind the other; what is not as expected throws LineError. The line stays the
/// caller's and must be followed by a line break or a zero byte, as the numbers' parsers look at the byte behind them.
class LineReader {
public:
    explicit LineReader(std::string_view line) : m_rest(line) {}

    /// Skips the blanks in front and returns how many there were.
    std::size_t skipBlanks();

    /// Whether nothing but blanks or a comment is left.
    bool isAtEnd();

    /// Everything up to the next blank, empty at the end of the line.
    std::string_view word();

    /// A name in double quotes. The string points into the line.
    Vorn::String name();

    /// A number from `least` to `most`; a whole one where the bounds are integers.
    /// @{
    float number(float least, float most);
    unsigned int number(unsigned int least, unsigned int most);
    /// @}

    /// A colour in six hexadecimal digits.
    unsigned int colour();

private:
    std::string_view m_rest; // what has not been read yet
};
