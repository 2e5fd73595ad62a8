// Each line with an expectation gives a warning with its text, unless warnings are switched off for the program or with
// VORN_ALLOW for the place. All other lines give none.
// clang-format off
#include "Vorn/Vorn.h"

#include <string>

#ifdef VORN_ALLOW
VORN_ALLOW_SURPRISES_BEGIN
#endif

using namespace Vorn;

void isTrue(bool) {}

void call(String s, String t, UTF8String u, const StringData& data, const std::string& literal, std::string out, char (&chars)[8],
          unsigned char (&bytes)[8], UTF16Char (&units)[8], unsigned int count) {
    const signed char* const needle = reinterpret_cast<const signed char*>(bytes);
    s = "text";
    u = "text";
    u = String("text");
    isTrue(s == t);
    s = literal.c_str(); // expect: copies nothing: the text must outlive the string; use makeString(text)
    s = chars; // expect: copies nothing: the text must outlive the string; use makeString(text)
    u = literal.c_str(); // expect: copies nothing: the text must outlive the string; use makeString(text)
    u = chars; // expect: copies nothing: the text must outlive the string; use makeString(text)
    const String copy(literal); // expect: never frees its copy; use makeString(text)
    s += t; // expect: keeps only half of a text that is held in UTF-16; use a + b, or concat(a, b)
    s.copyTo(out); // expect: leaves U+0000 as the bytes 0xC0 0x80; use toUTF8(text)
    s.getUnicodeLength(); // expect: throws for supplementary characters if their UTF-16 was built from UTF-8; use codePointCount(text)
    s.getUnicodeCharAt(0); // expect: finds no character behind a surrogate pair in UTF-16; use codePointAt(text, n)
    s.equals("a"); // expect: compares with ASCII only and throws for an empty text; use equals(text, other)
    s.equals(needle); // expect: compares with ASCII only and throws for an empty text; use equals(text, other)
    s.startsWith("a"); // expect: compares with ASCII only and throws for an empty needle; use startsWith(text, needle)
    s.startsWith(needle); // expect: compares with ASCII only and throws for an empty needle; use startsWith(text, needle)
    s.endsWith("a"); // expect: returns true if the text does NOT end so; use endsWith(text, needle)
    s.endsWith(needle); // expect: returns true if the text does NOT end so; use endsWith(text, needle)
    s.contains("a"); // expect: searches all offsets only in a terminated UTF-8 text; use contains(text, needle)
    s.contains(needle); // expect: searches all offsets only in a terminated UTF-8 text; use contains(text, needle)
    isTrue(s < t); // expect: does not order by code point; use compare(a, b), or CodePointLess in containers
    isTrue(s > t); // expect: does not order by code point; use compare(a, b), or CodePointLess in containers
    isTrue(s <= t); // expect: does not order by code point; use compare(a, b), or CodePointLess in containers
    isTrue(s >= t); // expect: does not order by code point; use compare(a, b), or CodePointLess in containers
    data.copyTo(out); // expect: leaves U+0000 as the bytes 0xC0 0x80; use toUTF8(text)
    data.getUnicodeLength(); // expect: throws for supplementary characters if their UTF-16 was built from UTF-8; use codePointCount(text)
    data.getUnicodeCharAt(0); // expect: finds no character behind a surrogate pair in UTF-16; use codePointAt(text, n)
    data.equals(needle); // expect: compares with ASCII only and throws for an empty text; use equals(text, other)
    data.startsWith(needle); // expect: compares with ASCII only and throws for an empty needle; use startsWith(text, needle)
    data.endsWith(needle); // expect: returns true if the text does NOT end so; use endsWith(text, needle)
    data.contains(needle); // expect: searches all offsets only in a terminated UTF-8 text; use contains(text, needle)
    data.copyToUTF8(bytes, 8); // expect: can write behind `capacity`, and converts some texts wrongly; use toUTF8(text, dest, capacity)
    data.copyToUTF16(units, 8); // expect: converts supplementary characters wrongly; use toUTF16(text, dest, capacity)
    data.substr<unsigned char>(0, 1); // expect: throws or truncates if a part in UTF-8 does not end with ASCII; use substring(text, offset, length)
    isTrue(data < data); // expect: does not order by code point; use compare(a, b), or CodePointLess in containers
    u.previous(1); // expect: fails behind a character of four bytes; use codePoints(text) and its iterators
    u.skip("a"); // expect: skips repetitions of the whole text; to skip characters of a set use skip(ASCIITable)
    u.skip(s); // expect: skips repetitions of the whole text; to skip characters of a set use skip(ASCIITable)
    u.match("a"); // expect: returns the index itself, not the end of the match; add the length of the match
    u.match(s); // expect: returns the index itself, not the end of the match; add the length of the match
    u.match(ASCIITable(needle)); // expect: returns the index itself, not the end of the match; add the length of the match
    u.reserve(1); // expect: does not make later edits cheaper; collect long texts in a TextBuilder
    u.appendDecimal(1); // expect: appends zero bytes for some numbers, such as 100000; use append(toText(value))
    parseInt<int>(bytes); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseInt<int>(chars); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseInt<int>(s); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUInt<unsigned int>(bytes); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUInt<unsigned int>(chars); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUInt<unsigned int>(s); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseHex<int>(bytes); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseHex<int>(chars); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseHex<int>(s); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUHex<unsigned int>(bytes); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUHex<unsigned int>(chars); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUHex<unsigned int>(s); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseDec<int>(bytes); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseDec<int>(chars); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseDec<int>(s); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUDec<unsigned int>(bytes); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUDec<unsigned int>(chars); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseUDec<unsigned int>(s); // expect: reads text behind `length`, ignores what follows the number and wraps large values; use parse<T>(text)
    parseFloat(bytes); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseFloat(units); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseFloat(chars, &count); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseFloat(s); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseDouble(bytes); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseDouble(units); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseDouble(chars, &count); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseDouble(s); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseReal(bytes); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseReal(units); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseReal(chars, &count); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    parseReal(s); // expect: is not the nearest value, and reads text behind `length`; use parse<float>(text) or parse<double>(text)
    measureDec(1); // expect: is one too small for some values; use writeText(buffer, capacity, value), or a buffer of 11 units
    measureDec(1u); // expect: is one too small for some values; use writeText(buffer, capacity, value), or a buffer of 11 units
    printDec(1, units, 8); // expect: prints only the first half of the text; use toText(value)
    printDec(1u, units, 8); // expect: prints only the first half of the text; use toText(value)
    printHex(1, HEX_WITHOUT_PREFIX, bytes, 8); // expect: as the sign if there is no prefix; use toText(value, 16)
    printHex(1, HEX_WITHOUT_PREFIX, units, 8); // expect: as the sign if there is no prefix; use toText(value, 16)
    printHex(1, HEX_WITHOUT_PREFIX, chars, 8); // expect: as the sign if there is no prefix; use toText(value, 16)
    measureDec(1.0f, 1, FLOAT_EXPONENT_NONE); // expect: measures in the global locale, which printDec does not use; call printDec with a null buffer
    measureDec(1.0, 1, FLOAT_EXPONENT_NONE); // expect: measures in the global locale, which printDec does not use; call printDec with a null buffer
    printDec(1.0, bytes, 8, 1, FLOAT_EXPONENT_AUTO); // expect: can write beyond the buffer, mostly hexadecimal text; use toText(value) or another layout
    printHex(1.0f, bytes, 8); // expect: throws for long negative values with an exponent below -99; use toHexText(value)
    printHex(1.0, bytes, 8); // expect: throws for long negative values with an exponent below -999, and prints large ones as NAN; use toHexText(value)
    printHex(1.0f, chars, 8); // expect: throws for long negative values with an exponent below -99; use toHexText(value)
    printHex(1.0, chars, 8); // expect: throws for long negative values with an exponent below -999, and prints large ones as NAN; use toHexText(value)
    printHex(1.0f, units, 8); // expect: prints only the first half of the exponent; use toHexText(value)
    printHex(1.0, units, 8); // expect: prints only the first half of the exponent; use toHexText(value)
}

