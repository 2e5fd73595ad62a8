// RectAxis: one axis of a rectangle, and the formulas that each axis follows by itself. Support of FloatRect.h; not for
// direct use.
#pragma once

#include "Vorn/RectPoint.h"

namespace VornPrivate {

/// The two sides of an axis: left and right, or top and bottom.
struct RectAxis {
    constexpr float size() const noexcept { return high - low; }
    constexpr float centre() const noexcept { return float((double(high) + low) * 0.5); }
    constexpr float halfSize() const noexcept { return float((double(high) - low) * 0.5); }

    constexpr bool contains(float value) const noexcept { return (value >= low) & (value <= high); }
    constexpr bool intersects(RectAxis other) const noexcept { return other.high > low || high > other.low; }

    // In set operations a side moves only if the other one is strictly beyond it.
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
        return {float(low + double(ratio.low) * size()), float(low + double(ratio.high) * size())};
    }
    constexpr RectAxis fractionsOf(RectAxis other) const noexcept {
        if (!(size() > 0.0f)) return {0.0f, 0.0f};
        return {float((double(other.low) - low) / size()), float((double(other.high) - low) / size())};
    }

    // Resizing knows the flags LEFT and RIGHT of a pin. A vertical axis gives its own, shifted by one bit, in their
    // place.

    /// Grows by `amount` at each side. The low side moves up by the amount twice when pinned high, not at all when
    /// pinned low, and by minus the amount when centred.
    constexpr RectAxis inflated(float amount, unsigned int pin, float offset) const noexcept {
        const int k = 2 * isPinnedHigh(pin) - isCentred(pin);
        const float newSize = float(2.0 * amount + high - low);
        const float newLow = float(low + double(amount) * k - offset);
        return {newLow, newLow + newSize};
    }

    /// Takes a new size. The low side moves up by the growth when pinned high, not at all when pinned low, and by minus
    /// half the growth when centred.
    constexpr RectAxis resized(float newSize, unsigned int pin, float offset) const noexcept {
        const double k = isPinnedHigh(pin) - 0.5 * isCentred(pin);
        const double delta = double(newSize) - high + low;
        const float newLow = float(low + k * delta - offset);
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
