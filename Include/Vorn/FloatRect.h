/// @file
/// FloatRect: a rectangle of four float sides with arithmetic, set operations, comparison, ratios, reflection,
/// transformation and pinned resizing.
///
/// It stores four sides, not a position and a size, and may be inverted (left greater than right, or top greater than
/// bottom). A normalised rectangle has right >= left and bottom >= top. Operations that require a normalised rectangle
/// say so. Rect.h numbers sides, orientations and corners.
///
/// Most operations have several forms that differ only in their parameters:
///
/// - A Vector2 stands for a rectangle with x as left and right and y as top and bottom; a float stands for a rectangle
///   with four sides of that value.
/// - An operation with `Copy` in its name leaves the rectangle unchanged. The form whose first parameter is `FloatRect&
///   out` writes the result to `out`, which may be the rectangle itself; the other forms return it.
///
/// Each expression is evaluated in double and rounded to float once, where it is stored or returned. Results have the
/// same bits on every platform, except for the sign and the payload of a NaN.
///
/// Cost: a value of 16 bytes; all operations are inline and allocate nothing. An operation that is not `noexcept`
/// checks its arguments.
///
/// Threads: objects share no state.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Matrix3.h"
#include "Vorn/Private/RectAxis.h" // the formulas of one axis
#include "Vorn/Private/Surprise.h"
#include "Vorn/Rect.h"
#include "Vorn/RectPoint.h"
#include "Vorn/Vector2.h"

#include <cmath> // std::fmod

#define VORN_ORDER_SURPRISE VORN_SURPRISE("is no order: the relation must hold for each side; compare one side")
#define VORN_PINNED_SURPRISE \
    VORN_SURPRISE("moves a high side that is the pin, and subtracts the offset; use anchored(rect, size, pin)")

VORN_ALLOW_SURPRISES_BEGIN // the operations call each other

namespace Vorn {

/// A rectangle of four float sides; see Vorn/FloatRect.h for the forms of its operations.
class FloatRect : public Rect<float, float> {
public:
    static const FloatRect ZERO; ///< all four sides are 0

    /// Leaves all four sides uninitialised, also in `FloatRect()`. For zero write `FloatRect::ZERO`.
    FloatRect() noexcept {}

    using Rect<float, float>::Rect; // from a RectBase, one to four floats, one or two points
    constexpr FloatRect(const FloatRect& other) noexcept = default;
    constexpr FloatRect(const Rect<float, float>& rect) noexcept : Rect<float, float>(rect) {}

    constexpr FloatRect& operator=(const FloatRect& other) noexcept = default;
    constexpr FloatRect& operator=(const Rect<float, float>& rect) noexcept { return *this = FloatRect(rect); }
    constexpr FloatRect& operator=(const RectBase<float>& rect) noexcept { return *this = FloatRect(rect); }

    // --- Size and position ---

    /// The width, `right - left`: negative if left is greater than right.
    /// @{
    constexpr float getWidth() const noexcept { return horizontal().size(); }
    constexpr float width() const noexcept { return getWidth(); }
    /// @}

    /// The height, `bottom - top`: negative if top is greater than bottom.
    /// @{
    constexpr float getHeight() const noexcept { return vertical().size(); }
    constexpr float height() const noexcept { return getHeight(); }
    /// @}

    /// Width and height as a vector.
    /// @{
    constexpr Vector2 getSize() const noexcept { return {getWidth(), getHeight()}; }
    constexpr Vector2 size() const noexcept { return getSize(); }
    constexpr void getSize(Vector2& out) const noexcept { out = getSize(); }
    /// @}

    /// The width for orientation 0, the height for orientation 1.
    /// Throws `Exception<1>`: "orient < 2 : invalid orientation!".
    float getSize(unsigned int orient) const {
        VORN_ASSERT(orient < 2, "invalid orientation!");
        return orient == 0 ? getWidth() : getHeight();
    }

    /// Height times width: negative if exactly one axis is inverted.
    constexpr float areaSize() const noexcept {
        return float((double(bottom) - double(top)) * (double(right) - double(left)));
    }

