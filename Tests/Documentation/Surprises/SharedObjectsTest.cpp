#include "Documentation/Surprises/Surprise.h"
#include "Support/AllocationCounter.h"
#include "Support/CountedTarget.h"
#include "Support/ExpectedLeak.h"
#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/TreeNode.h"
#include "Vorn/SharedObjects/WeakPtr.h"

namespace {

using namespace Vorn;

using Journal = std::vector<std::string>;

// Opens what pointer types use.
struct Handle : RefCounterWrapper {
    explicit Handle(RefCounter* counter) { pRefCounter = counter; }
    void reset() override { pRefCounter = nullptr; }
    using RefCounterWrapper::releaseUseCount;
};

struct Object : DynamicObject {
    ~Object() override { ++destroyed; }
    RefCounter* counter() { return m_refCounter; }
    static inline int destroyed = 0;
};

struct Opened : PtrTypeBase {
    using PtrTypeBase::undoGetOrCreateRefCounter;
};

using Simple = Delegate<void, void>;

struct SharedEar : DynamicObject {
    void hear() { ++calls; }
    int calls = 0;
};

template <class Listener>
Listener sharedListenerOf(const SharedPtr<SharedEar>& ear) {
    return Listener::template bindShared<&SharedEar::hear>(ear);
}

// A priority below that of the first node of an EventBase.
constexpr int FIRST = -10;

struct OpenEvent : EventBase {
    using EventBase::addDelegate;
    using EventBase::removeDelegate;
    using EventBase::tryRemoveDelegate;
};

struct Node : TreeNode<Node> {};

} // namespace

