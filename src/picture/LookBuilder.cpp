#include "picture/LookBuilder.h"

#include "picture/ArrowHeads.h"
#include "picture/GeometryReader.h"
#include "picture/LinePatterns.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vardo::picture {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kUserPattern = 254;

Stroke StrokeOf(const ShapeFormat& format) {
  return {format.lineColour, format.lineWeight, format.lineCap, DashesOf(format.linePattern, format.lineWeight)};
}

// ---------------------------------------------------------------------------------------------------------------- fills

Point InBox(const Box& box, double x, double y) { return {box.left + x * box.width(), box.bottom + y * box.height()}; }

Fill Linear(const Box& box, double angle, std::vector<GradientStop> stops) {
  const Point way{std::cos(angle), std::sin(angle)};
  const double reach = (std::abs(way.x) * box.width() + std::abs(way.y) * box.height()) / 2;
  return {.kind = Fill::Kind::Linear,
          .colour = stops.front().colour,
          .from = box.middle() - way * reach,
          .to = box.middle() + way * reach,
          .stops = std::move(stops)};
}

Fill Radial(const Box& box, Point focus, std::vector<GradientStop> stops) {
  double radius = 0;
  for (const Point corner : {InBox(box, 0, 0), InBox(box, 1, 0), InBox(box, 1, 1), InBox(box, 0, 1)})
    radius = std::max(radius, Distance(focus, corner));
  return {.kind = Fill::Kind::Radial,
          .colour = stops.front().colour,
          .from = focus,
          .to = focus + Point{radius, 0},
          .stops = std::move(stops)};
}

// Four linear gradients that meet at the focus, each within the triangle to one side of the box.
void AppendRectangular(std::vector<Operation>& operations, const Outline& outline, const Box& box, Point focus,
                       const std::vector<GradientStop>& stops) {
  operations.emplace_back(FillPath{outline, {.colour = stops.back().colour}, {}});
  const Point corners[] = {InBox(box, 0, 0), InBox(box, 1, 0), InBox(box, 1, 1), InBox(box, 0, 1)};
  for (size_t side = 0; side < 4; ++side) {
    const Point a = corners[side], b = corners[(side + 1) % 4];
    const Point foot = side % 2 == 0 ? Point{focus.x, a.y} : Point{a.x, focus.y};
    if (Distance(focus, foot) < 1e-9) continue;
    FillPath part{
        outline, {.kind = Fill::Kind::Linear, .colour = stops.front().colour, .from = focus, .to = foot, .stops = stops}, {}};
    part.clip.Move(focus);
    part.clip.Line(a);
    part.clip.Line(b);
    part.clip.Close();
    operations.emplace_back(std::move(part));
  }
}

struct Focus {
  double x, y;
};
// Of the directions 1 to 7, radial, and 8 to 13, rectangular.
constexpr Focus kRadialFocus[] = {{1, 0}, {0, 0}, {.5, .5}, {.5, 0}, {.5, 1}, {1, 1}, {0, 1}};
constexpr Focus kRectangularFocus[] = {{1, 0}, {0, 0}, {.5, .5}, {1, 1}, {0, 1}, {.5, .5}};

void AppendGradient(std::vector<Operation>& operations, const Outline& outline, const ShapeToDraw& shape) {
  const ShapeFormat& format = shape.format;
  const Box box = outline.Bounds();
  const int direction = format.gradientDirection;
  const auto in = [&](Focus focus) { return InBox(box, focus.x, focus.y); };
  if (direction >= 1 && direction <= 7)
    operations.emplace_back(FillPath{outline, Radial(box, in(kRadialFocus[direction - 1]), format.stops), {}});
  else if (direction >= 8 && direction <= 13)
    AppendRectangular(operations, outline, box, in(kRectangularFocus[direction - 8]), format.stops);
  else {
    const double turn = format.gradientTurns ? 0 : std::atan2(shape.toPage.b, shape.toPage.a);
    operations.emplace_back(FillPath{outline, Linear(box, format.gradientAngle - turn, format.stops), {}});
  }
}

