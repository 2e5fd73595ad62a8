// Every operation, with each of its allocations failing, one at a time and from one on: it ends as the table states,
// leaves the state that its header documents, and leaks nothing. An exported function without a row fails a test.
#include "Faults/Operation.h"

#include "Support/Aborted.h"

#include <fstream>
#include <map>
#include <set>

namespace {

const std::vector<Operation>& operations() {
    static const std::vector<Operation> rows = [] {
        std::vector<Operation> all;
        for (const auto& part :
             {failureOperations(), stringOperations(), editOperations(), mapOperations(), numberOperations(),
              objectOperations(), textOperations(), textNumberOperations(), textPieceOperations()}) {
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    }();
    return rows;
}

void expectAllocatesNothing(const Operation& operation) {
    Attempt attempt(1, false);
    operation.run(attempt);
    EXPECT_EQ(attempt.allocations(), 0u);
    EXPECT_FALSE(attempt.isHit());
}

// Without a fault, to learn how many allocations there are.
std::size_t allocationsOf(const Operation& operation) {
    Attempt attempt(0, false);
    operation.run(attempt);
    return attempt.allocations();
}

void expectAborts(const Operation& operation) {
    const std::size_t allocations = allocationsOf(operation);
    EXPECT_GT(allocations, 0u);
    for (std::size_t n = 1; n <= allocations; ++n) {
        EXPECT_EXIT(
            {
                Attempt attempt(n, false);
                operation.run(attempt);
            },
            aborted(), "");
    }
}

void expectEachFaultHandled(const Operation& operation, bool isLasting) {
    std::size_t hits = 0;
    for (std::size_t n = 1;; ++n) {
        SCOPED_TRACE(::testing::Message() << "allocation " << n << (isLasting ? " and all later" : "") << " fails");
        const std::size_t live = liveAllocationCount();
        bool isHit;
        {
            Attempt attempt(n, isLasting);
            operation.run(attempt);
            isHit = attempt.isHit();
            EXPECT_EQ(attempt.hasThrown(), isHit && operation.outcome == Outcome::THROWS);
        }
        if (!isHit) break;
        ++hits;
        EXPECT_EQ(liveAllocationCount(), live) << "blocks leaked";
        if (::testing::Test::HasFailure()) return;
    }
    EXPECT_GT(hits, 0u) << "allocates nothing";
}

class Fault : public ::testing::TestWithParam<std::size_t> {};

TEST_P(Fault, IsHandled) {
    const Operation& operation = operations()[GetParam()];
    operation.run(*std::make_unique<Attempt>(0, false)); // what is allocated once in a program exists from now on
    switch (operation.outcome) {
    case Outcome::ALLOCATES_NOTHING: expectAllocatesNothing(operation); break;
    case Outcome::ABORTS: expectAborts(operation); break;
    default: expectEachFaultHandled(operation, false); expectEachFaultHandled(operation, true);
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, Fault, ::testing::Range(std::size_t(0), operations().size()),
                         [](const auto& row) { return operations()[row.param].name; });

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// A function's name without its own namespace, and with the usual names of the standard types.
std::string shortened(std::string symbol) {
    symbol = replaced(symbol, "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >",
                      "std::string");
    symbol = replaced(symbol, "std::basic_string_view<char, std::char_traits<char> >", "std::string_view");
    symbol = replaced(symbol, "__va_list_tag*", "va_list");
    symbol = replaced(symbol, "[abi:cxx11]", "");
    return replaced(symbol, "Vorn::", "");
}

// The names that the shared library defines (T, W and the like), or takes from other libraries (U).
std::set<std::string> librarySymbols(bool isDefined) {
    std::set<std::string> symbols;
    std::ifstream lines(VORN_SYMBOLS);
    EXPECT_TRUE(lines) << VORN_SYMBOLS;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t kind = line.find_first_not_of("0123456789abcdef ");
        if (kind == std::string::npos || (line[kind] != 'U') != isDefined) continue;
        if (isDefined && line[kind] != 'T' && line[kind] != 'W') continue; // data
        symbols.insert(line.substr(kind + 2));
    }
    return symbols;
}

// Only this build exports exactly what the library declares: without optimisation, inlined functions come with it.
#if defined(__OPTIMIZE__) && defined(__x86_64__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__) && \
    !defined(__SANITIZE_THREAD__)
constexpr bool EXPORTS_ARE_EXACT = true;
#else
constexpr bool EXPORTS_ARE_EXACT = false;
#endif

TEST(FaultTable, HasARowForEachExportedFunction) {
    if (!EXPORTS_ARE_EXACT) GTEST_SKIP() << "this build exports inlined functions, too";
    std::map<std::string, int> rows;
    for (const Operation& operation : operations()) {
        for (const std::string& symbol : operation.symbols) rows[symbol] = 0;
    }
    for (const std::string& symbol : librarySymbols(true)) {
        if (symbol.find("non-virtual thunk") == 0) continue;
        const std::string function = shortened(symbol);
        auto row = rows.find(function);
        if (row == rows.end()) row = rows.find(function.substr(0, function.find('(')));
        EXPECT_TRUE(row != rows.end()) << "no row runs \"" << function << '"';
        if (row != rows.end()) ++row->second;
    }
    for (const auto& row : rows) EXPECT_GT(row.second, 0) << "not exported: \"" << row.first << '"';
}

TEST(FaultTable, NamesEachRowOnce) {
    std::set<std::string> names;
    for (const Operation& operation : operations()) EXPECT_TRUE(names.insert(operation.name).second) << operation.name;
}

// These allocate behind the back of `new`, and the tests would not see them.
TEST(FaultTable, SeesEachAllocation) {
    const std::set<std::string> symbols = librarySymbols(false);
    EXPECT_FALSE(symbols.empty());
    for (const char* const name : {"realloc", "strdup", "aligned_alloc", "posix_memalign"}) {
        for (const std::string& symbol : symbols) {
            EXPECT_FALSE(symbol == name || symbol.find(std::string(name) + '@') == 0) << symbol;
        }
    }
}

} // namespace
