// Expressions as code for the engine.
#pragma once

#include "model/Expression.h"
#include "model/Program.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vardo {

// What stands behind the names of expressions, in the numbers of a program.
struct NameTargets {
  std::function<std::uint32_t(int queue)> lengthOf;                      // level
  std::function<std::uint32_t(int type)> inSystemOf;                     // level
  std::function<std::uint32_t(int module)> insideOf, enteredOf, leftOf;  // level, counters
  std::function<std::uint32_t(int counter)> counterOf;
  std::function<std::uint32_t(int tally)> tallyOf;
  std::function<std::uint32_t(int schedule)> courseOf;
  std::function<std::uint32_t(int attribute)> columnOf;
  std::uint32_t variableJ = 0;  // of Program::variables
};

// Where an expression stands.
struct CodeSite {
  std::uint32_t place = 0;
  std::uint64_t page = 0, shape = 0, field = 0, user = 0;  // its sources follow from these
};

// Puts values into a program, one after the other.
class CodeMaker {
 public:
  CodeMaker(Program& program, const NameTargets& targets) : program_(program), targets_(targets) {}

  std::uint32_t Constant(double x, std::uint32_t place);
  // Throws std::length_error when it needs too many numbers at a time.
  std::uint32_t Of(const Expression& expression, const CodeSite& site);
  // A distribution of expressions; the source is that of the site.
  std::uint32_t OfDraw(Distribution distribution, const std::vector<const Expression*>& parameters, const CodeSite& site);
  // Two expressions compared.
  std::uint32_t OfComparison(const Expression& left, Comparison comparison, const Expression& right, const CodeSite& site);
  std::uint32_t Source(const CodeSite& site, std::uint64_t call);

 private:
  void Begin(const CodeSite& site);
  std::uint32_t Finish();
  void Put(Code code, int change, std::uint32_t b = 0, std::uint16_t a = 0, double value = 0);
  void PutConstant(double x) { Put(Code::Constant, 1, 0, 0, x); }
  void PutUnary(Code code);
  void PutBinary(Code code);
  std::optional<double> ConstantAt(size_t fromEnd) const;
  std::uint32_t Here() const { return static_cast<std::uint32_t>(code_.size()); }
  std::uint32_t PutJump(Code code);
  void Land(std::uint32_t jump);

  void Emit(const Expression& expression, const ExpressionNode& node);
  void EmitNode(const Expression& expression, const ExpressionNode& node);
  void EmitAttribute(EntityAttribute attribute);
  void EmitVariable(const Expression& expression, const ExpressionNode& node);
  void EmitBinary(const Expression& expression, const ExpressionNode& node);
  void EmitFunction(const Expression& expression, const ExpressionNode& node);
  void EmitState(Function function, int thing);
  void EmitIf(const Expression& expression, const ExpressionNode& node);
  void PutDraw(Distribution distribution, std::uint32_t parameters, size_t from, std::uint32_t source);
  std::uint32_t NamedStream(int number);

  Program& program_;
  const NameTargets& targets_;
  std::unordered_map<int, std::uint32_t> namedStreams_;
  CodeSite site_;
  std::uint64_t calls_ = 0;
  std::vector<Instruction> code_;
  std::vector<std::uint32_t> positions_;  // of each instruction
  bool isOneText_ = false;                // else a position says nothing
  std::uint32_t position_ = 0;            // of the node under way
  std::vector<bool> isLanding_;           // somebody jumps to that instruction: it is not to be folded with what stands before
  int depth_ = 0, deepest_ = 0;
};

}  // namespace vardo
