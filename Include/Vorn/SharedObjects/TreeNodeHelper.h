// TreeNodeShared, TreeNodeHelper: what trees of shared objects are built on.
//
// A node knows its parent and, as last recorded, its position among its siblings. The list of children belongs to the
// class on top: programs take TreeNode, which keeps all of this true. TreeNodeHelper holds the checks.
//
// Threads: a tree belongs to one thread at a time.
#pragma once

#include "Vorn/Assert.h"
#include "Vorn/Config.h"
#include "Vorn/SharedObjects/SharedObjectBase.h"

namespace Vorn {

/// Base of shared objects that live in a tree.
class VORN_API TreeNodeShared : public DynamicObject {
public:
    ~TreeNodeShared() override;

protected:
    TreeNodeShared() : m_cachedIndex(0), m_parent(nullptr) {}

    unsigned int m_cachedIndex; // position in the parent's list, as last cached; true only if every change caches it
    TreeNodeShared* m_parent;   // null at a root; not counted

private:
    friend class TreeNodeHelper;

    /// Leaves position and parent unwritten; private, as a node in two places is not a tree.
    TreeNodeShared(const TreeNodeShared& other);
    TreeNodeShared& operator=(const TreeNodeShared&) { return *this; }
};

/// The checks of trees. Class with static operations only.
///
/// The order for whoever changes a list of children: `ensureInsertableNode` before a node is linked under a parent,
/// `cacheIndex` after any change, `assertValidTreeNodeInChildList` on nodes found in a list. Operations on one node
/// raise `Exception<2>`, "node : node is null!", on null.
class VORN_API TreeNodeHelper {
public:
    TreeNodeHelper& operator=(const TreeNodeHelper&) { return *this; }

    static TreeNodeShared* getParent(TreeNodeShared* node) {
        VORN_INTERNAL_ASSERT(node, "node is null!");
        return node->m_parent;
    }

    static void cacheIndex(TreeNodeShared* node, unsigned int index) {
        VORN_INTERNAL_ASSERT(node, "node is null!");
        node->m_cachedIndex = index;
    }

    /// What was cached last, also after the node has moved.
    static unsigned int getCachedIndex(TreeNodeShared* node) {
        VORN_INTERNAL_ASSERT(node, "node is null!");
        return node->m_cachedIndex;
    }

    /// A node in a list of children has a record, and the list's use count in it.
    ///
    /// Raises `Exception<2>`: "node : null node!!!", "counter : null ref counter!!!", "counter->m_useCount : invalid
    /// use count!!!" or "validRefCounter(counter) : Invalid reference counter!".
    static void assertValidTreeNodeInChildList(TreeNodeShared* node);

    /// Refuses to make a cycle. The descendant check walks from `newParent` up to the root and validates each node
    /// below the root on its way; without it the caller vouches that `newChild` is no ancestor.
    ///
    /// Raises `Exception<2>`, "newParent : null node!!!", and `Exception<4>`, "Can't append a node under itself!" or
    /// "Can't append a node under its descendant!". A null `newChild` passes.
    static void ensureInsertableNode(TreeNodeShared* newParent, TreeNodeShared* newChild, bool checkDescendant);
};

} // namespace Vorn
