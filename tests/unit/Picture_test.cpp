// What is painted of a page is what its cells say.
#include "PictureText.h"
#include "picture/PagePicture.h"
#include "picture/SvgWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace vardo::picture {
namespace {

using test::DrawingText;
using test::OpenPicture;
using test::Painted;
using test::PictureParts;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr double kPi = std::numbers::pi;

PagePicture PictureOfText(const DrawingText& text, const PictureParts& parts = {}) {
  const auto drawing = OpenPicture(text, parts);
  return PictureOf(*drawing, drawing->PageAt(1));
}

std::vector<std::string> PaintedOf(const std::string& shapes, const PictureParts& parts = {}) {
  return Painted(PictureOfText({.shapes = shapes}, parts));
}

std::string Cell(const std::string& name, const std::string& value) { return "<Cell N='" + name + "' V='" + value + "'/>"; }

// Two inches wide and one high, its corner in the page's.
const std::string kInCorner = Cell("Width", "2") + Cell("Height", "1");
const std::string kOnlyLine = Cell("FillPattern", "0") + Cell("LineWeight", "0.01") + Cell("LineColor", "#000000");
const std::string kOnlyFill = Cell("LinePattern", "0") + Cell("FillForegnd", "#112233");

std::string Row(const std::string& type, int ix, const std::string& cells) {
  return "<Row T='" + type + "' IX='" + std::to_string(ix) + "'>" + cells + "</Row>";
}
std::string At(const std::string& x, const std::string& y) { return Cell("X", x) + Cell("Y", y); }
std::string Geometry(const std::string& content, int ix = 0) {
  return "<Section N='Geometry' IX='" + std::to_string(ix) + "'>" + content + "</Section>";
}
const std::string kRectangle =
    Geometry(Row("RelMoveTo", 1, At("0", "0")) + Row("RelLineTo", 2, At("1", "0")) + Row("RelLineTo", 3, At("1", "1")) +
             Row("RelLineTo", 4, At("0", "1")) + Row("RelLineTo", 5, At("0", "0")));

std::string Shape(const std::string& content, const std::string& attributes = "ID='1' Type='Shape'") {
  return "<Shape " + attributes + ">" + content + "</Shape>";
}

// The path of rows that begin in (0, 0).
Outline OutlineOfRows(const std::string& rows) {
  const PagePicture picture =
      PictureOfText({.shapes = Shape(kInCorner + kOnlyLine + Geometry(Row("MoveTo", 1, At("0", "0")) + rows))});
  if (picture.slices.empty() || !picture.slices[0].look) return {};
  return std::get<StrokePath>(picture.slices[0].look->operations.at(0)).outline;
}

// Points along a path, 20 a piece.
std::vector<Point> Sampled(const Outline& outline) {
  std::vector<Point> points;
  size_t at = 0;
  Point here;
  for (const Verb verb : outline.verbs) {
    if (verb == Verb::Close) continue;
    if (verb != Verb::Cubic) {
      here = outline.points[at++];
      points.push_back(here);
      continue;
    }
    const Point a = here, b = outline.points[at], c = outline.points[at + 1], d = outline.points[at + 2];
    for (int i = 1; i <= 20; ++i) {
      const double t = i / 20.0, s = 1 - t;
      points.push_back(a * (s * s * s) + b * (3 * s * s * t) + c * (3 * s * t * t) + d * (t * t * t));
    }
    here = d;
    at += 3;
  }
  return points;
}

// ------------------------------------------------------------------------------------------------------ rows of geometry

TEST(PictureGeometry, StraightAndBezierRows) {
  const struct {
    std::string rows, path, why;
  } cases[] = {
      {Row("LineTo", 2, At("2", "1")), "M 0,0 L 2000,1000", "inches of the shape"},
      {Row("RelLineTo", 2, At("0.5", "0.5")), "M 0,0 L 1000,500", "parts of its width and height"},
      {Row("MoveTo", 2, At("1", "0")) + Row("LineTo", 3, At("1", "1")), "M 1000,0 L 1000,1000", "a move alone paints nothing"},
      {Row("RelCubBezTo", 2, At("1", "1") + Cell("A", "0.5") + Cell("B", "0") + Cell("C", "0.5") + Cell("D", "1")),
       "M 0,0 C 1000,0 1000,1000 2000,1000", "two control points"},
      {Row("RelQuadBezTo", 2, At("1", "0") + Cell("A", "0.5") + Cell("B", "1")), "M 0,0 C 667,667 1333,667 2000,0",
       "one control point is two thirds of two"},
      {Row("PolylineTo", 2, At("2", "0") + Cell("A", "POLYLINE(0, 1, 0.25, 0.5, 0.75, 0.25)")),
       "M 0,0 L 500,500 L 1500,250 L 2000,0", "x in widths, y in inches"},
      {Row("LineTo", 2, At("1", "0")) + Row("LineTo", 3, Cell("X", "2")), "M 0,0 L 1000,0 L 2000,0",
       "a cell that is not there is 0"},
      {Row("LineTo", 2, At("1", "oops")) + Row("LineTo", 3, At("2", "1")), "M 0,0 L 2000,1000", "no number: left out"},
      {Row("LineTo", 2, At("1", "2e6")) + Row("LineTo", 3, At("2", "1")), "M 0,0 L 2000,1000", "beyond all measure: left out"},
      {Row("SpiralTo", 2, At("1", "1")) + Row("LineTo", 3, At("2", "1")), "M 0,0 L 2000,1000", "unknown: left out"},
      {Row("ArcTo", 2, At("1", "1") + Cell("A", "0")), "M 0,0 L 1000,1000", "without a bow a line"},
      {Row("EllipticalArcTo", 2, At("2", "0") + Cell("A", "1") + Cell("B", "0") + Cell("D", "1")), "M 0,0 L 2000,0",
       "three points in a line"},
      {Row("NURBSTo", 2, At("2", "0") + Cell("E", "NURBS(oops)")), "M 0,0 L 2000,0", "a curve that cannot be read"},
  };
  for (const auto& [rows, path, why] : cases) EXPECT_EQ(test::TextOf(OutlineOfRows(rows)), path) << why;
}

TEST(PictureGeometry, WhatCannotBeReadIsNoted) {
  const PagePicture picture =
      PictureOfText({.shapes = Shape(kInCorner + Geometry(Row("SpiralTo", 1, "") + Row("LineTo", 2, At("1", "2e6")) +
                                                          Row("NURBSTo", 3, At("2", "0"))),
                                     "ID='4' Type='Shape'")});
  std::vector<std::string> sentences;
  for (const Note& note : picture.notes) {
    EXPECT_EQ(note.shape, 4);
    EXPECT_EQ(note.page, "Page-1");
    sentences.push_back(note.sentence);
  }
  EXPECT_THAT(sentences,
              ElementsAre("A curve that cannot be read is a straight line.", "A row of the unknown type SpiralTo is left out.",
                          "A row that leads beyond all measure is left out."));
}

// Points on an ellipse fulfil its equation.
double OffEllipse(Point p, Point centre, double a, double b, double angle) {
  const Point q = p - centre;
  const double u = q.x * std::cos(angle) + q.y * std::sin(angle), v = q.y * std::cos(angle) - q.x * std::sin(angle);
  return std::abs(std::hypot(u / a, v / b) - 1);
}

TEST(PictureGeometry, ArcsLieOnTheirEllipses) {
  // A quarter of a unit circle counter-clockwise: from (0, 0) around (0, 1) to (1, 1).
  const Outline bow = OutlineOfRows(Row("ArcTo", 2, At("1", "1") + Cell("A", std::to_string(1 - std::sqrt(0.5)))));
  for (const Point p : Sampled(bow)) EXPECT_LT(OffEllipse(p, {0, 1}, 1, 1, 0), 1e-3) << p.x << "," << p.y;
  EXPECT_GT(Sampled(bow)[10].x, Sampled(bow)[10].y) << "a positive bow turns to the right of the way";

  for (const double angle : {0.0, 0.4, -1.2})
    for (const double to : {0.8, 2.5, 5.9}) {
      const double a = 1.5, b = 0.6;
      const auto on = [&](double t) { return Rotation(angle)(Point{a * std::cos(t), b * std::sin(t)}); };
      const Point shift = on(0) * -1, end = on(to) + shift, through = on(to * 0.4) + shift;
      const auto text = [](double value) { return std::to_string(value); };
      const Outline arc = OutlineOfRows(Row("EllipticalArcTo", 2,
                                            At(text(end.x), text(end.y)) + Cell("A", text(through.x)) +
                                                Cell("B", text(through.y)) + Cell("C", text(angle)) + Cell("D", text(a / b))));
      for (const Point p : Sampled(arc)) EXPECT_LT(OffEllipse(p, shift, a, b, angle), 1e-3) << angle << " " << to;
      EXPECT_GE(arc.verbs.size(), 1 + to / (kPi / 2)) << "the long way round where the point lies there";
    }

  const Outline relative = OutlineOfRows(
      Row("RelEllipticalArcTo", 2, At("1", "0") + Cell("A", "0.5") + Cell("B", "1") + Cell("C", "0") + Cell("D", "1")));
  for (const Point p : Sampled(relative)) EXPECT_LT(OffEllipse(p, {1, 0}, 1, 1, 0), 1e-3);
}

TEST(PictureGeometry, Ellipse) {
  const auto lines = PaintedOf(
      Shape(kInCorner + kOnlyFill +
            Geometry(Row("Ellipse", 1, At("1", "0.5") + Cell("A", "2") + Cell("B", "0.5") + Cell("C", "1") + Cell("D", "1")))));
  EXPECT_THAT(lines,
              ElementsAre("fill 112233: M 2000,500 C 2000,776 1552,1000 1000,1000 C 448,1000 0,776 0,500 C 0,224 448,0 1000,0 "
                          "C 1552,0 2000,224 2000,500 Z"));
}

// The basis functions as textbooks define them.
double Basis(const std::vector<double>& knots, size_t i, int degree, double u) {
  if (degree == 0) return knots[i] <= u && u < knots[i + 1] ? 1 : 0;
  const auto part = [](double over, double under) { return under == 0 ? 0 : over / under; };
  const size_t p = static_cast<size_t>(degree);
  return part(u - knots[i], knots[i + p] - knots[i]) * Basis(knots, i, degree - 1, u) +
         part(knots[i + p + 1] - u, knots[i + p + 1] - knots[i + 1]) * Basis(knots, i + 1, degree - 1, u);
}

double DistanceTo(const std::vector<Point>& points, Point p) {
  double least = 1e9;
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    const Point way = points[i + 1] - points[i], off = p - points[i];
    const double length = way.x * way.x + way.y * way.y;
    const double t = length == 0 ? 0 : std::clamp((off.x * way.x + off.y * way.y) / length, 0.0, 1.0);
    least = std::min(least, Distance(p, points[i] + way * t));
  }
  return least;
}

