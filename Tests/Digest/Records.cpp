// Queries, comparison, substrings and concatenation of string records.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/String/String.h"

using Vorn::String;
using Vorn::StringData;

void digestRecords(Digest& digest) {
    const std::vector<String> strings = sampleStrings();
    for (const String& string : strings) {
        const StringData& data = *string.getData();
        digest.addAll(static_cast<int>(data.getCharset()), data.haveEmbeddedNulls(), data.isEmpty());
        for (const char* const needle : {"a", "b", "bb", "aab", "z"}) {
            digest.addOutcome([&] { return string.equals(needle); });
            digest.addOutcome([&] { return string.startsWith(needle); });
            digest.addOutcome([&] { return string.endsWith(needle); });
        }
        digest.addAll(string.count('a'), string.count('b'));
        for (const int index : {0, 1, 7, 40, -1, -2}) digest.addOutcome([&] { return string.getUnicodeCharAt(index); });
        digest.addOutcome([&] { return data.getUTF8Length(); });
        digest.addOutcome([&] { return data.getUTF16Length(); });
    }
    for (std::size_t i = 0; i + 7 < strings.size(); ++i) {
        for (const std::size_t step : {1u, 2u, 7u}) {
            const String& a = strings[i];
            const String& b = strings[i + step];
            digest.addOutcome([&] { return a == b; });
            digest.addOutcome([&] { return a < b; });
        }
        if (strings[i].getCharset() == Vorn::STRING_DATA_ASCII && !strings[i].isEmpty()) {
            for (const int offset : {0, 1, 3, -1, -3}) {
                digest.addOutcome([&] { return String(strings[i].getData()->substr<unsigned char>(offset, 2)); });
                digest.addOutcome([&] { return String(strings[i].getData()->substr<Vorn::UTF16Char>(offset, 2)); });
            }
        }
        digest.addOutcome([&] {
            String sum = Vorn::makeString(strings[i]);
            sum += strings[i + 1];
            return sum;
        });
    }
    // The missing buffers last, because they change what the operations above do.
    for (const String& string : strings) {
        digest.addOutcome([&] { return std::string_view(string.getCString()); });
        digest.addOutcome([&] {
            const Vorn::UTF16Char* const units = string.getData()->getTerminatedBuffer<Vorn::UTF16Char>();
            const unsigned int length = string.getData()->getUTF16Length();
            for (unsigned int i = 0; i <= length; ++i) digest.add(units[i]);
        });
    }
}
