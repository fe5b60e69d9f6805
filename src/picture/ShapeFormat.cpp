#include "picture/ShapeFormat.h"

#include "base/Numbers.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace vardo::picture {
namespace {

constexpr int kLikeThePage = 65534;
constexpr double kLeastContrast = 0.1666, kLightGround = 0.7292;

enum Variation { kVariesText = 2, kVariesLine = 4, kVariesFill = 8 };

int Whole(const ResolvedSheet& sheet, CellName cell) { return static_cast<int>(std::clamp(sheet.Number(cell), -1e6, 1e6)); }

Stroke::Cap CapOf(int cap) { return cap == 1 ? Stroke::Cap::Flat : cap == 2 ? Stroke::Cap::Square : Stroke::Cap::Round; }

template <class Entry>
const Entry* EntryAt(const std::vector<Entry>& entries, int number) {
  if (entries.empty() || number < 1) return nullptr;
  return &entries[std::min(static_cast<size_t>(number), entries.size()) - 1];
}

}  // namespace

Rgba WithOpacity(Rgba colour, double opacity) {
  colour.a = static_cast<std::uint8_t>(std::lround(colour.a * std::clamp(opacity, 0.0, 1.0)));
  return colour;
}

// What the page's theme says for one shape.
class FormatReader::Themed {
 public:
  Themed(const FormatReader& reader, const ResolvedSheet& shape, const ResolvedSheet& page, bool isOneDimensional)
      : shape_(shape), isOneDimensional_(isOneDimensional) {
    const auto of = [&](CellName cell) {
      const int own = Whole(shape, cell);
      return own == kLikeThePage ? Whole(page, cell) : own;
    };
    const auto find = [&](int number) -> const Theme* {
      if (number == 0) return nullptr;
      for (const Theme& theme : reader.themes_)
        if (theme.number == number) return &theme;
      missing_ = true;
      return nullptr;
    };
    colours_ = find(of("ColorSchemeIndex"));
    effects_ = find(of("EffectSchemeIndex"));
    connectors_ = find(of("ConnectorSchemeIndex"));
    fonts_ = find(of("FontSchemeIndex"));
    colourVariant_ = of("VariationColorIndex");
    styleVariant_ = of("VariationStyleIndex");
  }

  bool themeIsMissing() const { return missing_; }
  const Theme* colours() const { return colours_; }
  const Theme* fonts() const { return fonts_; }

  Rgba Base(CellName cell) const {
    const int wanted = Whole(shape_, cell);
    if (wanted == 8) return colours_->Colour("bkgnd");
    if (wanted >= 100 && wanted < 200 && !colours_->variantColours.empty()) {
      const auto last = static_cast<int>(colours_->variantColours.size()) - 1;
      const auto& variant = colours_->variantColours[static_cast<size_t>(std::clamp(colourVariant_, 0, last))];
      return variant[static_cast<size_t>(std::clamp(wanted - 100, 0, 6))];
    }
    constexpr const char* kSlots[] = {"dk1", "lt1", "accent1", "accent2", "accent3", "accent4", "accent5", "accent6"};
    if (wanted == 200) return colours_->Colour("dk1");
    if (wanted > 200) return colours_->Colour(kSlots[std::clamp(wanted - 199, 2, 7)]);
    return colours_->Colour(kSlots[std::clamp(wanted, 0, 7)]);
  }

  const ThemeFill* Fill() const {
    return formats() ? EntryAt(formats()->fills, EntryOf("QuickStyleFillMatrix", &ThemeVariant::fill)) : nullptr;
  }
  const ThemeLine* Line() const {
    return formats() ? EntryAt(formats()->lines, EntryOf("QuickStyleLineMatrix", &ThemeVariant::line)) : nullptr;
  }
  const ThemeShadow* Shadow() const {
    const auto* entry =
        formats() ? EntryAt(formats()->shadows, EntryOf("QuickStyleEffectsMatrix", &ThemeVariant::effect)) : nullptr;
    return entry && *entry ? &**entry : nullptr;
  }
  const ThemeColour* Text() const {
    return formats() ? EntryAt(formats()->fontColours, EntryOf("QuickStyleFontMatrix", &ThemeVariant::font)) : nullptr;
  }

 private:
  const ThemeFormats* formats() const {
    if (!colours_) return nullptr;
    if (isOneDimensional_) return connectors_ ? &connectors_->connectors : nullptr;
    return effects_ ? &effects_->shapes : nullptr;
  }
  int EntryOf(CellName cell, int ThemeVariant::*part) const {
    const int wanted = Whole(shape_, cell);
    const Theme* const theme = isOneDimensional_ ? connectors_ : effects_;
    if (wanted < 100 || theme->variants.empty()) return wanted >= 100 ? 1 : wanted;
    const auto last = static_cast<int>(theme->variants.size()) - 1;
    const auto& variant = theme->variants[static_cast<size_t>(std::clamp(styleVariant_, 0, last))];
    return variant[static_cast<size_t>(std::clamp(wanted - 100, 0, 3))].*part;
  }