void ExpectOnSpline(const Outline& outline, const std::vector<Point>& points, const std::vector<double>& weights,
                    const std::vector<double>& knots, int degree, const std::string& why) {
  const std::vector<Point> painted = Sampled(outline);
  const double from = knots[static_cast<size_t>(degree)], to = knots[points.size()];
  for (int step = 0; step < 50; ++step) {
    const double u = from + (to - from) * step / 50;
    Point sum;
    double weight = 0;
    for (size_t i = 0; i < points.size(); ++i) {
      const double b = Basis(knots, i, degree, u) * weights[i];
      sum = sum + points[i] * b;
      weight += b;
    }
    EXPECT_LT(DistanceTo(painted, sum * (1 / weight)), 2e-3) << why << " at " << u;
  }
  EXPECT_LT(Distance(painted.back(), points.back()), 1e-6) << why;
}

TEST(PictureGeometry, CurvesFollowTheirBasisFunctions) {
  const std::string inner = ", 0, 0, 0.1,0.8,0,1, 0.5,1.2,0,1, 0.8,-0.4,0.3,1)";
  const std::vector<Point> points{{0, 0}, {0.2, 0.8}, {1, 1.2}, {1.6, -0.4}, {2, 0}};
  const auto row = [](const std::string& e, const std::string& a, const std::string& b) {
    return Row("NURBSTo", 2, At("2", "0") + Cell("A", a) + Cell("B", b) + Cell("C", "0") + Cell("D", "1") + Cell("E", e));
  };
  // Knots: C, those of the points, A, the last one, and that again until there are enough.
  ExpectOnSpline(OutlineOfRows(row("NURBS(1, 2" + inner, "0.7", "1")), points, {1, 1, 1, 1, 1}, {0, 0, 0, 0.3, 0.7, 1, 1, 1}, 2,
                 "quadratic");
  ExpectOnSpline(OutlineOfRows(row("NURBS(1, 3, 1, 1, 0.2,0.8,0,1, 1,1.2,0,1, 1.6,-0.4,0,1)", "0.5", "1")), points,
                 {1, 1, 1, 1, 1}, {0, 0, 0, 0, 0.5, 1, 1, 1, 1}, 3, "cubic, in inches");
  ExpectOnSpline(OutlineOfRows(row("NURBS(1, 3, 1, 1, 0.2,0.8,0,2, 1,1.2,0,0.5, 1.6,-0.4,0,1)", "0.5", "3")), points,
                 {1, 2, 0.5, 1, 3}, {0, 0, 0, 0, 0.5, 1, 1, 1, 1}, 3, "with weights");
  ExpectOnSpline(OutlineOfRows(row("NURBS(1, 4, 1, 1, 0.2,0.8,0,1, 1,1.2,0,1, 1.6,-0.4,0,1)", "0", "1")), points, {1, 1, 1, 1, 1},
                 {0, 0, 0, 0, 0, 1, 1, 1, 1, 1}, 4, "of degree 4");
  ExpectOnSpline(
      OutlineOfRows(Row("SplineStart", 2, At("0.2", "0.8") + Cell("A", "0") + Cell("B", "0") + Cell("C", "1") + Cell("D", "3")) +
                    Row("SplineKnot", 3, At("1", "1.2") + Cell("A", "0")) +
                    Row("SplineKnot", 4, At("1.6", "-0.4") + Cell("A", "0")) +
                    Row("SplineKnot", 5, At("2", "0") + Cell("A", "0.5"))),
      points, {1, 1, 1, 1, 1}, {0, 0, 0, 0, 0.5, 1, 1, 1, 1}, 3, "a spline by its knots");
}

