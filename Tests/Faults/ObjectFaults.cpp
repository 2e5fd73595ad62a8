#include "Faults/Operation.h"
#include "Vorn/Exception.h"
#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/TreeNode.h"

namespace {

using Vorn::DelegateNode;
using Vorn::DelegatePOD;
using Vorn::EventBase;
using Vorn::SharedPtr;
using Vorn::WeakPtr;

// An object that is counted, so that no failure leaves one behind or destroys one twice.
struct Plain {
    Plain() { ++living; }
    Plain(const Plain&) { ++living; }
    ~Plain() { --living; }
    void hear(int) { ++heard; }
    void hearNothing() { ++heard; }
    void operator()(int) { ++heard; }
    int heard = 0;
    static inline int living = 0;
};
struct Shared : Vorn::SharedObjectBase, Plain {};
struct Dynamic : Vorn::DynamicObject {};
struct Node : Vorn::TreeNode<Node> {};

void expectNoneLives() { EXPECT_EQ(Plain::living, 0); }

using IntEvent = Vorn::Event<int>;
using Listener = IntEvent::Listener;
using Simple = Vorn::Delegate<void, void>;

// The protected face of events.
struct Bare : EventBase {
    using EventBase::addDelegate;
    using EventBase::containsDelegate;
    using EventBase::insertPendingDelegates;
    using EventBase::m_dispatchNode;
    using EventBase::removeDelegate;
    using EventBase::tryRemoveDelegate;
};

// The protected face of pointers.
struct Access : Vorn::PtrTypeBase {
    using Vorn::PtrTypeBase::getRefCounter;
};

DelegatePOD podOf(Plain& target) { return Vorn::Delegate<void, int>::bind<&Plain::hear>(target).getPOD(); }

// Adds to an event that holds one delegate, idle or dispatching at its first node: the event is as before, and usable,
// if memory ends.
void addToEvent(Attempt& attempt, int priority, bool isDispatching) {
    Plain first, second;
    Bare event;
    event.addDelegate(podOf(first), 0);
    if (isDispatching) event.m_dispatchNode = &event;
    attempt([&] { event.addDelegate(podOf(second), priority); },
            [&] {
                EXPECT_EQ(event.getDelegateCount(), 1u);
                EXPECT_TRUE(event.containsDelegate(podOf(first)));
                EXPECT_FALSE(event.containsDelegate(podOf(second)));
                event.addDelegate(podOf(second), priority);
            });
    event.m_dispatchNode = nullptr;
    event.insertPendingDelegates();
    EXPECT_EQ(event.getDelegateCount(), 2u);
    EXPECT_TRUE(event.containsDelegate(podOf(second)));
}

// Grows a tree by a child that another parent holds: it stays there if memory ends.
void growTree(Attempt& attempt, unsigned int count) {
    const SharedPtr<Node> parent = Vorn::makeShared<Node>(), old = Vorn::makeShared<Node>(),
                          child = Vorn::makeShared<Node>();
    for (unsigned int i = 0; i < count; ++i) parent->append(Vorn::makeShared<Node>());
    old->append(child);
    attempt([&] { parent->insert(0, child); },
            [&] {
                EXPECT_EQ(child->getParent(), old.get());
                EXPECT_EQ(old->getChildCount(), 1u);
                EXPECT_EQ(parent->getChildCount(), count);
                EXPECT_EQ(child.getUseCount(), 2);
            });
}

} // namespace

