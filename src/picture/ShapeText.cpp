#include "picture/ShapeText.h"

#include "base/Numbers.h"
#include "formula/Formula.h"
#include "picture/TextReader.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

namespace vardo::picture {
namespace {

constexpr double kLargestFont = 100;  // inches
constexpr std::string_view kPlainFont = "Arial";
enum StyleBits { kBold = 1, kItalic = 2, kUnderline = 4, kSmallCapitals = 8 };

const StoredRow* RowOf(const StoredSection* section, int ix) {
  if (!section) return nullptr;
  for (const StoredRow& row : section->rows)
    if (row.ix == ix) return &row;
  return nullptr;
}

// A row's cells; what it does not say is the style's.
StoredCells CellsOf(const ResolvedSheet& sheet, std::string_view section, int ix) {
  StoredCells cells;
  if (const StoredRow* style = RowOf(sheet.StyleSection(section), 0)) cells.Overlay(style->cells);
  const StoredRow* row = RowOf(sheet.Section(section), ix);
  if (!row) row = RowOf(sheet.Section(section), 0);
  if (row) cells.Overlay(row->cells);
  return cells;
}

int Whole(const StoredCells& cells, ColumnName column) {
  return static_cast<int>(std::clamp(NumberOf(cells, column), -1e6, 1e6));
}

CharacterFormat ReadCharacter(const StoredCells& cells, const ShapeFormat& shape, const FormatReader& reader,
                              std::optional<Rgba> colour) {
  CharacterFormat format;
  const std::string_view face = cells.Find("Font");
  if (face != kThemed && !face.empty()) format.font.family = reader.Face(face);
  if (format.font.family.empty() || format.font.family == kThemed) format.font.family = shape.themedFont;
  if (format.font.family.empty()) format.font.family = kPlainFont;
  format.font.size = std::clamp(NumberOf(cells, "Size"), 0.0, kLargestFont);
  const int style = Whole(cells, "Style");
  format.font.bold = style & kBold;
  format.font.italic = style & kItalic;
  format.font.underline = style & kUnderline;
  format.font.smallCapitals = style & kSmallCapitals;
  format.font.strike = NumberOf(cells, "Strikethru") != 0;
  const double clear = NumberOf(cells, "ColorTrans");
  format.colour = reader.Colour(cells.Find("Color"), clear).value_or(WithOpacity(shape.themedText, 1 - clear));
  if (colour) format.colour = *colour;
  const int letters = Whole(cells, "Case"), position = Whole(cells, "Pos");
  format.letters = letters == 1   ? CharacterFormat::Case::Upper
                   : letters == 2 ? CharacterFormat::Case::Initials
                                  : CharacterFormat::Case::AsTyped;
  format.position = position == 1   ? CharacterFormat::Position::Super
                    : position == 2 ? CharacterFormat::Position::Sub
                                    : CharacterFormat::Position::Normal;
  format.spacing = NumberOf(cells, "Letterspace");
  format.stretch = std::clamp(NumberOf(cells, "FontScale"), 0.01, 10.0);
  return format;
}

std::string BulletOf(const StoredCells& cells) {
  constexpr std::string_view kBullets[] = {"", "\u2022", "\u25e6", "\u25aa", "\u25a1", "\u2756", "\u27a2", "\u2713"};
  const int bullet = Whole(cells, "Bullet");
  if (bullet <= 0) return {};
  const std::string_view own = cells.Find("BulletStr");
  if (!own.empty() && own != kThemed) return std::string(own);
  return std::string(kBullets[std::min<size_t>(static_cast<size_t>(bullet), std::size(kBullets) - 1)]);
}

std::vector<double> TabsOf(const ResolvedSheet& sheet, int ix) {
  std::vector<double> tabs;
  const StoredRow* const row = RowOf(sheet.Section("Tabs"), ix);
  if (!row) return tabs;
  for (const ColumnName column : {ColumnName("Position0"), ColumnName("Position1"), ColumnName("Position2"),
                                  ColumnName("Position3"), ColumnName("Position4"), ColumnName("Position5")})
    if (const auto stop = ParseNumber(row->cells.Find(column)); stop && *stop > 0) tabs.push_back(*stop);
  std::sort(tabs.begin(), tabs.end());
  return tabs;
}

ParagraphFormat ReadParagraph(const StoredCells& cells) {
  ParagraphFormat format;
  format.first = NumberOf(cells, "IndFirst");
  format.left = NumberOf(cells, "IndLeft");
  format.right = NumberOf(cells, "IndRight");
  format.before = NumberOf(cells, "SpBefore");
  format.after = NumberOf(cells, "SpAfter");
  format.line = NumberOf(cells, "SpLine");
  format.align = static_cast<ParagraphFormat::Align>(std::clamp(Whole(cells, "HorzAlign"), 0, 4));
  format.bullet = BulletOf(cells);
  return format;
}

// The formats that a text uses, each once.
template <class Format>
class Formats {
 public:
  template <class Read>
  size_t Of(std::pair<int, int> rows, const Read& read) {
    const auto [known, isNew] = known_.try_emplace(rows, all.size());
    if (isNew) all.push_back(read());
    return known->second;
  }
  std::vector<Format> all;

