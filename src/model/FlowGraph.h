// The roads that entities take: which module an exit leads to, with the pages of submodels put in the place of their Processes.
#pragma once

#include "model/ModelFields.h"
#include "model/ModelSource.h"

#include <array>
#include <string_view>
#include <vector>

namespace vardo {

// The exits of a node: 0 the only one, True, or the original's; 1 False, or the duplicates'.
inline constexpr int kMostExits = 2;

struct FlowNode {
  enum class Kind : std::uint8_t {
    Module,         // a module of the flow, or a data module, which has no exits
    EnterSubmodel,  // a Process whose page is spliced in: its exit leads to the page's entry
    LeaveSubmodel,  // where entities leave that page: its exit is the Process's own
  };
  Kind kind = Kind::Module;
  int module = -1;
  int exits = 0;
  std::array<int, kMostExits> next = {-1, -1};       // the node that an exit leads to; -1: none
  std::array<int, kMostExits> connector = {-1, -1};  // the connector that is the road; -1: none, or out of a submodel's page
  bool takesPart = false;                            // it is connected, or has been touched since it was dropped
  bool isReachable = false;                          // from a Create that takes part
};

struct Submodel {
  int process = -1;          // the module
  int page = -1;             // of the model; -1 when it names none, or one that is not there
  int leave = -1;            // the node by which entities leave it; -1 when it is not spliced in
  std::vector<int> entries;  // the modules where entities could begin; exactly one in a good model
};

// Nodes below the number of modules are the modules, by their places in the source; behind them come those that leave submodels.
struct FlowGraph {
  std::vector<FlowNode> nodes;
  std::vector<Submodel> submodels;  // in drawing order of their Processes
  std::vector<int> submodelOfPage;  // by page: the submodel that it shows, -1 for none

  const Submodel* SubmodelOf(int module) const {
    for (const Submodel& submodel : submodels)
      if (submodel.process == module) return &submodel;
    return nullptr;
  }
};

FlowGraph MakeFlowGraph(const ModelSource& source, const std::vector<ModuleFields>& fields);

// The exit that a connector takes of the module it begins at; -1 when it begins at no module or by no exit.
int ExitOf(const SourceConnector& connector, const ModelSource& source, const std::vector<ModuleFields>& fields);

// Kinds of modules, by their places among kModules.
constexpr bool IsKind(const SourceModule& module, std::string_view kind) { return module.schema->kind == kind; }
// Whether entities pass through modules of that kind.
bool IsFlowKind(const ModuleSchema& schema);

}  // namespace vardo
