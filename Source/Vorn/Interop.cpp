#include "Vorn/String/Interop.h"

#include "Vorn/String/Unicode.h"

#include <cstdint>
#include <ostream>

namespace Vorn {

namespace {

// Mixes codes, so that the encoding does not show.
class CodeHash {
public:
    explicit CodeHash(unsigned int seed) : m_state(14695981039346656037u) { add(seed); }

    void add(UTF32Char c) { m_state = (m_state ^ c) * 1099511628211u; }
    std::size_t result() const { return static_cast<std::size_t>(m_state ^ (m_state >> 32)); }

private:
    std::uint64_t m_state;
};

// Which buffer tells the text. Units are an exact copy of bytes unless the text has supplementary characters: then
// units that were built from bytes hold second surrogates only. Bytes that were built from units can be garbled.
bool isToldByUTF16(const StringData& data) {
    const UTF16Char* const units = data.getPrivateBuffer<UTF16Char>();
    if (!units || !data.getPrivateBuffer<unsigned char>()) return units;
    if (data.getCharset() != STRING_DATA_UNICODE) return true;
    for (unsigned int i = 0; i < data.getBufferInfo<UTF16Char>().m_length; ++i)
        if (UTF16::isSurrogate(units[i])) return UTF16::isFirstSurrogate(units[i]);
    return false;
}

// Calls `f` with each code of the UTF-16 text.
template <class F>
void forEachUTF16Code(const StringData& data, F f) {
    const UTF16Char* const units = data.getPrivateBuffer<UTF16Char>();
    const unsigned int length = data.getBufferInfo<UTF16Char>().m_length;
    for (unsigned int i = 0; i < length; ++i) {
        if (UTF16::isFirstSurrogate(units[i])) {
            ++i;
            f(Unicode::getUTF32Char(units[i - 1], units[i]));
        } else {
            f(units[i]);
        }
    }
}

void appendUTF8(std::string& text, UTF32Char c) {
    const unsigned int sequence = c == 0 ? 0xC080 : UTF8::getUTF8(c);
    const unsigned int count = c == 0 ? 2 : UTF8::countUTF8(c);
    for (unsigned int shift = 8 * count; shift != 0;) {
        shift -= 8;
        text.push_back(static_cast<char>(sequence >> shift));
    }
}

// Calls `f` with the text in UTF-8, which the conversions of buffers would garble in part.
template <class F>
void withUTF8(const StringData& data, F f) {
    if (isToldByUTF16(data)) {
        std::string text;
        forEachUTF16Code(data, [&](UTF32Char c) { appendUTF8(text, c); });
        f(std::string_view(text));
    } else {
        f(std::string_view(reinterpret_cast<const char*>(data.getPrivateBuffer<unsigned char>()),
                           data.getBufferInfo<unsigned char>().m_length));
    }
}

} // namespace

std::size_t hashOf(const String& s) {
    const StringData* const data = s.getData();
    if (!data) return 0;
    CodeHash code(static_cast<unsigned int>(data->getCharset()));
    if (isToldByUTF16(*data)) {
        forEachUTF16Code(*data, [&](UTF32Char c) { code.add(c); });
    } else {
        const unsigned char* const text = data->getPrivateBuffer<unsigned char>();
        const unsigned int length = data->getBufferInfo<unsigned char>().m_length;
        for (unsigned int i = 0; i < length;) code.add(Unicode::getUTF32Char(text, i, length));
    }
    return code.result();
}

bool isText(const String& s, std::string_view text) {
    bool result = false;
    if (s.getData()) withUTF8(*s.getData(), [&](std::string_view own) { result = own == text; });
    return result;
}

std::ostream& operator<<(std::ostream& stream, const String& s) {
    if (s.getData()) withUTF8(*s.getData(), [&](std::string_view text) { stream << text; });
    return stream;
}

} // namespace Vorn
