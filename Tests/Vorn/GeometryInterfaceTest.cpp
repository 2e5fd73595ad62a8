// Checks the interface of the geometry classes at compile time, and their constants before main.
#include "Vorn/FloatRect.h"

#include "Support/Floats.h"

#include <gtest/gtest.h>

namespace {

using Vorn::ComplexAngle;
using Vorn::FloatRect;
using Vorn::Matrix3;
using Vorn::RectBase;
using Vorn::Vector2;
using Vorn::Vector2CornerRect;
using Vorn::XYPairBase;
using Pair = Vorn::XYPair<float, float>;
using Rect = Vorn::Rect<float, float>;

// Checks that an operation exists with exactly this result, these parameters and these qualifiers. An operation that is
// noexcept throws nothing.
#define HAS(type, operation) static_assert(std::is_same_v<decltype(static_cast<type>(operation)), type>)

// XYPair
HAS(Pair& (Pair::*)(const Pair&) noexcept, &Pair::operator=);
HAS(Pair& (Pair::*)(float) noexcept, &Pair::operator=);
HAS(const float& (Pair::*)(unsigned int) const, &Pair::operator[]);
HAS(float& (Pair::*)(unsigned int), &Pair::operator[]);
HAS(bool (Pair::*)(const Pair&) const noexcept, &Pair::operator==);
HAS(bool (Pair::*)(const Pair&) const noexcept, &Pair::operator!=);

// Vector2
HAS(Vector2& (Vector2::*)(const Vector2&) noexcept, &Vector2::operator=);
HAS(Vector2& (Vector2::*)(const Pair&) noexcept, &Vector2::operator=);
HAS(Vector2& (Vector2::*)(float) noexcept, &Vector2::operator=);
HAS(Vector2 (Vector2::*)(const Pair&) const noexcept, &Vector2::operator+);
HAS(Vector2& (Vector2::*)(const Pair&) noexcept, &Vector2::operator+=);
HAS(Vector2 (Vector2::*)(float) const noexcept, &Vector2::operator+);
HAS(Vector2& (Vector2::*)(float) noexcept, &Vector2::operator+=);
HAS(Vector2 (Vector2::*)(const Pair&) const noexcept, &Vector2::operator-);
HAS(Vector2& (Vector2::*)(const Pair&) noexcept, &Vector2::operator-=);
HAS(Vector2 (Vector2::*)(float) const noexcept, &Vector2::operator-);
HAS(Vector2& (Vector2::*)(float) noexcept, &Vector2::operator-=);
HAS(Vector2 (Vector2::*)(const Pair&) const noexcept, &Vector2::operator*);
HAS(Vector2& (Vector2::*)(const Pair&) noexcept, &Vector2::operator*=);
HAS(Vector2 (Vector2::*)(float) const noexcept, &Vector2::operator*);
HAS(Vector2& (Vector2::*)(float) noexcept, &Vector2::operator*=);
HAS(Vector2 (Vector2::*)(const Pair&) const, &Vector2::operator/);
HAS(Vector2& (Vector2::*)(const Pair&), &Vector2::operator/=);
HAS(Vector2 (Vector2::*)(float) const, &Vector2::operator/);
HAS(Vector2& (Vector2::*)(float), &Vector2::operator/=);
HAS(Vector2 (Vector2::*)(const Matrix3&) const noexcept, &Vector2::operator*);
HAS(Vector2& (Vector2::*)(const Matrix3&) noexcept, &Vector2::operator*=);
HAS(const Vector2& (Vector2::*)() const noexcept, &Vector2::operator+);
HAS(Vector2 (Vector2::*)() const noexcept, &Vector2::operator-);
HAS(float (Vector2::*)(const Pair&) const noexcept, &Vector2::dot);
HAS(float (Vector2::*)(const Pair&) const noexcept, &Vector2::dotProduct);
HAS(float (Vector2::*)(const Pair&) const noexcept, &Vector2::cross);
HAS(float (Vector2::*)(const Pair&) const noexcept, &Vector2::crossProduct);
HAS(float (Vector2::*)() const noexcept, &Vector2::squaredLength);
HAS(float (Vector2::*)() const noexcept, &Vector2::inverseLength);
HAS(float (Vector2::*)() const noexcept, &Vector2::length);
HAS(void (Vector2::*)() noexcept, &Vector2::normalise);
HAS(void (Vector2::*)(Pair&) const noexcept, &Vector2::normalisedCopy);
HAS(Vector2 (Vector2::*)() const noexcept, &Vector2::normalisedCopy);
HAS(bool (Vector2::*)() const noexcept, &Vector2::isZeroLength);
HAS(bool (Vector2::*)() const noexcept, &Vector2::isZero);
HAS(bool (Vector2::*)(const Pair&) const noexcept, &Vector2::operator<);
HAS(bool (Vector2::*)(const Pair&) const noexcept, &Vector2::operator>);
HAS(bool (Vector2::*)(const Pair&) const noexcept, &Vector2::operator<=);
HAS(bool (Vector2::*)(const Pair&) const noexcept, &Vector2::operator>=);
HAS(void (Vector2::*)(const Pair&) noexcept, &Vector2::upperLimit);
HAS(void (Vector2::*)(const Pair&) noexcept, &Vector2::lowerLimit);
HAS(Vector2 (Vector2::*)(const Pair&) const noexcept, &Vector2::midPoint);
HAS(Vector2 (Vector2::*)() const noexcept, &Vector2::perpendicular);
HAS(void (Vector2::*)(Pair&) const noexcept, &Vector2::perpendicular);
HAS(Vector2 (Vector2::*)(const Pair&) const noexcept, &Vector2::reflect);
HAS(void (Vector2::*)(const Pair&, Pair&) const noexcept, &Vector2::reflect);

// ComplexAngle
HAS(ComplexAngle& (ComplexAngle::*)(const ComplexAngle&) noexcept, &ComplexAngle::operator=);
HAS(ComplexAngle& (ComplexAngle::*)(const Pair&) noexcept, &ComplexAngle::operator=);
HAS(ComplexAngle& (ComplexAngle::*)(float) noexcept, &ComplexAngle::operator=);
HAS(ComplexAngle (ComplexAngle::*)(const Pair&) const noexcept, &ComplexAngle::operator+);
HAS(ComplexAngle& (ComplexAngle::*)(const Pair&) noexcept, &ComplexAngle::operator+=);
HAS(ComplexAngle (ComplexAngle::*)(const Pair&) const noexcept, &ComplexAngle::operator-);
HAS(ComplexAngle& (ComplexAngle::*)(const Pair&) noexcept, &ComplexAngle::operator-=);
HAS(ComplexAngle (ComplexAngle::*)(const Pair&) const noexcept, &ComplexAngle::operator*);
HAS(ComplexAngle& (ComplexAngle::*)(const Pair&) noexcept, &ComplexAngle::operator*=);
HAS(ComplexAngle (ComplexAngle::*)(float) const noexcept, &ComplexAngle::operator*);
HAS(ComplexAngle& (ComplexAngle::*)(float) noexcept, &ComplexAngle::operator*=);
HAS(Vector2 (ComplexAngle::*)(const Vector2&) const noexcept, &ComplexAngle::operator*);
HAS(const ComplexAngle& (ComplexAngle::*)() const noexcept, &ComplexAngle::operator+);
HAS(ComplexAngle (ComplexAngle::*)() const noexcept, &ComplexAngle::operator-);
HAS(float (ComplexAngle::*)(const Pair&) const noexcept, &ComplexAngle::dot);
HAS(float (ComplexAngle::*)(const Pair&) const noexcept, &ComplexAngle::dotProduct);
HAS(float (ComplexAngle::*)() noexcept, &ComplexAngle::normalise);
HAS(ComplexAngle (ComplexAngle::*)() const noexcept, &ComplexAngle::inverse);

// Matrix3
HAS(Matrix3& (Matrix3::*)(const Matrix3&) noexcept, &Matrix3::operator=);
HAS(bool (Matrix3::*)(const Matrix3&) const noexcept, &Matrix3::operator==);
HAS(bool (Matrix3::*)(const Matrix3&) const noexcept, &Matrix3::operator!=);
HAS(void (Matrix3::*)(float) noexcept, &Matrix3::multiply);
HAS(Matrix3& (Matrix3::*)(float) noexcept, &Matrix3::operator*=);
HAS(Matrix3 (Matrix3::*)(float) const noexcept, &Matrix3::operator*);
HAS(void (Matrix3::*)(Matrix3&, float) const noexcept, &Matrix3::multiplyCopy);
HAS(Matrix3 (Matrix3::*)(float) const noexcept, &Matrix3::multiplyCopy);
HAS(Matrix3 (Matrix3::*)(const Matrix3&) const noexcept, &Matrix3::operator+);
HAS(Matrix3& (Matrix3::*)(const Matrix3&) noexcept, &Matrix3::operator+=);
HAS(Matrix3 (Matrix3::*)(const Matrix3&) const noexcept, &Matrix3::operator-);
HAS(Matrix3& (Matrix3::*)(const Matrix3&) noexcept, &Matrix3::operator-=);
HAS(Matrix3 (Matrix3::*)(const Matrix3&) const noexcept, &Matrix3::operator*);
HAS(Matrix3& (Matrix3::*)(const Matrix3&) noexcept, &Matrix3::operator*=);
HAS(void (Matrix3::*)() noexcept, &Matrix3::transpose);
HAS(Matrix3 (Matrix3::*)() const noexcept, &Matrix3::transposedCopy);
HAS(void (Matrix3::*)(), &Matrix3::inverse);
HAS(Matrix3 (Matrix3::*)() const, &Matrix3::inversedCopy);
HAS(void (Matrix3::*)(Matrix3&) const, &Matrix3::inversedCopy);
HAS(void (Matrix3::*)(const Vector2&) noexcept, &Matrix3::setTrans);
HAS(void (Matrix3::*)(float, float) noexcept, &Matrix3::setTrans);
HAS(void (Matrix3::*)(const Vector2&) noexcept, &Matrix3::translate);
HAS(void (Matrix3::*)(float, float) noexcept, &Matrix3::translate);
HAS(void (Matrix3::*)(const Vector2&) noexcept, &Matrix3::makeTranslation);
HAS(void (Matrix3::*)(float, float) noexcept, &Matrix3::makeTranslation);
HAS(void (Matrix3::*)(const Vector2&) noexcept, &Matrix3::scale);
HAS(void (Matrix3::*)(float, float) noexcept, &Matrix3::scale);
HAS(void (Matrix3::*)(Matrix3&, const Vector2&) const noexcept, &Matrix3::translatedCopy);
HAS(Matrix3 (Matrix3::*)(const Vector2&) const noexcept, &Matrix3::translatedCopy);
HAS(void (Matrix3::*)(Matrix3&, float, float) const noexcept, &Matrix3::translatedCopy);
HAS(Matrix3 (Matrix3::*)(float, float) const noexcept, &Matrix3::translatedCopy);
HAS(void (Matrix3::*)(Matrix3&, const Vector2&) const noexcept, &Matrix3::scaledCopy);
HAS(Matrix3 (Matrix3::*)(const Vector2&) const noexcept, &Matrix3::scaledCopy);
HAS(void (Matrix3::*)(Matrix3&, float, float) const noexcept, &Matrix3::scaledCopy);
HAS(Matrix3 (Matrix3::*)(float, float) const noexcept, &Matrix3::scaledCopy);
HAS(void (Matrix3::*)(const ComplexAngle&, const Vector2&, const Vector2&) noexcept, &Matrix3::makeTransform);
HAS(void (Matrix3::*)(float, const Vector2&, const Vector2&) noexcept, &Matrix3::makeTransform);
HAS(void (Matrix3::*)(const ComplexAngle&, const Vector2&, const Vector2&) noexcept, &Matrix3::makeInverseTransform);
HAS(void (Matrix3::*)(float, const Vector2&, const Vector2&) noexcept, &Matrix3::makeInverseTransform);
HAS(Vector2 (Matrix3::*)() const noexcept, &Matrix3::getTrans);
HAS(void (Matrix3::*)(Vector2&) const noexcept, &Matrix3::getTrans);
HAS(void (Matrix3::*)(Vector2&) const noexcept, &Matrix3::transform);
HAS(void (Matrix3::*)(XYPairBase<float>&, const XYPairBase<float>&) const noexcept, &Matrix3::transformCopy);
HAS(Vector2 (Matrix3::*)(const Vector2&) const noexcept, &Matrix3::transformCopy);
HAS(Vector2 (Matrix3::*)(const Vector2&) const noexcept, &Matrix3::operator*);
HAS(Vector2CornerRect (Matrix3::*)(const Vector2CornerRect&) const noexcept, &Matrix3::operator*);

// Rect
HAS(Rect& (Rect::*)(const Rect&) noexcept, &Rect::operator=);
HAS(Rect& (Rect::*)(const RectBase<float>&) noexcept, &Rect::operator=);
HAS(void (Rect::*)(float, float, float, float) noexcept, &Rect::setAll);
HAS(void (Rect::*)(float, float, float) noexcept, &Rect::setAll);
HAS(void (Rect::*)(float, float) noexcept, &Rect::setAll);
HAS(void (Rect::*)(float) noexcept, &Rect::setAll);
HAS(void (Rect::*)(const Pair&) noexcept, &Rect::setAll);
HAS(void (Rect::*)(const Pair&, const Pair&) noexcept, &Rect::setAll);
HAS(float (Rect::*)(unsigned int) const, &Rect::operator[]);
HAS(float& (Rect::*)(unsigned int), &Rect::operator[]);
HAS(float (Rect::*)(unsigned int) const, &Rect::getSide);
HAS(void (Rect::*)(unsigned int, float), &Rect::setSide);
HAS(float (Rect::*)(unsigned int, unsigned int) const, &Rect::getSide);
HAS(void (Rect::*)(unsigned int, unsigned int, float), &Rect::setSide);
HAS(void (Rect::*)(unsigned int, float, float), &Rect::setByOrient);
HAS(void (Rect::*)(unsigned int, float, float), &Rect::setByCorner);
HAS(void (Rect::*)(unsigned int, const Pair&), &Rect::setByCorner);
HAS(bool (Rect::*)(const Rect&) const noexcept, &Rect::operator==);
HAS(bool (Rect::*)(const Rect&) const noexcept, &Rect::operator!=);

// FloatRect
HAS(FloatRect& (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::operator=);
HAS(FloatRect& (FloatRect::*)(const Rect&) noexcept, &FloatRect::operator=);
HAS(FloatRect& (FloatRect::*)(const RectBase<float>&) noexcept, &FloatRect::operator=);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator+);
HAS(FloatRect& (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::operator+=);
HAS(FloatRect (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::operator+);
HAS(FloatRect& (FloatRect::*)(const Vector2&) noexcept, &FloatRect::operator+=);
HAS(FloatRect (FloatRect::*)(float) const noexcept, &FloatRect::operator+);
HAS(FloatRect& (FloatRect::*)(float) noexcept, &FloatRect::operator+=);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator-);
HAS(FloatRect& (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::operator-=);
HAS(FloatRect (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::operator-);
HAS(FloatRect& (FloatRect::*)(const Vector2&) noexcept, &FloatRect::operator-=);
HAS(FloatRect (FloatRect::*)(float) const noexcept, &FloatRect::operator-);
HAS(FloatRect& (FloatRect::*)(float) noexcept, &FloatRect::operator-=);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator*);
HAS(FloatRect& (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::operator*=);
HAS(FloatRect (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::operator*);
HAS(FloatRect& (FloatRect::*)(const Vector2&) noexcept, &FloatRect::operator*=);
HAS(FloatRect (FloatRect::*)(float) const noexcept, &FloatRect::operator*);
HAS(FloatRect& (FloatRect::*)(float) noexcept, &FloatRect::operator*=);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const, &FloatRect::operator/);
HAS(FloatRect& (FloatRect::*)(const FloatRect&), &FloatRect::operator/=);
HAS(FloatRect (FloatRect::*)(const Vector2&) const, &FloatRect::operator/);
HAS(FloatRect& (FloatRect::*)(const Vector2&), &FloatRect::operator/=);
HAS(FloatRect (FloatRect::*)(float) const, &FloatRect::operator/);
HAS(FloatRect& (FloatRect::*)(float), &FloatRect::operator/=);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const, &FloatRect::operator%);
HAS(FloatRect& (FloatRect::*)(const FloatRect&), &FloatRect::operator%=);
HAS(FloatRect (FloatRect::*)(const Vector2&) const, &FloatRect::operator%);
HAS(FloatRect& (FloatRect::*)(const Vector2&), &FloatRect::operator%=);
HAS(FloatRect (FloatRect::*)(float) const, &FloatRect::operator%);
HAS(FloatRect& (FloatRect::*)(float), &FloatRect::operator%=);
HAS(void (FloatRect::*)(float, float, float, float) noexcept, &FloatRect::add);
HAS(void (FloatRect::*)(float, float) noexcept, &FloatRect::add);
HAS(void (FloatRect::*)(float, float) noexcept, &FloatRect::translate);
HAS(void (FloatRect::*)(FloatRect&, const FloatRect&) const noexcept, &FloatRect::addCopy);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&) const noexcept, &FloatRect::addCopy);
HAS(void (FloatRect::*)(FloatRect&, float) const noexcept, &FloatRect::addCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float, float, float) const noexcept, &FloatRect::addCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float) const noexcept, &FloatRect::addCopy);
HAS(FloatRect (FloatRect::*)(float, float, float, float) const noexcept, &FloatRect::addCopy);
HAS(FloatRect (FloatRect::*)(float, float) const noexcept, &FloatRect::addCopy);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&) const noexcept, &FloatRect::translateCopy);
HAS(void (FloatRect::*)(FloatRect&, float) const noexcept, &FloatRect::translateCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float) const noexcept, &FloatRect::translateCopy);
HAS(FloatRect (FloatRect::*)(float, float) const noexcept, &FloatRect::translateCopy);
HAS(void (FloatRect::*)(float, float, float, float) noexcept, &FloatRect::subtract);
HAS(void (FloatRect::*)(float, float) noexcept, &FloatRect::subtract);
HAS(void (FloatRect::*)(float, float) noexcept, &FloatRect::reverseTranslate);
HAS(void (FloatRect::*)(FloatRect&, const FloatRect&) const noexcept, &FloatRect::subtractCopy);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&) const noexcept, &FloatRect::subtractCopy);
HAS(void (FloatRect::*)(FloatRect&, float) const noexcept, &FloatRect::subtractCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float, float, float) const noexcept, &FloatRect::subtractCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float) const noexcept, &FloatRect::subtractCopy);
HAS(FloatRect (FloatRect::*)(float, float, float, float) const noexcept, &FloatRect::subtractCopy);
HAS(FloatRect (FloatRect::*)(float, float) const noexcept, &FloatRect::subtractCopy);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&) const noexcept, &FloatRect::reverseTranslateCopy);
HAS(void (FloatRect::*)(FloatRect&, float) const noexcept, &FloatRect::reverseTranslateCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float) const noexcept, &FloatRect::reverseTranslateCopy);
HAS(FloatRect (FloatRect::*)(float, float) const noexcept, &FloatRect::reverseTranslateCopy);
HAS(const FloatRect& (FloatRect::*)() const noexcept, &FloatRect::operator+);
HAS(FloatRect (FloatRect::*)() const noexcept, &FloatRect::operator-);
HAS(FloatRect& (FloatRect::*)() noexcept, &FloatRect::operator++);
HAS(FloatRect (FloatRect::*)(int) noexcept, &FloatRect::operator++);
HAS(FloatRect& (FloatRect::*)() noexcept, &FloatRect::operator--);
HAS(FloatRect (FloatRect::*)(int) noexcept, &FloatRect::operator--);
HAS(float (FloatRect::*)() const noexcept, &FloatRect::getWidth);
HAS(float (FloatRect::*)() const noexcept, &FloatRect::width);
HAS(float (FloatRect::*)() const noexcept, &FloatRect::getHeight);
HAS(float (FloatRect::*)() const noexcept, &FloatRect::height);
HAS(float (FloatRect::*)() const noexcept, &FloatRect::areaSize);
HAS(Vector2 (FloatRect::*)() const noexcept, &FloatRect::getSize);
HAS(Vector2 (FloatRect::*)() const noexcept, &FloatRect::size);
HAS(Vector2 (FloatRect::*)() const noexcept, &FloatRect::getCenter);
HAS(Vector2 (FloatRect::*)() const noexcept, &FloatRect::getHalfSize);
HAS(void (FloatRect::*)(Vector2&) const noexcept, &FloatRect::getSize);
HAS(float (FloatRect::*)(unsigned int) const, &FloatRect::getSize);
HAS(bool (FloatRect::*)() const noexcept, &FloatRect::isNormalised);
HAS(bool (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::isInside);
HAS(bool (FloatRect::*)(float, float) const noexcept, &FloatRect::isInside);
HAS(bool (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::intersects);
HAS(bool (FloatRect::*)(float, float, float, float) const noexcept, &FloatRect::intersects);
HAS(bool (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator<);
HAS(bool (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::operator<);
HAS(bool (FloatRect::*)(float) const noexcept, &FloatRect::operator<);
HAS(bool (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator<=);
HAS(bool (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::operator<=);
HAS(bool (FloatRect::*)(float) const noexcept, &FloatRect::operator<=);
HAS(bool (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator>);
HAS(bool (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::operator>);
HAS(bool (FloatRect::*)(float) const noexcept, &FloatRect::operator>);
HAS(bool (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator>=);
HAS(bool (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::operator>=);
HAS(bool (FloatRect::*)(float) const noexcept, &FloatRect::operator>=);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator|);
HAS(FloatRect& (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::operator|=);
HAS(FloatRect (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::operator|);
HAS(FloatRect& (FloatRect::*)(const Vector2&) noexcept, &FloatRect::operator|=);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::operator&);
HAS(FloatRect& (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::operator&=);
HAS(void (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::merge);
HAS(void (FloatRect::*)(float, float, float, float) noexcept, &FloatRect::merge);
HAS(void (FloatRect::*)(float, float) noexcept, &FloatRect::merge);
HAS(void (FloatRect::*)(FloatRect&, const FloatRect&) const noexcept, &FloatRect::mergedCopy);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::mergedCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float, float, float) const noexcept, &FloatRect::mergedCopy);
HAS(FloatRect (FloatRect::*)(float, float, float, float) const noexcept, &FloatRect::mergedCopy);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&) const noexcept, &FloatRect::mergedCopy);
HAS(FloatRect (FloatRect::*)(const Vector2&) const noexcept, &FloatRect::mergedCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float) const noexcept, &FloatRect::mergedCopy);
HAS(FloatRect (FloatRect::*)(float, float) const noexcept, &FloatRect::mergedCopy);
HAS(void (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::clip);
HAS(void (FloatRect::*)(float, float, float, float) noexcept, &FloatRect::clip);
HAS(void (FloatRect::*)(float, float, float, float) noexcept, &FloatRect::intersection);
HAS(void (FloatRect::*)(FloatRect&, const FloatRect&) const noexcept, &FloatRect::intersectionCopy);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::intersectionCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float, float, float) const noexcept, &FloatRect::intersectionCopy);
HAS(FloatRect (FloatRect::*)(float, float, float, float) const noexcept, &FloatRect::intersectionCopy);
HAS(void (FloatRect::*)(FloatRect&, const FloatRect&) const noexcept, &FloatRect::applyRatioCopy);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::applyRatioCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float, float, float) const noexcept, &FloatRect::applyRatioCopy);
HAS(FloatRect (FloatRect::*)(float, float, float, float) const noexcept, &FloatRect::applyRatioCopy);
HAS(void (FloatRect::*)(FloatRect&, const FloatRect&) const noexcept, &FloatRect::createRatioCopy);
HAS(FloatRect (FloatRect::*)(const FloatRect&) const noexcept, &FloatRect::createRatioCopy);
HAS(void (FloatRect::*)(FloatRect&, float, float, float, float) const noexcept, &FloatRect::createRatioCopy);
HAS(FloatRect (FloatRect::*)(float, float, float, float) const noexcept, &FloatRect::createRatioCopy);
HAS(void (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::applyRatio);
HAS(void (FloatRect::*)(float, float, float, float) noexcept, &FloatRect::applyRatio);
HAS(void (FloatRect::*)(const FloatRect&) noexcept, &FloatRect::createRatio);
HAS(void (FloatRect::*)(float, float, float, float) noexcept, &FloatRect::createRatio);
HAS(void (FloatRect::*)() noexcept, &FloatRect::normalise);
HAS(void (FloatRect::*)() noexcept, &FloatRect::invert);
HAS(void (FloatRect::*)() noexcept, &FloatRect::reflectHorz);
HAS(void (FloatRect::*)() noexcept, &FloatRect::reflectVert);
HAS(void (FloatRect::*)(FloatRect&) const noexcept, &FloatRect::normalisedCopy);
HAS(FloatRect (FloatRect::*)() const noexcept, &FloatRect::normalisedCopy);
HAS(void (FloatRect::*)(FloatRect&) const noexcept, &FloatRect::invertedCopy);
HAS(FloatRect (FloatRect::*)() const noexcept, &FloatRect::invertedCopy);
HAS(void (FloatRect::*)(FloatRect&) const noexcept, &FloatRect::horzReflectedCopy);
HAS(FloatRect (FloatRect::*)() const noexcept, &FloatRect::horzReflectedCopy);
HAS(void (FloatRect::*)(FloatRect&) const noexcept, &FloatRect::vertReflectedCopy);
HAS(FloatRect (FloatRect::*)() const noexcept, &FloatRect::vertReflectedCopy);
HAS(void (FloatRect::*)(unsigned int), &FloatRect::reflect);
HAS(FloatRect (FloatRect::*)(unsigned int) const, &FloatRect::reflectedCopy);
HAS(void (FloatRect::*)(FloatRect&, unsigned int) const, &FloatRect::reflectedCopy);
HAS(FloatRect (FloatRect::*)(const Matrix3&) const noexcept, &FloatRect::operator*);
HAS(FloatRect& (FloatRect::*)(const Matrix3&) noexcept, &FloatRect::operator*=);

// pinned resizing
HAS(void (FloatRect::*)(const Vector2&, unsigned int, const Vector2&), &FloatRect::inflate);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&, unsigned int, const Vector2&) const, &FloatRect::inflatedCopy);
HAS(FloatRect (FloatRect::*)(const Vector2&, unsigned int, const Vector2&) const, &FloatRect::inflatedCopy);
HAS(void (FloatRect::*)(const Vector2&, unsigned int, float, float), &FloatRect::inflate);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&, unsigned int, float, float) const, &FloatRect::inflatedCopy);
HAS(FloatRect (FloatRect::*)(const Vector2&, unsigned int, float, float) const, &FloatRect::inflatedCopy);
HAS(void (FloatRect::*)(float, float, unsigned int, const Vector2&), &FloatRect::inflate);
HAS(void (FloatRect::*)(FloatRect&, float, float, unsigned int, const Vector2&) const, &FloatRect::inflatedCopy);
HAS(FloatRect (FloatRect::*)(float, float, unsigned int, const Vector2&) const, &FloatRect::inflatedCopy);
HAS(void (FloatRect::*)(float, float, unsigned int, float, float), &FloatRect::inflate);
HAS(void (FloatRect::*)(FloatRect&, float, float, unsigned int, float, float) const, &FloatRect::inflatedCopy);
HAS(FloatRect (FloatRect::*)(float, float, unsigned int, float, float) const, &FloatRect::inflatedCopy);
HAS(void (FloatRect::*)(float, unsigned int, const Vector2&), &FloatRect::inflate);
HAS(void (FloatRect::*)(FloatRect&, float, unsigned int, const Vector2&) const, &FloatRect::inflatedCopy);
HAS(FloatRect (FloatRect::*)(float, unsigned int, const Vector2&) const, &FloatRect::inflatedCopy);
HAS(void (FloatRect::*)(float, unsigned int, float, float) noexcept, &FloatRect::inflate);
HAS(void (FloatRect::*)(FloatRect&, float, unsigned int, float, float) const, &FloatRect::inflatedCopy);
HAS(FloatRect (FloatRect::*)(float, unsigned int, float, float) const, &FloatRect::inflatedCopy);
HAS(void (FloatRect::*)(const Vector2&, unsigned int, const Vector2&), &FloatRect::resize);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&, unsigned int, const Vector2&) const, &FloatRect::resizedCopy);
HAS(FloatRect (FloatRect::*)(const Vector2&, unsigned int, const Vector2&) const, &FloatRect::resizedCopy);
HAS(void (FloatRect::*)(const Vector2&, unsigned int, float, float), &FloatRect::resize);
HAS(void (FloatRect::*)(FloatRect&, const Vector2&, unsigned int, float, float) const, &FloatRect::resizedCopy);
HAS(FloatRect (FloatRect::*)(const Vector2&, unsigned int, float, float) const, &FloatRect::resizedCopy);
HAS(void (FloatRect::*)(float, float, unsigned int, const Vector2&), &FloatRect::resize);
HAS(void (FloatRect::*)(FloatRect&, float, float, unsigned int, const Vector2&) const, &FloatRect::resizedCopy);
HAS(FloatRect (FloatRect::*)(float, float, unsigned int, const Vector2&) const, &FloatRect::resizedCopy);
HAS(void (FloatRect::*)(float, float, unsigned int, float, float), &FloatRect::resize);
HAS(void (FloatRect::*)(FloatRect&, float, float, unsigned int, float, float) const, &FloatRect::resizedCopy);
HAS(FloatRect (FloatRect::*)(float, float, unsigned int, float, float) const, &FloatRect::resizedCopy);
HAS(void (FloatRect::*)(float, unsigned int, const Vector2&), &FloatRect::resize);
HAS(void (FloatRect::*)(FloatRect&, float, unsigned int, const Vector2&) const, &FloatRect::resizedCopy);
HAS(FloatRect (FloatRect::*)(float, unsigned int, const Vector2&) const, &FloatRect::resizedCopy);
HAS(void (FloatRect::*)(float, unsigned int, float, float), &FloatRect::resize);
HAS(void (FloatRect::*)(FloatRect&, float, unsigned int, float, float) const, &FloatRect::resizedCopy);
HAS(FloatRect (FloatRect::*)(float, unsigned int, float, float) const, &FloatRect::resizedCopy);

