/// @file
/// TreeNode: the base of shared objects that form a tree.
///
///     class SceneNode : public Vorn::TreeNode<SceneNode> { ... };
///     root->append(Vorn::makeShared<SceneNode>());
///     for (SceneNode& node : root->depthFirst()) node.draw();
///
/// A node owns its children through shared pointers. It stores its parent, which is not counted, and its index. A root
/// is owned by the pointers of the program. When a node is destroyed, children that have other owners become roots.
/// Trees of any depth can be destroyed; SharedPtr.h describes the order near the end of the stack.
///
/// Cost: one vector per node. Inserting and removing renumber the following siblings. Walking a tree allocates nothing.
///
/// Failures: only `append` and `insert` allocate. An operation that throws leaves the tree unchanged.
///
/// Threads: a tree belongs to one thread at a time.
#pragma once

#include "Vorn/SharedObjects/SharedPtr.h"
#include "Vorn/SharedObjects/TreeNodeHelper.h"

#include <algorithm> // std::rotate
#include <vector>

namespace Vorn {

/// A node of a tree of T, which derives from it.
template <class T>
class TreeNode : public TreeNodeShared {
public:
    class DepthFirstRange;

    ~TreeNode() override {
        for (const SharedPtr<T>& child : m_children) detach(*child);
    }

    T* getParent() { return static_cast<T*>(TreeNodeHelper::getParent(this)); } ///< Returns null at a root.
    unsigned int getIndex() {
        return TreeNodeHelper::getCachedIndex(this);
    } ///< Position among the siblings; 0 at a root.
    /// Returns the number of children.
    unsigned int getChildCount() const { return static_cast<unsigned int>(m_children.size()); }

    /// Returns the children in order.
    /// @warning A change of the list invalidates iterators of it.
    const std::vector<SharedPtr<T>>& getChildren() const { return m_children; }

    /// Returns a child.
    ///
    /// Throws `Exception<4>`: "index out of range!".
    T& getChild(unsigned int index) const {
        if (index >= m_children.size()) VORN_THROW(E::PARAMETER, "index out of range!");
        return *m_children[index];
    }

    /// Inserts `child` behind the other children; see `insert`.
    void append(const SharedPtr<T>& child) {
        insert(getChildCount() - (child && child->m_parent == this ? 1u : 0u), child);
    }

    /// Inserts `child` at `index`. Removes it from its old parent first; if that is this node, `index` does not count
    /// it.
    ///
    /// Throws `Exception<4>`: "null node!".
    /// Throws `Exception<4>`: "index out of range!".
    /// Throws `Exception<4>`: "Can't append a node under itself!".
    /// Throws `Exception<4>`: "Can't append a node under its descendant!".
    /// Throws `std::bad_alloc`, and `Exception<2>` where a check of TreeNodeHelper fails. The tree is unchanged after
    /// each of these.
    void insert(unsigned int index, const SharedPtr<T>& child) {
        if (!child) VORN_THROW(E::PARAMETER, "null node!");
        TreeNode& node = *child;
        // A node without children is not an ancestor.
        TreeNodeHelper::ensureInsertableNode(this, &node, !node.m_children.empty());
        TreeNode* const oldParent = node.getParent();
        const unsigned int limit = getChildCount() - (oldParent == this ? 1u : 0u);
        if (index > limit) VORN_THROW(E::PARAMETER, "index out of range!");

        const SharedPtr<T> held = child; // `child` may be the element that is taken out
        if (oldParent != this) m_children.reserve(grownCapacity());
        if (oldParent) oldParent->removeAt(node.getIndex());
        m_children.insert(m_children.begin() + static_cast<std::ptrdiff_t>(index), held);
        node.m_parent = this;
        cacheIndexesFrom(index);
    }

    /// Removes the child at `index`, which becomes a root, and returns it.
    ///
    /// Throws `Exception<4>`: "index out of range!".
    SharedPtr<T> removeAt(unsigned int index) {
        if (index >= m_children.size()) VORN_THROW(E::PARAMETER, "index out of range!");
        TreeNodeHelper::assertValidTreeNodeInChildList(m_children[index].get());
        SharedPtr<T> child = std::move(m_children[index]);
        m_children.erase(m_children.begin() + static_cast<std::ptrdiff_t>(index));
        detach(*child);
        cacheIndexesFrom(index);
        return child;
    }

