#include "Vorn/Matrix3.h"

#include "Vorn/Assert.h"

#include <cmath>

namespace Vorn {

Matrix3 Matrix3::inversedCopy() const {
    // Cofactors are kept in transposed position and in float: rounding them is a part of the result.
    const auto cofactor = [this](int i, int j, int k, int l) {
        return float(double(m[i]) * m[j] - double(m[k]) * m[l]);
    };
    const Matrix3 cofactors(cofactor(8, 4, 7, 5), cofactor(7, 2, 1, 8), cofactor(1, 5, 2, 4), // row 0
                            cofactor(6, 5, 3, 8), cofactor(0, 8, 6, 2), cofactor(3, 2, 5, 0), // row 1
                            cofactor(3, 7, 6, 4), cofactor(1, 6, 7, 0), cofactor(0, 4, 3, 1));

    const float det =
        float(double(cofactors.m[0]) * m[0] + double(m[1]) * cofactors.m[3] + double(cofactors.m[6]) * m[2]);
    if (std::fabs(det) <= 1.1920928955078125e-07f) VORN_THROW(E::INTERNAL, "Invalid matrix. Unable to build inverse.");
    return cofactors * (1.0f / det);
}

} // namespace Vorn
