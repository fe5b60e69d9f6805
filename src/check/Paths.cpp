#include "check/Paths.h"

#include <algorithm>

namespace vardo {

Paths::Paths(const Model& model) : nodes_(model.graph.nodes), before_(model.graph.nodes.size()) {
  for (size_t i = 0; i < nodes_.size(); ++i)
    for (const int next : nodes_[i].next)
      if (next >= 0) before_[static_cast<size_t>(next)].push_back(static_cast<int>(i));
}

std::vector<bool> Paths::To(const std::vector<int>& targets) const {
  std::vector<bool> reaches(nodes_.size());
  std::vector<int> found;
  const auto reach = [&](int node) {
    if (reaches[static_cast<size_t>(node)]) return;
    reaches[static_cast<size_t>(node)] = true;
    found.push_back(node);
  };
  for (const int target : targets) reach(target);
  for (size_t at = 0; at < found.size(); ++at)
    for (const int before : before_[static_cast<size_t>(found[at])]) reach(before);
  return reaches;
}

// Tarjan's way of finding strongly connected components, with a stack of its own instead of recursion.
std::vector<std::vector<int>> Paths::LoopsAlong(const std::vector<Ways>& ways) {
  std::vector<std::vector<int>> loops;
  struct Visit {
    int node;
    int exit;
  };
  std::vector<int> number(ways.size(), -1), lowest(ways.size());
  std::vector<bool> isOpen(ways.size());
  std::vector<int> open;
  std::vector<Visit> visits;
  int count = 0;
  const auto enter = [&](int node) {
    const auto i = static_cast<size_t>(node);
    number[i] = lowest[i] = count++;
    isOpen[i] = true;
    open.push_back(node);
    visits.push_back({node, 0});
  };
  const auto leadsToItself = [&](int node) { return std::ranges::count(ways[static_cast<size_t>(node)], node) > 0; };
  for (int start = 0; start < static_cast<int>(ways.size()); ++start) {
    if (number[static_cast<size_t>(start)] >= 0) continue;
    enter(start);
    while (!visits.empty()) {
      const int node = visits.back().node;
      const auto i = static_cast<size_t>(node);
      if (visits.back().exit < kMostExits) {
        const int next = ways[i][static_cast<size_t>(visits.back().exit++)];
        if (next < 0) continue;
        const auto n = static_cast<size_t>(next);
        if (number[n] < 0)
          enter(next);
        else if (isOpen[n])
          lowest[i] = std::min(lowest[i], number[n]);
        continue;
      }
      visits.pop_back();
      if (!visits.empty()) {
        int& above = lowest[static_cast<size_t>(visits.back().node)];
        above = std::min(above, lowest[i]);
      }
      if (lowest[i] != number[i]) continue;
      std::vector<int> loop;
      do {
        loop.push_back(open.back());
        isOpen[static_cast<size_t>(open.back())] = false;
        open.pop_back();
      } while (loop.back() != node);
      if (loop.size() > 1 || leadsToItself(node)) {
        std::ranges::sort(loop);
        loops.push_back(std::move(loop));
      }
    }
  }
  return loops;
}

}  // namespace vardo
