#include "picture/ArrowHeads.h"

#include "base/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace vardo::picture {
namespace {

enum class Inside { Open, Filled, Hollow };

// With the tip at (0, 0), the line coming from the left, and 1 for the head's length: "M x y" moves, "L x y" draws a line, "C" a
// curve with two control points, "Z" goes back, "O x r" is a circle around (x, 0). The line ends at `reach` before the tip.
struct Head {
  int arrow;
  Inside inside;
  double reach;
  std::string_view path;
};

constexpr std::string_view kTriangle = "M 0 0 L -1 .3333 L -1 -.3333 Z", kThin = "M 0 0 L -1 .2 L -1 -.2 Z",
                           kConcave = "M 0 0 L -1 .4 L -.7 0 L -1 -.4 Z", kLong = "M 0 0 L -1.4 .3 L -1.4 -.3 Z",
                           kDiamond = "M .45 0 L 0 .35 L -.45 0 L 0 -.35 Z", kFoot = "M 0 .4 L -1 0 L 0 -.4";

constexpr Head kHeads[] = {
    {4, Inside::Filled, 1, kTriangle},  // the plain one
    {1, Inside::Open, 0, "M -1 .4 L 0 0 L -1 -.4"},
    {2, Inside::Filled, 1, kThin},
    {3, Inside::Open, 0, "M -1 .2 L 0 0 L -1 -.2"},
    {5, Inside::Filled, 0.7, kConcave},
    {6, Inside::Filled, 0.85, "M 0 0 L -1 .4 C -.8 .15 -.8 -.15 -1 -.4 Z"},
    {9, Inside::Open, 0, "M -1 .4 L 0 0"},
    {10, Inside::Filled, 0, "O 0 .35"},
    {11, Inside::Filled, 0, kDiamond},
    {12, Inside::Open, 0, "M -.7 .6 L 0 0 L -.7 -.6"},
    {13, Inside::Filled, 1.4, kLong},
    {14, Inside::Hollow, 1, kTriangle},
    {15, Inside::Hollow, 1, kThin},
    {16, Inside::Hollow, 1.4, kLong},
    {17, Inside::Hollow, 0.7, kConcave},
    {20, Inside::Hollow, 0.35, "O 0 .35"},
    {21, Inside::Hollow, 0.35, "M -.35 -.35 L .35 -.35 L .35 .35 L -.35 .35 Z"},
    {22, Inside::Hollow, 0.45, kDiamond},
    {23, Inside::Open, 0, "M -.8 -.4 L 0 .4"},
    {24, Inside::Open, 0, "M -.5 -.4 L -.5 .4"},
    {25, Inside::Open, 0, "M -.4 -.4 L -.4 .4 M -.7 -.4 L -.7 .4"},
    {27, Inside::Open, 0, kFoot},
    {28, Inside::Open, 0, "M 0 .4 L -1 0 L 0 -.4 M -1.2 -.4 L -1.2 .4"},
    {29, Inside::Hollow, 0, "M 0 .4 L -1 0 L 0 -.4 O -1.35 .35"},
    {30, Inside::Hollow, 0, "M -.4 -.4 L -.4 .4 O -.95 .35"},
    {39, Inside::Filled, 2, "M 0 0 L -1 .3333 L -1 -.3333 Z M -1 0 L -2 .3333 L -2 -.3333 Z"},
};

constexpr double kSizes[] = {0.5, 0.75, 1, 1.5, 2, 3, 4};
constexpr double kLeastLength = 0.06, kLengthOfWeight = 3;  // inches, weights
constexpr double kCircle = 0.5522847498;
constexpr Rgba kWhite{255, 255, 255};

const Head* FindHead(int arrow) {
  const auto head = std::find_if(std::begin(kHeads), std::end(kHeads), [&](const Head& h) { return h.arrow == arrow; });
  return head == std::end(kHeads) ? nullptr : head;
}

const Head& HeadOf(int arrow) {
  const Head* const head = FindHead(arrow);
  return head ? *head : kHeads[0];
}

class PathText {
 public:
  explicit PathText(std::string_view text) : text_(text) {}
  Outline Read() {
    Outline outline;
    while (!text_.empty()) {
      const std::string_view step = Word();
      if (step == "M") outline.Move(Place());
      if (step == "L") outline.Line(Place());
      if (step == "Z") outline.Close();
      if (step == "C") {
        const Point a = Place(), b = Place();
        outline.Cubic(a, b, Place());
      }
      if (step == "O") {
        const double x = Number();
        AppendCircle(outline, x, Number());
      }
    }
    return outline;
  }