std::vector<Operation> objectOperations() {
    return {
        {"MakeShared_Plain",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) { attempt([] { Vorn::makeShared<Plain>(); }, expectNoneLives); }},
        {"MakeShared_Threadsafe",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) { attempt([] { Vorn::makeSharedThreadsafe<Shared>(); }, expectNoneLives); }},
        {"SharedPtr_OfPlain",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             Plain* const object = new Plain;
             attempt([&] { SharedPtr<Plain>{object}; }, expectNoneLives);
         }},
        {"SharedPtr_OfShared",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             Shared* const object = new Shared;
             attempt([&] { SharedPtr<Shared>{object}; }, expectNoneLives);
         }},
        {"SharedPtr_OfArray",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             Plain* const objects = new Plain[3];
             attempt([&] { SharedPtr<Plain[]>{objects}; }, expectNoneLives);
         }},
        {"SharedPtr_WithDeleter",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             Plain object;
             attempt([&] { SharedPtr<Plain>(&object, [](void* p) { ++static_cast<Plain*>(p)->heard; }); });
             EXPECT_EQ(object.heard, 1) << "the deleter runs once, whether there is a record or not";
         }},
        {"SharedPtr_Share",
         Outcome::ALLOCATES_NOTHING,
         {"RefCounterWrapper::getUseCount() const",
          "RefCounterWrapper::getWeakCount() const",
          "RefCounterWrapper::isArray() const",
          "RefCounterWrapper::isThreadsafe() const",
          "RefCounterWrapper::makeThreadsafe() const",
          "RefCounterWrapper::releaseUseCountNonInline",
          "RefCounterWrapper::releaseWeakCountNonInline",
          "RefCounterWrapper::releaseUseCountNonInlinePart",
          "RefCounterWrapper::releaseWeakCountNonInlinePart",
          "PtrTypeBase::getRefCounter",
          "PtrTypeBase::undoGetOrCreateRefCounter",
          "validRefCounter(RefCounter const*)",
          "consistentRefCounters(RefCounter const*, RefCounter const*)",
          "assertValidAndConsistent(RefCounter const*, RefCounter const*)",
          "releaseUseCount(RefCounter*)",
          "releaseWeakCount(RefCounter*)",
          "RefCounterMutex::RefCounterMutex()",
          "RefCounterMutex::~RefCounterMutex()",
          "RefCounterMutex::lock()",
          "RefCounterMutex::unlock()"},
         [](Attempt& attempt) {
             SharedPtr<Shared> shared = Vorn::makeSharedThreadsafe<Shared>();
             attempt([&] {
                 {
                     SharedPtr<Shared> again(shared.get());
                     WeakPtr<Shared> weak(again);
                     again = weak.lock();
                     static_cast<void>(again.isArray());
                     static_cast<void>(again.isThreadsafe());
                     again.makeThreadsafe();
                     EXPECT_EQ(weak.getUseCount() + weak.getWeakCount(), 3);
                 }
                 Vorn::RefCounter* const counter = Access::getRefCounter(shared.get());
                 ++counter->m_useCount;
                 ++counter->m_weakCount;
                 Vorn::assertValidAndConsistent(counter, nullptr);
                 Vorn::releaseUseCount(counter);
                 Vorn::releaseWeakCount(counter);
                 shared = nullptr;
             });
             expectNoneLives();
         }},
        {"DynamicObject_Destroy",
         Outcome::ALLOCATES_NOTHING,
         {"DynamicObject::~DynamicObject()"},
         [](Attempt& attempt) { attempt([] { const Dynamic object; }); }},
        {"Delegate_Copy",
         Outcome::ALLOCATES_NOTHING,
         {"Delegate<void, void>::~Delegate()", "DelegateBase::DelegateBase(DelegatePOD const&)",
          "DelegateBase::operator=(DelegateBase const&)", "DelegateBase::replaceRecord",
          "DelegateBase::~DelegateBase()", "delegateAddUseRef(void*, DelegateContextAddRef)",
          "delegateAddWeakRef(void*, DelegateContextAddRef)"},
         [](Attempt& attempt) {
             const SharedPtr<Plain> target = Vorn::makeShared<Plain>();
             attempt([&] {
                 Simple shared = Simple::bindShared<&Plain::hearNothing>(target);
                 Simple weak = Simple::bindWeak<&Plain::hearNothing>(target);
                 Simple copy(shared);
                 copy.rebind(weak);
                 copy();
             });
             EXPECT_EQ(target.getUseCount(), 1);
             EXPECT_EQ(target.getWeakCount(), 0);
         }},
        {"Delegate_BindCallable",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) { attempt([] { Vorn::Delegate<void, int>::bindCallable(Plain()); }, expectNoneLives); }},
        {"DelegateNode_Link",
         Outcome::ALLOCATES_NOTHING,
         {"DelegateNode::DelegateNode(DelegatePOD const&, int)", "DelegateNode::insertAfter(DelegateNode*)",
          "DelegateNode::releaseDelegate()", "DelegateNode::setDelegate(DelegatePOD const&)",
          "DelegateNode::~DelegateNode()"},
         [](Attempt& attempt) {
             Plain target;
             const DelegatePOD pod = podOf(target);
             attempt([&] {
                 DelegateNode first(pod, 0);
                 DelegateNode second(pod, 1);
                 first.insertAfter(&second);
                 first.unlink();
                 second.releaseDelegate();
                 second.setDelegate(pod);
             });
         }},
        {"Event_AddInFront",
         Outcome::THROWS,
         {"EventBase::addDelegate(DelegatePOD const&, int)", "EventBase::insertFirstDelegate"},
         [](Attempt& attempt) { addToEvent(attempt, -1, false); }},
        {"Event_AddBehind", Outcome::THROWS, {}, [](Attempt& attempt) { addToEvent(attempt, 1, false); }},
        {"Event_AddPending",
         Outcome::THROWS,
         {"EventBase::dispatchInsertDelegate"},
         [](Attempt& attempt) { addToEvent(attempt, -1, true); }},
        {"Event_AddWhileDispatching", Outcome::THROWS, {}, [](Attempt& attempt) { addToEvent(attempt, 1, true); }},
        {"Event_AddFirst",
         Outcome::THROWS,
         {},
         [](Attempt& attempt) {
             Plain target;
             IntEvent event;
             attempt([&] { event.add(Listener::bind<&Plain::hear>(target)); },
                     [&] {
                         EXPECT_EQ(event.getDelegateCount(), 0u);
                         event.add(Listener::bind<&Plain::hear>(target));
                     });
             event(1);
             EXPECT_EQ(target.heard, 1);
         }},
        {"Event_AddInsideACall",
         Outcome::THROWS,
         {"ListenerChain::add", "ListenerChain::insert", "ListenerNode::ListenerNode", "ListenerNode::update"},
         [](Attempt& attempt) {
             Plain first, second;
             IntEvent event;
             event.add([&] {
                 attempt([&] { event.add<&Plain::hear>(second, -1); },
                         [&] {
                             EXPECT_EQ(event.getDelegateCount(), 1u);
                             event.add<&Plain::hear>(second, -1);
                         });
             });
             event(1);
             EXPECT_EQ(event.getDelegateCount(), 2u);
         }},
        {"Event_Dispatch",
         Outcome::ALLOCATES_NOTHING,
         {"ListenerCall::end", "ListenerChain::detach", "ListenerChain::isBeingCalled", "ListenerChain::stop",
          "ListenerChain::tidy", "ListenerTurn::ListenerTurn", "ListenerTurn::~ListenerTurn"},
         [](Attempt& attempt) {
             const SharedPtr<Plain> target = Vorn::makeShared<Plain>();
             IntEvent event;
             event.add(Listener::bindWeak<&Plain::hear>(target));
             event.once<&Plain::hear>(*target);
             event.add([&event] { event.stop(); });
             attempt([&] { event(1); });
             EXPECT_EQ(target->heard, 2);
         }},
        {"Event_Change",
         Outcome::ALLOCATES_NOTHING,
         {"ListenerChain::adopt", "ListenerChain::clear", "ListenerChain::countListeners", "ListenerChain::find",
          "ListenerChain::move", "ListenerChain::operator=", "ListenerChain::remove", "ListenerChain::removeObject",
          "ListenerChain::swap", "ListenerChain::~ListenerChain", "ListenerNode::isExpired", "ListenerNode::release"},
         [](Attempt& attempt) {
             const SharedPtr<Plain> target = Vorn::makeShared<Plain>();
             IntEvent event;
             for (int i = 0; i < 4; ++i) event.add([] {}, i);
             event.add(Listener::bindWeak<&Plain::hear>(target));
             event.add<&Plain::hear>(*target);
             attempt([&] {
                 event.add<&Plain::hear>(*target, 2);
                 IntEvent other = std::move(event);
                 event = std::move(other);
                 EXPECT_TRUE(event.contains<&Plain::hear>(*target) &&
                             event.contains(Listener::bindWeak<&Plain::hear>(target)));
                 EXPECT_EQ(event.getDelegateCount(), 6u);
                 event.remove(Listener::bindWeak<&Plain::hear>(target));
                 event.remove<&Plain::hear>(target);
                 event.removeAll(target);
                 event.clear();
             });
         }},
        {"Connection_Use",
         Outcome::ALLOCATES_NOTHING,
         {"Connection::Connection", "Connection::addBlocks", "Connection::disconnect", "Connection::isBlocked",
          "Connection::isConnected", "Connection::release", "Connection::setBlocked"},
         [](Attempt& attempt) {
             IntEvent event;
             Vorn::Connection connection = event.add([] {});
             attempt([&] {
                 const Vorn::Connection copy(connection);
                 connection.block();
                 const Vorn::ScopedBlock block(connection);
                 EXPECT_TRUE(copy.isBlocked() && copy.isConnected());
                 connection.disconnect();
             });
         }},
        {"Event_Remove",
         Outcome::ALLOCATES_NOTHING,
         {"EventBase::clear()", "EventBase::containsDelegate(DelegatePOD const&) const",
          "EventBase::insertPendingDelegates()", "EventBase::removeDelegate(DelegatePOD const&)",
          "EventBase::removeFirstDelegate", "EventBase::removePending", "EventBase::searchChain",
          "EventBase::tryRemoveDelegate", "EventBase::~EventBase()"},
         [](Attempt& attempt) {
             Plain first, second, third;
             Bare event;
             for (Plain* const target : {&first, &second, &third}) event.addDelegate(podOf(*target), 0);
             attempt([&] {
                 std::unique_ptr<DelegateNode> spare(event.removeDelegate(podOf(first)));
                 static_cast<void>(event.containsDelegate(podOf(second)));
                 event.tryRemoveDelegate(podOf(second), spare);
                 event.clear();
             });
         }},
        {"TreeNode_InsertFirst", Outcome::THROWS, {}, [](Attempt& attempt) { growTree(attempt, 0); }},
        {"RefCounterMutex_Try",
         Outcome::ALLOCATES_NOTHING,
         {"RefCounterMutex::try_lock()"},
         [](Attempt& attempt) {
             Vorn::RefCounterMutex mutex;
             attempt([&] { EXPECT_TRUE(mutex.try_lock()); });
             mutex.unlock();
         }},
        {"TreeNode_InsertMore", Outcome::THROWS, {}, [](Attempt& attempt) { growTree(attempt, 4); }},
        {"TreeNode_Change",
         Outcome::ALLOCATES_NOTHING,
         {"TreeNodeHelper::assertValidTreeNodeInChildList(TreeNodeShared*)",
          "TreeNodeHelper::ensureInsertableNode(TreeNodeShared*, TreeNodeShared*, bool)",
          "TreeNodeShared::TreeNodeShared(TreeNodeShared const&)", "TreeNodeShared::~TreeNodeShared()"},
         [](Attempt& attempt) {
             const SharedPtr<Node> parent = Vorn::makeShared<Node>(), other = Vorn::makeShared<Node>();
             for (int i = 0; i < 3; ++i) parent->append(Vorn::makeShared<Node>());
             other->append(Vorn::makeShared<Node>());
             other->removeAt(0);
             const SharedPtr<Node> child = parent->getChildren()[1];
             attempt([&] {
                 parent->move(0, 2);
                 parent->remove(*child);
                 other->append(child); // has had a child before
             });
         }},
    };
}
