// A sheet's cells as they stand after inheritance: the shape's own, its master's, its style sheets', and the first style sheet's.
//   A value may still be "Themed". Texts are the drawing's: good until it is edited.
#pragma once

#include "picture/Look.h"
#include "picture/StoredSheet.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace vardo {
class Drawing;
class DrawingShape;
class Sheet;
}  // namespace vardo

namespace vardo::picture {

inline constexpr std::string_view kThemed = "Themed";

class ResolvedSheet {
 public:
  std::string_view Text(CellName cell) const { return values_[cell.index()]; }
  // 0 for what is no number and has no default that is one.
  double Number(CellName cell) const;
  bool IsSet(CellName cell) const { return Number(cell) != 0; }
  // None for a cell that nobody says anything of.
  std::optional<double> Find(CellName cell) const;
  const std::vector<std::shared_ptr<const StoredSection>>& sections() const { return sections_; }
  // The only one of that name; null when there is none.
  const StoredSection* Section(std::string_view name) const;
  // As the style sheets have it, without what shape and master say.
  const StoredSection* StyleSection(std::string_view name) const;

 private:
  friend class SheetResolver;
  void Overlay(const StoredSheet& sheet);
  void OverlayStyle(const ResolvedSheet& style, StyleKind kind);
  void OverlaySection(const StoredSection& section);

  std::array<std::string_view, std::size(kCells)> values_{};
  std::vector<std::shared_ptr<const StoredSection>> sections_, styleSections_;
};

// The column's default for what is no number.
double NumberOf(const StoredCells& cells, ColumnName column);

class SheetResolver {
 public:
  explicit SheetResolver(Drawing& drawing);

  ResolvedSheet Resolve(const DrawingShape& shape);
  ResolvedSheet ResolvePage(const Sheet& page);
  // The style sheet that says something of everything.
  const ResolvedSheet& NoStyle() const { return noStyle_; }
  // An index into the drawing's colours, or "#rrggbb"; none for anything else.
  std::optional<Rgba> Colour(std::string_view text) const;
  // The drawing's name for the font of that index; empty when it has none.
  std::string FaceName(int index) const;
  // What a shape of a master was made from in turn; null for nothing.
  const DrawingShape* BaseOf(const DrawingShape& shape) const;

 private:
  using Styles = std::tuple<int, int, int>;
  using BaseKey = std::pair<const Sheet*, Styles>;

  const StoredSheet& Stored(const Sheet& sheet);
  const ResolvedSheet& Style(int id, StyleKind kind, int depth = 0);
  const ResolvedSheet& Base(const BaseKey& key);

  Drawing& drawing_;
  ResolvedSheet noStyle_;
  std::unordered_map<int, StoredSheet> styleSheets_;
  std::map<std::pair<int, StyleKind>, ResolvedSheet> styles_;
  std::unordered_map<const Sheet*, StoredSheet> stored_;  // of masters' shapes
  std::map<BaseKey, ResolvedSheet> bases_;
  std::vector<Rgba> colours_;
  std::unordered_map<int, std::string> faces_;
};

}  // namespace vardo::picture