TEST(PictureGeometry, SectionsOfAShape) {
  const std::string hole = Row("MoveTo", 1, At("0.5", "0.25")) + Row("LineTo", 2, At("1", "0.25")) +
                           Row("LineTo", 3, At("1", "0.75")) + Row("LineTo", 4, At("0.5", "0.25"));
  const auto lines = PaintedOf(Shape(kInCorner + Cell("LineColor", "#000000") + Cell("FillForegnd", "#112233") +
                                     Cell("LineWeight", "0.01") + kRectangle + Geometry(Cell("NoLine", "1") + hole, 1) +
                                     Geometry(Cell("NoFill", "1") + hole, 2) + Geometry(Cell("NoShow", "1") + hole, 3)));
  const std::string triangle = "M 500,250 L 1000,250 L 1000,750 L 500,250", box = "M 0,0 L 2000,0 L 2000,1000 L 0,1000 L 0,0";
  EXPECT_THAT(lines, ElementsAre("fill 112233: " + box + " " + triangle, "line 000000 10: " + box + " Z " + triangle + " Z"))
      << "one fill with holes, then the lines";
}

TEST(PictureGeometry, RoundedCorners) {
  const auto lines = PaintedOf(Shape(kInCorner + kOnlyFill + Cell("Rounding", "0.25") + kRectangle));
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_THAT(lines[0], StartsWith("fill 112233: M 250,0 L 1750,0 C 1888,0 2000,112 2000,250 L 2000,750 C"));
  EXPECT_THAT(lines[0], testing::EndsWith("L 0,250 C 0,112 112,0 250,0 Z"));
  const auto open = PaintedOf(
      Shape(kInCorner + kOnlyLine + Cell("Rounding", "9") +
            Geometry(Row("MoveTo", 1, At("0", "0")) + Row("LineTo", 2, At("2", "0")) + Row("LineTo", 3, At("2", "1")))));
  EXPECT_THAT(open, ElementsAre("line 000000 10: M 0,0 L 1500,0 C 1776,0 2000,224 2000,500 L 2000,1000"))
      << "no more than half a line";
}

// ---------------------------------------------------------------------------------------------------------- inheritance

TEST(PictureInheritance, OwnThenMasterThenStyle) {
  const std::string styles = "<StyleSheets><StyleSheet ID='0'>" + Cell("LineColor", "#000000") + Cell("FillForegnd", "#000000") +
                             Cell("LineWeight", "0.01") + Cell("LinePattern", "1") + Cell("FillPattern", "1") +
                             "</StyleSheet><StyleSheet ID='3' LineStyle='0' FillStyle='0' TextStyle='0'>" +
                             Cell("LineColor", "#333333") + Cell("FillForegnd", "#333333") +
                             "</StyleSheet><StyleSheet ID='4' LineStyle='3' FillStyle='0' TextStyle='0'>" +
                             Cell("LineWeight", "0.04") + "</StyleSheet></StyleSheets>";
  const DrawingText text{
      .shapes =
          Shape(Cell("FillForegnd", "#aaaaaa"), "ID='1' Type='Shape' Master='2'") +
          Shape("<Section N='Geometry' IX='0'><Row T='RelLineTo' IX='3' Del='1'/><Row T='RelLineTo' IX='4'><Cell N='X' V='0.5'/>"
                "</Row></Section>",
                "ID='2' Type='Shape' Master='2'") +
          Shape(kInCorner + kRectangle, "ID='3' Type='Shape' LineStyle='4' FillStyle='4' TextStyle='4'"),
      .masters = {{"Box", Shape(kInCorner + Cell("FillForegnd", "#bbbbbb") + kRectangle,
                                "ID='5' Type='Shape' LineStyle='3' FillStyle='3' TextStyle='3'")}}};
  const std::string box = "M 0,0 L 2000,0 L 2000,1000 L 0,1000 L 0,0";
  EXPECT_THAT(
      Painted(PictureOfText(text, {.document = styles})),
      ElementsAre("fill aaaaaa: " + box, "line 333333 10: " + box + " Z", "fill bbbbbb: M 0,0 L 2000,0 L 1000,1000 L 0,0",
                  "line 333333 10: M 0,0 L 2000,0 L 1000,1000 L 0,0 Z", "fill 000000: " + box, "line 333333 40: " + box + " Z"))
      << "the line's style goes on to style 3, the fill's to style 0";
}

TEST(PictureInheritance, MembersOfInstancesAndMastersWithinMasters) {
  const DrawingText text{
      .shapes = Shape("<Shapes><Shape ID='2' MasterShape='6'/><Shape ID='4294967295' MasterShape='7' Del='1'/></Shapes>",
                      "ID='1' Type='Group' Master='3'"),
      .masters = {{"Dot", Shape(kInCorner + kOnlyFill + kRectangle)},
                  {"Pair", Shape("<Shapes>" + Shape(Cell("PinX", "1"), "ID='6' Type='Shape' Master='2'") +
                                     Shape("", "ID='7' Type='Shape' Master='2'") + "</Shapes>",
                                 "ID='5' Type='Group'")}}};
  EXPECT_THAT(Painted(PictureOfText(text)), ElementsAre("fill 112233: M 1000,0 L 3000,0 L 3000,1000 L 1000,1000 L 1000,0"));
}

