// Buffer descriptions for functions that read only the length of one.
#pragma once

#include "Vorn/String/StringDataTypes.h"

#include <cstddef>

/// A description of this length. Its other members have arbitrary values that must not be read or, in a target,
/// changed.
inline Vorn::StringDataBufferInfo infoOf(std::size_t length) {
    Vorn::StringDataBufferInfo info{};
    info.m_previous = reinterpret_cast<Vorn::StringData*>(8);
    info.m_next = reinterpret_cast<Vorn::StringData*>(16);
    info.m_length = static_cast<unsigned int>(length);
    info.m_offset = 0xABCDEF;
    info.m_allocationType = Vorn::STRING_DATA_STATIC;
    info.m_nullTerminated = 0;
    return info;
}

/// True if every member except length, type and terminated flag is unchanged since `infoOf`.
inline bool restIsUntouched(const Vorn::StringDataBufferInfo& info) {
    return info.m_previous == reinterpret_cast<Vorn::StringData*>(8) &&
           info.m_next == reinterpret_cast<Vorn::StringData*>(16) && info.m_offset == 0xABCDEF;
}

/// True if the description is unchanged since `infoOf`.
inline bool isUntouched(const Vorn::StringDataBufferInfo& info, std::size_t length) {
    return restIsUntouched(info) && info.m_length == length && info.m_allocationType == Vorn::STRING_DATA_STATIC &&
           info.m_nullTerminated == 0;
}
