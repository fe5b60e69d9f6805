#include "stencil/MasterIcon.h"

#include "stencil/LookPath.h"
#include "stencil/MasterShapes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <utility>
#include <vector>

namespace vardo {
namespace {

constexpr int kPixels = 32;  // a side

// Places of an icon are in pixels, y downwards; lines are one pixel wide and lead through the middles of pixels.
using Line = std::vector<Place>;
using Lines = std::vector<Line>;
struct Frame {
  double left, top, width, height;
};

struct IconPicture {
  std::string_view colour;
  Lines paper{};   // closed, filled with white
  Lines lines{};   // drawn in the colour
  Lines solids{};  // closed, filled with the colour
};

// ---------------------------------------------------------------------------------------------------------- geometry

Place CurveAt(Place from, const PathStep& curve, double t) {
  const double u = 1 - t, a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
  return {a * from.x + b * curve.control1.x + c * curve.control2.x + d * curve.to.x,
          a * from.y + b * curve.control1.y + c * curve.control2.y + d * curve.to.y};
}

Lines LinesOf(std::string_view path) {
  constexpr int kPieces = 16;  // of a curve
  Lines lines;
  for (const PathStep& step : StepsOf(path)) {
    if (step.kind == PathStep::Kind::Move) lines.emplace_back();
    if (step.kind == PathStep::Kind::Curve) {
      const Place from = lines.back().back();
      for (int piece = 1; piece < kPieces; ++piece)
        lines.back().push_back(CurveAt(from, step, static_cast<double>(piece) / kPieces));
    }
    lines.back().push_back(step.to);
  }
  return lines;
}

// Lines in parts of a shape's size, the shape being as large as the frame.
Lines Framed(Lines lines, const Frame& frame) {
  for (Line& line : lines)
    for (Place& place : line) place = {frame.left + place.x * frame.width, frame.top + (1 - place.y) * frame.height};
  return lines;
}

// The frame in the middle of the icon.
Frame Centred(double width, double height) { return {(kPixels - width) / 2, (kPixels - height) / 2, width, height}; }

// With the odd number of pixels below, so that both edges lead through the middles of pixels.
double Odd(double size) { return 2 * std::floor((size - 1) / 2) + 1; }

double PixelMiddle(double value) { return std::floor(value) + 0.5; }

double Distance(Place p, Place a, Place b) {
  const double x = b.x - a.x, y = b.y - a.y, length = x * x + y * y;
  const double along = length == 0 ? 0 : std::clamp(((p.x - a.x) * x + (p.y - a.y) * y) / length, 0.0, 1.0);
  return std::hypot(p.x - a.x - along * x, p.y - a.y - along * y);
}

bool IsOn(Place p, const Lines& lines) {
  constexpr double kHalfWidth = 0.51;  // so that no rounding leaves gaps
  for (const Line& line : lines)
    for (size_t i = 1; i < line.size(); ++i)
      if (Distance(p, line[i - 1], line[i]) <= kHalfWidth) return true;
  return false;
}

bool IsWithin(Place p, const Lines& outlines) {
  bool within = false;
  for (const Line& line : outlines)
    for (size_t i = 0; i < line.size(); ++i) {
      const Place a = line[i], b = line[(i + 1) % line.size()];
      if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y)) within = !within;
    }
  return within;
}

// ----------------------------------------------------------------------------------------------------------- colours

using Rgb = std::array<int, 3>;
constexpr std::array<Rgb, 16> kPalette{{{0, 0, 0},
                                        {128, 0, 0},
                                        {0, 128, 0},
                                        {128, 128, 0},
                                        {0, 0, 128},
                                        {128, 0, 128},
                                        {0, 128, 128},
                                        {128, 128, 128},
                                        {192, 192, 192},
                                        {255, 0, 0},
                                        {0, 255, 0},
                                        {255, 255, 0},
                                        {0, 0, 255},
                                        {255, 0, 255},
                                        {0, 255, 255},
                                        {255, 255, 255}}};
constexpr std::uint8_t kBlack = 0, kWhite = 15;

Rgb ColourOf(std::string_view text) {
  Rgb colour{};
  for (size_t i = 0; i < colour.size(); ++i) std::from_chars(&text[1 + 2 * i], &text[3 + 2 * i], colour[i], 16);
  return colour;
}

// The dark colour of the palette that has the hue; black for greys.
std::uint8_t NearestDark(Rgb colour) {
  const auto [low, high] = std::ranges::minmax(colour);
  if (low == high) return kBlack;
  for (int& part : colour) part = (part - low) * 128 / (high - low);
  const auto distance = [&](const Rgb& other) {
    int sum = 0;
    for (size_t i = 0; i < colour.size(); ++i) sum += (colour[i] - other[i]) * (colour[i] - other[i]);
    return sum;
  };
  return static_cast<std::uint8_t>(std::ranges::min_element(kPalette, {}, distance) - kPalette.begin());
}

// ------------------------------------------------------------------------------------------------------------ pixels

struct Pixel {
  std::uint8_t colour = kBlack;  // black where it is transparent, as the host's icons have it
  bool isTransparent = true;
};
using Pixels = std::array<std::array<Pixel, kPixels>, kPixels>;  // rows from above

Pixels Paint(const IconPicture& picture) {
  const std::uint8_t ink = NearestDark(ColourOf(picture.colour));
  Pixels pixels;
  for (size_t y = 0; y < kPixels; ++y)
    for (size_t x = 0; x < kPixels; ++x) {
      const Place middle{static_cast<double>(x) + 0.5, static_cast<double>(y) + 0.5};
      if (IsOn(middle, picture.lines) || IsWithin(middle, picture.solids))
        pixels[y][x] = {ink, false};
      else if (IsWithin(middle, picture.paper))
        pixels[y][x] = {kWhite, false};
    }
  return pixels;
}

