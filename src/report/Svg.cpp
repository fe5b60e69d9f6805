#include "report/Svg.h"

#include "base/Numbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace vardo {
namespace {

// Of a plot in its own units; small enough for a phone to show it at its size.
constexpr double kWidth = 420, kHeight = 240;
constexpr double kLeft = 52, kRight = 12, kTop = 12, kBottom = 40;
constexpr double kRowHeight = 40, kBarHeight = 14;
constexpr double kCharacter = 6.6;  // about as wide as one is

std::string Text(double x, double y, std::string_view anchor, std::string_view text) {
  return fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\">{}</text>", x, y, anchor, HtmlText(text));
}

std::string Rectangle(double x, double y, double width, double height, std::string_view style, std::string_view title = "") {
  const std::string within = title.empty() ? "" : fmt::format("<title>{}</title>", HtmlText(title));
  return fmt::format("<rect class=\"{}\" x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\">{}</rect>\n", style, x, y,
                     std::max(width, 0.0), height, within);
}

std::string LineBetween(double x1, double y1, double x2, double y2, std::string_view style) {
  return fmt::format("<line class=\"{}\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\"/>\n", style, x1, y1, x2, y2);
}

std::string Drawing(const PlotWords& words, double width, double height, const std::string& drawn) {
  return fmt::format(
      "<figure><svg viewBox=\"0 0 {:.0f} {:.0f}\" role=\"img\" "
      "aria-label=\"{}\">\n{}</svg><figcaption>{}</figcaption></figure>\n",
      width, height, HtmlText(words.title + ". " + words.inWords), drawn, HtmlText(words.title));
}

// Not wider than that.
std::string Shortened(std::string_view text, double width) {
  const auto most = static_cast<size_t>(width / kCharacter);
  if (text.size() <= most) return std::string(text);
  size_t end = most - 1;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0u) == 0x80u) --end;
  return std::string(text.substr(0, end)) + "\u2026";
}

}  // namespace

std::vector<double> RoundTicks(PlotRange range, int most) {
  const double span = range.high - range.low;
  if (!(span > 0) || most < 1) return {range.low};
  const double power = std::pow(10, std::floor(std::log10(span / most)));
  double step = 0;
  for (const double factor : {1., 2., 5., 10., 20.}) {
    step = power * factor;
    if (std::floor(range.high / step) - std::ceil(range.low / step) + 1 <= most) break;
  }
  std::vector<double> ticks;
  const double first = std::ceil(range.low / step - 1e-9), last = std::floor(range.high / step + 1e-9);
  for (double tick = first; tick <= last; ++tick) ticks.push_back(tick * step + 0.0);
  return ticks;
}

std::string PlotNumber(double x, int digits) { return fmt::format("{:.{}g}", x, digits); }

std::string HtmlText(std::string_view text) {
  std::string html;
  for (const char character : text) {
    switch (character) {
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '&':
        html += "&amp;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += character;
    }
  }
  return html;
}

// ------------------------------------------------------------------------------------------------------ two axes

Plot::Plot(PlotWords words, PlotRange x, PlotRange y) : words_(std::move(words)), x_(x), y_(y) {
  if (!(x_.high > x_.low)) x_.high = x_.low + 1;
  if (!(y_.high > y_.low)) y_.high = y_.low + 1;
}

double Plot::X(double x) const { return kLeft + (kWidth - kLeft - kRight) * (x - x_.low) / (x_.high - x_.low); }
double Plot::Y(double y) const { return kHeight - kBottom - (kHeight - kTop - kBottom) * (y - y_.low) / (y_.high - y_.low); }

std::string Plot::Points(const std::vector<double>& x, const std::vector<double>& y, bool backwards) const {
  std::string points;
  for (size_t i = 0; i < x.size(); ++i) {
    const size_t at = backwards ? x.size() - 1 - i : i;
    if (std::isfinite(y[at])) points += fmt::format("{:.1f},{:.1f} ", X(x[at]), Y(y[at]));
  }
  return points;
}

void Plot::Band(const std::vector<double>& x, const std::vector<double>& low, const std::vector<double>& high) {
  drawn_ += fmt::format("<polygon class=\"band\" points=\"{}{}\"/>\n", Points(x, low, false), Points(x, high, true));
}

