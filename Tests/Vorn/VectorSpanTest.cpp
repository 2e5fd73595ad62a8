#include "Vorn/VectorSpan.h"

#include "Support/Report.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <list>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Vorn::ConstVectorSpan;
using Vorn::Vector2;
using Vorn::VectorSpan;

struct Named {
    int number;
};

struct Vertex {
    unsigned int colour;
    Vector2 position;
    Vector2 texture;
};

struct NumberedVertex : Named, Vertex {};

// What can be viewed, and what can be written.
static_assert(std::is_convertible_v<std::vector<Vector2>&, VectorSpan>);
static_assert(std::is_convertible_v<std::array<Vector2, 3>&, VectorSpan>);
static_assert(std::is_convertible_v<Vector2 (&)[3], VectorSpan>);
static_assert(std::is_convertible_v<std::span<Vector2>, VectorSpan>);
static_assert(std::is_convertible_v<const std::vector<Vector2>&, ConstVectorSpan>);
static_assert(std::is_convertible_v<std::vector<Vector2>&, ConstVectorSpan>);
static_assert(std::is_convertible_v<std::span<const Vector2, 4>, ConstVectorSpan>);
static_assert(std::is_convertible_v<VectorSpan, ConstVectorSpan>);
static_assert(std::is_nothrow_convertible_v<VectorSpan, ConstVectorSpan>);
static_assert(!std::is_constructible_v<VectorSpan, const std::vector<Vector2>&>);
static_assert(!std::is_constructible_v<VectorSpan, std::span<const Vector2>>);
static_assert(!std::is_constructible_v<VectorSpan, ConstVectorSpan>);
static_assert(!std::is_constructible_v<ConstVectorSpan, std::vector<float>&>);
static_assert(!std::is_constructible_v<ConstVectorSpan, std::vector<Vertex>&>);
static_assert(!std::is_constructible_v<ConstVectorSpan, std::list<Vector2>&>);
static_assert(!std::is_constructible_v<VectorSpan, const std::vector<Vertex>&, Vector2 Vertex::*>);
static_assert(std::is_constructible_v<ConstVectorSpan, const std::vector<Vertex>&, Vector2 Vertex::*>);
static_assert(!std::is_constructible_v<ConstVectorSpan, std::vector<Named>&, Vector2 Vertex::*>);
static_assert(std::is_trivially_copyable_v<VectorSpan>);

void expectSpan(ConstVectorSpan span, const Vector2* first, std::size_t count, std::size_t stride) {
    EXPECT_EQ(span.first(), first);
    EXPECT_EQ(span.count(), count);
    EXPECT_EQ(span.stride(), stride);
}

TEST(VectorSpan, ViewsContainers) {
    std::vector<Vector2> vectors(5, Vector2::ZERO);
    const std::array<Vector2, 2> array = {Vector2::UNIT_X, Vector2::UNIT_Y};
    Vector2 plain[3] = {Vector2::ZERO, Vector2::ZERO, Vector2::ZERO};
    expectSpan(vectors, vectors.data(), 5, 8);
    expectSpan(VectorSpan(vectors), vectors.data(), 5, 8);
    expectSpan(array, array.data(), 2, 8);
    expectSpan(VectorSpan(plain), plain, 3, 8);
    expectSpan(std::span(vectors).subspan(1, 2), &vectors[1], 2, 8);
    expectSpan({plain, 2}, plain, 2, 8);
    expectSpan({}, nullptr, 0, 8);
    expectSpan(std::vector<Vector2>(), nullptr, 0, 8);
}

TEST(VectorSpan, ViewsMembersOfElements) {
    std::vector<Vertex> vertices(4);
    expectSpan(VectorSpan(vertices, &Vertex::position), &vertices[0].position, 4, sizeof(Vertex));
    expectSpan(VectorSpan(vertices, &Vertex::texture), &vertices[0].texture, 4, sizeof(Vertex));
    expectSpan({&vertices[1].texture, 3, sizeof(Vertex)}, &vertices[1].texture, 3, sizeof(Vertex));
    const NumberedVertex derived[2] = {};
    expectSpan(ConstVectorSpan(derived, &Vertex::texture), &derived[0].texture, 2, sizeof(NumberedVertex));
    std::vector<Vertex> empty;
    expectSpan(VectorSpan(empty, &Vertex::position), nullptr, 0, sizeof(Vertex));
}

struct Refusal {
    const char* name;
    std::size_t count;
    std::size_t stride;
    const char* message; // null if the span is accepted
};

constexpr std::size_t LARGEST_SIZE = std::numeric_limits<std::size_t>::max();
const char* const STRIDE = "stride >= sizeof(Vector2) && stride % alignof(Vector2) == 0 : invalid stride!";
const char* const COUNT = "count <= MOST_BYTES / stride : too many vectors!";

TEST(VectorSpan, RefusesSizesThatCannotBe) {
    const Refusal rows[] = {
        {"packed", 1, 8, nullptr},
        {"inside three floats", 1, 12, nullptr},
        {"stride of zero", 1, 0, STRIDE},
        {"stride of less than a vector", 1, 4, STRIDE},
        {"stride that is no multiple of a float", 1, 9, STRIDE},
        {"stride beside the largest", 1, LARGEST_SIZE - 1, STRIDE},
        {"stride of half the memory", 2, LARGEST_SIZE / 2 - 3, COUNT},
        {"count whose product overflows to a small one", LARGEST_SIZE / 8 + 2, 8, COUNT},
        {"largest count", LARGEST_SIZE, 8, COUNT},
        {"more than half the memory", LARGEST_SIZE / 16 + 1, 8, COUNT},
        {"half the memory", LARGEST_SIZE / 16, 8, nullptr},
    };
    Vector2 vector = Vector2::ZERO;
    for (const Refusal& row : rows) {
        SCOPED_TRACE(row.name);
        if (row.message) {
            expectRaises<1>([&] { VectorSpan(&vector, row.count, row.stride); }, row.message,
                            "Vorn::VectorSpan::VectorSpan", "Include/Vorn/VectorSpan");
            expectRaises<1>([&] { ConstVectorSpan(&vector, row.count, row.stride); }, row.message,
                            "Vorn::VectorSpan::VectorSpan", "Include/Vorn/VectorSpan");
        } else {
            expectSpan({&vector, row.count, row.stride}, &vector, row.count, row.stride);
        }
    }
    expectSpan({static_cast<Vector2*>(nullptr), 0, 16}, nullptr, 0, 16);
    expectRaises<1>([&] { VectorSpan(nullptr, 1); }, "first != nullptr || count == 0 : no vectors!",
                    "Vorn::VectorSpan::VectorSpan", "Include/Vorn/VectorSpan");
}

} // namespace
