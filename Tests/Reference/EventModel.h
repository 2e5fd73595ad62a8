// What an event does, as lists: the chain of nodes, the pending listeners, and the nodes that the documented hazards of
// removal leak. Shares no code with the library.
#pragma once

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <vector>

namespace reference {

/// A node of an event.
struct EventNode {
    int id = -1; // whose reference it holds; -1 for none
    bool isValid = false;
    int priority = 0;

    bool operator==(const EventNode& other) const {
        return id == other.id && isValid == other.isValid && priority == other.priority;
    }
    bool holds(int listener) const { return isValid && id == listener; }
    friend std::ostream& operator<<(std::ostream& stream, const EventNode& node) {
        return stream << "listener " << node.id << " at " << node.priority << (node.isValid ? "" : ", removed");
    }
};

/// The state of an event. Its first node is chain[0].
struct EventModel {
    std::vector<EventNode> chain{EventNode()}, pending, lost;
    int at = -1; // the dispatch's node; -1 when idle
    bool isTailLost = false;
    bool isDisabled = false;
    unsigned int count = 0;
    bool hasSpare = false;
    EventNode spare;
    unsigned int nodesMade = 0;

    void erase(std::size_t index) {
        const EventNode node = chain[index];
        chain.erase(chain.begin() + static_cast<std::ptrdiff_t>(index));
        if (at > static_cast<int>(index)) --at;
        if (!hasSpare) {
            hasSpare = true;
            spare = node;
        }
    }

    void insert(std::size_t index, const EventNode& node) {
        chain.insert(chain.begin() + static_cast<std::ptrdiff_t>(index), node);
        if (at >= static_cast<int>(index)) ++at;
    }

    void take() {
        if (!hasSpare) ++nodesMade;
        hasSpare = false;
    }

    bool removeFrom(std::size_t index, std::size_t end, int id) {
        while (index < std::min(end, chain.size())) {
            if (chain[index].holds(id)) {
                erase(index);
                return true;
            }
            if (chain[index].isValid) {
                ++index;
            } else {
                erase(index);
                if (end != std::size_t(-1)) --end;
            }
        }
        return false;
    }

    bool removeFromList(int id) {
        if (at == 0) return removePending(id);
        if (at < 0) return removeFrom(1, std::size_t(-1), id) || removePending(id);
        if (removeFrom(1, static_cast<std::size_t>(at), id)) return true;
        const std::size_t dispatched = static_cast<std::size_t>(at);
        if (chain[dispatched].holds(id)) {
            chain[dispatched].isValid = false;
            return true;
        }
        return removeFrom(dispatched + 1, std::size_t(-1), id) || removePending(id);
    }

    bool removePending(int id) {
        for (std::size_t i = 0; i < pending.size(); ++i) {
            if (!pending[i].holds(id)) continue;
            if (i + 1 == pending.size()) isTailLost = true;
            if (i > 0) lost.push_back(pending[i]);
            pending.erase(pending.begin() + static_cast<std::ptrdiff_t>(i));
            return true;
        }
        return false;
    }

    void refillFirst() {
        chain[0].isValid = false;
        while (chain.size() > 1) {
            const EventNode node = chain[1];
            erase(1);
            if (!node.isValid && at != 1) continue;
            chain[0] = node;
            return;
        }
    }

    void remove(int id) {
        hasSpare = false;
        if (count == 0) return;
        if (!chain[0].holds(id)) {
            if (!removeFromList(id)) return;
        } else if (at == 0 || at == 1) {
            chain[0].isValid = false;
        } else {
            refillFirst();
        }
        --count;
    }

    void wait(const EventNode& node) {
        take();
        (isTailLost ? lost : pending).push_back(node);
    }

    void add(int id, int priority) {
        remove(id);
        const EventNode node{id, true, priority};
        ++count;
        if (chain[0].priority > priority) {
            if (at == 0) return wait(node);
            if (!hasSpare && chain.size() > 1 && at != 1 && !chain[1].isValid) {
                chain[1] = chain[0];
            } else {
                take();
                insert(1, chain[0]);
            }
            chain[0] = node;
            return;
        }
        std::size_t index = 1;
        while (index < chain.size() && static_cast<int>(index) != at && chain[index].priority <= priority) ++index;
        if (index < chain.size() && static_cast<int>(index) == at) return wait(node);
        take();
        insert(index, node);
    }

    bool contains(int id) const {
        if (count == 0) return false;
        for (const auto* list : {&chain, &pending}) {
            for (const EventNode& node : *list) {
                if (node.holds(id)) return true;
            }
        }
        return false;
    }

    void clear() {
        if (at >= 0) {
            for (EventNode& node : chain) node.isValid = false;
            return;
        }
        chain.resize(1);
        count = 0;
    }

    // The next listener that a dispatch calls; -1 at its end.
    int advance() {
        while (++at < static_cast<int>(chain.size())) {
            if (chain[static_cast<std::size_t>(at)].isValid) return chain[static_cast<std::size_t>(at)].id;
        }
        return -1;
    }

    void endDispatch() {
        at = -1;
        if (pending.empty()) return;
        for (const EventNode& node : pending) {
            std::size_t index = 1;
            while (index < chain.size() && chain[index].priority <= node.priority) ++index;
            insert(index, node);
        }
        pending.clear();
        isTailLost = false;
    }

    int references(int id) const {
        int result = 0;
        for (const auto* list : {&chain, &pending, &lost}) {
            for (const EventNode& node : *list) result += node.id == id;
        }
        return result;
    }
};

} // namespace reference
