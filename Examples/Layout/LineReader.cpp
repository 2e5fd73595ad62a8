#include "LineReader.h"

#include "NumberText.h"

#include <Vorn/ParseFloat.h>
#include <Vorn/Text/CodePoints.h>
#include <Vorn/Text/MakeString.h>
#include <Vorn/Text/TextNumbers.h>
#include <Vorn/Text/TextSearch.h>

#include <algorithm>

namespace {

using Vorn::String;

constexpr std::string_view BLANKS = " \t";
constexpr std::string_view DIGITS = "0123456789";

std::string quoted(std::string_view text) { return text.empty() ? "nothing" : "\"" + std::string(text) + "\""; }

[[noreturn]] void refuseNumber(std::string_view text, const std::string& least, const std::string& most) {
    throw LineError("a number from " + least + " to " + most + " is expected, not " + quoted(text));
}

} // namespace

std::size_t LineReader::skipBlanks() {
    const std::size_t count = std::min(m_rest.find_first_not_of(BLANKS), m_rest.size());
    m_rest.remove_prefix(count);
    return count;
}

bool LineReader::isAtEnd() {
    skipBlanks();
    return m_rest.empty() || m_rest.front() == '#';
}

std::string_view LineReader::word() {
    skipBlanks();
    const std::string_view result = m_rest.substr(0, m_rest.find_first_of(BLANKS));
    m_rest.remove_prefix(result.size());
    return result;
}

String LineReader::name() {
    skipBlanks();
    const std::size_t end = m_rest.find('"', 1);
    if (m_rest.empty() || m_rest.front() != '"' || end == std::string_view::npos)
        throw LineError("a name in double quotes is expected");
    const std::string_view text = m_rest.substr(1, end - 1);
    m_rest.remove_prefix(end + 1);
    if (text.empty()) throw LineError("the name is empty");

    for (const Vorn::UTF32Char code : Vorn::codePoints(text))
        if (code < 0x20) throw LineError("the name holds a control character"); // which XML does not allow
    return Vorn::makeString(text);
}

float LineReader::number(float least, float most) {
    const std::string_view text = word();

    // The parser reads a sign alone as zero, so the word must contain a digit. The length passed is not that of the
    // word, because the parser would then skip an exponent of one digit.
    unsigned int count = 0;
    float value = 0.0f;
    if (Vorn::findAnyOf(text, DIGITS) != Vorn::NOT_FOUND)
        value = Vorn::parseFloat(reinterpret_cast<const unsigned char*>(text.data()), &count);
    if (count == 0 || count != text.size() || !(value >= least && value <= most))
        refuseNumber(text, shortText(least, 2), shortText(most, 2));
    return value;
}

unsigned int LineReader::number(unsigned int least, unsigned int most) {
    const std::string_view text = word();
    const std::optional<unsigned int> value = Vorn::parse<unsigned int>(text);
    if (!value || *value < least || *value > most) refuseNumber(text, std::to_string(least), std::to_string(most));
    return *value;
}

unsigned int LineReader::colour() {
    const std::string_view text = word();
    const std::optional<unsigned int> value = Vorn::parse<unsigned int>(text, 16);
    if (!value || text.size() != 6)
        throw LineError("a colour of six hexadecimal digits is expected, not " + quoted(text));
    return *value;
}
