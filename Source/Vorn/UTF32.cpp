#include "Vorn/String/UTF32.h"

namespace Vorn {

unsigned int UTF32::getUTF32CharForUTF8(unsigned int seq) {
    if (VornPrivate::isPacked4Bytes(seq)) {
        return codeUnless(UTF8::invalid4ByteUnicode(seq),
                          VornPrivate::markOverlong(VornPrivate::unpackCode4(seq), seq < 0xF0908080));
    }
    if (VornPrivate::isPacked3Bytes(seq)) {
        // The threshold is that of code 0x100, not 0x800: the overlong forms from 0x100 on are specified to be
        // unmarked.
        return codeUnless(UTF8::invalid3ByteUnicode(seq),
                          VornPrivate::markOverlong(VornPrivate::unpackCode3(seq), seq < 0xE08480));
    }
    if ((seq & 0xE0C0) == 0xC080) return VornPrivate::markOverlong(VornPrivate::unpackCode2(seq), seq < 0xC280);
    VORN_INTERNAL_ASSERT(seq < 0x00000080, "invalid UTF-8 sequence!");
    return seq;
}

} // namespace Vorn
