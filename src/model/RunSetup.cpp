#include "model/RunSetup.h"

#include "addin/host/HostConstants.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "model/Names.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>

namespace vardo {
namespace {

constexpr std::string_view kRule = "run/setup";

// In the order of the enumeration.
constexpr SetupItemInfo kItems[] = {
    {SetupItem::Replications, "--replications", "User.VardoRunReplications"},
    {SetupItem::Length, "--length", "User.VardoRunLength"},
    {SetupItem::Until, "--until", "User.VardoRunUntil"},
    {SetupItem::WarmUp, "--warm-up", "User.VardoRunWarmUp"},
    {SetupItem::TimeUnit, "--time-unit", "User.VardoRunTimeUnit"},
    {SetupItem::Seed, "--seed", "User.VardoRunSeed"},
    {SetupItem::Confidence, "--confidence", "User.VardoRunConfidence"},
    {SetupItem::Precision, "--precision", "User.VardoRunPrecision"},
    {SetupItem::PrecisionOf, "--of", "User.VardoRunPrecisionOf"},
    {SetupItem::MaxReplications, "--max-replications", "User.VardoRunMaxReplications"},
    {SetupItem::Ignore, "--ignore", "User.VardoCheckIgnore"},
};
static_assert(std::size(kItems) == kSetupItemCount);

constexpr struct {
  std::string_view word;
  TimeUnit unit;
} kShortUnits[] = {{"s", TimeUnit::Seconds}, {"sec", TimeUnit::Seconds}, {"min", TimeUnit::Minutes}, {"m", TimeUnit::Minutes},
                   {"h", TimeUnit::Hours},   {"hr", TimeUnit::Hours},    {"d", TimeUnit::Days}};

std::optional<TimeUnit> FindUnit(std::string_view word) {
  for (const auto& [shortWord, unit] : kShortUnits)
    if (EqualAsciiIgnoringCase(shortWord, word)) return unit;
  for (size_t i = 0; i < std::size(kTimeUnitChoices); ++i) {
    const std::string_view plural = kTimeUnitChoices[i].code;
    if (EqualAsciiIgnoringCase(plural, word) || EqualAsciiIgnoringCase(plural.substr(0, plural.size() - 1), word))
      return static_cast<TimeUnit>(i);
  }
  return std::nullopt;
}

template <class Number>
std::optional<Number> Whole(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

std::optional<int> PositiveCount(std::string_view text) {
  const auto count = Whole<int>(text);
  return count && *count >= 1 ? count : std::nullopt;
}

// Above 0 and below 100; the sign may be left out.
std::optional<double> Percent(std::string_view text) {
  if (text.ends_with('%')) text = TrimBlanks(text.substr(0, text.size() - 1));
  const auto percent = ParseNumber(text);
  return percent && *percent > 0 && *percent < 100 ? percent : std::nullopt;
}

std::vector<std::string> Listed(std::string_view text) {
  std::vector<std::string> items;
  for (const std::string& item : SplitList(text, kListDelimiter))
    if (const std::string_view trimmed = TrimBlanks(item); !trimmed.empty()) items.emplace_back(trimmed);
  return items;
}

bool ReadReplications(RunSetup& setup, std::string_view text) {
  const size_t dots = text.find("..");
  const auto first = dots == std::string_view::npos ? std::optional(1) : PositiveCount(TrimBlanks(text.substr(0, dots)));
  const auto last = PositiveCount(dots == std::string_view::npos ? text : TrimBlanks(text.substr(dots + 2)));
  if (!first || !last || *first > *last) return false;
  setup.firstReplication = *first;
  setup.lastReplication = *last;
  return true;
}

bool ReadWarmUp(RunSetup& setup, std::string_view text) {
  if (EqualAsciiIgnoringCase(text, "auto")) return setup.warmUpIsProposed = true;
  const auto time = ParseTime(text, setup.timeUnit);
  if (time) setup.warmUp = *time;
  return time.has_value();
}

bool ReadLength(RunSetup& setup, std::string_view text) {
  const auto time = ParseTime(text, setup.timeUnit);
  if (!time || *time <= 0) return false;
  setup.length = *time;
  return true;
}

template <class Target, class Value>
bool Keep(Target& target, const std::optional<Value>& value) {
  if (value) target = *value;
  return value.has_value();
}

// How an item's text is read, and what a text is not that cannot be. The time unit stands first: the others need it.
constexpr struct {
  SetupItem item;
  bool (*read)(RunSetup& setup, std::string_view text);
  std::string_view isNot;
} kReaders[] = {
    {SetupItem::TimeUnit, [](RunSetup& setup, std::string_view text) { return Keep(setup.timeUnit, FindUnit(text)); },
     "a unit of time (seconds, minutes, hours, days)"},
    {SetupItem::Replications, ReadReplications, "a number of replications, nor a range such as 101..200"},
    {SetupItem::Length, ReadLength, "a time above 0, such as 8h, 30 d or 90 min"},
    {SetupItem::Until, [](RunSetup& setup, std::string_view text) { return setup.until = text, true; }, ""},
    {SetupItem::WarmUp, ReadWarmUp, "a time such as 8h, 30 d or 90 min, nor auto"},
    {SetupItem::Seed, [](RunSetup& setup, std::string_view text) { return Keep(setup.seed, Whole<std::uint64_t>(text)); },
     "a whole number below 18446744073709551616"},
    {SetupItem::Confidence, [](RunSetup& setup, std::string_view text) { return Keep(setup.confidence, Percent(text)); },
     "a percentage between 0 and 100"},
    {SetupItem::Precision, [](RunSetup& setup, std::string_view text) { return Keep(setup.precision, Percent(text)); },
     "a percentage between 0 and 100"},
    {SetupItem::PrecisionOf, [](RunSetup& setup, std::string_view text) { return setup.precisionOf = Listed(text), true; }, ""},
    {SetupItem::MaxReplications,
     [](RunSetup& setup, std::string_view text) { return Keep(setup.maxReplications, PositiveCount(text)); },
     "a number of replications"},
    {SetupItem::Ignore, [](RunSetup& setup, std::string_view text) { return setup.ignore = Listed(text), true; }, ""},
};
static_assert(std::size(kReaders) == kSetupItemCount);

Finding Unreadable(std::string message) { return {.rule = kRule, .message = std::move(message)}; }

// The value of a text whose unit stands behind it.
struct NumberAndUnit {
  double number;
  std::string_view unit;
};
std::optional<NumberAndUnit> SplitUnit(std::string_view text) {
  size_t end = text.size();
  while (end > 0 && IsAsciiLetter(text[end - 1])) --end;
  const auto number = ParseNumber(TrimBlanks(text.substr(0, end)));
  return number ? std::optional(NumberAndUnit{*number, text.substr(end)}) : std::nullopt;
}

bool SameName(std::string_view a, std::string_view b) { return NameKey(a) == NameKey(b); }

// The place of a property by its label or its own name; none when the kind has none of either.
std::optional<size_t> FindProperty(const ModuleSchema& schema, std::string_view name) {
  for (size_t place = 0; place < schema.properties.size(); ++place)
    if (SameName(schema.properties[place].label, name) || SameName(schema.properties[place].field, name)) return place;
  return std::nullopt;
}

bool SetField(const RunSetting& setting, ModelSource& source) {
  bool isSet = false;
  for (SourceModule& module : source.modules) {
    if (!SameName(module.name, setting.module)) continue;
    if (const auto place = FindProperty(*module.schema, setting.name)) {
      module.values[*place] = setting.value;
      isSet = true;
    }
  }
  return isSet;
}

bool SetVariable(const RunSetting& setting, ModelSource& source) {
  for (SourceModule& module : source.modules) {
    if (module.schema->kind != "Variable" || !SameName(module.name, setting.name)) continue;
    module.values[FindProperty(*module.schema, "VariableInitialValue").value()] = setting.value;
    module.values[FindProperty(*module.schema, module.schema->rows.count).value()] = "1";
    return true;
  }
  return false;
}

}  // namespace

const SetupItemInfo& InfoOf(SetupItem item) { return kItems[static_cast<size_t>(item)]; }

void KeepSetup(const IVDocumentPtr& document, const SetupTexts& options) {
  const IVShapePtr sheet = document->DocumentSheet();
  for (size_t i = 0; i < options.size(); ++i) {
    if (!options[i]) continue;
    const std::string cell(InfoOf(static_cast<SetupItem>(i)).cell);
    if (!sheet->CellExists(cell, kExistsAnywhere))
      sheet->AddNamedRow(kSectionUser, std::string_view(cell).substr(cell.find('.') + 1), kTagDefault);
    sheet->Cells(cell)->SetFormula(InQuotes(*options[i]));
  }
}

std::optional<double> ParseTime(std::string_view text, TimeUnit unit) {
  const auto split = SplitUnit(TrimBlanks(text));
  if (!split || split->number < 0) return std::nullopt;
  const auto named = split->unit.empty() ? std::optional(unit) : FindUnit(split->unit);
  const double seconds = named ? split->number * SecondsOf(*named) : std::numeric_limits<double>::infinity();
  return seconds <= std::numeric_limits<double>::max() ? std::optional(seconds) : std::nullopt;
}

RunSetup ReadSetup(const SetupTexts& options, const SetupTexts& cells, std::vector<Finding>& findings) {
  RunSetup setup;
  for (const auto& [item, read, isNot] : kReaders) {
    const auto i = static_cast<size_t>(item);
    const bool isOption = options[i].has_value();
    const std::string given = isOption ? *options[i] : cells[i].value_or("");
    const std::string_view text = TrimBlanks(given);
    // An empty cell says nothing.
    if ((text.empty() && !isOption) || read(setup, text)) continue;
    findings.push_back(Unreadable(std::string(isOption ? InfoOf(item).option : InfoOf(item).cell) + ": \"" + InWords(text) +
                                  "\" is not " + std::string(isNot) + "."));
  }
  return setup;
}

std::optional<RunSetting> ParseSetting(std::string_view text) {
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  const std::string_view left = TrimBlanks(text.substr(0, equals));
  RunSetting setting{.module = "", .name = std::string(left), .value = std::string(TrimBlanks(text.substr(equals + 1)))};
  // A name holds no comma.
  if (const size_t comma = left.rfind(','); comma != std::string_view::npos) {
    setting.module = TrimBlanks(left.substr(0, comma));
    setting.name = TrimBlanks(left.substr(comma + 1));
    if (setting.module.empty()) return std::nullopt;
  }
  return setting.name.empty() ? std::nullopt : std::optional(setting);
}

void ApplySettings(const std::vector<RunSetting>& settings, ModelSource& source, std::vector<Finding>& findings) {
  for (const RunSetting& setting : settings) {
    if (setting.module.empty() ? SetVariable(setting, source) : SetField(setting, source)) continue;
    const std::string what = setting.module.empty()
                                 ? "no Variable module is called \"" + InWords(setting.name) + "\""
                                 : "no module \"" + InWords(setting.module) + "\" has a field \"" + InWords(setting.name) + "\"";
    findings.push_back(Unreadable("--set: " + what + "."));
  }
}

}  // namespace vardo
