// A forest of nodes against lists of numbers: nodes move between parents, handles are dropped, and each change that is
// refused raises its exception and changes nothing.
#include "Vorn/SharedObjects/TreeNode.h"

#include "Support/Stream.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr unsigned int NODES = 8;
constexpr int NONE = -1;

struct Node : Vorn::TreeNode<Node> {
    Node(unsigned int nodeId, std::array<bool, NODES>& life) : id(nodeId), isAlive(life) { isAlive[id] = true; }
    ~Node() override { isAlive[id] = false; }

    unsigned int id;
    std::array<bool, NODES>& isAlive;
};

/// What the forest is: each node's parent, children and whether a handle holds it.
struct Model {
    Model() { parents.fill(NONE); }

    bool isAncestorOrSelf(unsigned int ancestor, unsigned int node) const {
        for (int i = static_cast<int>(node); i != NONE; i = parents[static_cast<unsigned int>(i)]) {
            if (i == static_cast<int>(ancestor)) return true;
        }
        return false;
    }

    unsigned int indexOf(unsigned int node) const {
        if (parents[node] == NONE) return 0;
        const std::vector<unsigned int>& siblings = children[static_cast<unsigned int>(parents[node])];
        for (unsigned int i = 0;; ++i) {
            if (siblings.at(i) == node) return i;
        }
    }

    void takeOut(unsigned int node) {
        if (parents[node] == NONE) return;
        std::vector<unsigned int>& siblings = children[static_cast<unsigned int>(parents[node])];
        siblings.erase(siblings.begin() + indexOf(node));
        parents[node] = NONE;
    }

    /// Ends a root that no handle holds. Its children become roots.
    void endUnheld(unsigned int node) {
        if (isHeld[node] || parents[node] != NONE || !isAlive[node]) return;
        isAlive[node] = false;
        const std::vector<unsigned int> orphans = std::move(children[node]);
        children[node].clear();
        for (const unsigned int child : orphans) parents[child] = NONE;
        for (const unsigned int child : orphans) endUnheld(child);
    }

    void appendSubtree(unsigned int node, std::vector<unsigned int>& order) const {
        order.push_back(node);
        for (const unsigned int child : children[node]) appendSubtree(child, order);
    }

    std::array<int, NODES> parents{};
    std::array<std::vector<unsigned int>, NODES> children;
    std::array<bool, NODES> isHeld{};
    std::array<bool, NODES> isAlive{};
};

class Play {
public:
    explicit Play(Stream stream) : m_stream(stream) {}

    void run() {
        while (!m_stream.ended()) {
            step();
            compare();
        }
        for (unsigned int id = 0; id < NODES; ++id) release(id);
        compare();
        for (const bool isAlive : m_life) require(!isAlive, "a node is left behind");
    }

private:
    /// A node that a handle holds; null if its handle was dropped.
    Vorn::SharedPtr<Node>& handle(unsigned int id) { return m_handles[id]; }

    void step() {
        const unsigned int operation = m_stream.below(8);
        const unsigned int ids = m_stream.next();
        const unsigned int first = ids % NODES;
        const unsigned int second = ids / NODES % NODES;
        if (!m_model.isAlive[first]) return make(first);
        switch (operation) {
        case 0: release(first); break;
        case 1: hold(first, second); break;
        case 2: insert(first, second, m_model.isHeld[first] ? m_stream.below(NODES + 1) : 0); break;
        case 3: append(first, second); break;
        case 4: removeAt(first, second); break;
        case 5: remove(first, second); break;
        case 6: move(first, second, m_stream.below(NODES)); break;
        default: walk(first); break;
        }
    }

    void make(unsigned int id) {
        handle(id) = Vorn::makeShared<Node>(id, m_life);
        m_model.isHeld[id] = true;
        m_model.isAlive[id] = true;
    }

    void release(unsigned int id) {
        handle(id).reset();
        m_model.isHeld[id] = false;
        m_model.endUnheld(id);
    }

    /// Makes a handle for a child that had none.
    void hold(unsigned int parent, unsigned int index) {
        if (!m_model.isHeld[parent] || index >= m_model.children[parent].size()) return;
        const unsigned int child = m_model.children[parent][index];
        handle(child) = handle(parent)->getChildren()[index];
        m_model.isHeld[child] = true;
    }

    template <class Callable>
    void requireOutcome(const char* message, Callable&& run) {
        std::string raised;
        try {
            run();
        } catch (const Vorn::Exception<4>& exception) {
            raised = exception.getMessage();
        }
        require(raised == message, "another outcome");
    }

