#include "Faults/Operation.h"
#include "Support/ExpectedLeak.h"
#include "Support/Texts.h"
#include "Vorn/String/ASCIITable.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/StringDataHelper.h"
#include "Vorn/String/UTF32.h"

#include <memory>
#include <sstream>

namespace {

using Vorn::String;
using Vorn::StringData;
using Vorn::StringDataBufferInfo;
using Vorn::UTF16Char;

// Longer than any standard string that needs no memory.
const std::string TEXT = "a text that is long enough to need memory of its own";
const UTF16Text WIDE(TEXT.begin(), TEXT.end());
const std::string UNICODE = "\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E and more";
const UTF16Text WIDE_UNICODE = VORN_UTF16("\u00E4\u20AC\U0001D11E and more");

template <class CharType>
const auto& textIn() {
    if constexpr (sizeof(CharType) == 1)
        return TEXT;
    else
        return WIDE;
}

template <class CharType>
const CharType* unitsIn() {
    if constexpr (sizeof(CharType) == 1)
        return bytesOf(TEXT);
    else
        return WIDE.c_str();
}

unsigned int length() { return lengthOf(TEXT); }

template <class CharType>
StringDataBufferInfo infoOfLength(unsigned int length) {
    StringDataBufferInfo info = {};
    info.m_length = length;
    info.m_allocationType = Vorn::STRING_DATA_EXTERNAL;
    info.m_nullTerminated = 1;
    return info;
}

// The state of a record that an operation may move or convert, and must leave alone if memory ends.
class Observed {
public:
    explicit Observed(const String& string)
        : m_data(*string.getData()), m_bytes(m_data.getPrivateBuffer<unsigned char>()),
          m_units(m_data.getPrivateBuffer<UTF16Char>()), m_count(m_data.getRefCount()), m_text(textOf(m_data)) {}

    void expectUnchanged() const {
        EXPECT_EQ(m_data.getPrivateBuffer<unsigned char>(), m_bytes);
        EXPECT_EQ(m_data.getPrivateBuffer<UTF16Char>(), m_units);
        EXPECT_EQ(m_data.getRefCount(), m_count);
        EXPECT_EQ(textOf(m_data), m_text);
    }

private:
    const StringData& m_data;
    const unsigned char* m_bytes;
    const UTF16Char* m_units;
    unsigned int m_count;
    std::string m_text;
};

// Runs `operation` on a string, which must be as before if memory ends.
template <class Operation>
void expectUnchangedBy(Attempt& attempt, const String& string, Operation&& operation) {
    const Observed observed(string);
    attempt([&] { operation(string); }, [&] { observed.expectUnchanged(); });
}

// The three ways to build a string over a buffer: the buffer stays the caller's if there is no record for it.
template <class CharType, class Char>
void buildOverBuffers(Attempt& attempt) {
    CharType* const block = newBlock<CharType>(TEXT + '\0');
    StringData* record = nullptr;
    attempt(
        [&] {
            const String string(reinterpret_cast<const Char*>(block), length() + 1, Vorn::STRING_DATA_DYNAMIC);
            record = string.getData();
        },
        [&] { EXPECT_EQ(record, nullptr); });
    if (!record) delete[] block;
}

template <class CharType, class Char>
void buildTerminated(Attempt& attempt) {
    attempt(
        [] { String(reinterpret_cast<const Char*>(unitsIn<CharType>()), length(), Vorn::STRING_DATA_STATIC, true); });
}

template <class CharType>
void terminateExternal(Attempt& attempt) {
    const std::unique_ptr<CharType[]> buffer = callerBuffer<CharType>(TEXT);
    expectUnchangedBy(attempt, String(buffer.get(), length()),
                      [](const String& s) { s.getData()->getTerminatedBuffer<CharType>(); });
}

template <class CharType>
void terminateStatic(Attempt& attempt) {
    expectUnchangedBy(attempt, String(unitsIn<CharType>(), length() - 1, Vorn::STRING_DATA_STATIC),
                      [](const String& s) { s.getData()->getTerminatedBuffer<CharType>(); });
}

// A block that a substring shares, so that its text must move.
template <class CharType>
void terminateDynamic(Attempt& attempt) {
    const String whole(newBlock<CharType>(TEXT), length(), Vorn::STRING_DATA_DYNAMIC);
    const String part(whole.getData()->substr<CharType>(2, 9));
    expectUnchangedBy(attempt, part, [](const String& s) { s.getData()->getTerminatedBuffer<CharType>(); });
}

template <class CharType>
void buildOtherEncoding(Attempt& attempt) {
    expectUnchangedBy(attempt, over(textIn<CharType>()),
                      [](const String& s) { s.getData()->getBuffer<OtherEncoding<CharType>>(); });
}

template <class Target>
void takeSubstring(Attempt& attempt, const String& string) {
    expectUnchangedBy(attempt, string, [](const String& s) { String(s.getData()->substr<Target>(0, 6)); });
}

// Appends to a string, alone on its record or not: both operands are as before if memory ends.
template <class CharType>
void appendTo(Attempt& attempt, bool isShared) {
    String left = over(textIn<CharType>());
    const String other = isShared ? left : String();
    const String right = over(textIn<OtherEncoding<CharType>>());
    const Observed observedLeft(left), observedRight(right);
    attempt([&] { left += right; },
            [&] {
                observedLeft.expectUnchanged();
                observedRight.expectUnchanged();
            });
}

template <class Source, class Convert>
void convert(Attempt& attempt, const Source* text, unsigned int size, Convert&& run) {
    const StringDataBufferInfo info = infoOfLength<Source>(size);
    StringDataBufferInfo target = {};
    attempt([&] { delete[] run(text, info, target); },
            [&] {
                EXPECT_EQ(target.m_length, 0u);
                EXPECT_EQ(target.m_nullTerminated, 0u);
            });
}

} // namespace

