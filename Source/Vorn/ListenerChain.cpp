/// @file
/// Releasing a target may run any code, which may use or destroy the event. Nodes are therefore unlinked in one walk,
/// which releases nothing, and released after it. No release is followed by an access to the chain.
#include "Vorn/SharedObjects/ListenerChain.h"

#include "Vorn/Assert.h"
#include "Vorn/SharedObjects/DelegateBinding.h"

#include <utility>

namespace Vorn {

namespace {

/// Nodes that have been unlinked. Releases them in order when it goes out of scope.
class RetiredListeners {
public:
    RetiredListeners() = default;
    RetiredListeners(const RetiredListeners&) = delete;
    RetiredListeners& operator=(const RetiredListeners&) = delete;
    ~RetiredListeners() {
        while (ListenerNode* const node = m_first) {
            m_first = static_cast<ListenerNode*>(node->unlink());
            node->release();
        }
    }

    void append(ListenerNode* node) {
        if (m_last) {
            m_last->insertAfter(node);
        } else {
            m_first = node;
        }
        m_last = node;
    }

private:
    ListenerNode* m_first = nullptr;
    ListenerNode* m_last = nullptr;
};

ListenerNode* nextOf(const DelegateNode* node) { return static_cast<ListenerNode*>(node->getNext()); }

/// Unlinks the node behind `previous` and returns it.
ListenerNode* takeNext(DelegateNode* previous) {
    DelegateNode* const node = previous->unlink();
    previous->insertAfter(node->unlink());
    return static_cast<ListenerNode*>(node);
}

bool isOneOf(const std::type_info* type, const std::type_info* const* bindings, int bindingCount) {
    for (int i = 0; i < bindingCount; ++i) {
        if (type && (type == bindings[i] || *type == *bindings[i])) return true;
    }
    return false;
}

bool isOver(const RefCounter* life) { return life->m_useCount.load(std::memory_order_relaxed) < 1; }

} // namespace

ListenerNode::ListenerNode(ListenerChain& owner, const DelegatePOD& delegate, int priority, RefCounter* tiedTo)
    : DelegateNode(delegate, priority), direct(0), first(owner.m_lastCall + 1), order(0), chain(&owner), life(tiedTo),
      references(1), calls(0), blocks(0), movedPriority(priority), isMoved(false), isOnce(false), isBlocked(false) {
    if (life) VornPrivate::addWeak(life);
}

bool ListenerNode::isExpired() const { return life ? isOver(life) : VornPrivate::isExpired(getDelegate()); }

void ListenerNode::update() {
    const bool isAsked = isOnce || isBlocked || blocks || life || getDelegate().contextAddRef == &delegateAddWeakRef;
    direct = chain && !isAsked ? first : ~std::uint64_t(0);
}

void ListenerNode::release() {
    RefCounter* const over = std::exchange(life, nullptr);
    releaseDelegate();
    if (over) releaseWeakCount(over);
    releaseReference();
}

void ListenerCall::end() {
    if (!chain) { // the event has been destroyed, and this call holds its node
        if (at && --at->calls == 0) at->release();
        return;
    }
    chain->m_calls = outer;
    if (!outer) chain->m_dispatchNode = nullptr;
    if (chain->m_isUntidy) chain->tidy();
}

ListenerTurn::ListenerTurn(ListenerNode& node, const ListenerCall& call, bool isHeld)
    : m_held(nullptr), m_isDue(false) {
    if (!node.chain || node.isBlocked || node.blocks || node.first > call.number) return;
    RefCounter* counter = node.life;
    const DelegatePOD& pod = node.getDelegate();
    if (!counter && isHeld && pod.contextAddRef == &delegateAddWeakRef) counter = static_cast<RefCounter*>(pod.context);
    const bool isExpired = counter ? !VornPrivate::tryAddUse(counter) : node.isExpired();
    if (!isExpired) m_held = counter;
    if (isExpired || node.isOnce) node.chain->detach(node);
    m_isDue = !isExpired;
}

ListenerTurn::~ListenerTurn() {
    if (m_held) releaseUseCount(m_held);
}

ListenerChain::~ListenerChain() {
    m_isClosed = true;
    for (ListenerCall* call = m_calls; call; call = call->outer) {
        if (call->at) ++call->at->calls;
        call->chain = nullptr; // its node is the last one
    }
    m_calls = nullptr;
    m_dispatchNode = nullptr;
    m_delegateCount = 0;
    RetiredListeners retired;
    for (ListenerNode* node = static_cast<ListenerNode*>(unlink()); node;) {
        ListenerNode* const next = static_cast<ListenerNode*>(node->unlink());
        node->chain = nullptr;
        if (node->calls == 0) retired.append(node);
        node = next;
    }
}

ListenerChain& ListenerChain::operator=(ListenerChain&& other) noexcept {
    ListenerChain taken(std::move(other));
    swap(taken);
    return *this;
}

void ListenerChain::swap(ListenerChain& other) noexcept {
    DelegateNode* const mine = unlink();
    insertAfter(other.unlink());
    other.insertAfter(mine);
    std::swap(m_delegateCount, other.m_delegateCount);
    std::swap(m_calls, other.m_calls);
    std::swap(m_lastCall, other.m_lastCall);
    std::swap(m_lastAdd, other.m_lastAdd);
    std::swap(m_hasExpiring, other.m_hasExpiring);
    std::swap(m_isUntidy, other.m_isUntidy);
    adopt();
    other.adopt();
}

void ListenerChain::adopt() {
    for (ListenerNode* node = getFirst(); node; node = node->getNext()) {
        if (node->chain) node->chain = this;
    }
    for (ListenerCall* call = m_calls; call; call = call->outer) call->chain = this;
    m_dispatchNode = m_calls ? this : nullptr;
}

bool ListenerChain::isBeingCalled(const ListenerNode* node) const {
    for (const ListenerCall* call = m_calls; call; call = call->outer) {
        if (call->at == node) return true;
    }
    return false;
}

// Removes a node, which stays linked.
void ListenerChain::detach(ListenerNode& node) {
    node.chain = nullptr;
    node.invalidate();
    node.update();
    m_delegateCount += isDisabled() ? 1 : -1;
    m_isUntidy = true;
}

// Links a node in front of those of a higher priority, and of those of equal priority that were added later.
void ListenerChain::insert(ListenerNode* node) {
    DelegateNode* previous = this;
    while (const ListenerNode* const next = nextOf(previous)) {
        const int priority = next->getPriority();
        if (priority > node->getPriority() || (priority == node->getPriority() && next->order > node->order)) break;
        previous = previous->getNext();
    }
    previous->insertAfter(node);
}

// Calls that are running find the listener at its old position.
void ListenerChain::move(ListenerNode* node, DelegateNode* previous, int priority) {
    if (m_calls && node->first <= m_lastCall) {
        node->movedPriority = priority;
        node->isMoved = true;
        m_isUntidy = true;
    } else {
        takeNext(previous);
        node->setPriority(priority);
        insert(node);
    }
}

// Unlinks the listeners that have been removed, and after the last call moves the listeners that are to be moved.
void ListenerChain::tidy() {
    RetiredListeners retired;
    DelegateNode moved;
    m_isUntidy = false;
    for (DelegateNode* previous = this; ListenerNode* const node = nextOf(previous);) {
        if (!node->chain && !isBeingCalled(node)) {
            retired.append(takeNext(previous));
        } else if (node->isMoved && !m_calls) {
            moved.insertAfter(takeNext(previous));
        } else {
            m_isUntidy = m_isUntidy || !node->chain || node->isMoved;
            previous = node;
        }
    }
    while (nextOf(&moved)) {
        ListenerNode* const node = takeNext(&moved);
        node->setPriority(node->movedPriority);
        node->isMoved = false;
        insert(node);
    }
}

// Removes the listeners that match, and those that have expired. `retired` must be destroyed after the last access to
// the chain.
template <class Retired, class Match>
unsigned int ListenerChain::removeIf(Retired& retired, Match match) {
    unsigned int removed = 0;
    bool isUntidy = m_isUntidy;
    for (DelegateNode* previous = this; ListenerNode* const node = nextOf(previous);) {
        const bool isExpired = m_hasExpiring && node->chain && node->isExpired();
        if (node->chain && (isExpired || match(*node))) {
            if (!isExpired) ++removed;
            detach(*node);
            if (!isBeingCalled(node)) {
                retired.append(takeNext(previous));
                continue;
            }
            isUntidy = true;
        }
        previous = node;
    }
    m_isUntidy = isUntidy;
    return removed;
}

template <class Match>
const ListenerNode* ListenerChain::findIf(Match match) const {
    for (const ListenerNode* node = getFirst(); node; node = node->getNext()) {
        if (node->chain && match(*node) && !node->isExpired()) return node;
    }
    return nullptr;
}

ListenerNode* ListenerChain::add(const DelegatePOD& delegate, int priority, const ListenerKind& kind) {
    VORN_ASSERT(delegate.caller && delegate.typeInfo, "Invalid delegate!!", "Vorn::Event::add");
    if (m_isClosed) return nullptr;
    RetiredListeners retired;
    if (m_hasExpiring) removeIf(retired, [](const ListenerNode&) { return false; });

    ListenerNode* node = nullptr;
    DelegateNode* previous = this;
    for (; !kind.isNew && (node = nextOf(previous)); previous = node) {
        if (sameDelegate(node->getDelegate(), delegate) && node->life == kind.life) break;
    }
    if (node) {
        node->order = ++m_lastAdd;
        move(node, previous, priority);
    } else {
        node = new ListenerNode(*this, delegate, priority, kind.life);
        node->order = ++m_lastAdd;
        insert(node);
        m_delegateCount += isDisabled() ? -1 : 1;
    }
    node->isOnce = kind.isOnce;
    node->update();
    node->addReference();
    m_hasExpiring = m_hasExpiring || kind.life || delegate.contextAddRef == &delegateAddWeakRef;
    return node;
}

bool ListenerChain::remove(const DelegatePOD& delegate) {
    RetiredListeners retired;
    return removeIf(retired, [&](const ListenerNode& node) { return sameDelegate(node.getDelegate(), delegate); }) != 0;
}

bool ListenerChain::remove(const ListenerNode& removed) {
    RetiredListeners retired;
    return removeIf(retired, [&](const ListenerNode& node) { return &node == &removed; }) != 0;
}

unsigned int ListenerChain::remove(const void* object, const std::type_info* const* bindings, int bindingCount) {
    RetiredListeners retired;
    return removeIf(retired, [=](const ListenerNode& node) {
        return node.getDelegate().object == object && isOneOf(node.getDelegate().typeInfo, bindings, bindingCount);
    });
}

unsigned int ListenerChain::removeObject(const void* object, std::size_t size, const RefCounter* life) {
    RetiredListeners retired;
    return removeIf(retired, [=](const ListenerNode& node) {
        const DelegatePOD& pod = node.getDelegate();
        if (life && (node.life == life || pod.context == life)) return true;
        const auto offset = reinterpret_cast<std::uintptr_t>(pod.object) - reinterpret_cast<std::uintptr_t>(object);
        return offset < size && !VornPrivate::isValueBinding(pod);
    });
}

const ListenerNode* ListenerChain::find(const DelegatePOD& delegate) const {
    return findIf([&](const ListenerNode& node) { return sameDelegate(node.getDelegate(), delegate); });
}

const ListenerNode* ListenerChain::find(const void* object, const std::type_info* const* bindings,
                                        int bindingCount) const {
    return findIf([=](const ListenerNode& node) {
        return node.getDelegate().object == object && isOneOf(node.getDelegate().typeInfo, bindings, bindingCount);
    });
}

void ListenerChain::clear() {
    RetiredListeners retired;
    removeIf(retired, [](const ListenerNode&) { return true; });
}

void ListenerChain::stop() const {
    if (m_calls) m_calls->number = 0;
}

unsigned int ListenerChain::countListeners() const {
    if (!m_hasExpiring) return getDelegateCount();
    unsigned int count = 0;
    for (const ListenerNode* node = getFirst(); node; node = node->getNext())
        count += node->chain && !node->isExpired();
    return count;
}

} // namespace Vorn
