// FloatRectForms: arithmetic, set operations, ratios and transformation of FloatRect. Implementation of FloatRect.h;
// not for direct use. Operations that check their arguments are defined in FloatRect.h, the file that their reports
// name.
#pragma once

#include "Vorn/FloatRect.h"

namespace Vorn {

// --- Arithmetic ---

constexpr FloatRect FloatRect::operator+(const FloatRect& rect) const noexcept {
    return {left + rect.left, top + rect.top, right + rect.right, bottom + rect.bottom};
}

constexpr void FloatRect::add(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
    *this += FloatRect(leftSide, topSide, rightSide, bottomSide);
}

constexpr void FloatRect::addCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                  float bottomSide) const noexcept {
    out = addCopy(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect FloatRect::addCopy(float leftSide, float topSide, float rightSide,
                                       float bottomSide) const noexcept {
    return *this + FloatRect(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect FloatRect::operator-(const FloatRect& rect) const noexcept {
    return {left - rect.left, top - rect.top, right - rect.right, bottom - rect.bottom};
}

constexpr void FloatRect::subtract(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
    *this -= FloatRect(leftSide, topSide, rightSide, bottomSide);
}

constexpr void FloatRect::subtractCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                       float bottomSide) const noexcept {
    out = subtractCopy(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect FloatRect::subtractCopy(float leftSide, float topSide, float rightSide,
                                            float bottomSide) const noexcept {
    return *this - FloatRect(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect FloatRect::operator*(const FloatRect& rect) const noexcept {
    return {left * rect.left, top * rect.top, right * rect.right, bottom * rect.bottom};
}

constexpr FloatRect FloatRect::operator++(int) noexcept {
    const FloatRect old(*this);
    ++*this;
    return old;
}

constexpr FloatRect FloatRect::operator--(int) noexcept {
    const FloatRect old(*this);
    --*this;
    return old;
}

// --- Set operations ---

constexpr FloatRect FloatRect::operator|(const FloatRect& rect) const noexcept {
    return join(horizontal().merged(rect.horizontal()), vertical().merged(rect.vertical()));
}

constexpr void FloatRect::merge(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
    *this |= FloatRect(leftSide, topSide, rightSide, bottomSide);
}

constexpr void FloatRect::mergedCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                     float bottomSide) const noexcept {
    out = mergedCopy(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect FloatRect::mergedCopy(float leftSide, float topSide, float rightSide,
                                          float bottomSide) const noexcept {
    return *this | FloatRect(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect& FloatRect::operator|=(const Vector2& vec) noexcept {
    merge(vec.x, vec.y);
    return *this;
}

constexpr FloatRect FloatRect::operator&(const FloatRect& rect) const noexcept {
    return join(horizontal().clipped(rect.horizontal()), vertical().clipped(rect.vertical()));
}

constexpr void FloatRect::clip(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
    *this &= FloatRect(leftSide, topSide, rightSide, bottomSide);
}

constexpr void FloatRect::intersection(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
    clip(leftSide, topSide, rightSide, bottomSide);
}

constexpr void FloatRect::intersectionCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                           float bottomSide) const noexcept {
    out = intersectionCopy(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect FloatRect::intersectionCopy(float leftSide, float topSide, float rightSide,
                                                float bottomSide) const noexcept {
    return *this & FloatRect(leftSide, topSide, rightSide, bottomSide);
}

// --- Exchange of sides ---

constexpr void FloatRect::normalise() noexcept {
    *this =
        join(right < left ? horizontal().swapped() : horizontal(), bottom < top ? vertical().swapped() : vertical());
}

constexpr FloatRect FloatRect::normalisedCopy() const noexcept {
    return join(right >= left ? horizontal() : horizontal().swapped(),
                bottom >= top ? vertical() : vertical().swapped());
}

// --- Ratios ---

constexpr void FloatRect::applyRatio(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
    *this = applyRatioCopy(leftSide, topSide, rightSide, bottomSide);
}

constexpr void FloatRect::applyRatioCopy(FloatRect& out, const FloatRect& ratio) const noexcept {
    out = applyRatioCopy(ratio);
}

constexpr void FloatRect::applyRatioCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                         float bottomSide) const noexcept {
    out = applyRatioCopy(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect FloatRect::applyRatioCopy(const FloatRect& ratio) const noexcept {
    return join(horizontal().atFractions(ratio.horizontal()), vertical().atFractions(ratio.vertical()));
}

constexpr FloatRect FloatRect::applyRatioCopy(float leftSide, float topSide, float rightSide,
                                              float bottomSide) const noexcept {
    return applyRatioCopy(FloatRect(leftSide, topSide, rightSide, bottomSide));
}

constexpr void FloatRect::createRatio(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
    *this = createRatioCopy(leftSide, topSide, rightSide, bottomSide);
}

constexpr void FloatRect::createRatioCopy(FloatRect& out, const FloatRect& other) const noexcept {
    out = createRatioCopy(other);
}

constexpr void FloatRect::createRatioCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                          float bottomSide) const noexcept {
    out = createRatioCopy(leftSide, topSide, rightSide, bottomSide);
}

constexpr FloatRect FloatRect::createRatioCopy(const FloatRect& other) const noexcept {
    return join(horizontal().fractionsOf(other.horizontal()), vertical().fractionsOf(other.vertical()));
}

constexpr FloatRect FloatRect::createRatioCopy(float leftSide, float topSide, float rightSide,
                                               float bottomSide) const noexcept {
    return createRatioCopy(FloatRect(leftSide, topSide, rightSide, bottomSide));
}

// --- Transformation ---

constexpr FloatRect FloatRect::operator*(const Matrix3& matrix) const noexcept {
    const float* const m = matrix.m;
    const Vector2 c = getCenter();
    const Vector2 h = getHalfSize();
    const double centreX = double(m[0]) * double(c.x) + double(m[1]) * double(c.y) + double(m[2]);
    const double centreY = double(m[3]) * double(c.x) + double(m[4]) * double(c.y) + double(m[5]);
    const double halfX =
        __builtin_fabs(double(m[0]) * double(h.x) + double(m[3]) * double(h.y)); // std::fabs is not constexpr
    const double halfY = __builtin_fabs(double(m[1]) * double(h.x) + double(m[4]) * double(h.y));
    return {float(centreX - halfX), float(centreY - halfY), float(centreX + halfX), float(centreY + halfY)};
}

} // namespace Vorn