TEST(PictureInheritance, ColoursByNumberAndOfTheDrawing) {
  const auto fill = [](const std::string& colour, const std::string& document = "") {
    return PaintedOf(Shape(kInCorner + Cell("LinePattern", "0") + Cell("FillForegnd", colour) + kRectangle),
                     {.document = document})
        .at(0);
  };
  EXPECT_THAT(fill("2"), StartsWith("fill ff0000:"));
  EXPECT_THAT(fill("23"), StartsWith("fill 1a1a1a:"));
  EXPECT_THAT(fill("24", "<Colors><ColorEntry IX='24' RGB='#123456'/></Colors>"), StartsWith("fill 123456:"));
  EXPECT_THAT(fill("nonsense"), StartsWith("fill ffffff:")) << "what no one can read is white";
}

// --------------------------------------------------------------------------------------------------------- where it is

TEST(PicturePlaces, TurnsAndFlipsOfNestedGroups) {
  const auto place = [](double x, double y, double locX, double locY, double angle, bool flipX, bool flipY) {
    const auto text = [](double v) { return std::to_string(v); };
    return Cell("PinX", text(x)) + Cell("PinY", text(y)) + Cell("LocPinX", text(locX)) + Cell("LocPinY", text(locY)) +
           Cell("Angle", text(angle)) + Cell("FlipX", flipX ? "1" : "0") + Cell("FlipY", flipY ? "1" : "0");
  };
  // As the cells are defined: flipped about the pin, then turned about it.
  const auto moved = [](Point p, double x, double y, double locX, double locY, double angle, bool flipX, bool flipY) {
    const double dx = (p.x - locX) * (flipX ? -1 : 1), dy = (p.y - locY) * (flipY ? -1 : 1);
    return Point{x + dx * std::cos(angle) - dy * std::sin(angle), y + dx * std::sin(angle) + dy * std::cos(angle)};
  };
  for (int flips = 0; flips < 16; ++flips) {
    const bool fx = flips & 1, fy = flips & 2, gx = flips & 4, gy = flips & 8;
    const std::string shapes = Shape(place(5, 4, 1, 0.5, 0.7, gx, gy) + "<Shapes>" +
                                         Shape(kInCorner + kOnlyLine + place(1, 0.25, 0.5, 0.25, -0.3, fx, fy) +
                                                   Geometry(Row("MoveTo", 1, At("0", "0")) + Row("LineTo", 2, At("2", "1"))),
                                               "ID='2' Type='Shape'") +
                                         "</Shapes>",
                                     "ID='1' Type='Group'");
    const auto onPage = [&](Point p) { return moved(moved(p, 1, 0.25, 0.5, 0.25, -0.3, fx, fy), 5, 4, 1, 0.5, 0.7, gx, gy); };
    EXPECT_THAT(PaintedOf(shapes),
                ElementsAre("line 000000 10: M " + test::TextOf(onPage({0, 0})) + " L " + test::TextOf(onPage({2, 1}))))
        << flips;
  }
}

TEST(PicturePlaces, TheDrawingsScaleIsNotThatOfLinesAndTexts) {
  const PagePicture picture = PictureOfText(
      {.shapes = Shape(Cell("Width", "20") + Cell("Height", "10") + kOnlyLine + kRectangle +
                       "<Section N='Character'><Row IX='0'>" + Cell("Size", "0.2") + "</Row></Section><Text>x</Text>"),
       .pageSheet = "<PageSheet>" + Cell("PageWidth", "110") + Cell("PageHeight", "85") + Cell("PageScale", "0.1") +
                    Cell("DrawingScale", "1") + "</PageSheet>"});
  EXPECT_DOUBLE_EQ(picture.width, 11);
  EXPECT_DOUBLE_EQ(picture.height, 8.5);
  EXPECT_THAT(Painted(picture), ElementsAre("line 000000 10: M 0,0 L 2000,0 L 2000,1000 L 0,1000 L 0,0 Z",
                                            AllOf(StartsWith("text 000000 Arial 200 at 9"), testing::EndsWith(": x"))));
}

TEST(PicturePlaces, BackgroundsComeFirstAndHiddenThingsNotAtAll) {
  const auto box = [](int id, const std::string& colour, const std::string& more) {
    return Shape(kInCorner + Cell("LinePattern", "0") + Cell("FillForegnd", colour) + more + kRectangle,
                 "ID='" + std::to_string(id) + "' Type='Shape'");
  };
  const std::string layers = "<PageSheet><Section N='Layer'><Row IX='0'>" + Cell("Visible", "0") + "</Row><Row IX='1'>" +
                             Cell("Visible", "1") + Cell("Print", "0") + "</Row><Row IX='2'>" + Cell("Visible", "1") +
                             Cell("Print", "1") + Cell("Color", "4") + "</Row></Section></PageSheet>";
  const PagePicture picture =
      PictureOfText({.shapes = box(1, "#111111", Cell("LayerMember", "0")) + box(2, "#222222", Cell("LayerMember", "0;2")) +
                               box(3, "#333333", Cell("LayerMember", "1")) + box(4, "#444444", Cell("NonPrinting", "1")) +
                               box(5, "#555555", Cell("LayerMember", "9")),
                     .pageSheet = layers},
                    {.background = box(1, "#999999", "")});
  std::vector<std::string> colours;
  for (const std::string& line : Painted(picture)) colours.push_back(line.substr(5, 6));
  EXPECT_THAT(colours, ElementsAre("999999", "0000ff", "555555")) << "on paper; a layer's colour is its shapes'";
  std::vector<int> shapes;
  for (const Slice& slice : picture.slices) shapes.push_back(slice.ofBackground ? -slice.shape : slice.shape);
  EXPECT_THAT(shapes, ElementsAre(-1, 2, 3, 4, 5)) << "on the screen";
}

