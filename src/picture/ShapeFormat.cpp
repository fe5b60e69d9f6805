#include "picture/ShapeFormat.h"

#include "base/Numbers.h"

#include <algorithm>
#include <cmath>

namespace vardo::picture {
namespace {

constexpr int kLikeThePage = 65534;
constexpr double kHeaviestLine = 100;  // inches
constexpr int kVariantColour = 100, kFixedVariantColour = 200;
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
    if (wanted >= kVariantColour && !colours_->variantColours.empty()) {
      const auto last = static_cast<int>(colours_->variantColours.size()) - 1;
      const auto& [isOfOneTone, colours] = colours_->variantColours[static_cast<size_t>(std::clamp(colourVariant_, 0, last))];
      const bool isFixed = wanted >= kFixedVariantColour;
      const int colour = isFixed ? wanted - kFixedVariantColour : isOfOneTone ? 0 : wanted - kVariantColour;
      return colours[static_cast<size_t>(std::clamp(colour, 0, 6))];
    }
    constexpr const char* kSlots[] = {"dk1", "lt1", "accent1", "accent2", "accent3", "accent4", "accent5", "accent6"};
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

bool IsDistinct(Rgba colour, Rgba ground) { return std::abs(Luminance(ground) - Luminance(colour)) >= kLeastContrast; }

// The colour on that ground, or a contrasting one where it can hardly be told apart.
Rgba Distinct(Rgba colour, Rgba ground, const Theme& theme) {
  if (IsDistinct(colour, ground)) return colour;
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

// One shape's cells read into its format.
class FormatReader::Reading {
 public:
  Reading(const FormatReader& reader, const ResolvedSheet& shape, const ResolvedSheet& page, bool isOneDimensional)
      : reader_(reader), shape_(shape), page_(page), themed_(reader, shape, page, isOneDimensional) {}

  ShapeFormat Read() {
    ReadLine();
    ReadFill();
    ReadGradient();
    ReadShadow();
    ReadText();
    Vary();
    AddNotes();
    return std::move(format_);
  }

 private:
  bool IsThemed(CellName cell) {
    const bool is = shape_.Text(cell) == kThemed;
    askedTheme_ = askedTheme_ || is;
    return is;
  }
  // What the shape says, or the theme; without one what the first style sheet says.
  double Number(CellName cell, std::optional<double> fromTheme = {}) {
    return IsThemed(cell) ? fromTheme.value_or(reader_.resolver_.NoStyle().Number(cell)) : shape_.Number(cell);
  }
  int Whole(CellName cell, std::optional<double> fromTheme = {}) {
    return static_cast<int>(std::clamp(Number(cell, fromTheme), -1e6, 1e6));
  }
  Rgba Colour(CellName cell, CellName transparency, const ThemeColour* fromTheme, CellName base) {
    const double clear = Number(transparency);
    if (IsThemed(cell) && fromTheme) return WithOpacity(themed_.colours()->Resolve(*fromTheme, themed_.Base(base)), 1 - clear);
    for (const std::string_view text : {shape_.Text(cell), reader_.resolver_.NoStyle().Text(cell), cell.info().otherwise})
      if (const auto colour = reader_.Colour(text, clear)) return *colour;
    return {};
  }

  void ReadLine() {
    const ThemeLine* const line = themed_.Line();
    const auto of = [&](auto ThemeLine::*member) { return line ? std::optional<double>(line->*member) : std::nullopt; };
    format_.lineWeight = std::clamp(Number("LineWeight", of(&ThemeLine::weight)), 0.0, kHeaviestLine);
    format_.linePattern = Whole("LinePattern", of(&ThemeLine::pattern));
    format_.rounding = Number("Rounding", of(&ThemeLine::rounding));
    format_.beginArrow = Whole("BeginArrow", of(&ThemeLine::beginArrow));
    format_.endArrow = Whole("EndArrow", of(&ThemeLine::endArrow));
    format_.beginSize = Whole("BeginArrowSize", of(&ThemeLine::beginSize));
    format_.endSize = Whole("EndArrowSize", of(&ThemeLine::endSize));
    format_.lineCap = IsThemed("LineCap") && line ? line->cap : CapOf(Whole("LineCap"));
    format_.lineColour = Colour("LineColor", "LineColorTrans", line ? &line->fill.colour : nullptr, "QuickStyleLineColor");
  }

  void ReadFill() {
    const ThemeFill* const fill = themed_.Fill();
    const ThemeColour* const colour = fill ? &fill->colour : nullptr;
    const int pattern = !fill || fill->kind == ThemeFill::Kind::None ? 0 : fill->pattern;
    format_.fillPattern = Whole("FillPattern", fill ? std::optional<double>(pattern) : std::nullopt);
    format_.fillColour = Colour("FillForegnd", "FillForegndTrans", colour, "QuickStyleFillColor");
    format_.fillGround = Colour("FillBkgnd", "FillBkgndTrans", colour, "QuickStyleFillColor");
  }

  void ReadGradient() {
    constexpr double kFromTheMiddle = 3;
    const ThemeFill* const fill = themed_.Fill();
    const bool isGradient = fill && fill->stops.size() > 1;
    const auto of = [&](double value) { return fill ? std::optional(value) : std::nullopt; };
    format_.gradient = Number("FillGradientEnabled", of(isGradient)) != 0;
    format_.gradientDirection =
        Whole("FillGradientDir", of(isGradient && fill->kind == ThemeFill::Kind::Radial ? kFromTheMiddle : 0));
    format_.gradientAngle = Number("FillGradientAngle", of(fill ? fill->angle : 0));
    format_.gradientTurns = Number("RotateGradientWithShape", of(1)) != 0;
    format_.stops = StopsIn(shape_, reader_);
    if (!format_.gradient || !isGradient || !IsThemed("FillGradientEnabled") || format_.stops.size() > 1) return;
    format_.stops.clear();
    const Rgba base = IsThemed("FillForegnd") ? themed_.Base("QuickStyleFillColor") : format_.fillColour;
    for (const ThemeFill::Stop& stop : fill->stops)
      format_.stops.push_back({stop.at, themed_.colours()->Resolve(stop.colour, base)});
  }

  void ReadShadow() {
    constexpr int kHidden = 2;
    const ThemeShadow* const shadow = IsThemed("ShdwPattern") ? themed_.Shadow() : nullptr;
    format_.shadow = Whole("ShapeShdwShow") != kHidden && (shadow || Number("ShdwPattern") != 0);
    format_.shadowColour = Colour("ShdwForegnd", "ShdwForegndTrans", shadow ? &shadow->colour : nullptr, "QuickStyleShadowColor");
    if (shadow && IsThemed("ShapeShdwOffsetX"))
      format_.shadowOffset = Point{std::cos(shadow->direction), -std::sin(shadow->direction)} * shadow->distance;
    else
      format_.shadowOffset = {Number("ShapeShdwOffsetX"), Number("ShapeShdwOffsetY")};
    // The page's own where the shape has none.
    if (format_.shadowOffset == Point{} && Whole("ShapeShdwType") == 0 && !shadow)
      format_.shadowOffset = {page_.Number("ShdwOffsetX"), page_.Number("ShdwOffsetY")};
  }

  void ReadText() {
    if (themed_.fonts()) format_.themedFont = themed_.fonts()->minorFont;
    if (const ThemeColour* text = themed_.Text()) {
      format_.themedText = themed_.colours()->Resolve(*text, themed_.Base("QuickStyleFontColor"));
      return;
    }
    const StoredSection* const characters = reader_.resolver_.NoStyle().Section("Character");
    const auto plain =
        characters && !characters->rows.empty() ? reader_.Colour(characters->rows[0].cells.Find("Color")) : std::nullopt;
    format_.themedText = plain.value_or(Rgba{});
  }

  // Colours that could hardly be told from what is behind them.
  void Vary() {
    const int varies = picture::Whole(shape_, "QuickStyleVariation");
    if (varies == 0 || !themed_.colours()) return;
    const Theme& theme = *themed_.colours();
    const Rgba paper = theme.Colour("bkgnd");
    if ((varies & kVariesFill) && IsThemed("FillForegnd")) format_.fillColour = Distinct(format_.fillColour, paper, theme);
    if ((varies & kVariesLine) && IsThemed("LineColor")) format_.lineColour = Distinct(format_.lineColour, paper, theme);
    if (!(varies & kVariesText)) return;
    const bool isFilled = format_.fillPattern != 0;
    const Rgba ground = isFilled ? format_.fillColour : paper;
    // A text that has no fill behind it takes the colour that the fill would have.
    if (!isFilled && !IsDistinct(format_.themedText, ground)) format_.themedText = themed_.Base("QuickStyleFillColor");
    format_.themedText = Distinct(format_.themedText, ground, theme);
  }

  void AddNotes() {
    constexpr struct {
      CellName cell;
      const char* note;
    } kNotPainted[] = {{"GlowSize", "Its glow is not painted."},
                       {"ReflectionSize", "Its reflection is not painted."},
                       {"SoftEdgesSize", "Its soft edges are painted sharp."},
                       {"BevelTopType", "Its bevel is painted flat."},
                       {"SketchEnabled", "Its sketched lines are painted straight."},
                       {"LineGradientEnabled", "The gradient of its line is painted in one colour."}};
    for (const auto& [cell, note] : kNotPainted)
      if (shape_.IsSet(cell)) format_.notes.emplace_back(note);
    if (askedTheme_ && themed_.themeIsMissing())
      format_.notes.emplace_back("Its theme is not in the file, so its themed colours are plain.");
  }

  const FormatReader& reader_;
  const ResolvedSheet &shape_, &page_;
  const Themed themed_;
  bool askedTheme_ = false;
  ShapeFormat format_;
};

ShapeFormat FormatReader::Read(const ResolvedSheet& shape, const ResolvedSheet& page, bool isOneDimensional) const {
  return Reading(*this, shape, page, isOneDimensional).Read();
}

}  // namespace vardo::picture