void Plot::Line(const std::vector<double>& x, const std::vector<double>& y) {
  drawn_ += fmt::format("<polyline class=\"line\" points=\"{}\"/>\n", Points(x, y, false));
}

void Plot::Dot(double x, double y) {
  drawn_ += fmt::format("<circle class=\"dot\" cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"3\"/>\n", X(x), Y(y));
}

void Plot::Bar(PlotRange x, double height) {
  const double left = X(x.low), top = Y(height);
  drawn_ += Rectangle(left, top, X(x.high) - left - 0.6, Y(0) - top, "c0");
}

void Plot::Mark(double x, std::string_view name) {
  drawn_ += LineBetween(X(x), kTop, X(x), Y(y_.low), "mark");
  const bool isLeft = X(x) > kWidth / 2;
  drawn_ += ::vardo::Text(X(x) + (isLeft ? -4 : 4), kTop + 10, isLeft ? "end" : "start", name);
}

void Plot::Interval(double y, PlotRange around) {
  if (std::isfinite(around.low)) {
    const double top = Y(around.high);
    drawn_ += Rectangle(kLeft, top, kWidth - kLeft - kRight, Y(around.low) - top, "band");
  }
  drawn_ += LineBetween(kLeft, Y(y), kWidth - kRight, Y(y), "line");
}

std::string Plot::Axes() const {
  std::string axes;
  for (const double tick : RoundTicks(y_, 5)) {
    axes += LineBetween(kLeft, Y(tick), kWidth - kRight, Y(tick), "grid");
    axes += ::vardo::Text(kLeft - 5, Y(tick) + 4, "end", PlotNumber(tick)) + "\n";
  }
  for (const double tick : RoundTicks(x_, 6)) {
    axes += LineBetween(X(tick), Y(y_.low), X(tick), Y(y_.low) + 4, "axis");
    axes += ::vardo::Text(X(tick), Y(y_.low) + 16, "middle", PlotNumber(tick)) + "\n";
  }
  axes += LineBetween(kLeft, Y(y_.low), kWidth - kRight, Y(y_.low), "axis");
  axes += ::vardo::Text((kLeft + kWidth - kRight) / 2, kHeight - 6, "middle", words_.x) + "\n";
  const double middle = (kTop + kHeight - kBottom) / 2;
  return axes + fmt::format("<text transform=\"translate(12,{:.1f}) rotate(-90)\" text-anchor=\"middle\">{}</text>\n", middle,
                            HtmlText(words_.y));
}

std::string Plot::Text() const { return Drawing(words_, kWidth, kHeight, Axes() + drawn_); }

// ------------------------------------------------------------------------------------------------------ bars with names

BarPlot::BarPlot(PlotWords words, double most) : words_(std::move(words)), most_(most > 0 ? most : 1) {}

void BarPlot::Row(std::string_view name, std::string_view value, const std::vector<Part>& parts, double uncertain) {
  constexpr double kAll = kWidth - 24;
  const double top = kRowHeight * rows_++;
  const auto wide = [&](double size) { return kAll * size / most_; };
  const double room = kAll - kCharacter * static_cast<double>(value.size()) - 12;
  drawn_ += ::vardo::Text(12, top + 16, "start", Shortened(name, room));
  drawn_ += ::vardo::Text(12 + kAll, top + 16, "end", value) + "\n";
  drawn_ += Rectangle(12, top + 21, kAll, kBarHeight, "empty");
  double end = 0;
  for (const Part& part : parts) {
    drawn_ += Rectangle(12 + wide(end), top + 21, wide(part.size), kBarHeight, fmt::format("c{}", part.colour));
    end += part.size;
  }
  if (uncertain > 0) {
    const double y = top + 21 + kBarHeight / 2;
    drawn_ +=
        LineBetween(12 + wide(std::max(end - uncertain, 0.0)), y, 12 + wide(std::min(end + uncertain, most_)), y, "whisker");
  }
}

std::string BarPlot::Text() const { return Drawing(words_, kWidth, kRowHeight * rows_ + 4, drawn_); }

}  // namespace vardo
