#include "Vorn/String/ASCIITable.h"

#include "Vorn/Assert.h"

namespace Vorn {

constinit const ASCIITable ASCIITable::s_spaceTable(Checked(), "\n\r \t");

ASCIITable::ASCIITable(const signed char* list) {
    VORN_ASSERT(list, "Null list!");
    VORN_ASSERT(list[0], "Empty list!");
    for (int& entry : m_table) entry = 0;
    for (; *list; ++list) {
        const unsigned int c =
            static_cast<unsigned int>(*list); // a byte above 127 is negative and becomes a large value
        VORN_ASSERT(c <= 127, "ASCII only!");
        m_table[c] = -1;
    }
}

} // namespace Vorn
