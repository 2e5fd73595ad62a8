#include "Vorn/SharedObjects/TreeNodeHelper.h"

#include "Support/CountedTarget.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using Vorn::TreeNodeHelper;
using Vorn::TreeNodeShared;

const char* const SOURCE = "Source/Vorn/TreeNodeHelper";

struct Node : TreeNodeShared {
    explicit Node(Node* parent = nullptr) { m_parent = parent; }
    void hold(Vorn::RefCounter* counter) { m_refCounter = counter; }
    using TreeNodeShared::m_cachedIndex;
    using TreeNodeShared::m_parent;
    using TreeNodeShared::m_refCounter;
};

// A root with a child and a grandchild; the last two are held once.
struct Family {
    Family() : child(&root), grandchild(&child), childCounter(1, 0, &child), grandchildCounter(1, 0, &grandchild) {
        child.hold(&childCounter);
        grandchild.hold(&grandchildCounter);
    }
    Node root, child, grandchild;
    JournalCounter childCounter, grandchildCounter;
};

TEST(TreeNodeShared, StartsAsARootAtIndexZero) {
    Node node;
    EXPECT_EQ(node.m_refCounter, nullptr);
    EXPECT_EQ(node.m_cachedIndex, 0u);
    EXPECT_EQ(node.m_parent, nullptr);
    const auto offset = [&](const void* field) {
        return static_cast<std::size_t>(static_cast<const char*>(field) - reinterpret_cast<const char*>(&node));
    };
    EXPECT_EQ(offset(&node.m_cachedIndex), 2 * sizeof(void*));
    EXPECT_EQ(offset(&node.m_parent), 3 * sizeof(void*));
    EXPECT_TRUE((std::is_base_of_v<Vorn::DynamicObject, TreeNodeShared>));
    EXPECT_TRUE(std::has_virtual_destructor_v<TreeNodeShared>);
    EXPECT_FALSE(std::is_copy_constructible_v<TreeNodeShared>);
    EXPECT_FALSE(std::is_copy_assignable_v<TreeNodeShared>);
    EXPECT_FALSE(std::is_default_constructible_v<TreeNodeShared>);
}

TEST(TreeNodeHelper, ReadsAndWritesTheFieldsOfANode) {
    Family family;
    EXPECT_EQ(TreeNodeHelper::getParent(&family.child), &family.root);
    EXPECT_EQ(TreeNodeHelper::getParent(&family.root), nullptr);
    TreeNodeHelper::cacheIndex(&family.child, 7);
    EXPECT_EQ(family.child.m_cachedIndex, 7u);
    EXPECT_EQ(TreeNodeHelper::getCachedIndex(&family.child), 7u);
    family.child.m_parent = nullptr; // moving leaves what was cached
    EXPECT_EQ(TreeNodeHelper::getCachedIndex(&family.child), 7u);
    TreeNodeHelper first, second;
    EXPECT_EQ(&(first = second), &first);
}

TEST(TreeNodeHelper, FieldsOfNullAreRefused) {
    const auto expect = [](auto operation, const char* function) {
        expectRaises<2>(operation, "node : node is null!", std::string("Vorn::TreeNodeHelper::") + function,
                        "Include/Vorn/SharedObjects/TreeNodeHelper");
    };
    expect([] { TreeNodeHelper::getParent(nullptr); }, "getParent");
    expect([] { TreeNodeHelper::cacheIndex(nullptr, 1); }, "cacheIndex");
    expect([] { TreeNodeHelper::getCachedIndex(nullptr); }, "getCachedIndex");
}

