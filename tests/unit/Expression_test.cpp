#include "model/Expression.h"

#include "TestPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <optional>
#include <random>
#include <string>

namespace vardo {
namespace {

class Expressions : public testing::Test {
 private:
  TestPlatform platform_;
};

// A model with something of each kind.
Names SomeNames() {
  Names names;
  constexpr int kNobody = 0;
  names.Add(Thing::Variable, "Work in Progress", kNobody);
  names.Add(Thing::Variable, "2nd Floor", kNobody);
  names.Add(Thing::Variable, "50%", kNobody);
  names.Add(Thing::Variable, "Order", kNobody);
  names.Add(Thing::Variable, "e+1", kNobody);
  names.Add(Thing::Variable, "7", kNobody);
  names.SetSize(names.Add(Thing::Variable, "Stock", kNobody), {3, 0});
  names.SetSize(names.Add(Thing::Variable, "Grid", kNobody), {2, 4});
  names.SetSize(names.Add(Thing::Variable, "Max", kNobody), {2, 0});
  names.Add(Thing::Variable, "Sign", kNobody);
  names.Add(Thing::Attribute, "Size", kNobody);
  names.Add(Thing::EntityType, "Customer", kNobody);
  names.Add(Thing::EntityType, "Order", kNobody);
  names.Add(Thing::EntityType, "Größe", kNobody);
  names.Add(Thing::Module, "Weld", kNobody);
  names.Add(Thing::Queue, "Weld.Queue", kNobody);
  names.Add(Thing::Queue, "Queue 1", kNobody);
  names.Add(Thing::Resource, "Teller", kNobody);
  names.Add(Thing::Counter, "Served", kNobody);
  names.Add(Thing::Tally, "Time", kNobody);
  names.Add(Thing::Set, "Tellers", kNobody);
  names.Add(Thing::Schedule, "Shift", kNobody);
  return names;
}

// A tree as text: every operation in parentheses, each name in <> with what it stands for.
class Written {
 public:
  Written(const Expression& expression, const Names& names) : expression_(expression), names_(names) {}
  std::string Text() const { return Of(expression_.Root()); }