// --- Kinds and sizes ---

template <class... Types>
constexpr bool arePlainValues() {
    return (... && (std::is_trivially_copyable_v<Types> && std::is_trivially_destructible_v<Types> &&
                    std::is_standard_layout_v<Types> && !std::is_polymorphic_v<Types>));
}
static_assert(arePlainValues<XYPairBase<float>, Pair, Vector2, ComplexAngle, Matrix3, Vector2CornerRect,
                             RectBase<float>, Rect, FloatRect>());
static_assert(std::is_aggregate_v<XYPairBase<float>> && std::is_aggregate_v<RectBase<float>> &&
              std::is_aggregate_v<Vector2CornerRect>);
static_assert(sizeof(XYPairBase<float>) == 8 && sizeof(Pair) == 8 && sizeof(Vector2) == 8 && sizeof(ComplexAngle) == 8);
static_assert(sizeof(RectBase<float>) == 16 && sizeof(Rect) == 16 && sizeof(FloatRect) == 16);
static_assert(sizeof(Matrix3) == 36 && sizeof(Vector2CornerRect) == 32);
static_assert(std::is_base_of_v<XYPairBase<float>, Pair> && std::is_base_of_v<Pair, Vector2> &&
              std::is_base_of_v<Pair, ComplexAngle>);
