// ExactVector: the correctly rounded length and direction of a vector. Support of Geometry.h; not for direct use.
#pragma once

#include <cmath>
#include <limits>

namespace VornPrivate {

/// The sum of up to eight doubles without an error, as doubles that do not overlap, in order of magnitude.
class ExactSum {
public:
    void add(double value) {
        for (int i = 0; i < m_count; ++i) {
            const double sum = value + m_parts[i];
            const double added = sum - value;
            m_parts[i] = (value - (sum - added)) + (m_parts[i] - added);
            value = sum;
        }
        m_parts[m_count++] = value;
    }

    /// The sign of the sum, which is that of the largest part that is not 0.
    int sign() const {
        for (int i = m_count; i-- > 0;) {
            if (m_parts[i] != 0.0) return m_parts[i] > 0.0 ? 1 : -1;
        }
        return 0;
    }

private:
    double m_parts[8];
    int m_count = 0;
};

/// A finite vector of floats. Squares of floats are exact in double, and none of them overflows or underflows.
class ExactVector {
public:
    ExactVector(float x, float y) {
        const double a = double(x) * double(x), b = double(y) * double(y);
        const double larger = a > b ? a : b, smaller = a > b ? b : a;
        m_square = a + b;
        m_rest = smaller - (m_square - larger); // m_square + m_rest is the sum without an error
        m_length = std::sqrt(m_square);
    }

    /// The float nearest to the length.
    float length() const {
        return nearest(m_length, [this](double middle) {
            ExactSum difference;
            difference.add(m_rest);
            difference.add(m_square);
            difference.add(-(middle * middle)); // exact: `middle` has 25 bits
            return difference.sign();
        });
    }

    /// The float nearest to `component` divided by the length, which is not 0.
    float fraction(float component) const {
        const double square = double(component) * double(component);
        const float result = nearest(std::fabs(double(component)) / m_length, [&](double middle) {
            // Compares component^2 with middle^2 * (m_square + m_rest).
            ExactSum difference;
            difference.add(square);
            subtractProduct(difference, middle * middle, m_square);
            subtractProduct(difference, middle * middle, m_rest);
            return difference.sign();
        });
        return std::copysign(result, component);
    }

private:
    /// Rounds a positive value. `approximation` has a relative error of less than 2 to the power -51; `compare(middle)`
    /// is the sign of the value itself minus `middle`.
    template <class Compare>
    static float nearest(double approximation, Compare compare) {
        const float rounded = float(approximation);
        if (approximation != approximation) return rounded;
        // Where the value and its approximation round differently, both lie at the middle between two floats.
        const double here = std::isinf(rounded) ? 0x1p128 : double(rounded);
        const float next =
            std::nextafter(rounded, here < approximation ? std::numeric_limits<float>::infinity() : 0.0f);
        const double there = std::isinf(next) ? 0x1p128 : double(next);
        const double middle = (here + there) * 0.5;
        if (std::fabs(here - approximation) <= 0.0 || std::fabs(approximation - middle) > middle * 0x1p-50)
            return rounded;
        const int sign = compare(middle);
        if (sign == 0) return rounded; // the approximation is exact, and the tie has been decided
        return (sign > 0) == (there > here) ? next : rounded;
    }

    /// Subtracts the product without an error.
    static void subtractProduct(ExactSum& sum, double a, double b) {
        const double product = a * b;
        sum.add(-std::fma(a, b, -product));
        sum.add(-product);
    }

    double m_square;
    double m_rest;
    double m_length; // rounded
};

/// The bounds of numbers on one axis.
class Bounds {
public:
    void add(float value) {
        if (value < m_low) m_low = value;
        if (value > m_high) m_high = value;
        m_hasNumber = m_hasNumber || !std::isnan(value);
    }
    float low() const { return m_hasNumber ? m_low : std::numeric_limits<float>::quiet_NaN(); }
    float high() const { return m_hasNumber ? m_high : std::numeric_limits<float>::quiet_NaN(); }

private:
    float m_low = std::numeric_limits<float>::infinity();
    float m_high = -std::numeric_limits<float>::infinity();
    bool m_hasNumber = false;
};

} // namespace VornPrivate
