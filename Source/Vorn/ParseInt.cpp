#include "Vorn/ParseInt.h"

#include "Vorn/Assert.h"
#include "Vorn/DecoratedName.h"
#include "Vorn/ParseDigits.h"
#include "Vorn/String/String.h"
#include "Vorn/Types.h"

namespace VornPrivate {

template <class T, class CharType>
T parseUIntInline(const CharType* str, unsigned int* count, unsigned int length) {
    VORN_ASSERT(str, "null pointer!");
    VORN_ASSERT(length > 0, "empty string!");
    return parseAutoRadix<T>(str, count, length);
}

template <class T, class CharType>
T parseIntInline(const CharType* str, unsigned int* count, unsigned int length) {
    VORN_ASSERT(str, "null pointer!");
    VORN_ASSERT(length > 0, "empty string!");
    return parseSignedAutoRadix<T>(str, count, length);
}

template <class T, class CharType>
T parseUHexInline(const CharType* str, unsigned int* count, unsigned int length) {
    VORN_ASSERT(str, "null pointer!");
    VORN_ASSERT(length > 0, "empty string!");
    return parseHexadecimalDigits<T>(str, count, length);
}

template <class T, class CharType>
T parseUDecInline(const CharType* str, unsigned int* count, unsigned int length) {
    VORN_ASSERT(str, "null pointer!");
    VORN_ASSERT(length > 0, "empty string!");
    return parseDecimalDigits<T>(str, count, length);
}

/// The parser of signed numbers of one radix. Reports name it with all template arguments.
template <class T, class CharType, int radix, int (*getFirst)(const CharType*, unsigned int&, unsigned int),
          int (*getDigit)(unsigned int)>
struct ParseSignedNum {
    static constexpr DecoratedName::Text NAME = [] {
        DecoratedName name;
        name.add("VornPrivate::ParseSignedNum<");
        name.addTypes<T, CharType>();
        name.add(",");
        name.addNumber<radix>();
        name.add(",");
        name.addFunction<getFirst, CharType>();
        name.add(",");
        name.addFunction<getDigit>();
        name.add(">::parse");
        return name.text();
    }();

    static T parse(const CharType* str, unsigned int* count, unsigned int length) {
        VORN_ASSERT(str, "null pointer!", NAME);
        VORN_ASSERT(length > 0, "empty buffer!", NAME);
        return parseSignedDigits<T, CharType, radix, getFirst, getDigit>(str, count, length);
    }
};

template <class T, class CharType>
T parseHexInline(const CharType* str, unsigned int* count, unsigned int length) {
    return ParseSignedNum<T, CharType, 16, &getFirstHexaValue<CharType>, &getHexa>::parse(str, count, length);
}

template <class T, class CharType>
T parseDecInline(const CharType* str, unsigned int* count, unsigned int length) {
    return ParseSignedNum<T, CharType, 10, &getFirstValue<CharType>, &getDecimal>::parse(str, count, length);
}

/// The form of a parser for strings: reads the UTF-8 buffer, or the UTF-16 buffer if there is no other.
template <class T, T (*parse8)(const unsigned char*, unsigned int*, unsigned int),
          T (*parse16)(const Vorn::UTF16Char*, unsigned int*, unsigned int)>
struct ParseStrNum {
    static constexpr DecoratedName::Text NAME = [] {
        DecoratedName name;
        name.add("VornPrivate::ParseStrNum<");
        name.addType<T>();
        name.add(",");
        name.addFunction<parse8, T, unsigned char>();
        name.add(",");
        name.addFunction<parse16, T, Vorn::UTF16Char>();
        name.add(">::parse");
        return name.text();
    }();

    static T parse(const Vorn::String& str) {
        if (const Vorn::StringData* const data = str.getData()) {
            if (const unsigned char* const utf8 = data->getPrivateBuffer<unsigned char>())
                return parse8(utf8, nullptr, data->getBufferInfo<unsigned char>().m_length);
            if (const Vorn::UTF16Char* const utf16 = data->getPrivateBuffer<Vorn::UTF16Char>())
                return parse16(utf16, nullptr, data->getBufferInfo<Vorn::UTF16Char>().m_length);
        }
        VORN_THROW(Vorn::E::PARAMETER, "null string!", NAME);
    }
};

} // namespace VornPrivate

