#include "Documentation/Surprises/Surprise.h"
#include "Support/AllocationCounter.h"
#include "Support/ExpectedLeak.h"
#include "Support/StringDataProbe.h"
#include "Vorn/String/Interop.h"
#include "Vorn/String/String.h"
#include "Vorn/String/UTF16.h"
#include "Vorn/Text.h"

#include <memory>

namespace {

using namespace Vorn;

using Units = std::basic_string<UTF16Char>;

Units unitsOf(const char* text, std::size_t length) { return Units(text, text + length); }

unsigned char* blockOf(const std::string& text) {
    unsigned char* const block = new unsigned char[text.size() + 1]();
    text.copy(reinterpret_cast<char*>(block), text.size());
    return block;
}

// A string that owns its block, terminated or not.
String ownerOf(const std::string& text, bool isTerminated) {
    return String(blockOf(text), static_cast<unsigned int>(text.size() + isTerminated), STRING_DATA_DYNAMIC);
}

String substringOf(const String& string, int offset, unsigned int length) {
    return String(string.getData()->substr<unsigned char>(offset, length));
}

const char* terminated(const String& string) {
    return reinterpret_cast<const char*>(string.getData()->getTerminatedBuffer<unsigned char>());
}

// The owner of a block with free units at its start and none behind its text, and a substring of it.
struct SlidingTexts {
    SlidingTexts() {
        String whole = ownerOf("--abc", false);
        owner = substringOf(whole, 2, 3);
        part = substringOf(owner, 1, 1);
    }
    String owner, part;
};

} // namespace

