#include "Vorn/ParseInt.h"

#include "Vorn/String/String.h"

#include "Reference/IntegerParser.h"
#include "Support/AllocationCounter.h"
#include "Support/Random.h"
#include "Support/Report.h"
#include "Support/Texts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <type_traits>

namespace {

using Vorn::UTF16Char;

constexpr unsigned int UNTOUCHED = 0xDEADBEEF;
constexpr const char* FILE_TEXT = "Source/Vorn/ParseInt";

// The type as it is spelled in reports.
template <class T>
std::string typeName() {
    if (std::is_same_v<T, char>) return "char";
    if (std::is_same_v<T, signed char>) return "signed char";
    if (std::is_same_v<T, unsigned char>) return "unsigned char";
    if (std::is_same_v<T, short>) return "short";
    if (std::is_same_v<T, unsigned short>) return "unsigned short";
    if (std::is_same_v<T, int>) return "int";
    if (std::is_same_v<T, unsigned int>) return "unsigned int";
    if (std::is_signed_v<T>) return sizeof(T) == 8 ? "__int64" : "long";
    return sizeof(T) == 8 ? "unsigned __int64" : "unsigned long";
}

template <class CharType>
using Reader = reference::ParsedInteger (reference::IntegerParser<CharType>::*)(unsigned int) const;

// One parser of buffers, with its types erased.
struct Member {
    std::string family;
    std::string type;
    bool isWide;
    long long (*parse)(const TerminatedUnits& text, unsigned int* count, unsigned int length);
    long long (*parseNull)(unsigned int* count, unsigned int length);
    reference::ParsedInteger (*expected)(const TerminatedUnits& text, unsigned int length);

