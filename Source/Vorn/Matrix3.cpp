#include "Vorn/Matrix3.h"

#include "Vorn/Assert.h"

#include <cmath>

namespace Vorn {

Matrix3 Matrix3::inversedCopy() const {
    using Pair = VornPrivate::DoublePair;
    const Pair ab = Pair::load(m), bc = Pair::load(m + 1);
    const Pair de = Pair::load(m + 3), ef = Pair::load(m + 4);
    const Pair gh = Pair::load(m + 6), hi = Pair::load(m + 7);
    const double a = ab.first(), c = bc.second(), d = de.first(), f = ef.second(), g = gh.first(), i = hi.second();

    // The cofactors in transposed order, rounded to float: the rounding is specified. In each column the last and the
    // first cofactor are computed as a pair.
    float r60[2], r71[2], r82[2];
    (de * hi - gh * ef).store(r60);
    (bc * gh - hi * ab).store(r71);
    (ab * ef - de * bc).store(r82);
    const Matrix3 cofactors(r60[1], r71[1], r82[1],                                           // row 0
                            float(g * f - d * i), float(a * i - g * c), float(d * c - f * a), // row 1
                            r60[0], r71[0], r82[0]);

    const float* const r = cofactors.m;
    const float det = float(r[0] * a + ab.second() * r[3] + r[6] * c);
    if (std::fabs(det) <= 1.1920928955078125e-07f) VORN_THROW(E::INTERNAL, "Invalid matrix. Unable to build inverse.");
    return cofactors * (1.0f / det);
}

} // namespace Vorn
