#include "Vorn/SharedObjects/TreeNode.h"

#include "Support/AllocationCounter.h"
#include "Support/Report.h"
#include "Vorn/SharedObjects/WeakPtr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using Vorn::SharedPtr;

struct Node : Vorn::TreeNode<Node> {
    explicit Node(std::string nodeName) : name(std::move(nodeName)) { ++living; }
    ~Node() override { --living; }
    std::string name;
    static inline int living = 0;
};

SharedPtr<Node> make(const std::string& name) { return Vorn::makeShared<Node>(name); }

std::string text(Node& node) {
    std::string result = node.name;
    if (node.getChildCount() == 0) return result;
    result += '(';
    for (const SharedPtr<Node>& child : node.getChildren()) result += text(*child);
    return result + ')';
}

// Parents and indexes of a whole tree.
void expectSound(Node& node) {
    for (unsigned int i = 0; i < node.getChildCount(); ++i) {
        Node& child = node.getChild(i);
        EXPECT_EQ(child.getParent(), &node);
        EXPECT_EQ(child.getIndex(), i);
        EXPECT_NO_THROW(Vorn::TreeNodeHelper::assertValidTreeNodeInChildList(&child));
        expectSound(child);
    }
}

class TreeNodeTest : public testing::Test {
protected:
    TreeNodeTest() : root(make("r")), a(make("a")), b(make("b")), c(make("c")) {
        root->append(a);
        root->append(b);
        b->append(c);
    }
    SharedPtr<Node> root, a, b, c;
};

TEST_F(TreeNodeTest, AppendsAndInserts) {
    EXPECT_EQ(text(*root), "r(ab(c))");
    EXPECT_EQ(root->getParent(), nullptr);
    EXPECT_EQ(root->getIndex(), 0u);
    root->insert(1, make("d"));
    root->insert(0, make("e"));
    root->insert(4, make("f"));
    EXPECT_EQ(text(*root), "r(eadb(c)f)");
    expectSound(*root);
    EXPECT_EQ(a.getUseCount(), 2); // ours and the list's
}

TEST_F(TreeNodeTest, InsertingTakesTheNodeFromItsOldParent) {
    root->append(c);
    EXPECT_EQ(text(*root), "r(abc)");
    expectSound(*root);
    EXPECT_EQ(c.getUseCount(), 2);
    root->append(a); // within the same parent
    EXPECT_EQ(text(*root), "r(bca)");
    root->insert(1, a); // counts without it
    EXPECT_EQ(text(*root), "r(bac)");
    root->insert(0, root->getChildren()[2]); // an element of the list itself
    EXPECT_EQ(text(*root), "r(cba)");
    a->insert(0, b);
    EXPECT_EQ(text(*root), "r(ca(b))");
    expectSound(*root);
}

TEST_F(TreeNodeTest, Removes) {
    EXPECT_EQ(root->removeAt(0), a);
    EXPECT_EQ(a->getParent(), nullptr);
    EXPECT_EQ(a.getUseCount(), 1);
    EXPECT_EQ(b->getIndex(), 0u);
    EXPECT_EQ(root->remove(*b), b);
    EXPECT_EQ(b->getIndex(), 0u);
    EXPECT_EQ(text(*b), "b(c)");
    EXPECT_EQ(root->getChildCount(), 0u);
}

TEST_F(TreeNodeTest, MovesAmongSiblings) {
    root->append(make("d"));
    root->append(make("e"));
    const struct {
        unsigned int from, to;
        const char* expected;
    } rows[] = {
        {0, 3, "r(b(c)dea)"}, {3, 0, "r(ab(c)de)"}, {1, 2, "r(adb(c)e)"}, {2, 2, "r(adb(c)e)"}, {3, 1, "r(aedb(c))"}};
    for (const auto& row : rows) {
        root->move(row.from, row.to);
        EXPECT_EQ(text(*root), row.expected) << row.from << " to " << row.to;
        expectSound(*root);
    }
}

TEST_F(TreeNodeTest, RefusesWithoutAnyChange) {
    const auto expect = [&](auto operation, const char* message, const char* function) {
        expectRaises<4>(operation, message, function);
        EXPECT_EQ(text(*root), "r(ab(c))");
        expectSound(*root);
    };
    const char* const helper = "Vorn::TreeNodeHelper::ensureInsertableNode";
    expect([&] { root->append(root); }, "Can't append a node under itself!", helper);
    expect([&] { c->append(b); }, "Can't append a node under its descendant!", helper);
    expect([&] { c->insert(0, root); }, "Can't append a node under its descendant!", helper);
    expect([&] { root->append(nullptr); }, "null node!", "Vorn::TreeNode::insert");
    expect([&] { root->insert(3, make("d")); }, "index out of range!", "Vorn::TreeNode::insert");
    expect([&] { root->insert(2, a); }, "index out of range!", "Vorn::TreeNode::insert");
    expect([&] { root->removeAt(2); }, "index out of range!", "Vorn::TreeNode::removeAt");
    expect([&] { root->remove(*c); }, "not a child of this node!", "Vorn::TreeNode::remove");
    expect([&] { root->getChild(2); }, "index out of range!", "Vorn::TreeNode::getChild");
    expect([&] { root->move(0, 2); }, "index out of range!", "Vorn::TreeNode::move");
    expect([&] { root->move(2, 0); }, "index out of range!", "Vorn::TreeNode::move");
}

