// FloatRect: a rectangle of four float sides with everything that computes: arithmetic side by side, set operations,
// comparison, ratios, reflection, transformation and pinned resizing.
//
// It is four sides, not a position and a size, and may be inverted, with left beyond right. A normalised rectangle has
// right not below left and bottom not below top; nothing enforces that, and what assumes it says so. Sides,
// orientations and corners are numbered in Rect.h.
//
// Many operations come in families that differ in their arguments alone. Where a rectangle is taken side by side, a
// Vector2 stands for one with x as left and right and y as top and bottom, and a float for one with four such sides.
// Copy forms change nothing: one with a FloatRect& first writes its result there, which may be the rectangle itself,
// and the others return it.
//
// An expression is evaluated in double and rounded to float once, where it is stored or returned, so results have the
// same bits on every platform.
//
// Cost: a value of 16 bytes; everything inlines and nothing allocates. What is not noexcept has a check.
// Threads: plain values, which share nothing.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Matrix3.h"
#include "Vorn/Rect.h"
#include "Vorn/RectAxis.h" // the formulas of one axis
#include "Vorn/RectPoint.h"
#include "Vorn/Vector2.h"

#include <cmath> // std::fmod

namespace Vorn {

/// Four sides and what can be done with them.
class FloatRect : public Rect<float, float> {
public:
    static const FloatRect ZERO; ///< all four sides 0

    /// Leaves all four sides unwritten, also in `FloatRect()`; write `FloatRect::ZERO` for zero.
    FloatRect() noexcept {}

    using Rect<float, float>::Rect; // from a record, four, three, two floats or one, one point or two
    constexpr FloatRect(const FloatRect& other) noexcept = default;
    constexpr FloatRect(const Rect<float, float>& rect) noexcept : Rect<float, float>(rect) {}

    constexpr FloatRect& operator=(const FloatRect& other) noexcept = default;
    constexpr FloatRect& operator=(const Rect<float, float>& rect) noexcept { return *this = FloatRect(rect); }
    constexpr FloatRect& operator=(const RectBase<float>& rect) noexcept { return *this = FloatRect(rect); }

    // --- Size and place ---

    /// `right - left`.
    /// @{
    constexpr float getWidth() const noexcept { return horizontal().size(); }
    constexpr float width() const noexcept { return getWidth(); }
    /// @}

    /// `bottom - top`.
    /// @{
    constexpr float getHeight() const noexcept { return vertical().size(); }
    constexpr float height() const noexcept { return getHeight(); }
    /// @}

    /// Width and height.
    /// @{
    constexpr Vector2 getSize() const noexcept { return {getWidth(), getHeight()}; }
    constexpr Vector2 size() const noexcept { return getSize(); }
    constexpr void getSize(Vector2& out) const noexcept { out = getSize(); }
    /// @}

    /// The width for orientation 0, the height for 1. Exception 1 "orient < 2 : invalid orientation!" for any other.
    float getSize(unsigned int orient) const {
        VORN_ASSERT(orient < 2, "invalid orientation!");
        return orient == 0 ? getWidth() : getHeight();
    }

    /// Height times width: negative if exactly one of the two pairs of sides is inverted.
    constexpr float areaSize() const noexcept { return float((double(bottom) - top) * (double(right) - left)); }

    /// The point in the middle.
    constexpr Vector2 getCenter() const noexcept { return {horizontal().centre(), vertical().centre()}; }

    /// Half of width and height, each rounded once.
    constexpr Vector2 getHalfSize() const noexcept { return {horizontal().halfSize(), vertical().halfSize()}; }

    // --- Tests ---

    /// Whether right is not below left and bottom not below top. NaN gives false.
    constexpr bool isNormalised() const noexcept { return right >= left && bottom >= top; }

    /// Whether a point lies in a normalised rectangle, edges included. NaN gives false.
    /// @{
    constexpr bool isInside(float x, float y) const noexcept {
        return horizontal().contains(x) && vertical().contains(y);
    }
    constexpr bool isInside(const Vector2& point) const noexcept { return isInside(point.x, point.y); }
    /// @}

