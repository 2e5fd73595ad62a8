// The three outer forms of conversion in both directions: measuring, capacity, terminators, records, guards.
#include "Vorn/String/StringDataHelper.h"

#include "Reference/SampleTexts.h"
#include "Reference/TextConversion.h"
#include "Support/AllocationCounter.h"
#include "Support/BufferInfo.h"
#include "Support/ExactBuffer.h"
#include "Support/GuardedBuffer.h"
#include "Support/Outcome.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>

namespace {

using reference::Bytes;
using reference::Codes;
using reference::Units;
using Vorn::StringDataBufferInfo;
using Vorn::StringDataSubCharset;
using Vorn::UTF16Char;

// The two directions under one name each.
unsigned char* convert(const UTF16Char* source, const StringDataBufferInfo& info, StringDataSubCharset charset,
                       StringDataBufferInfo& destInfo) {
    return Vorn::stringDataConvertToUTF8(source, info, charset, destInfo);
}
UTF16Char* convert(const unsigned char* source, const StringDataBufferInfo& info, StringDataSubCharset charset,
                   StringDataBufferInfo& destInfo) {
    return Vorn::stringDataConvertToUTF16(source, info, charset, destInfo);
}
unsigned char* convertCreate(const UTF16Char* source, const StringDataBufferInfo& info, StringDataSubCharset charset,
                             unsigned int capacity) {
    return Vorn::stringDataConvertCreateUTF8(source, info, charset, capacity);
}
UTF16Char* convertCreate(const unsigned char* source, const StringDataBufferInfo& info, StringDataSubCharset charset,
                         unsigned int capacity) {
    return Vorn::stringDataConvertCreateUTF16(source, info, charset, capacity);
}
unsigned int convertCopy(const UTF16Char* source, const StringDataBufferInfo& info, StringDataSubCharset charset,
                         unsigned char* dest, unsigned int destLength) {
    return Vorn::stringDataConvertCopyToUTF8(source, info, charset, dest, destLength);
}
unsigned int convertCopy(const unsigned char* source, const StringDataBufferInfo& info, StringDataSubCharset charset,
                         UTF16Char* dest, unsigned int destLength) {
    return Vorn::stringDataConvertCopyToUTF16(source, info, charset, dest, destLength);
}

template <class Source>
struct Direction;
template <>
struct Direction<unsigned char> {
    using Target = UTF16Char;
    static constexpr const char* CONVERT = "Vorn::stringDataConvertToUTF16";
    static constexpr const char* CREATE = "Vorn::stringDataConvertCreateUTF16";
    static constexpr const char* COPY = "Vorn::stringDataConvertCopyToUTF16";
    static const auto& badValues() { return reference::badBytes; }
    static Bytes encode(const Codes& codes) { return reference::toUTF8(codes); }
};
template <>
struct Direction<UTF16Char> {
    using Target = unsigned char;
    static constexpr const char* CONVERT = "Vorn::stringDataConvertToUTF8";
    static constexpr const char* CREATE = "Vorn::stringDataConvertCreateUTF8";
    static constexpr const char* COPY = "Vorn::stringDataConvertCopyToUTF8";
    static const auto& badValues() { return reference::badUnits; }
    static Units encode(const Codes& codes) { return reference::toUTF16(codes); }
};

// A unit of memory that no conversion may write.
template <class Unit>
constexpr Unit FRESH = static_cast<Unit>(0xA5A5);

// Writable units behind `destLength`, in which the last character can end.
constexpr unsigned int SLACK = 8;

template <class Source>
class Conversion : public testing::Test {
protected:
    using Text = std::vector<Source>;
    using Target = typename Direction<Source>::Target;
    using Result = std::vector<Target>;

    // One text with one charset, in memory that ends with it. After a first surrogate at the end, the measuring of
    // UTF-16 reads one more unit, so one follows.
    struct Case {
        Case(const Text& units, int subCharset)
            : text(units), charset(subCharset), length(static_cast<unsigned>(units.size())) {
            if (sizeof(Source) == 2) text.push_back(0);
        }
        Text text;
        int charset;
        unsigned int length;
    };