TEST(PicturePlaces, AGroupsOwnPathIsBehindItsMembersInFrontOrHidden) {
  const auto order = [](const std::string& mode) {
    const auto lines = PaintedOf(Shape(
        kInCorner + kOnlyFill + Cell("DisplayMode", mode) + kRectangle + "<Shapes>" +
            Shape(kInCorner + Cell("LinePattern", "0") + Cell("FillForegnd", "#ffffff") + kRectangle, "ID='2' Type='Shape'") +
            "</Shapes>",
        "ID='1' Type='Group'"));
    std::string colours;
    for (const std::string& line : lines) colours += line.substr(5, 6) + " ";
    return colours;
  };
  EXPECT_EQ(order("0"), "ffffff ");
  EXPECT_EQ(order("1"), "112233 ffffff ");
  EXPECT_EQ(order("2"), "ffffff 112233 ");
}

TEST(PicturePlaces, GuidesAreForTheScreen) {
  const PagePicture picture = PictureOfText(
      {.shapes = Shape(kInCorner + kOnlyLine + Geometry(Row("InfiniteLine", 1, At("0", "0") + Cell("A", "0") + Cell("B", "1"))),
                       "ID='1' Type='Guide'")});
  ASSERT_THAT(picture.slices, SizeIs(1));
  EXPECT_TRUE(picture.slices[0].isGuide);
  EXPECT_THAT(Painted(picture), IsEmpty());
}

TEST(PicturePlaces, ShapesThatLookAlikeShareTheirLook) {
  std::string shapes;
  for (int i = 1; i <= 3; ++i)
    shapes += Shape(Cell("PinX", std::to_string(i)) + (i == 3 ? Cell("FillForegnd", "#ff0000") : ""),
                    "ID='" + std::to_string(i) + "' Type='Shape' Master='2'");
  const PagePicture picture = PictureOfText({.shapes = shapes, .masters = {{"Box", Shape(kInCorner + kOnlyFill + kRectangle)}}});
  ASSERT_THAT(picture.slices, SizeIs(3));
  EXPECT_EQ(picture.slices[0].look, picture.slices[1].look);
  EXPECT_NE(picture.slices[0].look, picture.slices[2].look);
}

// ------------------------------------------------------------------------------------------------------ fills and lines

std::string Stops() {
  return "<Section N='FillGradient'><Row IX='0'>" + Cell("GradientStopColor", "#ff0000") + Cell("GradientStopPosition", "0") +
         "</Row><Row IX='1'>" + Cell("GradientStopColor", "#0000ff") + Cell("GradientStopColorTrans", "0.5") +
         Cell("GradientStopPosition", "1") + "</Row></Section>";
}

TEST(PictureFills, Gradients) {
  const std::string box = ": M 0,0 L 2000,0 L 2000,1000 L 0,1000 L 0,0", stops = " 0 ff0000 1000 0000ff/128";
  const auto gradient = [](const std::string& cells) {
    return PaintedOf(Shape(kInCorner + kOnlyFill + Cell("FillGradientEnabled", "1") + cells + Stops() + kRectangle));
  };
  EXPECT_THAT(gradient(""), ElementsAre("fill linear 0,500 to 2000,500" + stops + box));
  EXPECT_THAT(gradient(Cell("FillGradientAngle", std::to_string(kPi / 2))),
              ElementsAre("fill linear 1000,0 to 1000,1000" + stops + box));
  EXPECT_THAT(gradient(Cell("FillGradientAngle", std::to_string(kPi / 4))),
              ElementsAre("fill linear 250,-250 to 1750,1250" + stops + box))
      << "the corners are the gradient's ends";
  EXPECT_THAT(gradient(Cell("FillGradientDir", "3")), ElementsAre("fill radial 1000,500 to 2118,500" + stops + box));
  EXPECT_THAT(gradient(Cell("FillGradientDir", "2")), ElementsAre("fill radial 0,0 to 2236,0" + stops + box));
  EXPECT_THAT(
      gradient(Cell("FillGradientDir", "10")),
      ElementsAre("fill 0000ff/128" + box, "fill linear 1000,500 to 1000,0" + stops + box + " within M 1000,500 L 0,0 L 2000,0 Z",
                  "fill linear 1000,500 to 2000,500" + stops + box + " within M 1000,500 L 2000,0 L 2000,1000 Z",
                  "fill linear 1000,500 to 1000,1000" + stops + box + " within M 1000,500 L 2000,1000 L 0,1000 Z",
                  "fill linear 1000,500 to 0,500" + stops + box + " within M 1000,500 L 0,1000 L 0,0 Z"));
  EXPECT_THAT(gradient(Cell("FillGradientDir", "8")), SizeIs(3)) << "from a corner there are two sides";
  EXPECT_THAT(PaintedOf(Shape(kInCorner + kOnlyFill + Cell("FillGradientEnabled", "1") +
                              "<Section N='FillGradient'><Row IX='0' Del='1'/></Section>" + kRectangle)),
              ElementsAre("fill 112233" + box))
      << "without stops a plain fill";
  EXPECT_THAT(gradient(Cell("Angle", std::to_string(kPi / 2)) + Cell("RotateGradientWithShape", "0")),
              ElementsAre(HasSubstr("linear -1000,1000 to 0,1000")))
      << "level on the page";
}

TEST(PictureFills, PatternsAndTransparency) {
  const auto pattern = [](const std::string& number) {
    return PaintedOf(Shape(kInCorner + Cell("LinePattern", "0") + Cell("FillForegnd", "#112233") + Cell("FillBkgnd", "#ffffff") +
                           Cell("FillForegndTrans", "0.25") + Cell("FillPattern", number) + kRectangle));
  };
  EXPECT_THAT(pattern("0"), IsEmpty());
  EXPECT_THAT(pattern("1"), ElementsAre(StartsWith("fill 112233/191:")));
  EXPECT_THAT(pattern("7"), ElementsAre(StartsWith("fill hatch 7 112233/191 on ffffff:")));
  EXPECT_THAT(pattern("25"), ElementsAre(StartsWith("fill linear 0,500 to 2000,500 0 112233/191 1000 ffffff:")));
  EXPECT_THAT(pattern("29"), ElementsAre(HasSubstr(" 0 ffffff 500 112233/191 1000 ffffff:")));
  EXPECT_THAT(pattern("40"), ElementsAre(StartsWith("fill radial 1000,500")));
  EXPECT_THAT(pattern("99"), ElementsAre(StartsWith("fill 112233/191:")));
}

std::string Elbow() {
  return Geometry(Cell("NoFill", "1") + Row("MoveTo", 1, At("0", "0")) + Row("LineTo", 2, At("2", "0")) +
                  Row("LineTo", 3, At("2", "1")));
}

