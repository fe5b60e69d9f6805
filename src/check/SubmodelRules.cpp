#include "check/Rules.h"

#include <algorithm>
#include <set>
#include <string>

namespace vardo {
namespace {

constexpr int kOnlyExit = 0;

template <class Visit>
void ForEachSubmodel(const CheckedModel& checked, const Visit& visit) {
  for (const Submodel& submodel : checked.model.graph.submodels)
    if (checked.Node(submodel.process).takesPart) visit(submodel);
}
// Those whose page stands in their place.
template <class Visit>
void ForEachSpliced(const CheckedModel& checked, const Visit& visit) {
  ForEachSubmodel(checked, [&](const Submodel& submodel) {
    if (submodel.leave >= 0) visit(submodel);
  });
}

std::string_view PageNamedBy(const CheckedModel& checked, int process) { return checked.Fields(process)[kProcessSubPage].text; }
std::string NameOfPage(const CheckedModel& checked, int page) { return Quoted(checked.Page(page).name); }

void NotDrawn(const CheckedModel& checked, RuleReport& report) {
  ForEachSubmodel(checked, [&](const Submodel& submodel) {
    if (PageNamedBy(checked, submodel.process).empty() && checked.Node(submodel.process).isReachable)
      report.Module(submodel.process, "{m} is a submodel without a page yet: choose Edit Submodel.");
  });
}

void PageMissing(const CheckedModel& checked, RuleReport& report) {
  ForEachSubmodel(checked, [&](const Submodel& submodel) {
    const std::string_view page = PageNamedBy(checked, submodel.process);
    if (submodel.page < 0 && !page.empty())
      report.Module(submodel.process, "{m}: its page " + Quoted(page) + " is no longer in the drawing.");
  });
}

void SharedPage(const CheckedModel& checked, RuleReport& report) {
  for (const Submodel& submodel : checked.model.graph.submodels) {
    if (submodel.page < 0 || submodel.leave >= 0) continue;
    const int first = checked.model.graph.submodelOfPage[static_cast<size_t>(submodel.page)];
    const int other = checked.model.graph.submodels[static_cast<size_t>(first)].process;
    report.Module(submodel.process,
                  "{m} and " + NameOf(checked.Module(other)) + " share the page " + NameOfPage(checked, submodel.page) + ".");
  }
}

// The pages that a page is within, from the inside out, lead back to it.
bool ContainsItself(const CheckedModel& checked, const Submodel& submodel) {
  const FlowGraph& graph = checked.model.graph;
  int page = checked.Module(submodel.process).page;
  for (size_t steps = 0; steps <= graph.submodels.size(); ++steps) {
    if (page == submodel.page) return true;
    const int around = graph.submodelOfPage[static_cast<size_t>(page)];
    if (around < 0) return false;
    page = checked.Module(graph.submodels[static_cast<size_t>(around)].process).page;
  }
  return false;
}

void ContainsItself(const CheckedModel& checked, RuleReport& report) {
  ForEachSubmodel(checked, [&](const Submodel& submodel) {
    if (submodel.page >= 0 && ContainsItself(checked, submodel))
      report.Module(submodel.process, "Page " + NameOfPage(checked, submodel.page) + " contains itself through {m}.");
  });
}

void NoEntry(const CheckedModel& checked, RuleReport& report) {
  ForEachSpliced(checked, [&](const Submodel& submodel) {
    if (submodel.entries.empty())
      report
          .Module(submodel.process,
                  "Entities that enter {m} find no beginning on page " + NameOfPage(checked, submodel.page) + ".")
          .hint = "Draw a connector with a loose begin to the first module.";
  });
}

void SeveralEntries(const CheckedModel& checked, RuleReport& report) {
  ForEachSpliced(checked, [&](const Submodel& submodel) {
    if (submodel.entries.size() < 2) return;
    report.Module(submodel.process, "Page " + NameOfPage(checked, submodel.page) + ": entities could begin at " +
                                        NameOf(checked.Module(submodel.entries[0])) + " or at " +
                                        NameOf(checked.Module(submodel.entries[1])) +
                                        "; draw a connector with a loose begin to the right one.");
  });
}

struct Ends {
  bool leaves = false;    // by the Process's own exit
  bool disposes = false;  // on the page
  bool isOpen = false;    // somewhere on the page, where nobody knows
};
Ends EndsOf(const CheckedModel& checked, const Submodel& submodel) {
  const std::vector<int> origins =
      checked.paths.From(std::vector{submodel.process}, [&](int node, int) { return node != submodel.leave; });
  Ends ends;
  for (size_t i = 0; i < origins.size(); ++i) {
    if (origins[i] < 0) continue;
    const FlowNode& node = checked.model.graph.nodes[i];
    ends.leaves |= static_cast<int>(i) == submodel.leave;
    ends.disposes |= node.kind == FlowNode::Kind::Module && checked.Is(node.module, "Dispose");
    const bool isLeave = static_cast<int>(i) == submodel.leave;
    for (int exit = 0; exit < node.exits; ++exit) ends.isOpen |= !isLeave && node.next[static_cast<size_t>(exit)] < 0;
  }
  return ends;
}

void NoWayOut(const CheckedModel& checked, RuleReport& report) {
  ForEachSpliced(checked, [&](const Submodel& submodel) {
    if (submodel.entries.size() != 1) return;
    const Ends ends = EndsOf(checked, submodel);
    if (!ends.leaves && !ends.disposes && !ends.isOpen)
      report.Module(submodel.process, "Entities that enter {m} never leave its page.");
  });
}

void ExitNotUsed(const CheckedModel& checked, RuleReport& report) {
  ForEachSpliced(checked, [&](const Submodel& submodel) {
    if (submodel.entries.size() != 1 || checked.Node(submodel.leave).connector[kOnlyExit] < 0) return;
    const Ends ends = EndsOf(checked, submodel);
    if (!ends.leaves && ends.disposes && !ends.isOpen)
      report.Module(submodel.process, "Nothing comes out of {m}: all entities leave on its page.");
  });
}

void HalfOpenDecide(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Decide", [&](int i) {
    const FlowNode& node = checked.Node(i);
    if (!checked.model.graph.IsSubmodelPage(checked.Module(i).page)) return;
    const bool trueOpen = node.connector[0] < 0, falseOpen = node.connector[1] < 0;
    if (trueOpen == falseOpen) return;
    report.Module(
        i, trueOpen ? "The open True exit of {m} leaves the submodel." : "The open False exit of {m} leaves the submodel.");
  });
}

