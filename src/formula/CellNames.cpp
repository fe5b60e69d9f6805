#include "formula/CellNames.h"

#include "addin/host/HostConstants.h"
#include "base/Numbers.h"
#include "base/Text.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>

namespace vardo {
namespace {

constexpr ColumnInfo kPropColumns[] = {
    {0, "Value", "0"},        {1, "Prompt", "", true}, {2, "Label", "", true}, {3, "Format", "", true},
    {4, "SortKey", "", true}, {5, "Type", "0"},        {6, "Invisible", "0"},  {7, "Verify", "0"},
    {8, "DataLinked", "0"},   {14, "LangID", "0"},     {15, "Calendar", "0"},
};
constexpr ColumnInfo kUserColumns[] = {{0, "Value", "0"}, {1, "Prompt", "", true}};
constexpr ColumnInfo kActionColumns[] = {
    {0, "Menu", "", true},        {3, "Action", "0"},        {4, "Checked", "0"},    {5, "Disabled", "0"},
    {6, "ReadOnly", "0"},         {7, "Invisible", "0"},     {8, "BeginGroup", "0"}, {14, "TagName", "", true},
    {15, "ButtonFace", "", true}, {16, "SortKey", "", true},
};
constexpr ColumnInfo kConnectionColumns[] = {{0, "X", "0"},    {1, "Y", "0"},    {2, "DirX", "0"},
                                             {3, "DirY", "0"}, {4, "Type", "0"}, {5, "AutoGen", "0"}};
constexpr ColumnInfo kControlColumns[] = {{0, "X", "0"},    {1, "Y", "0"},    {2, "XDyn", "0"},    {3, "YDyn", "0"},
                                          {4, "XCon", "0"}, {5, "YCon", "0"}, {6, "CanGlue", "0"}, {8, "Prompt", "", true}};
constexpr ColumnInfo kHyperlinkColumns[] = {{0, "Description", "", true}, {1, "Address", "", true}, {2, "SubAddress", "", true}};

constexpr SectionInfo kSections[] = {
    {kSectionProp, "Property", "Prop", true, "", "Value", kPropColumns},
    {kSectionUser, "User", "User", true, "", "Value", kUserColumns},
    {kSectionAction, "Actions", "Actions", true, "", "Action", kActionColumns},
    {kSectionConnectionPts, "Connection", "Connections", false, "Connection", "X", kConnectionColumns},
    {9, "Control", "Controls", true, "", "X", kControlColumns},
    {244, "Hyperlink", "Hyperlink", true, "", "Address", kHyperlinkColumns},
};

constexpr ColumnInfo kGeometryColumns[] = {{0, "X", "0"}, {1, "Y", "0"}, {2, "A", "0"}, {3, "B", "0"},
                                           {4, "C", "0"}, {5, "D", "0"}, {6, "E", "0"}};
constexpr short kFirstGeometry = 10;
constexpr SectionInfo GeometryInfo(int index, std::string_view prefix) {
  return {static_cast<short>(kFirstGeometry + index), "Geometry", prefix, false, "", "X", kGeometryColumns, index};
}
constexpr SectionInfo kGeometries[] = {GeometryInfo(0, "Geometry1"), GeometryInfo(1, "Geometry2"), GeometryInfo(2, "Geometry3"),
                                       GeometryInfo(3, "Geometry4"), GeometryInfo(4, "Geometry5"), GeometryInfo(5, "Geometry6"),
                                       GeometryInfo(6, "Geometry7"), GeometryInfo(7, "Geometry8")};

// Every one-dimensional shape has its triggers, though no number of the host's leads to them here.
constexpr short kNoColumn = -1;
constexpr ObjectCell kObjectCells[] = {
    {kRowXFormOut, 0, "PinX", "0"},
    {kRowXFormOut, 1, "PinY", "0"},
    {kRowXFormOut, 2, "Width", "1"},
    {kRowXFormOut, 3, "Height", "1"},
    {kRowXFormOut, 4, "LocPinX", "0"},
    {kRowXFormOut, 5, "LocPinY", "0"},
    {kRowXFormOut, 6, "Angle", "0"},
    {kRowXFormOut, 7, "FlipX", "0"},
    {kRowXFormOut, 8, "FlipY", "0"},
    {kRowXForm1D, 0, "BeginX", "0"},
    {kRowXForm1D, 1, "BeginY", "0"},
    {kRowXForm1D, 2, "EndX", "0"},
    {kRowXForm1D, 3, "EndY", "0"},
    {kRowXForm1D, kNoColumn, "BegTrigger", "0"},
    {kRowXForm1D, kNoColumn, "EndTrigger", "0"},
    {kRowEvent, 0, "TheData", "0"},
    {kRowEvent, 1, "TheText", "0"},
    {kRowEvent, 2, "EventDblClick", "0"},
    {kRowEvent, 3, "EventXFMod", "0"},
    {kRowEvent, 4, "EventDrop", "0"},
    {kRowMisc, 0, "NoObjHandles", "0"},
};

bool AllDigits(std::string_view text) { return !text.empty() && std::all_of(text.begin(), text.end(), IsAsciiDigit); }

Symbol ColumnSpelling(const SectionInfo& section, std::string_view column) {
  for (const ColumnInfo& info : section.columns)
    if (EqualAsciiIgnoringCase(info.name, column)) return Symbol(info.name);
  return Symbol(column);
}

const SectionInfo* FindByPrefix(std::string_view prefix) {
  for (const std::span<const SectionInfo> sections :
       {std::span<const SectionInfo>(kSections), std::span<const SectionInfo>(kGeometries)})
    for (const SectionInfo& section : sections)
      if (EqualAsciiIgnoringCase(section.prefix, prefix)) return &section;
  return nullptr;
}

// "X2" of "Connections.X2", where the number is a row counted from 1.
std::optional<ParsedCellName> ParseNumberedRow(const SectionInfo& section, std::string_view rest) {
  const size_t digits = rest.find_first_of("0123456789");
  if (digits == std::string_view::npos || digits == 0 || !AllDigits(rest.substr(digits))) return std::nullopt;
  const int position = ParseInteger(rest.substr(digits)).value_or(std::numeric_limits<int>::max());
  // Position 0 is no row's; kept apart from "no position".
  return ParsedCellName{&section, {}, position == 0 ? -1 : position, ColumnSpelling(section, rest.substr(0, digits))};
}

std::optional<ParsedCellName> Parse(std::string_view name) {
  if (name.empty()) return std::nullopt;
  const size_t dot = name.find('.');
  if (dot == std::string_view::npos) {
    const ObjectCell* known = FindObjectCell(name);
    return ParsedCellName{nullptr, {}, 0, Symbol(known ? known->name : name)};
  }
  const std::string_view prefix = name.substr(0, dot), rest = name.substr(dot + 1);
  const SectionInfo* section = FindByPrefix(prefix);
  if (!section || rest.empty()) return std::nullopt;
  if (!section->rowsHaveNames)
    if (auto numbered = ParseNumberedRow(*section, rest)) return numbered;
  const size_t second = rest.find('.');
  const std::string_view row = rest.substr(0, second);
  const std::string_view column = second == std::string_view::npos ? section->shortName : rest.substr(second + 1);
  if (row.empty() || column.empty()) return std::nullopt;
  return ParsedCellName{section, Symbol(row), 0, ColumnSpelling(*section, column)};
}

// The same few names are asked for again and again.
class RecentNames {
 public:
  const std::optional<ParsedCellName>& Parsed(std::string_view name) {
    Entry& entry = entries_[std::hash<std::string_view>()(name) % entries_.size()];
    if (entry.name != name) {
      entry.parsed = Parse(name);
      entry.name = name;
    }
    return entry.parsed;
  }

