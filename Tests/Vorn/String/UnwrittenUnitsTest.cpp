// Units of blocks that no operation writes: they are zero, whatever the block held before. Every block of this program
// is filled with FRESH_BYTE when it is allocated.
#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Support/Report.h"
#include "Support/Texts.h"
#include "Vorn/ExceptionString.h"
#include "Vorn/String/String.h"
#include "Vorn/String/UTF8String.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Vorn::ExceptionString;
using Vorn::String;
using Vorn::StringData;
using Vorn::UTF16Char;
using Vorn::UTF8String;

using Byte = unsigned char;

constexpr unsigned int ALL = 0xFFFFFFFF;

// U+007F and a supplementary character: measured as two bytes for each U+007F, written as one.
struct MeasuredLong {
    explicit MeasuredLong(std::size_t count)
        : units(utf16Of(codesOf(count))), bytes(utf8Of(codesOf(count))), zeros(count, '\0') {}
    static Codes codesOf(std::size_t count) {
        Codes codes(count, 0x7F);
        codes.push_back(0x1F600);
        return codes;
    }
    UTF16Text units;
    std::string bytes;
    std::string zeros;
};

// The bytes of the UTF-8 block behind the text and its terminator, up to the end of the block.
std::string capacityOf(const UTF8String& string) {
    const Byte* const block = string.getData()->getPrivateBuffer<Byte>();
    const std::size_t used = string.getData()->getBufferInfo<Byte>().m_length + 1;
    return std::string(reinterpret_cast<const char*>(block) + used, liveArraySize(block) - used);
}

UTF8String own(const std::string& text) {
    const std::vector<Byte> bytes(bytesOf(text), bytesOf(text) + text.size() + 1);
    return UTF8String(newBlock(bytes), lengthOf(text) + 1, Vorn::STRING_DATA_DYNAMIC);
}

TEST(UnwrittenUnits, OfTextThatIsMeasuredLongAreZero) {
    for (const std::size_t count : {1u, 2u, 31u, 1000u}) {
        const MeasuredLong text(count);
        const String string = over(text.units);
        const ExceptionString report(string, 0.0f);
        EXPECT_EQ(std::string(report.getString(), static_cast<std::size_t>(report.size())), text.bytes + text.zeros);
        string.getCString();
        EXPECT_EQ(textOf(*string.getData()), text.bytes + text.zeros);
        EXPECT_EQ(string.getCString()[text.bytes.size() + count], '\0');
    }
}

TEST(UnwrittenUnits, OfIncomingTextThatIsMeasuredLongAreZero) {
    const MeasuredLong text(40);
    const String incoming = over(text.units);
    const struct {
        const char* name;
        std::function<void(UTF8String&)> edit;
        std::string expected;
    } rows[] = {
        {"append", [&](UTF8String& s) { s.append(incoming); }, "abc" + text.bytes + text.zeros},
        {"insert", [&](UTF8String& s) { s.insert(incoming, 1); }, "a" + text.bytes + text.zeros + "bc"},
        {"replace", [&](UTF8String& s) { s.replace(incoming, 1, 1); }, "a" + text.bytes + text.zeros + "c"},
        {"replace all", [&](UTF8String& s) { s.replace(incoming, 0, 3); }, text.bytes + text.zeros},
    };
    for (const auto& row : rows) {
        UTF8String string = own("abc");
        row.edit(string);
        EXPECT_EQ(textOf(*string.getData()), row.expected) << row.name;
        EXPECT_EQ(string.getData()->getPrivateBuffer<Byte>()[row.expected.size()], 0) << row.name;
    }

    // Measured as six bytes, written as five: the sixth stays as the edit left it.
    const UTF16Char deleteAndPair[] = {0x7F, 0xD83D, 0xDE00, 0};
    const String five(deleteAndPair);
    const std::string written = "\x7F\xF0\x9F\x98\x80";
    UTF8String inserted = own("abcdefgh");
    inserted.insert(five, 0);
    EXPECT_EQ(textOf(*inserted.getData()), written + "fabcdefgh");
    UTF8String replaced = own("abcdefgh");
    replaced.replace(five, 1, 6);
    EXPECT_EQ(textOf(*replaced.getData()), "a" + written + "gh");
    UTF8String appended = own("abcdefgh");
    appended.append(five);
    EXPECT_EQ(textOf(*appended.getData()), "abcdefgh" + written + std::string(1, '\0'));

    String joined = own("abc");
    const ExpectedLeak leak;
    expectRaises<7>([&] { joined += incoming; },
                    "ASCII null detected! This implementation does not support ASCII null, please use the sequence "
                    "0xC0 0x80 to represent null.");
}

