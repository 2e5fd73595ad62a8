// A program far from the library's sources: it uses what is installed and says what goes wrong.
#include <Vorn/Vorn.h>

#include <cstring>
#include <exception>
#include <iostream>
#include <string>

#if defined(CONSUMER_OF_STATIC_LIBRARY) != defined(VORN_STATIC)
#error "VORN_STATIC must be defined for the static library, and only for that"
#endif

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
    if (holds) return;
    std::cerr << "failed: " << what << '\n';
    ++failures;
}

bool equal(const char* left, const char* right) { return left && std::strcmp(left, right) == 0; }

// Raises Exception<7> inside the shared library.
void readBadText() { Vorn::String("a lone trail byte \x80"); }

template <class Caught>
bool isCaughtAs() {
    try {
        readBadText();
    } catch (const Caught&) {
        return true;
    } catch (...) {
        return false;
    }
    return false;
}

std::string lastLog;

} // namespace

int main() {
    const Vorn::UTF16Char units[] = {0x0056, 0x00F6, 0x0072, 0x006E, 0};
    const Vorn::String name(units);
    expect(!name.isEmpty() && name.getCharset() == Vorn::STRING_DATA_UCS2, "a text is taken in");
    expect(equal(name.getCString(), "V\xC3\xB6rn"), "getCString gives UTF-8");
    expect(equal(Vorn::String().getCString(), ""), "a null string gives an empty text");
    expect(Vorn::String::getEmptyString().isEmpty(), "the library's own constants are reached");

    expect(isCaughtAs<Vorn::Exception<7>>(), "bad text is caught by its own type");
    expect(isCaughtAs<Vorn::AllExceptions>(), "bad text is caught as AllExceptions");
    expect(isCaughtAs<std::exception>(), "bad text is caught as std::exception");
    expect(!isCaughtAs<Vorn::Exception<2>>(), "bad text is no Exception<2>");

    Vorn::AllExceptions::setLogCallback([](const char* line) { lastLog = line; });
    try {
        readBadText();
    } catch (const std::exception& exception) {
        expect(lastLog == exception.what(), "the callback receives the report");
    }
    Vorn::AllExceptions::setLogCallback(nullptr);

    try {
        readBadText();
    } catch (const Vorn::AllExceptions& exception) {
        expect(equal(exception.getFile(), "Source/Vorn/StringDataHelper"), "a source is named from the repository");
        expect(equal(exception.getFunction(), "stringDataBufferScan"), "a report names the function");
        expect(equal(exception.getMessage(), "Unmatched trail UTF-8 byte detected!"), "a report says what is wrong");
    }

    try {
        Vorn::UTF8::getUTF8(units[0], units[1]);
        expect(false, "an installed header checks its arguments");
    } catch (const Vorn::Exception<2>& exception) {
        expect(equal(exception.getFile(), "Include/Vorn/String/UTF8"), "a header is named from the repository");
        expect(equal(exception.getFunction(), "Vorn::UTF8::getUTF8"), "a report names the member");
    }
    return failures == 0 ? 0 : 1;
}
