// Expressions: their tree, and what stands in it.
#pragma once

#include "model/Names.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

enum class NodeKind : std::uint8_t {
  Number,           // value
  Variable,         // index; children: its indexes, as many as the variable has dimensions
  Attribute,        // index, of the model's own
  EntityAttribute,  // index: an EntityAttribute
  EntityType,       // index; its value is index + 1
  Picture,          // index; its value is index + 1
  J,
  Object,    // an argument that is no value: thing and index
  Negate,    // one child
  Not,       // one child
  Binary,    // code: an Operator; two children
  Function,  // code: a Function; children: its arguments, a stream left out; index: the stream, or kNoStream
};

enum class Operator : std::uint8_t {
  Or,
  And,
  Less,
  LessOrEqual,
  Greater,
  GreaterOrEqual,
  Equal,
  NotEqual,
  Add,
  Subtract,
  Multiply,
  Divide,
  Power,
};

enum class Function : std::uint8_t {
  // Distributions.
  Expo,
  Norm,
  Tria,
  Unif,
  Erla,
  Gamm,
  Weib,
  Logn,
  Beta,
  Pois,
  John,
  Disc,
  Cont,
  // The state of the run.
  Now,
  Replication,
  Length,
  Busy,
  Capacity,
  Free,
  InSystem,
  Inside,
  Entered,
  Left,
  Count,
  Average,
  Observations,
  ScheduleValue,
  Member,
  Members,
  // Mathematics.
  Abs,
  Min,
  Max,
  Round,
  Int,
  Floor,
  Ceil,
  Mod,
  Sqrt,
  Exp,
  Ln,
  Log10,
  Pow,
  Sign,
  If,
};

inline constexpr std::uint32_t kNoNode = UINT32_MAX;
inline constexpr std::int32_t kNoStream = -1;

struct ExpressionNode {
  NodeKind kind = NodeKind::Number;
  std::uint8_t code = 0;          // Operator or Function
  Thing thing = Thing::Variable;  // of an Object
  std::int32_t index = -1;
  double value = 0;
  std::uint32_t firstChild = kNoNode;  // the others follow by nextSibling
  std::uint32_t nextSibling = kNoNode;
  std::uint32_t position = 0, length = 0;  // in characters of the field's text, from 0

  Operator AsOperator() const { return static_cast<Operator>(code); }
  Function AsFunction() const { return static_cast<Function>(code); }
  EntityAttribute AsEntityAttribute() const { return static_cast<EntityAttribute>(index); }
};

// Why a text is no expression.
struct ExpressionError {
  std::string_view rule;                   // which rule of the checks it breaks: "field/expression"
  std::uint32_t position = 0, length = 0;  // in characters of the field's text, from 0
  std::string sentence;                    // without a full stop: expected ")" before "3" at character 11
  std::string hint;                        // what to do; may be empty
};

// Something that is read in one of several ways.
struct ExpressionDoubt {
  std::uint32_t position = 0, length = 0;
  std::string name;
  Thing meant, also;
};

// What a field's text says. Without an error it has a root.
struct Expression {
  std::vector<ExpressionNode> nodes;  // children before their parents
  std::uint32_t root = kNoNode;
  std::optional<ExpressionError> error;
  std::vector<ExpressionDoubt> doubts;

  bool IsGood() const { return root != kNoNode; }
  const ExpressionNode& Root() const { return nodes[root]; }
  const ExpressionNode* FirstChild(const ExpressionNode& node) const { return At(node.firstChild); }
  const ExpressionNode* NextSibling(const ExpressionNode& node) const { return At(node.nextSibling); }

 private:
  const ExpressionNode* At(std::uint32_t place) const { return place == kNoNode ? nullptr : &nodes[place]; }
};

// What an argument of a function is: a value, or the thing it names. Inside, Entered and Left want a module.
struct FunctionInfo {
  std::string_view name;
  int least, most;              // arguments, without the stream; most of kAnyNumber: as many as are given
  bool isDistribution;          // takes a stream behind its arguments
  bool inPairs;                 // its arguments come in pairs
  std::optional<Thing> object;  // what its first argument names
};
inline constexpr int kAnyNumber = 1000;
const FunctionInfo& InfoOf(Function function);
// Letter case does not count.
std::optional<Function> FindFunction(std::string_view name);

// withEntity: attributes mean something here. Never throws for what the text holds.
Expression ParseExpression(std::string_view text, const Names& names, bool withEntity);

// What is assigned to by an Assign row of type Other: a variable, with indexes where it has rows; an attribute that may be
// assigned; Capacity(Resource); J.
Expression ParseTarget(std::string_view text, const Names& names);

// --- What can be said of an expression without running it.
// The value of one that is always the same.
std::optional<double> ConstantOf(const Expression& expression);
std::optional<double> ConstantOf(const Expression& expression, const ExpressionNode& node);
// Its mean, where it follows from constants, distributions of constants, sums, products with constants and equal choices.
std::optional<double> MeanOf(const Expression& expression);
// Between which values it lies; infinite where nothing is known.
struct Range {
  double least, most;
};
Range RangeOf(const Expression& expression);

}  // namespace vardo
