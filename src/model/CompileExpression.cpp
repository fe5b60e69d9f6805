#include "model/CompileExpression.h"

#include "model/Sources.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vardo {
namespace {

constexpr Code kBinaryCodes[] = {
    Code::Constant,  // Or and And are jumps
    Code::Constant, Code::Less, Code::LessOrEqual, Code::Greater,  Code::GreaterOrEqual, Code::Equal,
    Code::NotEqual, Code::Add,  Code::Subtract,    Code::Multiply, Code::Divide,         Code::Power,
};

constexpr Code kComparisonCodes[] = {Code::Greater, Code::GreaterOrEqual, Code::Equal,
                                     Code::Less,    Code::LessOrEqual,    Code::NotEqual};

std::optional<Code> UnaryCode(Function function) {
  switch (function) {
    case Function::Abs:
      return Code::Abs;
    case Function::Round:
      return Code::Round;
    case Function::Int:
      return Code::Int;
    case Function::Floor:
      return Code::Floor;
    case Function::Ceil:
      return Code::Ceil;
    case Function::Sqrt:
      return Code::Sqrt;
    case Function::Exp:
      return Code::Exp;
    case Function::Ln:
      return Code::Ln;
    case Function::Log10:
      return Code::Log10;
    case Function::Sign:
      return Code::Sign;
    default:
      return std::nullopt;
  }
}

std::optional<Code> BinaryCode(Function function) {
  switch (function) {
    case Function::Min:
      return Code::Min;
    case Function::Max:
      return Code::Max;
    case Function::Mod:
      return Code::Mod;
    case Function::Pow:
      return Code::Power;
    default:
      return std::nullopt;
  }
}

// Only what gives the same bits everywhere is worked out in advance.
std::optional<double> Folded(Code code, double a, double b) {
  switch (code) {
    case Code::Add:
      return a + b;
    case Code::Subtract:
      return a - b;
    case Code::Multiply:
      return a * b;
    case Code::Divide:
      return b == 0 ? std::nullopt : std::optional(a / b);
    case Code::Less:
      return a < b;
    case Code::LessOrEqual:
      return a <= b;
    case Code::Greater:
      return a > b;
    case Code::GreaterOrEqual:
      return a >= b;
    case Code::Equal:
      return a == b;
    case Code::NotEqual:
      return a != b;
    default:
      return std::nullopt;
  }
}

}  // namespace

std::uint32_t CodeMaker::Constant(double x, std::uint32_t place) {
  program_.values.push_back({ValueKind::Constant, {}, x, 0, 0, place});
  return static_cast<std::uint32_t>(program_.values.size()) - 1;
}

std::uint32_t CodeMaker::Of(const Expression& expression, const CodeSite& site) {
  Begin(site);
  isOneText_ = true;
  Emit(expression, expression.Root());
  return Finish();
}

std::uint32_t CodeMaker::OfDraw(Distribution distribution, const std::vector<const Expression*>& parameters,
                                const CodeSite& site) {
  Begin(site);
  const std::uint32_t source = Source(site, calls_++);
  for (const Expression* parameter : parameters) Emit(*parameter, parameter->Root());
  PutDraw(distribution, static_cast<std::uint32_t>(parameters.size()), 0, source);
  return Finish();
}

std::uint32_t CodeMaker::OfComparison(const Expression& left, Comparison comparison, const Expression& right,
                                      const CodeSite& site) {
  Begin(site);
  Emit(left, left.Root());
  Emit(right, right.Root());
  PutBinary(kComparisonCodes[static_cast<size_t>(comparison)]);
  return Finish();
}

std::uint32_t CodeMaker::Source(const CodeSite& site, std::uint64_t call) {
  program_.sources.push_back(SourceOf(site.page, site.shape, site.field, call, site.user));
  return static_cast<std::uint32_t>(program_.sources.size()) - 1;
}

// ------------------------------------------------------------------------------------------------------ one value

void CodeMaker::Begin(const CodeSite& site) {
  site_ = site;
  calls_ = 0;
  code_.clear();
  positions_.clear();
  isOneText_ = false;
  isLanding_.clear();
  depth_ = deepest_ = 0;
}

// A constant and a draw from constants need no code.
std::uint32_t CodeMaker::Finish() {
  if (deepest_ > static_cast<int>(kStackDepth)) throw std::length_error("too many values at a time");
  const Instruction& first = code_.front();
  Value value{ValueKind::Code, {}, 0, 0, 0, site_.place};
  if (code_.size() == 1 && first.code == Code::Constant) {
    value.kind = ValueKind::Constant;
    value.constant = first.value;
  } else if (code_.size() == 1 && first.code == Code::Draw) {
    value.kind = ValueKind::Draw;
    value.distribution = static_cast<Distribution>(first.a);
    value.first = first.b;
  } else {
    value.first = static_cast<std::uint32_t>(program_.instructions.size());
    value.count = Here();
    program_.instructions.insert(program_.instructions.end(), code_.begin(), code_.end());
    positions_.resize(code_.size());
    program_.positions.insert(program_.positions.end(), positions_.begin(), positions_.end());
  }
  program_.values.push_back(value);
  return static_cast<std::uint32_t>(program_.values.size()) - 1;
}

