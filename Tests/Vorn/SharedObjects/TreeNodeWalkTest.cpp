// Walks, searches and sorts of trees, compared with plain recursions over a model of each tree.
#include "Support/AllocationCounter.h"
#include "Support/Effort.h"
#include "Support/Report.h"
#include "Vorn/SharedObjects/TreeNode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>

namespace {

using Vorn::SharedPtr;

struct Node : Vorn::TreeNode<Node> {
    explicit Node(int itsId, int itsKey = 0) : id(itsId), key(itsKey) { ++living; }
    ~Node() override { --living; }
    int id;
    int key;
    static inline int living = 0;
};

using Ids = std::vector<int>;

// Trees of numbered nodes beside the same trees as lists of children.
struct Forest {
    explicit Forest(std::size_t count, std::mt19937& random) : children(count), parents(count, -1) {
        for (std::size_t i = 0; i < count; ++i) {
            nodes.push_back(Vorn::makeShared<Node>(static_cast<int>(i), static_cast<int>(random() % 3)));
            if (i == 0 || random() % 8 == 0) continue; // a root
            const std::size_t parent = random() % (random() % 2 ? i : std::min<std::size_t>(i, 4));
            nodes[parent]->append(nodes[i]);
            children[parent].push_back(static_cast<int>(i));
            parents[i] = static_cast<int>(parent);
        }
    }

    void preOrder(int id, Ids& ids) const {
        ids.push_back(id);
        for (const int child : children[static_cast<std::size_t>(id)]) preOrder(child, ids);
    }
    void postOrder(int id, Ids& ids) const {
        for (const int child : children[static_cast<std::size_t>(id)]) postOrder(child, ids);
        ids.push_back(id);
    }
    Ids ancestors(int id) const {
        Ids ids;
        while ((id = parents[static_cast<std::size_t>(id)]) >= 0) ids.push_back(id);
        return ids;
    }

    std::vector<SharedPtr<Node>> nodes;
    std::vector<Ids> children;
    std::vector<int> parents;
};

template <class Range>
Ids idsOf(Range range) {
    Ids ids;
    for (const Node& node : range) ids.push_back(node.id);
    return ids;
}

TEST(TreeNodeWalk, AgreesWithTheModel) {
    std::mt19937 random(11);
    for (int round = 0; round < repetitions(200, 40); ++round) {
        const std::size_t count = 1 + random() % 40;
        const Forest forest(count, random);
        for (std::size_t i = 0; i < count; ++i) {
            const int id = static_cast<int>(i);
            Node& node = *forest.nodes[i];
            const Node& constant = node;
            Ids pre, post;
            forest.preOrder(id, pre);
            forest.postOrder(id, post);
            const Ids above = forest.ancestors(id);
            EXPECT_EQ(idsOf(node.depthFirst()), pre) << round << " at " << i;
            EXPECT_EQ(idsOf(constant.depthFirst()), pre) << round << " at " << i;
            EXPECT_EQ(idsOf(node.postOrder()), post) << round << " at " << i;
            EXPECT_EQ(idsOf(constant.postOrder()), post) << round << " at " << i;
            EXPECT_EQ(idsOf(node.ancestors()), above) << round << " at " << i;
            EXPECT_EQ(idsOf(constant.ancestors()), above) << round << " at " << i;
            EXPECT_EQ(constant.getDepth(), above.size());
            EXPECT_EQ(constant.getRoot().id, above.empty() ? id : above.back());
            EXPECT_EQ(&node.getRoot(), &constant.getRoot());
            EXPECT_EQ(constant.getParent() ? constant.getParent()->id : -1, forest.parents[i]);
            EXPECT_EQ(constant.getIndex(), node.getIndex());
            for (std::size_t k = 0; k < count; ++k) {
                const bool isAbove = k != i && std::count(pre.begin(), pre.end(), static_cast<int>(k));
                EXPECT_EQ(constant.isAncestorOf(*forest.nodes[k]), isAbove) << round << " at " << i << " of " << k;
            }
            for (int key = 0; key < 3; ++key) {
                const auto hasKey = [&](const Node& candidate) { return candidate.key == key; };
                const auto found = std::find_if(pre.begin(), pre.end(), [&](int candidate) {
                    return hasKey(*forest.nodes[static_cast<std::size_t>(candidate)]);
                });
                const Node* const expected =
                    found == pre.end() ? nullptr : forest.nodes[static_cast<std::size_t>(*found)].get();
                EXPECT_EQ(node.find(hasKey), expected);
                EXPECT_EQ(constant.find(hasKey), expected);
            }
        }
    }
}

TEST(TreeNodeWalk, AllocatesNothing) {
    std::mt19937 random(3);
    const Forest forest(50, random);
    int sum = 0;
    EXPECT_EQ(allocationsDuring([&] {
                  for (const Node& node : forest.nodes[0]->depthFirst()) sum += node.id;
                  for (const Node& node : forest.nodes[0]->postOrder()) sum -= node.id;
                  for (const Node& node : forest.nodes[49]->ancestors()) sum += 0 * node.id;
                  forest.nodes[0]->find([](const Node&) { return false; });
              }),
              0u);
    EXPECT_EQ(sum, 0);
}

TEST(TreeNodeWalk, IteratorsAreThoseOfForwardRanges) {
    std::mt19937 random(4);
    const Forest forest(30, random);
    const auto range = forest.nodes[0]->depthFirst();
    const auto counted = std::count_if(range.begin(), range.end(), [](const Node&) { return true; });
    EXPECT_EQ(static_cast<std::size_t>(std::distance(range.begin(), range.end())), idsOf(range).size());
    EXPECT_EQ(static_cast<std::size_t>(counted), idsOf(range).size());
    auto iterator = range.begin();
    EXPECT_EQ((iterator++)->id, 0);
    EXPECT_EQ(iterator->id, idsOf(range)[1]);
}

TEST(TreeNodeWalk, PostOrderMayDestroyWhatItVisits) {
    std::mt19937 random(5);
    for (int round = 0; round < 50; ++round) {
        Forest forest(40, random);
        Ids expected, visited;
        forest.postOrder(0, expected);
        const SharedPtr<Node> root = forest.nodes[0];
        const std::size_t below = expected.size();
        forest.nodes.resize(1);
        const int livingBefore = Node::living;
        for (Node& node : root->postOrder()) {
            visited.push_back(node.id);
            node.detach(); // the last pointer, except to the root
        }
        EXPECT_EQ(visited, expected);
        EXPECT_EQ(livingBefore - Node::living, static_cast<int>(below) - 1);
        EXPECT_EQ(root->getChildCount(), 0u);
    }
    EXPECT_EQ(Node::living, 0);
}

TEST(TreeNodeWalk, DetachMakesARoot) {
    const SharedPtr<Node> root = Vorn::makeShared<Node>(0);
    for (int id = 1; id < 4; ++id) root->append(Vorn::makeShared<Node>(id));
    Node& middle = root->getChild(1);
    middle.append(Vorn::makeShared<Node>(4));
    const SharedPtr<Node> detached = middle.detach();
    EXPECT_EQ(detached.get(), &middle);
    EXPECT_EQ(detached.getUseCount(), 1);
    EXPECT_EQ(detached->getParent(), nullptr);
    EXPECT_EQ(detached->getIndex(), 0u);
    EXPECT_EQ(idsOf(detached->depthFirst()), (Ids{2, 4}));
    EXPECT_EQ(idsOf(root->depthFirst()), (Ids{0, 1, 3}));
    EXPECT_EQ(root->getChild(1).getIndex(), 1u);
    EXPECT_EQ(detached->detach(), nullptr);
}

class TreeNodeSort : public testing::Test {
protected:
    TreeNodeSort() : root(Vorn::makeShared<Node>(-1)) {}

