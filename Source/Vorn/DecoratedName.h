/// @file
/// DecoratedName: the names of template instances in reports, built at compile time:
///
///     VornPrivate::Pair<int,&int __cdecl VornPrivate::getDecimal(unsigned int)>::parse
///
/// Types are spelled as below. A function that is a template argument appears with its result, name, template arguments
/// and parameters. An instance has the same name on every platform and with every compiler.
#pragma once

#include "Vorn/Private/ReportText.h"
#include "Vorn/Types.h"

#include <type_traits>

namespace VornPrivate {

/// Builds a decorated name from left to right.
class DecoratedName {
public:
    using Text = FixedText<420>;

    constexpr const Text& text() const { return m_text; }

    template <int Size>
    constexpr void add(const char (&literal)[Size]) {
        m_text.append(literal, Size - 1);
    }

    /// "16"
    template <int number>
    constexpr void addNumber() {
        static_assert(number >= 10 && number <= 99, "two digits");
        m_text.append(static_cast<char>('0' + number / 10));
        m_text.append(static_cast<char>('0' + number % 10));
    }

    /// "unsigned char const *"
    template <class T>
    constexpr void addType() {
        if constexpr (std::is_pointer_v<T>) {
            addType<std::remove_pointer_t<T>>();
            add(" *");
        } else if constexpr (std::is_reference_v<T>) {
            addType<std::remove_reference_t<T>>();
            add(" &");
        } else if constexpr (std::is_const_v<T>) {
            addType<std::remove_const_t<T>>();
            add(" const");
        } else if constexpr (std::is_same_v<T, Vorn::UTF16Char>) {
            add("wchar_t");
        } else if constexpr (std::is_same_v<T, char>) {
            add("char");
        } else if constexpr (std::is_same_v<T, signed char>) {
            add("signed char");
        } else {
            if constexpr (std::is_unsigned_v<T>) add("unsigned ");
            addInteger<std::make_signed_t<T>>();
        }
    }

    /// "int,unsigned char"
    template <class First, class... Others>
    constexpr void addTypes() {
        addType<First>();
        ((add(","), addType<Others>()), ...);
    }

    /// "&int __cdecl VornPrivate::getFirstValue<unsigned char>(unsigned char const *,unsigned int &,unsigned int)": a
    /// function of this namespace and its template arguments.
    template <auto function, class... TemplateArguments>
    constexpr void addFunction() {
        addSignature<TemplateArguments...>(function, nameOf<function>());
    }

private:
    template <class T>
    constexpr void addInteger() {
        if constexpr (sizeof(T) == 8) { // `long long`, and `long` where it is as wide
            add("__int64");
        } else if constexpr (std::is_same_v<T, long>) {
            add("long");
        } else if constexpr (std::is_same_v<T, int>) {
            add("int");
        } else if constexpr (std::is_same_v<T, short>) {
            add("short");
        } else {
            static_assert(sizeof(T) == 1);
            add("char");
        }
    }

    template <class... TemplateArguments, class Result, class... Parameters, std::size_t Capacity>
    constexpr void addSignature(Result (*)(Parameters...), const FixedText<Capacity>& name) {
        add("&");
        addType<Result>();
        add(" __cdecl VornPrivate::");
        m_text.append(name.characters, name.size);
        if constexpr (sizeof...(TemplateArguments) > 0) {
            add("<");
            addTypes<TemplateArguments...>();
            add(">");
        }
        add("(");
        addTypes<Parameters...>();
        add(")");
    }

    // The compilers describe this function as "... nameOf() [with auto function = VornPrivate::getDecimal]", possibly
    // with a sign or a bracket before the name. The name that is needed is the last one of this namespace.
    template <auto function>
    static constexpr auto nameOf() {
        constexpr int SIZE = sizeof(__PRETTY_FUNCTION__) - 1;
        const char* const description = __PRETTY_FUNCTION__;
        int name = 0;
        for (int i = 0; i < SIZE; ++i) {
            if (startsWith(description + i, "VornPrivate::")) name = i + 13;
        }
        FixedText<SIZE> result;
        while (isIdentifierCharacter(description[name])) result.append(description[name++]);
        return result;
    }

    Text m_text;
};

} // namespace VornPrivate
