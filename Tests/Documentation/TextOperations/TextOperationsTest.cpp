// Runs the rows of Documentation/TextOperations.md, and compares the page with the tables that do so: a row without a
// test, a test without a row, rows in another order, and a test without the call of its row fail.
#include "Documentation/TextOperations/TextOperation.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <ostream>
#include <regex>
#include <sstream>

static void PrintTo(const TextOperation& row, std::ostream* stream) { *stream << row.operation; }

namespace {

struct Section {
    const char* heading;
    const TextOperations* operations;
    const char* source;
};

const Section SECTIONS[] = {
    {"`str` of Rust", &RUST_STR_OPERATIONS, "RustStrTest.cpp"},
    {"`String` of Rust", &RUST_STRING_OPERATIONS, "RustStringTest.cpp"},
    {"`std::string_view` and `std::string`", &STANDARD_STRING_OPERATIONS, "StandardStringTest.cpp"},
    {"`QString`: texts, search and comparison", &QSTRING_SEARCH_OPERATIONS, "QStringSearchTest.cpp"},
    {"`QString`: parts and changes", &QSTRING_CHANGE_OPERATIONS, "QStringChangeTest.cpp"},
    {"`QString`: numbers, encodings and format", &QSTRING_CONVERSION_OPERATIONS, "QStringConversionTest.cpp"},
};

using Row = std::vector<std::string>;

std::string trimmed(const std::string& cell) {
    const std::size_t first = cell.find_first_not_of(' ');
    return first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') - first + 1);
}

// The rows below each heading of the page.
std::map<std::string, std::vector<Row>> readPage() {
    std::ifstream page(VORN_TEXT_OPERATIONS_PAGE);
    EXPECT_TRUE(page) << VORN_TEXT_OPERATIONS_PAGE;
    std::map<std::string, std::vector<Row>> rows;
    std::string heading;
    bool isBody = false; // behind the head of a table
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("## ", 0) == 0) heading = line.substr(3);
        const bool isRow = line.rfind("| ", 0) == 0;
        if (isBody && isRow) {
            Row row;
            for (std::size_t start = 1, end; (end = line.find('|', start)) != std::string::npos; start = end + 1)
                row.push_back(trimmed(line.substr(start, end - start)));
            EXPECT_EQ(row.size(), 3u) << line;
            row.resize(3);
            rows[heading].push_back(row);
        }
        isBody = isRow && (isBody || line.rfind("| --- |", 0) == 0);
    }
    return rows;
}

// The source of each test of a file, by the operation as the source writes it.
std::map<std::string, std::string> readTests(const std::string& name) {
    std::ifstream file(VORN_TEXT_OPERATIONS_TESTS + name);
    EXPECT_TRUE(file) << name;
    std::map<std::string, std::string> tests;
    std::string operation;
    const std::string start = "    {\"";
    for (std::string line; std::getline(file, line);) {
        if (line.rfind(start, 0) == 0) operation = line.substr(start.size(), line.find("\",") - start.size());
        tests[operation] += line + '\n';
    }
    return tests;
}

std::string asLiteral(const std::string& text) { return std::regex_replace(text, std::regex(R"([\\"])"), "\\$&"); }

TEST(TextOperations, ThePageAndTheTablesHaveTheSameRows) {
    auto page = readPage();
    EXPECT_GT(page["Left out"].size(), 10u);
    page.erase("Left out");
    for (const Section& section : SECTIONS) {
        SCOPED_TRACE(section.heading);
        const std::vector<Row> rows = page[section.heading];
        page.erase(section.heading);
        const TextOperations& operations = *section.operations;
        for (std::size_t i = 0; i < std::max(rows.size(), operations.size()); ++i) {
            ASSERT_LT(i, operations.size()) << "no test for the row " << rows[i][0];
            ASSERT_LT(i, rows.size()) << "no row for the test " << operations[i].operation;
            ASSERT_EQ(operations[i].operation, rows[i][0]) << "row " << i;
        }
    }
    for (const auto& section : page) ADD_FAILURE() << "no tests for the section " << section.first;
}

TEST(TextOperations, EachTestHasTheCallOfItsRow) {
    auto page = readPage();
    for (const Section& section : SECTIONS) {
        auto tests = readTests(section.source);
        for (const Row& row : page[section.heading]) {
            const std::string test = tests[asLiteral(row[0])];
            const std::regex call(R"((\w+)[(<])");
            unsigned int count = 0;
            for (std::sregex_iterator found(row[1].begin(), row[1].end(), call), end; found != end; ++found, ++count)
                EXPECT_NE(test.find(found->str()), std::string::npos) << row[0] << ": " << found->str();
            for (const char* sign : {"<<", ">>", " + ", " < "}) {
                if (row[1].find(sign) == std::string::npos) continue;
                EXPECT_NE(test.find(sign), std::string::npos) << row[0] << ": " << sign;
                ++count;
            }
            EXPECT_GT(count, 0u) << row[0] << " names no call: " << row[1];
        }
    }
}

class TextOperationsTest : public testing::TestWithParam<TextOperation> {};

TEST_P(TextOperationsTest, Does) {
    SCOPED_TRACE(GetParam().operation);
    GetParam().test();
}

std::vector<TextOperation> allOperations() {
    std::vector<TextOperation> all;
    for (const Section& section : SECTIONS)
        all.insert(all.end(), section.operations->begin(), section.operations->end());
    return all;
}

// The generator runs in InitGoogleTest, when the tables of the other files are initialised.
INSTANTIATE_TEST_SUITE_P(Rows, TextOperationsTest, testing::ValuesIn(allOperations()));

} // namespace
