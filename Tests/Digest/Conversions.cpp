// Conversions of whole texts between the encodings: the exact ones, and those of StringDataHelper.h.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/String/String.h"
#include "Vorn/String/StringDataHelper.h"
#include "Vorn/Text/TextConversion.h"

#include <memory>

using Vorn::StringDataBufferInfo;
using Vorn::StringDataSubCharset;
using Vorn::TextView;
using Vorn::UTF16Char;

namespace {

void addExact(Digest& digest, TextView view) {
    digest.addAll(Vorn::toUTF8(view), Vorn::toUTF16(view), Vorn::toUTF32(view), Vorn::lengthInUTF8(view),
                  Vorn::lengthInUTF16(view));
    digest.addOutcome([&] { return Vorn::inUTF8(view); });
    digest.addOutcome([&] { return Vorn::inUTF16(view); });
    char bytes[40] = {};
    char16_t units[40] = {};
    const Vorn::ConvertedText utf8 = Vorn::toUTF8(view, bytes, sizeof bytes);
    const Vorn::ConvertedText utf16 = Vorn::toUTF16(view, units, 40);
    digest.addAll(std::string_view(bytes, utf8.written), utf8.read, std::u16string_view(units, utf16.written),
                  utf16.read);
}

// A buffer of one encoding, which is converted under each charset.
template <class Unit, class Text, class Measure, class Convert>
void addOfRecords(Digest& digest, const Text& text, Measure&& measure, Convert&& convert) {
    StringDataBufferInfo info{};
    info.m_length = static_cast<unsigned int>(text.size());
    const Unit* const units = reinterpret_cast<const Unit*>(text.c_str());
    for (int charset = 1; charset <= 3; ++charset) {
        const auto asCharset = static_cast<StringDataSubCharset>(charset);
        digest.addOutcome([&] { return measure(units, info, asCharset); });
        digest.addOutcome([&] { return Vorn::stringDataGetUnicodeLength(units, info, asCharset); });
        digest.addOutcome([&] {
            StringDataBufferInfo converted{};
            const auto result = convert(units, info, asCharset, converted);
            const std::unique_ptr<const std::remove_pointer_t<decltype(result)>[]> block(result);
            digest.add(converted.m_length);
            for (unsigned int i = 0; i < converted.m_length; ++i) digest.add(result[i]);
        });
    }
}

} // namespace

void digestConversions(Digest& digest) {
    Random random(6);
    std::vector<std::u32string> samples = sampleCodes();
    for (int i = 0; i < 200; ++i) samples.push_back(randomCodes(random, 80));
    for (const std::u32string& codes : samples) {
        const std::string bytes = reference::encodedUTF8(codes);
        const std::u16string units = reference::encodedUTF16(codes);
        addExact(digest, TextView(bytes));
        addExact(digest, TextView(units));
        addOfRecords<unsigned char>(digest, bytes, Vorn::stringDataGetUTF16Length, Vorn::stringDataConvertToUTF16);
        addOfRecords<UTF16Char>(digest, units, Vorn::stringDataGetUTF8Length, Vorn::stringDataConvertToUTF8);
    }
    for (int i = 0; i < 500; ++i) {
        addExact(digest, TextView(randomBytes(random, 20)));
        addExact(digest, TextView(randomUnits(random, 20)));
    }
}
