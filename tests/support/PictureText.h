// Drawings written as text, and their pictures as text: one line for everything that is painted, in thousandths of an inch.
#pragma once

#include "TestDrawings.h"
#include "picture/Painter.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace vardo::test {

// What a small drawing has besides its page and masters.
struct PictureParts {
  std::string document{};    // within VisioDocument: Colors, FaceNames, StyleSheets
  std::string theme{};       // the whole part
  std::string image{};       // related to the page as rId9
  std::string background{};  // the shapes of a page with the ID 7 that stands behind the first
};

inline std::unique_ptr<Drawing> OpenPicture(const DrawingText& text, const PictureParts& parts = {}) {
  constexpr std::string_view kRelationships =
      "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";
  std::vector<ZipItem> items = PackageText(text).items();
  const auto alter = [&](std::string_view part, std::string_view before, const std::string& added) {
    for (ZipItem& item : items)
      if (item.name == part) item.content.insert(item.content.find(before), added);
  };
  const auto relate = [](const std::string& id, const std::string& type, const std::string& target) {
    return "<Relationship Id=\"" + id + "\" Type=\"http://schemas.openxmlformats.org/x/" + type + "\" Target=\"" + target +
           "\"/>";
  };
  alter("visio/document.xml", "<DocumentSheet", parts.document);
  if (!parts.theme.empty()) {
    alter("visio/_rels/document.xml.rels", "</Relationships>", relate("rId8", "theme", "theme/theme1.xml"));
    items.push_back({"visio/theme/theme1.xml", parts.theme});
  }
  if (!parts.image.empty()) {
    items.push_back({"visio/pages/_rels/page1.xml.rels",
                     std::string(kRelationships) + relate("rId9", "image", "../media/image1.png") + "</Relationships>"});
    items.push_back({"visio/media/image1.png", parts.image});
  }
  if (!parts.background.empty()) {
    alter("visio/pages/pages.xml", "</Pages>",
          "<Page ID='7' NameU='Back' Name='Back' Background='1'><PageSheet/><Rel r:id='rId7'/></Page>");
    alter("visio/pages/pages.xml", " NameU='Page-1'", " BackPage='7'");
    alter("visio/pages/_rels/pages.xml.rels", "</Relationships>", relate("rId7", "page", "page2.xml"));
    items.push_back({"visio/pages/page2.xml", VisioPart("PageContents", InElement("Shapes", parts.background))});
  }
  const TempFolder folder;
  WriteFile(folder / "test.vsdx", MakeZip(items));
  return Drawing::Open(folder / "test.vsdx");
}

inline std::string Thousandths(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%ld", std::lround(value * 1000));
  return text;
}

inline std::string TextOf(picture::Point p) { return Thousandths(p.x) + "," + Thousandths(p.y); }

inline std::string TextOf(picture::Rgba colour) {
  char text[16];
  std::snprintf(text, sizeof text, "%02x%02x%02x", colour.r, colour.g, colour.b);
  return colour.a == 255 ? text : std::string(text) + "/" + std::to_string(colour.a);
}

inline std::string TextOf(const picture::Outline& outline) {
  std::string text;
  size_t at = 0;
  for (const picture::Verb verb : outline.verbs) {
    text += text.empty() ? "" : " ";
    text += verb == picture::Verb::Move ? "M" : verb == picture::Verb::Line ? "L" : verb == picture::Verb::Cubic ? "C" : "Z";
    const int points = verb == picture::Verb::Cubic ? 3 : verb == picture::Verb::Close ? 0 : 1;
    for (int i = 0; i < points; ++i) text += " " + TextOf(outline.points[at++]);
  }
  return text;
}

// "fill 112233: M 0,0 L 1000,0", "line 000000 10: ...", "text 000000 Arial 111 at 0,0: Hello".
class PictureText : public picture::Painter {
 public:
  void Draw(const picture::FillPath& path) override {
    const picture::Fill& fill = path.fill;
    std::string line = "fill ";
    if (fill.kind == picture::Fill::Kind::Solid) line += TextOf(fill.colour);
    if (fill.kind == picture::Fill::Kind::Hatch)
      line += "hatch " + std::to_string(fill.hatch) + " " + TextOf(fill.colour) + " on " + TextOf(fill.ground);
    if (!fill.stops.empty()) {
      line += fill.kind == picture::Fill::Kind::Linear ? "linear" : "radial";
      line += " " + TextOf(fill.from) + " to " + TextOf(fill.to);
      for (const picture::GradientStop& stop : fill.stops) line += " " + Thousandths(stop.at) + " " + TextOf(stop.colour);
    }
    line += ": " + TextOf(path.outline);
    if (!path.clip.empty()) line += " within " + TextOf(path.clip);
    lines.push_back(line);
  }
  void Draw(const picture::StrokePath& path) override {
    std::string line = "line " + TextOf(path.stroke.colour) + " " + Thousandths(path.stroke.weight);
    for (const double dash : path.stroke.dash) line += " " + Thousandths(dash);
    lines.push_back(line + ": " + TextOf(path.outline));
  }
  void Draw(const picture::Image& image, const picture::Matrix& toPage) override {
    lines.push_back("image " + image.type + " " + std::to_string(image.bytes->size()) + ": " +
                    TextOf(toPage(picture::Point{image.place.left, image.place.bottom})) + " " +
                    TextOf(toPage(picture::Point{image.place.right, image.place.top})));
  }
  void Draw(const picture::TextBlock& text, const picture::Matrix& toPage) override {
    for (size_t i = 0; i < text.grounds.size(); ++i) lines.push_back("ground " + TextOf(text.ground));
    for (const picture::TextRun& run : text.runs) {
      const picture::Font& font = text.fonts[run.font];
      const double degrees = std::atan2(toPage.b, toPage.a) * 180 / 3.14159265358979;
      lines.push_back("text " + TextOf(run.colour) + " " + font.family + " " + Thousandths(font.size) +
                      (font.bold ? " bold" : "") + (font.italic ? " italic" : "") +
                      (std::lround(degrees) ? " turned " + std::to_string(std::lround(degrees)) : "") + " at " +
                      TextOf(toPage(run.at)) + ": " + run.text);
    }
  }
  std::vector<std::string> lines;
};

inline std::vector<std::string> Painted(const picture::PagePicture& picture) {
  PictureText text;
  Paint(picture, text, picture::Audience::Paper);
  return text.lines;
}

}  // namespace vardo::test