    /// Removes `child`, which becomes a root, and returns it.
    ///
    /// Throws `Exception<4>`: "not a child of this node!".
    SharedPtr<T> remove(T& child) {
        TreeNode& node = child;
        if (node.m_parent != this) VORN_THROW(E::PARAMETER, "not a child of this node!");
        return removeAt(node.getIndex());
    }

    /// Moves the child at `from` to `to`; the children between them move up or down by one.
    ///
    /// Throws `Exception<4>`: "index out of range!".
    void move(unsigned int from, unsigned int to) {
        if (from >= m_children.size() || to >= m_children.size()) VORN_THROW(E::PARAMETER, "index out of range!");
        const auto at = [this](unsigned int index) { return m_children.begin() + static_cast<std::ptrdiff_t>(index); };
        if (from < to) {
            std::rotate(at(from), at(from) + 1, at(to) + 1);
        } else {
            std::rotate(at(to), at(from), at(from) + 1);
        }
        cacheIndexesFrom(from < to ? from : to);
    }

    /// Returns a range of this node and all its descendants, each parent before its children, for a range-based loop.
    ///
    /// During the loop, nodes may be added below or behind the current one, and its children may be removed. The
    /// current node itself must stay where it is.
    /// @warning The range does not own this node. In `for (Node& node : makeShared<Node>()->depthFirst())` the node is
    ///     destroyed before the loop begins; store the SharedPtr first.
    DepthFirstRange depthFirst() { return DepthFirstRange(static_cast<T*>(this)); }

protected:
    TreeNode() = default;

private:
    static void detach(TreeNode& node) {
        node.m_parent = nullptr;
        TreeNodeHelper::cacheIndex(&node, 0);
    }

    void cacheIndexesFrom(unsigned int index) {
        for (; index < m_children.size(); ++index) TreeNodeHelper::cacheIndex(m_children[index].get(), index);
    }

    // Doubles as a vector does, so that appending has constant cost on average.
    std::size_t grownCapacity() const {
        if (m_children.size() < m_children.capacity()) return m_children.capacity();
        return m_children.empty() ? 1 : 2 * m_children.size();
    }

    std::vector<SharedPtr<T>> m_children; // never null; each has this node as parent and its position cached
};

/// The nodes of a subtree, each parent before its children.
template <class T>
class TreeNode<T>::DepthFirstRange {
public:
    class Iterator {
    public:
        T& operator*() const { return *m_node; }
        T* operator->() const { return m_node; }

        /// Advances to the first child, or to the next sibling of the node or of its nearest ancestor that has one.
        Iterator& operator++() {
            if (m_node->getChildCount() > 0) {
                enter(0);
                return *this;
            }
            while (m_node != m_root) {
                const unsigned int next = m_node->getIndex() + 1;
                m_node = m_node->getParent();
                if (next < m_node->getChildCount()) {
                    enter(next);
                    return *this;
                }
            }
            m_node = nullptr;
            return *this;
        }

        friend bool operator==(const Iterator& a, const Iterator& b) { return a.m_node == b.m_node; }
        friend bool operator!=(const Iterator& a, const Iterator& b) { return a.m_node != b.m_node; }

    private:
        friend class DepthFirstRange;
        Iterator(T* root, T* node) : m_root(root), m_node(node) {}

        void enter(unsigned int index) {
            T* const child = m_node->getChildren()[index].get();
            TreeNodeHelper::assertValidTreeNodeInChildList(child);
            m_node = child;
        }

        T* m_root;
        T* m_node; // null at the end
    };

    Iterator begin() const { return Iterator(m_root, m_root); }
    Iterator end() const { return Iterator(m_root, nullptr); }

private:
    friend class TreeNode;
    explicit DepthFirstRange(T* root) : m_root(root) {}

    T* m_root;
};

} // namespace Vorn
