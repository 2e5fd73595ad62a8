#include "Vorn/SharedObjects/TreeNodeHelper.h"

#include "Vorn/SharedObjects/RefCounter.h"

namespace Vorn {

// Leaves position and parent uninitialised. It is private and never called.
TreeNodeShared::TreeNodeShared(const TreeNodeShared& other) : DynamicObject(other) {}

TreeNodeShared::~TreeNodeShared() = default;

void TreeNodeHelper::assertValidTreeNodeInChildList(TreeNodeShared* node) {
    VORN_INTERNAL_ASSERT(node, "null node!!!");
    const RefCounter* const counter = node->m_refCounter;
    VORN_INTERNAL_ASSERT(counter, "null ref counter!!!");
    VORN_INTERNAL_ASSERT(counter->m_useCount, "invalid use count!!!");
    VORN_INTERNAL_ASSERT(validRefCounter(counter), "Invalid reference counter!");
}

void TreeNodeHelper::ensureInsertableNode(TreeNodeShared* newParent, TreeNodeShared* newChild, bool checkDescendant) {
    VORN_INTERNAL_ASSERT(newParent, "null node!!!");
    if (newChild == newParent) VORN_THROW(E::PARAMETER, "Can't append a node under itself!");
    if (!checkDescendant) return;
    TreeNodeShared* current = newParent;
    for (TreeNodeShared* ancestor = current->m_parent; ancestor; ancestor = current->m_parent) {
        assertValidTreeNodeInChildList(current);
        if (ancestor == newChild) VORN_THROW(E::PARAMETER, "Can't append a node under its descendant!");
        current = ancestor;
    }
}

} // namespace Vorn
