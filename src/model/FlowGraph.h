// The roads that entities take: which module an exit leads to, with the pages of submodels put in the place of their Processes.
#pragma once

#include "model/ModelFields.h"
#include "model/ModelSource.h"

#include <array>
#include <cstdint>
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
  int submodel = -1;  // of a Process that is one, and where it is left; -1 for all others
  int exits = 0;
  std::array<int, kMostExits> next = {-1, -1};       // the node that an exit leads to; -1: none
  std::array<int, kMostExits> connector = {-1, -1};  // the connector that begins there; -1: none
  bool takesPart = false;    // it is connected, or has been touched since it was dropped; data modules always do
  bool isReachable = false;  // from a Create that takes part
};

struct Submodel {
  int process = -1;               // the module
  int page = -1;                  // the page it names; -1 when it names none, or one that is not there
  int leave = -1;                 // the node by which entities leave it; -1 when the page is not spliced in, being another's
  std::vector<int> entries = {};  // the modules where entities could begin; exactly one in a good model
};

// Nodes below the number of modules are the modules, by their places in the source; behind them come those that leave submodels.
struct FlowGraph {
  std::vector<FlowNode> nodes;
  std::vector<Submodel> submodels;  // in drawing order of their Processes
  std::vector<int> submodelOfPage;  // by page: the submodel that it shows, -1 for none

  bool IsSubmodelPage(int page) const { return submodelOfPage[static_cast<size_t>(page)] >= 0; }
};

FlowGraph MakeFlowGraph(const ModelSource& source, const std::vector<ModuleFields>& fields);

// The exit that a connector takes of the module it begins at; -1 when it begins at none that has exits.
int ExitOf(const SourceConnector& connector, const std::vector<ModuleFields>& fields);

// How many exits a module has.
int ExitsOf(const ModuleFields& fields);

inline bool IsKind(const SourceModule& module, std::string_view kind) { return module.schema->kind == kind; }
// Whether entities pass through modules of that kind.
bool IsFlowKind(const ModuleSchema& schema);

}  // namespace vardo