TEST(PictureLines, WeightsDashesAndTransparency) {
  const auto line = [](const std::string& cells) { return PaintedOf(Shape(kInCorner + kOnlyLine + cells + Elbow())); };
  const std::string path = ": M 0,0 L 2000,0 L 2000,1000";
  EXPECT_THAT(line(""), ElementsAre("line 000000 10" + path));
  EXPECT_THAT(line(Cell("LinePattern", "0") + Cell("EndArrow", "4")), IsEmpty()) << "no line, no arrow";
  EXPECT_THAT(line(Cell("LinePattern", "2") + Cell("LineWeight", "0.1")), ElementsAre("line 000000 100 600 300" + path));
  EXPECT_THAT(line(Cell("LinePattern", "4") + Cell("LineWeight", "0.001")), ElementsAre("line 000000 1 63 31 10 31" + path))
      << "a thin line's dashes are no shorter than those of three quarters of a point";
  EXPECT_THAT(line(Cell("LineColorTrans", "0.5")), ElementsAre("line 000000/128 10" + path));
  EXPECT_THAT(line(Cell("LinePattern", "254")), ElementsAre("line 000000 10" + path));
}

TEST(PictureLines, ArrowHeads) {
  const auto line = [](const std::string& cells) {
    return PaintedOf(Shape(kInCorner + Cell("LineColor", "#000000") + Cell("LineWeight", "0.02") + cells + Elbow()));
  };
  // Size 2 is 0.06 inches and three weights: 0.12.
  EXPECT_THAT(line(Cell("EndArrow", "4")),
              ElementsAre("line 000000 20: M 0,0 L 2000,0 L 2000,880", "fill 000000: M 2000,1000 L 1960,880 L 2040,880 Z"));
  EXPECT_THAT(line(Cell("BeginArrow", "4") + Cell("BeginArrowSize", "4")),
              ElementsAre("line 000000 20: M 240,0 L 2000,0 L 2000,1000", "fill 000000: M 0,0 L 240,-80 L 240,80 Z"));
  EXPECT_THAT(line(Cell("EndArrow", "1")),
              ElementsAre("line 000000 20: M 0,0 L 2000,0 L 2000,1000", "line 000000 20: M 1952,880 L 2000,1000 L 2048,880"))
      << "an open head leaves the line as long as it is";
  EXPECT_THAT(line(Cell("EndArrow", "14")),
              ElementsAre(StartsWith("line 000000 20: M 0,0 L 2000,0 L 2000,880"), StartsWith("fill ffffff: M 2000,1000"),
                          StartsWith("line 000000 20: M 2000,1000")));
  EXPECT_THAT(line(Cell("EndArrow", "10")), Contains(AllOf(StartsWith("fill 000000: M 2000,1042 C"), HasSubstr(" 2042,1000 "))))
      << "a dot around the end";
  EXPECT_THAT(line(Cell("EndArrow", "44")), Contains("fill 000000: M 2000,1000 L 1960,880 L 2040,880 Z"))
      << "an unknown one is the plain one";
  EXPECT_THAT(PaintedOf(Shape(kInCorner + kOnlyLine + Cell("EndArrow", "4") + kRectangle)), SizeIs(1))
      << "a closed path has no ends";
}

TEST(PictureLines, ShadowsFallTheSameWayHoweverAShapeIsTurned) {
  const auto shadow = [](const std::string& angle) {
    return PaintedOf(Shape(kInCorner + kOnlyFill + Cell("Angle", angle) + Cell("ShdwPattern", "1") +
                           Cell("ShdwForegnd", "#888888") + Cell("ShapeShdwOffsetX", "0.1") + Cell("ShapeShdwOffsetY", "-0.2") +
                           kRectangle))
        .at(0);
  };
  EXPECT_EQ(shadow("0"), "fill 888888: M 100,-200 L 2100,-200 L 2100,800 L 100,800 L 100,-200");
  EXPECT_EQ(shadow(std::to_string(kPi)), "fill 888888: M 100,-200 L -1900,-200 L -1900,-1200 L 100,-1200 L 100,-200");
}

// ---------------------------------------------------------------------------------------------------------------- texts

TEST(PictureTexts, RunsParagraphsAndFields) {
  const std::string formats = "<Section N='Character'><Row IX='0'>" + Cell("Font", "Calibri") + Cell("Size", "0.1") +
                              "</Row><Row IX='1'>" + Cell("Style", "3") + Cell("Color", "2") + Cell("Case", "1") +
                              "</Row></Section><Section N='Paragraph'><Row IX='0'>" + Cell("HorzAlign", "0") +
                              "</Row><Row IX='1'>" + Cell("HorzAlign", "2") + "</Row></Section>";
  const auto lines = PaintedOf(Shape(
      kInCorner + Cell("LinePattern", "0") + Cell("FillPattern", "0") + Cell("LeftMargin", "0") + Cell("RightMargin", "0") +
      formats + "<Text><cp IX='0'/><pp IX='0'/>left <cp IX='1'/>bold<cp IX='0'/>\n<pp IX='1'/><fld IX='0'>4 May</fld>\n</Text>"));
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_THAT(lines[0], AllOf(StartsWith("text 000000 Calibri 100 at 0,"), testing::EndsWith(": left ")));
  EXPECT_THAT(lines[1], AllOf(StartsWith("text ff0000 Arial 111 bold italic at "), testing::EndsWith(": BOLD")))
      << "what a row leaves out is the style's";
  EXPECT_THAT(lines[2], testing::EndsWith(": 4 May"));
}

TEST(PictureTexts, LinesBreakAtWordsAndWithinLongOnes) {
  const auto lines = [](const std::string& text, const std::string& width) {
    std::vector<std::string> runs;
    for (const std::string& line :
         PaintedOf(Shape(Cell("Width", width) + Cell("Height", "1") + Cell("LinePattern", "0") + Cell("FillPattern", "0") +
                         Cell("LeftMargin", "0") + Cell("RightMargin", "0") + "<Section N='Character'><Row IX='0'>" +
                         Cell("Font", "Courier New") + Cell("Size", "0.1") + "</Row></Section><Text>" + text + "</Text>")))
      runs.push_back(line.substr(line.rfind(": ") + 2));
    return runs;
  };
  // A character of this font is 0.06 inches wide.
  EXPECT_THAT(lines("one two three", "0.5"), ElementsAre("one two", "three"));
  EXPECT_THAT(lines("one two   three", "0.43"), ElementsAre("one two", "three")) << "blanks at the end take no room";
  EXPECT_THAT(lines("incomprehensible", "0.49"), ElementsAre("incompre", "hensible"));
  EXPECT_THAT(lines("well-known", "0.31"), ElementsAre("well-", "known"));
  EXPECT_THAT(lines("a\u2028b\nc", "5"), ElementsAre("a", "b", "c"));
  EXPECT_THAT(lines("never broken", "0"), ElementsAre("never broken"));
  EXPECT_THAT(lines("\u65e5\u672c\u8a9e\u65e5\u672c\u8a9e", "0.35"), ElementsAre("\u65e5\u672c\u8a9e", "\u65e5\u672c\u8a9e"));
}

