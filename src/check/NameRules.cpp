#include "base/Text.h"
#include "check/Rules.h"
#include "props/StringFunctions.h"

#include <algorithm>
#include <set>
#include <string>
#include <unordered_map>

namespace vardo {
namespace {

const Named& NamedOf(const CheckedModel& checked, Thing thing, int index) {
  return checked.model.names.Of(thing)[static_cast<size_t>(index)];
}
int CountOf(const CheckedModel& checked, Thing thing) { return static_cast<int>(checked.model.names.Of(thing).size()); }

// --- The modules' own names

void Duplicate(const CheckedModel& checked, RuleReport& report) {
  std::unordered_map<std::string, int> first;
  for (int i = 0; i < checked.Count(); ++i) {
    if (checked.Module(i).name.empty()) continue;
    const auto [other, isNew] = first.emplace(NameKey(checked.Module(i).name), i);
    if (!isNew) report.Module(i, NameOf(checked.Module(other->second)) + " and {m} have the same name.");
  }
}

void Empty(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach([&](int i) {
    const SourceModule& module = checked.Module(i);
    if (module.name.empty())
      report.Module(
          i, "A " + std::string(module.schema->kind) + " on page " + Quoted(checked.Page(module.page).name) + " has no name.");
  });
}

// A text that is broken into lines reads the same.
std::string InOneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const bool isBlank = c == ' ' || c == '\n' || c == '\r' || c == '\t';
    if (!isBlank)
      line += c;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  }
  return std::string(TrimBlanks(line));
}

void TextDiffers(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach([&](int i) {
    const SourceModule& module = checked.Module(i);
    if (!module.name.empty() && InOneLine(module.text) != InOneLine(module.name))
      report.Module(i, "{m} shows " + Quoted(module.text) + ".");
  });
}

void ListSeparator(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach([&](int i) {
    const SourceModule& module = checked.Module(i);
    for (size_t place = 0; place < module.values.size(); ++place) {
      const bool isColumn = checked.Fields(i).IsColumn(place);
      if (!module.values[place] || MeaningsOf(*module.schema)[place].meaning == Meaning::Nothing) continue;
      const std::string& text = *module.values[place];
      if (!isColumn && text.find(kListDelimiter) != std::string::npos)
        report.Field({i, place}, "{m}, {f}: " + Quoted(text) + " holds a \";\", which separates the items of lists.");
      else if (text.find('"') != std::string::npos)
        report.Field({i, place}, "{m}, {f}: " + Quoted(text) + " holds a quotation mark, which ends texts.").text = text;
    }
  });
}

// Names that an expression takes for something else.
void Unreadable(const CheckedModel& checked, RuleReport& report) {
  constexpr Thing kNamed[] = {Thing::Variable, Thing::Attribute, Thing::EntityType, Thing::Picture, Thing::Resource,
                              Thing::Module,   Thing::Counter,   Thing::Tally,      Thing::Set,     Thing::Schedule};
  std::set<std::string> told;
  for (const Thing thing : kNamed)
    for (const Named& named : checked.model.names.Of(thing)) {
      if (named.mentionedBy < 0 || !checked.Node(named.mentionedBy).takesPart) continue;
      const bool isRead = checked.model.names.LongestPrefix(named.name).length == named.name.size();
      if (isRead || !told.insert(NameKey(named.name)).second) continue;
      const std::string name = InWords(named.name);
      report.Module(named.mentionedBy, "{m}: write [" + name + "] where expressions mean " + Quoted(name) + ".");
    }
}

// --- Names in expressions

void Ambiguous(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachExpression([&](const FieldPlace& at, const Expression& expression) {
    for (const ExpressionDoubt& doubt : expression.doubts) {
      const auto word = [](Thing thing) {
        const std::string text(WordFor(thing));
        return (text.front() == 'a' || text.front() == 'e' ? "an " : "a ") + text;
      };
      Finding& finding = report.Field(at, "{m}, {f}: " + Quoted(doubt.name) + " is " + word(doubt.meant) + " and " +
                                              word(doubt.also) + "; the " + std::string(WordFor(doubt.meant)) + " is meant.");
      finding.position = static_cast<int>(doubt.position);
      finding.length = static_cast<int>(doubt.length);
    }
  });
}

void HidesFunction(const CheckedModel& checked, RuleReport& report) {
  for (int i = 0; i < CountOf(checked, Thing::Variable); ++i) {
    const Named& named = NamedOf(checked, Thing::Variable, i);
    if (named.module >= 0 && checked.model.names.SizeOf(i).IsArray() && FindFunction(named.name))
      report.Module(named.module, "The variable " + Quoted(named.name) + " hides the function of that name.");
  }
}

// --- What is used without being defined, and defined without being used

