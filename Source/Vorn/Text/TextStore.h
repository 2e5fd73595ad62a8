/// @file
/// TextStore: the memory of texts that grow. Private.
#pragma once

#include "Vorn/Text/TextBuilder.h"

#include <cstdint>

namespace VornPrivate {

/// Frees the block.
void release(TextStore& store) noexcept;

/// Provides a capacity of `length` units. Throws `Exception<4>`: "length : text too long!".
void reserve(TextStore& store, std::uint64_t length);

/// The units that a valid text takes in an encoding, in the form of strings.
std::uint64_t measure(Vorn::TextView text, Vorn::TextEncoding encoding) noexcept;

/// Appends a text in the encoding of the store, in the form of strings. Throws `Exception<7>` as `makeString` does,
/// unless the text is known to be valid. If it throws, the text is as before.
void append(TextStore& store, Vorn::TextView text, bool isValid);

/// Writes the text of `store` in another encoding to `copy`, which is empty, with room for at least as many units.
void convertTo(TextStore& copy, const TextStore& store, Vorn::TextEncoding encoding);

/// A String of the text in a block of its size.
Vorn::String copyOf(const TextStore& store);

/// Passes the block on to a String, or returns a copy and keeps the block if a third of it or more is unused. The store
/// is empty afterwards, also if there is no memory for the record.
Vorn::String take(TextStore& store);

/// A store that frees its block.
struct OwnedTextStore : TextStore {
    OwnedTextStore() = default;
    ~OwnedTextStore() { release(*this); }
    OwnedTextStore(const OwnedTextStore&) = delete;
    OwnedTextStore& operator=(const OwnedTextStore&) = delete;
};

} // namespace VornPrivate