std::vector<Operation> stringOperations() {
    return {
        {"String_OfBytes",
         Outcome::THROWS,
         {"String::String(unsigned char const*, unsigned int, StringAllocationType)",
          "StringData::StringData(unsigned char const*, unsigned int, StringAllocationType)",
          "StringData::~StringData()", "StringData::destroy()", "StringData::destroyBuffers()",
          "StringData::destroyDynamicUTF8()"},
         &buildOverBuffers<unsigned char, unsigned char>},
        {"String_OfChars",
         Outcome::THROWS,
         {"String::String(char const*, unsigned int, StringAllocationType)"},
         &buildOverBuffers<unsigned char, char>},
        {"String_OfUnits",
         Outcome::THROWS,
         {"String::String(char16_t const*, unsigned int, StringAllocationType)",
          "StringData::StringData(char16_t const*, unsigned int, StringAllocationType)",
          "StringData::destroyDynamicUTF16()"},
         &buildOverBuffers<UTF16Char, UTF16Char>},
        {"String_OfTerminatedBytes",
         Outcome::THROWS,
         {"String::String(unsigned char const*, unsigned int, StringAllocationType, bool)"},
         &buildTerminated<unsigned char, unsigned char>},
        {"String_OfTerminatedChars",
         Outcome::THROWS,
         {"String::String(char const*, unsigned int, StringAllocationType, bool)"},
         &buildTerminated<unsigned char, char>},
        {"String_OfTerminatedUnits",
         Outcome::THROWS,
         {"String::String(char16_t const*, unsigned int, StringAllocationType, bool)"},
         &buildTerminated<UTF16Char, UTF16Char>},
        {"String_OfStdString",
         Outcome::THROWS,
         {"String::String(std::string const&)"},
         [](Attempt& attempt) {
             const ExpectedLeak leak; // the copy is never freed
             attempt([] { String string(TEXT); });
         }},
        {"String_Assign",
         Outcome::ALLOCATES_NOTHING,
         {"String::operator=(String const&)"},
         [](Attempt& attempt) {
             const String other = over(TEXT);
             String string = over(WIDE);
             attempt([&] { string = other; });
         }},
        {"String_DestroyParentOfSubstring",
         Outcome::ABORTS,
         {},
         [](Attempt& attempt) {
             auto string = std::make_unique<String>(over(TEXT));
             const String part(string->getData()->substr<unsigned char>(2, 9));
             attempt([&] { string.reset(); });
         }},
        {"String_AssignToParentOfSubstring",
         Outcome::ABORTS,
         {},
         [](Attempt& attempt) {
             String string = over(TEXT);
             const String part(string.getData()->substr<unsigned char>(2, 9));
             attempt([&] { string = String(); });
         }},
        {"String_AppendUTF8",
         Outcome::THROWS,
         {"String::operator+=(String const&)", "void String::append<unsigned char>(StringData const&)"},
         [](Attempt& attempt) { appendTo<unsigned char>(attempt, false); }},
        {"String_AppendUTF8Shared",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) { appendTo<unsigned char>(attempt, true); }},
        {"String_AppendUTF16",
         Outcome::THROWS,
         {"void String::append<char16_t>(StringData const&)"},
         [](Attempt& attempt) { appendTo<UTF16Char>(attempt, false); }},
        {"String_AppendUTF16Shared", Outcome::THROWS, {}, [](Attempt& attempt) { appendTo<UTF16Char>(attempt, true); }},
        {"String_AppendToNothing",
         Outcome::ALLOCATES_NOTHING,
         {},
         [](Attempt& attempt) {
             const String other = over(TEXT);
             String null, empty = String::getEmptyString();
             attempt([&] {
                 null += other;
                 empty += other;
             });
         }},
        {"String_CopyTo",
         Outcome::THROWS,
         {"String::copyTo(std::string&) const", "StringData::copyTo(std::string&) const"},
         [](Attempt& attempt) {
             const String string = over(TEXT);
             std::string text = "old";
             attempt([&] { string.copyTo(text); }, [&] { EXPECT_EQ(text, "old"); });
         }},
        {"String_CopyToFromUTF16",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             const String string = over(WIDE);
             const Observed observed(string);
             std::string text = "old";
             attempt([&] { string.copyTo(text); },
                     [&] {
                         observed.expectUnchanged();
                         EXPECT_EQ(text, "");
                     });
         }},
        {"String_GetCString",
         Outcome::THROWS,
         {"String::getCString() const"},
         [](Attempt& attempt) { expectUnchangedBy(attempt, over(WIDE), [](const String& s) { s.getCString(); }); }},
        {"StringData_GetBufferUTF8", Outcome::THROWS, {}, &buildOtherEncoding<UTF16Char>},
        {"StringData_GetBufferUTF16", Outcome::THROWS, {}, &buildOtherEncoding<unsigned char>},
        {"StringData_TerminateExternalUTF8",
         Outcome::THROWS,
         {"unsigned char const* StringData::getTerminatedBuffer<unsigned char>() const",
          "unsigned char const* StringData::nullTerminateExternalString<unsigned char>() const",
          "StringData::destroyExternalUTF8()"},
         &terminateExternal<unsigned char>},
        {"StringData_TerminateExternalUTF16",
         Outcome::THROWS,
         {"char16_t const* StringData::getTerminatedBuffer<char16_t>() const",
          "char16_t const* StringData::nullTerminateExternalString<char16_t>() const",
          "StringData::destroyExternalUTF16()"},
         &terminateExternal<UTF16Char>},
        {"StringData_TerminateStaticUTF8",
         Outcome::THROWS,
         {"unsigned char const* StringData::nullTerminateStaticString<unsigned char>() const"},
         &terminateStatic<unsigned char>},
        {"StringData_TerminateStaticUTF16",
         Outcome::THROWS,
         {"char16_t const* StringData::nullTerminateStaticString<char16_t>() const"},
         &terminateStatic<UTF16Char>},
        {"StringData_TerminateDynamicUTF8",
         Outcome::THROWS,
         {"unsigned char const* StringData::nullTerminateDynamicString<unsigned char>() const"},
         &terminateDynamic<unsigned char>},
        {"StringData_TerminateDynamicUTF16",
         Outcome::THROWS,
         {"char16_t const* StringData::nullTerminateDynamicString<char16_t>() const"},
         &terminateDynamic<UTF16Char>},
        {"StringData_SubstrUTF8",
         Outcome::THROWS,
         {"StringData* StringData::substr<unsigned char>(int, unsigned int) const",
          "StringData::StringData(unsigned char const*, unsigned long, StringAllocationType, "
          "StringData::CountedLength)"},
         [](Attempt& attempt) { takeSubstring<unsigned char>(attempt, over(TEXT)); }},
        {"StringData_SubstrUTF16",
         Outcome::THROWS,
         {"StringData* StringData::substr<char16_t>(int, unsigned int) const",
          "StringData::StringData(char16_t const*, unsigned long, StringAllocationType, StringData::CountedLength)"},
         [](Attempt& attempt) { takeSubstring<UTF16Char>(attempt, over(WIDE)); }},
        {"StringData_SubstrASCIIToUTF16",
         Outcome::THROWS,
         {"StringData* StringData::substrConvertASCIITo<char16_t>(int, unsigned int) const"},
         [](Attempt& attempt) { takeSubstring<UTF16Char>(attempt, over(TEXT)); }},
        {"StringData_SubstrASCIIToUTF8",
         Outcome::THROWS,
         {"StringData* StringData::substrConvertASCIITo<unsigned char>(int, unsigned int) const"},
         [](Attempt& attempt) { takeSubstring<unsigned char>(attempt, over(WIDE)); }},
        {"StringData_SubstrUCS2ToUTF8",
         Outcome::THROWS,
         {"StringData::substrConvertUCS2ToUTF8(int, unsigned int) const"},
         [](Attempt& attempt) {
             const UTF16Text text = VORN_UTF16("\u00E4\u20AC and more");
             takeSubstring<unsigned char>(attempt, over(text));
         }},
        {"StringData_SubstrUTF16ToUTF8",
         Outcome::THROWS,
         {"StringData::substrConvertUTF16ToUTF8(int, unsigned int) const"},
         [](Attempt& attempt) {
             const UTF16Text text = VORN_UTF16("enough text in front of \U0001D11E");
             takeSubstring<unsigned char>(attempt, over(text));
         }},
        {"StringData_SubstrUTF8ToUTF16",
         Outcome::THROWS,
         {"StringData::substrConvertUTF8ToUTF16(int, unsigned int) const"},
         [](Attempt& attempt) { takeSubstring<UTF16Char>(attempt, over(UNICODE)); }},
        {"StringData_Queries",
         Outcome::ALLOCATES_NOTHING,
         {"StringData::contains(signed char const*) const", "StringData::count(signed char) const",
          "StringData::endsWith(signed char const*) const", "StringData::equals(signed char const*) const",
          "StringData::startsWith(signed char const*) const", "StringData::copyToUTF16(char16_t*, unsigned int) const",
          "StringData::copyToUTF8(unsigned char*, unsigned int) const", "StringData::getUTF16Length() const",
          "StringData::getUTF8Length() const", "StringData::getUnicodeLength() const",
          "StringData::getUnicodeCharAt(int) const",
          "unsigned int StringData::getASCIICharFromBuffer<char16_t>(int) const",
          "unsigned int StringData::getASCIICharFromBuffer<unsigned char>(int) const",
          "unsigned int StringData::getUTF32CharFromBuffer<char16_t>(int) const",
          "unsigned int StringData::getUTF32CharFromBuffer<unsigned char>(int) const",
          "StringData::getUCS2CharFromUTF16Buffer(int) const"},
         [](Attempt& attempt) {
             const UTF16Text ucs2 = VORN_UTF16("\u00E4\u20AC");
             const String strings[] = {over(TEXT), over(WIDE), over(UNICODE), over(WIDE_UNICODE), over(ucs2)};
             attempt([&] {
                 for (const String& string : strings) {
                     static unsigned char bytes[200];
                     static UTF16Char units[200];
                     string.contains("text");
                     string.count('t');
                     string.endsWith("text");
                     string.equals("text");
                     string.startsWith("text");
                     string.getData()->copyToUTF8(bytes, 200);
                     string.getData()->copyToUTF16(units, 200);
                     string.getData()->getUTF8Length();
                     string.getData()->getUTF16Length();
                     string.getUnicodeLength();
                     string.getUnicodeCharAt(1);
                 }
             });
         }},
        {"StringData_Comparison",
         Outcome::ALLOCATES_NOTHING,
         {"StringData::utf16Equal(StringData const&) const", "StringData::utf16LessThan(StringData const&) const",
          "StringData::utf8Equal(StringData const&) const", "StringData::utf8LessThan(StringData const&) const"},
         [](Attempt& attempt) {
             const String narrow = over(UNICODE), wide = over(WIDE_UNICODE);
             attempt([&] {
                 static_cast<void>(narrow == wide);
                 static_cast<void>(wide == narrow);
                 static_cast<void>(narrow < wide);
                 static_cast<void>(wide < narrow);
             });
         }},
        {"ConvertToUTF8",
         Outcome::THROWS,
         {"stringDataConvertToUTF8(char16_t const*, StringDataBufferInfo const&, StringDataSubCharset, "
          "StringDataBufferInfo&)"},
         [](Attempt& attempt) {
             convert(attempt, WIDE.c_str(), length(), [](auto* text, auto& info, auto& target) {
                 return Vorn::stringDataConvertToUTF8(text, info, Vorn::STRING_DATA_ASCII, target);
             });
         }},
        {"ConvertToUTF16",
         Outcome::THROWS,
         {"stringDataConvertToUTF16(unsigned char const*, StringDataBufferInfo const&, StringDataSubCharset, "
          "StringDataBufferInfo&)"},
         [](Attempt& attempt) {
             convert(attempt, bytesOf(TEXT), length(), [](auto* text, auto& info, auto& target) {
                 return Vorn::stringDataConvertToUTF16(text, info, Vorn::STRING_DATA_ASCII, target);
             });
         }},
        {"ConvertCreateUTF8",
         Outcome::THROWS,
         {"stringDataConvertCreateUTF8(char16_t const*, StringDataBufferInfo const&, StringDataSubCharset, unsigned "
          "int)"},
         [](Attempt& attempt) {
             convert(attempt, WIDE.c_str(), length(), [](auto* text, auto& info, auto&) {
                 return Vorn::stringDataConvertCreateUTF8(text, info, Vorn::STRING_DATA_ASCII, 10);
             });
         }},
        {"ConvertCreateUTF16",
         Outcome::THROWS,
         {"stringDataConvertCreateUTF16(unsigned char const*, StringDataBufferInfo const&, StringDataSubCharset, "
          "unsigned int)"},
         [](Attempt& attempt) {
             convert(attempt, bytesOf(TEXT), length(), [](auto* text, auto& info, auto&) {
                 return Vorn::stringDataConvertCreateUTF16(text, info, Vorn::STRING_DATA_ASCII, 10);
             });
         }},
        {"ConvertCopy",
         Outcome::ALLOCATES_NOTHING,
         {"stringDataConvertCopyToUTF16(unsigned char const*, StringDataBufferInfo const&, StringDataSubCharset, "
          "char16_t*, unsigned int)",
          "stringDataConvertCopyToUTF8(char16_t const*, StringDataBufferInfo const&, StringDataSubCharset, unsigned "
          "char*, unsigned int)",
          "stringDataConvertToUTF8FromUCS2(unsigned char*, unsigned int, char16_t const*, unsigned int)",
          "stringDataConvertToUTF8FromUTF16(unsigned char*, unsigned int, char16_t const*, unsigned int)",
          "stringDataGetUTF16Length(unsigned char const*, StringDataBufferInfo const&, StringDataSubCharset)",
          "stringDataGetUTF8Length(char16_t const*, StringDataBufferInfo const&, StringDataSubCharset)",
          "stringDataGetUnicodeLength(char16_t const*, StringDataBufferInfo const&, StringDataSubCharset)",
          "stringDataGetUnicodeLength(unsigned char const*, StringDataBufferInfo const&, StringDataSubCharset)"},
         [](Attempt& attempt) {
             attempt([] {
                 static unsigned char bytes[200];
                 static UTF16Char units[200];
                 const StringDataBufferInfo narrow = infoOfLength<unsigned char>(lengthOf(UNICODE));
                 const StringDataBufferInfo wide = infoOfLength<UTF16Char>(lengthOf(WIDE_UNICODE));
                 const auto charset = Vorn::STRING_DATA_UNICODE;
                 Vorn::stringDataConvertCopyToUTF16(bytesOf(UNICODE), narrow, charset, units, 200);
                 Vorn::stringDataConvertCopyToUTF8(WIDE_UNICODE.c_str(), wide, charset, bytes, 200);
                 Vorn::stringDataConvertToUTF8FromUCS2(bytes, 200, WIDE.c_str(), length());
                 Vorn::stringDataConvertToUTF8FromUTF16(bytes, 200, WIDE_UNICODE.c_str(), wide.m_length);
                 Vorn::stringDataGetUTF16Length(bytesOf(UNICODE), narrow, charset);
                 Vorn::stringDataGetUTF8Length(WIDE_UNICODE.c_str(), wide, charset);
                 Vorn::stringDataGetUnicodeLength(bytesOf(UNICODE), narrow, charset);
                 Vorn::stringDataGetUnicodeLength(WIDE_UNICODE.c_str(), wide, charset);
             });
         }},
        {"Interop_Hash",
         Outcome::ALLOCATES_NOTHING,
         {"hashOf(String const&)"},
         [](Attempt& attempt) {
             const String string = over(WIDE);
             attempt([&] { Vorn::hashOf(string); });
         }},
        {"Interop_IsText",
         Outcome::THROWS,
         {"isText(String const&, std::string_view)"},
         [](Attempt& attempt) {
             expectUnchangedBy(attempt, over(WIDE), [](const String& s) { Vorn::isText(s, TEXT); });
         }},
        {"Interop_Print",
         Outcome::THROWS,
         {"operator<<(std::ostream&, String const&)"},
         [](Attempt& attempt) {
             std::ostringstream stream;
             stream << TEXT << TEXT;
             const std::string before = stream.str();
             const String string = over(WIDE);
             stream.exceptions(std::ios_base::badbit);
             attempt([&] { stream << string; }, [&] { EXPECT_EQ(stream.str(), before); });
         }},
        {"Interop_Bytes",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) { expectUnchangedBy(attempt, over(WIDE), [](const String& s) { Vorn::bytes(s); }); }},
        {"Interop_Literal",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             attempt([] {
                 using namespace Vorn::Literals;
                 "literal"_vs;
             });
         }},
        {"ASCIITable_Build",
         Outcome::ALLOCATES_NOTHING,
         {"ASCIITable::ASCIITable(signed char const*)", "UTF32::getUTF32CharForUTF8(unsigned int)"},
         [](Attempt& attempt) {
             attempt([] {
                 const Vorn::ASCIITable table(reinterpret_cast<const signed char*>("abc"));
                 static_cast<void>(table);
                 Vorn::UTF32::getUTF32CharForUTF8(0xC3A4);
             });
         }},
    };
}
