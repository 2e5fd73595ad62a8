#include "Vorn/String/Interop.h"

#include "Vorn/String/Unicode.h"

#include <algorithm>
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

// True if bytes that are built from these units are not their text. Units that were built from bytes may hold second
// surrogates only, and garble nothing.
bool isGarbledInUTF8(const StringData& data) {
    const UTF16Char* const units = data.getPrivateBuffer<UTF16Char>();
    const UTF16Char* const end = units + data.getBufferInfo<UTF16Char>().m_length;
    switch (data.getCharset()) {
    case STRING_DATA_ASCII: return false;
    case STRING_DATA_UCS2: return data.haveEmbeddedNulls();
    default: break;
    }
    const UTF16Char* const surrogate = std::find_if(units, end, [](UTF16Char c) { return UTF16::isSurrogate(c); });
    return surrogate != end && UTF16::isFirstSurrogate(*surrogate) && std::any_of(units, end, [](UTF16Char c) {
               return c == 0x7F || (UTF16::isFirstSurrogate(c) && (c & 0xFF) >= 0xC0);
           });
}

// Which buffer tells the text to equality: the bytes, unless they were built from units and garbled by that. Bytes of
// another length have been edited since.
bool isToldByUTF16(const StringData& data) {
    const UTF16Char* const units = data.getPrivateBuffer<UTF16Char>();
    if (!units || !data.getPrivateBuffer<unsigned char>()) return units;
    return isGarbledInUTF8(data) &&
           stringDataGetUTF8Length(units, data.getBufferInfo<UTF16Char>(), data.getCharset()) == data.getUTF8Length();
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

// The text in UTF-8: the buffer, or what is written into `room` from the units, which the conversions of buffers would
// garble in part.
std::string_view utf8Of(const String& s, std::string& room) {
    const StringData* const data = s.getData();
    if (!data) return {};
    if (!data->getPrivateBuffer<unsigned char>()) {
        forEachUTF16Code(*data, [&](UTF32Char c) { appendUTF8(room, c); });
        return room;
    }
    return {reinterpret_cast<const char*>(data->getPrivateBuffer<unsigned char>()),
            data->getBufferInfo<unsigned char>().m_length};
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
    std::string room;
    return s.getData() && utf8Of(s, room) == text;
}

std::ostream& operator<<(std::ostream& stream, const String& s) {
    std::string room;
    return stream << utf8Of(s, room);
}

} // namespace Vorn