void convert(unsigned char (&bytes)[8], UTF16Char (&units)[8], unsigned int count, StringDataBufferInfo& info, StringDataSubCharset charset) {
    UTF8::validUTF8Lead(bytes[0]); // expect: returns 0 for 0xF4, which begins characters; use codePoints(text)
    UTF8::getUTF8(units[0], units[1]); // expect: is wrong for pairs from 0xD8C0 on; use UTF8::getUTF8(UTF32::getUTF32Char(first, second))
    UTF8::getUTF8ForUTF16(count); // expect: is wrong for pairs from 0xD8C0 on; use UTF8::getUTF8(UTF32::getUTF32Char(first, second))
    UTF8::invalid3ByteUnicode(count); // expect: returns 0 for most overlong forms; use tryMakeString(text)
    UTF8::invalid4ByteUnicode(count); // expect: returns 0 for most overlong forms; use tryMakeString(text)
    UTF8::invalidUnicode(bytes[0], bytes[1], bytes[2]); // expect: returns 0 for most overlong forms; use tryMakeString(text)
    UTF16::getUCS2Char(count); // expect: sets the lowest bit of even codes; cast codes up to 0xFFFD, and for texts use toUTF16(text)
    UTF16::getUTF16(count); // expect: sets the lowest bit of even codes; use UTF16::getSurrogatePair(code), and cast codes up to 0xFFFD
    UTF16::getUTF16ForUTF8(count); // expect: is wrong for ASCII and for sequences of 4 bytes; use toUTF16(text)
    UTF16::getUTF16(bytes, count, 8); // expect: can read behind `length`; use codePoints(text)
    UTF32::getUTF32Char(units, count, 8); // expect: returns 0xFDEF for every surrogate pair; use codePoints(text)
    stringDataGetUTF16Length(bytes, info, charset); // expect: throws for a text with U+0000 and characters of 4 bytes; use toUTF16(text)
    stringDataGetUTF8Length(units, info, charset); // expect: is not always the number of bytes that the conversion writes; use toUTF8(text)
    stringDataConvertToUTF16(bytes, info, charset, info); // expect: drops the first surrogate of each character of 4 bytes; use toUTF16(text)
    stringDataConvertCreateUTF16(bytes, info, charset, 8); // expect: drops the first surrogate of each character of 4 bytes; use toUTF16(text)
    stringDataConvertCopyToUTF16(bytes, info, charset, units, 8); // expect: drops the first surrogate of each character of 4 bytes; use toUTF16(text)
    stringDataConvertToUTF8(units, info, charset, info); // expect: converts U+0000 and some supplementary characters wrongly; use toUTF8(text)
    stringDataConvertCreateUTF8(units, info, charset, 8); // expect: converts U+0000 and some supplementary characters wrongly; use toUTF8(text)
    stringDataConvertCopyToUTF8(units, info, charset, bytes, 8); // expect: converts U+0000 and some supplementary characters wrongly; use toUTF8(text)
    stringDataConvertToUTF8FromUCS2(bytes, 8, units, 2); // expect: can write behind `destLength`; use toUTF8(text, dest, capacity)
    stringDataConvertToUTF8FromUTF16(bytes, 8, units, 2); // expect: can write behind `destLength`; use toUTF8(text, dest, capacity)
}

