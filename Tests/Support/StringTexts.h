// Strings over texts, and the texts of records.
#pragma once

#include "Support/Texts.h"
#include "Vorn/String/String.h"

inline std::string textOf(const Vorn::StringData& data) {
    std::string text;
    data.copyTo(text);
    return text;
}

inline UTF16Text unitsOf(const Vorn::StringData& data) {
    return UTF16Text(data.getPrivateBuffer<Vorn::UTF16Char>(), data.getBufferInfo<Vorn::UTF16Char>().m_length);
}

// A string over a terminated text, which must outlive it.
inline Vorn::String over(const std::string& text) { return Vorn::String(bytesOf(text), lengthOf(text) + 1); }
inline Vorn::String over(const UTF16Text& text) { return Vorn::String(text.c_str(), lengthOf(text) + 1); }
