#include "picture/ResolvedSheet.h"

#include "base/Numbers.h"
#include "document/Drawing.h"
#include "package/Package.h"

#include <pugixml.hpp>

#include <algorithm>
#include <charconv>

namespace vardo::picture {
namespace {

constexpr int kDeepest = 32;  // of styles from styles and masters within masters

// The colours that a number means in a drawing without a table of its own.
constexpr std::uint32_t kColours[] = {0x000000, 0xffffff, 0xff0000, 0x00ff00, 0x0000ff, 0xffff00, 0xff00ff, 0x00ffff,
                                      0x800000, 0x008000, 0x000080, 0x808000, 0x800080, 0x008080, 0xc0c0c0, 0xe6e6e6,
                                      0xcdcdcd, 0xb3b3b3, 0x9a9a9a, 0x808080, 0x666666, 0x4d4d4d, 0x333333, 0x1a1a1a};

Rgba FromNumber(std::uint32_t rgb) {
  return {static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8), static_cast<std::uint8_t>(rgb)};
}

std::optional<Rgba> FromHex(std::string_view text) {
  std::uint32_t rgb = 0;
  if (text.size() != 7 || text[0] != '#') return std::nullopt;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + 7, rgb, 16);
  if (error != std::errc() || end != text.data() + 7) return std::nullopt;
  return FromNumber(rgb);
}

}  // namespace

// ----------------------------------------------------------------------------------------------------------- one sheet

std::optional<double> ResolvedSheet::Find(CellName cell) const { return ParseNumber(values_[cell.index()]); }

double ResolvedSheet::Number(CellName cell) const {
  if (const auto number = Find(cell)) return *number;
  return ParseNumber(cell.info().otherwise).value_or(0);
}

namespace {

const StoredSection* FindSection(const std::vector<std::shared_ptr<const StoredSection>>& sections, std::string_view name) {
  for (const auto& section : sections)
    if (section->kind->name == name) return section.get();
  return nullptr;
}

}  // namespace

const StoredSection* ResolvedSheet::Section(std::string_view name) const { return FindSection(sections_, name); }
const StoredSection* ResolvedSheet::StyleSection(std::string_view name) const { return FindSection(styleSections_, name); }

void ResolvedSheet::Overlay(const StoredSheet& sheet) {
  for (size_t i = 0; i < values_.size(); ++i)
    if (!sheet.values[i].empty()) values_[i] = sheet.values[i];
  for (const StoredSection& section : sheet.sections) OverlaySection(section);
}

void ResolvedSheet::OverlaySection(const StoredSection& section) {
  const auto same = std::find_if(sections_.begin(), sections_.end(),
                                 [&](const auto& s) { return s->kind == section.kind && s->ix == section.ix; });
  auto merged = same == sections_.end() ? std::make_shared<StoredSection>(StoredSection{section.kind, section.ix, {}, {}})
                                        : std::make_shared<StoredSection>(**same);
  merged->Overlay(section);
  if (same != sections_.end())
    *same = std::move(merged);
  else
    sections_.push_back(std::move(merged));
}

void ResolvedSheet::OverlayStyle(const ResolvedSheet& style, StyleKind kind) {
  for (size_t i = 0; i < values_.size(); ++i)
    if (kCells[i].style == kind && !style.values_[i].empty()) values_[i] = style.values_[i];
  for (const auto& section : style.sections_) {
    if (section->kind->style != kind) continue;
    std::erase_if(sections_, [&](const auto& s) { return s->kind == section->kind; });
    sections_.push_back(section);
  }
}

double NumberOf(const StoredCells& cells, ColumnName column) {
  if (const auto number = ParseNumber(cells.Find(column))) return *number;
  return ParseNumber(column.info().otherwise).value_or(0);
}

// ---------------------------------------------------------------------------------------------------------- a drawing's

SheetResolver::SheetResolver(Drawing& drawing) : drawing_(drawing) {
  for (const std::uint32_t colour : kColours) colours_.push_back(FromNumber(colour));
  const pugi::xml_node document = drawing.package().Xml(drawing.package().MainPart()).root();
  for (const pugi::xml_node entry : document.child("Colors").children("ColorEntry")) {
    const int index = entry.attribute("IX").as_int(-1);
    const auto colour = FromHex(entry.attribute("RGB").value());
    if (index < 0 || index > 255 || !colour) continue;
    if (colours_.size() <= static_cast<size_t>(index)) colours_.resize(static_cast<size_t>(index) + 1);
    colours_[static_cast<size_t>(index)] = *colour;
  }
  int face = 0;
  for (const pugi::xml_node entry : document.child("FaceNames").children("FaceName")) {
    const pugi::xml_attribute name = entry.attribute("NameU");
    faces_[entry.attribute("ID").as_int(face++)] = name ? name.value() : entry.attribute("Name").value();
  }
  for (const pugi::xml_node sheet : document.child("StyleSheets").children("StyleSheet"))
    styleSheets_.emplace(sheet.attribute("ID").as_int(-1), ReadSheet(sheet.internal_object()));
  if (const auto first = styleSheets_.find(0); first != styleSheets_.end()) noStyle_.Overlay(first->second);
}