  const ResolvedSheet& shape_;
  const bool isOneDimensional_;
  const Theme *colours_ = nullptr, *effects_ = nullptr, *connectors_ = nullptr, *fonts_ = nullptr;
  int colourVariant_ = 0, styleVariant_ = 0;
  bool missing_ = false;
};

std::optional<Rgba> FormatReader::Colour(std::string_view value, double transparency) const {
  const auto colour = resolver_.Colour(value);
  return colour ? std::optional(WithOpacity(*colour, 1 - transparency)) : std::nullopt;
}

std::string FormatReader::Face(std::string_view value) const {
  const auto index = ParseInteger(value);
  return index ? resolver_.FaceName(*index) : std::string(value);
}

namespace {

// The colour on that ground, or a contrasting one where it can hardly be told apart.
Rgba Distinct(Rgba colour, Rgba ground, const Theme& theme) {
  if (std::abs(Luminance(ground) - Luminance(colour)) >= kLeastContrast) return colour;
  Rgba light = theme.Colour("lt1"), dark = theme.Colour("dk1");
  if (Luminance(light) < Luminance(dark)) std::swap(light, dark);
  return Luminance(ground) <= kLightGround ? light : dark;
}

std::vector<GradientStop> StopsIn(const ResolvedSheet& shape, const FormatReader& reader) {
  std::vector<GradientStop> stops;
  const StoredSection* const section = shape.Section("FillGradient");
  if (!section) return stops;
  for (const StoredRow& row : section->rows)
    if (const auto colour = reader.Colour(row.cells.Find("GradientStopColor"), NumberOf(row.cells, "GradientStopColorTrans")))
      stops.push_back({std::clamp(NumberOf(row.cells, "GradientStopPosition"), 0.0, 1.0), *colour});
  std::stable_sort(stops.begin(), stops.end(), [](const auto& a, const auto& b) { return a.at < b.at; });
  return stops;
}

}  // namespace

