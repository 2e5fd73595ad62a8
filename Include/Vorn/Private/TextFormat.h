// TextFormat: formatters of texts and geometry, which FormatFmt.h and FormatStd.h share. Support of these headers; not
// for direct use.
#pragma once

#include "Vorn/ComplexAngle.h"
#include "Vorn/FloatRect.h"
#include "Vorn/Matrix3.h"
#include "Vorn/Rect.h"
#include "Vorn/String/UTF8String.h"
#include "Vorn/Text/CodePoints.h"
#include "Vorn/Text/Name.h"
#include "Vorn/Text/TextConversion.h"
#include "Vorn/Text/TextView.h"
#include "Vorn/Vector2.h"
#include "Vorn/Vector2CornerRect.h"
#include "Vorn/XYPair.h"

#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

namespace VornPrivate {

/// A width or precision: a number, the number of an argument, or missing.
struct FormatCount {
    enum Kind : unsigned char { NONE, NUMBER, ARGUMENT };

    unsigned int value = 0;
    Kind kind = NONE;
};

/// The formatter of a text: [[fill]align][width][.precision][s], as for a std::string, with "{}" and "{n}" as width and
/// precision. Width and precision count code points. `Library` has the formatter of a std::string_view, `fail` and
/// `visit`.
template <class Library>
class TextFormat {
public:
    template <class Context>
    constexpr auto parse(Context& context) {
        auto at = context.begin();
        const auto end = context.end();
        const auto isAlign = [](char c) { return c == '<' || c == '>' || c == '^'; };
        if (at != end && *at != '}') {
            const std::ptrdiff_t size = sizeOfCharacter(*at);
            if (end - at > size && isAlign(at[size])) {
                if (*at == '{') Library::fail("invalid fill character");
                m_fillSize = static_cast<unsigned char>(size);
                for (std::ptrdiff_t i = 0; i < size; ++i) m_fill[i] = at[i];
                at += size;
            }
            if (isAlign(*at)) m_align = *at++;
        }
        if (at != end && *at != '.' && *at != '0') at = parseCount(context, at, end, m_width);
        if (at != end && *at == '.') {
            at = parseCount(context, at + 1, end, m_precision);
            if (m_precision.kind == FormatCount::NONE) Library::fail("missing precision");
        }
        if (at != end && *at == 's') ++at;
        if (at != end && *at != '}') Library::fail("invalid format of a text");
        return at;
    }

    template <class Context>
    auto format(Vorn::TextView text, Context& context) const {
        if (m_precision.kind != FormatCount::NONE) {
            const unsigned int end = Vorn::offsetOfCodePoint(text, resolve(context, m_precision));
            if (end != Vorn::NOT_FOUND) text = text.slice(0, end);
        }
        unsigned int left = 0, right = 0;
        if (m_width.kind != FormatCount::NONE) {
            const unsigned int width = resolve(context, m_width);
            const unsigned int count = Vorn::codePointCount(text);
            const unsigned int padding = width > count ? width - count : 0;
            left = m_align == '>' ? padding : m_align == '^' ? padding / 2 : 0;
            right = padding - left;
        }
        for (; left != 0; --left) write(context, {m_fill, m_fillSize});
        char buffer[512];
        while (!text.isEmpty()) {
            const Vorn::ConvertedText part = Vorn::toUTF8(text, buffer, sizeof buffer);
            write(context, {buffer, part.written});
            text = text.slice(part.read);
        }
        for (; right != 0; --right) write(context, {m_fill, m_fillSize});
        return context.out();
    }

private:
    static constexpr std::ptrdiff_t sizeOfCharacter(char lead) noexcept {
        const unsigned int byte = static_cast<unsigned char>(lead);
        return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
    }

    template <class Context, class Iterator>
    static constexpr Iterator parseCount(Context& context, Iterator at, Iterator end, FormatCount& count) {
        const auto isDigit = [&] { return at != end && *at >= '0' && *at <= '9'; };
        const bool isArgument = at != end && *at == '{';
        if (isArgument) ++at;
        bool hasDigits = false;
        unsigned int number = 0;
        for (; isDigit(); ++at, hasDigits = true) {
            if (number > 99999999) Library::fail("number is too big");
            number = number * 10 + static_cast<unsigned int>(*at - '0');
        }
        if (isArgument) {
            if (at == end || *at != '}') Library::fail("invalid argument of a width or precision");
            ++at;
            if (hasDigits) {
                context.check_arg_id(static_cast<Id<Context>>(number));
            } else {
                number = static_cast<unsigned int>(context.next_arg_id());
            }
            count = {number, FormatCount::ARGUMENT};
        } else if (hasDigits) {
            count = {number, FormatCount::NUMBER};
        }
        return at;
    }

