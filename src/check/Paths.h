// The ways that entities can go.
#pragma once

#include "model/Model.h"

#include <utility>
#include <vector>

namespace vardo {

struct ExitOfNode {
  int node, exit;
};

class Paths {
 public:
  explicit Paths(const Model& model);

  // For each node that can be reached from those exits, the node whose exit leads to it; -1 for all others. Ways go on by the
  // exits for which passes(node, exit) holds.
  template <class Passes>
  std::vector<int> From(const std::vector<ExitOfNode>& exits, const Passes& passes) const {
    std::vector<int> origin(nodes_.size(), -1);
    std::vector<int> found;
    const auto go = [&](int node, int exit, int source) {
      const int next = nodes_[static_cast<size_t>(node)].next[static_cast<size_t>(exit)];
      if (next < 0 || origin[static_cast<size_t>(next)] >= 0) return;
      origin[static_cast<size_t>(next)] = source;
      found.push_back(next);
    };
    for (const auto& [node, exit] : exits) go(node, exit, node);
    for (size_t at = 0; at < found.size(); ++at)
      for (int exit = 0; exit < kMostExits; ++exit)
        if (passes(found[at], exit)) go(found[at], exit, origin[static_cast<size_t>(found[at])]);
    return origin;
  }
  // From all exits of those nodes.
  template <class Passes>
  std::vector<int> From(const std::vector<int>& nodes, const Passes& passes) const {
    std::vector<ExitOfNode> exits;
    for (const int node : nodes)
      for (int exit = 0; exit < kMostExits; ++exit) exits.push_back({node, exit});
    return From(exits, passes);
  }
  std::vector<int> From(const std::vector<int>& nodes) const {
    return From(nodes, [](int, int) { return true; });
  }

  // The nodes from which one of these can be reached, they themselves included.
  std::vector<bool> To(const std::vector<int>& targets) const;

  // Nodes that can be reached from each other, in groups: those of more than one, and of one that leads to itself. Only nodes and
  // exits that pass count.
  template <class Passes>
  std::vector<std::vector<int>> Loops(const Passes& passes) const {
    std::vector<Ways> ways(nodes_.size());
    for (size_t i = 0; i < nodes_.size(); ++i)
      for (int exit = 0; exit < kMostExits; ++exit) {
        const int next = nodes_[i].next[static_cast<size_t>(exit)];
        ways[i][static_cast<size_t>(exit)] = next >= 0 && passes(static_cast<int>(i), exit) ? next : -1;
      }
    return LoopsAlong(ways);
  }

 private:
  using Ways = std::array<int, kMostExits>;
  static std::vector<std::vector<int>> LoopsAlong(const std::vector<Ways>& ways);

  const std::vector<FlowNode>& nodes_;
  std::vector<std::vector<int>> before_;  // from where each node can be reached in one step
};

}  // namespace vardo
