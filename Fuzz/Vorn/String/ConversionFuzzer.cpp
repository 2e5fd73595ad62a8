// Validation, lengths and conversions between UTF-8 and UTF-16 against their plain references, failures included. The
// text need not be valid, and need not fit the charset that is passed.
#include "Vorn/String/String.h"
#include "Vorn/String/StringDataHelper.h"

#include "Reference/TextConversion.h"
#include "Reference/TextScan.h"
#include "Support/Stream.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace Vorn;
using reference::Bytes;
using reference::Units;

/// Units behind the end that is passed, into which the last character may be written.
constexpr unsigned int SLACK = 4;

/// One text, the charset that is passed with it, and the length of the text. A zero unit follows UTF-16: measuring may
/// read one unit further.
template <class Source>
struct Case {
    std::vector<Source> text;
    unsigned int length;
    int charset;

    StringDataSubCharset subCharset() const { return static_cast<StringDataSubCharset>(charset); }
    StringDataBufferInfo info() const {
        StringDataBufferInfo result{};
        result.m_length = length;
        return result;
    }
};

// Both directions under one name each.
template <class Source>
struct Direction;
template <>
struct Direction<unsigned char> {
    using Target = UTF16Char;
    static constexpr const char* CONVERT = "Vorn::stringDataConvertToUTF16";
    static constexpr const char* CREATE = "Vorn::stringDataConvertCreateUTF16";
    static constexpr const char* COPY = "Vorn::stringDataConvertCopyToUTF16";
    static constexpr auto convert = &stringDataConvertToUTF16;
    static constexpr auto create = &stringDataConvertCreateUTF16;
    static constexpr auto copy = &stringDataConvertCopyToUTF16;
    static constexpr auto length = &stringDataGetUTF16Length;
    static Outcome expectedLength(const Bytes& text, unsigned int size, int charset) {
        return reference::utf16Length(text, size, charset);
    }
};
template <>
struct Direction<UTF16Char> {
    using Target = unsigned char;
    static constexpr const char* CONVERT = "Vorn::stringDataConvertToUTF8";
    static constexpr const char* CREATE = "Vorn::stringDataConvertCreateUTF8";
    static constexpr const char* COPY = "Vorn::stringDataConvertCopyToUTF8";
    static constexpr unsigned char* (*convert)(const UTF16Char*, const StringDataBufferInfo&, StringDataSubCharset,
                                               StringDataBufferInfo&) = &stringDataConvertToUTF8;
    static constexpr auto create = &stringDataConvertCreateUTF8;
    static constexpr auto copy = &stringDataConvertCopyToUTF8;
    static constexpr auto length = &stringDataGetUTF8Length;
    static Outcome expectedLength(const Units& text, unsigned int size, int charset) {
        return reference::utf8Length(text, size, charset);
    }
};

template <class Source>
using TargetText = std::vector<typename Direction<Source>::Target>;

// The result of a conversion into a buffer of `capacity` units that the library allocates: zero where no character is
// written.
template <class Source>
Outcome expectedText(const Case<Source>& c, unsigned int capacity, const char* function, TargetText<Source>& dest) {
    const Outcome measured = reference::measured(c.text, c.length, c.charset);
    if (!measured.failure.empty()) return measured;
    const unsigned int size = std::max(capacity, measured.value);
    dest.assign(size + 1 + SLACK, 0);
    const Outcome outcome = reference::convertInto(c.text, c.length, c.charset, dest, measured.value, function);
    if (!outcome.failure.empty()) return outcome;
    dest[size] = 0;
    dest[measured.value] = 0;
    dest.resize(size + 1);
    return measured;
}

template <class Source>
void compareConversion(const Case<Source>& c) {
    TargetText<Source> expected;
    const Outcome outcome = expectedText(c, 0, Direction<Source>::CONVERT, expected);
    StringDataBufferInfo info{};
    std::unique_ptr<typename Direction<Source>::Target[]> block;
    const std::string failure =
        failureOf([&] { block.reset(Direction<Source>::convert(c.text.data(), c.info(), c.subCharset(), info)); });
    requireText(failure, outcome.failure, "a conversion fails otherwise");
    if (!failure.empty()) return;
    require(info.m_length == outcome.value && info.m_nullTerminated && info.m_allocationType == STRING_DATA_DYNAMIC,
            "a conversion describes its result otherwise");
    require(std::equal(expected.begin(), expected.end(), block.get()), "a conversion differs");
}

template <class Source>
void compareCreation(const Case<Source>& c, unsigned int capacity) {
    TargetText<Source> expected;
    const Outcome outcome = expectedText(c, capacity, Direction<Source>::CREATE, expected);
    std::unique_ptr<typename Direction<Source>::Target[]> block;
    const std::string failure =
        failureOf([&] { block.reset(Direction<Source>::create(c.text.data(), c.info(), c.subCharset(), capacity)); });
    requireText(failure, outcome.failure, "a conversion with a capacity fails otherwise");
    if (!failure.empty()) return;
    require(std::equal(expected.begin(), expected.end(), block.get()), "a conversion with a capacity differs");
}