    const char* refusal(unsigned int parent, unsigned int child, unsigned int index, bool hasIndex) const {
        if (!m_model.isHeld[child]) return "null node!";
        if (parent == child) return "Can't append a node under itself!";
        if (m_model.isAncestorOrSelf(child, parent)) return "Can't append a node under its descendant!";
        const bool isOwn = m_model.parents[child] == static_cast<int>(parent);
        if (hasIndex && index > m_model.children[parent].size() - (isOwn ? 1 : 0)) return "index out of range!";
        return "";
    }

    void insert(unsigned int parent, unsigned int child, unsigned int index) {
        if (!m_model.isHeld[parent]) return;
        const char* const message = refusal(parent, child, index, true);
        requireOutcome(message, [&] { handle(parent)->insert(index, handle(child)); });
        if (!*message) place(parent, child, index);
    }

    void append(unsigned int parent, unsigned int child) {
        if (!m_model.isHeld[parent]) return;
        const char* const message = refusal(parent, child, 0, false);
        requireOutcome(message, [&] { handle(parent)->append(handle(child)); });
        if (!*message) place(parent, child, 0xFF);
    }

    void place(unsigned int parent, unsigned int child, unsigned int index) {
        m_model.takeOut(child);
        std::vector<unsigned int>& siblings = m_model.children[parent];
        if (index > siblings.size()) index = static_cast<unsigned int>(siblings.size());
        siblings.insert(siblings.begin() + index, child);
        m_model.parents[child] = static_cast<int>(parent);
    }

    void removeAt(unsigned int parent, unsigned int index) {
        if (!m_model.isHeld[parent]) return;
        const bool isInside = index < m_model.children[parent].size();
        Vorn::SharedPtr<Node> removed;
        requireOutcome(isInside ? "" : "index out of range!", [&] { removed = handle(parent)->removeAt(index); });
        if (isInside) takenOut(m_model.children[parent][index], removed);
    }

    void remove(unsigned int parent, unsigned int child) {
        if (!m_model.isHeld[parent] || !m_model.isHeld[child]) return;
        const bool isChild = m_model.parents[child] == static_cast<int>(parent);
        Vorn::SharedPtr<Node> removed;
        requireOutcome(isChild ? "" : "not a child of this node!",
                       [&] { removed = handle(parent)->remove(*handle(child)); });
        if (isChild) takenOut(child, removed);
    }

    void takenOut(unsigned int child, Vorn::SharedPtr<Node>& removed) {
        require(removed && removed->id == child, "another node was taken out");
        m_model.takeOut(child);
        compareNode(child, *removed);
        removed.reset();
        m_model.endUnheld(child);
    }

    void move(unsigned int parent, unsigned int from, unsigned int to) {
        if (!m_model.isHeld[parent]) return;
        std::vector<unsigned int>& siblings = m_model.children[parent];
        const bool isInside = from < siblings.size() && to < siblings.size();
        requireOutcome(isInside ? "" : "index out of range!", [&] { handle(parent)->move(from, to); });
        if (!isInside) return;
        const unsigned int child = siblings[from];
        siblings.erase(siblings.begin() + from);
        siblings.insert(siblings.begin() + to, child);
    }

    void walk(unsigned int root) {
        if (!m_model.isHeld[root]) return;
        std::vector<unsigned int> expected;
        m_model.appendSubtree(root, expected);
        std::vector<unsigned int> visited;
        for (Node& node : handle(root)->depthFirst()) visited.push_back(node.id);
        require(visited == expected, "another order of nodes");
    }

    void compareNode(unsigned int id, Node& node) {
        require(node.id == id, "another node");
        const int parent = m_model.parents[id];
        require(node.getParent() ? static_cast<int>(node.getParent()->id) == parent : parent == NONE, "another parent");
        require(node.getIndex() == m_model.indexOf(id), "another index");
        const std::vector<unsigned int>& children = m_model.children[id];
        require(node.getChildCount() == children.size(), "another number of children");
        for (unsigned int i = 0; i < children.size(); ++i) {
            const Vorn::SharedPtr<Node>& child = node.getChildren()[i];
            require(&node.getChild(i) == child.get(), "another child");
            require(child.getUseCount() == 1 + m_model.isHeld[children[i]], "another number of references");
            compareNode(children[i], *child);
        }
    }

    void compare() {
        require(m_life == m_model.isAlive, "another lifetime");
        for (unsigned int id = 0; id < NODES; ++id) {
            if (m_model.isHeld[id]) compareNode(id, *handle(id));
        }
    }

    Stream m_stream;
    std::array<bool, NODES> m_life{};
    std::array<Vorn::SharedPtr<Node>, NODES> m_handles;
    Model m_model;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Play(Stream(data, size)).run();
    return 0;
}
