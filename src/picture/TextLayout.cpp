#include "picture/TextLayout.h"

#include "picture/TableMeasure.h"

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vardo::picture {
namespace {

constexpr char32_t kSoftBreak = 0x2028;
constexpr double kSmallSize = 0.65, kRaised = 0.35, kLowered = -0.15;
// What rounding may have taken from a width that was made for the text.
constexpr double kTolerance = 1e-6;

struct Character {
  char32_t code;
  size_t format;
  double advance;
  bool mayBreakAfter = false;  // a line may end behind it
  bool startsCluster = true;   // it does not belong to the one before
};

struct Paragraph {
  size_t format = 0;
  std::vector<Character> characters;
};

struct Line {
  size_t begin = 0, end = 0;  // characters, blanks at the end left out
  double width = 0;           // without indents
  double indent = 0;
  double ascent = 0, descent = 0, height = 0;
  bool isLast = false;  // of its paragraph, or before a break that was typed
};

bool IsBlank(char32_t c) { return c == ' ' || c == kSoftBreak; }

double SizeOf(const CharacterFormat& format) {
  return format.font.size * (format.position == CharacterFormat::Position::Normal ? 1 : kSmallSize);
}

Font FontOf(const CharacterFormat& format) {
  Font font = format.font;
  font.size = SizeOf(format);
  return font;
}

icu::UnicodeString Cased(const icu::UnicodeString& text, CharacterFormat::Case letters) {
  icu::UnicodeString cased = text;
  if (letters == CharacterFormat::Case::Upper) cased.toUpper(icu::Locale::getRoot());
  if (letters == CharacterFormat::Case::Initials) cased.toTitle(nullptr, icu::Locale::getRoot(), U_TITLECASE_NO_LOWERCASE);
  return cased;
}

bool IsPlainAscii(const std::vector<Character>& characters) {
  return std::all_of(characters.begin(), characters.end(), [](const Character& c) {
    return c.code == ' ' || (c.code < 0x80 && std::isalnum(static_cast<int>(c.code)));
  });
}

icu::BreakIterator& Breaks(bool lines) {
  static const auto make = [](auto create) {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<icu::BreakIterator>(create(icu::Locale::getRoot(), status));
  };
  static const std::unique_ptr<icu::BreakIterator> line = make(icu::BreakIterator::createLineInstance),
                                                   cluster = make(icu::BreakIterator::createCharacterInstance);
  return lines ? *line : *cluster;
}

void MarkBreaks(std::vector<Character>& characters) {
  if (IsPlainAscii(characters)) {
    for (size_t i = 0; i + 1 < characters.size(); ++i)
      characters[i].mayBreakAfter = characters[i].code == ' ' && characters[i + 1].code != ' ';
    return;
  }
  icu::UnicodeString text;
  std::vector<size_t> at;  // the character of every unit
  for (size_t i = 0; i < characters.size(); ++i) {
    text.append(static_cast<UChar32>(characters[i].code));
    at.resize(static_cast<size_t>(text.length()), i);
    characters[i].startsCluster = false;
  }
  icu::BreakIterator& lines = Breaks(true);
  lines.setText(text);
  for (std::int32_t place = lines.first(); place != icu::BreakIterator::DONE; place = lines.next())
    if (place > 0) characters[at[static_cast<size_t>(place) - 1]].mayBreakAfter = true;
  icu::BreakIterator& clusters = Breaks(false);
  clusters.setText(text);
  for (std::int32_t place = clusters.first(); place < text.length(); place = clusters.next())
    characters[at[static_cast<size_t>(place)]].startsCluster = true;
}

class Layout {
 public:
  explicit Layout(const TextToLay& text) : text_(text) {
    for (const CharacterFormat& format : text.characters) measures_.emplace_back(FontOf(format));
    Split();
  }

  // Breaks lines to that width, margins not counted; 0: at typed breaks alone.
  void Break(double width) {
    lines_.clear();
    for (const Paragraph& paragraph : paragraphs_) {
      lines_.emplace_back();
      BreakParagraph(paragraph, width > 0 ? width : std::numeric_limits<double>::infinity(), lines_.back());
    }
  }

  TextExtent Extent() const {
    TextExtent extent;
    for (size_t p = 0; p < lines_.size(); ++p) {
      const ParagraphFormat& format = FormatOf(p);
      extent.height += format.before + format.after;
      for (const Line& line : lines_[p]) {
        extent.width = std::max(extent.width, format.left + line.indent + line.width + format.right);
        extent.height += line.height;
      }
    }
    return extent;
  }

  TextBlock Place() {
    const double inner = text_.height - text_.topMargin - text_.bottomMargin, height = Extent().height;
    double y = text_.bottomMargin + inner;
    if (text_.stand == TextToLay::Stand::Middle) y = text_.bottomMargin + (inner + height) / 2;
    if (text_.stand == TextToLay::Stand::Bottom) y = text_.bottomMargin + height;
    for (const CharacterFormat& format : text_.characters) block_.fonts.push_back(FontOf(format));
    block_.ground = text_.ground;
    for (size_t p = 0; p < lines_.size(); ++p) {
      y -= FormatOf(p).before;
      for (const Line& line : lines_[p]) {
        PlaceLine(paragraphs_[p], line, y);
        y -= line.height;
      }
      y -= FormatOf(p).after;
    }
    return std::move(block_);
  }

 private:
  const ParagraphFormat& FormatOf(size_t paragraph) const { return text_.paragraphs[paragraphs_[paragraph].format]; }

  void Split() {
    paragraphs_.emplace_back();
    for (const FormattedPiece& piece : text_.pieces) {
      const CharacterFormat& format = text_.characters[piece.character];
      const icu::UnicodeString text = Cased(icu::UnicodeString::fromUTF8(piece.text), format.letters);
      for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const auto code = static_cast<char32_t>(text.char32At(i));
        if (paragraphs_.back().characters.empty()) paragraphs_.back().format = piece.paragraph;
        if (code == '\n') {
          paragraphs_.emplace_back().format = piece.paragraph;
          continue;
        }
        const double advance =
            code == kSoftBreak || code == '\t' ? 0 : measures_[piece.character].Advance(code) * format.stretch + format.spacing;
        paragraphs_.back().characters.push_back({code, piece.character, advance});
      }
    }
    for (Paragraph& paragraph : paragraphs_) MarkBreaks(paragraph.characters);
  }

  void BreakParagraph(const Paragraph& paragraph, double width, std::vector<Line>& lines) {
    const ParagraphFormat& format = text_.paragraphs[paragraph.format];
    const auto& characters = paragraph.characters;
    size_t begin = 0;
    do {
      Line line;
      line.begin = begin;
      // What a bullet stands before begins at the left indent.
      line.indent = lines.empty() && format.bullet.empty() ? format.first : 0;
      const double room = width - format.left - format.right - line.indent;
      begin = FindEnd(characters, format, line, std::max(room, 0.0));
      FinishLine(paragraph, line);
      lines.push_back(line);
    } while (begin < characters.size());
    if (!characters.empty() && characters.back().code == kSoftBreak) {
      Line empty;
      empty.begin = empty.end = characters.size();
      empty.isLast = true;
      FinishLine(paragraph, empty);
      lines.push_back(empty);
    }
  }

  // Sets the line's end and returns where the next one begins.
  size_t FindEnd(const std::vector<Character>& characters, const ParagraphFormat& format, Line& line, double room) const {
    double x = 0, inked = 0;
    size_t breakAt = line.begin, cluster = line.begin;
    for (size_t i = line.begin; i < characters.size(); ++i) {
      const Character& c = characters[i];
      if (c.code == kSoftBreak) {
        line.end = i;
        line.isLast = true;
        return i + 1;
      }
      x = c.code == '\t' ? NextStop(format, x) : x + c.advance;
      if (c.startsCluster) cluster = i;
      if (!IsBlank(c.code)) inked = x;
      if (inked > room + kTolerance && i > line.begin) {
        if (breakAt == line.begin) breakAt = std::max(cluster, line.begin + 1);
        line.end = breakAt;
        return breakAt;
      }
      if (c.mayBreakAfter) breakAt = i + 1;
    }
    line.end = characters.size();
    line.isLast = true;
    return line.end;
  }

  double NextStop(const ParagraphFormat& format, double x) const {
    for (const double stop : format.tabs)
      if (stop > x + kTolerance) return stop;
    return (std::floor(x / text_.tabStep + kTolerance) + 1) * text_.tabStep;
  }

  void FinishLine(const Paragraph& paragraph, Line& line) const {
    const auto& characters = paragraph.characters;
    const ParagraphFormat& format = text_.paragraphs[paragraph.format];
    while (line.end > line.begin && IsBlank(characters[line.end - 1].code)) --line.end;
    for (size_t i = line.begin; i < line.end; ++i)
      line.width = characters[i].code == '\t' ? NextStop(format, line.width) : line.width + characters[i].advance;
    const auto measure = [&](size_t character) {
      // A raised or lowered run makes no line higher than its neighbours do.
      const CharacterFormat& written = text_.characters[character];
      const TableMeasure whole(written.font);
      line.ascent = std::max(line.ascent, whole.Ascent());
      line.descent = std::max(line.descent, whole.Descent());
    };
    for (size_t i = line.begin; i < line.end; ++i)
      if (i == line.begin || characters[i].format != characters[i - 1].format) measure(characters[i].format);
    if (line.begin == line.end)
      measure(characters.empty() ? EmptyFormat() : characters[std::min(line.begin, characters.size() - 1)].format);
    const double own = line.ascent + line.descent;
    line.height = format.line < 0 ? -format.line * own : format.line > 0 ? format.line : own;
  }

  size_t EmptyFormat() const { return text_.pieces.empty() ? 0 : text_.pieces.back().character; }

  void PlaceLine(const Paragraph& paragraph, const Line& line, double top) {
    using Align = ParagraphFormat::Align;
    const ParagraphFormat& format = text_.paragraphs[paragraph.format];
    const double inner = text_.width - text_.leftMargin - text_.rightMargin - format.left - format.right;
    const double spare = text_.width > 0 ? inner - line.indent - line.width : -line.width;
    double x = text_.leftMargin + format.left + line.indent, stretch = 0;
    if (format.align == Align::Centre || text_.width <= 0) x += spare / 2;
    if (format.align == Align::Right && text_.width > 0) x += spare;
    const bool fills = (format.align == Align::Justify && !line.isLast) || format.align == Align::Distribute;
    if (fills && spare > 0) stretch = spare / std::max<double>(1, static_cast<double>(Gaps(paragraph, line)));
    const double baseline = top - (line.height - line.ascent - line.descent) / 2 - line.ascent;
    if (text_.hasGround && line.end > line.begin) {
      block_.grounds.push_back({x, top - line.height, x + line.width + (stretch > 0 ? spare : 0), top});
      block_.box.Add(block_.grounds.back());
    }
    if (&line == &lines_[static_cast<size_t>(&paragraph - paragraphs_.data())].front() && line.end > line.begin)
      PlaceBullet(format, paragraph, line, x, baseline);
    PlaceRuns(paragraph, line, x, baseline, stretch);
  }

  static size_t Gaps(const Paragraph& paragraph, const Line& line) {
    size_t gaps = 0;
    for (size_t i = line.begin; i < line.end; ++i) gaps += paragraph.characters[i].code == ' ';
    return gaps;
  }

  void PlaceBullet(const ParagraphFormat& format, const Paragraph& paragraph, const Line& line, double x, double baseline) {
    if (format.bullet.empty()) return;
    const size_t font = paragraph.characters[line.begin].format;
    const icu::UnicodeString bullet = icu::UnicodeString::fromUTF8(format.bullet);
    double width = 0;
    for (std::int32_t i = 0; i < bullet.length(); i = bullet.moveIndex32(i, 1))
      width += measures_[font].Advance(static_cast<char32_t>(bullet.char32At(i)));
    const double indent = format.first < 0 ? format.first : -1.5 * width;
    AddRun({{x + indent, baseline}, width, font, text_.characters[font].colour, format.bullet});
  }

  void PlaceRuns(const Paragraph& paragraph, const Line& line, double x, double baseline, double stretch) {
    const auto& characters = paragraph.characters;
    double at = 0;  // from the line's beginning
    for (size_t i = line.begin; i < line.end;) {
      if (characters[i].code == '\t') {
        at = NextStop(text_.paragraphs[paragraph.format], at);
        ++i;
        continue;
      }
      const size_t format = characters[i].format;
      icu::UnicodeString text;
      double width = 0;
      // Where blanks are widened, every word stands for itself.
      for (; i < line.end && characters[i].format == format && characters[i].code != '\t'; ++i) {
        text.append(static_cast<UChar32>(characters[i].code));
        width += characters[i].advance;
        if (stretch > 0 && characters[i].code == ' ') {
          ++i;
          break;
        }
      }
      TextRun run{{x + at, baseline}, width, format, text_.characters[format].colour, {}};
      const CharacterFormat& written = text_.characters[format];
      if (written.position == CharacterFormat::Position::Super) run.at.y += kRaised * written.font.size;
      if (written.position == CharacterFormat::Position::Sub) run.at.y += kLowered * written.font.size;
      text.toUTF8String(run.text);
      at += width;
      if (stretch > 0 && run.text.ends_with(' ')) at += stretch;
      AddRun(std::move(run));
    }
  }

  void AddRun(TextRun run) {
    const TableMeasure& measure = measures_[run.font];
    block_.box.Add(Point{run.at.x, run.at.y - measure.Descent()});
    block_.box.Add(Point{run.at.x + run.width, run.at.y + measure.Ascent()});
    block_.runs.push_back(std::move(run));
  }

  const TextToLay& text_;
  std::vector<TableMeasure> measures_;
  std::vector<Paragraph> paragraphs_;
  std::vector<std::vector<Line>> lines_;
  TextBlock block_;
};

}  // namespace

TextExtent ExtentOf(const TextToLay& text, double width) {
  Layout layout(text);
  layout.Break(width > 0 ? std::max(width - text.leftMargin - text.rightMargin, 1e-3) : 0);
  TextExtent extent = layout.Extent();
  extent.width += text.leftMargin + text.rightMargin;
  extent.height += text.topMargin + text.bottomMargin;
  return extent;
}

TextBlock LayOut(const TextToLay& text) {
  Layout layout(text);
  layout.Break(text.width > 0 ? std::max(text.width - text.leftMargin - text.rightMargin, 1e-3) : 0);
  return layout.Place();
}

}  // namespace vardo::picture
