/// @file
/// FormatFmt: texts and geometry in the format strings of the fmt library. It needs that library (Debian: libfmt-dev)
/// and is not part of Vorn/Vorn.h.
///
///     const std::string line = fmt::format("{:>12} at {:.1f}", name, position);   // "        door at (1.5, -2.0)"
///
/// String, UTF8String, TextView and Name have the format of a string: [[fill]align][width][.precision][s]. Width and
/// precision count code points. The text is written in UTF-8, U+0000 as a zero byte and malformed units as U+FFFD.
///
/// XYPair, Vector2, ComplexAngle, Rect, FloatRect and Matrix3 are written as "(1, 2)", the rows of a matrix in
/// parentheses of their own, with the format of a number for each component.
///
/// Cost: as for a std::string_view; nothing is allocated for a text.
///
/// Threads: the formatters use their arguments only.
#pragma once

#include "Vorn/Private/TextFormat.h"

#include <fmt/format.h>

namespace VornPrivate {

struct FmtLibrary {
    template <class T>
    using Formatter = fmt::formatter<T, char>;

    [[noreturn]] static void fail(const char* text) { throw fmt::format_error(text); }

    template <class Visitor, class Context>
    static unsigned int visit(Visitor visitor, Context& context, int id) {
        return fmt::visit_format_arg(visitor, context.arg(id));
    }
};

} // namespace VornPrivate

VORN_PRIVATE_FORMATTERS(fmt, VornPrivate::FmtLibrary)