    /// The centre.
    constexpr Vector2 getCenter() const noexcept { return {horizontal().centre(), vertical().centre()}; }

    /// Half of width and half of height, each rounded once.
    constexpr Vector2 getHalfSize() const noexcept { return {horizontal().halfSize(), vertical().halfSize()}; }

    // --- Tests ---

    /// Returns true if right >= left and bottom >= top; false if a side is NaN.
    constexpr bool isNormalised() const noexcept { return right >= left && bottom >= top; }

    /// Returns true if the point lies in the rectangle or on an edge; always false for an inverted rectangle or NaN.
    /// @{
    constexpr bool isInside(float x, float y) const noexcept {
        return horizontal().contains(x) && vertical().contains(y);
    }
    constexpr bool isInside(const Vector2& point) const noexcept { return isInside(point.x, point.y); }
    /// @}

    /// Does NOT test for an overlap: on each axis it is enough that one rectangle ends beyond the start of the other.
    /// @warning Returns true for any two normalised rectangles, however far apart, unless on one axis both have the
    ///     size 0 and the same coordinate. To test for an overlap write `(a & b).isNormalised()`, which counts touching
    ///     edges.
    /// @{
    VORN_SURPRISE("is true for rectangles that are apart; use overlaps(a, b)")
    constexpr bool intersects(const FloatRect& other) const noexcept {
        return horizontal().intersects(other.horizontal()) && vertical().intersects(other.vertical());
    }
    VORN_SURPRISE("is true for rectangles that are apart; use overlaps(a, b)")
    constexpr bool intersects(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept {
        return intersects(FloatRect(leftSide, topSide, rightSide, bottomSide));
    }
    /// @}

    /// Returns true only if the relation holds for all four sides. This is NOT an order to sort by, since two
    /// rectangles can fail all four relations, and NOT a test of whether one contains the other.
    /// @{
    VORN_ORDER_SURPRISE
    constexpr bool operator<(const FloatRect& rect) const noexcept {
        return left < rect.left && top < rect.top && right < rect.right && bottom < rect.bottom;
    }
    VORN_ORDER_SURPRISE
    constexpr bool operator<(const Vector2& vec) const noexcept { return *this < FloatRect(vec); }
    VORN_ORDER_SURPRISE
    constexpr bool operator<(float val) const noexcept { return *this < FloatRect(val); }
    VORN_ORDER_SURPRISE
    constexpr bool operator<=(const FloatRect& rect) const noexcept {
        return left <= rect.left && top <= rect.top && right <= rect.right && bottom <= rect.bottom;
    }
    VORN_ORDER_SURPRISE
    constexpr bool operator<=(const Vector2& vec) const noexcept { return *this <= FloatRect(vec); }
    VORN_ORDER_SURPRISE
    constexpr bool operator<=(float val) const noexcept { return *this <= FloatRect(val); }
    VORN_ORDER_SURPRISE
    constexpr bool operator>(const FloatRect& rect) const noexcept { return rect < *this; }
    VORN_ORDER_SURPRISE
    constexpr bool operator>(const Vector2& vec) const noexcept { return *this > FloatRect(vec); }
    VORN_ORDER_SURPRISE
    constexpr bool operator>(float val) const noexcept { return *this > FloatRect(val); }
    VORN_ORDER_SURPRISE
    constexpr bool operator>=(const FloatRect& rect) const noexcept { return rect <= *this; }
    VORN_ORDER_SURPRISE
    constexpr bool operator>=(const Vector2& vec) const noexcept { return *this >= FloatRect(vec); }
    VORN_ORDER_SURPRISE
    constexpr bool operator>=(float val) const noexcept { return *this >= FloatRect(val); }
    /// @}

    // --- Arithmetic, side by side ---

    /// Adds side by side. A vector or two floats move the rectangle, as `translate` and `translateCopy` do.
    /// @{
    constexpr FloatRect operator+(const FloatRect& rect) const noexcept;
    constexpr FloatRect operator+(const Vector2& vec) const noexcept { return *this + FloatRect(vec); }
    constexpr FloatRect operator+(float val) const noexcept { return *this + FloatRect(val); }
    constexpr FloatRect& operator+=(const FloatRect& rect) noexcept { return *this = *this + rect; }
    constexpr FloatRect& operator+=(const Vector2& vec) noexcept { return *this = *this + vec; }
    constexpr FloatRect& operator+=(float val) noexcept { return *this = *this + val; }

    constexpr void add(float leftSide, float topSide, float rightSide, float bottomSide) noexcept;
    constexpr void add(float x, float y) noexcept { *this += FloatRect(x, y); }
    constexpr void addCopy(FloatRect& out, const FloatRect& rect) const noexcept { out = *this + rect; }
    constexpr void addCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this + vec; }
    constexpr void addCopy(FloatRect& out, float val) const noexcept { out = *this + val; }
    constexpr void addCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                           float bottomSide) const noexcept;
    constexpr void addCopy(FloatRect& out, float x, float y) const noexcept { out = addCopy(x, y); }
    constexpr FloatRect addCopy(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept;
    constexpr FloatRect addCopy(float x, float y) const noexcept { return *this + FloatRect(x, y); }

    constexpr void translate(float x, float y) noexcept { add(x, y); }
    constexpr void translateCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this + vec; }
    constexpr void translateCopy(FloatRect& out, float val) const noexcept { out = *this + val; }
    constexpr void translateCopy(FloatRect& out, float x, float y) const noexcept { out = addCopy(x, y); }
    constexpr FloatRect translateCopy(float x, float y) const noexcept { return addCopy(x, y); }
    /// @}

