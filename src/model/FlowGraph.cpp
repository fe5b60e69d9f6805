#include "model/FlowGraph.h"

#include "base/Text.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace vardo {
namespace {

using At = ConnectorEnd::At;

constexpr int kOnlyExit = 0, kSecondExit = 1;
constexpr int kSecondExitPoint = 3;

// Still as it was dropped: named by the listener, all else as the stencil has it.
bool IsUntouched(const SourceModule& module) {
  const ModuleSchema& schema = *module.schema;
  std::string_view rest = module.name;
  if (!rest.starts_with(schema.kind)) return false;
  rest.remove_prefix(schema.kind.size());
  if (rest.size() < 2 || rest.front() != ' ' || !std::ranges::all_of(rest.substr(1), IsAsciiDigit)) return false;
  for (size_t place = 1; place < schema.properties.size(); ++place)
    if (module.values[place] && *module.values[place] != schema.properties[place].defaultValue) return false;
  return true;
}

class GraphMaker {
 public:
  GraphMaker(const ModelSource& source, const std::vector<ModuleFields>& fields) : source_(source), fields_(fields) {}

  FlowGraph Make() {
    FindNodes();
    FindSubmodels();
    for (size_t i = 0; i < source_.connectors.size(); ++i) LayRoad(static_cast<int>(i));
    for (Submodel& submodel : graph_.submodels) Splice(submodel);
    for (size_t i = 0; i < source_.modules.size(); ++i) LeaveByOpenExits(static_cast<int>(i));
    FindReachable();
    return std::move(graph_);
  }

 private:
  FlowNode& Node(int i) { return graph_.nodes[static_cast<size_t>(i)]; }
  const SourceModule& Module(int i) const { return source_.modules[static_cast<size_t>(i)]; }
  const ModuleFields& Fields(int i) const { return fields_[static_cast<size_t>(i)]; }
  // Where entities leave the page that a module stands on; -1 where they do not.
  int LeaveOf(int page) const {
    const int submodel = graph_.submodelOfPage[static_cast<size_t>(page)];
    return submodel < 0 ? -1 : graph_.submodels[static_cast<size_t>(submodel)].leave;
  }
  // The node whose exits are those that the module's connectors begin at.
  int NodeOfExits(int module) {
    const int submodel = Node(module).submodel;
    const int leave = submodel < 0 ? -1 : graph_.submodels[static_cast<size_t>(submodel)].leave;
    return leave < 0 ? module : leave;
  }

  void FindNodes() {
    graph_.nodes.resize(source_.modules.size());
    for (size_t i = 0; i < source_.modules.size(); ++i) {
      FlowNode& node = graph_.nodes[i];
      node.module = static_cast<int>(i);
      node.exits = ExitsOf(fields_[i]);
      node.takesPart = !IsFlowKind(*source_.modules[i].schema) || !IsUntouched(source_.modules[i]);
    }
    for (const SourceConnector& connector : source_.connectors)
      for (const ConnectorEnd* end : {&connector.begin, &connector.end})
        if (end->at == At::Module) Node(end->module).takesPart = true;
  }

  void FindSubmodels() {
    std::unordered_map<std::string_view, int> pages;
    for (size_t i = 0; i < source_.pages.size(); ++i) pages.emplace(source_.pages[i].name, static_cast<int>(i));
    graph_.submodelOfPage.assign(source_.pages.size(), -1);
    for (size_t i = 0; i < source_.modules.size(); ++i) {
      if (!IsKind(source_.modules[i], "Process") || !fields_[i][kProcessType].Is(ProcessType::Submodel)) continue;
      Submodel submodel{.process = static_cast<int>(i)};
      if (const auto page = pages.find(fields_[i][kProcessSubPage].text); page != pages.end()) submodel.page = page->second;
      graph_.nodes[i].submodel = static_cast<int>(graph_.submodels.size());
      if (submodel.page >= 0 && !graph_.IsSubmodelPage(submodel.page)) {
        graph_.submodelOfPage[static_cast<size_t>(submodel.page)] = graph_.nodes[i].submodel;
        submodel.leave = AddLeave(static_cast<int>(i));
      }
      graph_.submodels.push_back(std::move(submodel));
    }
  }

  int AddLeave(int process) {
    FlowNode leave{.kind = FlowNode::Kind::LeaveSubmodel, .module = process, .submodel = Node(process).submodel, .exits = 1};
    leave.takesPart = Node(process).takesPart;
    Node(process).kind = FlowNode::Kind::EnterSubmodel;
    graph_.nodes.push_back(leave);
    return static_cast<int>(graph_.nodes.size() - 1);
  }