// -------------------------------------------------------------------------------------------------------------- file

void AppendNumber(std::string& bytes, std::uint32_t number, int size) {
  for (; size > 0; --size, number >>= 8) bytes += static_cast<char>(number & 0xFF);
}

// The rows from below, each pixel a number of bits, the first in the highest.
template <typename ValueOf>
void AppendRows(std::string& bytes, const Pixels& pixels, int bits, ValueOf valueOf) {
  for (auto row = pixels.rbegin(); row != pixels.rend(); ++row)
    for (size_t x = 0; x < kPixels;) {
      unsigned byte = 0;
      for (int filled = 0; filled < 8; filled += bits) byte = byte << bits | valueOf((*row)[x++]);
      bytes += static_cast<char>(byte);
    }
}

// An icon file of one image: a bitmap of four bits a pixel and a mask of one.
std::string IconFile(const Pixels& pixels) {
  constexpr int kBits = 4, kFileHeader = 22, kBitmapHeader = 40;
  constexpr int kRows = kPixels * kPixels * kBits / 8, kMask = kPixels * kPixels / 8;
  constexpr int kImage = kBitmapHeader + static_cast<int>(kPalette.size()) * 4 + kRows + kMask;
  std::string bytes;
  const auto append = [&](std::initializer_list<std::pair<int, int>> fields) {
    for (const auto& [number, size] : fields) AppendNumber(bytes, static_cast<std::uint32_t>(number), size);
  };
  append({{0, 2}, {1, 2}, {1, 2}});  // an icon file with one image
  append({{kPixels, 1},
          {kPixels, 1},
          {static_cast<int>(kPalette.size()), 1},
          {0, 1},
          {0, 2},
          {0, 2},
          {kImage, 4},
          {kFileHeader, 4}});
  append({{kBitmapHeader, 4}, {kPixels, 4}, {2 * kPixels, 4}, {1, 2}, {kBits, 2}, {0, 4}, {kRows + kMask, 4}});
  append({{0, 4}, {0, 4}, {0, 4}, {0, 4}});  // no measures, no number of colours
  for (const Rgb& colour : kPalette) append({{colour[2], 1}, {colour[1], 1}, {colour[0], 1}, {0, 1}});
  AppendRows(bytes, pixels, kBits, [](const Pixel& pixel) { return static_cast<unsigned>(pixel.colour); });
  AppendRows(bytes, pixels, 1, [](const Pixel& pixel) { return static_cast<unsigned>(pixel.isTransparent); });
  return bytes;
}

std::string InBase64Lines(const std::string& bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  constexpr size_t kColumns = 76;
  std::string text;
  size_t column = 0;
  const auto put = [&](char digit) {
    if (column++ % kColumns == 0) text += '\n';
    text += digit;
  };
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t given = std::min<size_t>(3, bytes.size() - i);
    std::uint32_t three = 0;
    for (size_t k = 0; k < 3; ++k) three = three << 8 | (k < given ? static_cast<unsigned char>(bytes[i + k]) : 0u);
    for (size_t k = 0; k < 4; ++k) put(k <= given ? kDigits[three >> (18 - 6 * k) & 63] : '=');
  }
  return text;
}

std::string IconOf(const IconPicture& picture) { return InBase64Lines(IconFile(Paint(picture))); }

// The symbol, as large as fits on a card.
Lines EnlargedSymbol(const ModuleLook& look) {
  constexpr double kWidth = 19, kHeight = 15, kMiddle = kPixels / 2.0;
  Lines lines = Framed(LinesOf(look.symbol), {0, 0, look.width, look.height});
  Place least = lines[0][0], most = least;
  for (const Line& line : lines)
    for (const Place& place : line) {
      least = {std::min(least.x, place.x), std::min(least.y, place.y)};
      most = {std::max(most.x, place.x), std::max(most.y, place.y)};
    }
  const double scale = std::min(kWidth / (most.x - least.x), kHeight / (most.y - least.y));
  const auto toPixels = [&](double value, double low, double high) {
    return PixelMiddle(kMiddle + (value - (low + high) / 2) * scale);
  };
  for (Line& line : lines)
    for (Place& place : line) place = {toPixels(place.x, least.x, most.x), toPixels(place.y, least.y, most.y)};
  return lines;
}

constexpr double kIconWidth = 29;

}  // namespace

std::string IconOf(const ModuleLook& look) {
  constexpr double kCardHeight = 25;
  const bool isCard = !look.symbol.empty();
  const double height = isCard ? kCardHeight : Odd(kIconWidth / look.width * look.height);
  IconPicture picture{.colour = look.colours.line, .paper = Framed(LinesOf(look.outline), Centred(kIconWidth, height))};
  picture.lines = picture.paper;
  if (isCard) std::ranges::move(EnlargedSymbol(look), std::back_inserter(picture.lines));
  return IconOf(picture);
}

std::string ConnectorIcon(std::string_view colour) {
  constexpr double kHeight = 15, kHeadLength = 8, kHeadHalf = 4.5;
  const Frame frame = Centred(kIconWidth, kHeight);
  Line way;
  for (const Place& corner : ConnectorWay())
    way.push_back({PixelMiddle(frame.left + corner.x * frame.width), PixelMiddle(frame.top + corner.y * frame.height)});
  const Place tip = way.back();
  way.back().x -= kHeadLength / 2;  // the line ends within the head
  const Line head{{tip.x - kHeadLength, tip.y - kHeadHalf}, {tip.x, tip.y}, {tip.x - kHeadLength, tip.y + kHeadHalf}};
  return IconOf({.colour = colour, .lines = {way}, .solids = {head}});
}

}  // namespace vardo
