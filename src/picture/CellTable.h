// The cells and columns that pictures are made from. Their names are checked when the program is compiled: sheet.Number("PinX").
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace vardo::picture {

// Which of a shape's three style sheets a cell is inherited from.
enum class StyleKind : std::uint8_t { None, Line, Fill, Text };

struct CellInfo {
  std::string_view name;
  StyleKind style = StyleKind::None;
  std::string_view otherwise = "0";  // where not even the first style sheet says anything
};

inline constexpr CellInfo kCells[] = {
    {"PinX"},
    {"PinY"},
    {"Width"},
    {"Height"},
    {"LocPinX"},
    {"LocPinY"},
    {"Angle"},
    {"FlipX"},
    {"FlipY"},
    {"BeginX", StyleKind::None, ""},
    {"LineWeight", StyleKind::Line, "0.01"},
    {"LineColor", StyleKind::Line},
    {"LinePattern", StyleKind::Line, "1"},
    {"LineCap", StyleKind::Line},
    {"LineColorTrans", StyleKind::Line},
    {"Rounding", StyleKind::Line},
    {"CompoundType", StyleKind::Line},
    {"BeginArrow", StyleKind::Line},
    {"EndArrow", StyleKind::Line},
    {"BeginArrowSize", StyleKind::Line, "2"},
    {"EndArrowSize", StyleKind::Line, "2"},
    {"LineGradientEnabled", StyleKind::Line},
    {"FillForegnd", StyleKind::Fill, "1"},
    {"FillBkgnd", StyleKind::Fill, "1"},
    {"FillPattern", StyleKind::Fill, "1"},
    {"FillForegndTrans", StyleKind::Fill},
    {"FillBkgndTrans", StyleKind::Fill},
    {"FillGradientEnabled", StyleKind::Fill},
    {"FillGradientDir", StyleKind::Fill},
    {"FillGradientAngle", StyleKind::Fill},
    {"RotateGradientWithShape", StyleKind::Fill, "1"},
    {"UseGroupGradient", StyleKind::Fill},
    {"ShdwForegnd", StyleKind::Fill},
    {"ShdwForegndTrans", StyleKind::Fill},
    {"ShdwPattern", StyleKind::Fill},
    {"ShapeShdwType", StyleKind::Fill},
    {"ShapeShdwOffsetX", StyleKind::Fill},
    {"ShapeShdwOffsetY", StyleKind::Fill},
    {"ShapeShdwShow", StyleKind::Fill},
    {"ShapeShdwBlur", StyleKind::Fill},
    {"GlowSize", StyleKind::Fill},
    {"ReflectionSize", StyleKind::Fill},
    {"SoftEdgesSize", StyleKind::Fill},
    {"BevelTopType", StyleKind::Fill},
    {"SketchEnabled", StyleKind::Fill},
    {"TxtPinX", StyleKind::None, ""},
    {"TxtPinY", StyleKind::None, ""},
    {"TxtWidth", StyleKind::None, ""},
    {"TxtHeight", StyleKind::None, ""},
    {"TxtLocPinX", StyleKind::None, ""},
    {"TxtLocPinY", StyleKind::None, ""},
    {"TxtAngle"},
    {"TxtWidth formula", StyleKind::None, ""},
    {"TxtHeight formula", StyleKind::None, ""},
    {"LeftMargin", StyleKind::Text, "0.0556"},
    {"RightMargin", StyleKind::Text, "0.0556"},
    {"TopMargin", StyleKind::Text, "0.0556"},
    {"BottomMargin", StyleKind::Text, "0.0556"},
    {"VerticalAlign", StyleKind::Text, "1"},
    {"TextBkgnd", StyleKind::Text},
    {"TextBkgndTrans", StyleKind::Text},
    {"TextDirection", StyleKind::Text},
    {"DefaultTabStop", StyleKind::Text, "0.5"},
    {"HideText"},
    {"NonPrinting"},
    {"LayerMember", StyleKind::None, ""},
    {"DisplayMode", StyleKind::None, "1"},
    {"ImgOffsetX", StyleKind::None, ""},
    {"ImgOffsetY", StyleKind::None, ""},
    {"ImgWidth", StyleKind::None, ""},
    {"ImgHeight", StyleKind::None, ""},
    {"Transparency"},
    {"QuickStyleLineColor", StyleKind::Line, "100"},
    {"QuickStyleFillColor", StyleKind::Fill, "100"},
    {"QuickStyleShadowColor", StyleKind::Fill, "100"},
    {"QuickStyleFontColor", StyleKind::Text, "100"},
    {"QuickStyleLineMatrix", StyleKind::Line, "100"},
    {"QuickStyleFillMatrix", StyleKind::Fill, "100"},
    {"QuickStyleEffectsMatrix", StyleKind::Fill, "100"},
    {"QuickStyleFontMatrix", StyleKind::Text, "100"},
    {"QuickStyleVariation", StyleKind::Fill},
    {"ThemeIndex", StyleKind::Fill},
    {"ColorSchemeIndex", StyleKind::Fill},
    {"EffectSchemeIndex", StyleKind::Fill},
    {"ConnectorSchemeIndex", StyleKind::Line},
    {"FontSchemeIndex", StyleKind::Text},
    {"VariationColorIndex", StyleKind::Fill},
    {"VariationStyleIndex", StyleKind::Fill},
    {"PageWidth", StyleKind::None, "8.5"},
    {"PageHeight", StyleKind::None, "11"},
    {"PageScale", StyleKind::None, "1"},
    {"DrawingScale", StyleKind::None, "1"},
    {"ShdwOffsetX"},
    {"ShdwOffsetY"},
};

// Of rows, and of sections as a whole.
inline constexpr CellInfo kColumns[] = {
    {"X"},
    {"Y"},
    {"A"},
    {"B"},
    {"C"},
    {"D"},
    {"E"},
    {"NoFill"},
    {"NoLine"},
    {"NoShow"},
    {"Font", StyleKind::None, ""},
    {"Color"},
    {"Style"},
    {"Case"},
    {"Pos"},
    {"FontScale", StyleKind::None, "1"},
    {"Size", StyleKind::None, "0.1111"},
    {"Strikethru"},
    {"Letterspace"},
    {"ColorTrans"},
    {"IndFirst"},
    {"IndLeft"},
    {"IndRight"},
    {"SpLine", StyleKind::None, "-1.2"},
    {"SpBefore"},
    {"SpAfter"},
    {"HorzAlign", StyleKind::None, "1"},
    {"Bullet"},
    {"BulletStr", StyleKind::None, ""},
    {"GradientStopColor"},
    {"GradientStopColorTrans"},
    {"GradientStopPosition"},
    {"Visible", StyleKind::None, "1"},
    {"Print", StyleKind::None, "1"},
    {"Position0", StyleKind::None, ""},
    {"Position1", StyleKind::None, ""},
    {"Position2", StyleKind::None, ""},
    {"Position3", StyleKind::None, ""},
    {"Position4", StyleKind::None, ""},
    {"Position5", StyleKind::None, ""},
};

struct SectionKind {
  std::string_view name;
  StyleKind style;
};
inline constexpr SectionKind kSections[] = {
    {"Geometry", StyleKind::None}, {"Character", StyleKind::Text},    {"Paragraph", StyleKind::Text},
    {"Tabs", StyleKind::Text},     {"FillGradient", StyleKind::Fill}, {"LineGradient", StyleKind::Line},
    {"Layer", StyleKind::None},
};

// A name of one of the tables; any other does not compile.
template <const auto& table>
class NameIn {
 public:
  consteval NameIn(const char* name) : index_(Find(name)) {}  // NOLINT(google-explicit-constructor)
  constexpr explicit NameIn(size_t index) : index_(index) {}
  constexpr size_t index() const { return index_; }
  constexpr const CellInfo& info() const { return table[index_]; }

 private:
  static consteval size_t Find(std::string_view name) {
    for (size_t i = 0; i < std::size(table); ++i)
      if (table[i].name == name) return i;
    throw "no such name in the table";
  }
  size_t index_;
};
using CellName = NameIn<kCells>;
using ColumnName = NameIn<kColumns>;

}  // namespace vardo::picture
