// Structures that are destroyed in a recursion, deeper than any stack: chains of nodes, nested pointers, trees.
#include "Support/Effort.h"
#include "Support/Sanitizers.h"
#include "Support/SmallStack.h"
#include "Vorn/SharedObjects/Event.h"
#include "Vorn/SharedObjects/TreeNode.h"

#include <gtest/gtest.h>

#if defined(__linux__)
#include <ucontext.h>
#endif

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using Vorn::SharedPtr;
using Vorn::WeakPtr;

// The least of each overflows a stack that nothing is deferred on.
const int NESTED_OBJECTS = repetitions(1000000, 100000);
const int TREE_LEVELS = repetitions(100000, 20000);

// What the destructors of the structures below report. Objects are numbered in the order in which a recursion begins
// to destroy them.
struct DestructionLog {
    int begun = 0;
    int running = 0;
    int deepest = 0;
    int firstOutOfOrder = -1;

    void begin(int number) {
        if (number != begun && firstOutOfOrder < 0) firstOutOfOrder = number;
        ++begun;
        if (++running > deepest) deepest = running;
    }
    void end() { --running; }
};

DestructionLog destruction;

// A first member: its destructor is the last part of the object's.
struct EndOfDestruction {
    ~EndOfDestruction() { destruction.end(); }
};

struct Numbered {
    explicit Numbered(int itsNumber) : number(itsNumber) {}
    EndOfDestruction end;
    int number;
};

struct PointerLink : Numbered {
    using Numbered::Numbered;
    ~PointerLink() { destruction.begin(number); }
    SharedPtr<PointerLink> next;
};

struct RememberingLink : Vorn::SharedObjectBase, Numbered {
    using Numbered::Numbered;
    ~RememberingLink() { destruction.begin(number); }
    SharedPtr<RememberingLink> next;
    WeakPtr<RememberingLink> self;
};

struct DelegateLink : Numbered {
    using Numbered::Numbered;
    ~DelegateLink() { destruction.begin(number); }
    void call() {}
    Vorn::Delegate<void, int> next;
    void hear(int) {}
};

struct EventLink : Numbered {
    using Numbered::Numbered;
    ~EventLink() { destruction.begin(number); }
    void hear(int) {}
    Vorn::Event<int> next;
};

struct Node : Numbered, Vorn::TreeNode<Node> {
    using Numbered::Numbered;
    ~Node() override { destruction.begin(number); }
};

template <class Link>
SharedPtr<Link> nestPointers(Vorn::RefCounterThreading threading) {
    SharedPtr<Link> outer;
    for (int number = NESTED_OBJECTS; number-- > 0;) {
        SharedPtr<Link> link(new Link(number), threading);
        link->next = std::move(outer);
        outer = std::move(link);
    }
    return outer;
}

// What destroys a structure and how many objects it has. The destruction of `holder` releases the outermost object.
struct Structure {
    int objects;
    std::shared_ptr<void> holder;
};

template <class Holder>
Structure structure(int objects, Holder&& holder) {
    return {objects, std::make_shared<std::decay_t<Holder>>(std::forward<Holder>(holder))};
}

Structure nestedPointers() {
    return structure(NESTED_OBJECTS, nestPointers<PointerLink>(Vorn::REF_COUNTER_SINGLE_THREAD));
}

Structure nestedThreadsafePointers() {
    return structure(NESTED_OBJECTS, nestPointers<PointerLink>(Vorn::REF_COUNTER_THREADSAFE));
}

Structure nestedWatchedPointers() {
    const SharedPtr<RememberingLink> outer = nestPointers<RememberingLink>(Vorn::REF_COUNTER_THREADSAFE);
    for (RememberingLink* link = outer.get(); link; link = link->next.get()) {
        link->self = SharedPtr<RememberingLink>(link);
    }
    return structure(NESTED_OBJECTS, outer);
}

Structure nestedDelegates() {
    Vorn::Delegate<void, int> outer;
    for (int number = NESTED_OBJECTS; number-- > 0;) {
        const SharedPtr<DelegateLink> link = Vorn::makeShared<DelegateLink>(number);
        link->next = outer;
        outer = Vorn::Delegate<void, int>::bindShared<&DelegateLink::hear>(link);
    }
    return structure(NESTED_OBJECTS, outer);
}

Structure nestedEvents() {
    SharedPtr<EventLink> outer;
    for (int number = NESTED_OBJECTS; number-- > 0;) {
        SharedPtr<EventLink> link = Vorn::makeShared<EventLink>(number);
        if (outer) link->next.add(Vorn::Event<int>::Listener::bindShared<&EventLink::hear>(outer));
        outer = std::move(link);
    }
    return structure(NESTED_OBJECTS, outer);
}

