#include "formula/FormulaParser.h"

#include "base/Numbers.h"
#include "base/Text.h"

#include <algorithm>

namespace vardo {
namespace {

bool IsNameStart(char c) { return IsAsciiLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80; }
bool IsNamePart(char c) { return IsNameStart(c) || IsAsciiDigit(c) || c == '.'; }

constexpr std::string_view kSigns[] = {"<=", ">=", "<>", "=", "<", ">", "+", "-", "&", "*", "/", "^", "(", ")", ","};

struct Sign {
  std::string_view text;
  FormulaOperation operation;
};
constexpr Sign kComparisons[] = {{"<=", FormulaOperation::AtMost},  {">=", FormulaOperation::AtLeast},
                                 {"<>", FormulaOperation::Unequal}, {"=", FormulaOperation::Equal},
                                 {"<", FormulaOperation::Less},     {">", FormulaOperation::Greater}};
constexpr Sign kSums[] = {{"+", FormulaOperation::Add}, {"-", FormulaOperation::Subtract}, {"&", FormulaOperation::Join}};
constexpr Sign kProducts[] = {{"*", FormulaOperation::Multiply}, {"/", FormulaOperation::Divide}};

}  // namespace

bool IsPlainFormulaName(std::string_view name) {
  return !name.empty() && IsNameStart(name.front()) && std::all_of(name.begin(), name.end(), IsNamePart);
}

FormulaParser::FormulaParser(std::string_view text) : text_(text) { Scan(); }

Formula::Tree FormulaParser::Parse() try {
  Add(FormulaOperation::Number);
  tree_.root = Comparison();
  if (Now().kind != TokenKind::End) throw Beyond{};
  return std::move(tree_);
} catch (const Beyond&) {
  return {};
}

// ------------------------------------------------------------------------------------------------------ text to tokens

void FormulaParser::Scan() {
  while (at_ < text_.size()) {
    const char c = text_[at_];
    const auto start = static_cast<std::uint32_t>(at_);
    if (c == ' ') {
      ++at_;
    } else if (c == '"') {
      ScanQuoted(TokenKind::String);
    } else if (c == '[') {
      // An index of a collection, as in Pages[Page-2].
      at_ = std::min(text_.find(']', at_), text_.size() - 1) + 1;
      AddToken(TokenKind::Other, start);
    } else if (c == '\'') {
      ScanQuoted(TokenKind::Other);
    } else if (IsAsciiDigit(c) || c == '.') {
      ScanNumber();
    } else if (IsNameStart(c)) {
      ScanName();
    } else {
      const auto sign = std::find_if(std::begin(kSigns), std::end(kSigns),
                                     [&](std::string_view known) { return text_.substr(at_).starts_with(known); });
      at_ += sign == std::end(kSigns) ? 1 : sign->size();
      AddToken(sign == std::end(kSigns) ? TokenKind::Other : TokenKind::Sign, start);
    }
  }
  AddToken(TokenKind::End, static_cast<std::uint32_t>(at_));
}

void FormulaParser::AddToken(TokenKind kind, std::uint32_t start, std::uint32_t reference) {
  tokens_.push_back({kind, start, static_cast<std::uint32_t>(at_), reference});
}

// Behind the closing quote; a doubled quote is part of what is quoted. Without a closing one the text is beyond us. Single quotes
// hold the name of a sheet.
void FormulaParser::ScanQuoted(TokenKind kind) {
  const auto start = static_cast<std::uint32_t>(at_);
  const char quote = text_[at_++];
  bool closed = false;
  while (at_ < text_.size() && !closed) {
    if (text_[at_++] != quote) continue;
    closed = at_ >= text_.size() || text_[at_] != quote;
    if (!closed) ++at_;
  }
  if (kind == TokenKind::Other && at_ < text_.size() && text_[at_] == '!') {
    const std::string sheet = Unescaped(start, static_cast<std::uint32_t>(at_));
    return ScanReference(start, sheet);
  }
  AddToken(closed ? kind : TokenKind::Other, start);
}

// What stands between quotes, doubled ones as one.
std::string FormulaParser::Unescaped(std::uint32_t start, std::uint32_t end) const {
  const char quote = text_[start];
  std::string inner;
  for (size_t i = start + 1; i + 1 < end; ++i) {
    inner += text_[i];
    if (text_[i] == quote) ++i;
  }
  return inner;
}

// A number with the unit behind it, where that is one: "1.5 in", "50%", "1E-3".
void FormulaParser::ScanNumber() {
  const auto start = static_cast<std::uint32_t>(at_);
  const auto skip = [&](auto wanted) {
    while (at_ < text_.size() && wanted(text_[at_])) ++at_;
  };
  skip([](char c) { return IsAsciiDigit(c) || c == '.'; });
  if (at_ + 1 < text_.size() && LowerAscii(text_[at_]) == 'e') {
    const size_t sign = text_[at_ + 1] == '-' || text_[at_ + 1] == '+' ? 1 : 0;
    if (at_ + 1 + sign < text_.size() && IsAsciiDigit(text_[at_ + 1 + sign])) {
      at_ += 1 + sign;
      skip(IsAsciiDigit);
    }
  }
  const size_t end = at_;
  skip([](char c) { return c == ' '; });
  if (at_ < text_.size() && text_[at_] == '%')
    ++at_;
  else
    skip(IsAsciiLetter);
  if (at_ > end && !ParseConstant(text_.substr(start, at_ - start))) at_ = end;
  // "5in2x" is no number, and names nothing either.
  if (at_ < text_.size() && IsNamePart(text_[at_])) {
    at_ = NameEnd(at_);
    return AddToken(TokenKind::Other, start);
  }
  AddToken(TokenKind::Number, start);
}

size_t FormulaParser::NameEnd(size_t from) const {
  while (from < text_.size() && IsNamePart(text_[from])) ++from;
  return from;
}

void FormulaParser::ScanName() {
  const auto start = static_cast<std::uint32_t>(at_);
  at_ = NameEnd(at_);
  if (at_ < text_.size() && text_[at_] == '!') return ScanReference(start, std::string(text_.substr(start, at_ - start)));
  const size_t behind = text_.find_first_not_of(' ', at_);
  if (behind != std::string_view::npos && text_[behind] == '(') {
    namesPoint = namesPoint || text_.substr(start, at_ - start) == "PNT";
    return AddToken(TokenKind::Function, start);
  }
  AddReference(start, "", text_.substr(start, at_ - start));
}

// At the "!" behind the sheet's name.
void FormulaParser::ScanReference(std::uint32_t start, std::string sheet) {
  const size_t cell = ++at_;
  at_ = NameEnd(at_);
  AddReference(start, std::move(sheet), text_.substr(cell, at_ - cell));
}

void FormulaParser::AddReference(std::uint32_t start, std::string sheet, std::string_view cell) {
  AddToken(TokenKind::Reference, start, static_cast<std::uint32_t>(references.size()));
  const bool onOtherPage = start > 0 && text_[start - 1] == '!';
  references.push_back({std::move(sheet), std::string(cell), onOtherPage, ParseCellName(cell)});
  places.push_back({start, static_cast<std::uint32_t>(at_)});
}

// ------------------------------------------------------------------------------------------------------ tokens to tree

struct FormulaParser::Nested {
  explicit Nested(FormulaParser& parser) : depth(parser.depth_) {
    if (++depth > 3 * kDeepestFormula) {
      --depth;
      throw Beyond{};
    }
  }
  ~Nested() { --depth; }
  int& depth;
};

bool FormulaParser::Take(std::string_view sign) {
  if (Now().kind != TokenKind::Sign || Now().TextIn(text_) != sign) return false;
  ++token_;
  return true;
}

void FormulaParser::Expect(std::string_view sign) {
  if (!Take(sign)) throw Beyond{};
}

std::uint32_t FormulaParser::Add(FormulaOperation operation, std::uint32_t content) {
  tree_.nodes.push_back({static_cast<std::uint8_t>(operation), 0, 0, content});
  return static_cast<std::uint32_t>(tree_.nodes.size() - 1);
}

std::uint32_t FormulaParser::Join(FormulaOperation operation, std::uint32_t left, std::uint32_t right) {
  const std::uint32_t node = Add(operation);
  tree_.nodes[node].first = left;
  tree_.nodes[left].next = right;
  return node;
}

std::uint32_t FormulaParser::Comparison() {
  const Nested nested(*this);
  const std::uint32_t left = Sum();
  for (const auto& [text, operation] : kComparisons)
    if (Take(text)) return Join(operation, left, Sum());
  return left;
}

std::uint32_t FormulaParser::Sum() {
  std::uint32_t node = Product();
  for (bool more = true; more;) {
    more = false;
    for (const auto& [text, operation] : kSums) {
      if (!Take(text)) continue;
      node = Join(operation, node, Product());
      more = true;
    }
  }
  return node;
}

std::uint32_t FormulaParser::Product() {
  std::uint32_t node = Power();
  for (bool more = true; more;) {
    more = false;
    for (const auto& [text, operation] : kProducts) {
      if (!Take(text)) continue;
      node = Join(operation, node, Power());
      more = true;
    }
  }
  return node;
}

std::uint32_t FormulaParser::Power() {
  std::uint32_t node = Signed();
  while (Take("^")) node = Join(FormulaOperation::Power, node, Signed());
  return node;
}

std::uint32_t FormulaParser::Signed() {
  const Nested nested(*this);
  for (const auto& [text, operation] : {Sign{"-", FormulaOperation::Negative}, Sign{"+", FormulaOperation::Positive}}) {
    if (!Take(text)) continue;
    const std::uint32_t operand = Signed();
    const std::uint32_t node = Add(operation);
    tree_.nodes[node].first = operand;
    return node;
  }
  return Primary();
}

std::uint32_t FormulaParser::Primary() {
  if (Take("(")) {
    const std::uint32_t inner = Comparison();
    Expect(")");
    return inner;
  }
  const Token token = Now();
  if (token.kind == TokenKind::Sign || token.kind == TokenKind::Other || token.kind == TokenKind::End) throw Beyond{};
  ++token_;
  if (token.kind == TokenKind::Number) return NumberNode(token);
  if (token.kind == TokenKind::Function) return Call(token.TextIn(text_));
  if (token.kind == TokenKind::String) {
    tree_.strings.push_back(Unescaped(token.start, token.end));
    return Add(FormulaOperation::String, static_cast<std::uint32_t>(tree_.strings.size() - 1));
  }
  for (const auto& [name, value] : {std::pair("TRUE", 1.0), std::pair("FALSE", 0.0)}) {
    if (token.TextIn(text_) != name) continue;
    tree_.numbers.push_back(value);
    return Add(FormulaOperation::Number, static_cast<std::uint32_t>(tree_.numbers.size() - 1));
  }
  return Add(FormulaOperation::Reference, token.reference);
}

std::uint32_t FormulaParser::NumberNode(const Token& token) {
  const auto constant = ParseConstant(token.TextIn(text_));
  const auto number = constant ? ParseNumber(constant->value) : std::nullopt;
  if (!number) throw Beyond{};
  tree_.numbers.push_back(*number);
  return Add(FormulaOperation::Number, static_cast<std::uint32_t>(tree_.numbers.size() - 1));
}

std::uint32_t FormulaParser::Call(std::string_view name) {
  // Functions that do not look at their arguments' values alone.
  static constexpr struct {
    std::string_view name;
    std::uint32_t (FormulaParser::*parse)();
  } kSpecialCalls[] = {{"PAR", &FormulaParser::PointOfShape},
                       {"_XFTRIGGER", &FormulaParser::Trigger},
                       {"_WALKGLUE", &FormulaParser::WalkingGlue},
                       {"REF", &FormulaParser::LostReference}};
  Expect("(");
  for (const auto& special : kSpecialCalls)
    if (EqualAsciiIgnoringCase(special.name, name)) return (this->*special.parse)();
  std::vector<std::uint32_t> arguments;
  if (!Take(")")) {
    do arguments.push_back(Comparison());
    while (Take(","));
    Expect(")");
  }
  const auto function = FindFormulaFunction(name, arguments.size());
  if (!function) throw Beyond{};
  const std::uint32_t node = Add(FormulaOperation::Call, *function);
  for (size_t i = 0; i < arguments.size(); ++i)
    (i == 0 ? tree_.nodes[node].first : tree_.nodes[arguments[i - 1]].next) = arguments[i];
  return node;
}

// PAR(PNT(x,y)): a point of another shape, as the page counts.
std::uint32_t FormulaParser::PointOfShape() {
  if (Now().kind != TokenKind::Function || Now().TextIn(text_) != "PNT") throw Beyond{};
  ++token_;
  Expect("(");
  const std::uint32_t x = Comparison();
  Expect(",");
  const std::uint32_t y = Comparison();
  Expect(")");
  Expect(")");
  return Join(FormulaOperation::PointOfShape, x, y);
}

// _XFTRIGGER(cell): a cell of the shape itself is not looked at.
std::uint32_t FormulaParser::Trigger() {
  const Token cell = Now();
  if (cell.kind != TokenKind::Reference) throw Beyond{};
  ++token_;
  Expect(")");
  const bool ofOtherShape = !references[cell.reference].sheet.empty();
  const std::uint32_t reference = ofOtherShape ? Add(FormulaOperation::Reference, cell.reference) : 0;
  const std::uint32_t node = Add(FormulaOperation::Trigger);
  tree_.nodes[node].first = reference;
  return node;
}

// _WALKGLUE(trigger,other trigger,preference)
std::uint32_t FormulaParser::WalkingGlue() {
  const auto name = [this] {
    if (Now().kind != TokenKind::Reference) throw Beyond{};
    return std::string(tokens_[token_++].TextIn(text_));
  };
  const auto first = static_cast<std::uint32_t>(tree_.strings.size());
  tree_.strings.push_back(name());
  Expect(",");
  tree_.strings.push_back(name());
  while (Take(",")) name();
  Expect(")");
  return Add(FormulaOperation::WalkingGlue, first);
}

std::uint32_t FormulaParser::LostReference() {
  while (!Take(")")) {
    if (Now().kind == TokenKind::End) throw Beyond{};
    ++token_;
  }
  return Add(FormulaOperation::LostReference);
}

}  // namespace vardo
