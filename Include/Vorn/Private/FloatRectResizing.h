// FloatRectResizing: pinned resizing of FloatRect. Implementation of FloatRect.h; not for direct use. The checks of
// pins are in FloatRect.h, the file that their reports name.
#pragma once

#include "Vorn/FloatRect.h"
#include "Vorn/Private/Surprise.h"

VORN_ALLOW_SURPRISES_BEGIN // the operations call each other

namespace Vorn {

constexpr FloatRect FloatRect::inflated(float amountX, float amountY, unsigned int pin, float offsetX,
                                        float offsetY) const noexcept {
    return join(horizontal().inflated(amountX, pin, offsetX), vertical().inflated(amountY, pin >> 1, offsetY));
}

constexpr FloatRect FloatRect::resized(float sizeX, float sizeY, unsigned int pin, float offsetX,
                                       float offsetY) const noexcept {
    return join(horizontal().resized(sizeX, pin, offsetX), vertical().resized(sizeY, pin >> 1, offsetY));
}

inline void FloatRect::inflate(float amountX, float amountY, unsigned int pinOrigin, float offsetX, float offsetY) {
    checkPin<INFLATE>(pinOrigin);
    *this = inflated(amountX, amountY, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::inflate(float amountX, float amountY, unsigned int pinOrigin, const Vector2& offset) {
    inflate(amountX, amountY, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::inflate(const Vector2& amount, unsigned int pinOrigin, float offsetX, float offsetY) {
    inflate(amount.x, amount.y, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::inflate(const Vector2& amount, unsigned int pinOrigin, const Vector2& offset) {
    inflate(amount.x, amount.y, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::inflate(float amount, unsigned int pinOrigin, const Vector2& offset) {
    inflate(amount, amount, pinOrigin, offset.x, offset.y);
}

constexpr void FloatRect::inflate(float amount, unsigned int pinOrigin, float offsetX, float offsetY) noexcept {
    *this = inflated(amount, amount, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::inflatedCopy(FloatRect& out, float amountX, float amountY, unsigned int pinOrigin, float offsetX,
                                    float offsetY) const {
    out = inflatedCopy(amountX, amountY, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::inflatedCopy(FloatRect& out, float amountX, float amountY, unsigned int pinOrigin,
                                    const Vector2& offset) const {
    out = inflatedCopy(amountX, amountY, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::inflatedCopy(FloatRect& out, const Vector2& amount, unsigned int pinOrigin, float offsetX,
                                    float offsetY) const {
    out = inflatedCopy(amount.x, amount.y, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::inflatedCopy(FloatRect& out, const Vector2& amount, unsigned int pinOrigin,
                                    const Vector2& offset) const {
    out = inflatedCopy(amount.x, amount.y, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::inflatedCopy(FloatRect& out, float amount, unsigned int pinOrigin, float offsetX,
                                    float offsetY) const {
    out = inflatedCopy(amount, amount, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::inflatedCopy(FloatRect& out, float amount, unsigned int pinOrigin, const Vector2& offset) const {
    out = inflatedCopy(amount, amount, pinOrigin, offset.x, offset.y);
}

inline FloatRect FloatRect::inflatedCopy(float amountX, float amountY, unsigned int pinOrigin, float offsetX,
                                         float offsetY) const {
    checkPin<INFLATED_COPY>(pinOrigin);
    return inflated(amountX, amountY, pinOrigin, offsetX, offsetY);
}

inline FloatRect FloatRect::inflatedCopy(float amountX, float amountY, unsigned int pinOrigin,
                                         const Vector2& offset) const {
    return inflatedCopy(amountX, amountY, pinOrigin, offset.x, offset.y);
}

inline FloatRect FloatRect::inflatedCopy(const Vector2& amount, unsigned int pinOrigin, float offsetX,
                                         float offsetY) const {
    return inflatedCopy(amount.x, amount.y, pinOrigin, offsetX, offsetY);
}

inline FloatRect FloatRect::inflatedCopy(const Vector2& amount, unsigned int pinOrigin, const Vector2& offset) const {
    return inflatedCopy(amount.x, amount.y, pinOrigin, offset.x, offset.y);
}

inline FloatRect FloatRect::inflatedCopy(float amount, unsigned int pinOrigin, float offsetX, float offsetY) const {
    return inflatedCopy(amount, amount, pinOrigin, offsetX, offsetY);
}

inline FloatRect FloatRect::inflatedCopy(float amount, unsigned int pinOrigin, const Vector2& offset) const {
    return inflatedCopy(amount, amount, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::resize(float sizeX, float sizeY, unsigned int pinOrigin, float offsetX, float offsetY) {
    checkPin<RESIZE>(pinOrigin);
    *this = resized(sizeX, sizeY, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::resize(float sizeX, float sizeY, unsigned int pinOrigin, const Vector2& offset) {
    resize(sizeX, sizeY, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::resize(const Vector2& newSize, unsigned int pinOrigin, float offsetX, float offsetY) {
    resize(newSize.x, newSize.y, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::resize(const Vector2& newSize, unsigned int pinOrigin, const Vector2& offset) {
    resize(newSize.x, newSize.y, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::resize(float newSize, unsigned int pinOrigin, float offsetX, float offsetY) {
    resize(newSize, newSize, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::resize(float newSize, unsigned int pinOrigin, const Vector2& offset) {
    resize(newSize, newSize, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::resizedCopy(FloatRect& out, float sizeX, float sizeY, unsigned int pinOrigin, float offsetX,
                                   float offsetY) const {
    out = resizedCopy(sizeX, sizeY, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::resizedCopy(FloatRect& out, float sizeX, float sizeY, unsigned int pinOrigin,
                                   const Vector2& offset) const {
    out = resizedCopy(sizeX, sizeY, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::resizedCopy(FloatRect& out, const Vector2& newSize, unsigned int pinOrigin, float offsetX,
                                   float offsetY) const {
    out = resizedCopy(newSize.x, newSize.y, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::resizedCopy(FloatRect& out, const Vector2& newSize, unsigned int pinOrigin,
                                   const Vector2& offset) const {
    out = resizedCopy(newSize.x, newSize.y, pinOrigin, offset.x, offset.y);
}

inline void FloatRect::resizedCopy(FloatRect& out, float newSize, unsigned int pinOrigin, float offsetX,
                                   float offsetY) const {
    out = resizedCopy(newSize, newSize, pinOrigin, offsetX, offsetY);
}

inline void FloatRect::resizedCopy(FloatRect& out, float newSize, unsigned int pinOrigin, const Vector2& offset) const {
    out = resizedCopy(newSize, newSize, pinOrigin, offset.x, offset.y);
}

inline FloatRect FloatRect::resizedCopy(float sizeX, float sizeY, unsigned int pinOrigin, float offsetX,
                                        float offsetY) const {
    checkPin<RESIZED_COPY>(pinOrigin);
    return resized(sizeX, sizeY, pinOrigin, offsetX, offsetY);
}

inline FloatRect FloatRect::resizedCopy(float sizeX, float sizeY, unsigned int pinOrigin, const Vector2& offset) const {
    return resizedCopy(sizeX, sizeY, pinOrigin, offset.x, offset.y);
}

inline FloatRect FloatRect::resizedCopy(const Vector2& newSize, unsigned int pinOrigin, float offsetX,
                                        float offsetY) const {
    return resizedCopy(newSize.x, newSize.y, pinOrigin, offsetX, offsetY);
}

inline FloatRect FloatRect::resizedCopy(const Vector2& newSize, unsigned int pinOrigin, const Vector2& offset) const {
    return resizedCopy(newSize.x, newSize.y, pinOrigin, offset.x, offset.y);
}

inline FloatRect FloatRect::resizedCopy(float newSize, unsigned int pinOrigin, float offsetX, float offsetY) const {
    return resizedCopy(newSize, newSize, pinOrigin, offsetX, offsetY);
}

inline FloatRect FloatRect::resizedCopy(float newSize, unsigned int pinOrigin, const Vector2& offset) const {
    return resizedCopy(newSize, newSize, pinOrigin, offset.x, offset.y);
}

} // namespace Vorn

VORN_ALLOW_SURPRISES_END
