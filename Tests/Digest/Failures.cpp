// Failures: number, message, function and type; and the texts of ExceptionString. Paths and lines are left out.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/ExceptionString.h"
#include "Vorn/FloatRect.h"
#include "Vorn/Geometry.h"
#include "Vorn/ParseFloat.h"
#include "Vorn/ParseInt.h"
#include "Vorn/String/ASCIITable.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/CharacterSet.h"
#include "Vorn/Text/TextBuilder.h"
#include "Vorn/Text/TextChange.h"
#include "Vorn/Text/TextPieces.h"

using Vorn::ExceptionString;
using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::UTF8String;
using Vorn::Vector2;

void digestFailures(Digest& digest) {
    const unsigned char* const noBytes = nullptr;
    const Vorn::UTF16Char* const noUnits = nullptr;
    digest.addOutcome([&] { return Vorn::parseInt<int>(noBytes); });
    digest.addOutcome([&] { return Vorn::parseInt<int>(noUnits); });
    digest.addOutcome([&] { return Vorn::parseDec<short>(reinterpret_cast<const unsigned char*>("1"), nullptr, 0); });
    digest.addOutcome(
        [&] { return Vorn::parseUHex<unsigned char>(reinterpret_cast<const unsigned char*>("1"), nullptr, 0); });
    digest.addOutcome([&] { return Vorn::parseFloat(noBytes); });
    digest.addOutcome([&] { return Vorn::parseDouble(noUnits); });
    digest.addOutcome([&] { return Vorn::String(noBytes, 3u); });
    digest.addOutcome([&] { return Vorn::String("caf\xC3"); });
    digest.addOutcome([&] { return Vorn::ASCIITable(nullptr).check('a'); });
    digest.addOutcome([&] { return Vorn::ASCIITable(reinterpret_cast<const signed char*>("\xC3")).check('a'); });

    const UTF8String text(Vorn::makeString("gr\u00FC\u00DFe"));
    digest.addOutcome([&] { return UTF8String(text).insert('x', 3); });
    digest.addOutcome([&] { return UTF8String(text).insert('x', 99); });
    digest.addOutcome([&] { return UTF8String(text).replace('x', 2, 1); });
    digest.addOutcome([&] { return UTF8String(text).append(0x110000u); });
    digest.addOutcome([&] { return UTF8String().append('x'); });
    digest.addOutcome([&] { return text.find("", 0); });
    digest.addOutcome([&] { return text.find('x', 99); });
    digest.addOutcome([&] { return text.get(99); });

    digest.addOutcome([&] { return Vorn::makeString("\xF5"); });
    digest.addOutcome([&] { return Vorn::makeString(std::u16string(1, char16_t(0xD800))); });
    digest.addOutcome([&] { return Vorn::makeString(std::u32string(1, char32_t(0xDFFF))); });
    digest.addOutcome([&] { return Vorn::slice(text, 3); });
    digest.addOutcome([&] { return Vorn::slice(text, 99); });
    digest.addOutcome([&] { return Vorn::replaceAll(text, "", "x"); });
    digest.addOutcome([&] { return Vorn::repeat(text, 0xFFFFFFFF); });
    digest.addOutcome([&] { return Vorn::concat("a\x80"); });
    digest.addOutcome([&] { return Vorn::padStart(text, 20, 0xD800); });

    digest.addOutcome([] { return (Vector2(1, 2) / 0.0f).x; });
    digest.addOutcome([] { return (Vector2(1, 2) / Vector2(1, 0)).x; });
    digest.addOutcome([] { return Vector2(1, 2)[2]; });
    digest.addOutcome([] { return (FloatRect(1, 2, 3, 4) / 0.0f).left; });
    digest.addOutcome([] { return (FloatRect(1, 2, 3, 4) % Vector2(0, 1)).left; });
    digest.addOutcome([] { return FloatRect(1, 2, 3, 4).resizedCopy(Vector2(1, 1), 0x55u, 0.0f, 0.0f).left; });
    digest.addOutcome([] { return FloatRect(1, 2, 3, 4).getSide(4); });
    digest.addOutcome([] { return Matrix3(1.0f).inversedCopy().m[0]; });
    digest.addOutcome([] { return Vorn::boundsOf(std::vector<Vector2>()).left; });

    const ExceptionString literal("a literal", 9), copied(std::string(40, 'x'), 0.0f);
    const ExceptionString joined(literal + ExceptionString(" and ", 5) + copied);
    digest.addAll(joined.getString(), ExceptionString(literal).getString());
    digest.addOutcome([&] { VORN_ASSERT(literal.getString() == nullptr, "made here!", "digestFailures"); });
}
