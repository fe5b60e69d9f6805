// From a formula's text to its tree. Of no use outside this folder.
#pragma once

#include "formula/Formula.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vardo {

enum class FormulaOperation : std::uint8_t {
  Number,
  String,
  Reference,
  Call,
  Negative,
  Positive,
  Add,
  Subtract,
  Join,
  Multiply,
  Divide,
  Power,
  AtMost,
  AtLeast,
  Unequal,
  Equal,
  Less,
  Greater,
  PointOfShape,
  Trigger,
  WalkingGlue,
  LostReference,
};

// The number of a function that takes so many arguments; none when it is not known.
std::optional<std::uint32_t> FindFormulaFunction(std::string_view name, size_t arguments);

// A name that needs no quotes.
bool IsPlainFormulaName(std::string_view name);

class FormulaParser {
 public:
  // Finds the references.
  explicit FormulaParser(std::string_view text);
  // The tree over them.
  Formula::Tree Parse();

  std::vector<FormulaReference> references;
  std::vector<Formula::Place> places;
  bool namesPoint = false;

 private:
  enum class TokenKind : std::uint8_t { Number, String, Reference, Function, Sign, Other, End };
  struct Token {
    TokenKind kind;
    std::uint32_t start = 0, end = 0;
    std::uint32_t reference = 0;
    std::string_view TextIn(std::string_view text) const { return text.substr(start, end - start); }
  };
  // The text is beyond us.
  struct Beyond {};

  void Scan();
  void ScanQuoted(TokenKind kind);
  void ScanNumber();
  void ScanName();
  void ScanReference(std::uint32_t start, std::string sheet);
  void AddReference(std::uint32_t start, std::string sheet, std::string_view cell);
  void AddToken(TokenKind kind, std::uint32_t start, std::uint32_t reference = 0);
  size_t NameEnd(size_t from) const;
  std::string Unescaped(std::uint32_t start, std::uint32_t end) const;

  const Token& Now() const { return tokens_[token_]; }
  bool Take(std::string_view sign);
  void Expect(std::string_view sign);
  std::uint32_t Add(FormulaOperation operation, std::uint32_t content = 0);
  std::uint32_t Join(FormulaOperation operation, std::uint32_t left, std::uint32_t right);
  std::uint32_t Comparison();
  std::uint32_t Sum();
  std::uint32_t Product();
  std::uint32_t Power();
  std::uint32_t Signed();
  std::uint32_t Primary();
  std::uint32_t NumberNode(const Token& token);
  std::uint32_t Call(std::string_view name);
  std::uint32_t PointOfShape();
  std::uint32_t Trigger();
  std::uint32_t WalkingGlue();
  std::uint32_t LostReference();

  struct Nested;

  std::string_view text_;
  Formula::Tree tree_;
  size_t at_ = 0;
  std::vector<Token> tokens_;
  size_t token_ = 0;
  int depth_ = 0;
};

}  // namespace vardo