    // `int` or `std::size_t`, as the library has it.
    template <class Context>
    using Id = decltype(std::declval<Context&>().next_arg_id());

    template <class Context>
    static unsigned int resolve(Context& context, FormatCount count) {
        if (count.kind != FormatCount::ARGUMENT) return count.value;
        return Library::visit(
            [](auto value) -> unsigned int {
                if constexpr (std::is_integral_v<decltype(value)> && !std::is_same_v<decltype(value), bool> &&
                              !std::is_same_v<decltype(value), char>) {
                    if (value < 0) Library::fail("negative width or precision");
                    if (static_cast<unsigned long long>(value) > 0x7FFFFFFF) Library::fail("number is too big");
                    return static_cast<unsigned int>(value);
                } else {
                    Library::fail("width or precision is not an integer");
                    return 0;
                }
            },
            context, static_cast<int>(count.value));
    }

    template <class Context>
    static void write(Context& context, std::string_view part) {
        context.advance_to(typename Library::template Formatter<std::string_view>().format(part, context));
    }

    char m_fill[4] = {' '};
    unsigned char m_fillSize = 1;
    char m_align = '<';
    FormatCount m_width, m_precision;
};

using XYPairOfFloats = Vorn::XYPair<float, float>;
using RectOfFloats = Vorn::Rect<float, float>;

/// The formatter of a record of numbers: "(1, 2)", with the format of a number for each component.
template <class Library>
class RecordFormat {
public:
    template <class Context>
    constexpr auto parse(Context& context) {
        return m_component.parse(context);
    }

    template <class Context>
    auto format(const Vorn::XYPair<float, float>& pair, Context& context) const {
        return list(context, {pair.x, pair.y});
    }
    template <class Context>
    auto format(const Vorn::Rect<float, float>& rect, Context& context) const {
        return list(context, {rect.left, rect.top, rect.right, rect.bottom});
    }
    template <class Context>
    auto format(const Vorn::Matrix3& matrix, Context& context) const {
        write(context, '(');
        for (unsigned int row = 0; row < 3; ++row) {
            if (row != 0) separate(context);
            const float* const m = matrix.m + 3 * row;
            list(context, {m[0], m[1], m[2]});
        }
        write(context, ')');
        return context.out();
    }

private:
    template <class Context>
    static void write(Context& context, char c) {
        auto out = context.out();
        *out++ = c;
        context.advance_to(out);
    }
    template <class Context>
    static void separate(Context& context) {
        write(context, ',');
        write(context, ' ');
    }

    template <class Context, std::size_t Count>
    auto list(Context& context, const float (&components)[Count]) const {
        write(context, '(');
        for (std::size_t i = 0; i < Count; ++i) {
            if (i != 0) separate(context);
            context.advance_to(m_component.format(components[i], context));
        }
        write(context, ')');
        return context.out();
    }

    typename Library::template Formatter<float> m_component;
};

} // namespace VornPrivate

/// Defines the formatters of one library. `Space` is its namespace.
#define VORN_PRIVATE_FORMATTERS(Space, Library)                                                  \
    namespace Space {                                                                            \
    template <>                                                                                  \
    struct formatter<Vorn::TextView, char> : VornPrivate::TextFormat<Library> {};                \
    template <>                                                                                  \
    struct formatter<Vorn::String, char> : VornPrivate::TextFormat<Library> {};                  \
    template <>                                                                                  \
    struct formatter<Vorn::UTF8String, char> : VornPrivate::TextFormat<Library> {};              \
    template <>                                                                                  \
    struct formatter<Vorn::Name, char> : VornPrivate::TextFormat<Library> {};                    \
    template <>                                                                                  \
    struct formatter<VornPrivate::XYPairOfFloats, char> : VornPrivate::RecordFormat<Library> {}; \
    template <>                                                                                  \
    struct formatter<Vorn::Vector2, char> : VornPrivate::RecordFormat<Library> {};               \
    template <>                                                                                  \
    struct formatter<Vorn::ComplexAngle, char> : VornPrivate::RecordFormat<Library> {};          \
    template <>                                                                                  \
    struct formatter<VornPrivate::RectOfFloats, char> : VornPrivate::RecordFormat<Library> {};   \
    template <>                                                                                  \
    struct formatter<Vorn::FloatRect, char> : VornPrivate::RecordFormat<Library> {};             \
    template <>                                                                                  \
    struct formatter<Vorn::Matrix3, char> : VornPrivate::RecordFormat<Library> {};               \
    }