// The patterns 25 to 40 are gradients between the two colours: these are linear, the others lead outwards from a corner or the
// middle.
constexpr struct {
  double angle;
  bool isAxial;  // from the middle to both sides
} kLinearPatterns[] = {{0, false}, {0, true}, {kPi, false}, {-kPi / 2, false}, {kPi / 2, true}, {kPi / 2, false}};
constexpr Focus kPatternFocus[] = {{0, 1}, {1, 1}, {0, 0}, {1, 0}, {.5, .5}};
constexpr int kFirstLinear = kLastHatch + 1, kFirstRectangular = 31, kFirstRadial = 36;

void AppendGradientPattern(std::vector<Operation>& operations, const Outline& outline, const ShapeFormat& format) {
  const Box box = outline.Bounds();
  const int pattern = format.fillPattern;
  if (pattern < kFirstRectangular) {
    const auto& [angle, isAxial] = kLinearPatterns[pattern - kFirstLinear];
    std::vector<GradientStop> stops{{0, format.fillColour}, {1, format.fillGround}};
    if (isAxial) stops = {{0, format.fillGround}, {0.5, format.fillColour}, {1, format.fillGround}};
    operations.emplace_back(FillPath{outline, Linear(box, angle, std::move(stops)), {}});
    return;
  }
  const bool isRadial = pattern >= kFirstRadial;
  const Focus focus = kPatternFocus[pattern - (isRadial ? kFirstRadial : kFirstRectangular)];
  const std::vector<GradientStop> outwards{{0, format.fillColour}, {1, format.fillGround}};
  if (isRadial)
    operations.emplace_back(FillPath{outline, Radial(box, InBox(box, focus.x, focus.y), outwards), {}});
  else
    AppendRectangular(operations, outline, box, InBox(box, focus.x, focus.y), outwards);
}

void AppendFill(std::vector<Operation>& operations, const Outline& outline, const ShapeToDraw& shape,
                std::vector<std::string>& notes) {
  const ShapeFormat& format = shape.format;
  const int pattern = format.fillPattern;
  if (pattern == kNoFill) return;
  if (format.gradient && format.stops.size() > 1) return AppendGradient(operations, outline, shape);
  if (pattern > kLastHatch && pattern <= kLastGradientPattern) return AppendGradientPattern(operations, outline, format);
  Fill fill{.colour = format.fillColour};
  if (pattern > kSolidFill && pattern <= kLastHatch) {
    fill.kind = Fill::Kind::Hatch;
    fill.ground = format.fillGround;
    fill.hatch = static_cast<std::uint8_t>(pattern);
  } else if (pattern != kSolidFill) {
    notes.emplace_back("The pattern of its fill is painted in one colour.");
  }
  operations.emplace_back(FillPath{outline, std::move(fill), {}});
}

// -------------------------------------------------------------------------------------------------------------- the look

class Builder {
 public:
  Builder(const ShapeToDraw& shape, std::vector<std::string>& notes) : shape_(shape), notes_(notes) {}

  Look Build() {
    ReadPaths();
    Look look;
    if (shape_.format.shadow) AppendShadow(look.operations);
    if (!filled_.empty()) AppendFill(look.operations, filled_, shape_, notes_);
    AppendLines(look.operations);
    MeasureLook(look, shape_.scale);
    return look;
  }

 private:
  void ReadPaths() {
    for (const auto& section : shape_.sheet.sections()) {
      if (section->kind->name != "Geometry") continue;
      ordered_.push_back(section.get());
    }
    std::sort(ordered_.begin(), ordered_.end(), [](const auto* a, const auto* b) { return a->ix < b->ix; });
    for (const StoredSection* section : ordered_) {
      Path path = ReadGeometry(*section, shape_.width, shape_.height, notes_);
      if (!path.shown || path.outline.empty()) continue;
      if (path.isInfinite) path.outline = Endless(path.outline);
      if (shape_.format.rounding > 0) path.outline = WithRoundedCorners(path.outline, shape_.format.rounding);
      for (const Outline& subpath : Subpaths(path.outline)) {
        if (path.filled) filled_.Append(subpath);
        if (path.stroked) stroked_.push_back(subpath);
      }
    }
  }

