#include "base/Text.h"
#include "check/Distributions.h"
#include "check/Rules.h"
#include "validate/CheckDataType.h"

#include <cmath>
#include <string>

namespace vardo {
namespace {

using Origin = FieldValue::Origin;
using Reading = FieldValue::Reading;

constexpr double kNearlyWhole = 1e-9;

std::string DefaultOf(const FieldValue& value) { return value.text.empty() ? "nothing" : Quoted(value.text); }

// --- Texts

void Missing(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (value.origin == Origin::Missing && meaning.meaning != Meaning::Name && at.row <= 0)
      report.Field(at, "{m} has no {f}; " + DefaultOf(value) + " is taken.");
  });
}

void Empty(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning&) {
    if (value.origin == Origin::Empty) report.Field(at, "{m}, {f} is empty; " + DefaultOf(value) + " is taken.");
  });
}

std::string_view ShownAs(const Choice& choice) { return choice.caption.empty() ? choice.code : choice.caption; }

std::string Listed(std::span<const Choice> choices) {
  std::string text;
  for (size_t i = 0; i < choices.size(); ++i) {
    text += i == 0 ? "" : i + 1 == choices.size() ? " or " : ", ";
    text += ShownAs(choices[i]);
  }
  return text;
}

void UnknownChoice(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning != Meaning::Choice) return;
    const std::string why = "{m}, {f}: " + Quoted(value.text) + " is none of " + Listed(meaning.choices);
    if (value.reading == Reading::Unreadable) report.Field(at, why + ".");
    if (value.reading == Reading::AsUnknown)
      report.Field(at, why + "; it is read as " + Quoted(ShownAs(meaning.choices[static_cast<size_t>(value.choice)])) + ".")
          .severity = Severity::Warning;
  });
}

void ShortenedChoice(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning == Meaning::Choice && value.reading == Reading::Shortened)
      report.Field(at, "{m}, {f}: " + Quoted(value.text) + " is read as " +
                           Quoted(ShownAs(meaning.choices[static_cast<size_t>(value.choice)])) + ".");
  });
}

bool IsNumber(const FieldMeaning& meaning) { return meaning.meaning == Meaning::Real || meaning.meaning == Meaning::Integer; }

void NotANumber(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (IsNumber(meaning) && value.reading == Reading::Unreadable)
      report.Field(at, "{m}, {f}: " + Quoted(value.text) + " is no number.");
  });
}

void DecimalComma(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (IsNumber(meaning) && value.reading == Reading::DecimalComma)
      report.Field(at, "{m}, {f}: " + Quoted(value.text) + " is read as " + Short(value.number) + ".");
  });
}

// What the dialogs check in all their boxes when OK is pressed, shown or not.
bool IsRefusedByItsDialog(const FieldValue& value, const FieldMeaning& meaning) {
  switch (meaning.meaning) {
    case Meaning::Expression:
    case Meaning::Count:
    case Meaning::Percent:
      return !IsBalancedExpression(value.text);
    case Meaning::Reference:
      return !IsSymbolName(value.text);
    case Meaning::Real:
    case Meaning::Integer:
      return value.reading == Reading::Unreadable;
    default:
      return false;
  }
}

void Hidden(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach([&](int i) {
    checked.Fields(i).ForEach([&](const FieldValue& value, size_t place, int row) {
      const bool isHidden = !value.counts && row < 0 && value.origin == Origin::Given;
      if (isHidden && IsRefusedByItsDialog(value, MeaningsOf(*checked.Module(i).schema)[place]))
        report.Field({i, place, row}, "{m}, {f} is not used now, but would keep its dialog from closing.");
    });
  });
}

// --- Times

void ZeroInterarrival(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Create", [&](int i) {
    const ModuleFields& fields = checked.Fields(i);
    const bool isEndless = fields[kCreateMaxBatches].expression < 0;
    for (const Field field : {kCreateValue, kCreateExpression})
      if (isEndless && fields[field].counts && RangeOf(checked.model.ExpressionOf(fields[field])).most <= 0)
        report.Field({i, field.place}, "{m}: no time passes between arrivals, so they never end.");
  });
}

