// RectAxis: one axis of a rectangle, with the formulas that apply to each axis separately. Support of FloatRect.h; not
// for direct use.
#pragma once

#include "Vorn/RectPoint.h"

namespace VornPrivate {

/// The two sides of an axis: left and right, or top and bottom.
struct RectAxis {
    constexpr float size() const noexcept { return high - low; }
    constexpr float centre() const noexcept { return float((double(high) + double(low)) * 0.5); }
    constexpr float halfSize() const noexcept { return float((double(high) - double(low)) * 0.5); }

    constexpr bool contains(float value) const noexcept { return (value >= low) & (value <= high); }
    constexpr bool intersects(RectAxis other) const noexcept { return other.high > low || high > other.low; }

    // In set operations a side moves only if the other side is strictly beyond it.
    constexpr RectAxis merged(RectAxis other) const noexcept {
        return {other.low < low ? other.low : low, other.high > high ? other.high : high};
    }
    constexpr RectAxis clipped(RectAxis other) const noexcept {
        return {other.low > low ? other.low : low, other.high < high ? other.high : high};
    }
    constexpr RectAxis grown(float value) const noexcept {
        if (value < low) return {value, high};
        return {low, value > high ? value : high};
    }

    constexpr RectAxis swapped() const noexcept { return {high, low}; }

    constexpr RectAxis atFractions(RectAxis ratio) const noexcept {
        return {float(double(low) + double(ratio.low) * double(size())),
                float(double(low) + double(ratio.high) * double(size()))};
    }
    constexpr RectAxis fractionsOf(RectAxis other) const noexcept {
        if (!(size() > 0.0f)) return {0.0f, 0.0f};
        return {float((double(other.low) - double(low)) / double(size())),
                float((double(other.high) - double(low)) / double(size()))};
    }

    // Resizing reads the flags LEFT and RIGHT of a pin. For a vertical axis the caller shifts TOP and BOTTOM to their
    // place.

    /// Adds twice the amount to the size. The low side moves by twice the amount if the high side is pinned, by 0 if
    /// the low side is pinned, and by minus the amount if the axis is centred.
    constexpr RectAxis inflated(float amount, unsigned int pin, float offset) const noexcept {
        const int k = 2 * isPinnedHigh(pin) - isCentred(pin);
        const float newSize = float(2.0 * double(amount) + double(high) - double(low));
        const float newLow = float(double(low) + double(amount) * k - double(offset));
        return {newLow, newLow + newSize};
    }

    /// Sets the size. The low side moves by the growth if the high side is pinned, by 0 if the low side is pinned, and
    /// by minus half the growth if the axis is centred.
    constexpr RectAxis resized(float newSize, unsigned int pin, float offset) const noexcept {
        const double k = isPinnedHigh(pin) - 0.5 * isCentred(pin);
        const double delta = double(newSize) - double(high) + double(low);
        const float newLow = float(double(low) + k * delta - double(offset));
        return {newLow, newLow + newSize};
    }

    static constexpr int isPinnedHigh(unsigned int pin) noexcept { return (pin & Vorn::RectPoint::RIGHT) != 0; }
    static constexpr int isCentred(unsigned int pin) noexcept {
        return (pin & (Vorn::RectPoint::LEFT | Vorn::RectPoint::RIGHT)) == 0;
    }

    float low;
    float high;
};

} // namespace VornPrivate