// A chain of nodes, whose contexts report the order in which they are released.
struct ChainContext {
    int number;
    static void count(void* context, Vorn::DelegateContextAddRef op) {
        if (op != Vorn::DELEGATE_RELEASE_REF) return;
        destruction.begin(static_cast<ChainContext*>(context)->number);
        destruction.end();
    }
};

struct Chain {
    std::vector<ChainContext> contexts;
    std::unique_ptr<Vorn::DelegateNode> first;
};

Structure delegateNodes() {
    auto chain = std::make_shared<Chain>();
    for (int number = 0; number < NESTED_OBJECTS; ++number) chain->contexts.push_back({number});
    Vorn::DelegateNode* last = nullptr;
    for (ChainContext& context : chain->contexts) {
        const Vorn::DelegatePOD pod = {&context, &context, [](void*, void*) {}, &ChainContext::count, &typeid(context)};
        Vorn::DelegateNode* const node = new Vorn::DelegateNode(pod, 0);
        if (last) {
            last->insertAfter(node);
        } else {
            chain->first.reset(node);
        }
        last = node;
    }
    return {NESTED_OBJECTS, chain};
}

Structure deepTree(int levels) {
    SharedPtr<Node> root = Vorn::makeShared<Node>(levels - 1);
    for (int number = levels - 1; number-- > 0;) {
        const SharedPtr<Node> parent = Vorn::makeShared<Node>(number);
        parent->append(root);
        root = parent;
    }
    return structure(levels, root);
}

// Two children at each level; the first one goes on, or the second one.
Structure branchingTree(bool isFirstDeep) {
    const int OBJECTS = 2 * TREE_LEVELS - 1;
    SharedPtr<Node> root = Vorn::makeShared<Node>(isFirstDeep ? TREE_LEVELS - 1 : OBJECTS - 1);
    for (int level = TREE_LEVELS - 1; level-- > 0;) {
        const SharedPtr<Node> parent = Vorn::makeShared<Node>(isFirstDeep ? level : 2 * level);
        const SharedPtr<Node> leaf = Vorn::makeShared<Node>(isFirstDeep ? OBJECTS - 1 - level : 2 * level + 1);
        parent->append(isFirstDeep ? root : leaf);
        parent->append(isFirstDeep ? leaf : root);
        root = parent;
    }
    return structure(OBJECTS, root);
}

struct Row {
    const char* name;
    std::function<Structure()> build;
};

const Row ROWS[] = {
    {"nested pointers", &nestedPointers},
    {"nested pointers with thread-safe control blocks", &nestedThreadsafePointers},
    {"nested pointers with weak pointers to each object", &nestedWatchedPointers},
    {"nested delegates", &nestedDelegates},
    {"nested events", &nestedEvents},
    {"chain of delegate nodes", &delegateNodes},
    {"tree of one child per level", [] { return deepTree(TREE_LEVELS); }},
    {"tree of two children per level, the first one deep", [] { return branchingTree(true); }},
    {"tree of two children per level, the second one deep", [] { return branchingTree(false); }},
};

// Destroys each structure; `run` chooses the thread.
template <class Run>
void destroyEach(Run&& run) {
    for (const Row& row : ROWS) {
        SCOPED_TRACE(row.name);
        Structure structure = row.build();
        destruction = DestructionLog();
        run([&structure] { structure.holder.reset(); });
        EXPECT_EQ(destruction.begun, structure.objects);
        EXPECT_EQ(destruction.running, 0);
        EXPECT_EQ(destruction.firstOutOfOrder, -1);
    }
}

// The thread sanitizer notes calls on a stack of its own, which holds fewer than the thread's.
#if !VORN_TEST_HAS_TSAN
TEST(DestructionDepth, DestroysEachStructureOnTheMainStack) {
    destroyEach([](const std::function<void()>& body) { body(); });
}
#endif

#if defined(VORN_TEST_HAS_SMALL_STACKS)
TEST(DestructionDepth, DestroysATreeOfAMillionLevels) {
    Structure tree = deepTree(NESTED_OBJECTS);
    destruction = DestructionLog();
    runWithStack(SMALL_STACK, [&tree] { tree.holder.reset(); });
    EXPECT_EQ(destruction.begun, NESTED_OBJECTS);
    EXPECT_EQ(destruction.firstOutOfOrder, -1);
}

TEST(DestructionDepth, DestroysEachStructureOnASmallStack) {
    destroyEach([](const std::function<void()>& body) { runWithStack(SMALL_STACK, body); });
}

// A thread may already have used most of its stack when it releases the outermost object.
TEST(DestructionDepth, DestroysEachStructureNearTheEndOfAStack) {
    destroyEach([](const std::function<void()>& body) {
        runWithStack(SMALL_STACK, [&body] { runNearTheEndOfTheStack(body); });
    });
}
#endif

