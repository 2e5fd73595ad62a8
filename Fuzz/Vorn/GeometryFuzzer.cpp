// All kernels of geometry that this machine supports against the portable ones: any floats at any strides, in place and
// into another array; and the refusals of spans and of targets that overlap.
#include "Vorn/GeometryBatch.h"
#include "Vorn/Kernels/GeometryKernels.h"

#include "Support/Stream.h"

#include <cmath>
#include <cstring>
#include <vector>

namespace {

using namespace VornPrivate;
using Vorn::Vector2;

/// Any float, often one that is equal or close to another one.
float anyFloat(Stream& stream) {
    static constexpr float VALUES[] = {0.0f, -0.0f, 1.0f, -1.0f, 1e-45f, 3.4028235e38f, -1.17549435e-38f, 1.5f};
    const unsigned int high = stream.next();
    if (high < 0x10) return VALUES[high % 8];
    const unsigned int bits = (high << 24 | stream.next() << 16) * 0x01000101u;
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// Floats in a block of exactly the memory that the vectors need.
class Memory {
public:
    Memory(const std::vector<float>& floats, std::size_t count, std::size_t strideInFloats)
        : m_floats(count == 0 ? 0 : (count - 1) * strideInFloats + 2), m_stride(strideInFloats * sizeof(float)) {
        for (std::size_t i = 0; i < m_floats.size(); ++i) m_floats[i] = floats[i % floats.size()];
    }

    VectorSource source() const { return {reinterpret_cast<const unsigned char*>(m_floats.data()), m_stride}; }
    VectorTarget target() { return {reinterpret_cast<unsigned char*>(m_floats.data()), m_stride}; }

    /// Whether all floats have the same bits, or are NaN.
    bool operator==(const Memory& other) const { return same(m_floats.data(), other.m_floats.data(), m_floats.size()); }

    static bool same(const float* a, const float* b, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            if (std::memcmp(a + i, b + i, sizeof(float)) != 0 && !(std::isnan(a[i]) && std::isnan(b[i]))) return false;
        return true;
    }

private:
    std::vector<float> m_floats;
    std::size_t m_stride;
};

void compare(const GeometryKernels& kernels, const std::vector<float>& floats, const float* matrix, std::size_t count,
             std::size_t stride, std::size_t targetStride) {
    const GeometryKernels& portable = *allGeometryKernels[0];
    const Memory source(floats, count, stride);
    Memory actual(floats, count, targetStride), expected = actual;
    kernels.transform(matrix, source.source(), actual.target(), count);
    portable.transform(matrix, source.source(), expected.target(), count);
    require(actual == expected, kernels.name);
    kernels.normalise(source.source(), actual.target(), count);
    portable.normalise(source.source(), expected.target(), count);
    require(actual == expected, kernels.name);
    kernels.transform(matrix, actual.source(), actual.target(), count);
    portable.transform(matrix, expected.source(), expected.target(), count);
    require(actual == expected, kernels.name);
    if (count == 0) return;
    const Vorn::RectBase<float> bounds = kernels.bound(source.source(), count);
    const Vorn::RectBase<float> bound = portable.bound(source.source(), count);
    require(Memory::same(&bounds.left, &bound.left, 1) && Memory::same(&bounds.top, &bound.top, 1) &&
                Memory::same(&bounds.right, &bound.right, 1) && Memory::same(&bounds.bottom, &bound.bottom, 1),
            kernels.name);
}

/// Two spans in one array: refused if one vector of the target shares memory with another one of the source.
void overlap(Stream& stream) {
    std::vector<float> floats(64, 1.0f);
    const std::size_t count = stream.below(5), stride = 2 + stream.below(4), targetStride = 2 + stream.below(4);
    const std::size_t from = stream.below(40), to = stream.below(40);
    bool overlaps = false;
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t j = 0; j < count; ++j) {
            const std::size_t a = from + i * stride, b = to + j * targetStride;
            overlaps = overlaps || ((i != j || a != b) && a < b + 2 && b < a + 2);
        }
    }
    bool isRefused = false;
    try {
        Vorn::transform(Vorn::Matrix3::IDENTITY,
                        {reinterpret_cast<Vector2*>(floats.data() + from), count, stride * sizeof(float)},
                        {reinterpret_cast<Vector2*>(floats.data() + to), count, targetStride * sizeof(float)});
    } catch (const Vorn::Exception<1>&) {
        isRefused = true;
    }
    require(isRefused || !overlaps, "a target that overlaps is accepted");
    require(!isRefused || overlaps || stride != targetStride, "a target that does not overlap is refused");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stream stream(data, size);
    overlap(stream);
    const std::size_t count = stream.below(150);
    const std::size_t stride = 2 + stream.below(4), targetStride = 2 + stream.below(4);
    float matrix[9];
    for (float& element : matrix) element = anyFloat(stream);
    std::vector<float> floats;
    do floats.push_back(anyFloat(stream));
    while (!stream.ended());

    for (const GeometryKernels* const* at = allGeometryKernels + 1; *at; ++at) {
        if (!(*at)->isSupported()) continue;
        compare(**at, floats, matrix, count, 2, 2);
        compare(**at, floats, matrix, count, stride, targetStride);
    }
    return 0;
}