ShapeFormat FormatReader::Read(const ResolvedSheet& shape, const ResolvedSheet& page, bool isOneDimensional) const {
  const Themed themed(*this, shape, page, isOneDimensional);
  const ResolvedSheet& plain = resolver_.NoStyle();
  const ThemeFill* const themeFill = themed.Fill();
  const ThemeLine* const themeLine = themed.Line();
  bool askedTheme = false;
  const auto isThemed = [&](CellName cell) {
    const bool is = shape.Text(cell) == kThemed;
    askedTheme = askedTheme || is;
    return is;
  };
  // What the shape says, or the theme; without one what the first style sheet says.
  const auto number = [&](CellName cell, auto fromTheme) {
    if (!isThemed(cell)) return shape.Number(cell);
    const std::optional<double> value = fromTheme();
    return value ? *value : plain.Number(cell);
  };
  const auto none = [] { return std::optional<double>(); };
  const auto ofLine = [&](auto member) {
    return [&, member] { return themeLine ? std::optional<double>(themeLine->*member) : std::nullopt; };
  };
  const auto ofFill = [&](double value) { return [&, value] { return themeFill ? std::optional(value) : std::nullopt; }; };
  const auto colour = [&](CellName cell, CellName transparency, const ThemeColour* entry, CellName base) {
    const double clear = number(transparency, none);
    if (isThemed(cell) && entry) return WithOpacity(themed.colours()->Resolve(*entry, themed.Base(base)), 1 - clear);
    const auto own = Colour(shape.Text(cell), clear);
    return own ? *own : Colour(plain.Text(cell), clear).value_or(Colour(cell.info().otherwise, clear).value_or(Rgba{}));
  };

  ShapeFormat format;
  format.lineWeight = std::clamp(number("LineWeight", ofLine(&ThemeLine::weight)), 0.0, 100.0);
  format.linePattern = static_cast<int>(number("LinePattern", ofLine(&ThemeLine::pattern)));
  format.rounding = number("Rounding", ofLine(&ThemeLine::rounding));
  format.beginArrow = static_cast<int>(number("BeginArrow", ofLine(&ThemeLine::beginArrow)));
  format.endArrow = static_cast<int>(number("EndArrow", ofLine(&ThemeLine::endArrow)));
  format.beginSize = static_cast<int>(number("BeginArrowSize", ofLine(&ThemeLine::beginSize)));
  format.endSize = static_cast<int>(number("EndArrowSize", ofLine(&ThemeLine::endSize)));
  format.lineCap = isThemed("LineCap") && themeLine ? themeLine->cap : CapOf(static_cast<int>(number("LineCap", none)));
  format.lineColour = colour("LineColor", "LineColorTrans", themeLine ? &themeLine->fill.colour : nullptr, "QuickStyleLineColor");
  format.lineGradient = shape.IsSet("LineGradientEnabled");

  format.fillPattern = static_cast<int>(number("FillPattern", ofFill(themeFill && themeFill->kind == ThemeFill::Kind::None ? 0
                                                                     : themeFill ? themeFill->pattern
                                                                                 : 1)));
  format.fillColour = colour("FillForegnd", "FillForegndTrans", themeFill ? &themeFill->colour : nullptr, "QuickStyleFillColor");
  format.fillGround = colour("FillBkgnd", "FillBkgndTrans", themeFill ? &themeFill->colour : nullptr, "QuickStyleFillColor");
  const bool themeGradient = themeFill && themeFill->stops.size() > 1;
  format.gradient = number("FillGradientEnabled", ofFill(themeGradient)) != 0;
  format.gradientDirection =
      static_cast<int>(number("FillGradientDir", ofFill(themeGradient && themeFill->kind == ThemeFill::Kind::Radial ? 3 : 0)));
  format.gradientAngle = number("FillGradientAngle", ofFill(themeFill ? themeFill->angle : 0));
  format.gradientTurns = number("RotateGradientWithShape", ofFill(1)) != 0;
  format.stops = StopsIn(shape, *this);
  if (format.gradient && themeGradient && isThemed("FillGradientEnabled") && format.stops.size() < 2) {
    format.stops.clear();
    const Rgba base = isThemed("FillForegnd") ? themed.Base("QuickStyleFillColor") : format.fillColour;
    for (const ThemeFill::Stop& stop : themeFill->stops)
      format.stops.push_back({stop.at, themed.colours()->Resolve(stop.colour, base)});
  }

  const ThemeShadow* const themeShadow = isThemed("ShdwPattern") ? themed.Shadow() : nullptr;
  const int hides = Whole(shape, "ShapeShdwShow");
  format.shadow = hides != 2 && (themeShadow || number("ShdwPattern", none) != 0);
  format.shadowColour =
      colour("ShdwForegnd", "ShdwForegndTrans", themeShadow ? &themeShadow->colour : nullptr, "QuickStyleShadowColor");
  format.shadowOffset = {number("ShapeShdwOffsetX", none), number("ShapeShdwOffsetY", none)};
  if (themeShadow && isThemed("ShapeShdwOffsetX"))
    format.shadowOffset = Point{std::cos(themeShadow->direction), -std::sin(themeShadow->direction)} * themeShadow->distance;
  if (format.shadowOffset == Point{} && Whole(shape, "ShapeShdwType") == 0 && !themeShadow)
    format.shadowOffset = {page.Number("ShdwOffsetX"), page.Number("ShdwOffsetY")};

  format.themedText = Colour("0").value_or(Rgba{});
  if (const StoredSection* characters = plain.Section("Character"); characters && !characters->rows.empty())
    format.themedText = Colour(characters->rows[0].cells.Find("Color")).value_or(format.themedText);
  if (const ThemeColour* text = themed.Text()) {
    format.themedText = themed.colours()->Resolve(*text, themed.Base("QuickStyleFontColor"));
    const int varies = Whole(shape, "QuickStyleVariation");
    const Rgba paper = themed.colours()->Colour("bkgnd");
    const bool filled = format.fillPattern != 0;
    if ((varies & kVariesFill) && isThemed("FillForegnd"))
      format.fillColour = Distinct(format.fillColour, paper, *themed.colours());
    if ((varies & kVariesLine) && isThemed("LineColor"))
      format.lineColour = Distinct(format.lineColour, paper, *themed.colours());
    if (varies & kVariesText)
      format.themedText = Distinct(format.themedText, filled ? format.fillColour : paper, *themed.colours());
  }
  if (themed.fonts()) format.themedFont = themed.fonts()->minorFont;

  if (askedTheme && themed.themeIsMissing())
    format.notes.emplace_back("Its theme is not in the file, so its themed colours are plain.");
  const struct {
    CellName cell;
    const char* note;
  } effects[] = {{"GlowSize", "Its glow is not painted."},
                 {"ReflectionSize", "Its reflection is not painted."},
                 {"SoftEdgesSize", "Its soft edges are painted sharp."},
                 {"BevelTopType", "Its bevel is painted flat."},
                 {"SketchEnabled", "Its sketched lines are painted straight."}};
  for (const auto& [cell, note] : effects)
    if (shape.IsSet(cell)) format.notes.emplace_back(note);
  if (format.lineGradient) format.notes.emplace_back("The gradient of its line is painted in one colour.");
  return format;
}

}  // namespace vardo::picture