TEST_F(TreeNodeTest, ChildrenOutliveTheirParentAsRoots) {
    root.reset();
    EXPECT_EQ(a->getParent(), nullptr);
    EXPECT_EQ(b->getParent(), nullptr);
    EXPECT_EQ(b->getIndex(), 0u);
    EXPECT_EQ(c->getParent(), b.get());
}

TEST_F(TreeNodeTest, DestroysWhatNobodyElseHolds) {
    a.reset();
    b.reset();
    const Vorn::WeakPtr<Node> weak(c);
    c.reset();
    EXPECT_FALSE(weak.isExpired());
    root.reset();
    EXPECT_TRUE(weak.isExpired());
    EXPECT_EQ(Node::living, 0);
}

TEST_F(TreeNodeTest, WalksDepthFirstWithoutAllocation) {
    a->append(make("d"));
    a->append(make("e"));
    c->append(make("f"));
    std::string names;
    names.reserve(64);
    EXPECT_EQ(allocationsDuring([&] {
                  for (Node& node : root->depthFirst()) names += node.name;
              }),
              0u);
    EXPECT_EQ(names, "radebcf");
    names.clear();
    for (Node& node : b->depthFirst()) names += node.name; // a part, and nothing behind it
    EXPECT_EQ(names, "bcf");
    names.clear();
    const SharedPtr<Node> single = make("x");
    for (Node& node : single->depthFirst()) names += node.name;
    EXPECT_EQ(names, "x");
    names.clear();
    for (Node& node : root->depthFirst()) { // grows while it is walked
        names += node.name;
        if (node.name == "d") a->append(make("g"));
    }
    EXPECT_EQ(names, "radegbcf");
}

TEST(TreeNodeModel, RandomChangesKeepParentsAndIndexes) {
    std::mt19937 random(7);
    const auto draw = [&](std::size_t end) { return static_cast<std::size_t>(random() % end); };
    std::vector<SharedPtr<Node>> nodes;
    std::vector<std::vector<std::size_t>> children(12); // the model
    std::vector<int> parents(12, -1);
    for (std::size_t i = 0; i < 12; ++i) nodes.push_back(make(std::string(1, static_cast<char>('a' + i))));
    const auto isAbove = [&](std::size_t above, std::size_t node) {
        for (int up = static_cast<int>(node); up >= 0; up = parents[static_cast<std::size_t>(up)]) {
            if (static_cast<std::size_t>(up) == above) return true;
        }
        return false;
    };
    const auto unlinkInModel = [&](std::size_t node) {
        if (parents[node] < 0) return;
        auto& list = children[static_cast<std::size_t>(parents[node])];
        list.erase(std::find(list.begin(), list.end(), node));
        parents[node] = -1;
    };
    for (int round = 0; round < 3000; ++round) {
        const std::size_t parent = draw(12), child = draw(12);
        if (draw(4) == 0) {
            if (parents[child] >= 0) nodes[child]->getParent()->remove(*nodes[child]);
            unlinkInModel(child);
        } else if (isAbove(child, parent)) {
            EXPECT_THROW(nodes[parent]->append(nodes[child]), Vorn::Exception<4>);
        } else {
            unlinkInModel(child);
            const std::size_t index = draw(children[parent].size() + 1);
            nodes[parent]->insert(static_cast<unsigned int>(index), nodes[child]);
            children[parent].insert(children[parent].begin() + static_cast<std::ptrdiff_t>(index), child);
            parents[child] = static_cast<int>(parent);
        }
        for (std::size_t i = 0; i < 12; ++i) {
            ASSERT_EQ(nodes[i]->getChildCount(), children[i].size());
            EXPECT_EQ(nodes[i]->getParent(),
                      parents[i] < 0 ? nullptr : nodes[static_cast<std::size_t>(parents[i])].get());
            for (std::size_t k = 0; k < children[i].size(); ++k) {
                EXPECT_EQ(&nodes[i]->getChild(static_cast<unsigned int>(k)), nodes[children[i][k]].get());
                EXPECT_EQ(nodes[children[i][k]]->getIndex(), k);
            }
        }
    }
}

} // namespace
