#include "TextStore.h"

#include "ExactConversion.h"
#include "TextRecord.h"
#include "TextScan.h"
#include "Vorn/Assert.h"
#include "Vorn/TextBlock.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace VornPrivate {

using Vorn::String;
using Vorn::StringData;
using Vorn::TextEncoding;
using View = Vorn::TextView;
using Vorn::UTF16Char;

namespace {

constexpr unsigned int FIRST_CAPACITY = 128;

// Calls `f` with the block.
template <class F>
auto withBlock(const TextStore& store, F f) {
    return store.encoding == TextEncoding::UTF8 ? f(static_cast<unsigned char*>(store.block))
                                                : f(static_cast<UTF16Char*>(store.block));
}

View viewOf(const TextStore& store) {
    return withBlock(store, [&](auto* block) { return View(block, store.length); });
}

} // namespace

void release(TextStore& store) noexcept {
    withBlock(store, [](auto* block) { delete[] block; });
    store = {};
}

void reserve(TextStore& store, std::uint64_t length) {
    if (length > MAX_TEXT_LENGTH) VORN_THROW(Vorn::E::PARAMETER, "length : text too long!");
    if (length <= store.capacity) return;
    withBlock(store, [&](auto* old) {
        auto block = allocateText<std::remove_pointer_t<decltype(old)>>(length);
        if (store.length != 0) std::memcpy(block.get(), old, store.length * sizeof(*old));
        delete[] old;
        store.block = block.release();
    });
    store.capacity = static_cast<unsigned int>(length);
}

std::uint64_t measure(View text, TextEncoding encoding) noexcept {
    return withUnits(text, [&](const auto* units, unsigned int length) {
        return encoding == TextEncoding::UTF8 ? convertedLength<unsigned char, true>(units, length)
                                              : convertedLength<UTF16Char, true>(units, length);
    });
}

void append(TextStore& store, View text, bool isValid) {
    const unsigned int length = text.getLength();
    if (length == 0) return;
    if (isValid && text.getEncoding() == store.encoding && length <= store.capacity - store.length) {
        withUnits(text, [&](const auto* units, unsigned int count) {
            using CharType = std::remove_const_t<std::remove_pointer_t<decltype(units)>>;
            std::memcpy(static_cast<CharType*>(store.block) + store.length, units, count * sizeof(CharType));
        });
        store.length += length;
        return;
    }
    std::uint64_t added = length;
    bool isCopied = isValid;
    if (!isValid) {
        const TextScan scan = requireValid(text);
        added = scan.length;
        isCopied = scan.isSame;
    }
    if (text.getEncoding() != store.encoding) {
        added = measure(text, store.encoding);
        isCopied = false;
    }
    const std::uint64_t newLength = store.length + added;
    if (newLength > store.capacity) {
        const std::uint64_t grown = std::uint64_t(store.capacity) + store.capacity / 2;
        const std::uint64_t most = MAX_TEXT_LENGTH;
        reserve(store, std::max(newLength, std::min(std::max<std::uint64_t>(grown, FIRST_CAPACITY), most)));
    }
    withBlock(store, [&](auto* block) {
        auto* const dest = block + store.length;
        withUnits(text, [&](const auto* units, unsigned int count) {
            if (isCopied)
                std::memcpy(dest, units, count * sizeof(*units));
            else
                convertExactly<true>(units, count, dest);
        });
    });
    store.length = static_cast<unsigned int>(newLength);
}

void convertTo(TextStore& copy, const TextStore& store, TextEncoding encoding) {
    copy.encoding = encoding;
    if (store.length == 0) return;
    reserve(copy, std::max<std::uint64_t>(measure(viewOf(store), encoding), store.capacity));
    append(copy, viewOf(store), true);
}

String copyOf(const TextStore& store) {
    if (store.length == 0) return String(&StringData::s_emptyString);
    return withBlock(store, [&](auto* units) {
        using CharType = std::remove_pointer_t<decltype(units)>;
        auto block = allocateText<CharType>(store.length);
        std::memcpy(block.get(), units, store.length * sizeof(CharType));
        block[store.length] = 0;
        return String(RecordAccess::make(std::move(block), store.length, propertiesOf(units, store.length)));
    });
}

String take(TextStore& store) {
    if (store.length <= store.capacity - store.capacity / 3) {
        String copy = copyOf(store);
        store.length = 0;
        store.hasText = false;
        return copy;
    }
    return withBlock(store, [&](auto* units) {
        using CharType = std::remove_pointer_t<decltype(units)>;
        const unsigned int length = store.length;
        units[length] = 0;
        std::unique_ptr<CharType[]> block(units);
        store = {};
        return String(RecordAccess::make(std::move(block), length, propertiesOf(units, length)));
    });
}

} // namespace VornPrivate