// The delay of a Process as a distribution, where its parameters are constants.
struct Delay {
  FieldPlace at;
  std::optional<Distribution> distribution;
  Range range;
};
std::optional<Delay> DelayOf(const CheckedModel& checked, int process) {
  const ModuleFields& fields = checked.Fields(process);
  if (!fields[kProcessDelayType].counts || fields[kProcessDelayType].choice < 0) return std::nullopt;
  const auto delayAt = [&](Field field) { return FieldPlace{process, field.place}; };
  const auto of = [&](Field shown, Function function, std::initializer_list<Field> parameters) {
    Distribution distribution{function, {}};
    for (const Field field : parameters) {
      const auto constant = checked.Constant(fields[field]);
      if (!constant) return Delay{delayAt(shown), std::nullopt, RangeOf(Expression{})};
      distribution.parameters.push_back(*constant);
    }
    const Range range = RangeOf(distribution);
    return Delay{delayAt(shown), std::move(distribution), range};
  };
  switch (fields[kProcessDelayType].As<DelayType>()) {
    case DelayType::Normal:
      return of(kProcessValue, Function::Norm, {kProcessValue, kProcessStdDev});
    case DelayType::Triangular:
      return of(kProcessMin, Function::Tria, {kProcessMin, kProcessValue, kProcessMax});
    case DelayType::Uniform:
      return of(kProcessMin, Function::Unif, {kProcessMin, kProcessMax});
    case DelayType::Constant:
    case DelayType::Expression: {
      const Field field = fields[kProcessValue].counts ? kProcessValue : kProcessExpression;
      const Expression& expression = checked.model.ExpressionOf(fields[field]);
      return Delay{delayAt(field), DistributionAt(expression), RangeOf(expression)};
    }
  }
  return std::nullopt;
}

void NegativeDelay(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Process", [&](int i) {
    const auto delay = DelayOf(checked, i);
    if (delay && delay->range.most < 0) report.Field(delay->at, "{m}, {f}: the delay is negative.");
  });
}

void MaybeNegative(const CheckedModel& checked, RuleReport& report) {
  constexpr double kLeastShare = 0.00135;  // of a normal delay whose mean is three times its deviation
  checked.ForEach("Process", [&](int i) {
    const auto delay = DelayOf(checked, i);
    if (!delay || delay->range.most < 0 || delay->range.least >= 0) return;
    const auto share = delay->distribution ? ShareBelowZero(*delay->distribution) : std::nullopt;
    if (!share && std::isfinite(delay->range.least))
      report.Field(delay->at, "{m}, {f}: a delay can be negative and counts as 0 then.");
    if (share && *share > kLeastShare)
      report.Field(delay->at,
                   "{m}: about " + Short(std::round(*share * 1000) / 10) + " % of the delays are negative and count as 0.");
  });
}

// --- Distributions

// Each distribution whose parameters are all constants: those that expressions call, and the delays.
template <class Visit>
void ForEachDistribution(const CheckedModel& checked, const Visit& visit) {
  checked.ForEachExpression([&](const FieldPlace& at, const Expression& expression) {
    if (!expression.IsGood()) return;
    for (const ExpressionNode& node : expression.nodes)
      if (const auto distribution = DistributionAt(expression, node)) visit(at, *distribution, &node);
  });
  checked.ForEach("Process", [&](int i) {
    const DelayType type = checked.Fields(i)[kProcessDelayType].As<DelayType>();
    if (type != DelayType::Normal && type != DelayType::Triangular && type != DelayType::Uniform) return;
    if (const auto delay = DelayOf(checked, i); delay && delay->distribution) visit(delay->at, *delay->distribution, nullptr);
  });
}

