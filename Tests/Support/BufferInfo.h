// Records for functions that read the length of one and nothing else.
#pragma once

#include "Vorn/String/StringDataTypes.h"

#include <cstddef>

/// A record of this length. Its other members hold nonsense that nobody may look at or, in a target, touch.
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

/// True if every member but length, type and terminated flag is as `infoOf` made it.
inline bool restIsUntouched(const Vorn::StringDataBufferInfo& info) {
    return info.m_previous == reinterpret_cast<Vorn::StringData*>(8) &&
           info.m_next == reinterpret_cast<Vorn::StringData*>(16) && info.m_offset == 0xABCDEF;
}

/// True if the record is wholly as `infoOf` made it.
inline bool isUntouched(const Vorn::StringDataBufferInfo& info, std::size_t length) {
    return restIsUntouched(info) && info.m_length == length && info.m_allocationType == Vorn::STRING_DATA_STATIC &&
           info.m_nullTerminated == 0;
}
