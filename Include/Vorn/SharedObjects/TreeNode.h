/// @file
/// TreeNode: the base of shared objects that form a tree.
///
///     class SceneNode : public Vorn::TreeNode<SceneNode> { ... };
///     root->append(Vorn::makeShared<SceneNode>());
///     for (SceneNode& node : root->depthFirst()) node.draw();
///     root->sort([](const SceneNode& a, const SceneNode& b) { return a.layer < b.layer; });
///
/// A node owns its children through shared pointers. It stores its parent, which is not counted, and its index. A root
/// is owned by the pointers of the program. When a node is destroyed, children that have other owners become roots.
/// Trees of any depth can be destroyed; SharedPtr.h describes the order near the end of the stack.
///
/// Cost: one vector per node. Inserting and removing renumber the following siblings. Walking a tree allocates nothing.
///
/// A const node gives access to const nodes, except that `getChildren` returns the pointers as they are stored.
///
/// Failures: only `append`, `insert` and `sort` allocate. An operation that throws leaves the tree unchanged.
///
/// Threads: a tree belongs to one thread at a time.
#pragma once

#include "Vorn/SharedObjects/SharedPtr.h"
#include "Vorn/SharedObjects/TreeNodeHelper.h"

#include <algorithm> // std::rotate, std::stable_sort
#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

namespace Vorn {

/// A node of a tree of T, which derives from it.
template <class T>
class TreeNode : public TreeNodeShared {
public:
    template <class Walk>
    class Range;
    template <class Node>
    class DepthFirstWalk;
    template <class Node>
    class PostOrderWalk;
    template <class Node>
    class AncestorWalk;

    ~TreeNode() override {
        for (const SharedPtr<T>& child : m_children) unlink(*child);
    }

    /// Returns the parent; null at a root.
    /// @{
    T* getParent() { return static_cast<T*>(TreeNodeHelper::getParent(this)); }
    const T* getParent() const { return static_cast<const T*>(m_parent); }
    /// @}

    /// Returns the position among the siblings; 0 at a root.
    /// @{
    unsigned int getIndex() { return TreeNodeHelper::getCachedIndex(this); }
    unsigned int getIndex() const { return m_cachedIndex; }
    /// @}

    /// Returns the node above all others: this node if it has no parent.
    /// @{
    T& getRoot() { return const_cast<T&>(std::as_const(*this).getRoot()); }
    const T& getRoot() const {
        const TreeNode* node = this;
        while (const T* const parent = node->getParent()) node = parent;
        return static_cast<const T&>(*node);
    }
    /// @}

    /// Returns the number of ancestors: 0 at a root.
    std::size_t getDepth() const {
        std::size_t depth = 0;
        for (const TreeNode* node = getParent(); node; node = node->getParent()) ++depth;
        return depth;
    }

    /// Returns true if `node` lies below this node. A node is not its own ancestor.
    bool isAncestorOf(const T& node) const {
        const TreeNode* above = static_cast<const TreeNode&>(node).getParent();
        while (above && above != this) above = above->getParent();
        return above;
    }

    /// Returns the number of children.
    unsigned int getChildCount() const { return static_cast<unsigned int>(m_children.size()); }

    /// Returns the children in order.
    /// @warning A change of the list invalidates iterators of it.
    const std::vector<SharedPtr<T>>& getChildren() const { return m_children; }

    /// Returns a child.
    ///
    /// Throws `Exception<4>`: "index out of range!".
    /// @{
    T& getChild(unsigned int index) {
        if (index >= m_children.size()) VORN_THROW(E::PARAMETER, "index out of range!");
        return *m_children[index];
    }
    const T& getChild(unsigned int index) const {
        if (index >= m_children.size()) VORN_THROW(E::PARAMETER, "index out of range!");
        return *m_children[index];
    }
    /// @}

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
        unlink(*child);
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