static_assert(std::is_base_of_v<RectBase<float>, Rect> && std::is_base_of_v<Rect, FloatRect>);

// --- Constructors ---

template <class Type>
constexpr bool isPairLike() {
    return std::is_default_constructible_v<Type> && std::is_convertible_v<const XYPairBase<float>&, Type> &&
           std::is_convertible_v<const Pair&, Type> && std::is_constructible_v<Type, const float*> &&
           std::is_constructible_v<Type, float> && std::is_constructible_v<Type, float, float> &&
           std::is_convertible_v<Vector2, Type> && std::is_convertible_v<ComplexAngle, Type>;
}
static_assert(isPairLike<Pair>() && isPairLike<Vector2>() && isPairLike<ComplexAngle>());

template <class Type>
constexpr bool isRectLike() {
    return std::is_default_constructible_v<Type> && std::is_constructible_v<Type, float, float, float, float> &&
           std::is_constructible_v<Type, float, float, float> && std::is_constructible_v<Type, float, float> &&
           std::is_constructible_v<Type, float> && std::is_constructible_v<Type, const Pair&> &&
           std::is_constructible_v<Type, const Pair&, const Pair&> && std::is_constructible_v<Type, Vector2, Vector2> &&
           std::is_convertible_v<const RectBase<float>&, Type> && std::is_convertible_v<const Rect&, Type>;
}
static_assert(isRectLike<Rect>() && isRectLike<FloatRect>());

