#include "picture/SvgWriter.h"

#include "picture/FontSubstitutes.h"
#include "picture/LinePatterns.h"
#include "picture/Painter.h"

#include <charconv>
#include <cmath>
#include <map>
#include <string_view>

namespace vardo::picture {
namespace {

constexpr double kMitreLimit = 4;

// At most three digits behind the point.
void AppendNumber(std::string& out, double value) {
  char text[48];
  const double rounded = std::round(value * 1000) / 1000;
  out.append(text, std::to_chars(text, text + sizeof text, rounded == 0 ? 0 : rounded).ptr);
}

std::string Number(double value) {
  std::string text;
  AppendNumber(text, value);
  return text;
}

// Control characters cannot stand in the file and are left out.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else if (c == '"')
      escaped += "&quot;";
    else if (static_cast<unsigned char>(c) >= 0x20 || c == '\t')
      escaped += c;
  }
  return escaped;
}

std::string Base64(std::string_view bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k) group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0);
    for (size_t k = 0; k < 4; ++k) text += i + k <= bytes.size() ? kDigits[group >> (18 - 6 * k) & 63] : '=';
  }
  return text;
}

std::string HexColour(Rgba colour) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const std::uint8_t part : {colour.r, colour.g, colour.b}) {
    text += kDigits[part >> 4];
    text += kDigits[part & 15];
  }
  return text;
}

// name="#rrggbb", and the opacity where it is less than whole.
std::string ColourAttributes(std::string_view name, std::string_view opacity, Rgba colour) {
  std::string text = " " + std::string(name) + "=\"" + HexColour(colour) + "\"";
  if (colour.a != 255) text += " " + std::string(opacity) + "=\"" + Number(colour.a / 255.0) + "\"";
  return text;
}

class SvgPainter : public Painter {
 public:
  // Pixels at a scale of 1, y downwards.
  explicit SvgPainter(double height) : toPixels_{kPixelsPerInch, 0, 0, -kPixelsPerInch, 0, height * kPixelsPerInch} {}

  void BeginShape(const Slice& slice) override {
    body_ += "<g id=\"" + std::string(slice.ofBackground ? "background" : "shape") + std::to_string(slice.shape) + "\"><title>" +
             Escaped(slice.name) + "</title>\n";
  }
  void EndShape() override { body_ += "</g>\n"; }

  void Draw(const FillPath& fill) override {
    body_ += "<path d=\"" + PathData(fill.outline) + "\" fill-rule=\"evenodd\"" + FillAttributes(fill.fill);
    if (!fill.clip.empty()) body_ += " clip-path=\"url(#" + ClipId(fill.clip) + ")\"";
    body_ += "/>\n";
  }

  void Draw(const StrokePath& line) override {
    const Stroke& stroke = line.stroke;
    body_ +=
        "<path d=\"" + PathData(line.outline) + "\" fill=\"none\"" + ColourAttributes("stroke", "stroke-opacity", stroke.colour);
    if (stroke.weight > 0)
      body_ += " stroke-width=\"" + Number(stroke.weight * kPixelsPerInch) + "\"";
    else
      body_ += " stroke-width=\"1\" vector-effect=\"non-scaling-stroke\"";
    switch (stroke.cap) {
      case Stroke::Cap::Round:
        body_ += " stroke-linecap=\"round\" stroke-linejoin=\"round\"";
        break;
      case Stroke::Cap::Square:
        body_ += " stroke-linecap=\"square\"";
        [[fallthrough]];
      case Stroke::Cap::Flat:
        body_ += " stroke-miterlimit=\"" + Number(kMitreLimit) + "\"";
        break;
    }
    if (!stroke.dash.empty()) {
      body_ += " stroke-dasharray=\"";
      for (size_t i = 0; i < stroke.dash.size(); ++i) body_ += (i > 0 ? " " : "") + Number(stroke.dash[i] * kPixelsPerInch);
      body_ += "\"";
    }
    body_ += "/>\n";
  }

