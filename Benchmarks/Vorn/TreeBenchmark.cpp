// Trees of shared nodes, compared with nodes that hold a vector of std::shared_ptr. Those know their parent, but not
// their index, and nothing checks that they form a tree.
#include "Support/Measure.h"

#include <Vorn/SharedObjects/TreeNode.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace {

struct VornNode : Vorn::TreeNode<VornNode> {
    long value = 1;
};

struct StdNode {
    std::vector<std::shared_ptr<StdNode>> children;
    StdNode* parent = nullptr;
    long value = 1;
};

/// What the benchmarks need of each library.
struct VornTree {
    using Pointer = Vorn::SharedPtr<VornNode>;

    static Pointer make() { return Vorn::makeShared<VornNode>(); }
    static void append(VornNode& node, const Pointer& child) { node.append(child); }
    static void insertInFront(VornNode& node, const Pointer& child) { node.insert(0, child); }
    static Pointer removeFirst(VornNode& node) { return node.removeAt(0); }
    static std::size_t countOf(VornNode& node) { return node.getChildCount(); }
    static long sumOf(VornNode& root) {
        long sum = 0;
        for (const VornNode& node : root.depthFirst()) sum += node.value;
        return sum;
    }
};

struct StdTree {
    using Pointer = std::shared_ptr<StdNode>;

    static Pointer make() { return std::make_shared<StdNode>(); }
    static void append(StdNode& node, const Pointer& child) {
        node.children.push_back(child);
        child->parent = &node;
    }
    static void insertInFront(StdNode& node, const Pointer& child) {
        node.children.insert(node.children.begin(), child);
        child->parent = &node;
    }
    static Pointer removeFirst(StdNode& node) {
        Pointer child = std::move(node.children.front());
        node.children.erase(node.children.begin());
        child->parent = nullptr;
        return child;
    }
    static std::size_t countOf(const StdNode& node) { return node.children.size(); }
    static long sumOf(const StdNode& node) {
        long sum = node.value;
        for (const Pointer& child : node.children) sum += sumOf(*child);
        return sum;
    }
};

// A root with n children, made and destroyed.
template <class Tree>
void buildAndDestroy(Run& run) {
    const auto build = [&run] {
        const auto root = Tree::make();
        for (std::size_t i = 0; i < run.size(); ++i) Tree::append(*root, Tree::make());
        return root;
    };
    run.expect(Tree::countOf(*build()), run.size());
    for (auto _ : run.loop()) benchmark::DoNotOptimize(build().get());
}

// A tree of n nodes, each with up to 8 children, visited parents first.
template <class Tree>
void walk(Run& run) {
    std::vector<typename Tree::Pointer> nodes = {Tree::make()};
    while (nodes.size() < run.size()) {
        const auto node = Tree::make();
        Tree::append(*nodes[(nodes.size() - 1) / 8], node);
        nodes.push_back(node);
    }
    run.expect(Tree::sumOf(*nodes[0]), static_cast<long>(run.size()));
    for (auto _ : run.loop()) benchmark::DoNotOptimize(Tree::sumOf(*nodes[0]));
}

// The first one of n children, taken out and put back.
template <class Tree>
void moveFirst(Run& run) {
    const auto root = Tree::make();
    for (std::size_t i = 0; i < run.size(); ++i) Tree::append(*root, Tree::make());
    for (auto _ : run.loop()) Tree::insertInFront(*root, Tree::removeFirst(*root));
    run.expect(Tree::countOf(*root), run.size());
}

[[maybe_unused]] const bool registered =
    addBenchmarks("Trees/append children and destroy/Vorn::TreeNode", {1, 10, 100, 1000}, buildAndDestroy<VornTree>) &&
    addBenchmarks("Trees/append children and destroy/vector of std::shared_ptr", {1, 10, 100, 1000},
                  buildAndDestroy<StdTree>) &&
    addBenchmarks("Trees/walk/Vorn::TreeNode", {1, 10, 100, 1000}, walk<VornTree>) &&
    addBenchmarks("Trees/walk/vector of std::shared_ptr", {1, 10, 100, 1000}, walk<StdTree>) &&
    addBenchmarks("Trees/remove and insert in front/Vorn::TreeNode", {1, 10, 100, 1000}, moveFirst<VornTree>) &&
    addBenchmarks("Trees/remove and insert in front/vector of std::shared_ptr", {1, 10, 100, 1000}, moveFirst<StdTree>);

} // namespace
