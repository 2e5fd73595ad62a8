// TextStore, tryAppend: short plain texts, characters and numbers without calls. Support of Vorn/Text/TextBuilder.h;
// not for direct use.
#pragma once

#include "Vorn/Private/TextPart.h"
#include "Vorn/Text/TextNumbers.h"
#include "Vorn/Text/TextView.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace VornPrivate {

/// A text that grows. A block of a capacity of 0 does not exist; another has room for a terminator behind it.
struct TextStore {
    void* block = nullptr; // of `unsigned char` or UTF16Char
    unsigned int length = 0;
    unsigned int capacity = 0;
    Vorn::TextEncoding encoding = Vorn::TextEncoding::UTF8;
    bool hasText = false; // whether the encoding is that of a text

    unsigned char* getUTF8End() const noexcept { return static_cast<unsigned char*>(block) + length; }
    bool hasRoomInUTF8(unsigned int count) const noexcept {
        return encoding == Vorn::TextEncoding::UTF8 && count <= capacity - length;
    }
};

/// Copies bytes in words that overlap. Returns true if all of them are 0x01 to 0x7F.
inline bool copyPlain(unsigned char* dest, const unsigned char* text, unsigned int length) noexcept {
    std::uint64_t odd = 0;
    const auto copyWord = [&](auto word, unsigned int at) {
        constexpr auto ONES = ~decltype(word)(0) / 0xFF;
        std::memcpy(&word, text + at, sizeof(word));
        std::memcpy(dest + at, &word, sizeof(word));
        odd |= ((word - ONES) | word) & (ONES << 7);
    };
    if (length >= sizeof(std::uint64_t)) {
        for (unsigned int i = 0; i + sizeof(std::uint64_t) < length; i += sizeof(std::uint64_t))
            copyWord(std::uint64_t(), i);
        copyWord(std::uint64_t(), length - static_cast<unsigned int>(sizeof(std::uint64_t)));
    } else if (length >= sizeof(std::uint32_t)) {
        copyWord(std::uint32_t(), 0);
        copyWord(std::uint32_t(), length - static_cast<unsigned int>(sizeof(std::uint32_t)));
    } else {
        for (unsigned int i = 0; i < length; ++i) {
            const unsigned int byte = text[i];
            dest[i] = text[i];
            odd |= ((byte - 1) | byte) & 0x80;
        }
    }
    return odd == 0;
}

/// Appends a text in UTF-8 if there is room, and if it is valid or short and plain ASCII. Otherwise returns false.
inline bool tryAppendText(TextStore& store, Vorn::TextView text, bool isValid) noexcept {
    constexpr unsigned int MOST = 256;
    const unsigned int length = text.getLength();
    if (length == 0) return true;
    if (!text.isUTF8() || !store.hasRoomInUTF8(length)) return false;
    if (length <= MOST) {
        if (!copyPlain(store.getUTF8End(), text.getUTF8(), length) && !isValid) return false;
    } else {
        if (!isValid) return false;
        std::memcpy(store.getUTF8End(), text.getUTF8(), length);
    }
    store.length += length;
    store.hasText = true;
    return true;
}

/// Appends an item if it is plain and there is room. Otherwise returns false.
template <class Item>
bool tryAppend(TextStore& store, const Item& item) {
    if constexpr (std::is_same_v<Item, char> || std::is_same_v<Item, char16_t> || std::is_same_v<Item, char32_t>) {
        const auto c = static_cast<char32_t>(item);
        if (c - 1 >= 0x7F || !store.hasRoomInUTF8(1)) return false;
        *store.getUTF8End() = static_cast<unsigned char>(c);
        ++store.length;
        return true;
    } else if constexpr (IS_NUMBER<Item>) {
        constexpr unsigned int MOST = Vorn::NumberText::CAPACITY;
        if (!store.hasRoomInUTF8(MOST)) return false;
        char* const end = reinterpret_cast<char*>(store.getUTF8End());
        store.length += Vorn::NumberText::printAny(end, MOST, item, 10);
        return true;
    } else if constexpr (std::is_convertible_v<const Item&, Vorn::TextView>) {
        return tryAppendText(store, item, IS_STRING<Item>);
    } else {
        return false;
    }
}

} // namespace VornPrivate