  void Draw(const Image& image, const Matrix& toPage) override {
    // The image's own y goes down from its top.
    const Box& place = image.place;
    const Matrix m =
        toPixels_ * toPage * Translation({place.left, place.top}) * Scaling(place.width() / 1000, -place.height() / 1000);
    Outline clip;
    clip.AppendRectangle(image.clip);
    body_ += "<g clip-path=\"url(#" + ClipId(Transformed(std::move(clip), toPage)) + ")\">";
    body_ += "<image width=\"1000\" height=\"1000\" preserveAspectRatio=\"none\" transform=\"" + MatrixText(m) + "\"";
    if (image.opacity < 1) body_ += " opacity=\"" + Number(image.opacity) + "\"";
    body_ += " href=\"data:" + image.type + ";base64," + Base64(*image.bytes) + "\"/></g>\n";
  }

  void Draw(const TextBlock& text, const Matrix& toPage) override {
    for (const Box& ground : text.grounds) {
      Outline outline;
      outline.AppendRectangle(ground);
      Draw(FillPath{Transformed(std::move(outline), toPage), {.colour = text.ground}, {}});
    }
    const Matrix m = toPixels_ * toPage * Scaling(1 / kPixelsPerInch, -1 / kPixelsPerInch);
    const bool isUpright = std::abs(m.b) < 1e-9 && std::abs(m.a - 1) < 1e-9;
    body_ += "<g" + (isUpright ? "" : " transform=\"" + MatrixText(m) + "\"") + ">";
    for (const TextRun& run : text.runs) {
      const Point at = run.at * kPixelsPerInch;
      const Point place = isUpright ? Point{m.e + at.x, m.f - at.y} : Point{at.x, -at.y};
      body_ += "<text x=\"" + Number(place.x) + "\" y=\"" + Number(place.y) + "\"" + FontAttributes(text.fonts[run.font]) +
               ColourAttributes("fill", "fill-opacity", run.colour) + " textLength=\"" + Number(run.width * kPixelsPerInch) +
               "\" xml:space=\"preserve\">" + Escaped(run.text) + "</text>";
    }
    body_ += "</g>\n";
  }

  std::string Document(const PagePicture& picture, double scale) const {
    const double width = picture.width * kPixelsPerInch, height = picture.height * kPixelsPerInch;
    std::string svg =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" +
        Number(width * scale) + "\" height=\"" + Number(height * scale) + "\" viewBox=\"0 0 " + Number(width) + " " +
        Number(height) + "\">\n<title>" + Escaped(picture.name) + "</title>\n";
    if (!definitions_.empty()) svg += "<defs>\n" + definitions_ + "</defs>\n";
    svg += "<rect width=\"100%\" height=\"100%\"" + ColourAttributes("fill", "fill-opacity", picture.paper) + "/>\n";
    return svg + body_ + "</svg>\n";
  }

 private:
  std::string PathData(const Outline& outline) const {
    std::string data;
    size_t at = 0;
    const auto point = [&] {
      const Point p = toPixels_(outline.points[at++]);
      AppendNumber(data, p.x);
      data += ' ';
      AppendNumber(data, p.y);
    };
    for (const Verb verb : outline.verbs) {
      data += verb == Verb::Move ? 'M' : verb == Verb::Line ? 'L' : verb == Verb::Cubic ? 'C' : 'Z';
      if (verb == Verb::Close) continue;
      point();
      for (int i = 0; i < 2 && verb == Verb::Cubic; ++i) {
        data += ' ';
        point();
      }
    }
    return data;
  }

  static std::string MatrixText(const Matrix& m) {
    std::string text = "matrix(";
    const double numbers[] = {m.a, m.b, m.c, m.d, m.e, m.f};
    for (size_t i = 0; i < 6; ++i) {
      if (i > 0) text += ' ';
      char digits[48];
      text.append(
          digits,
          std::to_chars(digits, digits + sizeof digits, numbers[i] == 0 ? 0 : numbers[i], std::chars_format::general, 7).ptr);
    }
    return text + ")";
  }

