#include "Vorn/String/Interop.h"

#include "Vorn/Private/TextDecoding.h"
#include "Vorn/String/Unicode.h"
#include "Vorn/Text/TextView.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>

namespace Vorn {

namespace {

// Computes a hash from codes, so that it does not depend on the encoding.
class CodeHash {
public:
    explicit CodeHash(unsigned int seed) : m_state(14695981039346656037u) { add(seed); }

    void add(UTF32Char c) { m_state = (m_state ^ c) * 1099511628211u; }
    std::size_t result() const { return static_cast<std::size_t>(m_state ^ (m_state >> 32)); }

private:
    std::uint64_t m_state;
};

// Returns true if the conversion of these units to UTF-8 gives a corrupt text. Units that were converted from bytes can
// contain second surrogates only, which convert back.
bool isCorruptInUTF8(const StringData& data) {
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

// Returns true if the bytes of a record are the exact conversion of its units, which have no surrogates, or its start.
bool isStartOfConversion(const StringData& data) {
    const unsigned char* at = data.getPrivateBuffer<unsigned char>();
    const unsigned char* const end = at + data.getBufferInfo<unsigned char>().m_length;
    for (const UTF16Char* unit = data.getPrivateBuffer<UTF16Char>(); at != end; ++unit) {
        unsigned char sequence[4];
        const std::ptrdiff_t size = VornPrivate::encodeForString(sequence, *unit) - sequence;
        const std::ptrdiff_t compared = std::min(size, end - at);
        if (!std::equal(at, at + compared, sequence)) return false;
        at += compared;
    }
    return true;
}

// Returns true if equality is decided by the UTF-16 buffer: the record has no UTF-8 buffer, or its bytes were converted
// from the units and are corrupt. Bytes other than the conversion gives, or of another length, have been edited since.
bool isDecidedByUTF16(const StringData& data) {
    const UTF16Char* const units = data.getPrivateBuffer<UTF16Char>();
    if (!units || !data.getPrivateBuffer<unsigned char>()) return units;
    return isCorruptInUTF8(data) &&
           stringDataGetUTF8Length(units, data.getBufferInfo<UTF16Char>(), data.getCharset()) == data.getUTF8Length() &&
           (data.getCharset() != STRING_DATA_UCS2 || isStartOfConversion(data));
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

// The text in UTF-8: the buffer, or a conversion of the units that is written to `storage`. The conversions of whole
// buffers would corrupt some texts.
std::string_view utf8Of(const String& s, std::string& storage) {
    const StringData* const data = s.getData();
    if (!data) return {};
    if (isDecidedByUTF16(*data)) {
        forEachUTF16Code(*data, [&](UTF32Char c) { appendUTF8(storage, c); });
        return storage;
    }
    return {reinterpret_cast<const char*>(data->getPrivateBuffer<unsigned char>()),
            data->getBufferInfo<unsigned char>().m_length};
}

} // namespace

std::size_t hashOf(const String& s) {
    const StringData* const data = s.getData();
    if (!data) return 0;
    CodeHash code(static_cast<unsigned int>(data->getCharset()));
    if (isDecidedByUTF16(*data)) {
        forEachUTF16Code(*data, [&](UTF32Char c) { code.add(c); });
    } else {
        const unsigned char* const text = data->getPrivateBuffer<unsigned char>();
        const unsigned int length = data->getBufferInfo<unsigned char>().m_length;
        for (unsigned int i = 0; i < length;) code.add(Unicode::getUTF32Char(text, i, length));
    }
    return code.result();
}

bool isText(const String& s, std::string_view text) {
    std::string storage;
    return s.getData() && utf8Of(s, storage) == text;
}

std::ostream& operator<<(std::ostream& stream, const String& s) {
    std::string storage;
    const std::string_view text = utf8Of(s, storage);
    if (stream.width() > 0) { // of code points, where the standard library counts bytes
        const auto trails = std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) == 0x80; });
        stream.width(stream.width() + static_cast<std::streamsize>(trails));
    }
    return stream << text;
}

bool TextView::isInUTF16(const StringData& data) { return isDecidedByUTF16(data); }

} // namespace Vorn