const Surprises STRING_SURPRISES = {
    {"`String(buffer)`",
     [] {
         char text[] = "abc";
         const String string(text);
         text[0] = 'x';
         EXPECT_EQ(view(string), "xbc");
     },
     [] {
         char text[] = "abc";
         const String string = makeString(text);
         text[0] = 'x';
         EXPECT_EQ(toUTF8(string), "abc");
     }},
    {"`String(buffer, length)`", [] { EXPECT_EQ(String("ab\0c", 3).getData()->getUTF8Length(), 2u); },
     [] {
         EXPECT_EQ(TextView(makeString(TextView("ab\0c", 3))).getLength(), 4u) << "U+0000 as 0xC0 0x80";
         EXPECT_EQ(codePointCount(makeString(TextView("ab\0c", 3))), 3u);
     }},
    {"`String(buffer, 0)`",
     [] {
         const char* const text = "abc";
         const String string(text, 0);
         EXPECT_TRUE(string.isEmpty() && !string.isNull());
         EXPECT_FALSE(string.getData()->getBufferInfo<unsigned char>().m_nullTerminated);
         EXPECT_EQ(reinterpret_cast<const char*>(string.getData()->getPrivateBuffer<unsigned char>()), text);
     },
     [] { EXPECT_STREQ(makeString("").getCString(), ""); }},
    {"`String(buffer, 0xFFFFFFFF, type, true)`",
     [] { EXPECT_EQ(String("abc", 0xFFFFFFFF, STRING_DATA_EXTERNAL, true).getData()->getUTF8Length(), 0u); },
     [] { EXPECT_EQ(toUTF8(makeString("abc")), "abc"); }},
    {"`String(buffer, length, STRING_DATA_DYNAMIC)` that throws",
     [] {
         const std::size_t live = liveAllocationCount();
         std::unique_ptr<unsigned char[]> block(blockOf("\x80"));
         EXPECT_THROW(String(block.get(), 1, STRING_DATA_DYNAMIC), Exception<7>);
         EXPECT_GT(liveAllocationCount(), live);
     },
     [] {
         const std::size_t live = liveAllocationCount();
         EXPECT_THROW(makeString("\x80"), Exception<7>);
         EXPECT_EQ(liveAllocationCount(), live);
     }},
    {"`String(const std::string&)`",
     [] {
         const ExpectedLeak leak;
         const std::size_t live = liveAllocationCount();
         { const String string(std::string("abc")); }
         EXPECT_EQ(liveAllocationCount(), live + 1);
     },
     [] {
         const std::size_t live = liveAllocationCount();
         { const String string = makeString(std::string("abc")); }
         EXPECT_EQ(liveAllocationCount(), live);
     }},
    {"`String()`",
     [] {
         const String string;
         EXPECT_TRUE(string.isNull() && string.isEmpty());
         EXPECT_EQ(string.getCharset(), STRING_DATA_ASCII);
     },
     [] {
         EXPECT_FALSE(makeString("").isNull());
         EXPECT_TRUE(TextView(makeString("")).isEmpty());
     }},
    {"`String::getCString() const`",
     [] {
         const Units text = unitsOf("abc", 3);
         const String wide(text.c_str(), 3);
         EXPECT_STREQ(wide.getCString(), "abc");
         EXPECT_TRUE(wide.getData()->getPrivateBuffer<unsigned char>()) << "built";
         const std::string bytes = "abcd";
         const String external(bytes.c_str(), 3);
         EXPECT_NE(external.getCString(), bytes.c_str()) << "copied";
         const SlidingTexts texts;
         const unsigned char* const before = texts.part.getData()->getPrivateBuffer<unsigned char>();
         EXPECT_STREQ(texts.owner.getCString(), "abc");
         EXPECT_NE(texts.part.getData()->getPrivateBuffer<unsigned char>(), before) << "moved";
     },
     [] {
         const Units text = unitsOf("abc", 3);
         const String wide(text.c_str(), 3);
         EXPECT_STREQ(toUTF8(wide).c_str(), "abc");
         EXPECT_FALSE(wide.getData()->getPrivateBuffer<unsigned char>()) << "not built";
     }},
    {"`getCString`, `getTerminatedBuffer` of a static or external text",
     [] {
         const String external("abcd", 3), fixed("abcd", 3, STRING_DATA_STATIC);
         for (const String& string : {external, fixed}) {
             const char* const first = string.getCString();
             const char* const second = string.getCString();
             EXPECT_NE(first, second);
             EXPECT_EQ(string.getCString(), second);
         }
     },
     [] {
         const String string = makeString(TextView("abcd", 3));
         const char* const text = string.getCString();
         EXPECT_EQ(string.getCString(), text);
         EXPECT_STREQ(text, "abc");
     }},
    {"`getTerminatedBuffer` of an owner",
     [] {
         const SlidingTexts texts;
         const unsigned char* const before = texts.part.getData()->getPrivateBuffer<unsigned char>();
         EXPECT_STREQ(terminated(texts.owner), "abc");
         EXPECT_NE(texts.part.getData()->getPrivateBuffer<unsigned char>(), before);
     },
     [] {
         const SlidingTexts texts;
         terminated(texts.owner);
         EXPECT_EQ(*texts.part.getData()->getPrivateBuffer<unsigned char>(), 'b');
     }},
    {"`getBuffer`, `getPrivateBuffer`",
     [] {
         const String string("abcd", 3);
         EXPECT_EQ(string.getData()->getBuffer<unsigned char>()[3], 'd');
         EXPECT_EQ(string.getData()->getPrivateBuffer<unsigned char>()[3], 'd');
     },
     [] {
         const String string("abcd", 3);
         EXPECT_EQ(TextView(string).getLength(), 3u);
         EXPECT_STREQ(toUTF8(string).c_str(), "abc");
     }},
    {"`getCString` of a text with U+0000", [] { EXPECT_STREQ(String("a\xC0\x80z").getCString(), "a\xC0\x80z"); },
     [] { EXPECT_EQ(toUTF8(String("a\xC0\x80z")), std::string("a\0z", 3)); }},
    {"`copyTo(std::string&)`",
     [] {
         std::string copy;
         String("a\xC0\x80z").copyTo(copy);
         EXPECT_EQ(copy, "a\xC0\x80z");
     },
     [] { EXPECT_EQ(toUTF8(String("a\xC0\x80z")), std::string("a\0z", 3)); }},
    {"`copyToUTF8`, `copyToUTF16` with too small a capacity",
     [] {
         const Units text = unitsOf("abc", 3);
         const String narrow("abc"), wide(text.c_str(), 3);
         unsigned char bytes[2];
         UTF16Char units[2];
         EXPECT_EQ(narrow.getData()->copyToUTF8(bytes, 2), 0xFFFFFFFFu);
         EXPECT_EQ(wide.getData()->copyToUTF8(bytes, 2), 3u);
         EXPECT_EQ(wide.getData()->copyToUTF16(units, 2), 0xFFFFFFFFu);
         EXPECT_EQ(narrow.getData()->copyToUTF16(units, 2), 3u);
     },
     [] {
         const Units text = unitsOf("abc", 3);
         for (const String& string : {String("abc"), String(text.c_str(), 3)}) {
             char bytes[2];
             char16_t units[2];
             EXPECT_EQ(toUTF8(string, bytes, 2).written, 2u);
             EXPECT_EQ(toUTF16(string, units, 2).read, 2u);
         }
     }},
    {"`getUTF8Length`, `getUTF16Length`",
     [] {
         const String narrow("a\xF0\x9F\x98\x80");
         EXPECT_EQ(narrow.getData()->getUTF16Length(), 3u);
         EXPECT_EQ(narrow.getData()->getBuffer<UTF16Char>()[1], 0xDE00) << "one unit less is written";
     },
     [] {
         const String string("a\xF0\x9F\x98\x80");
         EXPECT_EQ(lengthInUTF16(string), toUTF16(string).size());
         EXPECT_EQ(lengthInUTF8(string), 5u);
     }},
    {"the destruction of a string over a borrowed buffer",
     [] {
         std::string text = "abcdef";
         String part;
         {
             auto string = std::make_unique<String>(text.c_str(), 6u);
             part = substringOf(*string, 2, 3);
             EXPECT_EQ(allocationsDuring([&] { string.reset(); }), 1u);
         }
         text = "XXXXXX";
         EXPECT_EQ(view(part), "cde");
     },
     [] {
         std::string text = "abcdef";
         auto string = std::make_unique<String>(makeString(text));
         const String part = slice(*string, 2, 3);
         EXPECT_EQ(allocationsDuring([&] { string.reset(); }), 0u);
         text = "XXXXXX";
         EXPECT_EQ(toUTF8(part), "cde");
     }},
    {"`getRefCount` of a static record",
     [] {
         const ExpectedLeak leak;
         static const unsigned char text[] = "a";
         static const UTF16Char units[] = {'a', 0};
         StringData* const record = VornPrivate::StringDataProbe::makeStatic(text, units, 1);
         { const String string(record); }
         EXPECT_EQ(record->getRefCount(), 0u);
         const String string(record);
         EXPECT_EQ(string.getData()->getRefCount(), 1u);
         record->incRefCount(); // stays for ever
     },
     [] { EXPECT_TRUE(String::getEmptyString().getData()->isStaticConstString()); }},
};