    /// Removes this node, with all below it, from its parent, and returns it; null if it is a root already.
    /// @warning If nobody else owns the node and the result is not kept, the node is destroyed.
    SharedPtr<T> detach() {
        T* const parent = getParent();
        return parent ? static_cast<TreeNode*>(parent)->removeAt(getIndex()) : SharedPtr<T>();
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

    /// Sorts the children, so that `isBefore(b, a)` is false for each `a` in front of a `b`. Children that are equal
    /// keep their order. `isBefore` takes two `const T&` and must not change the list.
    ///
    /// Throws `std::bad_alloc`, and what `isBefore` throws; the order is unchanged then.
    template <class Comparison>
    void sort(Comparison isBefore) {
        std::vector<T*> order;
        order.reserve(m_children.size());
        for (const SharedPtr<T>& child : m_children) order.push_back(child.get());
        std::stable_sort(order.begin(), order.end(), [&](const T* a, const T* b) -> bool { return isBefore(*a, *b); });
        std::vector<SharedPtr<T>> sorted;
        sorted.reserve(order.size());
        for (T* const child : order) sorted.push_back(std::move(m_children[static_cast<TreeNode*>(child)->getIndex()]));
        m_children.swap(sorted);
        cacheIndexesFrom(0);
    }

    /// Returns a range of this node and all its descendants, each parent before its children (pre-order), for a
    /// range-based loop.
    ///
    /// During the loop, nodes may be added below or behind the current one, and its children may be removed. The
    /// current node itself must stay where it is.
    /// @warning The range does not own this node. In `for (Node& node : makeShared<Node>()->depthFirst())` the node is
    ///     destroyed before the loop begins; store the SharedPtr first.
    /// @{
    Range<DepthFirstWalk<T>> depthFirst() { return Range<DepthFirstWalk<T>>(static_cast<T*>(this)); }
    Range<DepthFirstWalk<const T>> depthFirst() const {
        return Range<DepthFirstWalk<const T>>(static_cast<const T*>(this));
    }
    /// @}

    /// Returns a range of this node and all its descendants, each parent behind its children (post-order).
    ///
    /// During the loop, the current node may be detached and destroyed, nodes may be added below it, and what has been
    /// visited may be removed. All other nodes must stay where they are.
    /// @warning As with `depthFirst`, the range does not own this node.
    /// @{
    Range<PostOrderWalk<T>> postOrder() { return Range<PostOrderWalk<T>>(static_cast<T*>(this)); }
    Range<PostOrderWalk<const T>> postOrder() const {
        return Range<PostOrderWalk<const T>>(static_cast<const T*>(this));
    }
    /// @}

    /// Returns a range of the parent, its parent, and so on up to the root; empty at a root.
    ///
    /// During the loop, the current node and those above it must stay where they are.
    /// @{
    Range<AncestorWalk<T>> ancestors() { return Range<AncestorWalk<T>>(static_cast<T*>(this)); }
    Range<AncestorWalk<const T>> ancestors() const { return Range<AncestorWalk<const T>>(static_cast<const T*>(this)); }
    /// @}

    /// Returns the first node of `depthFirst`, this node included, for which `condition` returns true; null if there is
    /// none. `condition` takes a `T&` (`const T&` of a const node).
    /// @{
    template <class Condition>
    T* find(Condition&& condition) {
        return findIn(depthFirst(), condition);
    }
    template <class Condition>
    const T* find(Condition&& condition) const {
        return findIn(depthFirst(), condition);
    }
    /// @}

protected:
    TreeNode() = default;

private:
    static void unlink(TreeNode& node) {
        node.m_parent = nullptr;
        TreeNodeHelper::cacheIndex(&node, 0);
    }

    template <class Nodes, class Condition>
    static auto findIn(Nodes nodes, Condition& condition) {
        auto node = nodes.begin();
        while (node != nodes.end() && !condition(*node)) ++node;
        return node.operator->();
    }

    // What the walks read. T may have members of the same names.
    static unsigned int childCount(const TreeNode* node) { return node->getChildCount(); }
    static unsigned int indexOf(const TreeNode* node) { return node->getIndex(); }
    static T* parentOf(TreeNode* node) { return node->getParent(); }
    static const T* parentOf(const TreeNode* node) { return node->getParent(); }
    template <class Node>
    static Node* childOf(const TreeNode* node, unsigned int index) {
        T* const child = node->m_children[index].get();
        TreeNodeHelper::assertValidTreeNodeInChildList(child);
        return child;
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

/// A range of nodes, visited by a forward iterator. `Walk` has the current node and finds the next one.
template <class T>
template <class Walk>
class TreeNode<T>::Range {
public:
    class Iterator {
    public:
        using value_type = std::remove_pointer_t<decltype(Walk::node)>;
        using reference = value_type&;
        using pointer = value_type*;
        using difference_type = std::ptrdiff_t;
        using iterator_category = std::forward_iterator_tag;

        Iterator() = default;

        reference operator*() const { return *m_walk.node; }
        pointer operator->() const { return m_walk.node; }

        Iterator& operator++() {
            m_walk.advance();
            return *this;
        }
        Iterator operator++(int) {
            const Iterator before = *this;
            m_walk.advance();
            return before;
        }

        friend bool operator==(const Iterator& a, const Iterator& b) { return a.m_walk.node == b.m_walk.node; }
        friend bool operator!=(const Iterator& a, const Iterator& b) { return a.m_walk.node != b.m_walk.node; }

    private:
        friend class Range;
        explicit Iterator(const Walk& walk) : m_walk(walk) {}

        Walk m_walk;
    };

    Iterator begin() const { return Iterator(Walk(m_start)); }
    Iterator end() const { return Iterator(); }

private:
    friend class TreeNode;
    using Node = typename Iterator::value_type;
    explicit Range(Node* start) : m_start(start) {}

    Node* m_start;
};

/// Each parent before its children.
template <class T>
template <class Node>
class TreeNode<T>::DepthFirstWalk {
public:
    DepthFirstWalk() = default;
    explicit DepthFirstWalk(Node* root) : node(root), m_root(root) {}

    /// Goes to the first child, or to the next sibling of the node or of its nearest ancestor that has one.
    void advance() {
        if (childCount(node) > 0) {
            node = childOf<Node>(node, 0);
            return;
        }
        while (node != m_root) {
            const unsigned int next = indexOf(node) + 1;
            node = parentOf(node);
            if (next < childCount(node)) {
                node = childOf<Node>(node, next);
                return;
            }
        }
        node = nullptr;
    }

    Node* node = nullptr; ///< the current node; null at the end

private:
    Node* m_root = nullptr;
};

/// Each parent behind its children. The next node is found before the current one is visited, which may then go.
template <class T>
template <class Node>
class TreeNode<T>::PostOrderWalk {
public:
    PostOrderWalk() = default;
    explicit PostOrderWalk(Node* root) : node(firstBelow(root)), m_root(root), m_next(behind(node)) {}

    void advance() {
        node = m_next;
        if (node) m_next = behind(node);
    }

    Node* node = nullptr; ///< the current node; null at the end

private:
    static Node* firstBelow(Node* above) {
        while (childCount(above) > 0) above = childOf<Node>(above, 0);
        return above;
    }

    // The first node below the next sibling, or the parent.
    Node* behind(Node* visited) const {
        if (visited == m_root) return nullptr;
        const unsigned int next = indexOf(visited) + 1;
        Node* const parent = parentOf(visited);
        return next < childCount(parent) ? firstBelow(childOf<Node>(parent, next)) : parent;
    }

    Node* m_root = nullptr;
    Node* m_next = nullptr;
};

/// The parent, its parent and so on.
template <class T>
template <class Node>
class TreeNode<T>::AncestorWalk {
public:
    AncestorWalk() = default;
    explicit AncestorWalk(Node* start) : node(parentOf(start)) {}

    void advance() { node = parentOf(node); }

    Node* node = nullptr; ///< the current node; null above the root
};

} // namespace Vorn