const Surprises SHARED_OBJECT_SURPRISES = {
    {"`RefCounterWrapper::makeThreadsafe`",
     [] {
         const SharedPtr<Object> pointer = makeShared<Object>();
         pointer.makeThreadsafe();
         EXPECT_FALSE(pointer.isThreadsafe());
         EXPECT_DEATH(Handle(nullptr).makeThreadsafe(), "");
     },
     [] {
         EXPECT_TRUE(makeSharedThreadsafe<Object>().isThreadsafe());
         EXPECT_TRUE(SharedPtr<Object>(new Object, REF_COUNTER_THREADSAFE).isThreadsafe());
     }},
    {"`RefCounterWrapper::isNotNull`",
     [] {
         std::string object;
         JournalCounter corrupt(0, 0, &object);
         EXPECT_TRUE(Handle(&corrupt).isNotNull());
         EXPECT_THROW(Handle(&corrupt).isNull(), Exception<2>);
         EXPECT_EQ(makeShared<Object>().isNotNull(), !makeShared<Object>().isNull());
     },
     [] {
         std::string object;
         JournalCounter corrupt(0, 0, &object);
         EXPECT_THROW(static_cast<void>(!Handle(&corrupt).isNull()), Exception<2>);
         EXPECT_TRUE(!makeShared<Object>().isNull());
     }},
    {"`RefCounterWrapper::isThreadsafe`", [] { EXPECT_TRUE(Handle(nullptr).isThreadsafe()); },
     [] { EXPECT_TRUE(Handle(nullptr).isNull()); }},
    {"free `releaseUseCount`, `delegateAddUseRef`",
     [] {
         std::string object = "object";
         takeJournal();
         releaseUseCount(new JournalCounter(1, 0, &object));
         EXPECT_EQ(takeJournal(), (Journal{"deleter", "destroy after record object"}));
         delegateAddUseRef(new JournalCounter(1, 0, &object), DELEGATE_RELEASE_REF);
         EXPECT_EQ(takeJournal(), (Journal{"deleter", "destroy after record object"}));
         Handle(new JournalCounter(1, 0, &object)).releaseUseCount();
         EXPECT_EQ(takeJournal(), (Journal{"deleter", "destroy object"}));
     },
     [] {
         Object::destroyed = 0;
         { const SharedPtr<Object> pointer = makeShared<Object>(); }
         EXPECT_EQ(Object::destroyed, 1);
     }},
    {"`RefCounterWrapper::releaseUseCount`",
     [] {
         const ExpectedLeak leak;
         std::string object = "object";
         JournalCounter* const counter = new JournalCounter(1, 0, &object, false, false);
         takeJournal();
         const std::size_t live = liveAllocationCount();
         Handle(counter).releaseUseCount();
         takeJournal();
         EXPECT_EQ(liveAllocationCount(), live);
         ::operator delete(counter);
     },
     [] {
         std::string object = "object";
         JournalCounter* const counter = new JournalCounter(1, 0, &object);
         takeJournal();
         const std::size_t live = liveAllocationCount();
         Handle(counter).releaseUseCount();
         takeJournal();
         EXPECT_EQ(liveAllocationCount(), live - 1);
     }},
    {"free `releaseWeakCount`",
     [] {
         std::string object = "object";
         JournalCounter zero(1, 0, &object), negative(1, -1, &object);
         EXPECT_THROW(releaseWeakCount(&zero), Exception<2>);
         releaseWeakCount(&negative);
         EXPECT_EQ(negative.m_weakCount.load(), -2);
     },
     [] {
         const SharedPtr<Object> pointer = makeShared<Object>();
         { const WeakPtr<Object> weak(pointer); }
         EXPECT_EQ(pointer.getWeakCount(), 0);
     }},
    {"`PtrTypeBase::undoGetOrCreateRefCounter`",
     [] {
         Object* const object = new Object;
         std::size_t live;
         {
             SharedPtr<Object> pointer(object);
             RefCounter* const counter = object->counter();
             ++counter->m_weakCount;
             live = liveAllocationCount();
             Opened::undoGetOrCreateRefCounter(object, counter);
             EXPECT_EQ(liveAllocationCount(), live - 1) << "freed although it is held weakly";
             EXPECT_EQ(object->counter(), nullptr);
             new (static_cast<void*>(&pointer)) SharedPtr<Object>; // it must not touch the record any more
         }
         delete object;
     },
     [] {
         Object* const object = new Object;
         SharedPtr<Object> pointer(object);
         EXPECT_EQ(pointer.getWeakCount(), 0) << "no weak pointer can exist yet";
         Opened::undoGetOrCreateRefCounter(object, object->counter());
         new (static_cast<void*>(&pointer)) SharedPtr<Object>;
         EXPECT_EQ(object->counter(), nullptr);
         delete object;
     }},
    {"`DelegateBase::operator=`, `Delegate<void, void>::operator=`",
     [] {
         const SharedPtr<SharedEar> first = makeShared<SharedEar>(), second = makeShared<SharedEar>();
         const SharedPtr<SharedEar> kept = second;
         {
             Simple a = sharedListenerOf<Simple>(first);
             const Simple b = sharedListenerOf<Simple>(second);
             EXPECT_EQ(first.getUseCount(), 2);
             EXPECT_EQ(second.getUseCount(), 3);
             a = b;
             EXPECT_EQ(first.getUseCount(), 3);
             EXPECT_EQ(second.getUseCount(), 2);
             // Puts the counts right: two too many of first, and two too few of second.
             delegateAddUseRef(b.getPOD().context, DELEGATE_ADD_REF);
             delegateAddUseRef(b.getPOD().context, DELEGATE_ADD_REF);
             const Simple other = sharedListenerOf<Simple>(first);
             delegateAddUseRef(other.getPOD().context, DELEGATE_RELEASE_REF);
             delegateAddUseRef(other.getPOD().context, DELEGATE_RELEASE_REF);
         }
         EXPECT_EQ(first.getUseCount(), 1);
         EXPECT_EQ(second.getUseCount(), 2);
     },
     [] {
         const SharedPtr<SharedEar> first = makeShared<SharedEar>(), second = makeShared<SharedEar>();
         Delegate<void> a = sharedListenerOf<Delegate<void>>(first);
         const Delegate<void> b = sharedListenerOf<Delegate<void>>(second);
         a = b;
         EXPECT_EQ(first.getUseCount(), 1);
         EXPECT_EQ(second.getUseCount(), 3);
     }},
    {"`a == a` on a `DelegateBase` or a `Delegate<void, void>`",
     [] {
         const Simple empty;
         EXPECT_FALSE(empty == *&empty);
     },
     [] { EXPECT_TRUE(Delegate<void>() == Delegate<void>()); }},
    {"`operator==` on delegates",
     [] {
         const SharedPtr<SharedEar> ear = makeShared<SharedEar>();
         EXPECT_FALSE(sharedListenerOf<Simple>(ear) == Simple::bind<&SharedEar::hear>(*ear)) << "held differently";
         DelegatePOD a = sharedListenerOf<Simple>(ear).getPOD(), b = a;
         b.context = nullptr;
         EXPECT_TRUE(sameDelegate(a, b)) << "another record";
     },
     [] {
         const SharedPtr<SharedEar> ear = makeShared<SharedEar>();
         Event<> event;
         event.add<&SharedEar::hear>(ear);
         EXPECT_TRUE(event.remove<&SharedEar::hear>(*ear));
     }},
    {"`EventBase::removeDelegate`",
     [] {
         std::string a = "a", b = "b";
         OpenEvent event;
         event.addDelegate(journalDelegate(a), FIRST);
         const std::unique_ptr<DelegateNode> spare(event.removeDelegate(journalDelegate(b)));
         EXPECT_TRUE(spare) << "although nothing was found";
         EXPECT_EQ(event.removeDelegate(journalDelegate(a)), nullptr) << "although it was found";
     },
     [] {
         std::string a = "a", b = "b";
         OpenEvent event;
         event.addDelegate(journalDelegate(a), 0);
         std::unique_ptr<DelegateNode> spare;
         EXPECT_FALSE(event.tryRemoveDelegate(journalDelegate(b), spare));
         EXPECT_TRUE(event.tryRemoveDelegate(journalDelegate(a), spare));
     }},
    {"`SharedPtr<T>(this)` in a constructor",
     [] {
         Object::destroyed = 0;
         // The same as in a constructor, a little later, so that there is an object for the test to look at.
         struct Kept : Object {
             SharedPtr<Kept> self;
             void keep() { self = SharedPtr<Kept>(this); }
         };
         Kept* const kept = new Kept;
         kept->keep();
         EXPECT_EQ(kept->self.getUseCount(), 1) << "it owns the object";
         SharedPtr<Kept> last = kept->self;
         kept->self = SharedPtr<Kept>();
         last = SharedPtr<Kept>();
         EXPECT_EQ(Object::destroyed, 1);
     },
     [] {
         const SharedPtr<Object> pointer = makeShared<Object>();
         const SharedPtr<Object> self(pointer.get());
         EXPECT_EQ(pointer.getUseCount(), 2);
     }},
    {"`DelegateNode::unlink`",
     [] {
         std::string text = "a";
         DelegateNode first(journalDelegate(text), 0);
         DelegateNode* const second = new DelegateNode(journalDelegate(text), 0);
         DelegateNode* const third = new DelegateNode(journalDelegate(text), 0);
         first.insertAfter(second);
         second->insertAfter(third);
         EXPECT_EQ(second->unlink(), third);
         EXPECT_EQ(first.getNext(), second) << "still in its chain";
         delete third;
     },
     nullptr},
    {"`DelegateNode::invalidate`",
     [] {
         std::string text = "a";
         JournalContext context("context");
         {
             DelegateNode node(journalDelegate(text, &context), 0);
             node.invalidate();
             EXPECT_EQ(context.references, 1);
         }
         EXPECT_EQ(context.references, 0);
         takeJournal();
     },
     nullptr},
    {"`TreeNodeHelper::getCachedIndex`",
     [] {
         const SharedPtr<Node> node = makeShared<Node>();
         TreeNodeHelper::cacheIndex(node.get(), 7);
         EXPECT_EQ(TreeNodeHelper::getCachedIndex(node.get()), 7u);
     },
     [] {
         const SharedPtr<Node> root = makeShared<Node>(), node = makeShared<Node>();
         root->append(makeShared<Node>());
         root->append(node);
         root->removeAt(0);
         EXPECT_EQ(node->getIndex(), 0u);
     }},
    {"`TreeNodeHelper::ensureInsertableNode`",
     [] {
         const SharedPtr<Node> root = makeShared<Node>();
         EXPECT_NO_THROW(TreeNodeHelper::ensureInsertableNode(root.get(), nullptr, true));
     },
     [] {
         const SharedPtr<Node> root = makeShared<Node>(), child = makeShared<Node>();
         EXPECT_THROW(root->insert(0, SharedPtr<Node>()), Exception<4>);
         EXPECT_NO_THROW(root->insert(0, child));
         EXPECT_THROW(child->insert(0, root), Exception<4>);
     }},
};
