#include "check/Rules.h"

namespace vardo {

// What a text that is no expression breaks has been found when it was read.
void ReportExpressionErrors(const CheckedModel& checked, RuleReport& report) {
  checked.ForEachWrongExpression([&](const FieldPlace& at, const Expression& expression) {
    if (expression.error->rule != report.rule()) return;
    const bool isQuestion = expression.error->sentence.ends_with('?');
    Finding& finding = report.Field(at, "{m}, {f}: " + expression.error->sentence + (isQuestion ? "" : "."));
    finding.position = static_cast<int>(expression.error->position);
    finding.length = static_cast<int>(expression.error->length);
    finding.hint = expression.error->hint;
  });
}

}  // namespace vardo
