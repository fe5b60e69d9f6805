#include "picture/GeometryReader.h"

#include "base/Numbers.h"
#include "picture/Splines.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace vardo::picture {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kFarthest = 1e6;         // inches
constexpr double kCircle = 0.5522847498;  // the control length of a quarter circle

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// The arguments of NAME(1, 2, ...); none when it is something else.
std::optional<std::vector<double>> Arguments(std::string_view call, std::string_view name) {
  if (!call.starts_with(name) || !call.ends_with(')') || call.size() < name.size() + 2) return std::nullopt;
  call = call.substr(name.size() + 1, call.size() - name.size() - 2);
  std::vector<double> numbers;
  while (true) {
    const size_t comma = call.find(',');
    const auto number = ParseNumber(Trimmed(call.substr(0, comma)));
    if (!number) return std::nullopt;
    numbers.push_back(*number);
    if (comma == std::string_view::npos) return numbers;
    call.remove_prefix(comma + 1);
  }
}

class Reader {
 public:
  Reader(double width, double height, std::vector<std::string>& troubles) : width_(width), height_(height), troubles_(troubles) {}

  Path Read(const StoredSection& section) {
    path_.filled = NumberOf("NoFill", section.cells) == 0;
    path_.stroked = NumberOf("NoLine", section.cells) == 0;
    path_.shown = NumberOf("NoShow", section.cells) == 0;
    if (!path_.shown) return path_;
    for (const StoredRow& row : section.rows) {
      if (row.type != "SplineKnot") FinishSpline();
      ReadRow(row);
    }
    FinishSpline();
    return path_;
  }

 private:
  static double NumberOf(ColumnName column, const StoredCells& cells) { return ParseNumber(cells.Find(column)).value_or(0); }

  struct Row {
    double x = 0, y = 0, a = 0, b = 0, c = 0, d = 0;
    std::string_view e;
  };
  using Step = void (Reader::*)(const Row&);
  struct Kind {
    std::string_view type;
    Step step;
    bool relative = false;  // X, A and C count in widths, Y, B and D in heights
    bool arc = false;       // and C and D are an angle and a ratio
  };

