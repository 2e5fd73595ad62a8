/// @file
/// VectorSpan: many vectors in memory that the span does not own, one after the other or inside larger elements.
///
///     std::vector<Vorn::Vector2> points = makePoints();
///     std::vector<Vertex> vertices = makeVertices();
///     Vorn::VectorSpan all = points;
///     Vorn::VectorSpan positions(vertices, &Vertex::position);
///     Vorn::ConstVectorSpan corners(&vertices[0].box.corner, vertices.size(), sizeof(Vertex));
///
/// A parameter of type VectorSpan or ConstVectorSpan takes vectors, arrays and `std::span` directly. See
/// GeometryBatch.h for what can be done with the vectors; a loop over them uses the elements themselves.
///
/// Cost: a value of three words; allocates nothing.
///
/// Threads: objects share no state.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Private/Surprise.h" // VORN_LIFETIMEBOUND
#include "Vorn/Vector2.h"

#include <cstddef>
#include <cstdint> // SIZE_MAX
#include <iterator>
#include <type_traits>
#include <utility>

namespace Vorn {

/// `count` vectors, each of them `stride` bytes behind the one before. `Element` is Vector2 or const Vector2.
/// @warning A span owns nothing. It dangles if the container is destroyed or moves its elements, as `push_back` does.
template <class Element>
class BasicVectorSpan {
    static constexpr bool IS_CONST = std::is_same<Element, const Vector2>::value;
    static_assert(IS_CONST || std::is_same<Element, Vector2>::value, "a span of Vector2 or of const Vector2");

    // The types of a container's elements, and of elements that this span can have.
    template <class Container>
    using ElementOf = std::remove_pointer_t<decltype(std::data(std::declval<Container&>()))>;
    template <class Type>
    using As = std::conditional_t<IS_CONST, const Type, Type>;

public:
    /// No vectors.
    constexpr BasicVectorSpan() noexcept : m_first(nullptr), m_count(0), m_stride(sizeof(Vector2)) {}

    /// The vector `first`, and `count - 1` others, each of them `stride` bytes behind the one before.
    ///
    /// Throws `Exception<1>`: "first != nullptr || count == 0 : no vectors!"; "stride >= sizeof(Vector2) && stride %
    /// alignof(Vector2) == 0 : invalid stride!"; "count <= MOST_BYTES / stride : too many vectors!" if no memory is as
    /// large.
    /// @warning Whether the vectors exist and are aligned, in packed elements for instance, cannot be checked. Form no
    ///     address inside the first element of an empty container: the constructor with a member takes empty ones.
    BasicVectorSpan(Element* first, std::size_t count, std::size_t stride = sizeof(Vector2))
        : BasicVectorSpan(first, count, stride, Unchecked()) {
        VORN_ASSERT(first != nullptr || count == 0, "no vectors!", CONSTRUCTOR);
        VORN_ASSERT(stride >= sizeof(Vector2) && stride % alignof(Vector2) == 0, "invalid stride!", CONSTRUCTOR);
        VORN_ASSERT(count <= MOST_BYTES / stride, "too many vectors!", CONSTRUCTOR);
    }

    /// The vectors of a container with contiguous elements: `std::vector<Vector2>`, an array, `std::span<Vector2>`.
    template <class Container, class = std::enable_if_t<std::is_same<As<ElementOf<Container>>, Element>::value>>
    BasicVectorSpan(Container&& container VORN_LIFETIMEBOUND)
        : BasicVectorSpan(std::data(container), std::size(container)) {}

    /// The vectors inside the elements of such a container: `VectorSpan(vertices, &Vertex::position)`.
    template <class Container, class Vertex,
              class = std::enable_if_t<std::is_convertible<ElementOf<Container>*, As<Vertex>*>::value>>
    BasicVectorSpan(Container&& vertices VORN_LIFETIMEBOUND, Vector2 Vertex::*member)
        : BasicVectorSpan(std::size(vertices) == 0 ? nullptr : &(std::data(vertices)->*member), std::size(vertices),
                          sizeof(ElementOf<Container>)) {}

    /// Vectors that can be written can also be read.
    template <class Other, class = std::enable_if_t<IS_CONST && std::is_same<Other, Vector2>::value>>
    constexpr BasicVectorSpan(const BasicVectorSpan<Other>& other) noexcept
        : BasicVectorSpan(other.first(), other.count(), other.stride(), Unchecked()) {}

    /// The address of the first vector.
    constexpr Element* first() const noexcept { return m_first; }

    /// The number of vectors.
    constexpr std::size_t count() const noexcept { return m_count; }

    /// Bytes from each vector to the next one.
    constexpr std::size_t stride() const noexcept { return m_stride; }

private:
    struct Unchecked {};

    constexpr BasicVectorSpan(Element* firstVector, std::size_t vectorCount, std::size_t bytes, Unchecked) noexcept
        : m_first(firstVector), m_count(vectorCount), m_stride(bytes) {}

    static constexpr VornPrivate::TextView CONSTRUCTOR{"Vorn::VectorSpan::VectorSpan"};
    static constexpr std::size_t MOST_BYTES = SIZE_MAX / 2; // addresses are subtracted

    Element* m_first;
    std::size_t m_count;
    std::size_t m_stride;
};

/// Vectors that are read and written.
using VectorSpan = BasicVectorSpan<Vector2>;

/// Vectors that are read.
using ConstVectorSpan = BasicVectorSpan<const Vector2>;

} // namespace Vorn
