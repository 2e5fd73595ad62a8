/// @file
/// FormatStd: texts and geometry in the format strings of std::format, where the standard library has it. The formats
/// are those of Vorn/Text/FormatFmt.h. It takes long to compile and is not part of Vorn/Vorn.h.
///
/// Cost: as for a std::string_view; nothing is allocated for a text.
///
/// Threads: the formatters use their arguments only.
#pragma once

#if __has_include(<version>)
#include <version>
#endif

#if defined(__cpp_lib_format)

#include "Vorn/Private/TextFormat.h"

#include <format>

namespace VornPrivate {

struct StdLibrary {
    template <class T>
    using Formatter = std::formatter<T, char>;

    [[noreturn]] static void fail(const char* text) { throw std::format_error(text); }

    template <class Visitor, class Context>
    static unsigned int visit(Visitor visitor, Context& context, int id) {
        return std::visit_format_arg(visitor, context.arg(static_cast<std::size_t>(id)));
    }
};

} // namespace VornPrivate

VORN_PRIVATE_FORMATTERS(std, VornPrivate::StdLibrary)

#endif