  void ReadRow(const StoredRow& row) {
    static constexpr Kind kKinds[] = {{"MoveTo", &Reader::Move},
                                      {"LineTo", &Reader::Line},
                                      {"RelMoveTo", &Reader::Move, true},
                                      {"RelLineTo", &Reader::Line, true},
                                      {"ArcTo", &Reader::Arc},
                                      {"EllipticalArcTo", &Reader::EllipticalArc},
                                      {"RelEllipticalArcTo", &Reader::EllipticalArc, true, true},
                                      {"Ellipse", &Reader::Ellipse},
                                      {"RelCubBezTo", &Reader::Cubic, true},
                                      {"RelQuadBezTo", &Reader::Quadratic, true},
                                      {"NURBSTo", &Reader::Nurbs},
                                      {"PolylineTo", &Reader::Polyline},
                                      {"SplineStart", &Reader::SplineStart},
                                      {"SplineKnot", &Reader::SplineKnot},
                                      {"InfiniteLine", &Reader::InfiniteLine}};
    const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds), [&](const Kind& k) { return k.type == row.type; });
    if (kind == std::end(kKinds)) return Trouble("A row of the unknown type " + std::string(row.type) + " is left out.");
    Row read;
    if (!ReadCells(row.cells, read)) return Trouble("A row that leads beyond all measure is left out.");
    if (kind->relative) Scale(read, kind->arc);
    (this->*kind->step)(read);
  }

  static bool ReadCells(const StoredCells& cells, Row& row) {
    const struct {
      ColumnName column;
      double& number;
    } wanted[] = {{"X", row.x}, {"Y", row.y}, {"A", row.a}, {"B", row.b}, {"C", row.c}, {"D", row.d}};
    for (const auto& [column, number] : wanted) {
      const std::string_view text = cells.Find(column);
      const bool isCall = text.ends_with(')');
      const auto value = text.empty() || isCall ? std::optional(0.0) : ParseNumber(text);
      if (!value || std::abs(*value) > kFarthest) return false;
      number = *value;
      if (isCall) row.e = text;  // a polyline's points stand in A
    }
    if (!cells.Find("E").empty()) row.e = cells.Find("E");
    return true;
  }

  void Scale(Row& row, bool arc) const {
    row.x *= width_;
    row.y *= height_;
    row.a *= width_;
    row.b *= height_;
    if (arc) return;
    row.c *= width_;
    row.d *= height_;
  }

  void Trouble(std::string sentence) { troubles_.push_back(std::move(sentence)); }
  Point Here() const { return outline().points.empty() ? Point{} : outline().points.back(); }
  Outline& outline() { return path_.outline; }
  const Outline& outline() const { return path_.outline; }
  // A path that does not begin with a move begins in the shape's corner.
  void Begin() {
    if (outline().empty()) outline().Move({});
  }

  void Move(const Row& row) { outline().Move({row.x, row.y}); }
  void Line(const Row& row) {
    Begin();
    outline().Line({row.x, row.y});
  }
  void Arc(const Row& row) {
    Begin();
    const Point from = Here(), to{row.x, row.y}, way = to - from;
    const double length = Distance(from, to);
    if (std::abs(row.a) < 1e-9 || length == 0) return outline().Line(to);
    const Point through = (from + to) * 0.5 + Point{way.y, -way.x} * (row.a / length);
    AppendEllipticalArc(outline(), through, to, 0, 1);
  }
  void EllipticalArc(const Row& row) {
    Begin();
    AppendEllipticalArc(outline(), {row.a, row.b}, {row.x, row.y}, row.c, row.d);
  }
  void Ellipse(const Row& row) {
    const Point centre{row.x, row.y}, p = Point{row.a, row.b} - centre, q = Point{row.c, row.d} - centre;
    outline().Move(centre + p);
    const auto quarter = [&](Point from, Point to) {
      outline().Cubic(centre + from + to * kCircle, centre + to + from * kCircle, centre + to);
    };
    quarter(p, q);
    quarter(q, p * -1);
    quarter(p * -1, q * -1);
    quarter(q * -1, p);
    outline().Close();
  }
  void Cubic(const Row& row) {
    Begin();
    outline().Cubic({row.a, row.b}, {row.c, row.d}, {row.x, row.y});
  }
  void Quadratic(const Row& row) {
    Begin();
    const Point from = Here(), control{row.a, row.b}, to{row.x, row.y};
    outline().Cubic(from + (control - from) * (2.0 / 3), to + (control - to) * (2.0 / 3), to);
  }
  void Polyline(const Row& row) {
    Begin();
    const auto numbers = Arguments(row.e, "POLYLINE");
    if (!numbers || numbers->size() < 2) Trouble("A polyline without its points is a straight line.");
    if (numbers && numbers->size() >= 2) {
      const double x = (*numbers)[0] == 0 ? width_ : 1, y = (*numbers)[1] == 0 ? height_ : 1;
      for (size_t i = 2; i + 1 < numbers->size(); i += 2) outline().Line({(*numbers)[i] * x, (*numbers)[i + 1] * y});
    }
    outline().Line({row.x, row.y});
  }

  void Nurbs(const Row& row) {
    Begin();
    const auto numbers = Arguments(row.e, "NURBS");
    Spline spline;
    if (numbers && numbers->size() >= 4) {
      const auto& n = *numbers;
      spline.degree = static_cast<int>(std::clamp(n[1], 0.0, 100.0));
      const double x = n[2] == 0 ? width_ : 1, y = n[3] == 0 ? height_ : 1;
      spline.points = {Here()};
      spline.weights = {row.d};
      spline.knots = {row.c};
      for (size_t i = 4; i + 3 < n.size(); i += 4) {
        spline.points.push_back({n[i] * x, n[i + 1] * y});
        spline.knots.push_back(n[i + 2]);
        spline.weights.push_back(n[i + 3]);
      }
      spline.points.push_back({row.x, row.y});
      spline.weights.push_back(row.b);
      spline.knots.push_back(row.a);
      spline.knots.push_back(n[0]);
    }
    AppendPadded(std::move(spline), numbers && !numbers->empty() ? (*numbers)[0] : 0, {row.x, row.y});
  }
  void SplineStart(const Row& row) {
    Begin();
    spline_.emplace();
    spline_->degree = static_cast<int>(std::clamp(row.d, 0.0, 100.0));
    spline_->points = {Here(), {row.x, row.y}};
    spline_->knots = {row.b, row.a};
    lastKnot_ = row.c;
  }
  void SplineKnot(const Row& row) {
    if (!spline_) return Line(row);
    spline_->points.push_back({row.x, row.y});
    spline_->knots.push_back(row.a);
  }
  void FinishSpline() {
    if (!spline_) return;
    const Point to = spline_->points.back();
    spline_->weights.assign(spline_->points.size(), 1);
    AppendPadded(*std::move(spline_), lastKnot_, to);
    spline_.reset();
  }
  void AppendPadded(Spline spline, double lastKnot, Point to) {
    const size_t wanted = spline.points.size() + static_cast<size_t>(spline.degree) + 1;
    if (spline.knots.size() < wanted && spline.points.size() <= kMostSplinePoints) spline.knots.resize(wanted, lastKnot);
    if (AppendSpline(outline(), spline)) return;
    Trouble("A curve that cannot be read is a straight line.");
    outline().Line(to);
  }

  void InfiniteLine(const Row& row) {
    path_.isInfinite = true;
    outline().Move({row.x, row.y});
    outline().Line({row.a, row.b});
  }

  double width_, height_;
  std::vector<std::string>& troubles_;
  Path path_;
  std::optional<Spline> spline_;
  double lastKnot_ = 0;
};

