/// @file
/// TreeNodeShared, TreeNodeHelper: the base of trees of shared objects.
///
/// A node stores its parent and the position among its siblings that was cached last. The list of children belongs to
/// the deriving class. Programs use TreeNode, which keeps both correct. TreeNodeHelper has the checks.
///
/// Cost: an object of 32 bytes (16 in a 32-bit process); the descendant check walks up to the root.
///
/// Failures: no operation here allocates. A failed check changes nothing.
///
/// Threads: a tree belongs to one thread at a time.
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

    unsigned int m_cachedIndex; ///< position in the parent's list that was cached last
    TreeNodeShared* m_parent;   ///< null at a root; not counted

private:
    friend class TreeNodeHelper;

    // Leaves position and parent uninitialised. Private: a node must not be in two places.
    TreeNodeShared(const TreeNodeShared& other);
    TreeNodeShared& operator=(const TreeNodeShared&) { return *this; }
};

/// Checks of trees, as static operations.
///
/// Code that changes a list of children calls `ensureInsertableNode` before a node is linked to a parent, `cacheIndex`
/// after any change, and `assertValidTreeNodeInChildList` on nodes found in a list. `getParent`, `cacheIndex` and
/// `getCachedIndex` throw `Exception<2>`: "node : node is null!".
class VORN_API TreeNodeHelper {
public:
    TreeNodeHelper& operator=(const TreeNodeHelper&) { return *this; }

    /// Returns the parent of `node`; null at a root.
    static TreeNodeShared* getParent(TreeNodeShared* node) {
        VORN_INTERNAL_ASSERT(node, "node is null!");
        return node->m_parent;
    }

    /// Stores the position of `node` in its parent's list.
    static void cacheIndex(TreeNodeShared* node, unsigned int index) {
        VORN_INTERNAL_ASSERT(node, "node is null!");
        node->m_cachedIndex = index;
    }

    /// Returns the position that was cached last, also if the node has moved since.
    static unsigned int getCachedIndex(TreeNodeShared* node) {
        VORN_INTERNAL_ASSERT(node, "node is null!");
        return node->m_cachedIndex;
    }

    /// Checks that a node in a list of children has a valid control block with a use.
    ///
    /// Throws `Exception<2>`: "node : null node!!!".
    /// Throws `Exception<2>`: "counter : null ref counter!!!".
    /// Throws `Exception<2>`: "counter->m_useCount : invalid use count!!!".
    /// Throws `Exception<2>`: "validRefCounter(counter) : Invalid reference counter!".
    static void assertValidTreeNodeInChildList(TreeNodeShared* node);

    /// Checks that linking `newChild` to `newParent` makes no cycle. A null `newChild` passes.
    ///
    /// If `checkDescendant` is true, walks from `newParent` up to the root and validates each node below the root. Pass
    /// false only if `newChild` cannot be an ancestor of `newParent`.
    ///
    /// Throws `Exception<2>`: "newParent : null node!!!", and what `assertValidTreeNodeInChildList` throws.
    /// Throws `Exception<4>`: "Can't append a node under itself!".
    /// Throws `Exception<4>`: "Can't append a node under its descendant!".
    static void ensureInsertableNode(TreeNodeShared* newParent, TreeNodeShared* newChild, bool checkDescendant);
};

} // namespace Vorn
