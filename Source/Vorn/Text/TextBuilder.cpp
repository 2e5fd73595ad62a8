#include "Vorn/Text/TextBuilder.h"

#include "TextStore.h"
#include "Vorn/Assert.h"
#include "Vorn/Private/TextDecoding.h"

#include <utility>

namespace Vorn {

using namespace VornPrivate;

unsigned char TextItem::writeCharacter(char32_t c, char* units) {
    if (!isCharacter(c)) VORN_THROW(E::UNICODE, "Invalid Unicode character!");
    auto* const bytes = reinterpret_cast<unsigned char*>(units);
    return static_cast<unsigned char>(encodeForString(bytes, c) - bytes);
}

TextBuilder::TextBuilder(TextBuilder&& other) noexcept : m_store(std::exchange(other.m_store, {})) {}

TextBuilder& TextBuilder::operator=(TextBuilder&& other) noexcept {
    if (this == &other) return *this;
    release(m_store);
    m_store = std::exchange(other.m_store, {});
    return *this;
}

TextBuilder::~TextBuilder() { release(m_store); }

void TextBuilder::reserve(unsigned int length) { VornPrivate::reserve(m_store, length); }

namespace {

// The encoding of a text with more items: UTF-16 if all texts are in it. `hasText` is true if the text in front of them
// has one in `encoding`, and becomes true if there is a text among them.
TextEncoding encodingWith(const TextItem* items, std::size_t count, TextEncoding encoding, bool& hasText) {
    if (!hasText) encoding = TextEncoding::UTF8;
    for (std::size_t i = 0; i < count; ++i) {
        const TextView text = items[i].getText();
        if (!items[i].isText() || text.isEmpty()) continue;
        if (!hasText || text.isUTF8()) encoding = text.getEncoding();
        hasText = true;
    }
    return encoding;
}

void appendAll(TextStore& store, const TextItem* items, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) append(store, items[i].getText(), items[i].isValid());
}

} // namespace

void TextBuilder::appendItems(const TextItem* items, std::size_t count) {
    bool hasText = m_store.hasText;
    const TextEncoding encoding = encodingWith(items, count, m_store.encoding, hasText);
    if (encoding == m_store.encoding) {
        const unsigned int length = m_store.length;
        try {
            appendAll(m_store, items, count);
        } catch (...) {
            m_store.length = length;
            throw;
        }
    } else {
        OwnedTextStore changed;
        convertTo(changed, m_store, encoding);
        appendAll(changed, items, count);
        release(m_store);
        m_store = std::exchange(static_cast<TextStore&>(changed), {});
    }
    m_store.hasText = hasText;
}

String TextBuilder::build() const { return copyOf(m_store); }

String TextBuilder::take() { return VornPrivate::take(m_store); }

String TextJoining::concat(const TextItem* items, std::size_t count) {
    OwnedTextStore store;
    store.encoding = encodingWith(items, count, TextEncoding::UTF8, store.hasText);
    std::uint64_t length = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const TextView text = items[i].getText();
        const bool isSame = text.getEncoding() == store.encoding && items[i].isValid();
        length += isSame ? text.getLength() : measure(text, store.encoding);
    }
    VornPrivate::reserve(store, length);
    appendAll(store, items, count);
    return VornPrivate::take(store);
}

} // namespace Vorn