 private:
  std::string_view Word() {
    const size_t blank = text_.find(' ');
    const std::string_view word = text_.substr(0, blank);
    text_ = blank == std::string_view::npos ? std::string_view() : text_.substr(blank + 1);
    return word;
  }
  double Number() { return ParseNumber(Word()).value_or(0); }
  Point Place() {
    const double x = Number();
    return {x, Number()};
  }
  static void AppendCircle(Outline& outline, double x, double r) {
    const double k = kCircle * r;
    outline.Move({x + r, 0});
    outline.Cubic({x + r, k}, {x + k, r}, {x, r});
    outline.Cubic({x - k, r}, {x - r, k}, {x - r, 0});
    outline.Cubic({x - r, -k}, {x - k, -r}, {x, -r});
    outline.Cubic({x + k, -r}, {x + r, -k}, {x + r, 0});
    outline.Close();
  }
  std::string_view text_;
};

// A subpath by its pieces; the lines among them have their controls on the way.
using Piece = std::array<Point, 4>;

std::vector<Piece> PiecesOf(const Outline& subpath) {
  std::vector<Piece> pieces;
  Point here = subpath.points[0];
  size_t at = 1;
  for (const Verb verb : subpath.verbs) {
    if (verb == Verb::Line) {
      const Point to = subpath.points[at++];
      pieces.push_back({here, here, to, to});
      here = to;
    } else if (verb == Verb::Cubic) {
      pieces.push_back({here, subpath.points[at], subpath.points[at + 1], subpath.points[at + 2]});
      here = subpath.points[at + 2];
      at += 3;
    }
  }
  return pieces;
}

bool IsLine(const Piece& piece) { return piece[0] == piece[1] && piece[2] == piece[3]; }

Point PointAt(const Piece& p, double t) {
  const double s = 1 - t;
  if (IsLine(p)) return p[0] * s + p[3] * t;
  return p[0] * (s * s * s) + p[1] * (3 * s * s * t) + p[2] * (3 * s * t * t) + p[3] * (t * t * t);
}

// The part from 0 to t.
Piece FirstPart(const Piece& p, double t) {
  if (IsLine(p)) return {p[0], p[0], PointAt(p, t), PointAt(p, t)};
  const auto mix = [&](Point a, Point b) { return a + (b - a) * t; };
  const Point ab = mix(p[0], p[1]), bc = mix(p[1], p[2]), cd = mix(p[2], p[3]), abc = mix(ab, bc), bcd = mix(bc, cd);
  return {p[0], ab, abc, mix(abc, bcd)};
}

// Where the way back from the end has that length.
struct PlaceOnWay {
  size_t piece = 0;
  double t = 0;
};
PlaceOnWay BackFromEnd(const std::vector<Piece>& pieces, double length) {
  constexpr int kSteps = 16;
  for (size_t piece = pieces.size(); piece-- > 0;) {
    const int steps = IsLine(pieces[piece]) ? 1 : kSteps;
    for (int step = steps; step-- > 0;) {
      const Point from = PointAt(pieces[piece], static_cast<double>(step + 1) / steps);
      const double part = Distance(from, PointAt(pieces[piece], static_cast<double>(step) / steps));
      if (part >= length && part > 0) return {piece, (step + 1 - length / part) / steps};
      length -= part;
    }
  }
  return {};
}

Outline OutlineOf(const std::vector<Piece>& pieces) {
  Outline outline;
  if (pieces.empty()) return outline;
  outline.Move(pieces.front()[0]);
  for (const Piece& piece : pieces) {
    if (IsLine(piece))
      outline.Line(piece[3]);
    else
      outline.Cubic(piece[1], piece[2], piece[3]);
  }
  return outline;
}

void Reverse(std::vector<Piece>& pieces) {
  std::reverse(pieces.begin(), pieces.end());
  for (Piece& piece : pieces) std::reverse(piece.begin(), piece.end());
}

void AppendHead(std::vector<Operation>& heads, std::vector<Piece>& pieces, const std::vector<Piece>& whole, const Stroke& stroke,
                LineEnd end) {
  if (end.arrow == 0 || end.length <= 0) return;
  const Head& head = HeadOf(end.arrow);
  const Point tip = whole.back()[3];
  const PlaceOnWay behind = BackFromEnd(whole, end.length);
  const Point back = PointAt(whole[behind.piece], behind.t), way = tip - back;
  if (back == tip) return;
  const Outline outline = Transformed(PathText(head.path).Read(),
                                      Translation(tip) * Rotation(std::atan2(way.y, way.x)) * Scaling(end.length, end.length));
  Stroke rim = stroke;
  rim.dash.clear();
  if (head.inside == Inside::Filled) heads.emplace_back(FillPath{outline, {.colour = stroke.colour}, {}});
  if (head.inside == Inside::Hollow) heads.emplace_back(FillPath{outline, {.colour = kWhite}, {}});
  if (head.inside != Inside::Filled) heads.emplace_back(StrokePath{outline, rim});
  const PlaceOnWay cut = BackFromEnd(pieces, end.length * head.reach);
  if (head.reach == 0) return;
  pieces.resize(cut.piece + 1);
  pieces.back() = FirstPart(pieces.back(), cut.t);
}

}  // namespace

bool IsKnownArrow(int arrow) { return arrow == 0 || FindHead(arrow); }

double ArrowLength(int size, double weight) {
  return kSizes[static_cast<size_t>(std::clamp(size, 0, 6))] * (kLeastLength + kLengthOfWeight * weight);
}

void AppendLine(std::vector<Operation>& operations, const Outline& subpath, const Stroke& stroke, LineEnd begin, LineEnd end) {
  if (begin.arrow == 0 && end.arrow == 0) {
    operations.emplace_back(StrokePath{subpath, stroke});
    return;
  }
  std::vector<Piece> pieces = PiecesOf(subpath);
  if (pieces.empty()) return;
  std::vector<Piece> whole = pieces;
  std::vector<Operation> heads;
  AppendHead(heads, pieces, whole, stroke, end);
  Reverse(pieces);
  Reverse(whole);
  AppendHead(heads, pieces, whole, stroke, begin);
  Reverse(pieces);
  operations.emplace_back(StrokePath{OutlineOf(pieces), stroke});
  operations.insert(operations.end(), heads.begin(), heads.end());
}

}  // namespace vardo::picture
