// Types that programs make of the library's class templates, whose layouts the library itself does not show.
#include <Vorn/Vorn.h>

using namespace Vorn;

class Node : public TreeNode<Node> {};

// The sum makes the compiler complete each type; the references describe it.
template <typename... Types>
struct Described {
    static constexpr auto SIZE = (sizeof(Types) + ...);
    using Function = void(Types&...);
};

using All = Described<Event<>, Event<int>, ResultEvent<int, int>, ScopedConnection, Delegate<int, void>,
                      Delegate<void, int>, SharedPtr<int>, WeakPtr<int>, TreeNode<Node>, Exception<4>, Name, TextView,
                      TextBuilder, String, UTF8String, StringOwnerMap<unsigned char>, FloatRect, Matrix3, Vector2,
                      ComplexAngle, VectorSpan, ConstVectorSpan>;
static_assert(All::SIZE > 0);

__attribute__((visibility("default"))) All::Function* describedTypes = nullptr;
