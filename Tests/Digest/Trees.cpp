// The orders of trees that are changed at random, and of destructions.
#include "Digest/Digest.h"
#include "Support/Random.h"

#include "Vorn/SharedObjects/SharedPtr.h"
#include "Vorn/SharedObjects/TreeNode.h"
#include "Vorn/SharedObjects/WeakPtr.h"

#include <vector>

namespace {

class Node : public Vorn::TreeNode<Node> {
public:
    Node(Digest& destroyedDigest, int number) : id(number), m_digest(destroyedDigest) {}
    ~Node() override { m_digest.addAll("destroyed", id); }

    const int id;

private:
    Digest& m_digest;
};

void addTree(Digest& digest, Node& root) {
    for (const Node& node : root.depthFirst()) digest.addAll(node.id, node.getIndex(), node.getChildCount());
    for (const Node& node : root.postOrder()) digest.add(node.id);
}

} // namespace

void digestTrees(Digest& digest) {
    Random random(15);
    Vorn::SharedPtr<Node> root = Vorn::makeShared<Node>(digest, 0);
    std::vector<Vorn::WeakPtr<Node>> nodes = {root};
    const auto pick = [&] {
        for (;;) {
            if (const Vorn::SharedPtr<Node> node = nodes[random.below(static_cast<unsigned int>(nodes.size()))].lock())
                return node;
        }
    };
    for (int round = 1; round < 800; ++round) {
        const Vorn::SharedPtr<Node> node = pick();
        switch (random.below(8)) {
        case 0:
            if (node != root) node->detach();
            break;
        case 1:
            if (node->getChildCount() > 1) node->move(0, random.below(node->getChildCount()));
            break;
        case 2: node->sort([](const Node& a, const Node& b) { return a.id % 7 < b.id % 7; }); break;
        case 3: {
            const Vorn::SharedPtr<Node> other = pick();
            digest.addOutcome([&] { node->append(other); });
            break;
        }
        default: {
            const Vorn::SharedPtr<Node> child = Vorn::makeShared<Node>(digest, round);
            nodes.push_back(child);
            node->insert(random.below(node->getChildCount() + 1), child);
        }
        }
        if (round % 50 == 0) addTree(digest, *root);
    }
    addTree(digest, *root);
}