TEST(PictureTexts, AreNeverMirrored) {
  const auto text = [](const std::string& cells) {
    const std::string line =
        PaintedOf(Shape(kInCorner + Cell("PinX", "3") + Cell("PinY", "3") + Cell("LocPinX", "1") + Cell("LocPinY", "0.5") +
                        Cell("LinePattern", "0") + Cell("FillPattern", "0") + cells + "<Text>middle</Text>"))
            .at(0);
    return line.substr(0, line.find(':'));
  };
  const std::string plain = text("");
  EXPECT_THAT(plain, StartsWith("text 000000 Arial 111 at "));
  EXPECT_EQ(text(Cell("FlipX", "1")), plain);
  EXPECT_EQ(text(Cell("FlipY", "1")), plain);
  EXPECT_THAT(text(Cell("Angle", std::to_string(kPi / 2))), HasSubstr(" turned 90 "));
  EXPECT_THAT(text(Cell("TxtAngle", std::to_string(kPi / 6))), HasSubstr(" turned 30 "));
  EXPECT_THAT(text(Cell("TxtAngle", std::to_string(kPi / 6)) + Cell("FlipX", "1")), HasSubstr(" turned -30 "));
  EXPECT_THAT(text(Cell("TextDirection", "1")), HasSubstr(" turned -90 "));
}

TEST(PictureTexts, GroundsAndHiddenTexts) {
  const auto lines = [](const std::string& cells) {
    return PaintedOf(Shape(kInCorner + Cell("LinePattern", "0") + Cell("FillPattern", "0") + cells + "<Text>a\nb</Text>"));
  };
  EXPECT_THAT(lines(Cell("HideText", "1")), IsEmpty());
  EXPECT_THAT(lines(Cell("TextBkgnd", "2")), Contains("ground ffffff").Times(2)) << "the index and one, behind every line";
  EXPECT_THAT(lines(Cell("TextBkgnd", "#abcdef")), Contains("ground abcdef").Times(2));
  EXPECT_THAT(lines(Cell("TextBkgnd", "0")), SizeIs(2));
}

TEST(PictureTexts, AFrameAsLargeAsItsTextIsMeasured) {
  const auto lines =
      PaintedOf(Shape(kInCorner + Cell("LinePattern", "0") + Cell("FillPattern", "0") +
                      "<Cell N='TxtWidth' V='0.1' F='MAX(TEXTWIDTH(TheText),5*Char.Size)'/>" +
                      "<Cell N='TxtHeight' V='0.1' F='TEXTHEIGHT(TheText,TxtWidth)'/><Text>all in one line</Text>"));
  EXPECT_THAT(lines, ElementsAre(testing::EndsWith(": all in one line"))) << "the stored width would break it";
}

// --------------------------------------------------------------------------------------------------- theme and pictures

TEST(PictureTheme, ThemedCellsAreTheThemes) {
  const std::string theme =
      "<a:theme xmlns:a='http://a' xmlns:vt='http://vt'><a:themeElements><a:clrScheme><a:dk1><a:srgbClr "
      "val='000000'/></a:dk1><a:lt1><a:srgbClr "
      "val='ffffff'/></a:lt1><a:accent1><a:srgbClr val='0000ff'/></a:accent1><a:extLst><a:ext><vt:schemeID "
      "schemeEnum='33'/></a:ext><a:ext>"
      "<vt:variationClrSchemeLst><vt:variationClrScheme><vt:varColor1><a:srgbClr "
      "val='ff0000'/></vt:varColor1><vt:varColor2><a:srgbClr "
      "val='00ff00'/></vt:varColor2></vt:variationClrScheme><vt:variationClrScheme monotone='1'><vt:varColor1><a:srgbClr "
      "val='aa0000'/></vt:varColor1><vt:varColor2><a:srgbClr val='00aa00'/></vt:varColor2></vt:variationClrScheme>"
      "</vt:variationClrSchemeLst></a:ext></a:extLst></a:clrScheme><a:fmtScheme><a:fillStyleLst><a:solidFill><a:schemeClr "
      "val='phClr'/>"
      "</a:solidFill><a:solidFill><a:schemeClr val='phClr'><a:shade "
      "val='50000'/></a:schemeClr></a:solidFill></a:fillStyleLst><a:lnStyleLst>"
      "<a:ln w='45720'><a:solidFill><a:schemeClr "
      "val='lt1'/></a:solidFill></a:ln></a:lnStyleLst></a:fmtScheme><vt:fmtConnectorScheme>"
      "<a:fillStyleLst/><a:lnStyleLst><a:ln w='91440'><a:solidFill><a:schemeClr val='phClr'/></a:solidFill></a:ln></a:lnStyleLst>"
      "</vt:fmtConnectorScheme><vt:fontStyles><vt:fontProps><vt:color><a:schemeClr "
      "val='phClr'/></vt:color></vt:fontProps></vt:fontStyles></a:themeElements></a:theme>";
  std::string themed;
  for (const char* cell : {"FillForegnd", "FillPattern", "LineColor", "LineWeight", "LinePattern"})
    themed += Cell(cell, "Themed");
  const auto sheet = [](const std::string& number) {
    std::string cells;
    for (const char* cell : {"ThemeIndex", "ColorSchemeIndex", "EffectSchemeIndex", "ConnectorSchemeIndex", "FontSchemeIndex"})
      cells += Cell(cell, number);
    return cells;
  };
  const std::string ofPage = sheet("65534");
  const auto painted = [&](const std::string& cells, const std::string& page) {
    std::vector<std::string> lines = Painted(PictureOfText(
        {.shapes = Shape(kInCorner + themed + ofPage + cells + kRectangle), .pageSheet = "<PageSheet>" + page + "</PageSheet>"},
        {.theme = theme}));
    for (std::string& line : lines) line.resize(line.find(':'));
    return lines;
  };
  const std::string matrices = Cell("QuickStyleFillMatrix", "1") + Cell("QuickStyleLineMatrix", "1");
  EXPECT_THAT(painted(matrices + Cell("QuickStyleFillColor", "100"), sheet("33")), ElementsAre("fill ff0000", "line ffffff 50"));
  for (const auto& [colour, variant, fill] : {std::tuple("101", "0", "fill 00ff00"),
                                              {"201", "0", "fill 00ff00"},
                                              {"101", "1", "fill aa0000"},
                                              {"201", "1", "fill 00aa00"}})
    EXPECT_THAT(painted(matrices + Cell("QuickStyleFillColor", colour) + Cell("VariationColorIndex", variant), sheet("33")),
                Contains(fill))
        << "a variant of one tone gives its first colour, unless another is fixed";
  EXPECT_THAT(painted(matrices + Cell("QuickStyleFillColor", "2"), sheet("33")), ElementsAre("fill 0000ff", "line ffffff 50"));
  EXPECT_THAT(painted(Cell("QuickStyleFillMatrix", "2") + Cell("QuickStyleLineMatrix", "1") + Cell("QuickStyleFillColor", "2"),
                      sheet("33")),
              ElementsAre("fill 0000bc", "line ffffff 50"))
      << "half the light";
  EXPECT_THAT(painted(matrices + Cell("QuickStyleLineColor", "2") + Cell("BeginX", "0"), sheet("33")),
              Contains("line 0000ff 100"))
      << "lines of connectors have their own list";
  const std::string text = Cell("FillPattern", "0") + Cell("LinePattern", "0") + Cell("QuickStyleFontColor", "1") +
                           Cell("QuickStyleFontMatrix", "1") + Cell("QuickStyleFillColor", "2") +
                           "<Section N='Character'><Row IX='0'>" + Cell("Color", "Themed") + "</Row></Section><Text>x</Text>";
  EXPECT_THAT(painted(text, sheet("33")), ElementsAre(StartsWith("text ffffff ")));
  EXPECT_THAT(painted(text + Cell("QuickStyleVariation", "2"), sheet("33")), ElementsAre(StartsWith("text 0000ff ")))
      << "white on white paper gives way to the fill's colour";
  EXPECT_THAT(painted(matrices, ""), ElementsAre("fill ffffff", "line 000000 10")) << "a page without a theme";
  EXPECT_THAT(painted(matrices, sheet("99")), ElementsAre("fill ffffff", "line 000000 10")) << "a theme that the file has not";
}