    Ids order() const {
        Ids ids;
        for (unsigned int i = 0; i < root->getChildCount(); ++i) {
            const Node& child = root->getChild(i);
            EXPECT_EQ(child.getIndex(), i);
            EXPECT_EQ(child.getParent(), root.get());
            ids.push_back(child.id);
        }
        return ids;
    }

    SharedPtr<Node> root;
};

bool hasLesserKey(const Node& a, const Node& b) { return a.key < b.key; }

TEST_F(TreeNodeSort, IsStable) {
    std::mt19937 random(6);
    for (int round = 0; round < 100; ++round) {
        root = Vorn::makeShared<Node>(-1);
        const int count = static_cast<int>(random() % 30);
        std::vector<std::pair<int, int>> model; // key, id
        for (int id = 0; id < count; ++id) {
            const int key = static_cast<int>(random() % 5);
            root->append(Vorn::makeShared<Node>(id, key));
            model.emplace_back(key, id);
        }
        std::sort(model.begin(), model.end()); // by id among equal keys
        Ids expected;
        for (const auto& entry : model) expected.push_back(entry.second);
        root->sort(hasLesserKey);
        EXPECT_EQ(order(), expected) << round;
    }
}

TEST_F(TreeNodeSort, KeepsTheOrderWhenItThrows) {
    for (int id = 0; id < 20; ++id) root->append(Vorn::makeShared<Node>(id, -id));
    const Ids before = order();
    int comparisons = 0;
    EXPECT_THROW(root->sort([&](const Node& a, const Node& b) {
        if (++comparisons == 30) throw std::runtime_error("enough");
        return hasLesserKey(a, b);
    }),
                 std::runtime_error);
    EXPECT_EQ(order(), before);
    std::size_t failures = 0;
    for (std::size_t n = 1; order() == before; ++n) { // std::stable_sort works without memory, too
        ASSERT_LT(n, 10u);
        failAllocation(n);
        try {
            root->sort(hasLesserKey);
        } catch (const std::bad_alloc&) {
            ++failures;
            failAllocation(0);
            EXPECT_EQ(order(), before);
        }
        failAllocation(0);
    }
    EXPECT_GT(failures, 0u);
    EXPECT_EQ(order(), Ids(before.rbegin(), before.rend()));
}

} // namespace
