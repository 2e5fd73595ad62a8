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

} // namespace

std::size_t hash(const String& s) {
    const StringData* const data = s.getData();
    if (!data) return 0;
    CodeHash code(static_cast<unsigned int>(data->getCharset()));
    if (isToldByUTF16(*data)) {
        const UTF16Char* const units = data->getPrivateBuffer<UTF16Char>();
        const unsigned int length = data->getBufferInfo<UTF16Char>().m_length;
        for (unsigned int i = 0; i < length; ++i) {
            if (UTF16::isFirstSurrogate(units[i])) {
                ++i;
                code.add(Unicode::getUTF32Char(units[i - 1], units[i]));
            } else {
                code.add(units[i]);
            }
        }
    } else {
        const unsigned char* const text = data->getPrivateBuffer<unsigned char>();
        const unsigned int length = data->getBufferInfo<unsigned char>().m_length;
        for (unsigned int i = 0; i < length;) code.add(Unicode::getUTF32Char(text, i, length));
    }
    return code.result();
}

std::ostream& operator<<(std::ostream& stream, const String& s) {
    std::string text;
    s.copyTo(text);
    return stream << text;
}

} // namespace Vorn
