#include "Faults/Operation.h"
#include "Support/Texts.h"
#include "Vorn/String/ASCIITable.h"
#include "Vorn/String/UTF8String.h"

#include <memory>

namespace {

using Vorn::String;
using Vorn::UTF16Char;
using Vorn::UTF8String;

const std::string TEXT = "a text that is edited";
const UTF16Text WIDE = VORN_UTF16("a text that is edited");
const std::string ADDED = "more";
const std::string NEEDLE = "text?";
const UTF16Text WIDE_ADDED = VORN_UTF16("more");

String unterminated(const std::string& text) {
    return String(text.data(), lengthOf(text) - 1, Vorn::STRING_DATA_STATIC);
}

std::string contentOf(const String& string) { return string.getData() ? textOf(*string.getData()) : "(null)"; }

// Runs an edit on a string of its own, on one that shares its record, and on one that is held in UTF-16. If memory
// ends, the text is as before, and so are that of the string it is shared with and the operand.
enum class Start { OWN, SHARED, UTF16 };

template <class Edit>
void edit(Attempt& attempt, Start start, Edit&& run) {
    UTF8String string = start == Start::OWN ? UTF8String(newBlock<unsigned char>(TEXT + '\0'), lengthOf(TEXT) + 1,
                                                         Vorn::STRING_DATA_DYNAMIC)
                                            : UTF8String(start == Start::SHARED ? over(TEXT) : over(WIDE));
    const String other = start == Start::SHARED ? string : String();
    const String added = over(WIDE_ADDED);
    attempt([&] { run(string, added); },
            [&] {
                EXPECT_EQ(contentOf(string), TEXT);
                EXPECT_EQ(contentOf(added), ADDED);
            });
    if (start == Start::SHARED) {
        EXPECT_EQ(contentOf(other), TEXT);
    }
    EXPECT_EQ(added.getData()->getRefCount(), 1u);
}

// A text in a caller's buffer with a substring. The last two have a UTF-8 buffer of their own, too: without a
// substring, and with one.
enum class Borrowed { UTF8, UTF16, UTF16_WITH_UTF8, UTF16_WITH_SHARED_UTF8 };
enum class DestroyedFirst { SUBSTRINGS, PARENT };

// Runs an edit on a borrowed text. If memory ends, its text and its substrings are as before, in each order of
// destruction.
template <class Edit>
void editBorrowed(Attempt& attempt, Borrowed borrowed, DestroyedFirst first, Edit&& run) {
    auto bytes = callerBuffer<unsigned char>(TEXT);
    auto units = callerBuffer<UTF16Char>(TEXT);
    auto string = std::make_unique<UTF8String>(borrowed == Borrowed::UTF8 ? String(bytes.get(), lengthOf(TEXT))
                                                                          : String(units.get(), lengthOf(TEXT)));
    if (borrowed == Borrowed::UTF16_WITH_UTF8 || borrowed == Borrowed::UTF16_WITH_SHARED_UTF8) string->getBuffer();
    String narrow, wide;
    if (borrowed == Borrowed::UTF8 || borrowed == Borrowed::UTF16_WITH_SHARED_UTF8)
        narrow = String(string->getData()->substr<unsigned char>(2, 5));
    if (borrowed != Borrowed::UTF8) wide = String(string->getData()->substr<UTF16Char>(3, 7));
    const String added = over(WIDE_ADDED);
    bool hasFailed = false;
    attempt([&] { run(*string, added); }, [&] { hasFailed = true; });

    const auto expectSubstrings = [&] {
        if (!hasFailed) return;
        EXPECT_EQ(contentOf(narrow), narrow.isNull() ? "(null)" : TEXT.substr(2, 5));
        EXPECT_EQ(contentOf(wide), wide.isNull() ? "(null)" : TEXT.substr(3, 7));
    };
    expectSubstrings();
    if (first == DestroyedFirst::SUBSTRINGS) narrow = wide = String();
    if (hasFailed) {
        EXPECT_EQ(contentOf(*string), TEXT);
    }
    string.reset();
    bytes.reset();
    units.reset();
    expectSubstrings();
}

struct Edit {
    const char* name;
    std::vector<std::string> symbols;
    void (*run)(UTF8String& string, const String& added);
};

const Edit EDITS[] = {
    {"AppendCharacter",
     {"UTF8String::append(unsigned int)", "UTF8String::setChar", "UTF8String::getEditableBuffer"},
     [](UTF8String& s, const String&) { s.append(0x20ACu); }},
    {"AppendText", {"UTF8String::append(String)"}, [](UTF8String& s, const String& added) { s.append(added); }},
    {"AppendDecimal",
     {"UTF8String::appendDecimal(unsigned int)"},
     [](UTF8String& s, const String&) { s.appendDecimal(123); }},
    {"AppendHexaDecimal",
     {"UTF8String::appendHexaDecimal(unsigned int, HexWithPrefix)"},
     [](UTF8String& s, const String&) { s.appendHexaDecimal(123, Vorn::HEX_WITH_PREFIX); }},
    {"InsertCharacter",
     {"UTF8String::insert(unsigned int, int)", "UTF8String::moveTail"},
     [](UTF8String& s, const String&) { s.insert('x', 3); }},
    {"InsertText", {"UTF8String::insert(String, int)"}, [](UTF8String& s, const String& added) { s.insert(added, 3); }},
    {"ReplaceByCharacter",
     {"UTF8String::replace(unsigned int, int, unsigned int)"},
     [](UTF8String& s, const String&) { s.replace('x', 3, 1); }},
    {"ReplaceByText",
     {"UTF8String::replace(String, int, unsigned int)"},
     [](UTF8String& s, const String& added) { s.replace(added, 3, 1); }},
    {"Erase", {"UTF8String::erase(int, unsigned int)"}, [](UTF8String& s, const String&) { s.erase(3, 2); }},
    {"Reserve",
     {"UTF8String::reserve(unsigned int)", "StringData::rebuild", "StringData::detachSubstrings()",
      "UTF8String::provideCapacity", "UTF8String::clearCapacity"},
     [](UTF8String& s, const String&) { s.reserve(100); }},
    {"Join", {}, [](UTF8String& s, const String& added) { s += added; }},
};

template <std::size_t I, Start START>
void runEdit(Attempt& attempt) {
    edit(attempt, START, EDITS[I].run);
}

template <std::size_t I, Borrowed BORROWED, DestroyedFirst FIRST>
void runBorrowedEdit(Attempt& attempt) {
    editBorrowed(attempt, BORROWED, FIRST, EDITS[I].run);
}

template <std::size_t I, Borrowed BORROWED>
void addBorrowedEdits(std::vector<Operation>& rows, const std::string& name, Outcome outcome) {
    rows.push_back({name + "SubstringsFirst", outcome, {}, &runBorrowedEdit<I, BORROWED, DestroyedFirst::SUBSTRINGS>});
    rows.push_back({name + "ParentFirst", outcome, {}, &runBorrowedEdit<I, BORROWED, DestroyedFirst::PARENT>});
}

template <std::size_t I>
void addEdits(std::vector<Operation>& rows) {
    const std::string name = std::string("UTF8String_") + EDITS[I].name;
    const bool shortens = I == 6 || I == 8; // works in place in a string of its own
    rows.push_back(
        {name, shortens ? Outcome::ALLOCATES_NOTHING : Outcome::THROWS, EDITS[I].symbols, &runEdit<I, Start::OWN>});
    rows.push_back({name + "Shared", Outcome::THROWS, {}, &runEdit<I, Start::SHARED>});
    rows.push_back({name + "UTF16", Outcome::THROWS, {}, &runEdit<I, Start::UTF16>});
    addBorrowedEdits<I, Borrowed::UTF8>(rows, name + "BorrowedUTF8", Outcome::THROWS);
    addBorrowedEdits<I, Borrowed::UTF16>(rows, name + "BorrowedUTF16", Outcome::THROWS);
    const Outcome ofBoth = shortens ? Outcome::ALLOCATES_NOTHING : Outcome::THROWS;
    addBorrowedEdits<I, Borrowed::UTF16_WITH_UTF8>(rows, name + "BorrowedUTF16WithUTF8", ofBoth);
    addBorrowedEdits<I, Borrowed::UTF16_WITH_SHARED_UTF8>(rows, name + "BorrowedUTF16WithSharedUTF8", ofBoth);
    if constexpr (I + 1 < std::size(EDITS)) addEdits<I + 1>(rows);
}

// Runs a search or a step, which terminates the text and builds its UTF-8 form first.
template <class Search>
void search(Attempt& attempt, Search&& run) {
    static const Vorn::ASCIITable table(reinterpret_cast<const signed char*>("xt"));
    const UTF8String narrow(unterminated(TEXT)), wide(over(WIDE));
    const String needle(unterminated(NEEDLE)), wideNeedle(over(WIDE_ADDED));
    attempt(
        [&] {
            run(narrow, needle, table);
            run(wide, wideNeedle, table);
        },
        [&] {
            EXPECT_EQ(contentOf(narrow), TEXT.substr(0, TEXT.size() - 1));
            EXPECT_EQ(contentOf(wide), TEXT);
            EXPECT_EQ(contentOf(needle), "text");
            EXPECT_EQ(contentOf(wideNeedle), ADDED);
        });
    EXPECT_EQ(needle.getData()->getRefCount(), 1u);
    EXPECT_EQ(wideNeedle.getData()->getRefCount(), 1u);
}

} // namespace