void CodeMaker::Put(Code code, int change, std::uint32_t b, std::uint16_t a, double value) {
  code_.push_back({code, a, b, value});
  positions_.resize(code_.size());
  positions_.back() = isOneText_ ? position_ : kNone;
  depth_ += change;
  deepest_ = std::max(deepest_, depth_);
}

// The constant that is the n-th instruction from the end, counted from 1, unless somebody jumps behind it.
std::optional<double> CodeMaker::ConstantAt(size_t fromEnd) const {
  if (fromEnd > code_.size() || code_[code_.size() - fromEnd].code != Code::Constant) return std::nullopt;
  for (size_t at = code_.size() - fromEnd; at <= code_.size(); ++at)
    if (at < isLanding_.size() && isLanding_[at]) return std::nullopt;
  return code_[code_.size() - fromEnd].value;
}

void CodeMaker::PutUnary(Code code) {
  const auto x = ConstantAt(1);
  if (x && (code == Code::Negate || code == Code::Not)) {
    code_.back().value = code == Code::Negate ? -*x : *x == 0 ? 1 : 0;
    return;
  }
  Put(code, 0);
}

void CodeMaker::PutBinary(Code code) {
  const auto a = ConstantAt(2), b = ConstantAt(1);
  if (const auto folded = a && b ? Folded(code, *a, *b) : std::nullopt) {
    code_.pop_back();
    code_.back().value = *folded;
    --depth_;
    return;
  }
  Put(code, -1);
}

std::uint32_t CodeMaker::PutJump(Code code) {
  Put(code, code == Code::JumpIfFalse ? -1 : 0);
  return Here() - 1;
}

void CodeMaker::Land(std::uint32_t jump) {
  code_[jump].b = Here();
  isLanding_.resize(code_.size() + 1, false);
  isLanding_[code_.size()] = true;
}

void CodeMaker::PutDraw(Distribution distribution, std::uint32_t parameters, size_t from, std::uint32_t source) {
  DrawTable draw{source, kNone, parameters};
  // All of them constants, and good ones?
  std::vector<double> constants;
  if (code_.size() == from + parameters)
    for (size_t i = parameters; i > 0; --i)
      if (const auto x = ConstantAt(i)) constants.push_back(*x);
  const bool isConstant = constants.size() == parameters && ComplaintOf(distribution, constants).empty();
  if (isConstant) {
    draw.firstConstant = static_cast<std::uint32_t>(program_.constants.size());
    program_.constants.insert(program_.constants.end(), constants.begin(), constants.end());
    code_.resize(from);
    depth_ -= static_cast<int>(parameters);
  }
  program_.draws.push_back(draw);
  Put(Code::Draw, isConstant ? 1 : 1 - static_cast<int>(parameters), static_cast<std::uint32_t>(program_.draws.size()) - 1,
      static_cast<std::uint16_t>(distribution));
}

std::uint32_t CodeMaker::NamedStream(int number) {
  const auto [found, isNew] = namedStreams_.try_emplace(number, static_cast<std::uint32_t>(program_.sources.size()));
  if (isNew) program_.sources.push_back(SourceOfNamedStream(static_cast<std::uint64_t>(number)));
  return found->second;
}

// ------------------------------------------------------------------------------------------------------ the tree

void CodeMaker::Emit(const Expression& expression, const ExpressionNode& node) {
  const std::uint32_t outer = std::exchange(position_, node.position);
  EmitNode(expression, node);
  position_ = outer;
}

void CodeMaker::EmitNode(const Expression& expression, const ExpressionNode& node) {
  switch (node.kind) {
    case NodeKind::Number:
      PutConstant(node.value);
      break;
    case NodeKind::Variable:
      EmitVariable(expression, node);
      break;
    case NodeKind::Attribute:
      Put(Code::Column, 1, targets_.columnOf(node.index));
      break;
    case NodeKind::EntityAttribute:
      EmitAttribute(node.AsEntityAttribute());
      break;
    case NodeKind::EntityType:
    case NodeKind::Picture:
      PutConstant(node.index + 1);
      break;
    case NodeKind::J:
      Put(Code::Variable, 1, program_.variables[targets_.variableJ].first);
      break;
    case NodeKind::Object:
      break;  // its function has looked at it
    case NodeKind::Negate:
    case NodeKind::Not:
      Emit(expression, *expression.FirstChild(node));
      PutUnary(node.kind == NodeKind::Negate ? Code::Negate : Code::Not);
      break;
    case NodeKind::Binary:
      EmitBinary(expression, node);
      break;
    case NodeKind::Function:
      EmitFunction(expression, node);
      break;
  }
}

void CodeMaker::EmitAttribute(EntityAttribute attribute) {
  switch (attribute) {
    case EntityAttribute::Number:
      Put(Code::EntityNumber, 1);
      return;
    case EntityAttribute::Type:
      Put(Code::EntityType, 1);
      return;
    case EntityAttribute::Picture:
      Put(Code::EntityPicture, 1);
      return;
    case EntityAttribute::CreateTime:
      Put(Code::EntityCreateTime, 1);
      return;
    default:
      break;
  }
  const std::uint32_t column = program_.ColumnOf(attribute);
  if (column == kNone)
    PutConstant(0);
  else
    Put(IsTime(attribute) ? Code::TimeColumn : Code::Column, 1, column);
}

