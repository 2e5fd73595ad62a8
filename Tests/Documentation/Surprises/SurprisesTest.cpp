// Runs the rows of Documentation/Surprises.md, and compares the page with the tables that do so: a row without a test,
// a test without a row, and rows in another order fail.
#include "Documentation/Surprises/Surprise.h"

#include <fstream>
#include <map>
#include <ostream>

static void PrintTo(const Surprise& surprise, std::ostream* stream) { *stream << surprise.operation; }

namespace {

struct Area {
    const char* heading;
    const Surprises* surprises;
};

const Area AREAS[] = {
    {"Failure reporting", &FAILURE_REPORTING_SURPRISES},
    {"Code points", &CODE_POINT_SURPRISES},
    {"Lengths and conversions", &CONVERSION_SURPRISES},
    {"Strings", &STRING_SURPRISES},
    {"Comparison, queries, substrings and joins of strings", &QUERY_SURPRISES},
    {"Editable strings and character sets", &EDITING_SURPRISES},
    {"Interning", &INTERNING_SURPRISES},
    {"Number text", &NUMBER_SURPRISES},
    {"Planar geometry", &GEOMETRY_SURPRISES},
    {"Shared objects, delegates, events", &SHARED_OBJECT_SURPRISES},
};

using Row = std::vector<std::string>;

// The next bar behind `start` that is not escaped.
std::size_t cellEnd(const std::string& line, std::size_t start) {
    std::size_t end = line.find('|', start);
    while (end != std::string::npos && line[end - 1] == '\\') end = line.find('|', end + 1);
    return end;
}

std::string trimmed(const std::string& cell) {
    const std::size_t first = cell.find_first_not_of(' ');
    return first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') - first + 1);
}

// The rows below each heading of the page.
std::map<std::string, std::vector<Row>> readPage() {
    std::ifstream page(VORN_SURPRISES_PAGE);
    EXPECT_TRUE(page) << VORN_SURPRISES_PAGE;
    std::map<std::string, std::vector<Row>> rows;
    std::string heading;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("## ", 0) == 0) heading = line.substr(3);
        if (line.rfind("| ", 0) != 0 || line.rfind("| Operation |", 0) == 0 || line.rfind("| --- |", 0) == 0) continue;
        Row row;
        for (std::size_t start = 1, end; (end = cellEnd(line, start)) != std::string::npos; start = end + 1)
            row.push_back(trimmed(line.substr(start, end - start)));
        EXPECT_EQ(row.size(), 4u) << line;
        row.resize(4);
        rows[heading].push_back(row);
    }
    return rows;
}

bool namesNothingToWrite(const std::string& cell) {
    return cell.empty() || cell == "\xE2\x80\x94" || cell.rfind("nothing", 0) == 0;
}

TEST(Surprises, ThePageAndTheTablesHaveTheSameRows) {
    auto page = readPage();
    for (const Area& area : AREAS) {
        SCOPED_TRACE(area.heading);
        const std::vector<Row> rows = page[area.heading];
        page.erase(area.heading);
        const Surprises& surprises = *area.surprises;
        for (std::size_t i = 0; i < std::max(rows.size(), surprises.size()); ++i) {
            ASSERT_LT(i, surprises.size()) << "no test for the row " << rows[i][0];
            ASSERT_LT(i, rows.size()) << "no row for the test " << surprises[i].operation;
            ASSERT_EQ(surprises[i].operation, rows[i][0]) << "row " << i;
            EXPECT_EQ(surprises[i].instead == nullptr, namesNothingToWrite(rows[i][3]))
                << surprises[i].operation << ": " << rows[i][3];
        }
    }
    for (const auto& area : page) ADD_FAILURE() << "no tests for the area " << area.first;
}

class SurprisesTest : public testing::TestWithParam<Surprise> {};

TEST_P(SurprisesTest, Does) {
    ASSERT_TRUE(GetParam().does);
    SCOPED_TRACE(GetParam().operation);
    GetParam().does();
}

TEST_P(SurprisesTest, Instead) {
    if (!GetParam().instead) return;
    SCOPED_TRACE(GetParam().operation);
    GetParam().instead();
}

std::vector<Surprise> allSurprises() {
    std::vector<Surprise> all;
    for (const Area& area : AREAS) all.insert(all.end(), area.surprises->begin(), area.surprises->end());
    return all;
}

// The generator runs in InitGoogleTest, when the tables of the other files are initialised.
INSTANTIATE_TEST_SUITE_P(Rows, SurprisesTest, testing::ValuesIn(allSurprises()));

} // namespace
