/// @file
/// GeometryStreams: writes vectors, angles, rectangles and matrices to streams.
///
///     std::cout << Vorn::Vector2(1.0f, 2.5f);    // (1, 2.5)
///
/// Each number is the shortest text that is read back as the same float, whatever the precision and the locale of the
/// stream. The width, the fill and the adjustment of the stream apply to the whole text. A rectangle is written as
/// (left, top, right, bottom), a matrix as (m0, m1, m2; m3, m4, m5; m6, m7, m8).
///
/// Failures: as of the stream.
#pragma once

#include "Vorn/FloatRect.h"
#include "Vorn/Matrix3.h"
#include "Vorn/XYPair.h"

#include <charconv>
#include <ostream>
#include <string_view>

namespace VornPrivate {

/// The text of up to nine floats.
class NumberList {
public:
    void add(const char* separator, float value) {
        while (*separator) *m_end++ = *separator++;
        m_end = std::to_chars(m_end, m_text + sizeof m_text, value).ptr;
    }

    std::ostream& write(std::ostream& stream) {
        *m_end++ = ')';
        return stream << std::string_view(m_text, static_cast<std::size_t>(m_end - m_text));
    }

private:
    char m_text[9 * 18]; // a float has at most 16 characters
    char* m_end = m_text;
};

} // namespace VornPrivate

namespace Vorn {

/// Writes a Vector2 or a ComplexAngle.
inline std::ostream& operator<<(std::ostream& stream, const XYPairBase<float>& pair) {
    VornPrivate::NumberList list;
    list.add("(", pair.x);
    list.add(", ", pair.y);
    return list.write(stream);
}

/// Writes a FloatRect.
inline std::ostream& operator<<(std::ostream& stream, const RectBase<float>& rect) {
    VornPrivate::NumberList list;
    list.add("(", rect.left);
    list.add(", ", rect.top);
    list.add(", ", rect.right);
    list.add(", ", rect.bottom);
    return list.write(stream);
}

/// Writes a Matrix3.
inline std::ostream& operator<<(std::ostream& stream, const Matrix3& matrix) {
    VornPrivate::NumberList list;
    for (int i = 0; i < 9; ++i) list.add(i == 0 ? "(" : i % 3 == 0 ? "; " : ", ", matrix.m[i]);
    return list.write(stream);
}

} // namespace Vorn