void ReportParameters(const CheckedModel& checked, RuleReport& report, std::string (*why)(const Distribution&)) {
  ForEachDistribution(checked, [&](const FieldPlace& at, const Distribution& distribution, const ExpressionNode* node) {
    std::string sentence = why(distribution);
    if (sentence.empty()) return;
    Finding& finding = report.Field(at, "{m}, {f}: " + std::move(sentence) + ".");
    if (!node) return;
    finding.position = static_cast<int>(node->position);
    finding.length = static_cast<int>(node->length);
  });
}
void WrongDistribution(const CheckedModel& checked, RuleReport& report) { ReportParameters(checked, report, WhyWrongParameters); }
void WrongCumulative(const CheckedModel& checked, RuleReport& report) { ReportParameters(checked, report, WhyNotCumulative); }

// --- Percents and counts

void Percent(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning != Meaning::Percent) return;
    const auto percent = checked.Constant(value);
    if (percent && (*percent < 0 || *percent > 100))
      report.Field(at, "{m}, {f}: " + Short(*percent) + " is not between 0 and 100.");
  });
}

void PercentOneWay(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Decide", [&](int i) {
    const auto percent = checked.Constant(checked.Fields(i)[kDecidePercentTrue]);
    if (percent == 0) report.Field({i, kDecidePercentTrue.place}, "All entities leave {m} by its False exit.");
    if (percent == 100) report.Field({i, kDecidePercentTrue.place}, "All entities leave {m} by its True exit.");
  });
}

// Each count that is always the same.
template <class Visit>
void ForEachConstantCount(const CheckedModel& checked, const Visit& visit) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning == Meaning::Integer && !value.text.empty() && value.reading != Reading::Unreadable)
      visit(at, value.number, meaning.least);
    if (meaning.meaning != Meaning::Count) return;
    if (const auto constant = checked.Constant(value)) visit(at, *constant, meaning.least);
  });
}

void NotWhole(const CheckedModel& checked, RuleReport& report) {
  ForEachConstantCount(checked, [&](const FieldPlace& at, double count, double) {
    const double rounded = std::floor(count + 0.5);
    if (std::abs(count - rounded) > kNearlyWhole)
      report.Field(at, "{m}, {f}: " + Short(count) + " is rounded to " + Short(rounded) + ".");
  });
}

void CountTooSmall(const CheckedModel& checked, RuleReport& report) {
  ForEachConstantCount(checked, [&](const FieldPlace& at, double count, double least) {
    if (std::floor(count + 0.5) < least) report.Field(at, "{m}, {f}: " + Short(count) + " is less than " + Short(least) + ".");
  });
}

// --- Variables

void ArrayInDecide(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning != Meaning::Reference || value.reference.thing != Thing::Variable || !value.reference) return;
    if (checked.model.names.SizeOf(value.reference.index).IsArray())
      report.Field(at, "{m}: " + Quoted(value.text) + " has rows; use an expression, or Other.");
  });
}

void InitialValues(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Variable", [&](int i) {
    const int variable = checked.model.names.Find(Thing::Variable, checked.Module(i).name);
    if (variable < 0) return;
    const VariableSize size = checked.model.names.SizeOf(variable);
    const double elements = std::max(size.rows, 1) * static_cast<double>(std::max(size.columns, 1));
    const int values = checked.Fields(i).rows();
    if (values > 1 && values != elements)
      report.Module(i, "{m}: " + Counted(values, "initial value") + " for " + Short(elements) +
                           (elements == 1 ? " element." : " elements."));
  });
}

