#include "Vorn/Text/CharacterSet.h"

#include "Vorn/Private/TextDecoding.h"

#include <bit>

namespace Vorn {

void CharacterSet::addChecked(UTF32Char c) {
    if (!VornPrivate::isCharacter(c)) VORN_THROW(E::UNICODE, "Invalid Unicode character!");
    add(c);
}

UTF32Char CharacterSet::getSingle() const noexcept {
    const int count = std::popcount(m_ascii[0]) + std::popcount(m_ascii[1]);
    if (m_hasWhiteSpace || static_cast<std::size_t>(count) + m_others.size() != 1) return NOT_FOUND;
    if (count == 0) return m_others[0];
    const bool isLow = m_ascii[0] != 0;
    return static_cast<UTF32Char>(isLow ? std::countr_zero(m_ascii[0]) : 64 + std::countr_zero(m_ascii[1]));
}

CharacterSet anyOf(TextView characters) {
    CharacterSet set;
    for (unsigned int i = 0; i < characters.getLength();) {
        const VornPrivate::DecodedCharacter character = VornPrivate::decodeAt(characters, i);
        if (!character.isMalformed && !set.contains(character.code)) set.add(character.code);
        i += character.units;
    }
    return set;
}

} // namespace Vorn