    static Outcome expectedConversion(const Case& c, Result& dest) {
        const Outcome n = reference::measured(c.text, c.length, c.charset);
        if (!n.failure.empty()) return n;
        dest.assign(n.value + 1 + SLACK, 0);
        const Outcome outcome =
            reference::convertInto(c.text, c.length, c.charset, dest, n.value, Direction<Source>::CONVERT);
        if (!outcome.failure.empty()) return outcome;
        dest[n.value] = 0;
        dest.resize(n.value + 1);
        return n;
    }

    static Outcome expectedCreation(const Case& c, unsigned int capacity, Result& dest) {
        const Outcome n = reference::measured(c.text, c.length, c.charset);
        if (!n.failure.empty()) return n;
        const unsigned int size = std::max(capacity, n.value);
        dest.assign(size + 1 + SLACK, 0);
        const Outcome outcome =
            reference::convertInto(c.text, c.length, c.charset, dest, n.value, Direction<Source>::CREATE);
        if (!outcome.failure.empty()) return outcome;
        dest[size] = 0;
        dest[n.value] = 0;
        dest.resize(size + 1);
        return n;
    }

    static Outcome expectedCopy(const Case& c, Result& dest, unsigned int destLength) {
        const Outcome n = reference::measured(c.text, c.length, c.charset);
        if (!n.failure.empty() || destLength < n.value) return n;
        const Outcome outcome =
            reference::convertInto(c.text, c.length, c.charset, dest, destLength, Direction<Source>::COPY);
        return outcome.failure.empty() ? n : outcome;
    }

    static void checkConversion(const Case& c, const Source* source) {
        Result expectedUnits;
        const Outcome expected = expectedConversion(c, expectedUnits);
        StringDataBufferInfo destInfo = infoOf(77);
        std::unique_ptr<Target[]> dest;
        const std::size_t blocks = liveAllocationCount();
        const std::size_t allocations = allocationCount();
        bool raisedAny = false;
        try {
            dest.reset(convert(source, infoOf(c.length), static_cast<StringDataSubCharset>(c.charset), destInfo));
        } catch (const Vorn::AllExceptions& exception) {
            raisedAny = true;
            EXPECT_EQ(liveAllocationCount(), blocks) << "the guard has freed the buffer";
            EXPECT_EQ(
                failureText(exception.getCode(), exception.getMessage(), exception.getFunction(), exception.getFile()),
                expected.failure);
            EXPECT_TRUE(isUntouched(destInfo, 77));
        }
        ASSERT_EQ(raisedAny, !expected.failure.empty()) << expected.failure;
        if (raisedAny) return;
        EXPECT_EQ(allocationCount(), allocations + 1);
        EXPECT_EQ(liveAllocationCount(), blocks + 1);
        EXPECT_EQ(lastAllocationSize(), (expected.value + std::size_t(1)) * sizeof(Target));
        EXPECT_EQ(destInfo.m_length, expected.value);
        EXPECT_EQ(destInfo.m_allocationType, Vorn::STRING_DATA_DYNAMIC);
        EXPECT_EQ(destInfo.m_nullTerminated, 1u);
        EXPECT_TRUE(restIsUntouched(destInfo));
        EXPECT_EQ(Result(dest.get(), dest.get() + expected.value + 1), expectedUnits);
    }

    static void checkCreation(const Case& c, const Source* source, unsigned int capacity) {
        Result expectedUnits;
        const Outcome expected = expectedCreation(c, capacity, expectedUnits);
        std::unique_ptr<Target[]> dest;
        const std::size_t blocks = liveAllocationCount();
        const std::size_t allocations = allocationCount();
        bool raisedAny = false;
        try {
            dest.reset(convertCreate(source, infoOf(c.length), static_cast<StringDataSubCharset>(c.charset), capacity));
        } catch (const Vorn::AllExceptions& exception) {
            raisedAny = true;
            EXPECT_EQ(liveAllocationCount(), blocks) << "the guard has freed the buffer";
            EXPECT_EQ(
                failureText(exception.getCode(), exception.getMessage(), exception.getFunction(), exception.getFile()),
                expected.failure);
        }
        ASSERT_EQ(raisedAny, !expected.failure.empty()) << expected.failure;
        if (raisedAny) return;
        EXPECT_EQ(allocationCount(), allocations + 1);
        EXPECT_EQ(lastAllocationSize(), expectedUnits.size() * sizeof(Target));
        EXPECT_EQ(Result(dest.get(), dest.get() + expectedUnits.size()), expectedUnits);
    }