double FullTurn(double angle) {
  angle = std::fmod(angle, 2 * kPi);
  return angle < 0 ? angle + 2 * kPi : angle;
}

}  // namespace

Path ReadGeometry(const StoredSection& section, double width, double height, std::vector<std::string>& troubles) {
  return Reader(width, height, troubles).Read(section);
}

// With the plane turned and stretched so that the ellipse is a circle, three points give it.
void AppendEllipticalArc(Outline& outline, Point through, Point to, double angle, double ratio) {
  const Point from = outline.points.back();
  const double cosine = std::cos(angle), sine = std::sin(angle);
  const auto flatten = [&](Point p) { return Point{p.x * cosine + p.y * sine, ratio * (p.y * cosine - p.x * sine)}; };
  const auto back = [&](Point p) { return Point{p.x * cosine - p.y / ratio * sine, p.x * sine + p.y / ratio * cosine}; };
  const Point p[] = {flatten(from), flatten(to), flatten(through)};
  const double d = 2 * (p[0].x * (p[1].y - p[2].y) + p[1].x * (p[2].y - p[0].y) + p[2].x * (p[0].y - p[1].y));
  double extent = 0;
  for (const Point point : {p[1] - p[0], p[2] - p[0]}) extent = std::max({extent, std::abs(point.x), std::abs(point.y)});
  if (!(ratio > 0) || ratio > 1000 || from == to || !(std::abs(d) >= 1e-9 * extent * extent)) return outline.Line(to);

  const auto square = [](Point q) { return q.x * q.x + q.y * q.y; };
  const Point centre{
      (square(p[0]) * (p[1].y - p[2].y) + square(p[1]) * (p[2].y - p[0].y) + square(p[2]) * (p[0].y - p[1].y)) / d,
      (square(p[0]) * (p[2].x - p[1].x) + square(p[1]) * (p[0].x - p[2].x) + square(p[2]) * (p[1].x - p[0].x)) / d};
  const double radius = Distance(centre, p[0]);
  double angles[3];
  for (size_t i = 0; i < 3; ++i) angles[i] = std::atan2(p[i].y - centre.y, p[i].x - centre.x);
  const double whole = FullTurn(angles[1] - angles[0]);
  const double sweep = FullTurn(angles[2] - angles[0]) <= whole ? whole : whole - 2 * kPi;
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (kPi / 2) - 1e-9)));
  const double step = sweep / pieces, control = 4.0 / 3 * std::tan(step / 4) * radius;
  for (int i = 0; i < pieces; ++i) {
    const double a = angles[0] + step * i, b = a + step;
    const Point begin = centre + Point{std::cos(a), std::sin(a)} * radius,
                end = centre + Point{std::cos(b), std::sin(b)} * radius;
    outline.Cubic(back(begin + Point{-std::sin(a), std::cos(a)} * control),
                  back(end - Point{-std::sin(b), std::cos(b)} * control), i + 1 == pieces ? to : back(end));
  }
}