  // Long enough to cross every page; painters leave out what is beyond.
  static Outline Endless(const Outline& line) {
    constexpr double kReach = 1000;
    const Point way = line.points[1] - line.points[0];
    const double length = std::hypot(way.x, way.y);
    Outline endless;
    if (length == 0) return endless;
    endless.Move(line.points[0] - way * (kReach / length));
    endless.Line(line.points[0] + way * (kReach / length));
    return endless;
  }

  void AppendLines(std::vector<Operation>& operations) {
    const ShapeFormat& format = shape_.format;
    if (format.linePattern == kNoLine) return;
    if (format.linePattern > kLastLinePattern)
      notes_.emplace_back(format.linePattern == kUserPattern ? "Its line is a pattern of its own and is painted solid."
                                                             : "The pattern of its line is not known; it is painted solid.");
    const Stroke stroke = StrokeOf(format);
    Outline closed;
    bool hasHeads = false;
    for (const Outline& subpath : stroked_) {
      if (IsClosed(subpath)) {
        closed.Append(AsClosed(subpath));
        continue;
      }
      hasHeads = true;
      AppendLine(operations, subpath, stroke, EndOf(format.beginArrow, format.beginSize), EndOf(format.endArrow, format.endSize));
    }
    if (!closed.empty()) operations.emplace_back(StrokePath{std::move(closed), stroke});
    if (hasHeads && !(IsKnownArrow(format.beginArrow) && IsKnownArrow(format.endArrow)))
      notes_.emplace_back("An end of its line is painted as a plain arrow.");
  }

  // So that the corner where it ends is joined.
  static Outline AsClosed(Outline subpath) {
    if (subpath.verbs.back() != Verb::Close) subpath.Close();
    return subpath;
  }

  LineEnd EndOf(int arrow, int size) const { return {arrow, ArrowLength(size, shape_.format.lineWeight) / shape_.scale}; }

  // The page's directions hold, however the shape is turned.
  void AppendShadow(std::vector<Operation>& operations) const {
    const Matrix& m = shape_.toPage;
    const double size = m.a * m.d - m.b * m.c;
    if (size == 0) return;
    const Point by = shape_.format.shadowOffset * shape_.scale;
    const Matrix shift = Translation({(m.d * by.x - m.c * by.y) / size, (m.a * by.y - m.b * by.x) / size});
    if (!filled_.empty() && shape_.format.fillPattern != kNoFill)
      operations.emplace_back(FillPath{Transformed(filled_, shift), {.colour = shape_.format.shadowColour}, {}});
    if (shape_.format.linePattern == kNoLine) return;
    Stroke stroke = StrokeOf(shape_.format);
    stroke.colour = shape_.format.shadowColour;
    for (const Outline& subpath : stroked_)
      operations.emplace_back(StrokePath{Transformed(IsClosed(subpath) ? AsClosed(subpath) : subpath, shift), stroke});
  }

  const ShapeToDraw& shape_;
  std::vector<std::string>& notes_;
  std::vector<const StoredSection*> ordered_;
  Outline filled_;
  std::vector<Outline> stroked_;
};

}  // namespace

Look BuildLook(const ShapeToDraw& shape, std::vector<std::string>& notes) { return Builder(shape, notes).Build(); }

void MeasureLook(Look& look, double scale) {
  look.box = {};
  for (const Operation& operation : look.operations) {
    if (const auto* fill = std::get_if<FillPath>(&operation)) look.box.Add(fill->outline.Bounds());
    if (const auto* line = std::get_if<StrokePath>(&operation))
      look.box.Add(line->outline.Bounds().Grown(line->stroke.weight / 2 / scale));
    if (const auto* image = std::get_if<Image>(&operation)) look.box.Add(image->clip);
    if (const auto* frame = std::get_if<Frame>(&operation)) look.box.Add(frame->place);
  }
}

}  // namespace vardo::picture