TEST(PictureImages, AreKeptAndStandInsAreNoted) {
  const std::string png = "\x89PNG\r\n\x1a\n and so on";
  const auto foreign = [](const std::string& kind) {
    return Shape(kInCorner + Cell("LinePattern", "0") + Cell("FillPattern", "0") + "<ForeignData ForeignType='" + kind +
                     "'><Rel r:id='rId9'/></ForeignData>",
                 "ID='1' Type='Foreign'");
  };
  EXPECT_THAT(PaintedOf(foreign("Bitmap"), {.image = png}), ElementsAre("image image/png 18: 0,0 2000,1000"));
  EXPECT_THAT(PaintedOf(foreign("Bitmap") + "", {.image = png}), SizeIs(1));
  const PagePicture metafile = PictureOfText({.shapes = foreign("EnhMetaFile")}, {.image = "no image"});
  EXPECT_THAT(Painted(metafile), ElementsAre(StartsWith("line 808080"), "ground ffffff", testing::EndsWith(": Picture (PNG)")));
  ASSERT_THAT(metafile.notes, SizeIs(1));
  EXPECT_EQ(metafile.notes[0].sentence, "Picture (PNG) is painted as a frame.");
  EXPECT_THAT(PaintedOf(foreign("Object"), {.image = "no image"}), Contains(testing::EndsWith(": Embedded object")));
}

// ------------------------------------------------------------------------------------------------------------------ SVG

TEST(PictureSvg, OfASmallDrawing) {
  const PagePicture picture =
      PictureOfText({.shapes = Shape(kInCorner + Cell("FillForegnd", "#112233") + Cell("FillForegndTrans", "0.5") +
                                     Cell("LineColor", "#000000") + Cell("LineWeight", "0.02") + Cell("LinePattern", "10") +
                                     kRectangle + "<Section N='Character'><Row IX='0'>" + Cell("Font", "Calibri") +
                                     Cell("Size", "0.125") + "</Row></Section><Text>A &amp; B</Text>"),
                     .pageSheet = "<PageSheet>" + Cell("PageWidth", "3") + Cell("PageHeight", "2") + "</PageSheet>"});
  EXPECT_EQ(SvgOf(picture, 2),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"576\" height=\"384\" viewBox=\"0 0 288 192\">\n"
            "<title>Page-1</title>\n"
            "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n"
            "<g id=\"shape1\"><title>Sheet.1</title>\n"
            "<path d=\"M0 192L192 192L192 96L0 96L0 192\" fill-rule=\"evenodd\" fill=\"#112233\" fill-opacity=\"0.502\"/>\n"
            "<path d=\"M0 192L192 192L192 96L0 96L0 192Z\" fill=\"none\" stroke=\"#000000\" stroke-width=\"1.92\" "
            "stroke-linecap=\"round\" stroke-linejoin=\"round\" stroke-dasharray=\"1.92 3.84\"/>\n"
            "<g><text x=\"82.458\" y=\"147\" font-family=\"'Calibri', 'Carlito', sans-serif\" font-size=\"12\" fill=\"#000000\" "
            "textLength=\"27.084\" xml:space=\"preserve\">A &amp; B</text></g>\n"
            "</g>\n"
            "</svg>\n");
}

// ------------------------------------------------------------------------------------------------------------ real files

TEST(PictureSamples, EveryDrawingIsPainted) {
  const char* folder = std::getenv("VARDO_SAMPLES");
  if (!folder) GTEST_SKIP() << "VARDO_SAMPLES names no folder of drawings";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.path().extension().string().starts_with(".vs")) continue;
    SCOPED_TRACE(entry.path().filename().string());
    const auto drawing = Drawing::Open(entry.path());
    for (int i = 1; i <= drawing->PageCount(); ++i) {
      const PagePicture picture = PictureOf(*drawing, drawing->PageAt(i));
      EXPECT_GT(picture.width, 0);
      EXPECT_THAT(SvgOf(picture), testing::EndsWith("</svg>\n"));
      for (const Slice& slice : picture.slices) EXPECT_TRUE(std::isfinite(slice.box.width() + slice.box.height())) << slice.shape;
    }
  }
}

}  // namespace
}  // namespace vardo::picture
