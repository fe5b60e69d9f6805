// Plots as SVG within a page. What is drawn has classes, and the page's style sheet gives them colours.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vardo {

struct PlotRange {
  double low = 0, high = 1;
};

// Round numbers from within the range, at most so many: 0, 20, 40.
std::vector<double> RoundTicks(PlotRange range, int most);
// At most so many digits, without the blanks and zeros that a table has.
std::string PlotNumber(double x, int digits = 6);
// With <, > and & as entities.
std::string HtmlText(std::string_view text);

struct PlotWords {
  std::string title;
  std::string inWords;  // what a person who cannot see the plot is told
  std::string x, y;     // what the axes show
};

// Points over two axes with round ticks.
class Plot {
 public:
  Plot(PlotWords words, PlotRange x, PlotRange y);

  // Between two lines; points that are not finite are left out.
  void Band(const std::vector<double>& x, const std::vector<double>& low, const std::vector<double>& high);
  void Line(const std::vector<double>& x, const std::vector<double>& y);
  void Dot(double x, double y);
  void Bar(PlotRange x, double height);
  // A vertical line with its name.
  void Mark(double x, std::string_view name);
  // A horizontal line, and what may be as true.
  void Interval(double y, PlotRange around);
  std::string Text() const;

 private:
  double X(double x) const;
  double Y(double y) const;
  std::string Points(const std::vector<double>& x, const std::vector<double>& y, bool backwards) const;
  std::string Axes() const;

  PlotWords words_;
  PlotRange x_, y_;
  std::string drawn_;
};

// Names with bars below them, from 0 to the largest number.
class BarPlot {
 public:
  // most: what the whole width stands for.
  BarPlot(PlotWords words, double most);

  struct Part {
    double size = 0;
    int colour = 0;  // of 8
  };
  // The parts follow each other. uncertain: half the width of a line around the end of the last; 0 or NaN for none.
  void Row(std::string_view name, std::string_view value, const std::vector<Part>& parts, double uncertain);
  std::string Text() const;

 private:
  PlotWords words_;
  double most_;
  int rows_ = 0;
  std::string drawn_;
};

}  // namespace vardo