    std::string description() const { return family + "<" + type + (isWide ? ", wide>" : ">"); }
};

template <class T, class CharType, T (*function)(const CharType*, unsigned int*, unsigned int), Reader<CharType> reader>
Member member(const char* family) {
    return {family,
            typeName<T>(),
            sizeof(CharType) == 2,
            [](const TerminatedUnits& text, unsigned int* count, unsigned int length) {
                return static_cast<long long>(function(text.as<CharType>(), count, length));
            },
            [](unsigned int* count, unsigned int length) {
                return static_cast<long long>(function(nullptr, count, length));
            },
            [](const TerminatedUnits& text, unsigned int length) {
                const reference::IntegerParser<CharType> parser(text.as<CharType>(), text.size());
                reference::ParsedInteger result = (parser.*reader)(length);
                result.value = static_cast<unsigned long long>(static_cast<long long>(static_cast<T>(result.value)));
                return result;
            }};
}

template <class CharType, class T>
void addSigned(std::vector<Member>& members) {
    using Parser = reference::IntegerParser<CharType>;
    members.push_back(member<T, CharType, &Vorn::parseInt<T, CharType>, &Parser::parseInt>("parseInt"));
    members.push_back(member<T, CharType, &Vorn::parseHex<T, CharType>, &Parser::parseHex>("parseHex"));
    members.push_back(member<T, CharType, &Vorn::parseDec<T, CharType>, &Parser::parseDec>("parseDec"));
}

template <class CharType, class T>
void addUnsigned(std::vector<Member>& members) {
    using Parser = reference::IntegerParser<CharType>;
    members.push_back(member<T, CharType, &Vorn::parseUInt<T, CharType>, &Parser::parseUInt>("parseUInt"));
    members.push_back(member<T, CharType, &Vorn::parseUHex<T, CharType>, &Parser::parseUHex>("parseUHex"));
    members.push_back(member<T, CharType, &Vorn::parseUDec<T, CharType>, &Parser::parseUDec>("parseUDec"));
}

template <class CharType>
void addAll(std::vector<Member>& members) {
    addSigned<CharType, char>(members);
    addSigned<CharType, signed char>(members);
    addSigned<CharType, short>(members);
    addSigned<CharType, int>(members);
    addSigned<CharType, long>(members);
    addSigned<CharType, long long>(members);
    addUnsigned<CharType, unsigned char>(members);
    addUnsigned<CharType, unsigned short>(members);
    addUnsigned<CharType, unsigned int>(members);
    addUnsigned<CharType, unsigned long>(members);
    addUnsigned<CharType, unsigned long long>(members);
}

// Every parser of buffers in the library.
const std::vector<Member>& allMembers() {
    static const std::vector<Member> members = [] {
        std::vector<Member> all;
        addAll<unsigned char>(all);
        addAll<UTF16Char>(all);
        return all;
    }();
    return members;
}

constexpr unsigned int WHOLE = 0xFFFFFFF0; // stands for the length of the text

struct Row {
    const char* text;
    unsigned int length;
    long long value;
    unsigned int count;
};

// Runs the rows through the signed and the unsigned parser of a type.
void expectRows(const std::string& family, const std::string& type, const std::vector<Row>& rows) {
    int members = 0;
    for (const Member& member : allMembers()) {
        if (member.family != family || member.type != type) continue;
        ++members;
        for (const Row& row : rows) {
            SCOPED_TRACE(member.description() + " of \"" + row.text + "\", length " + std::to_string(row.length));
            const TerminatedUnits text(std::string_view{row.text});
            const unsigned int length = row.length == WHOLE ? text.size() : row.length;
            unsigned int count = UNTOUCHED;
            EXPECT_EQ(member.parse(text, &count, length), row.value);
            EXPECT_EQ(count, row.count);
            EXPECT_EQ(member.parse(text, nullptr, length), row.value);
        }
    }
    EXPECT_GE(members, 2); // more where two types have one name
}

TEST(ParseInteger, ParseIntTakesSignsAndChoosesTheRadix) {
    expectRows("parseInt", "int",
               {
                   {"42", WHOLE, 42, 2},
                   {"42", NPOS, 42, 2},
                   {"0", WHOLE, 0, 1},
                   {"007", WHOLE, 7, 3},
                   {"12ab", WHOLE, 12, 2},
                   {"0x1F", WHOLE, 31, 4},
                   {"0x1F", NPOS, 31, 4},
                   {"0xaBcDeF", WHOLE, 0xABCDEF, 8},
                   {"1F", WHOLE, 1, 1},
                   {"0X1F", WHOLE, 0, 1}, // only a lower-case x makes a prefix
                   {"0x", WHOLE, 0, 1},   // the prefix requires a unit after it
                   {"0x1", 2, 0, 1},      // within the length
                   {"0x1", 3, 1, 3},
                   {"0x", NPOS, 0, 0},
                   {"0xZ", WHOLE, 0, 0},
                   {"0x 1", WHOLE, 0, 0},
                   {"0x-1", WHOLE, 0, 0},
                   {"abc", WHOLE, 0, 0},
                   {"", NPOS, 0, 0},
                   {" ", WHOLE, 0, 0},
                   {" 42", WHOLE, 42, 3},
                   {"\t\n\v\f\r 42", WHOLE, 42, 8},
                   {"\x08"
                    "42",
                    WHOLE, 0, 0},
                   {"\x0E"
                    "42",
                    WHOLE, 0, 0},
                   {"\x1F"
                    "42",
                    WHOLE, 0, 0},
                   {"!42", WHOLE, 0, 0},
                   {"\x85"
                    "42",
                    WHOLE, 0, 0},
                   {"\xA0"
                    "42",
                    WHOLE, 0, 0},
                   {"4\xB2", WHOLE, 4, 1},
                   {" -5", WHOLE, 0, 0}, // a sign counts as the very first unit only
                   {"-5", WHOLE, -5, 2},
                   {"- 5", WHOLE, -5, 3},
                   {"+ 5", WHOLE, 5, 3},
                   {"+7", WHOLE, 7, 2},
                   {"--7", WHOLE, 0, 0},
                   {"-+7", WHOLE, 0, 0},
                   {"-", WHOLE, 0, 0}, // the sign counts only if a number follows
                   {"+", NPOS, 0, 0},
                   {"-a", WHOLE, 0, 0},
                   {"-0x1F", WHOLE, -31, 5},
                   {"+0x1F", WHOLE, 31, 5},
                   {"-0x1", 3, 0, 2}, // behind a sign the length is one less
                   {"-0xZ", WHOLE, 0, 0},
                   {"-0", WHOLE, 0, 2},
                   {"2147483647", WHOLE, 2147483647, 10},
                   {"2147483648", WHOLE, -2147483648LL, 10},
                   {"-2147483648", WHOLE, -2147483648LL, 11},
                   {"4294967297", WHOLE, 1, 10},
                   {"0x123456789", WHOLE, 0x23456789, 11},
                   {"1234", 2, 12, 2},
                   {"-1234", 3, -12, 3},   // the sign is within the length
                   {"-1234", 1, -1234, 5}, // a lone sign leaves no bound
                   {"  1234", 2, 1234, 6}, // white space up to the length leaves no bound
                   {"  1234", 1, 1234, 6},
                   {"  1234", 3, 1, 3},
               });
}

TEST(ParseInteger, ParseUIntTakesNoSign) {
    expectRows("parseUInt", "unsigned int",
               {
                   {"42", WHOLE, 42, 2},
                   {"-42", WHOLE, 0, 0},
                   {"+42", WHOLE, 0, 0},
                   {"0x1F", WHOLE, 31, 4},
                   {"  0x1F", WHOLE, 31, 6},
                   {"0X1F", WHOLE, 0, 1},
                   {"0x", WHOLE, 0, 1},
                   {"0xZ", WHOLE, 0, 0},
                   {"x1", WHOLE, 0, 0},
                   {"4294967295", WHOLE, 4294967295LL, 10},
                   {"4294967296", WHOLE, 0, 10},
                   {"0xFFFFFFFFF", WHOLE, 0xFFFFFFFFLL, 11},
                   {"12345", 3, 123, 3},
               });
}

TEST(ParseInteger, ParseHexCountsTheSignAlways) {
    expectRows(
        "parseHex", "int",
        {
            {"1F", WHOLE, 31, 2},     {"0x1F", WHOLE, 31, 4},  {"0X1F", WHOLE, 0, 1},
            {"-0x1F", WHOLE, -31, 5}, {"+ff", WHOLE, 255, 3},  {"- 5", WHOLE, -5, 3},
            {" -5", WHOLE, 0, 0},     {"-", WHOLE, 0, 1},      {"+", NPOS, 0, 1},
            {"-g", WHOLE, 0, 1},      {"0xZ", WHOLE, 0, 2},    {"-0xZ", WHOLE, 0, 3},
            {"-0x", WHOLE, 0, 3},     {"-1234", 3, -0x123, 4}, // one digit more than the length
            {"-0x12", 2, -0x12, 5}, // the prefix fits into the length behind the sign, and the digits have no bound
            {"-0x1", 1, 0, 2},        {"-12", 1, -1, 2},       {"80000000", WHOLE, -2147483648LL, 8},
            {"", NPOS, 0, 0},
        });
}

TEST(ParseInteger, ParseUHexStepsOverThePrefixEvenWithoutADigit) {
    expectRows("parseUHex", "unsigned int",
               {
                   {"1F", WHOLE, 31, 2},
                   {"0x1F", WHOLE, 31, 4},
                   {"  0x1F", WHOLE, 31, 6},
                   {"0X1F", WHOLE, 0, 1},
                   {"0xZ", WHOLE, 0, 2},
                   {"  0xZ", WHOLE, 0, 4},
                   {"0x", WHOLE, 0, 2},
                   {"0x", NPOS, 0, 2},
                   {"0x12", 2, 0x12, 4}, // a prefix that ends at the length leaves no bound
                   {"0x12", 1, 0, 1},
                   {"0x12", 3, 1, 3},
                   {"00x1", WHOLE, 0, 2},
                   {"0x0x1", WHOLE, 0, 3},
                   {"-1", WHOLE, 0, 0},
                   {"abcdefg", WHOLE, 0xABCDEF, 6},
                   {"ABCDEFG", WHOLE, 0xABCDEF, 6},
                   {"@", WHOLE, 0, 0},
                   {"`", WHOLE, 0, 0},
                   {"/", WHOLE, 0, 0},
                   {":", WHOLE, 0, 0},
                   {"123456789", WHOLE, 0x23456789, 9},
                   {"12345", 3, 0x123, 3},
                   {"", NPOS, 0, 0},
               });
}

TEST(ParseInteger, ParseDecCountsTheSignAlways) {
    expectRows("parseDec", "int",
               {
                   {"42", WHOLE, 42, 2},
                   {"-42", WHOLE, -42, 3},
                   {"+42", WHOLE, 42, 3},
                   {"0x1F", WHOLE, 0, 1},
                   {"- 5", WHOLE, -5, 3},
                   {" -5", WHOLE, 0, 0},
                   {"-", WHOLE, 0, 1},
                   {"+", WHOLE, 0, 1},
                   {"-a", WHOLE, 0, 1},
                   {"-1234", 3, -123, 4}, // one digit more than the length
                   {"-12", 1, -1, 2},
                   {"abc", WHOLE, 0, 0},
                   {"99999999999", WHOLE, 1215752191, 11},
                   {"-2147483648", WHOLE, -2147483648LL, 11},
                   {"", NPOS, 0, 0},
               });
}

TEST(ParseInteger, ParseUDecTakesNeitherSignNorPrefix) {
    expectRows("parseUDec", "unsigned int",
               {
                   {"  42", WHOLE, 42, 4},
                   {"-42", WHOLE, 0, 0},
                   {"0x1F", WHOLE, 0, 1},
                   {"1F", WHOLE, 1, 1},
                   {"/", WHOLE, 0, 0},
                   {":", WHOLE, 0, 0},
                   {"4294967296", WHOLE, 0, 10},
                   {"12345", 4, 1234, 4},
                   {"   12", 3, 12, 5},
               });
}

TEST(ParseInteger, ValuesWrapInTheWidthOfTheirType) {
    expectRows("parseUDec", "unsigned char", {{"300", WHOLE, 44, 3}, {"256", WHOLE, 0, 3}});
    expectRows("parseUDec", "unsigned short", {{"65536", WHOLE, 0, 5}, {"70000", WHOLE, 4464, 5}});
    expectRows("parseUDec", "unsigned __int64",
               {{"18446744073709551616", WHOLE, 0, 20}, {"18446744073709551615", WHOLE, -1, 20}});
    expectRows("parseInt", "char",
               {{"-1", WHOLE, static_cast<char>(-1), 2},
                {"200", WHOLE, static_cast<char>(200), 3},
                {"-128", WHOLE, static_cast<char>(-128), 4}});
    expectRows("parseInt", "signed char", {{"200", WHOLE, -56, 3}, {"-129", WHOLE, 127, 4}});
    expectRows("parseDec", "short", {{"32768", WHOLE, -32768, 5}, {"-32769", WHOLE, 32767, 6}});
    expectRows("parseHex", "__int64",
               {{"-8000000000000000", WHOLE, std::numeric_limits<long long>::min(), 17},
                {"123456789ABCDEF01", WHOLE, 0x23456789ABCDEF01LL, 17}});
}

TEST(ParseInteger, FixedWidthTypesAreInstances) {
    const TerminatedUnits text("-5");
    EXPECT_EQ(Vorn::parseInt<std::int8_t>(text.bytes()), -5);
    EXPECT_EQ(Vorn::parseInt<std::int16_t>(text.bytes()), -5);
    EXPECT_EQ(Vorn::parseInt<std::int32_t>(text.bytes()), -5);
    EXPECT_EQ(Vorn::parseInt<std::int64_t>(text.bytes()), -5);
    EXPECT_EQ((Vorn::parseUDec<std::uint8_t, unsigned char>(text.bytes() + 1)), 5);
    EXPECT_EQ((Vorn::parseUDec<std::uint16_t, unsigned char>(text.bytes() + 1)), 5);
    EXPECT_EQ((Vorn::parseUDec<std::uint32_t, unsigned char>(text.bytes() + 1)), 5u);
    EXPECT_EQ((Vorn::parseUDec<std::uint64_t, unsigned char>(text.bytes() + 1)), 5u);
}

TEST(ParseInteger, CodesAboveAByteAreNeitherDigitsNorWhiteSpace) {
    // Each is a digit, a letter, a blank, a sign or an x but for its upper byte.
    for (const unsigned int code : {0x0130u, 0x0141u, 0x0161u, 0x0120u, 0x012Du, 0xFF10u, 0x8031u}) {
        const TerminatedUnits text(std::vector<unsigned int>{code, '1'});
        for (const Member& member : allMembers()) {
            if (!member.isWide) continue;
            unsigned int count = UNTOUCHED;
            EXPECT_EQ(member.parse(text, &count, NPOS), 0);
            EXPECT_EQ(count, 0u) << member.description() << " of " << code;
        }
    }
    const TerminatedUnits prefix(std::vector<unsigned int>{'0', 0x0178, '1'});
    unsigned int count;
    EXPECT_EQ(Vorn::parseUHex<unsigned int>(prefix.units(), &count), 0u);
    EXPECT_EQ(count, 1u);
}

void expectAsReference(const Member& member, const TerminatedUnits& text, unsigned int length) {
    const reference::ParsedInteger expected = member.expected(text, length);
    unsigned int count = UNTOUCHED;
    const long long value = member.parse(text, &count, length);
    ASSERT_EQ(value, static_cast<long long>(expected.value))
        << member.description() << " of \"" << narrow(text.bytes(), text.size()) << "\", length " << length;
    ASSERT_EQ(count, expected.count) << member.description() << " of \"" << narrow(text.bytes(), text.size())
                                     << "\", length " << length;
    ASSERT_EQ(member.parse(text, nullptr, length), value);
}

// Texts of characters that are relevant to a parser, with some others in between.
TerminatedUnits randomText(Random& random) {
    static const std::string_view alphabets[] = {"0123456789", "0123456789abcdefABCDEF",    " \t\n\v\f\r", "0x",
                                                 "+-",         "gGXz./:@`!\x1F\x08\x0E\xB0"};
    std::vector<unsigned int> codes;
    for (unsigned int runs = random.below(5); runs > 0; --runs) {
        const std::string_view alphabet = alphabets[random.below(static_cast<unsigned int>(std::size(alphabets)))];
        for (unsigned int size = random.below(alphabet.size() > 6 ? 12 : 3); size > 0; --size) {
            codes.push_back(
                static_cast<unsigned char>(alphabet[random.below(static_cast<unsigned int>(alphabet.size()))]));
            if (random.below(64) == 0) codes.back() += 0x100;
        }
    }
    return TerminatedUnits(codes);
}

TEST(ParseInteger, AllMembersAgreeWithThePlainReference) {
    Random random(20240611);
    for (int round = 0; round < repetitions(50000); ++round) {
        const TerminatedUnits text = randomText(random);
        const unsigned int lengths[] = {text.size(), NPOS, 1 + random.below(12)};
        unsigned int length = lengths[random.below(3)];
        if (length == 0) length = NPOS;
        for (const Member& member : allMembers()) {
            expectAsReference(member, text, length);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(ParseInteger, EveryCodeIsClassified) {
    for (const Member& member : allMembers()) {
        if (member.type != "int" && member.type != "unsigned int") continue;
        for (unsigned int code = 1; code < (member.isWide ? 0x10000u : 0x100u); ++code) {
            expectAsReference(member, TerminatedUnits(std::vector<unsigned int>{code, '7'}), 2);
            expectAsReference(member, TerminatedUnits(std::vector<unsigned int>{'0', code, '7'}), NPOS);
            if (HasFatalFailure()) return;
        }
    }
}

// The function name in the reports of a parser.
std::string checkedFunction(const std::string& family, const std::string& type, bool isWide) {
    const std::string unit = isWide ? "wchar_t" : "unsigned char";
    const std::string getFirst = "<" + unit + ">(" + unit + " const *,unsigned int &,unsigned int)";
    const std::string signedNum = "VornPrivate::ParseSignedNum<" + type + "," + unit;
    if (family == "parseHex") {
        return signedNum + ",16,&int __cdecl VornPrivate::getFirstHexaValue" + getFirst +
               ",&int __cdecl VornPrivate::getHexa(unsigned int)>::parse";
    }
    if (family == "parseDec") {
        return signedNum + ",10,&int __cdecl VornPrivate::getFirstValue" + getFirst +
               ",&int __cdecl VornPrivate::getDecimal(unsigned int)>::parse";
    }
    return "VornPrivate::" + family + "Inline";
}

TEST(ParseInteger, NullPointersAndZeroLengthsAreRefused) {
    const TerminatedUnits text("1");
    for (const Member& member : allMembers()) {
        SCOPED_TRACE(member.description());
        const std::string function = checkedFunction(member.family, member.type, member.isWide);
        const bool isSignedNum = member.family == "parseHex" || member.family == "parseDec";
        const std::string zeroLength = isSignedNum ? "length > 0 : empty buffer!" : "length > 0 : empty string!";
        unsigned int count = UNTOUCHED;
        expectRaises<1>([&] { member.parseNull(&count, 1); }, "str : null pointer!", function, FILE_TEXT);
        expectRaises<1>([&] { member.parseNull(&count, 0); }, "str : null pointer!", function, FILE_TEXT);
        expectRaises<1>([&] { member.parse(text, &count, 0); }, zeroLength, function, FILE_TEXT);
        EXPECT_EQ(count, UNTOUCHED);
    }
}

TEST(ParseInteger, DecoratedNamesAreSpelledInFull) {
    const unsigned char* const null = nullptr;
    expectRaises<1>([&] { Vorn::parseHex<int>(null); }, "str : null pointer!",
                    "VornPrivate::ParseSignedNum<int,unsigned char,16,&int __cdecl "
                    "VornPrivate::getFirstHexaValue<unsigned char>(unsigned char const *,unsigned int &,unsigned "
                    "int),&int __cdecl VornPrivate::getHexa(unsigned int)>::parse");
    expectRaises<1>([&] { Vorn::parseDec<int>(null); }, "str : null pointer!",
                    "VornPrivate::ParseSignedNum<int,unsigned char,10,&int __cdecl "
                    "VornPrivate::getFirstValue<unsigned char>(unsigned char const *,unsigned int &,unsigned int),&int "
                    "__cdecl VornPrivate::getDecimal(unsigned int)>::parse");
}

// One parser of strings, with its type erased.
struct StringMember {
    std::string family;
    std::string type;
    long long (*parse)(const Vorn::String& text);

    // The function name in the reports of the string form.
    std::string function() const {
        const auto inlineParser = [&](const std::string& unit) {
            return "&" + type + " __cdecl VornPrivate::" + family + "Inline<" + type + "," + unit + ">(" + unit +
                   " const *,unsigned int *,unsigned int)";
        };
        return "VornPrivate::ParseStrNum<" + type + "," + inlineParser("unsigned char") + "," +
               inlineParser("wchar_t") + ">::parse";
    }
};

template <class T, T (*parser)(const Vorn::String&)>
StringMember stringMember(const char* family) {
    return {family, typeName<T>(), [](const Vorn::String& text) { return static_cast<long long>(parser(text)); }};
}

template <class... Types>
void addSignedStrings(std::vector<StringMember>& members) {
    (members.push_back(stringMember<Types, &Vorn::parseInt<Types>>("parseInt")), ...);
    (members.push_back(stringMember<Types, &Vorn::parseHex<Types>>("parseHex")), ...);
    (members.push_back(stringMember<Types, &Vorn::parseDec<Types>>("parseDec")), ...);
}

template <class... Types>
void addUnsignedStrings(std::vector<StringMember>& members) {
    (members.push_back(stringMember<Types, &Vorn::parseUInt<Types>>("parseUInt")), ...);
    (members.push_back(stringMember<Types, &Vorn::parseUHex<Types>>("parseUHex")), ...);
    (members.push_back(stringMember<Types, &Vorn::parseUDec<Types>>("parseUDec")), ...);
}

std::vector<StringMember> allStringMembers() {
    std::vector<StringMember> members;
    addSignedStrings<char, signed char, short, int, long, long long>(members);
    addUnsignedStrings<unsigned char, unsigned short, unsigned int, unsigned long, unsigned long long>(members);
    return members;
}

TEST(ParseIntegerString, EitherBufferIsRead) {
    const TerminatedUnits text("102");
    const Vorn::String utf8(text.bytes());
    const Vorn::String utf16(text.units());
    for (const StringMember& member : allStringMembers()) {
        const bool isHex = member.family == "parseHex" || member.family == "parseUHex";
        const bool isByte = member.type.find("char") != std::string::npos;
        const long long expected = !isHex ? 102 : isByte ? 2 : 0x102;
        EXPECT_EQ(member.parse(utf8), expected) << member.function();
        EXPECT_EQ(member.parse(utf16), expected) << member.function();
    }
    EXPECT_EQ(utf16.getData()->getPrivateBuffer<unsigned char>(), nullptr) << "nothing is converted";
}

TEST(ParseIntegerString, UTF8IsReadWhereThereAreBoth) {
    unsigned char text[] = {'4', '2', 0};
    const Vorn::String string(text);
    ASSERT_NE(string.getData()->getBuffer<UTF16Char>(), nullptr);
    text[0] = '7'; // now the two differ
    EXPECT_EQ(Vorn::parseDec<int>(string), 72);
    EXPECT_EQ(Vorn::parseUInt<unsigned int>(string), 72u);
}

TEST(ParseIntegerString, LengthBoundsTheText) {
    const TerminatedUnits text("12345");
    EXPECT_EQ(Vorn::parseInt<int>(Vorn::String(text.bytes(), 3)), 123);
    EXPECT_EQ(Vorn::parseInt<int>(Vorn::String(text.units(), 2)), 12);
}

TEST(ParseIntegerString, NullStringsAreRefused) {
    for (const StringMember& member : allStringMembers()) {
        expectRaises<4>([&] { member.parse(Vorn::String()); }, "null string!", member.function(), FILE_TEXT);
    }
    const Report report = reportOf<4>([] { Vorn::parseInt<int>(Vorn::String()); });
    EXPECT_EQ(report.type, "::Vorn::E::PARAMETER");
    EXPECT_EQ(report.function, "VornPrivate::ParseStrNum<int,&int __cdecl VornPrivate::parseIntInline<int,unsigned "
                               "char>(unsigned char const *,unsigned int *,unsigned int),&int __cdecl "
                               "VornPrivate::parseIntInline<int,wchar_t>(wchar_t const *,unsigned int *,unsigned "
                               "int)>::parse");
}

TEST(ParseIntegerString, EmptyStringsFailTheCheckOfTheParser) {
    for (const StringMember& member : allStringMembers()) {
        const bool isSignedNum = member.family == "parseHex" || member.family == "parseDec";
        expectRaises<1>([&] { member.parse(Vorn::String::getEmptyString()); },
                        isSignedNum ? "length > 0 : empty buffer!" : "length > 0 : empty string!",
                        checkedFunction(member.family, member.type, false), FILE_TEXT);
    }
}

TEST(ParseInteger, ParsersTakeNothingFromTheHeap) {
    const TerminatedUnits text("-0x12345");
    EXPECT_EQ(allocationsDuring([&] {
                  for (const Member& member : allMembers()) member.parse(text, nullptr, text.size());
              }),
              0u);
}

} // namespace