std::optional<Rgba> SheetResolver::Colour(std::string_view text) const {
  if (const auto hex = FromHex(text)) return hex;
  const auto index = ParseInteger(text);
  if (!index || *index < 0 || static_cast<size_t>(*index) >= colours_.size()) return std::nullopt;
  return colours_[static_cast<size_t>(*index)];
}

std::string SheetResolver::FaceName(int index) const {
  const auto face = faces_.find(index);
  return face == faces_.end() ? "" : face->second;
}

const DrawingShape* SheetResolver::BaseOf(const DrawingShape& shape) const {
  if (shape.base()) return static_cast<const DrawingShape*>(shape.base());
  const pugi::xml_node element(shape.element());
  const pugi::xml_attribute inner = element.attribute("MasterShape");
  for (const DrawingShape* around = &shape; around; around = around->parent()) {
    if (around->MasterId() < 0) continue;
    const DrawingMaster* const master = drawing_.FindMaster(around->MasterId());
    if (!master) return nullptr;
    const DrawingShape* const base = around == &shape ? master->TopShape() : inner ? master->FindShape(inner.as_int()) : nullptr;
    return base == &shape ? nullptr : base;
  }
  return nullptr;
}

const StoredSheet& SheetResolver::Stored(const Sheet& sheet) {
  const auto [place, isNew] = stored_.try_emplace(&sheet);
  if (isNew) place->second = ReadSheet(sheet.element());
  return place->second;
}

const ResolvedSheet& SheetResolver::Style(int id, StyleKind kind, int depth) {
  const auto known = styles_.find({id, kind});
  if (known != styles_.end()) return known->second;
  const auto sheet = styleSheets_.find(id);
  if (id == 0 || sheet == styleSheets_.end() || depth > kDeepest) return noStyle_;
  const StoredSheet& own = sheet->second;
  const auto parent = kind == StyleKind::Line ? own.lineStyle : kind == StyleKind::Fill ? own.fillStyle : own.textStyle;
  ResolvedSheet resolved = Style(parent.value_or(0), kind, depth + 1);
  resolved.Overlay(own);
  return styles_.emplace(std::pair(id, kind), std::move(resolved)).first->second;
}

const ResolvedSheet& SheetResolver::Base(const BaseKey& key) {
  const auto known = bases_.find(key);
  if (known != bases_.end()) return known->second;
  const auto [line, fill, text] = key.second;
  ResolvedSheet resolved = noStyle_;
  std::erase_if(resolved.sections_, [](const auto& section) { return section->kind->style == StyleKind::None; });
  resolved.OverlayStyle(Style(line, StyleKind::Line), StyleKind::Line);
  resolved.OverlayStyle(Style(fill, StyleKind::Fill), StyleKind::Fill);
  resolved.OverlayStyle(Style(text, StyleKind::Text), StyleKind::Text);
  resolved.styleSections_ = resolved.sections_;
  std::vector<const DrawingShape*> masters;  // the nearest first
  for (auto* shape = static_cast<const DrawingShape*>(key.first); shape && masters.size() < kDeepest; shape = BaseOf(*shape))
    masters.push_back(shape);
  for (auto master = masters.rbegin(); master != masters.rend(); ++master) resolved.Overlay(Stored(**master));
  return bases_.emplace(key, std::move(resolved)).first->second;
}

ResolvedSheet SheetResolver::Resolve(const DrawingShape& shape) {
  const StoredSheet own = ReadSheet(shape.element());
  std::optional<int> line = own.lineStyle, fill = own.fillStyle, text = own.textStyle;
  const DrawingShape* const base = BaseOf(shape);
  int depth = 0;
  for (const DrawingShape* at = base; at && ++depth < kDeepest && !(line && fill && text); at = BaseOf(*at)) {
    const StoredSheet& stored = Stored(*at);
    if (!line) line = stored.lineStyle;
    if (!fill) fill = stored.fillStyle;
    if (!text) text = stored.textStyle;
  }
  ResolvedSheet resolved = Base({base, {line.value_or(0), fill.value_or(0), text.value_or(0)}});
  // A master's layers are not the page's.
  resolved.values_[CellName("LayerMember").index()] = {};
  resolved.Overlay(own);
  return resolved;
}

ResolvedSheet SheetResolver::ResolvePage(const Sheet& page) {
  ResolvedSheet resolved = noStyle_;
  if (page.element()) resolved.Overlay(ReadSheet(page.element()));
  return resolved;
}

}  // namespace vardo::picture