  void LayRoad(int number) {
    const SourceConnector& connector = source_.connectors[static_cast<size_t>(number)];
    const bool hasTarget = connector.end.at == At::Module && IsFlowKind(*Module(connector.end.module).schema);
    const int exit = ExitOf(connector, fields_);
    if (exit < 0) {
      if (hasTarget && connector.begin.at == At::Nothing) NoteEntry(connector);
      return;
    }
    FlowNode& from = Node(NodeOfExits(connector.begin.module));
    const auto i = static_cast<size_t>(exit);
    if (from.connector[i] >= 0) return;
    from.connector[i] = number;
    from.next[i] = hasTarget ? connector.end.module : connector.end.at == At::Nothing ? LeaveOf(connector.page) : -1;
  }

  void NoteEntry(const SourceConnector& connector) {
    const int submodel = graph_.submodelOfPage[static_cast<size_t>(connector.page)];
    if (submodel < 0) return;
    std::vector<int>& entries = graph_.submodels[static_cast<size_t>(submodel)].entries;
    if (std::ranges::find(entries, connector.end.module) == entries.end()) entries.push_back(connector.end.module);
  }

  // Without a connector that shows it, entities begin where nobody else leads to.
  void FindModulesThatNobodyEnters() {
    std::vector<bool> isEntered(source_.modules.size());
    for (const SourceConnector& connector : source_.connectors)
      if (connector.end.at == At::Module) isEntered[static_cast<size_t>(connector.end.module)] = true;
    firstOnPage_.emplace(source_.pages.size());
    for (size_t i = 0; i < source_.modules.size(); ++i) {
      const SourceModule& module = source_.modules[i];
      if (!isEntered[i] && graph_.nodes[i].takesPart && IsFlowKind(*module.schema) && !IsKind(module, "Create"))
        (*firstOnPage_)[static_cast<size_t>(module.page)].push_back(static_cast<int>(i));
    }
  }

  void Splice(Submodel& submodel) {
    if (submodel.leave < 0) return;
    if (submodel.entries.empty()) {
      if (!firstOnPage_) FindModulesThatNobodyEnters();
      submodel.entries = (*firstOnPage_)[static_cast<size_t>(submodel.page)];
    }
    if (submodel.entries.size() == 1) Node(submodel.process).next[kOnlyExit] = submodel.entries.front();
  }

  void LeaveByOpenExits(int module) {
    if (!IsFlowKind(*Module(module).schema) || !Node(module).takesPart) return;
    FlowNode& node = Node(NodeOfExits(module));
    for (int exit = 0; exit < node.exits; ++exit)
      if (node.connector[static_cast<size_t>(exit)] < 0) node.next[static_cast<size_t>(exit)] = LeaveOf(Module(module).page);
  }

  void FindReachable() {
    std::vector<int> found;
    const auto reach = [&](int i) {
      if (i < 0 || Node(i).isReachable) return;
      Node(i).isReachable = true;
      found.push_back(i);
    };
    for (size_t i = 0; i < source_.modules.size(); ++i)
      if (IsKind(source_.modules[i], "Create") && graph_.nodes[i].takesPart) reach(static_cast<int>(i));
    for (size_t at = 0; at < found.size(); ++at)
      for (const int next : Node(found[at]).next) reach(next);
  }

  const ModelSource& source_;
  const std::vector<ModuleFields>& fields_;
  FlowGraph graph_;
  std::optional<std::vector<std::vector<int>>> firstOnPage_;
};

}  // namespace

FlowGraph MakeFlowGraph(const ModelSource& source, const std::vector<ModuleFields>& fields) {
  return GraphMaker(source, fields).Make();
}

bool IsFlowKind(const ModuleSchema& schema) { return !schema.look.connections.empty(); }

int ExitsOf(const ModuleFields& fields) {
  const ModuleSchema& schema = fields.schema();
  if (!IsFlowKind(schema) || schema.kind == "Dispose") return 0;
  const bool hasTwo = schema.kind == "Decide" || (schema.kind == "Separate" && fields[kSeparateType].Is(SeparateType::Duplicate));
  return hasTwo ? kMostExits : 1;
}

int ExitOf(const SourceConnector& connector, const std::vector<ModuleFields>& fields) {
  if (connector.begin.at != At::Module) return -1;
  const int exits = ExitsOf(fields[static_cast<size_t>(connector.begin.module)]);
  if (exits < kMostExits) return exits - 1;
  if (connector.begin.point == 1) return kOnlyExit;
  if (connector.begin.point == kSecondExitPoint) return kSecondExit;
  return connector.kind == ConnectorKind::False || connector.kind == ConnectorKind::Duplicate ? kSecondExit : kOnlyExit;
}

}  // namespace vardo