// Each thing that is spoken of and that no module defines.
template <class Visit>
void ForEachUndefined(const CheckedModel& checked, Thing thing, const Visit& visit) {
  for (int i = 0; i < CountOf(checked, thing); ++i) {
    const Named& named = NamedOf(checked, thing, i);
    if (named.module < 0 && named.mentionedBy >= 0) visit(i, named);
  }
}
// Each thing that a module defines and nobody uses.
template <class Visit>
void ForEachUnused(const CheckedModel& checked, Thing thing, const Visit& visit) {
  for (int i = 0; i < CountOf(checked, thing); ++i) {
    const Named& named = NamedOf(checked, thing, i);
    if (named.module >= 0 && !checked.uses.Of(thing, i).IsUsed()) visit(i, named);
  }
}
void ReportUnused(const CheckedModel& checked, RuleReport& report, Thing thing) {
  ForEachUnused(checked, thing, [&](int, const Named& named) { report.Module(named.module, "{m} is never used."); });
}

void EntityTypeUndefined(const CheckedModel& checked, RuleReport& report) {
  ForEachUndefined(checked, Thing::EntityType, [&](int, const Named& named) {
    report.Module(named.mentionedBy,
                  "Entity type " + Quoted(named.name) + " has no module: it costs nothing and has the usual picture.");
  });
}
void EntityTypeUnused(const CheckedModel& checked, RuleReport& report) { ReportUnused(checked, report, Thing::EntityType); }

bool IsMemberOfASet(const CheckedModel& checked, int module) { return checked.Is(module, "Set"); }

void ResourceUndefined(const CheckedModel& checked, RuleReport& report) {
  ForEachUndefined(checked, Thing::Resource, [&](int, const Named& named) {
    if (!IsMemberOfASet(checked, named.mentionedBy))
      report.Module(named.mentionedBy, "Resource " + Quoted(named.name) + " has no module: capacity 1.");
  });
}
void ResourceUnused(const CheckedModel& checked, RuleReport& report) { ReportUnused(checked, report, Thing::Resource); }

void QueueUnused(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Queue", [&](int i) {
    if (checked.model.names.Find(Thing::Queue, checked.Module(i).name) < 0)
      report.Module(i, "{m} ranks nothing: queues are named after a Process or Batch, as in \"Weld.Queue\".");
  });
}

// Each reference of a field to something that has to have a module, and has none.
void ReportMissing(const CheckedModel& checked, RuleReport& report, Thing thing) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning == Meaning::Reference && meaning.thing == thing && !value.reference)
      report.Field(at, "{m}: there is no " + std::string(WordFor(thing)) + " " + Quoted(value.text) + ".");
  });
}
void ScheduleUndefined(const CheckedModel& checked, RuleReport& report) { ReportMissing(checked, report, Thing::Schedule); }
void ScheduleUnused(const CheckedModel& checked, RuleReport& report) { ReportUnused(checked, report, Thing::Schedule); }
void SetUndefined(const CheckedModel& checked, RuleReport& report) { ReportMissing(checked, report, Thing::Set); }
void SetUnused(const CheckedModel& checked, RuleReport& report) { ReportUnused(checked, report, Thing::Set); }

// Each field that names a set, with the set's module.
template <class Visit>
void ForEachUseOfSet(const CheckedModel& checked, const Visit& visit) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning == Meaning::Reference && meaning.thing == Thing::Set && value.reference)
      visit(at, NamedOf(checked, Thing::Set, value.reference.index).module);
  });
}

void SetEmpty(const CheckedModel& checked, RuleReport& report) {
  ForEachUseOfSet(checked, [&](const FieldPlace& at, int set) {
    if (checked.Fields(set).rows() == 0) report.Field(at, "{m}: set " + Quoted(checked.Module(set).name) + " has no members.");
  });
}

void SetWrongType(const CheckedModel& checked, RuleReport& report) {
  constexpr std::string_view kWords[] = {"resources", "counters", "tallies", "entity types", "pictures"};
  ForEachUseOfSet(checked, [&](const FieldPlace& at, int set) {
    const SetType wanted = checked.Is(at.module, "Process")      ? SetType::Resource
                           : at.place == kRecordCounterSet.place ? SetType::Counter
                                                                 : SetType::Tally;
    const FieldValue& type = checked.Fields(set)[kSetType];
    if (type.choice < 0 || type.Is(wanted)) return;
    report.Field(at, "{m} wants a set of " + std::string(kWords[static_cast<size_t>(wanted)]) + "; " +
                         Quoted(checked.Module(set).name) + " is a set of " +
                         std::string(kWords[static_cast<size_t>(type.choice)]) + ".");
  });
}

// Each member of a set's own type, with its row.
template <class Visit>
void ForEachMember(const CheckedModel& checked, const Visit& visit) {
  checked.ForEach("Set", [&](int i) {
    const ModuleFields& fields = checked.Fields(i);
    const int type = fields[kSetType].choice;
    if (type < 0) return;
    for (int row = 0; row < fields.rows(); ++row)
      visit(i, FieldPlace{i, kSetMembers[type].place, row}, fields(kSetMembers[type], row));
  });
}