TEST(AssertValidTreeNodeInChildList, ChecksInOrder) {
    const auto expect = [](TreeNodeShared* node, const char* message) {
        expectRaises<2>([&] { TreeNodeHelper::assertValidTreeNodeInChildList(node); }, message,
                        "Vorn::TreeNodeHelper::assertValidTreeNodeInChildList", SOURCE);
    };
    Node node;
    expect(nullptr, "node : null node!!!");
    expect(&node, "counter : null ref counter!!!");
    JournalCounter unused(0, 1, &node), corrupt(1, 0, nullptr), good(1, 0, &node), negative(-1, 0, &node);
    node.hold(&unused); // invalid as well, but the count is reported first
    expect(&node, "counter->m_useCount : invalid use count!!!");
    node.hold(&corrupt);
    expect(&node, "validRefCounter(counter) : Invalid reference counter!");
    node.hold(&good);
    EXPECT_NO_THROW(TreeNodeHelper::assertValidTreeNodeInChildList(&node));
    node.hold(&negative); // only zero is refused
    EXPECT_NO_THROW(TreeNodeHelper::assertValidTreeNodeInChildList(&node));
}

void expectCycle(TreeNodeShared* parent, TreeNodeShared* child, bool checkDescendant, const char* message) {
    const auto insert = [&] { TreeNodeHelper::ensureInsertableNode(parent, child, checkDescendant); };
    expectRaises<4>(insert, message, "Vorn::TreeNodeHelper::ensureInsertableNode", SOURCE);
    EXPECT_EQ(reportOf<4>(insert).type, "::Vorn::E::PARAMETER");
}

TEST(EnsureInsertableNode, RefusesCycles) {
    Family family;
    for (const bool checkDescendant : {false, true}) {
        expectCycle(&family.root, &family.root, checkDescendant, "Can't append a node under itself!");
    }
    expectCycle(&family.child, &family.root, true, "Can't append a node under its descendant!");
    expectCycle(&family.grandchild, &family.root, true, "Can't append a node under its descendant!");
    expectCycle(&family.grandchild, &family.child, true, "Can't append a node under its descendant!");
    EXPECT_NO_THROW(TreeNodeHelper::ensureInsertableNode(&family.child, &family.root, false));
}

TEST(EnsureInsertableNode, LetsEverythingElsePass) {
    Family family;
    Node stranger;
    EXPECT_NO_THROW(TreeNodeHelper::ensureInsertableNode(&family.grandchild, &stranger, true));
    EXPECT_NO_THROW(TreeNodeHelper::ensureInsertableNode(&family.root, &family.grandchild, true));
    EXPECT_NO_THROW(TreeNodeHelper::ensureInsertableNode(&family.child, &family.grandchild, true));
    EXPECT_NO_THROW(TreeNodeHelper::ensureInsertableNode(&family.grandchild, nullptr, true));
}

TEST(EnsureInsertableNode, ValidatesTheWayUpButNotTheRoot) {
    Family family;
    Node stranger;
    EXPECT_EQ(family.root.m_refCounter, nullptr);
    EXPECT_NO_THROW(TreeNodeHelper::ensureInsertableNode(&family.root, &stranger, true));
    family.grandchild.hold(nullptr);
    for (TreeNodeShared* newChild :
         {static_cast<TreeNodeShared*>(&family.child), static_cast<TreeNodeShared*>(&stranger)}) {
        expectRaises<2>([&] { TreeNodeHelper::ensureInsertableNode(&family.grandchild, newChild, true); },
                        "counter : null ref counter!!!", "Vorn::TreeNodeHelper::assertValidTreeNodeInChildList",
                        SOURCE);
    }
    family.grandchild.hold(&family.grandchildCounter);
    family.child.hold(nullptr); // found only behind the grandchild
    expectCycle(&family.grandchild, &family.child, true, "Can't append a node under its descendant!");
    expectRaises<2>([&] { TreeNodeHelper::ensureInsertableNode(&family.grandchild, &family.root, true); },
                    "counter : null ref counter!!!", "Vorn::TreeNodeHelper::assertValidTreeNodeInChildList", SOURCE);
}

TEST(EnsureInsertableNode, RefusesANullParent) {
    Node node;
    for (TreeNodeShared* newChild : {static_cast<TreeNodeShared*>(&node), static_cast<TreeNodeShared*>(nullptr)}) {
        expectRaises<2>([&] { TreeNodeHelper::ensureInsertableNode(nullptr, newChild, true); },
                        "newParent : null node!!!", "Vorn::TreeNodeHelper::ensureInsertableNode", SOURCE);
    }
}

} // namespace