TEST(UnwrittenUnits, OfReservedCapacityAreZero) {
    UTF8String null;
    EXPECT_EQ(null.reserve(50), 50u);
    EXPECT_EQ(capacityOf(null), std::string(50, '\0'));

    UTF8String single = own("abc");
    single.reserve(60);
    EXPECT_EQ(capacityOf(single), std::string(57, '\0'));

    UTF8String shared = own("abc");
    const String other = shared;
    shared.reserve(70);
    EXPECT_EQ(capacityOf(shared), std::string(67, '\0'));
    EXPECT_NE(shared.getData(), other.getData());

    UTF8String empty(String::getEmptyString());
    empty.reserve(5);
    EXPECT_EQ(capacityOf(empty), std::string(5, '\0'));

    const UTF16Text units = utf16Of({'a', 0xE9});
    UTF8String wide(over(units));
    wide.reserve(20);
    EXPECT_EQ(capacityOf(wide), std::string(17, '\0'));
}

TEST(UnwrittenUnits, OfRefusedEditsAreZero) {
    const std::string longText(30, 'x');
    const String incoming = over(longText);
    const struct {
        const char* name;
        std::function<void(UTF8String&)> edit;
        const char* message;
        std::size_t capacity; // behind the text
    } rows[] = {
        {"insert a character", [&](UTF8String& s) { s.insert(0x1F600u, 2); }, "Invalid index!", 4},
        {"insert", [&](UTF8String& s) { s.insert(incoming, 2); }, "Invalid index!", 30},
        {"replace by a character", [&](UTF8String& s) { s.replace(0x1F600u, 2, 2); }, "Invalid index!", 2},
        {"replace by a character, end", [&](UTF8String& s) { s.replace(0x1F600u, 0, 2); }, "Invalid length!", 2},
        {"replace", [&](UTF8String& s) { s.replace(incoming, 2, 1); }, "Invalid index!", 29},
        {"replace, end", [&](UTF8String& s) { s.replace(incoming, 0, 2); }, "Invalid length!", 28},
    };
    for (const auto& row : rows) {
        UTF8String string = own("a\xC3\xA9z");
        expectRaises<4>([&] { row.edit(string); }, row.message);
        EXPECT_EQ(textOf(*string.getData()), "a\xC3\xA9z") << row.name;
        EXPECT_EQ(capacityOf(string), std::string(row.capacity, '\0')) << row.name;
    }

    // A string whose record is not counted refuses all edits, behind the reservation.
    for (const bool again : {false, true}) {
        UTF8String null;
        if (again) null.reserve(1);
        expectRaises<2>([&] { null.append(incoming); },
                        "getRefCount() == 1 : Can't set length on a string with more than one reference!!!");
        EXPECT_EQ(capacityOf(null), std::string(30, '\0')) << again;
    }
}

TEST(UnwrittenUnits, OfTextThatFailsToConvertAreZero) {
    // A character starts behind the bytes that are measured: U+0000 counts one and takes two.
    const UTF16Text units = utf16Of({0x20AC, 0, 0, 'a', 'b', 'c'});
    const String incoming = over(units);
    const char* const message = "j < destLength : destination buffer too short!";
    const struct {
        const char* name;
        std::function<void(UTF8String&)> edit;
        std::string expected; // what stood in the buffer before and zeros
    } rows[] = {
        {"append", [&](UTF8String& s) { s.append(incoming); }, "abc" + std::string(8, '\0')},
        {"insert", [&](UTF8String& s) { s.insert(incoming, 1); }, std::string("abc\0\0\0\0\0\0bc", 11)},
        {"replace", [&](UTF8String& s) { s.replace(incoming, 1, 1); }, std::string("abc\0\0\0\0\0\0c", 10)},
    };
    for (const auto& row : rows) {
        UTF8String string = own("abc");
        expectRaises<2>([&] { row.edit(string); }, message);
        EXPECT_EQ(textOf(*string.getData()), row.expected) << row.name;
    }
}

TEST(UnwrittenUnits, OfSubstringsFromTheEndAreZero) {
    const std::string text = utf8Of({'a', 0xE9, 0x20AC, 0x1F600});
    const String string = over(text);
    for (const int offset : {-2, -3, -4, -5}) {
        const String part(string.getData()->substr<UTF16Char>(offset, ALL));
        EXPECT_EQ(unitsOf(*part.getData()), UTF16Text(static_cast<std::size_t>(-offset), 0)) << offset;
        EXPECT_TRUE(part.haveEmbeddedNulls()) << offset;
    }
}

} // namespace