    static void checkCopy(const Case& c, const Source* source, unsigned int destLength) {
        Result expectedUnits(destLength + SLACK, FRESH<Target>);
        Result dest = expectedUnits;
        const Outcome expected = expectedCopy(c, expectedUnits, destLength);
        Outcome actual;
        std::size_t allocations = 0;
        actual = outcomeOf([&] {
            const std::size_t before = allocationCount();
            const unsigned int n = convertCopy(source, infoOf(c.length), static_cast<StringDataSubCharset>(c.charset),
                                               dest.data(), destLength);
            allocations = allocationCount() - before;
            return n;
        });
        EXPECT_EQ(actual, expected);
        EXPECT_EQ(dest, expectedUnits) << "destLength " << destLength;
        EXPECT_EQ(allocations, 0u);
    }

    // Converts in every form, with every capacity that makes a difference.
    static bool convertsAsTold(const Text& text, int charset) {
        const Case c(text, charset);
        const GuardedBuffer<Source> source(c.text);
        const Outcome n = reference::measured(c.text, c.length, charset);
        checkConversion(c, source.data());
        for (const unsigned int capacity : {0u, n.value, n.value + 1, n.value + 5}) {
            checkCreation(c, source.data(), capacity);
            checkCopy(c, source.data(), capacity);
        }
        if (n.value > 0) checkCopy(c, source.data(), n.value - 1);
        if (!testing::Test::HasFailure()) return true;
        ADD_FAILURE() << "charset " << charset << ": " << reference::shown(text);
        return false;
    }

