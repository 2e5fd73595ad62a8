// One text as all kinds of texts that operations of text take, and the code points of any text.
#pragma once

#include "Support/Texts.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/MakeString.h"
#include "Vorn/Text/TextView.h"

#include <string>
#include <type_traits>

inline Codes codesOf(Vorn::TextView text) {
    Codes codes;
    for (const unsigned int code : Vorn::codePoints(text)) codes.push_back(code);
    return codes;
}

/// Calls `f` with a text in each form and its name: strings and views in both encodings, and U+0000 as the byte 0.
template <class F>
void forEachForm(const Codes& codes, F f) {
    const std::string bytes = utf8Of(codes);
    const UTF16Text units = utf16Of(codes);
    std::string zeros;
    for (const unsigned int code : codes) {
        if (code == 0)
            zeros.push_back('\0');
        else
            appendUTF8(zeros, code);
    }
    const Vorn::String inUTF8 = Vorn::makeString(bytes);
    const Vorn::String inUTF16 = Vorn::makeString(units);
    const Vorn::UTF8String edited = inUTF8;
    const Vorn::TextView view = bytes;
    f(inUTF8, "String in UTF-8");
    f(inUTF16, "String in UTF-16");
    f(edited, "UTF8String");
    f(view, "view of UTF-8");
    f(zeros, "std::string with zero bytes");
    f(std::as_const(units), "UTF-16 text");
}
