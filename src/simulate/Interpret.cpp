// Expressions that are more than a constant or one draw: a switch over a stack of numbers.
#include "base/Numbers.h"
#include "simulate/Elementary.h"
#include "simulate/World.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

// The sentence with a number in it, for the place of the expression.
[[noreturn]] void Refuse(const Value& value, std::string sentence) { throw ModelError{value.place, std::move(sentence)}; }

std::string Words(double x) { return NumberText(x); }

double Power(const Value& value, double x, double y) {
  const bool isWhole = y == std::floor(y) && y >= -64 && y <= 64;
  if (x == 0 && y < 0) Refuse(value, "0 to the power of " + Words(y));
  if (x < 0 && !isWhole) Refuse(value, Words(x) + " to the power of " + Words(y));
  return Pow(x, y);
}

}  // namespace

double World::Interpret(const Value& value, uint32_t row) {
  const Instruction* at = program_.instructions.data() + value.first;
  try {
    return Interpret(value, row, at);
  } catch (ModelError& error) {
    const auto instruction = static_cast<size_t>(at - program_.instructions.data());
    if (error.position == kNone && instruction < value.first + value.count) error.position = program_.positions[instruction];
    throw;
  }
}

double World::Interpret(const Value& value, uint32_t row, const Instruction*& at) {
  double stack[kStackDepth];
  double* top = stack - 1;  // the last value
  const Instruction* const first = at;
  const Instruction* const end = first + value.count;
  for (; at != end; ++at) {
    switch (at->code) {
      case Code::Constant:
        *++top = at->value;
        break;
      case Code::Column:
        *++top = entities.Columns(row)[at->b];
        break;
      case Code::TimeColumn:
        *++top = entities.Columns(row)[at->b] / program_.unit;
        break;
      case Code::EntityNumber:
        *++top = static_cast<double>(entities[row].number);
        break;
      case Code::EntityType:
        *++top = entities[row].type + 1;
        break;
      case Code::EntityPicture:
        *++top = entities[row].picture + 1;
        break;
      case Code::EntityCreateTime:
        *++top = entities[row].created / program_.unit;
        break;
      case Code::Variable:
        *++top = variables[at->b];
        break;
      case Code::Element: {
        const double j = at->a == 2 ? *top-- : 1;
        *top = variables[ElementAt(program_.variables[at->b], *top, j, value.place)];
        break;
      }
      case Code::Negate:
        *top = -*top;
        break;
      case Code::Not:
        *top = *top == 0 ? 1 : 0;
        break;
      case Code::Truth:
        *top = *top != 0 ? 1 : 0;
        break;
      case Code::Abs:
        *top = *top < 0 ? -*top : *top;
        break;
      case Code::Round:
        *top = RoundHalfUp(*top);
        break;
      case Code::Int:
        *top = *top < 0 ? std::ceil(*top) : std::floor(*top);
        break;
      case Code::Floor:
        *top = std::floor(*top);
        break;
      case Code::Ceil:
        *top = std::ceil(*top);
        break;
      case Code::Sqrt:
        if (*top < 0) Refuse(value, "square root of " + Words(*top));
        *top = std::sqrt(*top);
        break;
      case Code::Exp:
        *top = vardo::Exp(*top);
        break;
      case Code::Ln:
      case Code::Log10:
        if (!(*top > 0)) Refuse(value, "logarithm of " + Words(*top));
        *top = at->code == Code::Ln ? Log(*top) : vardo::Log10(*top);
        break;
      case Code::Sign:
        *top = *top > 0 ? 1 : *top < 0 ? -1 : 0;
        break;
      case Code::Add:
        --top, *top += top[1];
        break;
      case Code::Subtract:
        --top, *top -= top[1];
        break;
      case Code::Multiply:
        --top, *top *= top[1];
        break;
      case Code::Divide:
        if (*top == 0) Refuse(value, "division by zero");
        --top, *top /= top[1];
        break;
      case Code::Power:
        --top, *top = Power(value, *top, top[1]);
        break;
      case Code::Mod:
        if (*top == 0) Refuse(value, "remainder of a division by zero");
        --top, *top = std::fmod(*top, top[1]);
        break;
      case Code::Min:
        --top, *top = top[1] < *top ? top[1] : *top;
        break;
      case Code::Max:
        --top, *top = top[1] > *top ? top[1] : *top;
        break;
      case Code::Less:
        --top, *top = *top < top[1];
        break;
      case Code::LessOrEqual:
        --top, *top = *top <= top[1];
        break;
      case Code::Greater:
        --top, *top = *top > top[1];
        break;
      case Code::GreaterOrEqual:
        --top, *top = *top >= top[1];
        break;
      case Code::Equal:
        --top, *top = *top == top[1];
        break;
      case Code::NotEqual:
        --top, *top = *top != top[1];
        break;
      case Code::Jump:
        at = first + at->b - 1;
        break;
      case Code::JumpIfFalse:
        if (*top-- == 0) at = first + at->b - 1;
        break;
      case Code::Draw: {
        const DrawTable& draw = program_.draws[at->b];
        const auto distribution = static_cast<Distribution>(at->a);
        if (draw.firstConstant != kNone) {
          *++top = DrawConstant(distribution, draw);
          break;
        }
        top -= draw.count;
        const std::span<const double> parameters(top + 1, draw.count);
        const std::string_view complaint = ComplaintOf(distribution, parameters);
        if (!complaint.empty()) Refuse(value, std::string(complaint));
        *++top = vardo::Draw(distribution, parameters, streams_[draw.source]);
        break;
      }
      case Code::Now:
        *++top = now / program_.unit;
        break;
      case Code::Replication:
        *++top = static_cast<double>(run_.replication);
        break;
      case Code::Level:
        *++top = levels[at->b].value;
        break;
      case Code::Counter:
        *++top = counters[at->b];
        break;
      case Code::TallyMean:
        *++top = tallies[at->b].mean / at->value;
        break;
      case Code::TallyCount:
        *++top = static_cast<double>(tallies[at->b].n);
        break;
      case Code::Capacity:
        *++top = capacities[at->b];
        break;
      case Code::Free:
        *++top = std::max(capacities[at->b] - levels[program_.resources[at->b].busy].value, 0.0);
        break;
      case Code::Course:
        *++top = courseValues[at->b];
        break;
      case Code::Member:
        *top = MemberOf(program_.sets[at->b], *top, value.place) + 1;
        break;
    }
  }
  if (!std::isfinite(*top)) [[unlikely]]
    Refuse(value, "the result is beyond all bounds");
  return *top + 0.0;
}

}  // namespace vardo
