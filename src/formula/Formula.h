// A cell's formula: read once, then evaluated, asked for what it refers to, and rewritten. What is not changed is written back as
// it stood, and so is a text that is beyond us. For one thread: its tree is made when it is first evaluated.
#pragma once

#include "formula/CellNames.h"
#include "formula/Constant.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

struct Point {
  double x = 0, y = 0;
};

// One cell that a formula names.
struct FormulaReference {
  std::string sheet;  // before "!", without quotes; empty for the formula's own sheet
  std::string cell;
  bool onOtherPage = false;            // more stands before the sheet's name: Pages[Page-2]!Sheet.3!PinX
  std::optional<ParsedCellName> name;  // the cell's, taken apart; none when it is no cell name
};

inline bool NamesPageSheet(const FormulaReference& reference) { return !reference.onOtherPage && reference.sheet == "ThePage"; }

// There can be no such cell.
struct BadReference {};

// What a formula can ask about the drawing around it.
class FormulaScope {
 public:
  virtual ~FormulaScope() = default;
  // The value of a cell; none when it is not known. May throw BadReference.
  virtual std::optional<CellValue> Value(const FormulaReference& reference) const = 0;
  // A point in the coordinates of a sheet, as the page counts.
  virtual std::optional<Point> OnPage(std::string_view, Point) const { return std::nullopt; }
  // Where an end of a connector is that is glued to a shape as a whole: the end of the first trigger cell, the other end's being
  // the second.
  virtual std::optional<Point> WalkingEnd(std::string_view, std::string_view) const { return std::nullopt; }
  // A formula that gives a point gives the cell one of its coordinates.
  virtual bool WantsY() const { return false; }
};

struct Evaluation {
  std::optional<CellValue> value;
  std::string_view error = {};  // "#REF!", "#VALUE!" or "#DIV/0!"; empty when there is a value, and when the formula is beyond us
};

// What a program nests deeper than this is beyond us.
inline constexpr int kDeepestFormula = 100;

class Formula {
 public:
  explicit Formula(std::string_view text);

  const std::string& text() const { return text_; }
  // In the order of the text, also of a text that is beyond us. Names in strings do not count, nor do functions.
  const std::vector<FormulaReference>& references() const { return references_; }

  // Numbers are in internal units (inches, radians, fractions). No value for what is beyond us (an unknown function, a cell that
  // is not known) and for what is wrong, which has an error then.
  Evaluation Evaluate(const FormulaScope& scope) const;

  // The text with those references rewritten that change says it has changed.
  std::string WithReferences(const std::function<bool(FormulaReference&)>& change) const;

  // PAR(PNT(...)): the place of a point of another shape, which moves when that shape does.
  bool FollowsPoint() const { return followsPoint_; }
  // _XFTRIGGER(...): computed anew whenever the shape that it names moves.
  bool IsTrigger() const { return text_.starts_with("_XFTRIGGER("); }

 private:
  friend class FormulaParser;
  friend class FormulaEvaluator;

  // A node of the tree: what it is, its first operand and the next operand of the node it belongs to (0: none).
  struct Node {
    std::uint8_t kind;
    std::uint32_t first = 0, next = 0;
    std::uint32_t content = 0;  // by kind: of numbers, strings or references; the function
  };
  struct Place {
    std::uint32_t start, end;
  };

  std::string text_;
  std::vector<FormulaReference> references_;
  std::vector<Place> places_;  // of the references, in the text
  bool followsPoint_ = false;
  // Operands come first; the node with the number 0 is none. The root is 0 when the text is beyond us.
  struct Tree {
    std::vector<Node> nodes;
    std::uint32_t root = 0;
    std::vector<double> numbers;
    std::vector<std::string> strings;
  };
  mutable std::optional<Tree> tree_;
};

// The whole formula is the argument of GUARD, which keeps it from being written over.
bool IsGuarded(std::string_view formula);

// A sheet's name as a formula writes it: in quotes where it is no plain name.
std::string SheetNameInFormula(std::string_view name);

}  // namespace vardo
