// TreeNode: base of shared objects that form a tree.
//
//     class SceneNode : public TreeNode<SceneNode> { ... };
//
// A node holds its children through shared pointers and knows its parent, which is not counted, and its index. A root
// is held by whoever made it. Children that somebody else holds too become roots when their parent dies.
//
// Cost: one vector per node; inserting and removing renumber the siblings behind. Walking a tree allocates nothing.
//
// Threads: a tree belongs to one thread at a time.
#pragma once

#include "Vorn/SharedObjects/SharedPtr.h"
#include "Vorn/SharedObjects/TreeNodeHelper.h"

#include <algorithm> // std::rotate
#include <vector>

namespace Vorn {

/// A node whose parent and children are T, which derives from it.
///
/// Trees of any depth can be destroyed; see SharedPtr for the order near the end of the stack.
template <class T>
class TreeNode : public TreeNodeShared {
public:
    class DepthFirstRange;

    ~TreeNode() override {
        for (const SharedPtr<T>& child : m_children) detach(*child);
    }

    T* getParent() { return static_cast<T*>(TreeNodeHelper::getParent(this)); } ///< null at a root
    unsigned int getIndex() { return TreeNodeHelper::getCachedIndex(this); }    ///< among the siblings; 0 at a root
    unsigned int getChildCount() const { return static_cast<unsigned int>(m_children.size()); }

    /// The children in order. Not to be walked while the list changes.
    const std::vector<SharedPtr<T>>& getChildren() const { return m_children; }

    /// Raises `Exception<4>`, "index out of range!".
    T& getChild(unsigned int index) const {
        if (index >= m_children.size()) VORN_THROW(4, "index out of range!");
        return *m_children[index];
    }

    /// Puts `child` behind the other children; see `insert`.
    void append(const SharedPtr<T>& child) {
        insert(getChildCount() - (child && child->m_parent == this ? 1u : 0u), child);
    }

    /// Puts `child` at `index`. It leaves its old parent first, and if that is this node, `index` counts without it.
    ///
    /// Raises `Exception<4>`: "null node!", "index out of range!", "Can't append a node under itself!" or "Can't append
    /// a node under its descendant!"; the checks of TreeNodeHelper; `std::bad_alloc`. The tree is as it was then.
    void insert(unsigned int index, const SharedPtr<T>& child) {
        if (!child) VORN_THROW(4, "null node!");
        TreeNode& node = *child;
        // A node without children is nobody's ancestor.
        TreeNodeHelper::ensureInsertableNode(this, &node, !node.m_children.empty());
        TreeNode* const oldParent = node.getParent();
        const unsigned int limit = getChildCount() - (oldParent == this ? 1u : 0u);
        if (index > limit) VORN_THROW(4, "index out of range!");

        const SharedPtr<T> held = child; // `child` may be the element that is taken out
        if (oldParent != this) m_children.reserve(grownCapacity());
        if (oldParent) oldParent->removeAt(node.getIndex());
        m_children.insert(m_children.begin() + static_cast<std::ptrdiff_t>(index), held);
        node.m_parent = this;
        cacheIndexesFrom(index);
    }

    /// Takes the child at `index` out and gives it; it is a root then. Raises `Exception<4>`, "index out of range!".
    SharedPtr<T> removeAt(unsigned int index) {
        if (index >= m_children.size()) VORN_THROW(4, "index out of range!");
        TreeNodeHelper::assertValidTreeNodeInChildList(m_children[index].get());
        SharedPtr<T> child = std::move(m_children[index]);
        m_children.erase(m_children.begin() + static_cast<std::ptrdiff_t>(index));
        detach(*child);
        cacheIndexesFrom(index);
        return child;
    }

    /// Takes `child` out and gives it. Raises `Exception<4>`, "not a child of this node!".
    SharedPtr<T> remove(T& child) {
        TreeNode& node = child;
        if (node.m_parent != this) VORN_THROW(4, "not a child of this node!");
        return removeAt(node.getIndex());
    }

    /// Moves the child at `from` so that it stands at `to`. Raises `Exception<4>`, "index out of range!".
    void move(unsigned int from, unsigned int to) {
        if (from >= m_children.size() || to >= m_children.size()) VORN_THROW(4, "index out of range!");
        const auto at = [this](unsigned int index) { return m_children.begin() + static_cast<std::ptrdiff_t>(index); };
        if (from < to) {
            std::rotate(at(from), at(from) + 1, at(to) + 1);
        } else {
            std::rotate(at(to), at(from), at(from) + 1);
        }
        cacheIndexesFrom(from < to ? from : to);
    }

    /// This node and everything below it, each parent before its children, for a range-based loop. Nodes may be added
    /// below or behind the current one meanwhile, and children of it removed; the node itself must stay where it is.
    /// @warning The range does not hold this node: in `for (Node& node : makeShared<Node>()->depthFirst())` it is gone.
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

    // Grows as a vector does by itself, so that appending stays cheap.
    std::size_t grownCapacity() const {
        if (m_children.size() < m_children.capacity()) return m_children.capacity();
        return m_children.empty() ? 1 : 2 * m_children.size();
    }

    std::vector<SharedPtr<T>> m_children; // never null; each has this node as parent and its position cached
};

/// The nodes of one subtree, each parent before its children.
template <class T>
class TreeNode<T>::DepthFirstRange {
public:
    class Iterator {
    public:
        T& operator*() const { return *m_node; }
        T* operator->() const { return m_node; }

        /// Goes to the first child, or up to the next sibling of the nearest ancestor that has one.
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
