#include "Vorn/String/StringOwnerMap.h"

namespace Vorn {

constinit const StringOwnerKey StringOwnerKey::s_emptyKey;
constinit const StringOwnerKey StringOwnerKey::s_deletedKey(nullptr, 0xFFFFFFFF);

StringOwnerAllocWrapperBase::~StringOwnerAllocWrapperBase() = default;

template class StringOwnerMap<unsigned char>;
template class StringOwnerMap<UTF16Char>;

} // namespace Vorn
