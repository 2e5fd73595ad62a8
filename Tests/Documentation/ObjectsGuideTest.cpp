// Compiles and runs the code of Documentation/Objects.md, and checks its tables and sentences.
#include "Vorn/Vorn.h"

#include "Support/AllocationCounter.h"
#include "Support/GuidePage.h"
#include "Support/Report.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

namespace {

using namespace Vorn;

const GuidePage& page() {
    static const GuidePage objects(VORN_GUIDES "Objects.md");
    return objects;
}

struct Door {
    explicit Door(std::string material) : wood(std::move(material)) {}
    std::string wood;
    bool isOpen = false;
};

class Widget : public DynamicObject {
public:
    SharedPtr<Widget> self() { return SharedPtr<Widget>(this); }
};

struct SceneNode : TreeNode<SceneNode> {
    explicit SceneNode(std::string nodeName, int nodeLayer = 0) : name(std::move(nodeName)), layer(nodeLayer) {}
    std::string name;
    int layer;
};

TEST(ObjectsGuide, EachBlockOfCodeIsCompiledHere) {
    expectCodeStandsIn(VORN_GUIDE_TESTS "ObjectsGuideTest.cpp", page());
}

TEST(ObjectsGuide, SharedAndWeakPointers) {
    const SharedPtr<Door> door = makeShared<Door>("oak");
    SharedPtr<Door> same = door; // two uses of one door
    same->isOpen = true;
    same.reset(); // the last use to go deletes the door
    EXPECT_TRUE(door->isOpen);
    EXPECT_EQ(SharedPtr<Door>(door).getUseCount(), 2);
    expectRaises<1>([&] { same->isOpen = true; }, "m_object : null pointer!");

    const WeakPtr<Door> watched = door;
    if (const SharedPtr<Door> locked = watched.lock()) locked->isOpen = false;
    EXPECT_FALSE(door->isOpen);
    EXPECT_EQ(door.getUseCount(), 1);
}

TEST(ObjectsGuide, AWeakPointerIsNullBehindItsObject) {
    SharedPtr<Door> door = makeShared<Door>("oak");
    const WeakPtr<Door> watched = door;
    door.reset();
    EXPECT_FALSE(watched.lock());
}

struct Counted : SharedObjectBase {};
struct Virtual {
    virtual ~Virtual() = default;
};

TEST(ObjectsGuide, TheBases) {
    const SharedPtr<Widget> widget = makeShared<Widget>();
    const SharedPtr<Widget> self = widget->self();
    EXPECT_EQ(self, widget);
    EXPECT_EQ(widget.getUseCount(), 2);
    const SharedPtr<Counted> counted = makeShared<Counted>();
    EXPECT_EQ(SharedPtr<Counted>(counted.get()).getUseCount(), 2);

    EXPECT_EQ(page().row("none")[3], "0");
    EXPECT_EQ(page().row("SharedObjectBase")[3], std::to_string(sizeof(Counted) / sizeof(void*)));
    EXPECT_EQ(page().row("DynamicObject")[3], std::to_string(sizeof(Widget) / sizeof(void*)));
    static_assert(std::has_virtual_destructor_v<DynamicObject> && !std::has_virtual_destructor_v<SharedObjectBase>);
}

TEST(ObjectsGuide, OtherOwners) {
    SharedPtr<Door> taken = std::make_unique<Door>("elm");
    const SharedPtr<std::FILE> file(std::tmpfile(), [](std::FILE* opened) { std::fclose(opened); });
    const SharedPtr<int[]> scores = makeShared<int[]>(4);
    const SharedPtr<bool> isOpen(taken, &taken->isOpen); // a part, which keeps the whole door alive
    const WeakPtr<Door> watched = taken;
    taken.reset();
    EXPECT_TRUE(watched.lock());
    EXPECT_FALSE(*isOpen);
    EXPECT_EQ(scores[3], 0);

    int calls = 0;
    const auto count = [&calls](Door* door) {
        ++calls;
        delete door;
    };
    { const SharedPtr<Door> null(static_cast<Door*>(nullptr), count); }
    EXPECT_EQ(calls, 0);
    { const SharedPtr<Door> door(new Door("fir"), count); }
    EXPECT_EQ(calls, 1);
}

TEST(ObjectsGuide, CastsAndThreads) {
    const SharedPtr<DynamicObject> object = makeShared<Widget>();
    const SharedPtr<Widget> widget = dynamicSharedCast<Widget>(object); // null if it is none
    EXPECT_EQ(widget, object);
    EXPECT_FALSE(dynamicSharedCast<Widget>(makeShared<DynamicObject>()));
    const SharedPtr<const Widget> constant = staticSharedCast<Widget>(object);
    EXPECT_EQ(constSharedCast<Widget>(constant), object);

    const SharedPtr<Door> shared = makeSharedThreadsafe<Door>("ash");
    EXPECT_TRUE(shared);
}

TEST(ObjectsGuide, Trees) {
    const SharedPtr<SceneNode> root = makeShared<SceneNode>("root");
    root->append(makeShared<SceneNode>("hero", 2));
    root->append(makeShared<SceneNode>("sky", 1));
    root->getChild(0).append(makeShared<SceneNode>("sword"));
    std::string order;
    for (const SceneNode& node : root->depthFirst()) order += node.name + ' '; // root hero sword sky
    EXPECT_EQ(order, "root hero sword sky ");
    EXPECT_EQ(order, page().row("depthFirst()")[1] + ' ');
    order.clear();
    for (const SceneNode& node : root->postOrder()) order += node.name + ' ';
    EXPECT_EQ(order, page().row("postOrder()")[1] + ' ');
    order.clear();
    for (const SceneNode& node : root->getChild(0).getChild(0).ancestors()) order += node.name + ' ';
    EXPECT_EQ(order, page().row("ancestors() of sword")[1] + ' ');

    EXPECT_EQ(allocationsDuring([&] {
                  for (SceneNode& node : root->depthFirst()) node.layer += 0;
                  for (SceneNode& node : root->postOrder()) node.layer += 0;
              }),
              0u);

    root->sort([](const SceneNode& a, const SceneNode& b) { return a.layer < b.layer; }); // sky before hero
    SceneNode* const sword = root->find([](const SceneNode& node) { return node.name == "sword"; });
    const std::size_t depth = sword->getDepth();          // 2: below hero, below root
    const SharedPtr<SceneNode> dropped = sword->detach(); // a root of its own now
    EXPECT_EQ(root->getChild(0).name, "sky");
    EXPECT_EQ(depth, 2u);
    EXPECT_EQ(dropped.get(), sword);
    EXPECT_EQ(&sword->getRoot(), sword);
    dropped->append(root->getChildren()[1]);
    EXPECT_EQ(root->getChildCount(), 1u) << "appending moves a node from its old parent";
}

TEST(ObjectsGuide, APostOrderLoopMayDestroyItsNodes) {
    const SharedPtr<SceneNode> root = makeShared<SceneNode>("root");
    root->append(makeShared<SceneNode>("hero"));
    root->getChild(0).append(makeShared<SceneNode>("sword"));
    for (SceneNode& node : root->postOrder()) node.detach();
    EXPECT_EQ(root->getChildCount(), 0u);
}

TEST(ObjectsGuide, Costs) {
    const auto expectRow = [](const char* row, std::size_t count) {
        EXPECT_EQ(page().row(row)[1], std::to_string(count)) << row;
    };
    expectRow("makeShared<Door>(\"oak\")", allocationsDuring([] { makeShared<Door>("oak"); }));
    expectRow("makeShared<Widget>(), of a DynamicObject", allocationsDuring([] { makeShared<Widget>(); }));
    expectRow("SharedPtr<Door>(new Door(\"oak\"))", allocationsDuring([] { SharedPtr<Door>(new Door("oak")); }));
    const SharedPtr<Widget> widget = makeShared<Widget>();
    expectRow("a copy, WeakPtr, lock, a cast, a part", allocationsDuring([&] {
                  const SharedPtr<DynamicObject> copy = widget;
                  const WeakPtr<Widget> weak = widget;
                  EXPECT_TRUE(weak.lock() && dynamicSharedCast<Widget>(copy));
                  const SharedPtr<Widget> part(widget, widget.get());
              }));
    EXPECT_EQ(page().row("walking a tree")[1], "0");
    static_assert(sizeof(SharedPtr<Door>) == 4 * sizeof(void*) && sizeof(WeakPtr<Door>) == 3 * sizeof(void*));
}

} // namespace