    /// Subtracts side by side. A vector or two floats move the rectangle back, as `reverseTranslate` does.
    /// @{
    constexpr FloatRect operator-(const FloatRect& rect) const noexcept;
    constexpr FloatRect operator-(const Vector2& vec) const noexcept { return *this - FloatRect(vec); }
    constexpr FloatRect operator-(float val) const noexcept { return *this - FloatRect(val); }
    constexpr FloatRect& operator-=(const FloatRect& rect) noexcept { return *this = *this - rect; }
    constexpr FloatRect& operator-=(const Vector2& vec) noexcept { return *this = *this - vec; }
    constexpr FloatRect& operator-=(float val) noexcept { return *this = *this - val; }

    constexpr void subtract(float leftSide, float topSide, float rightSide, float bottomSide) noexcept;
    constexpr void subtract(float x, float y) noexcept { *this -= FloatRect(x, y); }
    constexpr void subtractCopy(FloatRect& out, const FloatRect& rect) const noexcept { out = *this - rect; }
    constexpr void subtractCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this - vec; }
    constexpr void subtractCopy(FloatRect& out, float val) const noexcept { out = *this - val; }
    constexpr void subtractCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                float bottomSide) const noexcept;
    constexpr void subtractCopy(FloatRect& out, float x, float y) const noexcept { out = subtractCopy(x, y); }
    constexpr FloatRect subtractCopy(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept;
    constexpr FloatRect subtractCopy(float x, float y) const noexcept { return *this - FloatRect(x, y); }

    constexpr void reverseTranslate(float x, float y) noexcept { subtract(x, y); }
    constexpr void reverseTranslateCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this - vec; }
    constexpr void reverseTranslateCopy(FloatRect& out, float val) const noexcept { out = *this - val; }
    constexpr void reverseTranslateCopy(FloatRect& out, float x, float y) const noexcept { out = subtractCopy(x, y); }
    constexpr FloatRect reverseTranslateCopy(float x, float y) const noexcept { return subtractCopy(x, y); }
    /// @}

    /// Multiplies side by side.
    /// @{
    constexpr FloatRect operator*(const FloatRect& rect) const noexcept;
    constexpr FloatRect operator*(const Vector2& vec) const noexcept { return *this * FloatRect(vec); }
    constexpr FloatRect operator*(float val) const noexcept { return *this * FloatRect(val); }
    constexpr FloatRect& operator*=(const FloatRect& rect) noexcept { return *this = *this * rect; }
    constexpr FloatRect& operator*=(const Vector2& vec) noexcept { return *this = *this * vec; }
    constexpr FloatRect& operator*=(float val) noexcept { return *this = *this * val; }
    /// @}

    /// Divides side by side, or takes the remainder as `std::fmod` does: it has the sign of the dividend.
    /// Throws `Exception<1>` and leaves the rectangle unchanged if a divisor is 0.0, -0.0 or NaN: "rect.left <
    /// VORN_ZERO || rect.left > VORN_ZERO : left is zero!". The same form reports `rect.top`, `rect.right`,
    /// `rect.bottom`, `vec.x`, `vec.y` and `val`; the first one in this order is reported.
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

    /// Negates each side in its place. The result of a normalised rectangle is INVERTED unless its size is 0.
    VORN_SURPRISE("inverts the rectangle; use FloatRect(-right, -bottom, -left, -top)")
    constexpr FloatRect operator-() const noexcept { return {-left, -top, -right, -bottom}; }

    /// Adds 1 to all four sides, or subtracts 1.
    /// @{
    constexpr FloatRect& operator++() noexcept { return *this += 1.0f; }
    constexpr FloatRect& operator--() noexcept { return *this -= 1.0f; }
    constexpr FloatRect operator++(int) noexcept;
    constexpr FloatRect operator--(int) noexcept;
    /// @}

    // --- Set operations ---
    //
    // A side moves only if the other side is strictly beyond it: zeros of either sign are equal, and NaN moves nothing.

    /// The union: the lesser of both left and top sides, the greater of both right and bottom sides.
    /// @{
    constexpr FloatRect operator|(const FloatRect& rect) const noexcept;
    constexpr FloatRect& operator|=(const FloatRect& rect) noexcept { return *this = *this | rect; }
    constexpr void merge(const FloatRect& rect) noexcept { *this |= rect; }
    constexpr void merge(float leftSide, float topSide, float rightSide, float bottomSide) noexcept;
    constexpr void mergedCopy(FloatRect& out, const FloatRect& rect) const noexcept { out = *this | rect; }
    constexpr void mergedCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                              float bottomSide) const noexcept;
    constexpr FloatRect mergedCopy(const FloatRect& rect) const noexcept { return *this | rect; }
    constexpr FloatRect mergedCopy(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept;
    /// @}

    /// Extends the rectangle to contain a point. On an inverted axis the copy forms move both sides, the others ONE.
    /// @warning The forms that change the rectangle move the high side only if the low side did not move. Call
    ///     `normalise` before; for normalised rectangles all forms agree.
    /// @{
    constexpr FloatRect operator|(const Vector2& vec) const noexcept { return *this | FloatRect(vec); }
    constexpr FloatRect& operator|=(const Vector2& vec) noexcept;
    constexpr void merge(float x, float y) noexcept { *this = join(horizontal().grown(x), vertical().grown(y)); }
    constexpr void mergedCopy(FloatRect& out, const Vector2& vec) const noexcept { out = *this | vec; }
    constexpr void mergedCopy(FloatRect& out, float x, float y) const noexcept { out = mergedCopy(x, y); }
    constexpr FloatRect mergedCopy(const Vector2& vec) const noexcept { return *this | vec; }
    constexpr FloatRect mergedCopy(float x, float y) const noexcept { return *this | FloatRect(x, y); }
    /// @}

    /// The intersection: the greater of both left and top sides, the lesser of both right and bottom sides. The result
    /// is inverted if the rectangles do not touch.
    /// @{
    constexpr FloatRect operator&(const FloatRect& rect) const noexcept;
    constexpr FloatRect& operator&=(const FloatRect& rect) noexcept { return *this = *this & rect; }
    constexpr void clip(const FloatRect& rect) noexcept { *this &= rect; }
    constexpr void clip(float leftSide, float topSide, float rightSide, float bottomSide) noexcept;
    constexpr void intersection(float leftSide, float topSide, float rightSide, float bottomSide) noexcept;
    constexpr void intersectionCopy(FloatRect& out, const FloatRect& rect) const noexcept { out = *this & rect; }
    constexpr void intersectionCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                    float bottomSide) const noexcept;
    constexpr FloatRect intersectionCopy(const FloatRect& rect) const noexcept { return *this & rect; }
    constexpr FloatRect intersectionCopy(float leftSide, float topSide, float rightSide,
                                         float bottomSide) const noexcept;
    /// @}

    // --- Exchange of sides ---

    /// Swaps the two sides of each inverted axis. An axis with a NaN stays unchanged.
    constexpr void normalise() noexcept;

    /// The result of `normalise`, except that an axis with a NaN IS swapped.
    /// @{
    constexpr void normalisedCopy(FloatRect& out) const noexcept { out = normalisedCopy(); }
    constexpr FloatRect normalisedCopy() const noexcept;
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

    /// Swaps left with right for orientation 0, top with bottom for orientation 1.
    /// Throws `Exception<1>`: "orient < 2 : invalid orientation!".
    /// @{
    void reflectedCopy(FloatRect& out, unsigned int orient) const { out = reflectedCopy(orient); }
    FloatRect reflectedCopy(unsigned int orient) const {
        VORN_ASSERT(orient < 2, "invalid orientation!");
        return orient == 0 ? horzReflectedCopy() : vertReflectedCopy();
    }
    /// @}

    /// Reflects NOTHING: checks `orient` and leaves the rectangle unchanged.
    /// Throws `Exception<1>`: "orient < 2 : invalid orientation!".
    /// @warning To reflect the rectangle, call `reflectHorz` or `reflectVert`.
    VORN_SURPRISE("reflects nothing; use reflectHorz() or reflectVert()")
    void reflect(unsigned int orient) { VORN_ASSERT(orient < 2, "invalid orientation!"); }

    // --- Ratios ---

    /// Reduces the rectangle to a part of itself. The sides of `ratio` are fractions of the width and the height,
    /// measured from left and top.
    /// @{
    constexpr void applyRatio(const FloatRect& ratio) noexcept { *this = applyRatioCopy(ratio); }
    constexpr void applyRatio(float leftSide, float topSide, float rightSide, float bottomSide) noexcept;
    constexpr void applyRatioCopy(FloatRect& out, const FloatRect& ratio) const noexcept;
    constexpr void applyRatioCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                  float bottomSide) const noexcept;
    constexpr FloatRect applyRatioCopy(const FloatRect& ratio) const noexcept;
    constexpr FloatRect applyRatioCopy(float leftSide, float topSide, float rightSide, float bottomSide) const noexcept;
    /// @}

    /// The inverse of `applyRatio`: computes the sides of `other` as fractions of the width and the height, or 0 and 0
    /// on an axis whose size is not greater than 0.
    /// @warning Such an axis is not reported. It has the size 0, is inverted or has a NaN: test `width` and `height`.
    /// @{
    constexpr void createRatio(const FloatRect& other) noexcept { *this = createRatioCopy(other); }
    constexpr void createRatio(float leftSide, float topSide, float rightSide, float bottomSide) noexcept;
    constexpr void createRatioCopy(FloatRect& out, const FloatRect& other) const noexcept;
    constexpr void createRatioCopy(FloatRect& out, float leftSide, float topSide, float rightSide,
                                   float bottomSide) const noexcept;
    constexpr FloatRect createRatioCopy(const FloatRect& other) const noexcept;
    constexpr FloatRect createRatioCopy(float leftSide, float topSide, float rightSide,
                                        float bottomSide) const noexcept;
    /// @}

    // --- Transformation ---

    /// Transforms centre and half size: right only for matrices that scale and translate. The result is normalised.
    /// @warning With a rotation the result is NOT the bounding box of the transformed corners. To transform the corners
    ///     write `matrix * Vector2CornerRect{...}`. An inverted rectangle becomes normalised with every matrix.
    /// @{
    VORN_SURPRISE("is no bounding box if the matrix rotates; use boundsOf(rect, matrix)")
    constexpr FloatRect operator*(const Matrix3& matrix) const noexcept;
    VORN_SURPRISE("is no bounding box if the matrix rotates; use boundsOf(rect, matrix)")
    constexpr FloatRect& operator*=(const Matrix3& matrix) noexcept { return *this = *this * matrix; }
    /// @}

    // --- Pinned resizing ---
    //
    // The parameters are the amount or the size, the pin (RectPoint) and an offset. Amount, size and offset are a
    // vector or two floats; a single amount or size applies to both axes.

    /// Increases width and height by twice the amount. A pin on a low side keeps that side in place; a pin on a high
    /// side does NOT.
    ///
    /// The offset is SUBTRACTED from the position of the result. `pinOrigin` is one of the nine values of RectPoint.
    /// Throws `Exception<1>` for any other value and leaves the rectangle unchanged: "<condition> : invalid origin",
    /// where the condition compares `pinOrigin` with all nine values.
    /// @warning With RIGHT or BOTTOM both sides move, the low side by twice the amount and the high side by four times
    ///     the amount: an axis from 0 to 10, increased by 1 at RIGHT, extends from 2 to 14. To keep a high side in
    ///     place, pass CENTRE and the amount as the offset.
    /// @{
    VORN_PINNED_SURPRISE
    void inflate(float amountX, float amountY, unsigned int pinOrigin, float offsetX, float offsetY);
    VORN_PINNED_SURPRISE
    void inflate(float amountX, float amountY, unsigned int pinOrigin, const Vector2& offset);
    VORN_PINNED_SURPRISE
    void inflate(const Vector2& amount, unsigned int pinOrigin, float offsetX, float offsetY);
    VORN_PINNED_SURPRISE
    void inflate(const Vector2& amount, unsigned int pinOrigin, const Vector2& offset);
    VORN_PINNED_SURPRISE
    void inflate(float amount, unsigned int pinOrigin, const Vector2& offset);
    /// @}

    /// Increases width and height as the other forms of `inflate` do, but does NOT check the pin.
    /// @warning Of an invalid pin the low four bits are used, and on each axis the flag of the high side has
    ///     precedence. For a checked pin write `inflate(amount, amount, pinOrigin, offsetX, offsetY)`.
    VORN_PINNED_SURPRISE
    constexpr void inflate(float amount, unsigned int pinOrigin, float offsetX, float offsetY) noexcept;

    /// The result of `inflate`. Each form checks the pin and throws as `inflate` does.
    /// @{
    VORN_PINNED_SURPRISE
    void inflatedCopy(FloatRect& out, float amountX, float amountY, unsigned int pinOrigin, float offsetX,
                      float offsetY) const;
    VORN_PINNED_SURPRISE
    void inflatedCopy(FloatRect& out, float amountX, float amountY, unsigned int pinOrigin,
                      const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    void inflatedCopy(FloatRect& out, const Vector2& amount, unsigned int pinOrigin, float offsetX,
                      float offsetY) const;
    VORN_PINNED_SURPRISE
    void inflatedCopy(FloatRect& out, const Vector2& amount, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    void inflatedCopy(FloatRect& out, float amount, unsigned int pinOrigin, float offsetX, float offsetY) const;
    VORN_PINNED_SURPRISE
    void inflatedCopy(FloatRect& out, float amount, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    FloatRect inflatedCopy(float amountX, float amountY, unsigned int pinOrigin, float offsetX, float offsetY) const;
    VORN_PINNED_SURPRISE
    FloatRect inflatedCopy(float amountX, float amountY, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    FloatRect inflatedCopy(const Vector2& amount, unsigned int pinOrigin, float offsetX, float offsetY) const;
    VORN_PINNED_SURPRISE
    FloatRect inflatedCopy(const Vector2& amount, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    FloatRect inflatedCopy(float amount, unsigned int pinOrigin, float offsetX, float offsetY) const;
    VORN_PINNED_SURPRISE
    FloatRect inflatedCopy(float amount, unsigned int pinOrigin, const Vector2& offset) const;
    /// @}

    /// Sets width and height. A pin on a low side keeps that side in place; a pin on a high side does NOT.
    ///
    /// The offset is SUBTRACTED from the position of the result. `pinOrigin` is one of the nine values of RectPoint;
    /// for any other the operation throws as `inflate` does.
    /// @warning With RIGHT or BOTTOM both sides move, the low side by the growth of the axis and the high side by twice
    ///     the growth: an axis from 0 to 10, resized to 12 at RIGHT, extends from 2 to 14. To keep a high side in
    ///     place, pass a pin on the low side and the growth as the offset.
    /// @{
    VORN_PINNED_SURPRISE
    void resize(float sizeX, float sizeY, unsigned int pinOrigin, float offsetX, float offsetY);
    VORN_PINNED_SURPRISE
    void resize(float sizeX, float sizeY, unsigned int pinOrigin, const Vector2& offset);
    VORN_PINNED_SURPRISE
    void resize(const Vector2& newSize, unsigned int pinOrigin, float offsetX, float offsetY);
    VORN_PINNED_SURPRISE
    void resize(const Vector2& newSize, unsigned int pinOrigin, const Vector2& offset);
    VORN_PINNED_SURPRISE
    void resize(float newSize, unsigned int pinOrigin, float offsetX, float offsetY);
    VORN_PINNED_SURPRISE
    void resize(float newSize, unsigned int pinOrigin, const Vector2& offset);
    /// @}

    /// The result of `resize`. Each form throws as `resize` does.
    /// @{
    VORN_PINNED_SURPRISE
    void resizedCopy(FloatRect& out, float sizeX, float sizeY, unsigned int pinOrigin, float offsetX,
                     float offsetY) const;
    VORN_PINNED_SURPRISE
    void resizedCopy(FloatRect& out, float sizeX, float sizeY, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    void resizedCopy(FloatRect& out, const Vector2& newSize, unsigned int pinOrigin, float offsetX,
                     float offsetY) const;
    VORN_PINNED_SURPRISE
    void resizedCopy(FloatRect& out, const Vector2& newSize, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    void resizedCopy(FloatRect& out, float newSize, unsigned int pinOrigin, float offsetX, float offsetY) const;
    VORN_PINNED_SURPRISE
    void resizedCopy(FloatRect& out, float newSize, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    FloatRect resizedCopy(float sizeX, float sizeY, unsigned int pinOrigin, float offsetX, float offsetY) const;
    VORN_PINNED_SURPRISE
    FloatRect resizedCopy(float sizeX, float sizeY, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    FloatRect resizedCopy(const Vector2& newSize, unsigned int pinOrigin, float offsetX, float offsetY) const;
    VORN_PINNED_SURPRISE
    FloatRect resizedCopy(const Vector2& newSize, unsigned int pinOrigin, const Vector2& offset) const;
    VORN_PINNED_SURPRISE
    FloatRect resizedCopy(float newSize, unsigned int pinOrigin, float offsetX, float offsetY) const;
    VORN_PINNED_SURPRISE
    FloatRect resizedCopy(float newSize, unsigned int pinOrigin, const Vector2& offset) const;
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
                                 float offsetY) const noexcept;
    constexpr FloatRect resized(float sizeX, float sizeY, unsigned int pin, float offsetX,
                                float offsetY) const noexcept;

    // The function names that the checks below report.
    static constexpr Name DIVIDE{"Vorn::FloatRect::operator /"};
    static constexpr Name DIVIDE_IN_PLACE{"Vorn::FloatRect::operator /="};
    static constexpr Name MODULO{"Vorn::FloatRect::operator %"};
    static constexpr Name MODULO_IN_PLACE{"Vorn::FloatRect::operator %="};
    static constexpr Name INFLATE{"Vorn::FloatRect::inflate"};
    static constexpr Name INFLATED_COPY{"Vorn::FloatRect::inflatedCopy"};
    static constexpr Name RESIZE{"Vorn::FloatRect::resize"};
    static constexpr Name RESIZED_COPY{"Vorn::FloatRect::resizedCopy"};

    // Checks the divisor of each side and returns all four.
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

VORN_ALLOW_SURPRISES_END

#undef VORN_ORDER_SURPRISE
#undef VORN_PINNED_SURPRISE

// What follows is the implementation of the forms above.
#include "Vorn/Private/FloatRectForms.h"
#include "Vorn/Private/FloatRectResizing.h"