namespace Vorn {

template <class T, class CharType>
T parseInt(const CharType* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseIntInline<T>(str, count, length);
}

template <class T>
T parseInt(const String& str) {
    return VornPrivate::ParseStrNum<T, &VornPrivate::parseIntInline<T, unsigned char>,
                                    &VornPrivate::parseIntInline<T, UTF16Char>>::parse(str);
}

template <class T, class CharType>
T parseUInt(const CharType* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseUIntInline<T>(str, count, length);
}

template <class T>
T parseUInt(const String& str) {
    return VornPrivate::ParseStrNum<T, &VornPrivate::parseUIntInline<T, unsigned char>,
                                    &VornPrivate::parseUIntInline<T, UTF16Char>>::parse(str);
}

template <class T, class CharType>
T parseHex(const CharType* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseHexInline<T>(str, count, length);
}

template <class T>
T parseHex(const String& str) {
    return VornPrivate::ParseStrNum<T, &VornPrivate::parseHexInline<T, unsigned char>,
                                    &VornPrivate::parseHexInline<T, UTF16Char>>::parse(str);
}

template <class T, class CharType>
T parseUHex(const CharType* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseUHexInline<T>(str, count, length);
}

template <class T>
T parseUHex(const String& str) {
    return VornPrivate::ParseStrNum<T, &VornPrivate::parseUHexInline<T, unsigned char>,
                                    &VornPrivate::parseUHexInline<T, UTF16Char>>::parse(str);
}

template <class T, class CharType>
T parseDec(const CharType* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseDecInline<T>(str, count, length);
}

template <class T>
T parseDec(const String& str) {
    return VornPrivate::ParseStrNum<T, &VornPrivate::parseDecInline<T, unsigned char>,
                                    &VornPrivate::parseDecInline<T, UTF16Char>>::parse(str);
}

template <class T, class CharType>
T parseUDec(const CharType* str, unsigned int* count, unsigned int length) {
    return VornPrivate::parseUDecInline<T>(str, count, length);
}

template <class T>
T parseUDec(const String& str) {
    return VornPrivate::ParseStrNum<T, &VornPrivate::parseUDecInline<T, unsigned char>,
                                    &VornPrivate::parseUDecInline<T, UTF16Char>>::parse(str);
}

// All instances of the library. They include the fixed-width types, which are aliases of these types on every platform.

#define VORN_INSTANTIATE(parser, T)                                                \
    template VORN_API T parser(const unsigned char*, unsigned int*, unsigned int); \
    template VORN_API T parser(const UTF16Char*, unsigned int*, unsigned int);     \
    template VORN_API T parser(const String&);

#define VORN_INSTANTIATE_SIGNED(T) \
    VORN_INSTANTIATE(parseInt, T)  \
    VORN_INSTANTIATE(parseHex, T)  \
    VORN_INSTANTIATE(parseDec, T)

#define VORN_INSTANTIATE_UNSIGNED(T) \
    VORN_INSTANTIATE(parseUInt, T)   \
    VORN_INSTANTIATE(parseUHex, T)   \
    VORN_INSTANTIATE(parseUDec, T)

VORN_INSTANTIATE_SIGNED(char)
VORN_INSTANTIATE_SIGNED(signed char)
VORN_INSTANTIATE_SIGNED(short)
VORN_INSTANTIATE_SIGNED(int)
VORN_INSTANTIATE_SIGNED(long)
VORN_INSTANTIATE_SIGNED(long long)

VORN_INSTANTIATE_UNSIGNED(unsigned char)
VORN_INSTANTIATE_UNSIGNED(unsigned short)
VORN_INSTANTIATE_UNSIGNED(unsigned int)
VORN_INSTANTIATE_UNSIGNED(unsigned long)
VORN_INSTANTIATE_UNSIGNED(unsigned long long)

} // namespace Vorn