TEST(DestructionDepth, DestroysInsideTheReleaseWhileTheStackAllows) {
    const auto destroyLevels = [](int levels) {
        SharedPtr<PointerLink> outer;
        for (int number = levels; number-- > 0;) {
            SharedPtr<PointerLink> link = Vorn::makeShared<PointerLink>(number);
            link->next = std::move(outer);
            outer = std::move(link);
        }
        destruction = DestructionLog();
        outer.reset();
        EXPECT_EQ(destruction.begun, levels);
        EXPECT_EQ(destruction.deepest, levels);
    };
    destroyLevels(5000);
#if defined(VORN_TEST_HAS_SMALL_STACKS)
    runWithStack(SMALL_STACK, [&] { destroyLevels(50); });
#endif
}

// A destructor with little stack left still destroys the small structures that it makes before it goes on.
#if defined(VORN_TEST_HAS_SMALL_STACKS)
struct Temporaries : Numbered {
    using Numbered::Numbered;
    ~Temporaries() {
        SharedPtr<PointerLink> outer = Vorn::makeShared<PointerLink>(0);
        outer->next = Vorn::makeShared<PointerLink>(1);
        const int before = destruction.begun;
        outer.reset();
        late += destruction.begun != before + 2;
    }
    SharedPtr<Temporaries> next;
    static inline int late = 0;
};

TEST(DestructionDepth, DestroysTemporariesOfADrainedDestructorAtOnce) {
    constexpr int LEVELS = 100000;
    SharedPtr<Temporaries> outer;
    for (int number = LEVELS; number-- > 0;) {
        SharedPtr<Temporaries> link = Vorn::makeShared<Temporaries>(number);
        link->next = std::move(outer);
        outer = std::move(link);
    }
    destruction = DestructionLog();
    Temporaries::late = 0;
    runWithStack(SMALL_STACK, [&outer] { outer.reset(); });
    EXPECT_EQ(destruction.begun, 2 * LEVELS);
    // Only the destructors that run at the very end of the stack see their temporaries deferred.
    EXPECT_LT(Temporaries::late, LEVELS / 2);
}

// A coroutine's stack is not the thread's: its bounds are not known, and the recursion is used at any address.
#if defined(_WIN32)
TEST(DestructionDepth, RecursesOnTheStackOfACoroutine) { GTEST_SKIP() << "Windows has no ucontext.h"; }
TEST(DestructionDepth, AFirstReleaseOnACoroutineLeavesTheStackOfTheThreadBounded) {
    GTEST_SKIP() << "Windows has no ucontext.h";
}
#elif !VORN_TEST_HAS_SANITIZER
TEST(DestructionDepth, RecursesOnTheStackOfACoroutine) {
    static SharedPtr<PointerLink> outer;
    for (int number = 100; number-- > 0;) {
        SharedPtr<PointerLink> link = Vorn::makeShared<PointerLink>(number);
        link->next = std::move(outer);
        outer = std::move(link);
    }
    std::vector<char> stack(256 * 1024);
    static ucontext_t caller, coroutine;
    ASSERT_EQ(getcontext(&coroutine), 0);
    coroutine.uc_stack.ss_sp = stack.data();
    coroutine.uc_stack.ss_size = stack.size();
    coroutine.uc_link = &caller;
    makecontext(
        &coroutine, [] { outer.reset(); }, 0);
    destruction = DestructionLog();
    runWithStack(SMALL_STACK, [] { // above or below the coroutine's
        nestedPointers().holder.reset();
        destruction = DestructionLog();
        swapcontext(&caller, &coroutine);
    });
    EXPECT_EQ(destruction.begun, 100);
    EXPECT_EQ(destruction.deepest, 100);
}

// The first release of a thread measures the stack. It must measure that of the thread also on a coroutine's stack.
TEST(DestructionDepth, AFirstReleaseOnACoroutineLeavesTheStackOfTheThreadBounded) {
    static SharedPtr<PointerLink> first, outer;
    first = Vorn::makeShared<PointerLink>(0);
    outer = nestPointers<PointerLink>(Vorn::REF_COUNTER_SINGLE_THREAD);
    static char stack[256 * 1024]; // below the stacks of threads
    static ucontext_t caller, coroutine;
    ASSERT_EQ(getcontext(&coroutine), 0);
    coroutine.uc_stack.ss_sp = stack;
    coroutine.uc_stack.ss_size = sizeof(stack);
    coroutine.uc_link = &caller;
    makecontext(
        &coroutine, [] { first.reset(); }, 0);
    runWithStack(SMALL_STACK, [] {
        swapcontext(&caller, &coroutine);
        destruction = DestructionLog();
        outer.reset();
    });
    EXPECT_EQ(destruction.begun, NESTED_OBJECTS);
}
#endif
#endif

} // namespace
