// ASCIITable: a set of ASCII characters, asked by one array read.
//
// Takes 1 KiB: keep one for as long as it is used and pass it by reference. Threads: constant once it is built.
#pragma once

#include "Vorn/Config.h"

namespace Vorn {

/// A set of ASCII characters. The answer is a mask, -1 for a member and 0 otherwise, for use in bit operations and
/// tests.
class VORN_API ASCIITable {
public:
    /// The set of the characters of a terminated list.
    /// Raises `Exception<1>` with "list : Null list!", "list[0] : Empty list!" or, for a byte above 127,
    /// "c <= 127 : ASCII only!".
    ASCIITable(const signed char* list);

    ASCIITable(const ASCIITable&) = default;
    ASCIITable& operator=(const ASCIITable&) = default;

    /// -1 if `c` is in the set, else 0, also for every byte above 127.
    int check(signed char c) const noexcept { return m_table[static_cast<unsigned char>(c)]; }
    int operator()(signed char c) const noexcept { return check(c); }
    int operator[](signed char c) const noexcept { return check(c); }

    /// Line feed, carriage return, blank and tab.
    static const ASCIITable& getSpaceTable() noexcept { return s_spaceTable; }

    /// The same set; ready at load.
    static const ASCIITable s_spaceTable;

private:
    struct Checked {};

    // A set of characters that are known to be ASCII.
    constexpr ASCIITable(Checked, const char* list) noexcept : m_table{} {
        for (; *list; ++list) m_table[static_cast<unsigned char>(*list)] = -1;
    }

    int m_table[256]; // -1 or 0; the upper half stays 0
};

} // namespace Vorn