static_assert(std::is_default_constructible_v<Matrix3> && std::is_constructible_v<Matrix3, float> &&
              std::is_constructible_v<Matrix3, float, float, float, float, float, float, float, float, float>);

// --- Operations without a check, a root or the bits of a float are constexpr ---

static_assert(Vector2(1.0f, 2.0f) + Vector2::UNIT_X * 3.0f == Vector2(4.0f, 2.0f));
static_assert(Vector2(1.0f, -1.0f).reflect(Vector2::UNIT_Y) == Vector2::UNIT_SCALE);
static_assert(Vector2::UNIT_X.perpendicular().midPoint(Vector2::ZERO).dot(Vector2::UNIT_Y) == 0.5f);
static_assert(Vector2::ZERO.isZero() && Vector2::NEGATIVE_UNIT_X < Vector2(0.0f, 1.0f));
static_assert(ComplexAngle(0.0f, 1.0f) * ComplexAngle(0.0f, 1.0f) == -ComplexAngle::IDENTITY);
static_assert(ComplexAngle::ZERO.inverse() == ComplexAngle::ZERO);
static_assert(Matrix3::IDENTITY * Matrix3::IDENTITY * Vector2::UNIT_Y == Vector2::UNIT_Y);
static_assert((Vector2::UNIT_X * Matrix3::IDENTITY.translatedCopy(5.0f, 6.0f)) == Vector2::UNIT_X);
static_assert(Rect(1.0f, 2.0f, 3.0f) == FloatRect(1.0f, 2.0f, 3.0f, 2.0f));
static_assert((FloatRect(0.0f, 0.0f, 1.0f, 1.0f) & FloatRect(5.0f, 5.0f, 6.0f, 6.0f)) == Rect(5.0f, 5.0f, 1.0f, 1.0f));
static_assert((FloatRect::ZERO | Vector2::UNIT_SCALE) * Matrix3::IDENTITY == FloatRect(0.0f, 0.0f, 1.0f, 1.0f));
static_assert(FloatRect(0.0f, 0.0f, 10.0f, 20.0f).createRatioCopy(5.0f, 5.0f, 10.0f, 10.0f).bottom == 0.5f);
static_assert(Vorn::VORN_ZERO == 0.0f);