 private:
  struct Entry {
    std::string name;
    std::optional<ParsedCellName> parsed;
  };
  std::array<Entry, 1024> entries_;
};

}  // namespace

const SectionInfo* FindSection(short section) {
  const auto found =
      std::find_if(std::begin(kSections), std::end(kSections), [&](const SectionInfo& s) { return s.section == section; });
  return found == std::end(kSections) ? nullptr : found;
}

const SectionInfo* FindSectionByElement(std::string_view element) {
  const auto found =
      std::find_if(std::begin(kSections), std::end(kSections), [&](const SectionInfo& s) { return s.element == element; });
  return found == std::end(kSections) ? nullptr : found;
}

const SectionInfo* FindGeometry(int index) {
  return index >= 0 && static_cast<size_t>(index) < std::size(kGeometries) ? &kGeometries[index] : nullptr;
}

std::span<const SectionInfo> AllSections() { return kSections; }

const ObjectCell* FindObjectCell(std::string_view name) {
  const auto found = std::find_if(std::begin(kObjectCells), std::end(kObjectCells),
                                  [&](const ObjectCell& c) { return EqualAsciiIgnoringCase(c.name, name); });
  return found == std::end(kObjectCells) ? nullptr : found;
}

const ObjectCell* FindObjectCell(short row, short column) {
  const auto found = std::find_if(std::begin(kObjectCells), std::end(kObjectCells),
                                  [&](const ObjectCell& c) { return c.row == row && c.column == column; });
  return found == std::end(kObjectCells) ? nullptr : found;
}

bool IsOneDimensionalRow(short row) { return row == kRowXForm1D; }

std::optional<ParsedCellName> ParseCellName(std::string_view name) {
  static RecentNames recent;
  return recent.Parsed(name);
}

}  // namespace vardo
