// Events: a scene of shared nodes with events, whose listeners are added and removed during calls.
#include <Vorn/SharedObjects/Event.h>
#include <Vorn/SharedObjects/TreeNode.h>

#include <cstdio>
#include <string>

namespace {

using Vorn::SharedPtr;
using Vorn::WeakPtr;

/// An object of the scene. It notifies its listeners when it is hit.
class SceneNode : public Vorn::TreeNode<SceneNode> {
public:
    using Hit = Vorn::Event<SceneNode&, int>;

    explicit SceneNode(std::string nodeName) : name(std::move(nodeName)) {}
    ~SceneNode() override { std::printf("  (%s is gone)\n", name.c_str()); }

    const std::string name;
    Hit hit;
};

/// Counts the hits of the whole scene.
class ScoreBoard {
public:
    void add(SceneNode& node, int points) {
        m_score += points;
        std::printf("  score: %d after %s\n", m_score, node.name.c_str());
    }

private:
    int m_score = 0;
};

/// Plays a sound. Scenes refer to it weakly, since it can be destroyed at any time.
class Speaker {
public:
    explicit Speaker(std::string sound) : m_sound(std::move(sound)) {}
    void play(SceneNode& node, int) { std::printf("  speaker: %s at %s\n", m_sound.c_str(), node.name.c_str()); }

private:
    std::string m_sound;
};

/// Breaks at the first hit: it removes its listener and adds one for smoke, which is called from the next hit on.
class Glass {
public:
    explicit Glass(SceneNode& node) : m_node(node) {}

    void shatter(SceneNode& node, int) {
        std::printf("  %s shatters\n", node.name.c_str());
        m_node.hit.remove<&Glass::shatter>(*this);
        m_node.hit.add<&Glass::smoke>(*this, 10);
    }

    void smoke(SceneNode& node, int points) { std::printf("  %d puffs of smoke from %s\n", points, node.name.c_str()); }

private:
    SceneNode& m_node;
};

void printTree(SceneNode& root) {
    for (SceneNode& node : root.depthFirst()) {
        const int depth = static_cast<int>(node.getDepth());
        std::printf("%*s%u: %s\n", 2 + 2 * depth, "", node.getIndex(), node.name.c_str());
    }
}

void hit(SceneNode& node, int points) {
    std::printf("hit %s:\n", node.name.c_str());
    node.hit(node, points);
}

} // namespace

int main() {
    const SharedPtr<SceneNode> house = Vorn::makeShared<SceneNode>("house");
    const SharedPtr<SceneNode> window = Vorn::makeShared<SceneNode>("window");
    house->append(Vorn::makeShared<SceneNode>("door"));
    house->append(window);
    house->getChild(0).append(Vorn::makeShared<SceneNode>("handle"));
    house->insert(0, Vorn::makeShared<SceneNode>("roof"));
    std::printf("scene:\n");
    printTree(*house);

    std::printf("a node under its own child: ");
    try {
        window->append(house);
    } catch (const Vorn::Exception<Vorn::E::PARAMETER>& exception) {
        std::printf("%s\n", exception.getMessage());
    }

    // Listeners are called in ascending priority: glass, then speaker, then score.
    const SharedPtr<ScoreBoard> score = Vorn::makeShared<ScoreBoard>();
    SharedPtr<Speaker> speaker = Vorn::makeShared<Speaker>("clink");
    Glass glass(*window);
    window->hit.add<&ScoreBoard::add>(score, 5);
    window->hit.add<&Speaker::play>(Vorn::WeakPtr<Speaker>(speaker));
    window->hit.add<&Glass::shatter>(glass, -1);
    hit(*window, 3);
    hit(*window, 4);

    std::printf("the speaker is switched off\n");
    speaker.reset();
    hit(*window, 1);

    // A listener that removes the score before it is called, and adds a listener for the next hit only.
    Vorn::ScopedConnection guard = window->hit.add(
        [&](SceneNode& node) {
            std::printf("  %s is guarded from now on\n", node.name.c_str());
            node.hit.remove<&ScoreBoard::add>(score);
            node.hit.once([](SceneNode& guarded) { std::printf("  %s is guarded\n", guarded.name.c_str()); }, -5);
        },
        1);
    hit(*window, 2);
    guard.disconnect();
    hit(*window, 2);
    hit(*window, 1);

    window->hit.disable();
    hit(*window, 9);

    std::printf("the handle moves to the window, the roof is taken off\n");
    window->append(house->getChild(1).removeAt(0));
    house->removeAt(0);
    printTree(*house);
    std::printf("end\n");
    return 0;
}