constexpr FloatRect inflatedByTheCompiler() {
    FloatRect rect(0.0f, 0.0f, 10.0f, 10.0f);
    rect.inflate(1.0f, Vorn::RectPoint::RIGHT, 0.0f, 0.0f);
    return rect;
}
static_assert(inflatedByTheCompiler() == FloatRect(2.0f, -1.0f, 14.0f, 11.0f));

// --- Constants are initialised before any initialiser runs ---

static_assert(std::is_same_v<decltype(Vector2::ZERO), const Vector2>);
static_assert(std::is_same_v<decltype(ComplexAngle::IDENTITY), const ComplexAngle>);
static_assert(std::is_same_v<decltype(Matrix3::IDENTITY), const Matrix3>);
static_assert(std::is_same_v<decltype(FloatRect::ZERO), const FloatRect>);

constinit Vector2 vectorAtLoad = Vector2::UNIT_SCALE;
constinit ComplexAngle angleAtLoad = ComplexAngle::IDENTITY;
constinit Matrix3 matrixAtLoad = Matrix3::IDENTITY;
constinit FloatRect rectAtLoad = FloatRect::ZERO;

// Runs before the initialisers of every library and of every other file of this program, and reads through pointers
// that the compiler cannot see through.
struct EarlyReader {
    EarlyReader() : vector(*vectorSource), angle(*angleSource), matrix(*matrixSource) {}

    const Vector2* volatile vectorSource = &Vector2::NEGATIVE_UNIT_Y;
    const ComplexAngle* volatile angleSource = &ComplexAngle::IDENTITY;
    const Matrix3* volatile matrixSource = &Matrix3::IDENTITY;
    Vector2 vector;
    ComplexAngle angle;
    Matrix3 matrix;
};
__attribute__((init_priority(101))) const EarlyReader earlyReader;

TEST(GeometryConstants, AreReadyAtLoad) {
    EXPECT_TRUE(same(earlyReader.vector, std::array<float, 2>{0.0f, -1.0f}));
    EXPECT_TRUE(same(earlyReader.angle, std::array<float, 2>{1.0f, 0.0f}));
    EXPECT_TRUE(same(earlyReader.matrix, std::array<float, 9>{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_TRUE(same(vectorAtLoad, Vector2::UNIT_SCALE));
    EXPECT_TRUE(same(angleAtLoad, ComplexAngle::IDENTITY));
    EXPECT_TRUE(same(matrixAtLoad, Matrix3::IDENTITY));
    EXPECT_TRUE(same(rectAtLoad, FloatRect::ZERO));
}

} // namespace
