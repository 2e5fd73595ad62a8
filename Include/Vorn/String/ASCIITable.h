/// @file
/// ASCIITable: a set of ASCII characters, tested by one array access.
///
/// Cost: an object has 1 KiB. Keep it as long as it is needed and pass it by reference.
///
/// Threads: the object does not change after construction.
#pragma once

#include "Vorn/Config.h"

namespace Vorn {

/// A set of ASCII characters. A test returns a mask for bit operations: -1 for a member, else 0.
class VORN_API ASCIITable {
public:
    /// Builds the set of the characters of a terminated list.
    /// Throws `Exception<1>`: "list : Null list!", "list[0] : Empty list!" or, for a byte above 127, "c <= 127 : ASCII
    /// only!".
    ASCIITable(const signed char* list);

    ASCIITable(const ASCIITable&) = default;
    ASCIITable& operator=(const ASCIITable&) = default;

    /// Returns -1 if `c` is in the set, else 0; also 0 for every byte above 127.
    /// @{
    int check(signed char c) const noexcept { return m_table[static_cast<unsigned char>(c)]; }
    int operator()(signed char c) const noexcept { return check(c); }
    int operator[](signed char c) const noexcept { return check(c); }
    /// @}

    /// The set of line feed, carriage return, blank and tab.
    static const ASCIITable& getSpaceTable() noexcept { return s_spaceTable; }

    /// The set of `getSpaceTable`, initialised at compile time.
    static const ASCIITable s_spaceTable;

private:
    struct Checked {};

    // Builds a set at compile time from characters that are ASCII.
    constexpr ASCIITable(Checked, const char* list) noexcept : m_table{} {
        for (; *list; ++list) m_table[static_cast<unsigned char>(*list)] = -1;
    }

    int m_table[256]; // -1 or 0; the upper half stays 0
};

} // namespace Vorn
