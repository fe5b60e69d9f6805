#include "base/Numbers.h"
#include "base/Text.h"
#include "check/Rules.h"
#include "props/StringFunctions.h"

#include <algorithm>
#include <set>
#include <string>

namespace vardo {
namespace {

// The positions of a page's modules, by kind.
using Positions = std::array<std::set<int>, std::size(kModules)>;

std::set<int> PositionsIn(std::string_view registered, bool& isReadable) {
  std::set<int> positions;
  isReadable = true;
  if (registered.empty()) return positions;
  for (const std::string& item : SplitList(registered, kListDelimiter)) {
    const auto position = ParseInteger(TrimBlanks(item));
    isReadable = isReadable && position.has_value();
    if (position) positions.insert(*position);
  }
  return positions;
}

// Visits each page that has modules, or registers of them.
template <class Visit>
void ForEachPage(const CheckedModel& checked, const Visit& visit) {
  std::vector<std::vector<int>> modules(checked.model.source.pages.size());
  for (int i = 0; i < checked.Count(); ++i) modules[static_cast<size_t>(checked.Module(i).page)].push_back(i);
  for (size_t page = 0; page < modules.size(); ++page)
    if (!modules[page].empty() || checked.Page(static_cast<int>(page)).isKept) visit(static_cast<int>(page), modules[page]);
}

void Register(const CheckedModel& checked, RuleReport& report) {
  ForEachPage(checked, [&](int page, const std::vector<int>& modules) {
    const SourcePage& of = checked.Page(page);
    for (size_t kind = 0; kind < std::size(kModules); ++kind) {
      bool isReadable = true;
      std::set<int> registered = PositionsIn(of.registers[kind], isReadable);
      int missed = -1;
      for (const int i : modules)
        if (checked.Module(i).schema == &kModules[kind] && registered.erase(checked.Module(i).position) == 0 && missed < 0)
          missed = i;
      if (missed < 0 && registered.empty() && isReadable) continue;
      std::string message =
          "Page " + Quoted(of.name) + ": the register of " + std::string(kModules[kind].kind) + " shapes is out of step";
      message += missed >= 0 ? "; lists of names may miss " + NameOf(checked.Module(missed)) + "." : ".";
      report.Page(page, std::move(message)).hint = "Drop any module on that page and delete it again: that renews it.";
    }
  });
}

void PageCount(const CheckedModel& checked, RuleReport& report) {
  ForEachPage(checked, [&](int page, const std::vector<int>& modules) {
    const SourcePage& of = checked.Page(page);
    const auto count = ParseInteger(TrimBlanks(of.count));
    if (!of.isKept || (count && *count == static_cast<int>(modules.size()))) return;
    report.Page(page, "Page " + Quoted(of.name) + " counts " + (count ? std::to_string(*count) : Quoted(of.count)) +
                          " modules and has " + std::to_string(modules.size()) + ".");
  });
}

// Each column that a module's rows use: its place, and how many values it has.
template <class Visit>
void ForEachColumn(const CheckedModel& checked, const Visit& visit) {
  checked.ForEach([&](int i) {
    const SourceModule& module = checked.Module(i);
    const ModuleFields& fields = checked.Fields(i);
    for (const std::uint8_t place : ColumnPlacesOf(*module.schema).places) {
      if (!module.values[place] || MeaningsOf(*module.schema)[place].meaning == Meaning::Nothing) continue;
      const int values = CountOccurrences(*module.values[place], kListDelimiter) + 1;
      visit(i, place, values, fields);
    }
  });
}

void ListLength(const CheckedModel& checked, RuleReport& report) {
  ForEachColumn(checked, [&](int i, size_t place, int values, const ModuleFields& fields) {
    bool isShort = false;
    for (int row = values; row < fields.rows(); ++row) isShort = isShort || fields.At(place, row).counts;
    if (!isShort) return;
    const ModuleProperty& property = checked.Module(i).schema->properties[place];
    const std::string rest = property.defaultValue.empty() ? "empty" : Quoted(property.defaultValue);
    report.Field({i, place}, "{m}: " + Counted(fields.rows(), "row") + ", but " + Counted(values, "value") +
                                 " of {f}; the rest is " + rest + ".");
  });
}

// A module without rows keeps one value in each column.
void ListSurplus(const CheckedModel& checked, RuleReport& report) {
  ForEachColumn(checked, [&](int i, size_t place, int values, const ModuleFields& fields) {
    if (values > std::max(fields.rows(), 1))
      report.Field({i, place}, "{m}: values of {f} beyond the " + Counted(fields.rows(), "row") + " are not used.");
  });
}

void CountText(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning == Meaning::Rows && value.reading == FieldValue::Reading::Unreadable)
      report.Field(at, "{m}: the number of rows reads " + Quoted(value.text) + ".");
  });
}

void ClassMissing(const CheckedModel& checked, RuleReport& report) {
  for (int i = 0; i < checked.Count(); ++i)
    if (!checked.Module(i).hasClass) report.Module(i, "{m} has no User.ClassName; its master says what it is.");
}

void SeparatePoint(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Separate", [&](int i) {
    if (checked.Fields(i)[kSeparateType].Is(SeparateType::Duplicate) && !checked.Module(i).hasThirdPoint)
      report.Module(i, "{m} has lost its exit for duplicates: open its dialog and press OK.");
  });
}

void CapacityCopy(const CheckedModel& checked, RuleReport& report) {
  constexpr Field kCopies[] = {Field("Resource", "ResourceCapacityOrSchedule"), Field("Resource", "ResourceCapacityOrSchedule2")};
  checked.ForEach("Resource", [&](int i) {
    const ModuleFields& fields = checked.Fields(i);
    const FieldValue& inForce = fields[kResourceCapacity].counts ? fields[kResourceCapacity] : fields[kResourceSchedule];
    const bool isSame = std::ranges::all_of(kCopies, [&](Field copy) { return fields[copy].text == inForce.text; });
    if (!isSame) report.Module(i, "{m}: its copies of the capacity are out of step.");
  });
}

constexpr Rule kRules[] = {
    {"damage/register", Severity::Warning, Register},
    {"damage/page-count", Severity::Note, PageCount},
    {"damage/list-length", Severity::Warning, ListLength},
    {"damage/list-surplus", Severity::Note, ListSurplus},
    {"damage/count-text", Severity::Warning, CountText},
    {"damage/class-missing", Severity::Note, ClassMissing},
    {"damage/separate-point", Severity::Warning, SeparatePoint},
    {"damage/capacity-copy", Severity::Note, CapacityCopy},
};

}  // namespace

std::span<const Rule> DamageRules() { return kRules; }

}  // namespace vardo