std::vector<Operation> editOperations() {
    std::vector<Operation> rows = {
        {"UTF8String_Assign",
         Outcome::ALLOCATES_NOTHING,
         {"UTF8String::operator=(String const&)", "UTF8String::freeUncountedRecord"},
         [](Attempt& attempt) {
             const String other = over(TEXT);
             UTF8String string(over(WIDE));
             attempt([&] { string = other; });
         }},
        {"UTF8String_ReserveWithoutRecord",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             UTF8String string;
             attempt([&] { string.reserve(10); }, [&] { EXPECT_EQ(string.getData(), nullptr); });
         }},
        {"UTF8String_GetBuffer",
         Outcome::THROWS,
         {"UTF8String::getBuffer() const", "UTF8String::getLength() const", "UTF8String::measure"},
         [](Attempt& attempt) {
             search(attempt, [](const UTF8String& s, const String&, const Vorn::ASCIITable&) {
                 s.getBuffer();
                 s.getLength();
             });
         }},
        {"UTF8String_GetTerminatedBuffer",
         Outcome::THROWS,
         {"UTF8String::getTerminatedBuffer(int&) const", "UTF8String::startOf"},
         [](Attempt& attempt) {
             search(attempt, [](const UTF8String& s, const String&, const Vorn::ASCIITable&) {
                 int index = -1;
                 s.getTerminatedBuffer(index);
             });
         }},
        {"UTF8String_Steps",
         Outcome::THROWS,
         {"UTF8String::get(unsigned int) const", "UTF8String::next(unsigned int) const",
          "UTF8String::previous(unsigned int) const", "UTF8String::skipTrailBytes(unsigned char const*) const",
          "UTF8String::assertValidInsertIndex(int&) const"},
         [](Attempt& attempt) {
             search(attempt, [](const UTF8String& s, const String&, const Vorn::ASCIITable&) {
                 s.get(1);
                 s.next(1);
                 s.previous(1);
                 s.skipTrailBytes(bytesOf(TEXT));
                 int index = -1;
                 s.assertValidInsertIndex(index);
             });
         }},
        {"UTF8String_Find",
         Outcome::THROWS,
         {"UTF8String::find(ASCIITable const&, int) const", "UTF8String::find(String, int) const",
          "UTF8String::find(char const*, int) const", "UTF8String::find(unsigned int, int) const",
          "UTF8String::findBytes", "UTF8String::encode"},
         [](Attempt& attempt) {
             search(attempt, [](const UTF8String& s, const String& needle, const Vorn::ASCIITable& table) {
                 s.find(needle);
                 s.find("text");
                 s.find(0x20ACu);
                 s.find(table);
             });
         }},
        {"UTF8String_Skip",
         Outcome::THROWS,
         {"UTF8String::skip(ASCIITable const&, int) const", "UTF8String::skip(String, int) const",
          "UTF8String::skip(char const*, int) const", "UTF8String::skip(unsigned int, int) const",
          "UTF8String::skipBytes"},
         [](Attempt& attempt) {
             search(attempt, [](const UTF8String& s, const String& needle, const Vorn::ASCIITable& table) {
                 s.skip(needle);
                 s.skip("a");
                 s.skip(0x20ACu);
                 s.skip(table);
             });
         }},
        {"UTF8String_Match",
         Outcome::THROWS,
         {"UTF8String::match(ASCIITable const&, int) const", "UTF8String::match(String, int) const",
          "UTF8String::match(char const*, int) const", "UTF8String::matchBytes"},
         [](Attempt& attempt) {
             search(attempt, [](const UTF8String& s, const String& needle, const Vorn::ASCIITable& table) {
                 s.match(needle);
                 s.match("a");
                 s.match(table);
             });
         }},
    };
    addEdits<0>(rows);
    return rows;
}