 private:
  std::map<std::pair<int, int>, size_t> known_;
};

// What the formula of a text frame's size can ask for.
class FrameScope : public FormulaScope {
 public:
  FrameScope(const ResolvedSheet& sheet, double textWidth) : sheet_(sheet), textWidth_(textWidth) {}
  std::optional<CellValue> Value(const FormulaReference& reference) const override {
    if (!reference.sheet.empty() || reference.onOtherPage) return std::nullopt;
    if (reference.cell == "Char.Size") return NumberOf(CellsOf(sheet_, "Character", 0), "Size");
    if (reference.cell == "TxtWidth") return textWidth_;
    for (size_t i = 0; i < std::size(kCells); ++i)
      if (kCells[i].name == reference.cell) return sheet_.Find(CellName(i));
    return std::nullopt;
  }

 private:
  const ResolvedSheet& sheet_;
  double textWidth_;
};

// The formula with every call of that function replaced by a number; empty when there is none.
std::string WithCallReplaced(std::string formula, std::string_view function, const std::function<double()>& measure) {
  bool found = false;
  for (size_t at; (at = formula.find(function)) != std::string::npos;) {
    const size_t end = formula.find(')', at);
    if (end == std::string::npos) return {};
    formula.replace(at, end + 1 - at, NumberText(measure()));
    found = true;
  }
  return found ? formula : "";
}

double Evaluated(const ResolvedSheet& sheet, CellName formula, std::string_view function, const std::function<double()>& measure,
                 double textWidth, double stored) {
  const std::string text = WithCallReplaced(std::string(sheet.Text(formula)), function, measure);
  if (text.empty()) return stored;
  const Evaluation evaluation = Formula(text).Evaluate(FrameScope(sheet, textWidth));
  const double* const number = evaluation.value ? std::get_if<double>(&*evaluation.value) : nullptr;
  return number ? *number : stored;
}

}  // namespace

TextToLay ReadShapeText(XmlNode textElement, const ResolvedSheet& sheet, const ShapeFormat& format, const FormatReader& reader,
                        std::optional<Rgba> colour) {
  TextToLay text;
  Formats<CharacterFormat> characters;
  Formats<ParagraphFormat> paragraphs;
  for (TextPiece& piece : ReadText(textElement)) {
    const size_t character = characters.Of({piece.character, 0}, [&] {
      return ReadCharacter(CellsOf(sheet, "Character", piece.character), format, reader, colour);
    });
    const size_t paragraph = paragraphs.Of({piece.paragraph, piece.tabs}, [&] {
      ParagraphFormat read = ReadParagraph(CellsOf(sheet, "Paragraph", piece.paragraph));
      read.tabs = TabsOf(sheet, piece.tabs);
      return read;
    });
    text.pieces.push_back({std::move(piece.text), character, paragraph});
  }
  text.characters = std::move(characters.all);
  text.paragraphs = std::move(paragraphs.all);
  text.leftMargin = sheet.Number("LeftMargin");
  text.rightMargin = sheet.Number("RightMargin");
  text.topMargin = sheet.Number("TopMargin");
  text.bottomMargin = sheet.Number("BottomMargin");
  text.stand = static_cast<TextToLay::Stand>(std::clamp(static_cast<int>(sheet.Number("VerticalAlign")), 0, 2));
  text.tabStep = std::max(sheet.Number("DefaultTabStop"), 0.05);
  // As a number the ground is 0 for none, else a colour's index and one.
  const std::string_view ground = sheet.Text("TextBkgnd");
  const auto index = ParseInteger(ground);
  const double clear = sheet.Number("TextBkgndTrans");
  const auto seen = index ? reader.Colour(*index > 0 ? std::to_string(*index - 1) : "", clear) : reader.Colour(ground, clear);
  text.hasGround = seen.has_value();
  text.ground = seen.value_or(Rgba{});
  return text;
}

TextFrame FrameOf(const ResolvedSheet& sheet, const TextToLay& text, double scale) {
  TextFrame frame;
  const double width = sheet.Find("TxtWidth").value_or(sheet.Number("Width"));
  const double height = sheet.Find("TxtHeight").value_or(sheet.Number("Height"));
  const auto measuredWidth = [&] { return ExtentOf(text, 0).width / scale; };
  frame.width = Evaluated(sheet, "TxtWidth formula", "TEXTWIDTH(", measuredWidth, width, width);
  const auto measuredHeight = [&] { return ExtentOf(text, frame.width * scale).height / scale; };
  frame.height = Evaluated(sheet, "TxtHeight formula", "TEXTHEIGHT(", measuredHeight, frame.width, height);
  // The pin keeps its part of a frame that has another size by now.
  const auto pin = [](std::optional<double> stored, double old, double now) {
    return !stored ? now / 2 : old != 0 ? *stored * now / old : *stored;
  };
  const Point own{pin(sheet.Find("TxtLocPinX"), width, frame.width), pin(sheet.Find("TxtLocPinY"), height, frame.height)};
  const Point at{sheet.Find("TxtPinX").value_or(sheet.Number("Width") / 2),
                 sheet.Find("TxtPinY").value_or(sheet.Number("Height") / 2)};
  frame.angle = sheet.Number("TxtAngle");
  frame.middle = at + Rotation(frame.angle)(Point{frame.width / 2, frame.height / 2} - own);
  frame.width = std::abs(frame.width);
  frame.height = std::abs(frame.height);
  return frame;
}

}  // namespace vardo::picture