template <class Source>
void compareCopy(const Case<Source>& c, unsigned int capacity) {
    constexpr auto UNTOUCHED = static_cast<typename Direction<Source>::Target>(0xA5A5);
    const std::size_t size = capacity + c.length * 4 + SLACK;
    TargetText<Source> expected(size, UNTOUCHED);
    TargetText<Source> dest(size, UNTOUCHED);
    Outcome outcome = reference::measured(c.text, c.length, c.charset);
    if (outcome.failure.empty() && outcome.value <= capacity) {
        const Outcome written =
            reference::convertInto(c.text, c.length, c.charset, expected, capacity, Direction<Source>::COPY);
        if (!written.failure.empty()) outcome = written;
    }
    const Outcome actual = outcomeOf(
        [&] { return Direction<Source>::copy(c.text.data(), c.info(), c.subCharset(), dest.data(), capacity); });
    requireText(actual.failure, outcome.failure, "a copy fails otherwise");
    require(actual.value == outcome.value, "a copy returns another length");
    require(dest == expected, "a copy differs");
}

template <class Source>
void compareLengths(const Case<Source>& c) {
    require(outcomeOf([&] { return Direction<Source>::length(c.text.data(), c.info(), c.subCharset()); }) ==
                Direction<Source>::expectedLength(c.text, c.length, c.charset),
            "another length in the other encoding");
    require(outcomeOf([&] { return stringDataGetUnicodeLength(c.text.data(), c.info(), c.subCharset()); }) ==
                reference::unicodeLength(c.text, c.length, c.charset),
            "another number of characters");
}

// A string over the text: what the scan finds, and the text as a standard string.
template <class Source>
void compareScan(const Case<Source>& c, bool isTerminated) {
    std::vector<Source> text(c.text.begin(), c.text.begin() + c.length);
    if (isTerminated) text.push_back(0);
    const unsigned int length = isTerminated ? 0xFFFFFFFF : c.length;
    // A zero unit at the end of a known length is the terminator.
    const unsigned int scanned = !isTerminated && text.back() == 0 ? length - 1 : length;
    const reference::ScanResult expected = reference::scan(text, scanned);
    try {
        const String string(text.data(), length, STRING_DATA_EXTERNAL);
        const StringData& data = *string.getData();
        require(expected.outcome.failure.empty(), "a text is accepted that is not valid");
        require(static_cast<unsigned int>(data.getCharset()) == expected.outcome.value % 4, "another charset");
        require(string.haveEmbeddedNulls() == (expected.outcome.value >= 4), "another answer about nulls");
        require(data.template getBufferInfo<Source>().m_length == expected.length, "another length");
        if constexpr (sizeof(Source) == 2) {
            std::string expectedText;
            const Outcome outcome = reference::toStandardString(
                text, expected.length, static_cast<int>(expected.outcome.value % 4), expectedText);
            std::string actual;
            requireText(failureOf([&] { string.copyTo(actual); }), outcome.failure,
                        "a standard string fails otherwise");
            if (outcome.failure.empty()) require(actual == expectedText, "a standard string differs");
        }
    } catch (const Exception<7>& exception) {
        requireText(
            failureText(exception.getCode(), exception.getMessage(), exception.getFunction(), exception.getFile()),
            expected.outcome.failure, "the scan fails otherwise");
    }
}

template <class Source>
void compare(const Case<Source>& c, unsigned int operation) {
    switch (operation) {
    case 0: compareScan(c, false); break;
    case 1: compareScan(c, true); break;
    case 2: compareLengths(c); break;
    case 3: compareConversion(c); break;
    case 4: compareCreation(c, c.length * 2 % 23); break;
    case 5: compareCopy(c, c.length * 4); break;
    case 6: compareCopy(c, c.length); break;
    default: compareCopy(c, c.length / 2); break;
    }
}

} // namespace

// The first byte chooses encoding, charset and operation; the rest is the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stream stream(data, size);
    const unsigned int choice = stream.next();
    const int charset = static_cast<int>(choice / 2 % 3) + 1;
    const unsigned int operation = choice / 6 % 8;
    if (choice % 2 == 0) {
        std::vector<unsigned char> text = stream.rest();
        if (text.empty()) text.push_back('a'); // no units have no buffer
        const unsigned int length = static_cast<unsigned int>(text.size());
        compare(Case<unsigned char>{std::move(text), length, charset}, operation);
        return 0;
    }
    Units text;
    text.reserve(size + 1);
    while (!stream.ended()) text.push_back(static_cast<UTF16Char>(stream.unit()));
    if (text.empty()) text.push_back(u'a');
    text.push_back(0);
    text.shrink_to_fit();
    const unsigned int length = static_cast<unsigned int>(text.size()) - 1;
    compare(Case<UTF16Char>{std::move(text), length, charset}, operation);
    return 0;
}