void OrphanPage(const CheckedModel& checked, RuleReport& report) {
  std::set<std::string_view> named;
  for (int i = 0; i < checked.Count(); ++i)
    if (checked.Is(i, "Process")) named.insert(PageNamedBy(checked, i));
  for (size_t page = 0; page < checked.model.source.pages.size(); ++page) {
    const SourcePage& of = checked.model.source.pages[page];
    if (!of.parent.empty() && !named.contains(of.name))
      report.Page(static_cast<int>(page), "No Process leads to page " + Quoted(of.name) + ".");
  }
}

void ParentDiffers(const CheckedModel& checked, RuleReport& report) {
  ForEachSpliced(checked, [&](const Submodel& submodel) {
    const std::string& parent = checked.Page(submodel.page).parent;
    const std::string& page = checked.Page(checked.Module(submodel.process).page).name;
    if (parent.empty() || parent == page) return;
    report.Module(submodel.process, "Page " + NameOfPage(checked, submodel.page) + " calls " + Quoted(parent) +
                                        " its parent, but {m} is on " + Quoted(page) + ".");
  });
}

void StandardWithPage(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Process", [&](int i) {
    const std::string_view name = PageNamedBy(checked, i);
    if (!checked.Fields(i)[kProcessType].Is(ProcessType::Standard) || name.empty()) return;
    bool shows = false, isReached = false;
    for (int other = 0; other < checked.Count(); ++other) {
      if (checked.Page(checked.Module(other).page).name != name) continue;
      shows = true;
      isReached |= checked.Node(other).isReachable;
    }
    if (shows && !isReached) report.Module(i, "{m} is Standard: what page " + Quoted(name) + " shows takes no part.");
  });
}

constexpr Rule kRules[] = {
    {"submodel/not-drawn", Severity::Error, NotDrawn},
    {"submodel/page-missing", Severity::Error, PageMissing},
    {"submodel/shared-page", Severity::Error, SharedPage},
    {"submodel/contains-itself", Severity::Error, ContainsItself},
    {"submodel/no-entry", Severity::Error, NoEntry},
    {"submodel/several-entries", Severity::Error, SeveralEntries},
    {"submodel/no-way-out", Severity::Error, NoWayOut},
    {"submodel/exit-not-used", Severity::Note, ExitNotUsed},
    {"submodel/half-open-decide", Severity::Note, HalfOpenDecide},
    {"submodel/orphan-page", Severity::Warning, OrphanPage},
    {"submodel/parent-differs", Severity::Warning, ParentDiffers},
    {"submodel/standard-with-page", Severity::Note, StandardWithPage},
};

}  // namespace

std::span<const Rule> SubmodelRules() { return kRules; }

}  // namespace vardo