    // Four bytes whose measuring passes in the full branch alone; all other verdicts only need to fail as it does.
    static bool convertsAsToldUnderAllVerdicts(const Text& text) {
        for (const int charset : {1, 2, 3, 0}) {
            if (!convertsAsTold(text, charset)) return false;
        }
        return true;
    }
};

using Sources = testing::Types<unsigned char, UTF16Char>;
TYPED_TEST_SUITE(Conversion, Sources, );

TYPED_TEST(Conversion, EmptySourceGivesATerminatorAlone) {
    using Unit = typename TestFixture::Target;
    for (const int charset : {1, 2, 3}) {
        StringDataBufferInfo destInfo = infoOf(77);
        const std::unique_ptr<Unit[]> dest(convert(static_cast<const TypeParam*>(nullptr), infoOf(0),
                                                   static_cast<StringDataSubCharset>(charset), destInfo));
        EXPECT_EQ(lastAllocationSize(), sizeof(Unit));
        EXPECT_EQ(dest[0], 0);
        EXPECT_EQ(destInfo.m_length, 0u);
        EXPECT_EQ(destInfo.m_nullTerminated, 1u);

        const std::unique_ptr<Unit[]> block(convertCreate(static_cast<const TypeParam*>(nullptr), infoOf(0),
                                                          static_cast<StringDataSubCharset>(charset), 3));
        EXPECT_EQ(block[0], 0);
        EXPECT_EQ(block[1], 0);
        EXPECT_EQ(block[2], 0);
        EXPECT_EQ(block[3], 0);

        EXPECT_EQ(convertCopy(static_cast<const TypeParam*>(nullptr), infoOf(0),
                              static_cast<StringDataSubCharset>(charset), nullptr, 0),
                  0u);
        EXPECT_TRUE(TestFixture::convertsAsTold({}, charset));
    }
}

TYPED_TEST(Conversion, RandomTextsOfAllScripts) {
    for (const Codes& codes : reference::randomTexts({1, 2, 3, 7, 8, 9, 15, 16, 17, 33, 64, 200, 3000})) {
        ASSERT_TRUE(TestFixture::convertsAsTold(Direction<TypeParam>::encode(codes), reference::charsetOf(codes)));
    }
}

TYPED_TEST(Conversion, WrongScanResultsFailAsSpecified) {
    for (const Codes& codes : reference::randomTexts({1, 5, 30})) {
        ASSERT_TRUE(TestFixture::convertsAsToldUnderAllVerdicts(Direction<TypeParam>::encode(codes)));
    }
}

TYPED_TEST(Conversion, EveryErrorFailsAsSpecifiedAndLeaksNothing) {
    for (const Codes& codes : reference::randomTexts({11})) {
        const int charset = reference::charsetOf(codes);
        for (const auto& text :
             reference::damaged(Direction<TypeParam>::encode(codes), Direction<TypeParam>::badValues())) {
            ASSERT_TRUE(TestFixture::convertsAsTold(text, charset));
        }
    }
}

TYPED_TEST(Conversion, DamageInLongPlainTextLeavesWhatWasWrittenBefore) {
    const Codes codes(70, 0x61);
    for (const auto& text :
         reference::damaged(Direction<TypeParam>::encode(codes), Direction<TypeParam>::badValues())) {
        ASSERT_TRUE(TestFixture::convertsAsTold(text, 1));
    }
}

TYPED_TEST(Conversion, FaultsFarInsidePlainText) {
    for (const std::size_t length : {1023u, 1024u, 1025u, 2049u, 5000u}) {
        std::vector<TypeParam> text(length, TypeParam(0x61));
        ASSERT_TRUE(TestFixture::convertsAsTold(text, 1));
        for (const std::size_t at : {0u, 1u, 1021u, 1022u, 1023u, 1024u, 1025u, 2047u, 2048u, 4095u, 4999u}) {
            if (at >= length) break;
            for (const unsigned int fault : {0u, 0x80u, 0xFFu}) {
                text[at] = static_cast<TypeParam>(fault);
                ASSERT_TRUE(TestFixture::convertsAsTold(text, 1));
            }
            text[at] = TypeParam(0x7F);
        }
    }
}

TYPED_TEST(Conversion, EveryASCIICharacterAtEveryAlignment) {
    using Unit = typename TestFixture::Target;
    std::vector<TypeParam> text;
    for (unsigned int c = 1; c < 0x80; ++c) text.push_back(static_cast<TypeParam>(c));
    for (std::size_t shift = 0; shift < 9; ++shift) {
        for (std::size_t length : {std::size_t(1), shift, shift + 16, text.size()}) {
            const ExactBuffer<TypeParam> source(
                std::vector<TypeParam>(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length)), shift);
            std::vector<Unit> dest(shift + length + 1, FRESH<Unit>);
            EXPECT_EQ(convertCopy(source.data(), infoOf(length), Vorn::STRING_DATA_ASCII, dest.data() + shift,
                                  static_cast<unsigned int>(length)),
                      length);
            for (std::size_t i = 0; i < length; ++i) ASSERT_EQ(dest[shift + i], text[i]);
            EXPECT_EQ(dest[shift + length], FRESH<Unit>) << "no terminator is written";
        }
    }
}

TYPED_TEST(Conversion, MemoryThatRunsOutIsReportedAsItIs) {
    const auto text = Direction<TypeParam>::encode({0x61, 0xE9, 0x62});
    StringDataBufferInfo destInfo = infoOf(77);
    failAllocation(1);
    EXPECT_THROW(convert(text.data(), infoOf(text.size()), Vorn::STRING_DATA_UCS2, destInfo), std::bad_alloc);
    EXPECT_TRUE(isUntouched(destInfo, 77));
    failAllocation(1);
    EXPECT_THROW(convertCreate(text.data(), infoOf(text.size()), Vorn::STRING_DATA_UCS2, 10), std::bad_alloc);
    failAllocation(0);
}

} // namespace
