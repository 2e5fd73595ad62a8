// The rows of Documentation/TextOperations.md as code: one table for each section of the page, one entry for each row,
// in order.
#pragma once

#include "Support/Report.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextView.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

/// A row of the page.
struct TextOperation {
    const char* operation; ///< its first cell, as written
    void (*test)();        ///< runs the call of its second cell
};

using TextOperations = std::vector<TextOperation>;

extern const TextOperations RUST_STR_OPERATIONS;
extern const TextOperations RUST_STRING_OPERATIONS;
extern const TextOperations STANDARD_STRING_OPERATIONS;
extern const TextOperations QSTRING_SEARCH_OPERATIONS;
extern const TextOperations QSTRING_CHANGE_OPERATIONS;
extern const TextOperations QSTRING_CONVERSION_OPERATIONS;

/// Expects that two texts are the same in UTF-8.
inline void expectText(Vorn::TextView actual, Vorn::TextView expected, int line = __builtin_LINE()) {
    EXPECT_EQ(Vorn::toUTF8(actual), Vorn::toUTF8(expected)) << "line " << line;
}

/// Expects the pieces of a range.
template <class Pieces>
void expectPieces(const Pieces& pieces, std::initializer_list<const char*> expected, int line = __builtin_LINE()) {
    std::vector<std::string> actual;
    for (const Vorn::TextView piece : pieces) actual.push_back(Vorn::toUTF8(piece));
    EXPECT_EQ(actual, std::vector<std::string>(expected.begin(), expected.end())) << "line " << line;
}

/// Runs a test with a String in UTF-8 and one in UTF-16.
inline void inBoth(const char* text, void (*test)(const Vorn::String&)) {
    {
        SCOPED_TRACE("in UTF-8");
        test(Vorn::makeString(text));
    }
    SCOPED_TRACE("in UTF-16");
    test(Vorn::makeString(Vorn::toUTF16(text)));
}