namespace {

// The corner at `at` on the way from `before` to `after`.
void AppendCorner(Outline& outline, Point before, Point at, Point after, double radius) {
  const double in = Distance(before, at), out = Distance(at, after);
  const Point u = (at - before) * (1 / in), v = (after - at) * (1 / out);
  const double turn = std::atan2(u.x * v.y - u.y * v.x, u.x * v.x + u.y * v.y);
  if (in == 0 || out == 0 || std::abs(turn) < 1e-6 || std::abs(turn) > kPi - 1e-6) return outline.Line(at);
  const double tangent = std::min({radius * std::tan(std::abs(turn) / 2), in / 2, out / 2});
  const double control = 4.0 / 3 * std::tan(std::abs(turn) / 4) * (tangent / std::tan(std::abs(turn) / 2));
  const Point begin = at - u * tangent, end = at + v * tangent;
  outline.Line(begin);
  outline.Cubic(begin + u * control, end - v * control, end);
}

Outline RoundedSubpath(const Outline& subpath, double radius) {
  Outline rounded;
  const bool closed = IsClosed(subpath);
  std::vector<Verb> verbs = subpath.verbs;
  std::vector<Point> points = subpath.points;
  if (closed && verbs.back() == Verb::Close) {
    verbs.pop_back();
    if (Distance(points.front(), points.back()) > 1e-9) {
      verbs.push_back(Verb::Line);
      points.push_back(points.front());
    }
  }
  const bool roundsStart = closed && verbs[1] == Verb::Line && verbs.back() == Verb::Line && points.size() > 2;
  size_t at = 0;
  rounded.Move(points[at++]);
  for (size_t i = 1; i < verbs.size(); ++i) {
    if (verbs[i] == Verb::Cubic) {
      rounded.Cubic(points[at], points[at + 1], points[at + 2]);
      at += 3;
      continue;
    }
    const Point to = points[at++];
    const bool cornerAhead = i + 1 < verbs.size() && verbs[i + 1] == Verb::Line;
    if (cornerAhead)
      AppendCorner(rounded, points[at - 2], to, points[at], radius);
    else if (i + 1 == verbs.size() && roundsStart)
      AppendCorner(rounded, points[at - 2], to, points[1], radius);
    else
      rounded.Line(to);
  }
  // The path begins where the arc of its first corner ends.
  if (roundsStart) rounded.points.front() = rounded.points.back();
  if (closed) rounded.Close();
  return rounded;
}

}  // namespace

Outline WithRoundedCorners(const Outline& outline, double radius) {
  Outline rounded;
  for (const Outline& subpath : Subpaths(outline)) rounded.Append(RoundedSubpath(subpath, radius));
  return rounded;
}

}  // namespace vardo::picture