    /// NOT an overlap test: on each axis it is enough that one rectangle ends beyond the start of the other.
    /// @warning Of two normalised rectangles it is true however far apart they are, unless on one axis both have no
    ///     extent and the same coordinate. For an overlap write `(a & b).isNormalised()`, which counts touching edges.
    /// @{
    constexpr bool intersects(const FloatRect& other) const noexcept {
        return horizontal().intersects(other.horizontal()) && vertical().intersects(other.vertical());
    }
    constexpr bool intersects(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept {
        return intersects(FloatRect(leftSide, topSide, rightSide, bottomSide));
    }
    /// @}

    /// True only if the relation holds on all four sides, so that two rectangles can fail all four: no order to sort
    /// by, and no test of one containing the other.
    /// @{
    constexpr bool operator<(const FloatRect& rect) const noexcept {
        return left < rect.left && top < rect.top && right < rect.right && bottom < rect.bottom;
    }
    constexpr bool operator<(const Vector2& vec) const noexcept { return *this < FloatRect(vec); }
    constexpr bool operator<(float val) const noexcept { return *this < FloatRect(val); }
    constexpr bool operator<=(const FloatRect& rect) const noexcept {
        return left <= rect.left && top <= rect.top && right <= rect.right && bottom <= rect.bottom;
    }
    constexpr bool operator<=(const Vector2& vec) const noexcept { return *this <= FloatRect(vec); }
    constexpr bool operator<=(float val) const noexcept { return *this <= FloatRect(val); }
    constexpr bool operator>(const FloatRect& rect) const noexcept { return rect < *this; }
    constexpr bool operator>(const Vector2& vec) const noexcept { return *this > FloatRect(vec); }
    constexpr bool operator>(float val) const noexcept { return *this > FloatRect(val); }
    constexpr bool operator>=(const FloatRect& rect) const noexcept { return rect <= *this; }
    constexpr bool operator>=(const Vector2& vec) const noexcept { return *this >= FloatRect(vec); }
    constexpr bool operator>=(float val) const noexcept { return *this >= FloatRect(val); }
    /// @}

    // --- Arithmetic, side by side ---

    /// Addition. With a vector or two floats it moves the rectangle, which `translate` and `translateCopy` say by name.
    /// @{
    constexpr FloatRect operator+(const FloatRect& rect) const noexcept {
        return {left + rect.left, top + rect.top, right + rect.right, bottom + rect.bottom};
    }
    constexpr FloatRect operator+(const Vector2& vec) const noexcept { return *this + FloatRect(vec); }
    constexpr FloatRect operator+(float val) const noexcept { return *this + FloatRect(val); }
    constexpr FloatRect& operator+=(const FloatRect& rect) noexcept { return *this = *this + rect; }
    constexpr FloatRect& operator+=(const Vector2& vec) noexcept { return *this = *this + vec; }
    constexpr FloatRect& operator+=(float val) noexcept { return *this = *this + val; }

    constexpr void add(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
        *this += FloatRect(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void add(float x, float y) noexcept { *this += FloatRect(x, y); }
    constexpr void addCopy(FloatRect& out, const FloatRect& rect) const noexcept { out = *this + rect; }
    constexpr void addCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this + vec; }
    constexpr void addCopy(FloatRect& out, float val) const noexcept { out = *this + val; }
    constexpr void addCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                           float bottomSide) const noexcept {
        out = addCopy(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void addCopy(FloatRect& out, float x, float y) const noexcept { out = addCopy(x, y); }
    constexpr FloatRect addCopy(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept {
        return *this + FloatRect(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr FloatRect addCopy(float x, float y) const noexcept { return *this + FloatRect(x, y); }

    constexpr void translate(float x, float y) noexcept { add(x, y); }
    constexpr void translateCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this + vec; }
    constexpr void translateCopy(FloatRect& out, float val) const noexcept { out = *this + val; }
    constexpr void translateCopy(FloatRect& out, float x, float y) const noexcept { out = addCopy(x, y); }
    constexpr FloatRect translateCopy(float x, float y) const noexcept { return addCopy(x, y); }
    /// @}

    /// Subtraction, with the same forms.
    /// @{
    constexpr FloatRect operator-(const FloatRect& rect) const noexcept {
        return {left - rect.left, top - rect.top, right - rect.right, bottom - rect.bottom};
    }
    constexpr FloatRect operator-(const Vector2& vec) const noexcept { return *this - FloatRect(vec); }
    constexpr FloatRect operator-(float val) const noexcept { return *this - FloatRect(val); }
    constexpr FloatRect& operator-=(const FloatRect& rect) noexcept { return *this = *this - rect; }
    constexpr FloatRect& operator-=(const Vector2& vec) noexcept { return *this = *this - vec; }
    constexpr FloatRect& operator-=(float val) noexcept { return *this = *this - val; }

    constexpr void subtract(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
        *this -= FloatRect(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void subtract(float x, float y) noexcept { *this -= FloatRect(x, y); }
    constexpr void subtractCopy(FloatRect& out, const FloatRect& rect) const noexcept { out = *this - rect; }
    constexpr void subtractCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this - vec; }
    constexpr void subtractCopy(FloatRect& out, float val) const noexcept { out = *this - val; }
    constexpr void subtractCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                float bottomSide) const noexcept {
        out = subtractCopy(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void subtractCopy(FloatRect& out, float x, float y) const noexcept { out = subtractCopy(x, y); }
    constexpr FloatRect subtractCopy(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept {
        return *this - FloatRect(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr FloatRect subtractCopy(float x, float y) const noexcept { return *this - FloatRect(x, y); }

    constexpr void reverseTranslate(float x, float y) noexcept { subtract(x, y); }
    constexpr void reverseTranslateCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this - vec; }
    constexpr void reverseTranslateCopy(FloatRect& out, float val) const noexcept { out = *this - val; }
    constexpr void reverseTranslateCopy(FloatRect& out, float x, float y) const noexcept { out = subtractCopy(x, y); }
    constexpr FloatRect reverseTranslateCopy(float x, float y) const noexcept { return subtractCopy(x, y); }
    /// @}

    /// Multiplication.
    /// @{
    constexpr FloatRect operator*(const FloatRect& rect) const noexcept {
        return {left * rect.left, top * rect.top, right * rect.right, bottom * rect.bottom};
    }
    constexpr FloatRect operator*(const Vector2& vec) const noexcept { return *this * FloatRect(vec); }
    constexpr FloatRect operator*(float val) const noexcept { return *this * FloatRect(val); }
    constexpr FloatRect& operator*=(const FloatRect& rect) noexcept { return *this = *this * rect; }
    constexpr FloatRect& operator*=(const Vector2& vec) noexcept { return *this = *this * vec; }
    constexpr FloatRect& operator*=(float val) noexcept { return *this = *this * val; }
    /// @}

    /// Division and, by `fmod`, the remainder, which has the sign of the side. A divisor that is zero of either sign or
    /// NaN raises Exception 1, and nothing has changed: "rect.left < VORN_ZERO || rect.left > VORN_ZERO : left is
    /// zero!" and its like for `rect.top`, `rect.right`, `rect.bottom`, `vec.x`, `vec.y` and `val`, in this order.
    /// @{
    FloatRect operator/(const FloatRect& rect) const { return quotient(divisor<DIVIDE>(rect)); }
    FloatRect operator/(const Vector2& vec) const { return quotient(divisor<DIVIDE>(vec)); }
    FloatRect operator/(float val) const { return quotient(divisor<DIVIDE>(val)); }
    FloatRect& operator/=(const FloatRect& rect) { return *this = quotient(divisor<DIVIDE_IN_PLACE>(rect)); }
    FloatRect& operator/=(const Vector2& vec) { return *this = quotient(divisor<DIVIDE_IN_PLACE>(vec)); }
    FloatRect& operator/=(float val) { return *this = quotient(divisor<DIVIDE_IN_PLACE>(val)); }

    FloatRect operator%(const FloatRect& rect) const { return remainder(divisor<MODULO>(rect)); }
    FloatRect operator%(const Vector2& vec) const { return remainder(divisor<MODULO>(vec)); }
    FloatRect operator%(float val) const { return remainder(divisor<MODULO>(val)); }
    FloatRect& operator%=(const FloatRect& rect) { return *this = remainder(divisor<MODULO_IN_PLACE>(rect)); }
    FloatRect& operator%=(const Vector2& vec) { return *this = remainder(divisor<MODULO_IN_PLACE>(vec)); }
    FloatRect& operator%=(float val) { return *this = remainder(divisor<MODULO_IN_PLACE>(val)); }
    /// @}

    constexpr const FloatRect& operator+() const noexcept { return *this; }

    /// All four sides negated, each in its place: a normalised rectangle comes out inverted.
    constexpr FloatRect operator-() const noexcept { return {-left, -top, -right, -bottom}; }

    /// All four sides plus or minus 1.
    /// @{
    constexpr FloatRect& operator++() noexcept { return *this += 1.0f; }
    constexpr FloatRect& operator--() noexcept { return *this -= 1.0f; }
    constexpr FloatRect operator++(int) noexcept {
        const FloatRect old(*this);
        ++*this;
        return old;
    }
    constexpr FloatRect operator--(int) noexcept {
        const FloatRect old(*this);
        --*this;
        return old;
    }
    /// @}

    // --- Set operations ---
    //
    // A side moves only if the other one is strictly beyond it: of equal zeros and beside NaN the own side stays.

    /// Union: the lower of each left and top, the higher of each right and bottom.
    /// @{
    constexpr FloatRect operator|(const FloatRect& rect) const noexcept {
        return join(horizontal().merged(rect.horizontal()), vertical().merged(rect.vertical()));
    }
    constexpr FloatRect& operator|=(const FloatRect& rect) noexcept { return *this = *this | rect; }
    constexpr void merge(const FloatRect& rect) noexcept { *this |= rect; }
    constexpr void merge(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
        *this |= FloatRect(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void mergedCopy(FloatRect& out, const FloatRect& rect) const noexcept { out = *this | rect; }
    constexpr void mergedCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                              float bottomSide) const noexcept {
        out = mergedCopy(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr FloatRect mergedCopy(const FloatRect& rect) const noexcept { return *this | rect; }
    constexpr FloatRect mergedCopy(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept {
        return *this | FloatRect(leftSide, topSide, rightSide, bottomSide);
    }
    /// @}

    /// Grows to hold a point; of an inverted axis the forms in place move one side, the copy forms both.
    /// @warning In place, the low side is tried first, and the high one only if that did not move. Normalise before;
    ///     on normalised rectangles all forms agree.
    /// @{
    constexpr FloatRect operator|(const Vector2& vec) const noexcept { return *this | FloatRect(vec); }
    constexpr FloatRect& operator|=(const Vector2& vec) noexcept {
        merge(vec.x, vec.y);
        return *this;
    }
    constexpr void merge(float x, float y) noexcept { *this = join(horizontal().grown(x), vertical().grown(y)); }
    constexpr void mergedCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this | vec; }
    constexpr void mergedCopy(FloatRect& out, float x, float y) const noexcept { out = mergedCopy(x, y); }
    constexpr FloatRect mergedCopy(const Vector2& vec) const noexcept { return *this | vec; }
    constexpr FloatRect mergedCopy(float x, float y) const noexcept { return *this | FloatRect(x, y); }
    /// @}

    /// Intersection: the higher of each left and top, the lower of each right and bottom. Rectangles that do not meet
    /// give an inverted one.
    /// @{
    constexpr FloatRect operator&(const FloatRect& rect) const noexcept {
        return join(horizontal().clipped(rect.horizontal()), vertical().clipped(rect.vertical()));
    }
    constexpr FloatRect& operator&=(const FloatRect& rect) noexcept { return *this = *this & rect; }
    constexpr void clip(const FloatRect& rect) noexcept { *this &= rect; }
    constexpr void clip(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
        *this &= FloatRect(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void intersection(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
        clip(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void intersectionCopy(FloatRect& out, const FloatRect& rect) const noexcept { out = *this & rect; }
    constexpr void intersectionCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                    float bottomSide) const noexcept {
        out = intersectionCopy(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr FloatRect intersectionCopy(const FloatRect& rect) const noexcept { return *this & rect; }
    constexpr FloatRect intersectionCopy(float leftSide, float topSide, float rightSide,
                                         float bottomSide) const noexcept {
        return *this & FloatRect(leftSide, topSide, rightSide, bottomSide);
    }
    /// @}

    // --- Sides exchanged ---

    /// Swaps a pair of sides whose high side is below its low side. A pair with a NaN stays.
    constexpr void normalise() noexcept {
        *this = join(right < left ? horizontal().swapped() : horizontal(),
                     bottom < top ? vertical().swapped() : vertical());
    }

    /// As `normalise`, except that a pair with a NaN is swapped.
    /// @{
    constexpr void normalisedCopy(FloatRect& out) const noexcept { out = normalisedCopy(); }
    constexpr FloatRect normalisedCopy() const noexcept {
        return join(right >= left ? horizontal() : horizontal().swapped(),
                    bottom >= top ? vertical() : vertical().swapped());
    }
    /// @}

    /// Swaps left with right and top with bottom.
    /// @{
    constexpr void invert() noexcept { *this = invertedCopy(); }
    constexpr void invertedCopy(FloatRect& out) const noexcept { out = invertedCopy(); }
    constexpr FloatRect invertedCopy() const noexcept { return {right, bottom, left, top}; }
    /// @}

    /// Swaps left with right.
    /// @{
    constexpr void reflectHorz() noexcept { *this = horzReflectedCopy(); }
    constexpr void horzReflectedCopy(FloatRect& out) const noexcept { out = horzReflectedCopy(); }
    constexpr FloatRect horzReflectedCopy() const noexcept { return {right, top, left, bottom}; }
    /// @}

    /// Swaps top with bottom.
    /// @{
    constexpr void reflectVert() noexcept { *this = vertReflectedCopy(); }
    constexpr void vertReflectedCopy(FloatRect& out) const noexcept { out = vertReflectedCopy(); }
    constexpr FloatRect vertReflectedCopy() const noexcept { return {left, bottom, right, top}; }
    /// @}

    /// Swaps left with right for orientation 0, top with bottom for 1. Exception 1 "orient < 2 : invalid orientation!"
    /// for any other.
    /// @{
    void reflectedCopy(FloatRect& out, unsigned int orient) const { out = reflectedCopy(orient); }
    FloatRect reflectedCopy(unsigned int orient) const {
        VORN_ASSERT(orient < 2, "invalid orientation!");
        return orient == 0 ? horzReflectedCopy() : vertReflectedCopy();
    }
    /// @}

    /// Reflects NOTHING: checks `orient` and leaves the rectangle as it is. Exception 1 "orient < 2 : invalid
    /// orientation!" for any other than 0 and 1.
    /// @warning Callers rely on it. To reflect in place, call `reflectHorz` or `reflectVert`.
    void reflect(unsigned int orient) { VORN_ASSERT(orient < 2, "invalid orientation!"); }

    // --- Ratios ---

    /// Becomes the part of itself that `ratio` tells: its sides are fractions of width and height, from left and top.
    /// @{
    constexpr void applyRatio(const FloatRect& ratio) noexcept { *this = applyRatioCopy(ratio); }
    constexpr void applyRatio(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
        *this = applyRatioCopy(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void applyRatioCopy(FloatRect& out, const FloatRect& ratio) const noexcept {
        out = applyRatioCopy(ratio);
    }
    constexpr void applyRatioCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                  float bottomSide) const noexcept {
        out = applyRatioCopy(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr FloatRect applyRatioCopy(const FloatRect& ratio) const noexcept {
        return join(horizontal().atFractions(ratio.horizontal()), vertical().atFractions(ratio.vertical()));
    }
    constexpr FloatRect applyRatioCopy(float leftSide, float topSide, float rightSide,
                                       float bottomSide) const noexcept {
        return applyRatioCopy(FloatRect(leftSide, topSide, rightSide, bottomSide));
    }
    /// @}

    /// The inverse of `applyRatio`: becomes the fractions of itself that `other` takes, or 0 and 0 on an empty axis.
    /// @warning Empty is an axis whose size is not above 0, so also an inverted one or one with a NaN. Nothing raises.
    /// @{
    constexpr void createRatio(const FloatRect& other) noexcept { *this = createRatioCopy(other); }
    constexpr void createRatio(float leftSide, float topSide, float rightSide, float bottomSide) noexcept {
        *this = createRatioCopy(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr void createRatioCopy(FloatRect& out, const FloatRect& other) const noexcept {
        out = createRatioCopy(other);
    }
    constexpr void createRatioCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                   float bottomSide) const noexcept {
        out = createRatioCopy(leftSide, topSide, rightSide, bottomSide);
    }
    constexpr FloatRect createRatioCopy(const FloatRect& other) const noexcept {
        return join(horizontal().fractionsOf(other.horizontal()), vertical().fractionsOf(other.vertical()));
    }
    constexpr FloatRect createRatioCopy(float leftSide, float topSide, float rightSide,
                                        float bottomSide) const noexcept {
        return createRatioCopy(FloatRect(leftSide, topSide, rightSide, bottomSide));
    }
    /// @}

    // --- Transformation ---

    /// The rectangle, transformed by its centre and half size: exact for scale and translation, and nothing more.
    /// @warning Once the matrix rotates, the result is not the bounding box of the transformed corners. For those write
    ///     `matrix * Vector2CornerRect{...}`. An inverted rectangle comes out normalised, whatever the matrix.
    /// @{
    constexpr FloatRect operator*(const Matrix3& matrix) const noexcept {
        const float* const m = matrix.m;
        const Vector2 c = getCenter();
        const Vector2 h = getHalfSize();
        const double centreX = double(m[0]) * c.x + double(m[1]) * c.y + m[2];
        const double centreY = double(m[3]) * c.x + double(m[4]) * c.y + m[5];
        const double halfX = __builtin_fabs(double(m[0]) * h.x + double(m[3]) * h.y); // std::fabs is not constexpr
        const double halfY = __builtin_fabs(double(m[1]) * h.x + double(m[4]) * h.y);
        return {float(centreX - halfX), float(centreY - halfY), float(centreX + halfX), float(centreY + halfY)};
    }
    constexpr FloatRect& operator*=(const Matrix3& matrix) noexcept { return *this = *this * matrix; }
    /// @}

    // --- Pinned resizing ---
    //
    // The amount or size, then the pin (RectPoint), then an offset, which moves the result the other way: it is
    // subtracted. Amount and size are a vector, two floats, or one float for both axes. A pin that is none of the nine
    // raises Exception 1 "pinOrigin == ::Vorn::RectPoint::CENTRE || ... : invalid origin", and nothing has changed.

    /// Grows each axis by twice `amount`. A pin on a low side holds that side, one on a high side holds NONE.
    /// @warning At RIGHT or BOTTOM both sides move up, the low one by twice the amount and the high one by four times:
    ///     (0, 10) grown by 1 at RIGHT is (2, 14). To hold a high side, take CENTRE and the amount as the offset.
    /// @{
    void inflate(float amountX, float amountY, unsigned int pinOrigin, float offsetX, float offsetY) {
        checkPin<INFLATE>(pinOrigin);
        *this = inflated(amountX, amountY, pinOrigin, offsetX, offsetY);
    }
    void inflate(float amountX, float amountY, unsigned int pinOrigin, const Vector2& offset) {
        inflate(amountX, amountY, pinOrigin, offset.x, offset.y);
    }
    void inflate(const Vector2& amount, unsigned int pinOrigin, float offsetX, float offsetY) {
        inflate(amount.x, amount.y, pinOrigin, offsetX, offsetY);
    }
    void inflate(const Vector2& amount, unsigned int pinOrigin, const Vector2& offset) {
        inflate(amount.x, amount.y, pinOrigin, offset.x, offset.y);
    }
    void inflate(float amount, unsigned int pinOrigin, const Vector2& offset) {
        inflate(amount, amount, pinOrigin, offset.x, offset.y);
    }
    /// @}

    /// As `inflate` with the same amount for both axes, but the pin is NOT checked.
    /// @warning Any pin is taken: its low four bits count, and a high flag wins over a low one. The five other forms
    ///     check.
    constexpr void inflate(float amount, unsigned int pinOrigin, float offsetX, float offsetY) noexcept {
        *this = inflated(amount, amount, pinOrigin, offsetX, offsetY);
    }

    /// As `inflate`, into `out` or the result; every form checks.
    /// @{
    void inflatedCopy(FloatRect& out, float amountX, float amountY, unsigned int pinOrigin, float offsetX,
                      float offsetY) const {
        out = inflatedCopy(amountX, amountY, pinOrigin, offsetX, offsetY);
    }
    void inflatedCopy(FloatRect& out, float amountX, float amountY, unsigned int pinOrigin,
                      const Vector2& offset) const {
        out = inflatedCopy(amountX, amountY, pinOrigin, offset.x, offset.y);
    }
    void inflatedCopy(FloatRect& out, const Vector2& amount, unsigned int pinOrigin, float offsetX,
                      float offsetY) const {
        out = inflatedCopy(amount.x, amount.y, pinOrigin, offsetX, offsetY);
    }
    void inflatedCopy(FloatRect& out, const Vector2& amount, unsigned int pinOrigin, const Vector2& offset) const {
        out = inflatedCopy(amount.x, amount.y, pinOrigin, offset.x, offset.y);
    }
    void inflatedCopy(FloatRect& out, float amount, unsigned int pinOrigin, float offsetX, float offsetY) const {
        out = inflatedCopy(amount, amount, pinOrigin, offsetX, offsetY);
    }
    void inflatedCopy(FloatRect& out, float amount, unsigned int pinOrigin, const Vector2& offset) const {
        out = inflatedCopy(amount, amount, pinOrigin, offset.x, offset.y);
    }
    FloatRect inflatedCopy(float amountX, float amountY, unsigned int pinOrigin, float offsetX, float offsetY) const {
        checkPin<INFLATED_COPY>(pinOrigin);
        return inflated(amountX, amountY, pinOrigin, offsetX, offsetY);
    }
    FloatRect inflatedCopy(float amountX, float amountY, unsigned int pinOrigin, const Vector2& offset) const {
        return inflatedCopy(amountX, amountY, pinOrigin, offset.x, offset.y);
    }
    FloatRect inflatedCopy(const Vector2& amount, unsigned int pinOrigin, float offsetX, float offsetY) const {
        return inflatedCopy(amount.x, amount.y, pinOrigin, offsetX, offsetY);
    }
    FloatRect inflatedCopy(const Vector2& amount, unsigned int pinOrigin, const Vector2& offset) const {
        return inflatedCopy(amount.x, amount.y, pinOrigin, offset.x, offset.y);
    }
    FloatRect inflatedCopy(float amount, unsigned int pinOrigin, float offsetX, float offsetY) const {
        return inflatedCopy(amount, amount, pinOrigin, offsetX, offsetY);
    }
    FloatRect inflatedCopy(float amount, unsigned int pinOrigin, const Vector2& offset) const {
        return inflatedCopy(amount, amount, pinOrigin, offset.x, offset.y);
    }
    /// @}

    /// Takes the given size. A pin on a low side holds that side, one on a high side holds NONE.
    /// @warning At RIGHT or BOTTOM both sides move up, the low one by what the axis grows and the high one by twice
    ///     that: (0, 10) resized to 12 at RIGHT is (2, 14). To hold a high side, take a low pin and the growth as the
    ///     offset.
    /// @{
    void resize(float sizeX, float sizeY, unsigned int pinOrigin, float offsetX, float offsetY) {
        checkPin<RESIZE>(pinOrigin);
        *this = resized(sizeX, sizeY, pinOrigin, offsetX, offsetY);
    }
    void resize(float sizeX, float sizeY, unsigned int pinOrigin, const Vector2& offset) {
        resize(sizeX, sizeY, pinOrigin, offset.x, offset.y);
    }
    void resize(const Vector2& newSize, unsigned int pinOrigin, float offsetX, float offsetY) {
        resize(newSize.x, newSize.y, pinOrigin, offsetX, offsetY);
    }
    void resize(const Vector2& newSize, unsigned int pinOrigin, const Vector2& offset) {
        resize(newSize.x, newSize.y, pinOrigin, offset.x, offset.y);
    }
    void resize(float newSize, unsigned int pinOrigin, float offsetX, float offsetY) {
        resize(newSize, newSize, pinOrigin, offsetX, offsetY);
    }
    void resize(float newSize, unsigned int pinOrigin, const Vector2& offset) {
        resize(newSize, newSize, pinOrigin, offset.x, offset.y);
    }
    /// @}

    /// As `resize`, into `out` or the result.
    /// @{
    void resizedCopy(FloatRect& out, float sizeX, float sizeY, unsigned int pinOrigin, float offsetX,
                     float offsetY) const {
        out = resizedCopy(sizeX, sizeY, pinOrigin, offsetX, offsetY);
    }
    void resizedCopy(FloatRect& out, float sizeX, float sizeY, unsigned int pinOrigin, const Vector2& offset) const {
        out = resizedCopy(sizeX, sizeY, pinOrigin, offset.x, offset.y);
    }
    void resizedCopy(FloatRect& out, const Vector2& newSize, unsigned int pinOrigin, float offsetX,
                     float offsetY) const {
        out = resizedCopy(newSize.x, newSize.y, pinOrigin, offsetX, offsetY);
    }
    void resizedCopy(FloatRect& out, const Vector2& newSize, unsigned int pinOrigin, const Vector2& offset) const {
        out = resizedCopy(newSize.x, newSize.y, pinOrigin, offset.x, offset.y);
    }
    void resizedCopy(FloatRect& out, float newSize, unsigned int pinOrigin, float offsetX, float offsetY) const {
        out = resizedCopy(newSize, newSize, pinOrigin, offsetX, offsetY);
    }
    void resizedCopy(FloatRect& out, float newSize, unsigned int pinOrigin, const Vector2& offset) const {
        out = resizedCopy(newSize, newSize, pinOrigin, offset.x, offset.y);
    }
    FloatRect resizedCopy(float sizeX, float sizeY, unsigned int pinOrigin, float offsetX, float offsetY) const {
        checkPin<RESIZED_COPY>(pinOrigin);
        return resized(sizeX, sizeY, pinOrigin, offsetX, offsetY);
    }
    FloatRect resizedCopy(float sizeX, float sizeY, unsigned int pinOrigin, const Vector2& offset) const {
        return resizedCopy(sizeX, sizeY, pinOrigin, offset.x, offset.y);
    }
    FloatRect resizedCopy(const Vector2& newSize, unsigned int pinOrigin, float offsetX, float offsetY) const {
        return resizedCopy(newSize.x, newSize.y, pinOrigin, offsetX, offsetY);
    }
    FloatRect resizedCopy(const Vector2& newSize, unsigned int pinOrigin, const Vector2& offset) const {
        return resizedCopy(newSize.x, newSize.y, pinOrigin, offset.x, offset.y);
    }
    FloatRect resizedCopy(float newSize, unsigned int pinOrigin, float offsetX, float offsetY) const {
        return resizedCopy(newSize, newSize, pinOrigin, offsetX, offsetY);
    }
    FloatRect resizedCopy(float newSize, unsigned int pinOrigin, const Vector2& offset) const {
        return resizedCopy(newSize, newSize, pinOrigin, offset.x, offset.y);
    }
    /// @}

private:
    using Axis = VornPrivate::RectAxis;
    using Name = VornPrivate::TextView;

    constexpr Axis horizontal() const noexcept { return {left, right}; }
    constexpr Axis vertical() const noexcept { return {top, bottom}; }
    static constexpr FloatRect join(Axis horizontalAxis, Axis verticalAxis) noexcept {
        return {horizontalAxis.low, verticalAxis.low, horizontalAxis.high, verticalAxis.high};
    }

    constexpr FloatRect quotient(const FloatRect& rect) const noexcept {
        return {left / rect.left, top / rect.top, right / rect.right, bottom / rect.bottom};
    }
    FloatRect remainder(const FloatRect& rect) const noexcept {
        return {std::fmod(left, rect.left), std::fmod(top, rect.top), std::fmod(right, rect.right),
                std::fmod(bottom, rect.bottom)};
    }
    constexpr FloatRect inflated(float amountX, float amountY, unsigned int pin, float offsetX,
                                 float offsetY) const noexcept {
        return join(horizontal().inflated(amountX, pin, offsetX), vertical().inflated(amountY, pin >> 1, offsetY));
    }
    constexpr FloatRect resized(float sizeX, float sizeY, unsigned int pin, float offsetX,
                                float offsetY) const noexcept {
        return join(horizontal().resized(sizeX, pin, offsetX), vertical().resized(sizeY, pin >> 1, offsetY));
    }

    // The names under which the checks below report.
    static constexpr Name DIVIDE{"Vorn::FloatRect::operator /"};
    static constexpr Name DIVIDE_IN_PLACE{"Vorn::FloatRect::operator /="};
    static constexpr Name MODULO{"Vorn::FloatRect::operator %"};
    static constexpr Name MODULO_IN_PLACE{"Vorn::FloatRect::operator %="};
    static constexpr Name INFLATE{"Vorn::FloatRect::inflate"};
    static constexpr Name INFLATED_COPY{"Vorn::FloatRect::inflatedCopy"};
    static constexpr Name RESIZE{"Vorn::FloatRect::resize"};
    static constexpr Name RESIZED_COPY{"Vorn::FloatRect::resizedCopy"};

    // The divisor of each side, checked.
    template <const Name& Operation>
    static const FloatRect& divisor(const FloatRect& rect) {
        VORN_ASSERT(rect.left < VORN_ZERO || rect.left > VORN_ZERO, "left is zero!", Operation);
        VORN_ASSERT(rect.top < VORN_ZERO || rect.top > VORN_ZERO, "top is zero!", Operation);
        VORN_ASSERT(rect.right < VORN_ZERO || rect.right > VORN_ZERO, "right is zero!", Operation);
        VORN_ASSERT(rect.bottom < VORN_ZERO || rect.bottom > VORN_ZERO, "bottom is zero!", Operation);
        return rect;
    }
    template <const Name& Operation>
    static FloatRect divisor(const Vector2& vec) {
        VORN_ASSERT(vec.x < VORN_ZERO || vec.x > VORN_ZERO, "x is zero!", Operation);
        VORN_ASSERT(vec.y < VORN_ZERO || vec.y > VORN_ZERO, "y is zero!", Operation);
        return FloatRect(vec);
    }
    template <const Name& Operation>
    static FloatRect divisor(float val) {
        VORN_ASSERT(val < VORN_ZERO || val > VORN_ZERO, "val is zero!", Operation);
        return FloatRect(val);
    }

    template <const Name& Operation>
    static void checkPin(unsigned int pinOrigin) {
        VORN_ASSERT(pinOrigin == ::Vorn::RectPoint::CENTRE || pinOrigin == ::Vorn::RectPoint::LEFT ||
                        pinOrigin == ::Vorn::RectPoint::TOP || pinOrigin == ::Vorn::RectPoint::RIGHT ||
                        pinOrigin == ::Vorn::RectPoint::BOTTOM || pinOrigin == ::Vorn::RectPoint::TOP_LEFT ||
                        pinOrigin == ::Vorn::RectPoint::TOP_RIGHT || pinOrigin == ::Vorn::RectPoint::BOTTOM_LEFT ||
                        pinOrigin == ::Vorn::RectPoint::BOTTOM_RIGHT,
                    "invalid origin", Operation);
    }
};

inline constexpr FloatRect FloatRect::ZERO(0.0f);

static_assert(sizeof(FloatRect) == 16, "four sides and nothing else");

} // namespace Vorn