  // Of a definition that may be there already.
  std::string Define(const std::string& before, const std::string& after) {
    const auto [known, isNew] = ids_.try_emplace(before + after, "d" + std::to_string(ids_.size() + 1));
    if (isNew) definitions_ += before + " id=\"" + known->second + "\"" + after + "\n";
    return known->second;
  }

  std::string ClipId(const Outline& outline) {
    return Define("<clipPath", "><path d=\"" + PathData(outline) + "\"/></clipPath>");
  }

  std::string FillAttributes(const Fill& fill) {
    switch (fill.kind) {
      case Fill::Kind::Solid:
        return ColourAttributes("fill", "fill-opacity", fill.colour);
      case Fill::Kind::Hatch:
        return " fill=\"url(#" + HatchId(fill) + ")\"";
      default:
        return " fill=\"url(#" + GradientId(fill) + ")\"";
    }
  }

  std::string GradientId(const Fill& fill) {
    const Point from = toPixels_(fill.from), to = toPixels_(fill.to);
    std::string stops;
    for (const GradientStop& stop : fill.stops)
      stops += "<stop offset=\"" + Number(stop.at) + "\"" + ColourAttributes("stop-color", "stop-opacity", stop.colour) + "/>";
    if (fill.kind == Fill::Kind::Radial)
      return Define("<radialGradient gradientUnits=\"userSpaceOnUse\" cx=\"" + Number(from.x) + "\" cy=\"" + Number(from.y) +
                        "\" r=\"" + Number(Distance(from, to)) + "\"",
                    ">" + stops + "</radialGradient>");
    return Define("<linearGradient gradientUnits=\"userSpaceOnUse\" x1=\"" + Number(from.x) + "\" y1=\"" + Number(from.y) +
                      "\" x2=\"" + Number(to.x) + "\" y2=\"" + Number(to.y) + "\"",
                  ">" + stops + "</linearGradient>");
  }

  std::string HatchId(const Fill& fill) {
    const double dot = kHatchDot * kPixelsPerInch;
    const std::string side = Number(8 * dot);
    std::string dots;
    const HatchTile& tile = HatchOf(fill.hatch);
    for (int y = 0; y < 8; ++y)
      for (int x = 0; x < 8; ++x)
        if (tile[static_cast<size_t>(y)] >> (7 - x) & 1) dots += "M" + Number(x * dot) + " " + Number(y * dot) + "h1v1h-1z";
    return Define("<pattern patternUnits=\"userSpaceOnUse\" width=\"" + side + "\" height=\"" + side + "\"",
                  "><rect width=\"" + side + "\" height=\"" + side + "\"" +
                      ColourAttributes("fill", "fill-opacity", fill.ground) + "/><path d=\"" + dots + "\"" +
                      ColourAttributes("fill", "fill-opacity", fill.colour) + "/></pattern>");
  }

  static std::string FontAttributes(const Font& font) {
    std::string families;
    for (const std::string& family : FontsFor(font.family)) {
      const bool isKind = family == "sans-serif" || family == "serif" || family == "monospace";
      families += (families.empty() ? "" : ", ") + (isKind ? family : "'" + Escaped(family) + "'");
    }
    std::string text = " font-family=\"" + families + "\" font-size=\"" + Number(font.size * kPixelsPerInch) + "\"";
    if (font.bold) text += " font-weight=\"bold\"";
    if (font.italic) text += " font-style=\"italic\"";
    if (font.smallCapitals) text += " font-variant=\"small-caps\"";
    if (font.underline || font.strike)
      text += std::string(" text-decoration=\"") + (font.underline ? "underline" : "") +
              (font.underline && font.strike ? " " : "") + (font.strike ? "line-through" : "") + "\"";
    return text;
  }

  Matrix toPixels_;
  std::string body_, definitions_;
  std::map<std::string, std::string> ids_;
};

}  // namespace

std::string SvgOf(const PagePicture& picture, double scale) {
  SvgPainter painter(picture.height);
  Paint(picture, painter, Audience::Paper);
  return painter.Document(picture, scale);
}

}  // namespace vardo::picture