 private:
  std::string Thing_(Thing thing, int index) const {
    return "<" + std::string(WordFor(thing)) + " " + std::string(names_.Of(thing)[static_cast<size_t>(index)].name) + ">";
  }
  std::string Children(const ExpressionNode& node, const char* between) const {
    std::string text;
    for (const ExpressionNode* child = expression_.FirstChild(node); child; child = expression_.NextSibling(*child))
      text += (text.empty() ? "" : between) + Of(*child);
    return text;
  }
  std::string Of(const ExpressionNode& node) const {
    constexpr const char* kSigns[] = {" | ", " & ", "<", "<=", ">", ">=", "=", "<>", "+", "-", "*", "/", "^"};
    switch (node.kind) {
      case NodeKind::Number:
        return testing::PrintToString(node.value);
      case NodeKind::Variable: {
        const std::string indexes = Children(node, ",");
        return Thing_(Thing::Variable, node.index) + (indexes.empty() ? "" : "[" + indexes + "]");
      }
      case NodeKind::Attribute:
        return Thing_(Thing::Attribute, node.index);
      case NodeKind::EntityAttribute:
        return "<" + std::string(NameOf(node.AsEntityAttribute())) + ">";
      case NodeKind::EntityType:
        return Thing_(Thing::EntityType, node.index);
      case NodeKind::Picture:
        return Thing_(Thing::Picture, node.index);
      case NodeKind::J:
        return "J";
      case NodeKind::Object:
        return Thing_(node.thing, node.index);
      case NodeKind::Negate:
        return "(-" + Children(node, "") + ")";
      case NodeKind::Not:
        return "(!" + Children(node, "") + ")";
      case NodeKind::Binary:
        return "(" + Children(node, kSigns[node.code]) + ")";
      case NodeKind::Function:
        return std::string(InfoOf(node.AsFunction()).name) + "(" + Children(node, ",") +
               (node.index == kNoStream ? "" : "; " + std::to_string(node.index)) + ")";
    }
    return "?";
  }
  const Expression& expression_;
  const Names& names_;
};

TEST_F(Expressions, IsReadAsItIsMeant) {
  const Names names = SomeNames();
  const struct {
    const char *text, *want, *why;
  } cases[] = {
      {"1", "1", "a number"},
      {" 1.5 ", "1.5", "blanks around"},
      {"1e-999", "0", "nearer to 0 than any other number"},
      {".5", "0.5", "no digit before the point"},
      {"1.", "1", "none behind it"},
      {"1e3", "1000", "an exponent"},
      {"1.5E-1", "0.15", "a negative one"},
      {"1+2*3", "(1+(2*3))", "products before sums"},
      {"1-2-3", "((1-2)-3)", "from the left"},
      {"8/4/2", "((8/4)/2)", "from the left"},
      {"2^3^2", "(2^(3^2))", "powers from the right"},
      {"2**3", "(2^3)", "the other sign of a power"},
      {"-2^2", "(-(2^2))", "a power before its sign"},
      {"2^-1", "(2^(-1))", "a sign within a power"},
      {"2*-3", "(2*(-3))", "a sign within a product"},
      {"- - 1", "(-(-1))", "two signs"},
      {"+1", "1", "a plus says nothing"},
      {"(1+2)*3", "((1+2)*3)", "parentheses"},
      {"1<2", "(1<2)", "a comparison"},
      {"1=2", "(1=2)", "one sign for equal"},
      {"1 == 2", "(1=2)", "two signs for equal"},
      {"1!=2", "(1<>2)", "unequal"},
      {"1<=2 && 3>=4 || 5<>6", "(((1<=2) & (3>=4)) | (5<>6))", "and before or"},
      {"1 or 2 AND NOT 3 = 4", "(1 | (2 & (!(3=4))))", "the words, and not before comparisons"},
      {"!1 < 2", "(!(1<2))", "the sign binds like the word"},
      {"1<2 = 0 OR 1", "", "a comparison of a comparison is refused"},
      {"Work in Progress + 1", "(<variable Work in Progress>+1)", "a name with blanks"},
      {"work  IN progress", "<variable Work in Progress>", "neither case nor the number of blanks counts"},
      {"2nd Floor*2", "(<variable 2nd Floor>*2)", "a name beats the number that it begins with"},
      {"50%", "<variable 50%>", "a sign within a name"},
      {"50", "50", "the same number without it"},
      {"7", "7", "a name that is a number is a number"},
      {"[7]", "<variable 7>", "but for brackets"},
      {"[e+1] + 1", "(<variable e+1>+1)", "brackets hold any name"},
      {"Size", "<attribute Size>", "an attribute"},
      {"Entity.CreateTime", "<Entity.CreateTime>", "one that every entity has"},
      {"entity.transfertime", "<Entity.TranTime>", "its other name"},
      {"Picture", "<Entity.Picture>", "and that of the picture"},
      {"Entity.Type == Customer", "(<Entity.Type>=<entity type Customer>)", "a type stands for its number"},
      {"Picture.Green Ball", "<picture Picture.Green Ball>", "so does a picture"},
      {"J+1", "(J+1)", "the number that every run has"},
      {"Order", "<variable Order>", "a variable beats a type"},
      {"Größe", "<entity type Größe>", "letters beyond ASCII"},
      {"GRÖSSE = 1 OR größe", "", "ß is not ss"},
      {"größe", "<entity type Größe>", "case beyond ASCII"},
      {"Stock(2)", "<variable Stock>[2]", "an element"},
      {"Grid (1, J)", "<variable Grid>[1,J]", "of a table"},
      {"Max(1)", "<variable Max>[1]", "a variable with rows hides a function"},
      {"Sign(-1)", "SIGN((-1))", "one without rows does not"},
      {"EXPO(3)", "EXPO(3)", "a distribution"},
      {"expo (3, 7)", "EXPO(3; 7)", "with a stream"},
      {"TRIA(1,2,3)", "TRIA(1,2,3)", "three values"},
      {"DISC(.3,1,1,2)", "DISC(0.3,1,1,2)", "pairs"},
      {"CONT(.3,1,1,2,5)", "CONT(0.3,1,1,2; 5)", "pairs and a stream"},
      {"Length(Weld.Queue) + Length( queue 1 )", "(Length(<queue Weld.Queue>)+Length(<queue Queue 1>))", "queues"},
      {"Inside([Weld])", "Inside(<module Weld>)", "an object in brackets"},
      {"Busy(Teller)<Capacity(Teller)", "(Busy(<resource Teller>)<Capacity(<resource Teller>))", "a resource"},
      {"Member(Tellers, 1)/Members(Tellers)", "(Member(<set Tellers>,1)/Members(<set Tellers>))", "a set"},
      {"Count(Served)-Average(Time)*ScheduleValue(Shift)",
       "(Count(<counter Served>)-(Average(<tally Time>)*ScheduleValue(<schedule Shift>)))", "what is recorded"},
      {"InSystem(Customer)", "InSystem(<entity type Customer>)", "a type as an object"},
      {"Now()", "Now()", "no argument"},
      {"IF(Size>1, 2, MIN(3,4,5))", "IF((<attribute Size>>1),2,MIN(3,4,5))", "as many arguments as are given"},
  };
  for (const auto& [text, want, why] : cases) {
    const Expression expression = ParseExpression(text, names, true);
    if (std::string_view(want).empty()) {
      EXPECT_FALSE(expression.IsGood()) << text << ": " << why;
      continue;
    }
    ASSERT_TRUE(expression.IsGood()) << text << ": " << expression.error->sentence;
    EXPECT_EQ(Written(expression, names).Text(), want) << text << ": " << why;
  }
}

TEST_F(Expressions, SaysWhatIsWrongAndWhere) {
  const Names names = SomeNames();
  const struct {
    const char *text, *rule, *sentence;
    unsigned position, length;
  } cases[] = {
      {"", "field/expression", "expected a value at character 1", 0, 1},
      {"TRIA(1, 2 3)", "field/expression", "expected \",\" or \")\" before \"3\" at character 11", 10, 1},
      {"TRIA(1,2,3", "field/expression", "expected \",\" or \")\" at character 11", 10, 1},
      {"(1", "field/expression", "expected \")\" at character 3", 2, 1},
      {"1 +", "field/expression", "expected a value at character 4", 3, 1},
      {"1 + * 2", "field/expression", "expected a value before \"*\" at character 5", 4, 1},
      {"(1))", "field/expression", "expected an operator before \")\" at character 4", 3, 1},
      {"3 Size", "field/expression", "expected an operator before \"Size\" at character 3", 2, 4},
      {"50 % 2", "field/expression", "expected an operator before \"% 2\" at character 4", 3, 3},
      {"1 < 2 < 3", "field/expression", "a comparison cannot be compared once more at character 7", 6, 1},
      {"2 * NOT 1", "field/expression", "expected a value before \"NOT 1\" at character 5", 4, 5},
      {"[Size", "field/expression", "expected \"]\" at character 6", 5, 1},
      {"1e999", "field/expression", "a number cannot be that large at character 1", 0, 5},
      {"Teller + 1", "field/expression", "\"Teller\" is a resource, which has no value of its own", 0, 6},
      {"Weld.Queue", "field/expression", "\"Weld.Queue\" is a queue, which has no value of its own", 0, 10},
      {"Queue Lenght", "names/unknown", "nothing is called \"Queue Lenght\"", 0, 12},
      {"1 + Sizes and 2", "names/unknown", "nothing is called \"Sizes\"; did you mean \"Size\"?", 4, 5},
      {"Length(Wled.Queue)", "names/unknown", "nothing is called \"Wled.Queue\"; did you mean \"Weld.Queue\"?", 7, 10},
      {"Größe + Grösse", "names/unknown", "nothing is called \"Grösse\"; did you mean \"Größe\"?", 8, 6},
      {"Length(Teller)", "field/arguments", "Length wants a queue; \"Teller\" is none", 7, 6},
      {"Length(1)", "names/unknown", "nothing is called \"1\"", 7, 1},
      {"Length()", "field/arguments", "Length wants 1 value, not 0", 0, 8},
      {"EXPO (Mean)", "field/template", "put a value in place of \"Mean\"", 6, 4},
      {"CONT(P1,V1,...)", "field/template", "put a value in place of \"P1\"", 5, 2},
      {"Mean", "names/unknown", "nothing is called \"Mean\"", 0, 4},
      {"EXPON(3)", "field/unknown-function", "there is no function \"EXPON\"", 0, 5},
      {"Customer(3)", "field/unknown-function", "there is no function \"Customer\"", 0, 8},
      {"TRIA(1,2)", "field/arguments", "TRIA wants 3 values, and perhaps a stream, not 2", 0, 9},
      {"TRIA(1,2,3,4,5)", "field/arguments", "TRIA wants 3 values, and perhaps a stream, not 5", 0, 15},
      {"DISC(1)", "field/arguments", "DISC wants pairs of a probability and a value, and perhaps a stream, not 1", 0, 7},
      {"Now(1)", "field/arguments", "Now wants no value, not 1", 0, 6},
      {"MIN()", "field/arguments", "MIN wants at least 1 value, not 0", 0, 5},
      {"EXPO(3, 1.5)", "field/arguments", "the stream of EXPO is a whole number", 8, 3},
      {"EXPO(3, Size)", "field/arguments", "the stream of EXPO is a whole number", 8, 4},
      {"Stock", "field/array", "\"Stock\" has 3 rows", 0, 5},
      {"Stock(5)", "field/array", "\"Stock\" has 3 rows", 6, 1},
      {"Stock(0)", "field/array", "\"Stock\" has 3 rows", 6, 1},
      {"Stock(1,2)", "field/array", "\"Stock\" wants 1 index, not 2", 0, 10},
      {"Grid(1)", "field/array", "\"Grid\" wants 2 indexes, not 1", 0, 7},
      {"Grid(1,5)", "field/array", "\"Grid\" has 4 columns", 7, 1},
      {"50%(1)", "field/array", "\"50%\" has no rows", 0, 3},
  };
  for (const auto& [text, rule, sentence, position, length] : cases) {
    const Expression expression = ParseExpression(text, names, true);
    ASSERT_FALSE(expression.IsGood()) << text;
    ASSERT_TRUE(expression.error) << text;
    EXPECT_EQ(expression.error->rule, rule) << text;
    EXPECT_EQ(expression.error->sentence, sentence) << text;
    EXPECT_EQ(expression.error->position, position) << text;
    EXPECT_EQ(expression.error->length, length) << text;
  }
}

TEST_F(Expressions, NeedsAnEntityForAttributes) {
  const Names names = SomeNames();
  for (const char* text : {"Size", "EXPO(Entity.Type)"}) {
    const Expression expression = ParseExpression(text, names, false);
    ASSERT_TRUE(expression.error) << text;
    EXPECT_EQ(expression.error->rule, "field/no-entity") << text;
  }
  EXPECT_EQ(ParseExpression("Size", names, false).error->sentence, "there is no entity here whose \"Size\" could be taken");
  EXPECT_TRUE(ParseExpression("Order + Customer", names, false).IsGood());
}

TEST_F(Expressions, SaysWhenANameFitsSeveralThings) {
  const Names names = SomeNames();
  const Expression expression = ParseExpression("1 + Order", names, true);
  ASSERT_EQ(expression.doubts.size(), 1u);
  EXPECT_EQ(expression.doubts[0].name, "Order");
  EXPECT_EQ(expression.doubts[0].meant, Thing::Variable);
  EXPECT_EQ(expression.doubts[0].also, Thing::EntityType);
  EXPECT_EQ(expression.doubts[0].position, 4u);
  EXPECT_TRUE(ParseExpression("Customer", names, true).doubts.empty());
}

TEST_F(Expressions, TargetsAreWhatCanBeAssigned) {
  const Names names = SomeNames();
  for (const char* text : {"Stock(2)", "Grid(1, J)", "50%", "Size", "Entity.Picture", "Entity.Type", "Capacity(Teller)", "J"})
    EXPECT_TRUE(ParseTarget(text, names).IsGood()) << text;
  const struct {
    const char *text, *rule;
  } cases[] = {
      {"Entity.CreateTime", "field/read-only"},
      {"Customer", "field/read-only"},
      {"1", "field/read-only"},
      {"Busy(Teller)", "field/read-only"},
      {"J + 1", "field/read-only"},
      {"Stock", "field/array"},
      {"Nobody", "names/unknown"},
  };
  for (const auto& [text, rule] : cases) {
    const Expression target = ParseTarget(text, names);
    ASSERT_TRUE(target.error) << text;
    EXPECT_EQ(target.error->rule, rule) << text;
  }
  EXPECT_EQ(ParseTarget("Entity.CreateTime", names).error->sentence, "\"Entity.CreateTime\" cannot be assigned");
}

TEST_F(Expressions, NodesKnowWhereTheyStand) {
  const Names names = SomeNames();
  const Expression expression = ParseExpression("Größe + EXPO( 3 )", names, true);
  ASSERT_TRUE(expression.IsGood());
  const ExpressionNode* left = expression.FirstChild(expression.Root());
  const ExpressionNode* right = expression.NextSibling(*left);
  EXPECT_EQ(left->position, 0u);
  EXPECT_EQ(left->length, 5u) << "in characters";
  EXPECT_EQ(right->position, 8u);
  EXPECT_EQ(right->length, 9u);
  EXPECT_EQ(expression.FirstChild(*right)->position, 14u);
}

TEST_F(Expressions, KnowsWhatIsAlwaysTheSame) {
  const Names names = SomeNames();
  const struct {
    const char* text;
    std::optional<double> want;
  } cases[] = {
      {"1+2*3", 7},           {"-2^2", -4},        {"1/0", {}},          {"EXPO(1)", {}},   {"Order", {}},
      {"Customer", 1},        {"IF(1,2,3)", 2},    {"MIN(1,Order)", {}}, {"MIN(3,1,2)", 1}, {"ROUND(2.5)", 3},
      {"1 = 1 AND 2 < 1", 0}, {"NOT 0", 1},        {"SQRT(-1)", {}},     {"MOD(7, 4)", 3},  {"Now()", {}},
      {"INT(-1.5)", -1},      {"FLOOR(-1.5)", -2}, {"CEIL(1.2)", 2},     {"ABS(-3)", 3},    {"POW(2,10)", 1024},
      {"LOG10(1000)", 3},     {"SIGN(-2)", -1},    {"EXP(0)", 1},        {"LN(1)", 0},      {"5 - -5", 10},
  };
  for (const auto& [text, want] : cases) EXPECT_EQ(ConstantOf(ParseExpression(text, names, true)), want) << text;
}

TEST_F(Expressions, KnowsMeansThatFollow) {
  const Names names = SomeNames();
  const struct {
    const char* text;
    std::optional<double> want;
  } cases[] = {
      {"3", 3},
      {"EXPO(3)", 3},
      {"2*EXPO(3)+1", 7},
      {"EXPO(3)*EXPO(3)", {}},
      {"1/EXPO(3)", {}},
      {"EXPO(3)/3", 1},
      {"-NORM(2,1)", -2},
      {"TRIA(1,2,6)", 3},
      {"UNIF(1,3)", 2},
      {"ERLA(.5,4)", 2},
      {"GAMM(2,3)", 6},
      {"WEIB(2,1)", 2},
      {"LOGN(3,1)", 3},
      {"BETA(1,3)", .25},
      {"POIS(4)", 4},
      {"JOHN(1,1,1,1)", {}},
      {"DISC(.25,4,1,8)", 7},
      {"CONT(.5,2,1,4)", 2.5},
      {"IF(Order, EXPO(2), UNIF(1,3))", 2},
      {"IF(Order, 1, 2)", {}},
      {"EXPO(Order)", {}},
      {"Order", {}},
  };
  for (const auto& [text, want] : cases) EXPECT_EQ(MeanOf(ParseExpression(text, names, true)), want) << text;
}

TEST_F(Expressions, KnowsBetweenWhichValuesItLies) {
  const Names names = SomeNames();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const struct {
    const char* text;
    double least, most;
  } cases[] = {
      {"-1", -1, -1},
      {"EXPO(3)", 0, kInfinity},
      {"NORM(1,1)", -kInfinity, kInfinity},
      {"UNIF(1,3)-2", -1, 1},
      {"2*TRIA(1,2,3)", 2, 6},
      {"-UNIF(1,3)", -3, -1},
      {"UNIF(1,2)/UNIF(2,4)", .25, 1},
      {"1/Order", -kInfinity, kInfinity},
      {"MIN(1,Order)", -kInfinity, 1},
      {"MIN(UNIF(1,3), 2)", 1, 2},
      {"Order > 1", 0, 1},
      {"DISC(.5,-1,1,4)", -1, 4},
      {"IF(Order, 1, UNIF(2,3))", 1, 3},
      {"Length(Weld.Queue)", 0, kInfinity},
      {"0*EXPO(1)", 0, 0},
      {"ABS(Order)", 0, kInfinity},
  };
  for (const auto& [text, least, most] : cases) {
    const Range range = RangeOf(ParseExpression(text, names, true));
    EXPECT_EQ(range.least, least) << text;
    EXPECT_EQ(range.most, most) << text;
  }
}

// Texts made of what expressions are made of, in any order: each is read or refused, and what is said of it lies within it.
TEST_F(Expressions, AnyTextIsReadOrRefused) {
  const Names names = SomeNames();
  constexpr const char* kPieces[] = {"1",     ".5",    "1e",      "e",          "Order", "Work in Progress",
                                     "Stock", "(",     ")",       ",",          "+",     "-",
                                     "*",     "/",     "^",       "**",         "<",     "=",
                                     "==",    "<>",    "!",       "&&",         "||",    " AND ",
                                     " OR ",  " NOT ", " ",       "[",          "]",     "Größe",
                                     "EXPO(", "IF(",   "Length(", "Weld.Queue", "%",     "#",
                                     "\"",    "\xff",  "$",       "\t",         "DISC(", "..."};
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto pieces = random() % 12; pieces > 0; --pieces) text += kPieces[random() % std::size(kPieces)];
    const Expression expression = ParseExpression(text, names, random() % 2 == 0);
    ASSERT_NE(expression.IsGood(), expression.error.has_value()) << text;
    const size_t end = text.size() + 1;
    if (expression.error) {
      ASSERT_FALSE(expression.error->sentence.empty()) << text;
      ASSERT_LE(expression.error->position + expression.error->length, end) << text;
    }
    for (const ExpressionNode& node : expression.nodes) ASSERT_LE(node.position + node.length, end) << text;
    ConstantOf(expression);
    MeanOf(expression);
    RangeOf(expression);
  }
}

TEST_F(Expressions, ThatIsTooLongOrTooDeepIsRefused) {
  const Names names = SomeNames();
  std::string sum = "1";
  while (sum.size() < 3999) sum += "+1";
  EXPECT_TRUE(ParseExpression(sum, names, true).IsGood());
  EXPECT_EQ(ConstantOf(ParseExpression(sum, names, true)), 2000);
  EXPECT_EQ(ParseExpression(sum + "+1", names, true).error->sentence, "the expression is longer than 4000 characters");
  const std::string deep = std::string(1000, '(') + "1" + std::string(1000, ')');
  EXPECT_EQ(ParseExpression(deep, names, true).error->sentence, "the expression is nested too deeply");
  EXPECT_EQ(ParseExpression(std::string(3000, '-') + "1", names, true).error->sentence, "the expression is nested too deeply");
}

}  // namespace
}  // namespace vardo
