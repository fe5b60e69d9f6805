#include "check/Rules.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace vardo {
namespace {

using At = ConnectorEnd::At;

constexpr int kOnlyExit = 0, kSecondExit = 1;
constexpr int kExitPoint = 1, kSecondExitPoint = 3;
constexpr std::string_view kDecide = "Decide", kSeparate = "Separate", kCreate = "Create", kDispose = "Dispose";

bool HasCreate(const CheckedModel& checked) {
  bool has = false;
  checked.ForEach(kCreate, [&](int) { has = true; });
  return has;
}

void NoCreate(const CheckedModel& checked, RuleReport& report) {
  if (!HasCreate(checked)) report.Drawing("Nothing ever arrives: the drawing has no Create module that leads anywhere.");
}

// Each exit that entities reach and that leads them nowhere.
template <class Visit>
void ForEachOpenExit(const CheckedModel& checked, const Visit& visit) {
  for (const FlowNode& node : checked.model.graph.nodes) {
    // Of a page that is spliced in the rules of submodels tell.
    if (!node.isReachable || node.kind == FlowNode::Kind::EnterSubmodel) continue;
    for (int exit = 0; exit < node.exits; ++exit)
      if (node.next[static_cast<size_t>(exit)] < 0) visit(node, exit);
  }
}

void DeadEnd(const CheckedModel& checked, RuleReport& report) {
  ForEachOpenExit(checked, [&](const FlowNode& node, int exit) {
    if (checked.Is(node.module, kDecide) || exit != kOnlyExit) return;
    report.Module(node.module, "{m} leads nowhere: connect its exit to the next module or to a Dispose.");
  });
}

void DecideExitOpen(const CheckedModel& checked, RuleReport& report, int openExit) {
  ForEachOpenExit(checked, [&](const FlowNode& node, int exit) {
    if (exit == openExit && checked.Is(node.module, kDecide))
      report
          .Module(node.module,
                  openExit == kOnlyExit ? "{m} has no connector at its True exit." : "{m} has no connector at its False exit.")
          .hint = "Draw a True Connector and a False Connector from it.";
  });
}
void TrueExitOpen(const CheckedModel& checked, RuleReport& report) { DecideExitOpen(checked, report, kOnlyExit); }
void FalseExitOpen(const CheckedModel& checked, RuleReport& report) { DecideExitOpen(checked, report, kSecondExit); }

void DuplicateExitOpen(const CheckedModel& checked, RuleReport& report) {
  ForEachOpenExit(checked, [&](const FlowNode& node, int exit) {
    if (exit == kSecondExit && checked.Is(node.module, kSeparate))
      report.Module(node.module, "{m} makes duplicates, but no Duplicate Connector takes them on.");
  });
}

void ExitUsedTwice(const CheckedModel& checked, RuleReport& report) {
  std::map<std::pair<int, int>, int> counts;
  for (const SourceConnector& connector : checked.model.source.connectors)
    if (const int exit = ExitOf(connector, checked.model.fields); exit >= 0) ++counts[{connector.begin.module, exit}];
  for (const auto& [exit, count] : counts)
    if (count > 1)
      report.Module(exit.first,
                    "{m} has " + Counted(count, "connector") + " at one exit; an entity can take only one, a Decide can choose.");
}

// Of a page where entities could begin at none or several modules, and of one that two submodels share, nothing else is said.
bool HasClearBeginning(const CheckedModel& checked, int page) {
  const int submodel = checked.model.graph.submodelOfPage[static_cast<size_t>(page)];
  return submodel < 0 || checked.model.graph.submodels[static_cast<size_t>(submodel)].entries.size() == 1;
}

void Unreachable(const CheckedModel& checked, RuleReport& report) {
  if (!HasCreate(checked)) return;
  checked.ForEach([&](int i) {
    if (IsFlowKind(*checked.Module(i).schema) && !checked.Node(i).isReachable &&
        HasClearBeginning(checked, checked.Module(i).page))
      report.Module(i, "No entity ever reaches {m}.");
  });
}

void NotPart(const CheckedModel& checked, RuleReport& report) {
  for (int i = 0; i < checked.Count(); ++i)
    if (!checked.Node(i).takesPart) report.Module(i, "{m} is not connected yet and takes no part.");
}

// Where a way is not drawn to its end, nobody knows where it leads.
void NoDispose(const CheckedModel& checked, RuleReport& report) {
  std::vector<int> ends;
  for (size_t i = 0; i < checked.model.graph.nodes.size(); ++i) {
    const FlowNode& node = checked.model.graph.nodes[i];
    const bool isOpen = std::any_of(node.next.begin(), node.next.begin() + node.exits, [](int next) { return next < 0; });
    if (isOpen || (node.kind == FlowNode::Kind::Module && checked.Is(node.module, kDispose))) ends.push_back(static_cast<int>(i));
  }
  const std::vector<bool> reachesEnd = checked.paths.To(ends);
  checked.ForEach(kCreate, [&](int i) {
    if (reachesEnd[static_cast<size_t>(i)]) return;
    Finding& finding = report.Module(i, "Entities from {m} never leave.");
    if (checked.Constant(checked.Fields(i)[kCreateMaxBatches])) finding.severity = Severity::Note;
    finding.hint = "Lead them to a Dispose.";
  });
}

// --- Connectors

template <class Visit>
void ForEachConnector(const CheckedModel& checked, const Visit& visit) {
  for (size_t i = 0; i < checked.model.source.connectors.size(); ++i)
    visit(static_cast<int>(i), checked.model.source.connectors[i]);
}

void CreateEntered(const CheckedModel& checked, RuleReport& report) {
  ForEachConnector(checked, [&](int i, const SourceConnector& connector) {
    if (connector.end.at == At::Module && checked.Is(connector.end.module, kCreate))
      report.Connector(i, "Connector {c} enters {m}, where entities only begin.", connector.end.module);
  });
}

void DisposeLeft(const CheckedModel& checked, RuleReport& report) {
  ForEachConnector(checked, [&](int i, const SourceConnector& connector) {
    if (connector.begin.at == At::Module && checked.Is(connector.begin.module, kDispose))
      report.Connector(i, "Connector {c} leaves {m}, where entities end.", connector.begin.module);
  });
}

void DataModuleConnected(const CheckedModel& checked, RuleReport& report) {
  ForEachConnector(checked, [&](int i, const SourceConnector& connector) {
    for (const ConnectorEnd* end : {&connector.begin, &connector.end})
      if (end->at == At::Module && !IsFlowKind(*checked.Module(end->module).schema))
        report.Connector(i, "{m} is no station on the way; connector {c} has no effect.", end->module);
  });
}

void LooseEnd(const CheckedModel& checked, RuleReport& report) {
  ForEachConnector(checked, [&](int i, const SourceConnector& connector) {
    if (checked.model.graph.IsSubmodelPage(connector.page)) return;
    if (connector.begin.at == At::Nothing) report.Connector(i, "Connector {c} begins nowhere.");
    if (connector.end.at == At::Nothing) report.Connector(i, "Connector {c} ends nowhere.");
  });
}

void ForeignShape(const CheckedModel& checked, RuleReport& report) {
  ForEachConnector(checked, [&](int i, const SourceConnector& connector) {
    if (connector.begin.at == At::OtherShape)
      report.Connector(i, "Connector {c} comes from " + Quoted(connector.begin.text) + ", which is no module.");
    if (connector.end.at == At::OtherShape)
      report.Connector(i, "Connector {c} leads to " + Quoted(connector.end.text) + ", which is no module.");
  });
}

struct OwnExit {
  ConnectorKind kind;
  std::string_view name, leaves;
  int exit;
};
constexpr OwnExit kOwnExits[] = {
    {ConnectorKind::True, "a True Connector", kDecide, kOnlyExit},
    {ConnectorKind::False, "a False Connector", kDecide, kSecondExit},
    {ConnectorKind::Original, "an Original Connector", kSeparate, kOnlyExit},
    {ConnectorKind::Duplicate, "a Duplicate Connector", kSeparate, kSecondExit},
};

std::string_view NameOfExit(std::string_view kind, int exit) {
  if (kind == kDecide) return exit == kOnlyExit ? "True exit" : "False exit";
  return exit == kOnlyExit ? "exit for originals" : "exit for duplicates";
}

// Empty when the connector leaves by an exit that it is made for.
std::string WhyWrongExit(const CheckedModel& checked, const SourceConnector& connector, int exit) {
  const SourceModule& from = checked.Module(connector.begin.module);
  const std::string_view kind = from.schema->kind;
  for (const OwnExit& own : kOwnExits) {
    if (own.kind != connector.kind) continue;
    const std::string begins = "Connector {c} is " + std::string(own.name) + ", but leaves {m}";
    if (own.leaves != kind) return begins + ", which has no such exit.";
    return own.exit == exit ? "" : begins + " by its " + std::string(NameOfExit(kind, exit)) + ".";
  }
  if (exit == kOnlyExit) return "";
  return "Connector {c} leaves {m} by its " + std::string(NameOfExit(kind, exit)) + ", but is no connector for that exit.";
}

void WrongExit(const CheckedModel& checked, RuleReport& report) {
  ForEachConnector(checked, [&](int i, const SourceConnector& connector) {
    const int exit = ExitOf(connector, checked.model.fields);
    if (exit < 0) return;
    if (std::string why = WhyWrongExit(checked, connector, exit); !why.empty())
      report.Connector(i, std::move(why), connector.begin.module);
  });
}

void EnteredAtExit(const CheckedModel& checked, RuleReport& report) {
  ForEachConnector(checked, [&](int i, const SourceConnector& connector) {
    if (connector.end.at != At::Module || connector.end.point == 0) return;
    const int target = connector.end.module, exits = ExitsOf(checked.Fields(target));
    const bool atExit =
        (exits >= 1 && connector.end.point == kExitPoint) || (exits == kMostExits && connector.end.point == kSecondExitPoint);
    if (atExit && !checked.Is(target, kCreate))
      report.Connector(i, "Connector {c} enters {m} at its exit; it counts as entering.", target);
  });
}

// --- Loops

bool IsZero(std::optional<double> constant) { return constant && *constant == 0; }

// Whether entities may stay at a node, if only for an instant of the clock.
bool HoldsUp(const CheckedModel& checked, const FlowNode& node) {
  if (node.kind != FlowNode::Kind::Module) return false;
  const ModuleFields& fields = checked.Fields(node.module);
  if (checked.Is(node.module, "Batch")) return checked.Constant(fields[kBatchSize]) != 1;
  if (!checked.Is(node.module, "Process")) return false;
  if (fields[kProcessType].Is(ProcessType::Submodel)) return true;  // what it will hold is not drawn yet
  const bool queues =
      fields[kProcessAction].Is(ProcessAction::SeizeDelay) || fields[kProcessAction].Is(ProcessAction::SeizeDelayRelease);
  if (queues && fields.rows() > 0) return true;
  const DelayType type = fields[kProcessDelayType].As<DelayType>();
  if (type == DelayType::Constant) return !IsZero(checked.Constant(fields[kProcessValue]));
  if (type == DelayType::Expression) return !IsZero(checked.Constant(fields[kProcessExpression]));
  return true;
}

// By chance an exit is taken unless its chance is nothing.
bool IsTakenByChance(const CheckedModel& checked, int decide, int exit) {
  const auto percent = checked.Constant(checked.Fields(decide)[kDecidePercentTrue]);
  return !percent || (exit == kOnlyExit ? *percent > 0 : *percent < 100);
}

enum class WayOut { None, ByCondition, ByChance };

WayOut WayOutOf(const CheckedModel& checked, const std::vector<int>& loop) {
  WayOut best = WayOut::None;
  for (const int i : loop) {
    const FlowNode& node = checked.Node(i);
    if (node.kind != FlowNode::Kind::Module || !checked.Is(node.module, kDecide)) continue;
    const bool byChance = checked.Fields(node.module)[kDecideType].Is(DecideType::Chance);
    for (int exit = 0; exit < kMostExits; ++exit) {
      const bool leadsOut = !std::ranges::binary_search(loop, node.next[static_cast<size_t>(exit)]);
      if (!leadsOut || (byChance && !IsTakenByChance(checked, node.module, exit))) continue;
      best = std::max(best, byChance ? WayOut::ByChance : WayOut::ByCondition);
    }
  }
  return best;
}

void LoopsWithoutTime(const CheckedModel& checked, RuleReport& report, WayOut wayOut) {
  const auto passes = [&](int i, int exit) {
    const FlowNode& node = checked.Node(i);
    if (!node.isReachable || HoldsUp(checked, node)) return false;
    const bool isChance = node.kind == FlowNode::Kind::Module && checked.Is(node.module, kDecide) &&
                          checked.Fields(node.module)[kDecideType].Is(DecideType::Chance);
    return !isChance || IsTakenByChance(checked, node.module, exit);
  };
  for (const std::vector<int>& loop : checked.paths.Loops(passes)) {
    if (WayOutOf(checked, loop) != wayOut) continue;
    std::vector<int> modules;
    for (const int node : loop)
      if (std::ranges::find(modules, checked.Node(node).module) == modules.end()) modules.push_back(checked.Node(node).module);
    const std::string second = modules.size() > 1 ? NameOf(checked.Module(modules[1])) : "";
    if (wayOut == WayOut::None)
      report.Module(modules[0],
                    "Entities go round {m}" + (second.empty() ? "" : ", " + second) + " for ever without time passing.");
    else
      report.Module(modules[0], second.empty() ? "Time stands still at {m} until the condition changes."
                                               : "Time stands still between {m} and " + second + " until the condition changes.");
  }
}
void LoopForever(const CheckedModel& checked, RuleReport& report) { LoopsWithoutTime(checked, report, WayOut::None); }
void LoopWithoutDelay(const CheckedModel& checked, RuleReport& report) { LoopsWithoutTime(checked, report, WayOut::ByCondition); }

constexpr Rule kRules[] = {
    {"structure/no-create", Severity::Error, NoCreate},
    {"structure/dead-end", Severity::Error, DeadEnd},
    {"structure/true-exit-open", Severity::Error, TrueExitOpen},
    {"structure/false-exit-open", Severity::Error, FalseExitOpen},
    {"structure/duplicate-exit-open", Severity::Error, DuplicateExitOpen},
    {"structure/exit-used-twice", Severity::Error, ExitUsedTwice},
    {"structure/unreachable", Severity::Warning, Unreachable},
    {"structure/not-part", Severity::Note, NotPart},
    {"structure/no-dispose", Severity::Warning, NoDispose},
    {"structure/create-entered", Severity::Error, CreateEntered},
    {"structure/dispose-left", Severity::Error, DisposeLeft},
    {"structure/data-module-connected", Severity::Warning, DataModuleConnected},
    {"structure/loose-end", Severity::Warning, LooseEnd},
    {"structure/foreign-shape", Severity::Warning, ForeignShape},
    {"structure/wrong-exit", Severity::Error, WrongExit},
    {"structure/entered-at-exit", Severity::Warning, EnteredAtExit},
    {"structure/loop-forever", Severity::Error, LoopForever},
    {"structure/loop-without-delay", Severity::Note, LoopWithoutDelay},
};

}  // namespace

std::span<const Rule> StructureRules() { return kRules; }

}  // namespace vardo