void SetMemberUndefined(const CheckedModel& checked, RuleReport& report) {
  ForEachMember(checked, [&](int, const FieldPlace& at, const FieldValue& member) {
    if (member.reference.thing == Thing::Resource && member.reference &&
        NamedOf(checked, Thing::Resource, member.reference.index).module < 0)
      report.Field(at, "{m}: resource " + Quoted(member.text) + " has no module.");
  });
}

void SetMemberTwice(const CheckedModel& checked, RuleReport& report) {
  int set = -1;
  std::set<int> seen;
  ForEachMember(checked, [&](int i, const FieldPlace& at, const FieldValue& member) {
    if (i != set) seen.clear();
    set = i;
    if (member.reference && !seen.insert(member.reference.index).second)
      report.Field(at, "{m} lists " + Quoted(member.text) + " twice.");
  });
}

void VariableUndefined(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Decide", [&](int i) {
    const FieldValue& variable = checked.Fields(i)[kDecideVariable];
    if (variable.counts && !variable.reference)
      report.Field({i, kDecideVariable.place}, "{m}: there is no variable " + Quoted(variable.text) + ".");
  });
}

void VariableUndeclared(const CheckedModel& checked, RuleReport& report) {
  ForEachUndefined(checked, Thing::Variable, [&](int, const Named& named) {
    report.Module(named.mentionedBy, "Variable " + Quoted(named.name) + " has no module: it starts at 0 and is not reported.");
  });
}
void VariableUnused(const CheckedModel& checked, RuleReport& report) { ReportUnused(checked, report, Thing::Variable); }

// An interval has a rule of its own for where it begins.
void AttributeNeverAssigned(const CheckedModel& checked, RuleReport& report) {
  for (int i = 0; i < CountOf(checked, Thing::Attribute); ++i) {
    const Use& use = checked.uses.Of(Thing::Attribute, i);
    if (use.assigned || !use.read) continue;
    if (checked.Is(use.read.module, "Record") && use.read.place == kRecordAttribute.place) continue;
    report.Field(use.read, "{m}, {f}: attribute " + Quoted(NamedOf(checked, Thing::Attribute, i).name) +
                               " is never assigned and always 0.");
  }
}

void AttributeUnused(const CheckedModel& checked, RuleReport& report) {
  for (int i = 0; i < CountOf(checked, Thing::Attribute); ++i) {
    const Use& use = checked.uses.Of(Thing::Attribute, i);
    if (use.assigned && !use.read)
      report.Field(use.assigned,
                   "Attribute " + Quoted(NamedOf(checked, Thing::Attribute, i).name) + " is assigned at {m} and never used.");
  }
}

constexpr Rule kRules[] = {
    {"names/duplicate", Severity::Error, Duplicate},
    {"names/empty", Severity::Error, Empty},
    {"names/text-differs", Severity::Warning, TextDiffers},
    {"names/list-separator", Severity::Error, ListSeparator},
    {"names/unreadable", Severity::Warning, Unreadable},
    {"names/unknown", Severity::Error, ReportExpressionErrors},
    {"names/ambiguous", Severity::Warning, Ambiguous},
    {"names/hides-function", Severity::Warning, HidesFunction},
    {"names/entity-type-undefined", Severity::Note, EntityTypeUndefined},
    {"names/entity-type-unused", Severity::Note, EntityTypeUnused},
    {"names/resource-undefined", Severity::Warning, ResourceUndefined},
    {"names/resource-unused", Severity::Note, ResourceUnused},
    {"names/queue-unused", Severity::Warning, QueueUnused},
    {"names/schedule-undefined", Severity::Error, ScheduleUndefined},
    {"names/schedule-unused", Severity::Note, ScheduleUnused},
    {"names/set-undefined", Severity::Error, SetUndefined},
    {"names/set-unused", Severity::Note, SetUnused},
    {"names/set-empty", Severity::Error, SetEmpty},
    {"names/set-wrong-type", Severity::Error, SetWrongType},
    {"names/set-member-undefined", Severity::Warning, SetMemberUndefined},
    {"names/set-member-twice", Severity::Warning, SetMemberTwice},
    {"names/variable-undefined", Severity::Error, VariableUndefined},
    {"names/variable-undeclared", Severity::Note, VariableUndeclared},
    {"names/variable-unused", Severity::Note, VariableUnused},
    {"names/attribute-never-assigned", Severity::Warning, AttributeNeverAssigned},
    {"names/attribute-unused", Severity::Note, AttributeUnused},
};

}  // namespace

std::span<const Rule> NameRules() { return kRules; }

}  // namespace vardo
