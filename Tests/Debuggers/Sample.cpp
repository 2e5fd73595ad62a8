// Values that gdb looks at; see Expected.txt.
#include <Vorn/Vorn.h>

#include <string>

namespace {

// gdb stops here and looks at the caller.
[[gnu::noinline]] void stopHere() { asm volatile(""); }

} // namespace

int main() {
    const Vorn::String nullString;
    const Vorn::String emptyString = Vorn::String::getEmptyString();
    const Vorn::String utf8("K\xC3\xB6ln \"am\" Rhein");
    const Vorn::String utf16(u"\u041A\u0451\u043B\u044C\u043D \U0001F600");
    const Vorn::String withNull("a\xC0\x80z");
    const Vorn::String part("unterminated", 5);
    const Vorn::StringData& record = *utf16.getData();

    const Vorn::ExceptionString nullText;
    const Vorn::ExceptionString literal("literal", 7);
    const Vorn::ExceptionString joined(literal + Vorn::ExceptionString(" joined", 7));

    stopHere();
    return static_cast<int>(nullText.size() + record.getCharset()) - 3 + (joined.isNull() || part.isNull());
}