void ReadOnly(const CheckedModel& checked, RuleReport& report) {
  ReportExpressionErrors(checked, report);
  const auto isAssigned = [&](const FieldPlace& at) {
    const auto is = [&](std::string_view kind, Field field) { return checked.Is(at.module, kind) && at.place == field.place; };
    return is("Assign", kAssignAttribute) || is("Process", kProcessRowSaveAttribute) || is("Separate", kSeparateAttribute);
  };
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning == Meaning::Reference && value.reference.thing == Thing::EntityAttribute && value.reference &&
        isAssigned(at) && !IsAssignable(static_cast<EntityAttribute>(value.reference.index)))
      report.Field(at, "{m}: " + Quoted(value.text) + " cannot be assigned.");
    if (meaning.meaning != Meaning::Target) return;
    const Expression& target = checked.model.ExpressionOf(value);
    if (!target.IsGood() || target.Root().kind != NodeKind::Function) return;
    const int module =
        checked.model.names.Of(Thing::Resource)[static_cast<size_t>(target.FirstChild(target.Root())->index)].module;
    if (module >= 0 && checked.Fields(module)[kResourceType].Is(ResourceType::Schedule))
      report.Field(at, "{m}: " + Quoted(value.text) + " cannot be assigned, because the resource follows a schedule.");
  });
}

// --- Conditions and units

void ConstantCondition(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Decide", [&](int i) {
    const ModuleFields& fields = checked.Fields(i);
    if (!fields[kDecideValue].counts || !fields[kDecideIf].Is(DecideIf::Expression)) return;
    if (const auto constant = checked.Constant(fields[kDecideValue]))
      report.Field({i, kDecideValue.place},
                   *constant != 0 ? "{m}: the condition is always true." : "{m}: the condition is always false.");
  });
}

void FirstCreationUnit(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Create", [&](int i) {
    const ModuleFields& fields = checked.Fields(i);
    if (!fields[kCreateFirstCreation].counts || fields[kCreateUnits].choice < 0 ||
        fields[kCreateUnits].Is(checked.setup.timeUnit))
      return;
    if (checked.Constant(fields[kCreateFirstCreation]).value_or(0) != 0)
      report.Field(
          {i, kCreateFirstCreation.place},
          "{m}: First Creation is in " + LowerAscii(kTimeUnitChoices[static_cast<size_t>(checked.setup.timeUnit)].code) + ".");
  });
}

constexpr Rule kRules[] = {
    {"field/expression", Severity::Error, ReportExpressionErrors},
    {"field/template", Severity::Error, ReportExpressionErrors},
    {"field/unknown-function", Severity::Error, ReportExpressionErrors},
    {"field/arguments", Severity::Error, ReportExpressionErrors},
    {"field/no-entity", Severity::Error, ReportExpressionErrors},
    {"field/missing", Severity::Note, Missing},
    {"field/empty", Severity::Warning, Empty},
    {"field/unknown-choice", Severity::Error, UnknownChoice},
    {"field/shortened-choice", Severity::Note, ShortenedChoice},
    {"field/not-a-number", Severity::Error, NotANumber},
    {"field/decimal-comma", Severity::Warning, DecimalComma},
    {"field/hidden", Severity::Note, Hidden},
    {"field/zero-interarrival", Severity::Error, ZeroInterarrival},
    {"field/negative-delay", Severity::Error, NegativeDelay},
    {"field/maybe-negative", Severity::Warning, MaybeNegative},
    {"field/distribution", Severity::Error, WrongDistribution},
    {"field/cumulative", Severity::Error, WrongCumulative},
    {"field/percent", Severity::Error, Percent},
    {"field/percent-one-way", Severity::Note, PercentOneWay},
    {"field/not-whole", Severity::Warning, NotWhole},
    {"field/count-too-small", Severity::Error, CountTooSmall},
    {"field/array", Severity::Error, ReportExpressionErrors},
    {"field/array-in-decide", Severity::Error, ArrayInDecide},
    {"field/initial-values", Severity::Warning, InitialValues},
    {"field/read-only", Severity::Error, ReadOnly},
    {"field/constant-condition", Severity::Note, ConstantCondition},
    {"field/first-creation-unit", Severity::Note, FirstCreationUnit},
};

}  // namespace

std::span<const Rule> FieldRules() { return kRules; }

}  // namespace vardo