void place(Vector2 v, ComplexAngle angle, FloatRect rect, Matrix3 matrix) {
    v = matrix * v;
    angle = angle.inverse();
    isTrue(v == Vector2::ZERO && overlaps(rect, rect));
    rect = anchored(rect, v, RectPoint::BOTTOM_RIGHT);
    v = v * matrix; // expect: ignores the translation of Matrix3::makeTransform; use matrix * vector
    v *= matrix; // expect: ignores the translation of Matrix3::makeTransform; use matrix * vector
    v.inverseLength(); // expect: has an error of 0.2 per cent; use 1.0f / exactLength(v)
    v.length(); // expect: has an error of 0.2 per cent; use exactLength(v)
    v.normalise(); // expect: has an error of 0.2 per cent; use v = exactNormalised(v)
    v.normalisedCopy(v); // expect: has an error of 0.2 per cent; use v = exactNormalised(v)
    v.normalisedCopy(); // expect: has an error of 0.2 per cent; use v = exactNormalised(v)
    v.isZero(); // expect: is true for lengths up to 0.000345; use v == Vector2::ZERO
    v.isZeroLength(); // expect: is true for lengths up to 0.000345; use v == Vector2::ZERO
    isTrue(v < v); // expect: is no order: the relation must hold for each component; compare one component
    isTrue(v > v); // expect: is no order: the relation must hold for each component; compare one component
    isTrue(v <= v); // expect: is no order: the relation must hold for each component; compare one component
    isTrue(v >= v); // expect: is no order: the relation must hold for each component; compare one component
    angle = -angle; // expect: adds half a turn; for the opposite rotation use inverse()
    rect.intersects(rect); // expect: is true for rectangles that are apart; use overlaps(a, b)
    rect.intersects(0.0f, 0.0f, 1.0f, 1.0f); // expect: is true for rectangles that are apart; use overlaps(a, b)
    isTrue(rect < rect); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect < v); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect < 1.0f); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect > rect); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect > v); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect > 1.0f); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect <= rect); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect <= v); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect <= 1.0f); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect >= rect); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect >= v); // expect: is no order: the relation must hold for each side; compare one side
    isTrue(rect >= 1.0f); // expect: is no order: the relation must hold for each side; compare one side
    rect = -rect; // expect: inverts the rectangle; use FloatRect(-right, -bottom, -left, -top)
    rect.reflect(0); // expect: reflects nothing; use reflectHorz() or reflectVert()
    rect = rect * matrix; // expect: is no bounding box if the matrix rotates; use boundsOf(rect, matrix)
    rect *= matrix; // expect: is no bounding box if the matrix rotates; use boundsOf(rect, matrix)
    rect.inflate(1.0f, 1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflate(1.0f, 1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflate(v, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflate(v, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflate(1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflate(1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(rect, 1.0f, 1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(rect, 1.0f, 1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(rect, v, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(rect, v, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(rect, 1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(rect, 1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(1.0f, 1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(1.0f, 1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(v, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(v, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.inflatedCopy(1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resize(1.0f, 1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resize(1.0f, 1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resize(v, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resize(v, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resize(1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resize(1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(rect, 1.0f, 1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(rect, 1.0f, 1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(rect, v, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(rect, v, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(rect, 1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(rect, 1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(1.0f, 1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(1.0f, 1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(v, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(v, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(1.0f, RectPoint::CENTRE, 0.0f, 0.0f); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    rect.resizedCopy(1.0f, RectPoint::CENTRE, v); // expect: moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)
    isTrue(matrix == matrix); // expect: compares bytes, so that 0.0 differs from -0.0; compare the elements
    isTrue(matrix != matrix); // expect: compares bytes, so that 0.0 differs from -0.0; compare the elements
    matrix.translate(v); // expect: adds to m[2] and m[5], without scale and rotation; use matrix * translation
    matrix.translate(1.0f, 2.0f); // expect: adds to m[2] and m[5], without scale and rotation; use matrix * translation
    matrix.translatedCopy(v); // expect: adds to m[2] and m[5], without scale and rotation; use matrix * translation
    matrix.translatedCopy(1.0f, 2.0f); // expect: adds to m[2] and m[5], without scale and rotation; use matrix * translation
    matrix.translatedCopy(matrix, v); // expect: adds to m[2] and m[5], without scale and rotation; use matrix * translation
    matrix.translatedCopy(matrix, 1.0f, 2.0f); // expect: adds to m[2] and m[5], without scale and rotation; use matrix * translation
    matrix.makeInverseTransform(angle, v, v); // expect: is not the inverse of makeTransform; use makeTransform(...), then inverseAtAnyScale()
    matrix.makeInverseTransform(1.0f, v, v); // expect: is not the inverse of makeTransform; use makeTransform(...), then inverseAtAnyScale()
}

void share(Delegate<void, void>& a, const Delegate<void, void>& b, Delegate<void>& c, const Delegate<void>& d, const SharedPtr<int>& pointer,
           const AllExceptions& exception, StringOwnerMap<unsigned char>& map) {
    c = d;
    a.rebind(b);
    a = b; // expect: counts references in reverse; use Delegate<void>, or a.rebind(b)
    pointer.makeThreadsafe(); // expect: does nothing; use makeSharedThreadsafe(...)
    exception.getLineString(); // expect: returns the name of the macro; use getLine()
    const StringOwnerMap<unsigned char> copyOfMap(map); // expect: copies no entry; pass a reference to the map
    map = copyOfMap; // expect: copies no entry; pass a reference to the map
}

class Source : public EventBase {
    void remove(const DelegatePOD& delegate) {
        removeDelegate(delegate); // expect: does not say whether it removed anything; use tryRemoveDelegate(...)
    }
};
