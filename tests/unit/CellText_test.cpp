#include "document/CellText.h"

#include "TestTree.h"
#include "base/Numbers.h"

#include <gtest/gtest.h>

namespace vardo {
namespace {

// A Cell element in a tree of its own.
class OneCell {
 public:
  explicit OneCell(const std::string& cell) : tree_("<Row a='1'>" + cell + "</Row>") {}
  pugi::xml_node cell() { return tree_.part().root().child("Cell"); }
  std::string Written() { return tree_.part().Serialise(cell()); }
  void Write(std::string_view formula, const std::optional<CellValue>& value, bool isText = false) {
    WriteFormula(
        tree_.editor(), tree_.part(), cell(), formula, [&] { return Evaluation{value}; }, isText);
  }
  void Undo() { tree_.log().Undo(); }
  EditLog& log() { return tree_.log(); }

 private:
  test::TestTree tree_;
};

TEST(CellText, ReadsTheFormulaThatACellStandsFor) {
  const struct {
    std::string cell, want, why;
    bool isText = false;
  } cases[] = {
      {"<Cell N='Value' V='abc' U='STR'/>", "\"abc\"", "a constant string has no F"},
      {"<Cell N='Value' V='' U='STR'/>", "\"\"", "the empty string"},
      {"<Cell N='Value' V='say &quot;x&quot;' U='STR'/>", "\"say \"\"x\"\"\"", "inner quotes are doubled"},
      {"<Cell N='Value' V='15' U='STR'/>", "\"15\"", "digits with the unit of strings are a string"},
      {"<Cell N='Prompt' V='15'/>", "\"15\"", "a text cell holds a string without a unit too", true},
      {"<Cell N='Value' V='15'/>", "15", "a number"},
      {"<Cell N='PinX' V='5.940000000000001'/>", "5.940000000000001", "a number keeps its source text"},
      {"<Cell N='PinX' V='-2.474993800349878E-6'/>", "-2.474993800349878E-6", "exponent and all"},
      {"<Cell N='Value' V='1' U='BOOL'/>", "TRUE", "boolean"},
      {"<Cell N='Value' V='0' U='BOOL'/>", "FALSE", "boolean"},
      {"<Cell N='W' V='1.574803149606299' U='MM'/>", "40 mm", "V is in inches whatever the unit"},
      {"<Cell N='A' V='1.570796326794897' U='DEG'/>", "90 deg", "V is in radians"},
      {"<Cell N='P' V='0.5' U='PER'/>", "50%", "V is a fraction"},
      {"<Cell N='W' V='2.5' U='IN'/>", "2.5 in", "inches"},
      {"<Cell N='Value' V='Start' U='STR' F='INDEX(0,Prop.T.Format)'/>", "INDEX(0,Prop.T.Format)",
       "F is the formula, V its result"},
      {"<Cell N='Value' V='0' F='No Formula'/>", "", "a cell that has none"},
      {"<Cell N='LineColor' V='Themed' F='THEMEVAL(\"LineColor\")'/>", "THEMEVAL(\"LineColor\")", "themed"},
      {"<Cell N='Font' V='Times New Roman'/>", "\"Times New Roman\"", "a text where a number is usual"},
      {"<Cell N='Value' U='STR'>first line\nsecond</Cell>", "\"first line\nsecond\"",
       "a value with a line break is the element's text"},
      {"<Cell N='Value' U='STR'>first line\r\nsecond</Cell>", "\"first line\nsecond\"", "whose line ends are line feeds to us"},
      {"<Cell N='PinX' V='0.59' F='GUARD(REF()*0.5)' E='#REF!'/>", "GUARD(REF()*0.5)", "an error leaves the formula"},
  };
  for (const auto& c : cases) EXPECT_EQ(FormulaText(OneCell(c.cell).cell(), c.isText), c.want) << c.why;
}

TEST(CellText, TellsInheritedFormulas) {
  EXPECT_TRUE(FormulaIsInherited(OneCell("<Cell N='Width' V='2' F='Inh'/>").cell()));
  EXPECT_FALSE(FormulaIsInherited(OneCell("<Cell N='Width' V='2'/>").cell()));
}

TEST(CellText, ReadsValues) {
  EXPECT_EQ(StoredValue(OneCell("<Cell V='1.5E-3' U='MM'/>").cell(), false), CellValue(1.5e-3));
  EXPECT_EQ(StoredValue(OneCell("<Cell V='12' U='STR'/>").cell(), false), CellValue("12"));
  EXPECT_EQ(StoredValue(OneCell("<Cell V='Themed' F='THEMEVAL()'/>").cell(), false), CellValue("Themed"))
      << "any cell may be themed";
  EXPECT_EQ(StoredValue(OneCell("<Cell>a\nb</Cell>").cell(), true), CellValue("a\nb"));
}

TEST(CellText, WritesAFormulaAsFilesHaveIt) {
  const struct {
    std::string cell, formula;
    std::optional<CellValue> value;
    std::string want, why;
    bool isText = false;
  } cases[] = {
      {"<Cell N='Value' V='0' F='No Formula'/>", "\"abc\"", "abc", "<Cell N='Value' V='abc' U='STR'/>",
       "a constant string has no F"},
      {"<Cell N='Value' V='a' U='STR' F='INDEX(0,Prop.T.Format)'/>", "\"b\"", "b", "<Cell N='Value' V='b' U='STR'/>",
       "F goes with the list's choice"},
      {"<Cell N='Label' V='a'/>", "\"b\"", "b", "<Cell N='Label' V='b'/>", "a text cell needs no unit", true},
      {"<Cell N='Value' V='a' U='STR'/>", "15", 15.0, "<Cell N='Value' V='15'/>", "a number has no unit"},
      {"<Cell N='PinX' V='1' U='MM'/>", "40 mm", 1.5, "<Cell N='PinX' V='1.574803149606299' U='MM'/>",
       "V is in inches, 16 digits"},
      {"<Cell N='Value' V='0'/>", "TRUE", 1.0, "<Cell N='Value' V='1' U='BOOL'/>", "boolean"},
      {"<Cell N='PinX' V='1' F='Inh'/>", "2", 2.0, "<Cell N='PinX' V='2'/>", "a local value is not inherited"},
      {"<Cell N='Width' V='1'/>", "Height*2", 3.0, "<Cell N='Width' V='3' F='Height*2'/>", "a formula keeps its result in V"},
      {"<Cell N='Width' V='1' U='MM'/>", "Height*2", 3.0, "<Cell N='Width' V='3' U='MM' F='Height*2'/>",
       "and the unit it is shown in"},
      {"<Cell N='X' V='7' U='IN'/>", "PAR(PNT(1,2))", std::nullopt, "<Cell N='X' V='7' U='IN' F='PAR(PNT(1,2))'/>",
       "not understood: V stays"},
      {"<Cell N='X' V='7' F='A' E='#REF!'/>", "8", 8.0, "<Cell N='X' V='8'/>", "the error has gone"},
      {"<Cell N='Value' V='7'/>", "", std::nullopt, "<Cell N='Value' V='0' F='No Formula'/>", "no formula"},
      {"<Cell N='Value' V='7' U='STR'/>", "\"one\ntwo\"", "one\ntwo", "<Cell N='Value' U='STR'>one\ntwo</Cell>",
       "line breaks go into the element"},
      {"<Cell N='Value' U='STR' F='Inh'>one\ntwo</Cell>", "\"x\"", "x", "<Cell N='Value' V='x' U='STR'/>",
       "and out of it again, in the usual order"},
      {"<Cell N='PinX' V='1'/>", "5.940000000000001", 5.94, "<Cell N='PinX' V='5.940000000000001'/>", "digits are kept as given"},
      {"<Cell N='PageScale' V='1' U='MM'><RefBy T='Page' ID='0'/></Cell>", "2 mm", 2.0,
       "<Cell N='PageScale' V='0.07874015748031496' U='MM'><RefBy T='Page' ID='0'/></Cell>", "other children stay"},
  };
  for (const auto& c : cases) {
    OneCell cell(c.cell);
    cell.Write(c.formula, c.value, c.isText);
    EXPECT_EQ(cell.Written(), c.want) << c.why;
    while (cell.log().CanUndo()) cell.Undo();
    EXPECT_EQ(cell.Written(), c.cell) << "undone: " << c.why;
  }
}

TEST(CellText, UndoPutsAttributesBackInTheOrderOfAnotherWriter) {
  OneCell cell("<Cell N='Width' U='MM' F='Height*2' V='1'/>");
  cell.Write("2", 2.0);
  while (cell.log().CanUndo()) cell.Undo();
  EXPECT_EQ(cell.Written(), "<Cell N='Width' U='MM' F='Height*2' V='1'/>");
}

TEST(CellText, FormulasComeBackAsTheyWereWritten) {
  for (const std::string formula :
       {"\"a;b\"", "\"say \"\"x\"\"\"", "\"one\ntwo\"", "\"\"", "TRUE", "FALSE", "40 mm", "90 deg", "50%", "1.50", "-3", "1E-6",
        "GUARD(Width*0.5)", "PAR(PNT(Sheet.1!Connections.X1,Sheet.1!Connections.Y1))", "\" blanks \"", "\"&<>'\""}) {
    OneCell cell("<Cell N='Value' V='0'/>");
    cell.Write(formula, std::nullopt);
    EXPECT_EQ(FormulaText(cell.cell(), false), formula);
  }
}

TEST(CellText, TellsConstantsFromFormulas) {
  const struct {
    std::string_view formula, value, unit;
  } constants[] = {{"\"a\"", "a", "STR"}, {"\"\"", "", "STR"}, {"TRUE", "1", "BOOL"}, {"2", "2", ""},
                   {"1 in", "1", "IN"},   {"1 in", "1", "IN"}, {"5%", "0.05", "PER"}, {"2.54 cm", "1", "CM"}};
  for (const auto& c : constants) {
    const auto constant = ParseConstant(c.formula);
    ASSERT_TRUE(constant) << c.formula;
    EXPECT_EQ(constant->value, c.value) << c.formula;
    EXPECT_EQ(constant->unit, c.unit) << c.formula;
  }
  for (const std::string_view formula :
       {"", "Width", "1+1", "\"a\"&\"b\"", "\"a", "\"", "\"a\"b\"", "5 parsecs", "inf", "nan", "0x10", "1 2"})
    EXPECT_FALSE(ParseConstant(formula)) << formula;
}

TEST(CellText, WritesNumbersWithSixteenDigits) {
  const struct {
    double number;
    std::string_view want;
  } cases[] = {{0, "0"},           {-0.0, "0"},        {15, "15"},
               {0.1, "0.1"},       {0.1 + 0.2, "0.3"}, {1.0 / 3, "0.3333333333333333"},
               {-2.5, "-2.5"},     {1e-6, "1E-6"},     {-2.474993800349878e-6, "-2.474993800349878E-6"},
               {1e-300, "1E-300"}, {1e20, "1E20"},     {1e15, "1000000000000000"}};
  for (const auto& c : cases) {
    EXPECT_EQ(NumberText(c.number), c.want);
    EXPECT_NEAR(ParseNumber(c.want).value(), c.number, 1e-15);
  }
}

TEST(CellText, ReadsWholeNumbersOnly) {
  EXPECT_EQ(ParseNumber("+1.5"), 1.5);
  EXPECT_EQ(ParseNumber("1E-3"), 1e-3);
  for (const std::string_view text : {"", "1,5", "1 ", " 1", "1.5x", "inf", "nan", "1e999"})
    EXPECT_FALSE(ParseNumber(text)) << text;
}

}  // namespace
}  // namespace vardo