void CodeMaker::EmitVariable(const Expression& expression, const ExpressionNode& node) {
  const auto variable = static_cast<std::uint32_t>(node.index);
  std::uint16_t indexes = 0;
  for (const ExpressionNode* index = expression.FirstChild(node); index != nullptr;
       index = expression.NextSibling(*index), ++indexes)
    Emit(expression, *index);
  if (indexes == 0)
    Put(Code::Variable, 1, program_.variables[variable].first);
  else
    Put(Code::Element, 1 - indexes, variable, indexes);
}

void CodeMaker::EmitBinary(const Expression& expression, const ExpressionNode& node) {
  const ExpressionNode& left = *expression.FirstChild(node);
  const ExpressionNode& right = *expression.NextSibling(left);
  const Operator op = node.AsOperator();
  Emit(expression, left);
  if (op != Operator::And && op != Operator::Or) {
    Emit(expression, right);
    PutBinary(kBinaryCodes[static_cast<size_t>(op)]);
    return;
  }
  // The right side is evaluated only where it decides.
  if (op == Operator::Or) PutUnary(Code::Not);
  const std::uint32_t isDecided = PutJump(Code::JumpIfFalse);
  Emit(expression, right);
  PutUnary(Code::Truth);
  const std::uint32_t end = PutJump(Code::Jump);
  --depth_;
  Land(isDecided);
  PutConstant(op == Operator::Or ? 1 : 0);
  Land(end);
}

void CodeMaker::EmitIf(const Expression& expression, const ExpressionNode& node) {
  const ExpressionNode& condition = *expression.FirstChild(node);
  const ExpressionNode& then = *expression.NextSibling(condition);
  Emit(expression, condition);
  const std::uint32_t isFalse = PutJump(Code::JumpIfFalse);
  Emit(expression, then);
  const std::uint32_t end = PutJump(Code::Jump);
  --depth_;
  Land(isFalse);
  Emit(expression, *expression.NextSibling(then));
  Land(end);
}

void CodeMaker::EmitFunction(const Expression& expression, const ExpressionNode& node) {
  const Function function = node.AsFunction();
  if (function == Function::If) return EmitIf(expression, node);
  const bool isDraw = InfoOf(function).isDistribution;
  const std::uint32_t source = !isDraw ? kNone : node.index != kNoStream ? NamedStream(node.index) : Source(site_, calls_++);
  const size_t from = code_.size();
  std::uint32_t arguments = 0;
  const auto binary = BinaryCode(function);
  for (const ExpressionNode* child = expression.FirstChild(node); child != nullptr; child = expression.NextSibling(*child)) {
    Emit(expression, *child);
    if (child->kind == NodeKind::Object) continue;
    if (binary && arguments > 0) PutBinary(*binary);
    ++arguments;
  }
  if (isDraw)
    PutDraw(static_cast<Distribution>(function), arguments, from, source);
  else if (const auto unary = UnaryCode(function))
    PutUnary(*unary);
  else if (!binary)
    EmitState(function, node.firstChild == kNoNode ? -1 : expression.FirstChild(node)->index);
}

void CodeMaker::EmitState(Function function, int thing) {
  const auto number = static_cast<std::uint32_t>(thing);
  switch (function) {
    case Function::Now:
      Put(Code::Now, 1);
      break;
    case Function::Replication:
      Put(Code::Replication, 1);
      break;
    case Function::Length:
      Put(Code::Level, 1, targets_.lengthOf(thing));
      break;
    case Function::Busy:
      Put(Code::Level, 1, program_.resources[number].busy);
      break;
    case Function::Capacity:
      Put(Code::Capacity, 1, number);
      break;
    case Function::Free:
      Put(Code::Free, 1, number);
      break;
    case Function::InSystem:
      Put(Code::Level, 1, targets_.inSystemOf(thing));
      break;
    case Function::Inside:
      Put(Code::Level, 1, targets_.insideOf(thing));
      break;
    case Function::Entered:
      Put(Code::Counter, 1, targets_.enteredOf(thing));
      break;
    case Function::Left:
      Put(Code::Counter, 1, targets_.leftOf(thing));
      break;
    case Function::Count:
      Put(Code::Counter, 1, targets_.counterOf(thing));
      break;
    case Function::Average:
      Put(Code::TallyMean, 1, targets_.tallyOf(thing), 0, 1);
      break;
    case Function::Observations:
      Put(Code::TallyCount, 1, targets_.tallyOf(thing));
      break;
    case Function::ScheduleValue:
      Put(Code::Course, 1, targets_.courseOf(thing));
      break;
    case Function::Member:
      Put(Code::Member, 0, number);
      break;
    case Function::Members:
      PutConstant(program_.sets[number].members.count);
      break;
    default:
      break;
  }
}

}  // namespace vardo
