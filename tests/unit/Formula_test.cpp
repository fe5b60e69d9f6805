#include "formula/Formula.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>

namespace vardo {
namespace {

// A few cells, by "sheet!cell".
class FewCells : public FormulaScope {
 public:
  std::optional<CellValue> Value(const FormulaReference& reference) const override {
    static const std::map<std::string, CellValue> cells = {{"!Width", 4.0},
                                                           {"!Prop.Name", "Create 1"},
                                                           {"Sheet.3!PinX", 7.0},
                                                           {"ThePage!PageWidth", 11.0},
                                                           {"My 'own' shape!PinY", 2.0},
                                                           {"!Größe", 5.0}};
    const auto found = cells.find(reference.sheet + "!" + reference.cell);
    return found == cells.end() ? std::nullopt : std::optional(found->second);
  }
};

std::optional<CellValue> Value(std::string_view formula) { return Formula(formula).Evaluate(FewCells()).value; }

TEST(Formula, Evaluates) {
  const struct {
    std::string_view formula;
    CellValue want;
  } cases[] = {
      {"1+2*3", 7.0},
      {"(1+2)*3", 9.0},
      {"10-4-3", 3.0},
      {"2^3", 8.0},
      {"2^3^2", 64.0},
      {"-Width/2", -2.0},
      {" Width * 0.5 ", 2.0},
      {"1 in+25.4 mm", 2.0},
      {"50%", 0.5},
      {"180 deg", std::numbers::pi},
      {"1E-3*2", 0.002},
      {".5+1", 1.5},
      {"Sheet.3!PinX+1", 8.0},
      {"ThePage!PageWidth", 11.0},
      {"'My ''own'' shape'!PinY", 2.0},
      {"Größe", 5.0},
      {"Prop.Name", "Create 1"},
      {"\"a\"\"b\"", "a\"b"},
      {"\"a\"&\"b\"", "ab"},
      {"Prop.Name=\"Create 1\"", 1.0},
      {"1<2", 1.0},
      {"2<=1", 0.0},
      {"1<>1", 0.0},
      {"TRUE", 1.0},
      {"GUARD(Width*2)", 8.0},
      {"guard(1)", 1.0},
      {"IF(Width>3,\"big\",\"small\")", "big"},
      {"MIN(3,1,2)", 1.0},
      {"MAX(3,1,2)", 3.0},
      {"ABS(-2)", 2.0},
      {"SQRT(16)", 4.0},
      {"NOT(1)", 0.0},
      {"ATAN2(0,1)", 0.0},
  };
  for (const auto& c : cases) {
    const auto value = Value(c.formula);
    ASSERT_TRUE(value) << c.formula;
    ASSERT_EQ(value->index(), c.want.index()) << c.formula;
    if (const auto* number = std::get_if<double>(&c.want))
      EXPECT_NEAR(std::get<double>(*value), *number, 1e-12) << c.formula;
    else
      EXPECT_EQ(*value, c.want) << c.formula;
  }
}

TEST(Formula, GivesNothingForWhatItCannotEvaluate) {
  for (const std::string_view formula :
       {"",           "1+",      "(1",     "1)",      "Nowhere",  "Sheet.99!PinX", "1/0",   "UNKNOWN(1)", "ABS()",   "ABS(1,2)",
        "ABS(\"a\")", "\"a\"+1", "\"open", "1<\"a\"", "10^10000", "THEMEVAL()",    "'open", "SQRT(-1)",   "1 AND 2", "#REF!"})
    EXPECT_FALSE(Value(formula)) << formula;
}

TEST(Formula, DepthIsBounded) {
  const auto nested = [](int depth) {
    return std::string(static_cast<size_t>(depth), '(') + "1" + std::string(static_cast<size_t>(depth), ')');
  };
  EXPECT_EQ(Value(nested(kDeepestFormula)), CellValue(1.0));
  EXPECT_FALSE(Value(nested(1'000'000)));
  EXPECT_FALSE(Value(std::string(1'000'000, '-') + "1"));
}

std::string WithAForB(std::string_view formula) {
  return Formula(formula).WithReferences([](FormulaReference& reference) {
    if (reference.sheet != "A" || reference.onOtherPage) return false;
    reference.sheet = "B";
    return true;
  });
}

TEST(Formula, ReferencesAreRewrittenAndAllElseStays) {
  const struct {
    const char *formula, *want, *why;
  } cases[] = {
      {"A!X+A!Y", "B!X+B!Y", "every reference"},
      {"\"A!X\"&A!X", "\"A!X\"&B!X", "not in strings"},
      {"'my A'!X+'A'!X", "'my A'!X+B!X", "in quotes too"},
      {"MAX(A!X,AA!X)", "MAX(B!X,AA!X)", "whole names only"},
      {"Pages[A!B]!A!X", "Pages[A!B]!A!X", "not on other pages"},
      {"\"open", "\"open", "a string without an end"},
      {"'open", "'open", "a name without an end"},
      {"A!", "B!", "a reference without a cell"},
      {"  A!X  *  THEMEVAL(A!Y) {", "  B!X  *  THEMEVAL(B!Y) {", "a formula that is beyond us, blanks and all"},
  };
  for (const auto& c : cases) EXPECT_EQ(WithAForB(c.formula), c.want) << c.why;
  EXPECT_EQ(SheetNameInFormula("Process.2"), "Process.2");
  EXPECT_EQ(SheetNameInFormula("it's 2"), "'it''s 2'");
}

TEST(Formula, ErrorsAreToldFromWhatIsBeyondUs) {
  const struct {
    const char *formula, *error, *why;
  } cases[] = {
      {"1/0", "#DIV/0!", "a division by zero"},
      {"\"a\"+1", "#VALUE!", "a text where a number is needed"},
      {"GUARD(REF()*0.5)", "#REF!", "a reference that has been lost"},
      {"THEMEVAL()", "", "a function that is not known may be right"},
      {"Nowhere+1", "", "so may a cell"},
      {"1 +", "", "and a text that is no formula is none of ours"},
  };
  for (const auto& c : cases) {
    const Evaluation evaluation = Formula(c.formula).Evaluate(FewCells());
    EXPECT_FALSE(evaluation.value) << c.formula;
    EXPECT_EQ(evaluation.error, c.error) << c.formula << ": " << c.why;
  }
}

}  // namespace
}  // namespace vardo
