#include "base/Numbers.h"
#include "base/Text.h"
#include "model/Expression.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

namespace vardo {
namespace {

constexpr size_t kLongest = 4000;  // bytes
constexpr int kDeepest = 200;      // parts within each other

constexpr std::string_view kExpression = "field/expression", kTemplate = "field/template", kArguments = "field/arguments",
                           kUnknownFunction = "field/unknown-function", kNoEntity = "field/no-entity", kArray = "field/array",
                           kReadOnly = "field/read-only", kUnknownName = "names/unknown";

struct OperatorInfo {
  std::string_view sign;
  Operator code;
  int strength;
};
// A longer sign stands before one that it begins with.
constexpr int kOrStrength = 1, kAndStrength = 2, kCompareStrength = 4, kSumStrength = 5, kProductStrength = 6, kSignStrength = 7,
              kPowerStrength = 8;
constexpr OperatorInfo kOperators[] = {
    {"||", Operator::Or, kOrStrength},
    {"&&", Operator::And, kAndStrength},
    {"<=", Operator::LessOrEqual, kCompareStrength},
    {"<>", Operator::NotEqual, kCompareStrength},
    {"<", Operator::Less, kCompareStrength},
    {">=", Operator::GreaterOrEqual, kCompareStrength},
    {">", Operator::Greater, kCompareStrength},
    {"==", Operator::Equal, kCompareStrength},
    {"=", Operator::Equal, kCompareStrength},
    {"!=", Operator::NotEqual, kCompareStrength},
    {"+", Operator::Add, kSumStrength},
    {"-", Operator::Subtract, kSumStrength},
    {"**", Operator::Power, kPowerStrength},
    {"*", Operator::Multiply, kProductStrength},
    {"/", Operator::Divide, kProductStrength},
    {"^", Operator::Power, kPowerStrength},
};
constexpr OperatorInfo kWordOperators[] = {{"OR", Operator::Or, kOrStrength}, {"AND", Operator::And, kAndStrength}};
constexpr std::string_view kNot = "NOT";
constexpr int kNotStrength = 3;

// The words that stand for a value in what the dialogs offer.
constexpr struct {
  Function function;
  std::string_view words[4];
} kTemplates[] = {
    {Function::Expo, {"Mean"}},
    {Function::Norm, {"Mean", "StdDev"}},
    {Function::Tria, {"Min", "Mode", "Max"}},
    {Function::Unif, {"Min", "Max"}},
    {Function::Erla, {"ExpoMean", "k"}},
    {Function::Gamm, {"Beta", "Alpha"}},
    {Function::John, {"G", "D", "L", "X"}},
    {Function::Pois, {"Mean"}},
    {Function::Weib, {"Beta", "Alpha"}},
    {Function::Cont, {"P1", "V1", "..."}},
    {Function::Disc, {"P1", "V1", "..."}},
};

bool IsTemplateWord(Function function, std::string_view word) {
  for (const auto& of : kTemplates)
    if (of.function == function) return std::ranges::find(of.words, word) != std::end(of.words);
  return false;
}

// What things are values, the nearest first.
constexpr Thing kValues[] = {Thing::Variable,   Thing::Attribute, Thing::EntityAttribute,
                             Thing::EntityType, Thing::Picture,   Thing::J};

constexpr struct {
  Thing thing;
  std::string_view hint;
} kHints[] = {
    {Thing::Queue, "Length(...) is the number that wait in it."},
    {Thing::Resource, "Busy(...), Capacity(...) and Free(...) are numbers of it."},
    {Thing::Module, "Inside(...), Entered(...) and Left(...) are numbers of it."},
    {Thing::Counter, "Count(...) is its value."},
    {Thing::Tally, "Average(...) and Observations(...) are numbers of it."},
    {Thing::Schedule, "ScheduleValue(...) is its value."},
    {Thing::Set, "Member(..., i) and Members(...) are numbers of it."},
};

std::string Quoted(std::string_view text) { return '"' + InWords(text) + '"'; }

std::string WithArticle(Thing thing) {
  const std::string_view word = WordFor(thing);
  return (std::string_view("aeiou").find(word.front()) != std::string_view::npos ? "an " : "a ") + std::string(word);
}

std::string Counted(int count, std::string_view word) {
  return std::to_string(count) + " " + std::string(word) + (count == 1 ? "" : "s");
}

// What every byte of a text counts for in characters.
std::uint32_t CharactersBefore(std::string_view text, size_t bytes) {
  return static_cast<std::uint32_t>(
      std::count_if(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(bytes), [](char c) { return (c & 0xC0) != 0x80; }));
}

class Parser {
 public:
  Parser(std::string_view text, const Names& names, bool withEntity) : text_(text), names_(names), withEntity_(withEntity) {}

  Expression Parse() {
    try {
      if (text_.size() > kLongest) Fail(kExpression, 0, text_.size(), "the expression is longer than 4000 characters");
      const std::uint32_t root = ParseSum(0);
      if (SkipBlanks(); pos_ < text_.size()) FailExpected("an operator");
      result_.root = root;
    } catch (const Stop&) {
      result_.nodes.clear();
    }
    CountInCharacters();
    return std::move(result_);
  }

 private:
  struct Stop {};

  // --- Failing. Places are in bytes until all has been read.

  [[noreturn]] void Fail(std::string_view rule, size_t from, size_t to, std::string sentence, std::string hint = "") {
    result_.error = {rule, static_cast<std::uint32_t>(from), static_cast<std::uint32_t>(to - from), std::move(sentence),
                     std::move(hint)};
    throw Stop();
  }
  std::string AtCharacter(size_t at) const { return " at character " + std::to_string(CharactersBefore(text_, at) + 1); }
  [[noreturn]] void FailExpected(const std::string& what) {
    SkipBlanks();
    const size_t end = EndOfToken();
    std::string sentence = "expected " + what;
    if (end > pos_) sentence += " before " + Quoted(text_.substr(pos_, end - pos_));
    Fail(kExpression, pos_, std::max(end, pos_ + 1), sentence + AtCharacter(pos_));
  }
  size_t EndOfToken() const {
    size_t end = pos_;
    while (end < text_.size() && IsNameCharacter(text_[end])) ++end;
    while (end > pos_ && text_[end - 1] == ' ') --end;
    if (end > pos_ || end == text_.size()) return end;
    for (const OperatorInfo& info : kOperators)
      if (text_.substr(pos_).starts_with(info.sign)) return pos_ + info.sign.size();
    return pos_ + 1;
  }

  // --- Reading.

  void SkipBlanks() {
    while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t' || text_[pos_] == '\n' || text_[pos_] == '\r'))
      ++pos_;
  }
  bool Take(char c) {
    SkipBlanks();
    if (pos_ == text_.size() || text_[pos_] != c) return false;
    ++pos_;
    return true;
  }
  bool StandsHere(std::string_view word) const {
    if (!EqualAsciiIgnoringCase(text_.substr(pos_, word.size()), word)) return false;
    const size_t end = pos_ + word.size();
    return end == text_.size() || text_[end] == ' ' || !IsNameCharacter(text_[end]);
  }

  std::uint32_t Add(ExpressionNode node, size_t from, size_t to, std::initializer_list<std::uint32_t> children = {}) {
    node.position = static_cast<std::uint32_t>(from);
    node.length = static_cast<std::uint32_t>(to - from);
    std::uint32_t* link = &node.firstChild;
    for (const std::uint32_t child : children) {
      *link = child;
      link = &result_.nodes[child].nextSibling;
    }
    result_.nodes.push_back(node);
    return static_cast<std::uint32_t>(result_.nodes.size() - 1);
  }
  size_t StartOf(std::uint32_t node) const { return result_.nodes[node].position; }

  class Deeper {
   public:
    explicit Deeper(Parser& parser) : parser_(parser) {
      if (++parser_.depth_ > kDeepest)
        parser_.Fail(kExpression, parser_.pos_, parser_.pos_ + 1, "the expression is nested too deeply");
    }
    ~Deeper() { --parser_.depth_; }

   private:
    Parser& parser_;
  };

  // What binds at least that strongly.
  std::uint32_t ParseSum(int strength) {
    const Deeper deeper(*this);
    std::uint32_t left = ParseOperand(strength);
    bool compared = false;
    for (;;) {
      SkipBlanks();
      const OperatorInfo* info = OperatorHere();
      if (!info || info->strength < strength) return left;
      if (info->strength == kCompareStrength && std::exchange(compared, true))
        Fail(kExpression, pos_, pos_ + info->sign.size(), "a comparison cannot be compared once more" + AtCharacter(pos_),
             "Join two comparisons with AND.");
      pos_ += info->sign.size();
      const std::uint32_t right = ParseSum(info->code == Operator::Power ? kSignStrength : info->strength + 1);
      left = Add({.kind = NodeKind::Binary, .code = static_cast<std::uint8_t>(info->code)}, StartOf(left), pos_, {left, right});
    }
  }

  const OperatorInfo* OperatorHere() const {
    for (const OperatorInfo& info : kOperators)
      if (text_.substr(pos_).starts_with(info.sign)) return &info;
    for (const OperatorInfo& info : kWordOperators)
      if (StandsHere(info.sign)) return &info;
    return nullptr;
  }

  std::uint32_t ParseOperand(int strength) {
    SkipBlanks();
    if (pos_ == text_.size()) FailExpected("a value");
    const size_t start = pos_;
    switch (text_[pos_]) {
      case '-':
        return ParseSign(NodeKind::Negate, kSignStrength, 1);
      case '+':
        ++pos_;
        return ParseSum(kSignStrength);
      case '!':
        return ParseNot(strength, 1);
      case '(': {
        ++pos_;
        const std::uint32_t inner = ParseSum(0);
        if (!Take(')')) FailExpected("\")\"");
        return inner;
      }
      case '[':
        return ParseName(TakeBracketed(), start);
      default:
        break;
    }
    if (const Names::Prefix known = names_.LongestPrefix(text_.substr(pos_)); known.entry) {
      pos_ += known.length;
      return ParseName({text_.substr(start, known.length), known.entry}, start);
    }
    if (IsAsciiDigit(text_[pos_]) || text_[pos_] == '.')
      if (const auto number = TakeNumber()) return Add({.kind = NodeKind::Number, .value = *number}, start, pos_);
    if (StandsHere(kNot)) return ParseNot(strength, kNot.size());
    const std::string_view name = TakeUnknown();
    if (name.empty()) FailExpected("a value");
    return ParseName({name, nullptr}, start);
  }

  // It binds less than what it would stand in there.
  std::uint32_t ParseNot(int strength, size_t length) {
    if (strength > kNotStrength) FailExpected("a value");
    return ParseSign(NodeKind::Not, kNotStrength, length);
  }

  std::uint32_t ParseSign(NodeKind kind, int strength, size_t length) {
    const size_t start = pos_;
    pos_ += length;
    const std::uint32_t operand = ParseSum(strength);
    return Add({.kind = kind}, start, pos_, {operand});
  }

  // None, and nothing taken, when no digit is there.
  std::optional<double> TakeNumber() {
    const char* const begin = text_.data() + pos_;
    const auto digits = [&](size_t at) {
      while (at < text_.size() && IsAsciiDigit(text_[at])) ++at;
      return at;
    };
    size_t end = digits(pos_);
    if (end < text_.size() && text_[end] == '.') end = digits(end + 1);
    if (end == pos_ + 1 && text_[pos_] == '.') return std::nullopt;
    if (end < text_.size() && LowerAscii(text_[end]) == 'e') {
      const size_t sign = end + 1 < text_.size() && (text_[end + 1] == '-' || text_[end + 1] == '+') ? 1 : 0;
      if (const size_t after = digits(end + 1 + sign); after > end + 1 + sign) end = after;
    }
    double value = 0;
    const auto [stop, error] = std::from_chars(begin, text_.data() + end, value);
    // One too small to be told from 0 is 0.
    const bool isTiny = text_.substr(pos_, end - pos_).find('-') != std::string_view::npos;
    if (error == std::errc::result_out_of_range && !isTiny)
      Fail(kExpression, pos_, end, "a number cannot be that large" + AtCharacter(pos_));
    pos_ = end;
    return value;
  }

  struct FoundName {
    std::string_view text;
    const Names::Entry* entry;
  };
  FoundName TakeBracketed() {
    const size_t start = ++pos_, end = text_.find(']', pos_);
    if (end == std::string_view::npos) {
      pos_ = text_.size();
      FailExpected("\"]\"");
    }
    pos_ = end + 1;
    const std::string_view name = text_.substr(start, end - start);
    return {name, names_.Find(name)};
  }
  // Up to the next operator or word.
  std::string_view TakeUnknown() {
    constexpr std::string_view kEnds = "+-*/^()[],<>=!&|";
    const size_t start = pos_;
    size_t end = start;
    for (; pos_ < text_.size() && kEnds.find(text_[pos_]) == std::string_view::npos; ++pos_) {
      const bool beginsWord = pos_ > start && text_[pos_ - 1] == ' ';
      if (beginsWord && (StandsHere("AND") || StandsHere("OR") || StandsHere(kNot))) break;
      if (text_[pos_] != ' ') end = pos_ + 1;
    }
    pos_ = end;
    return text_.substr(start, end - start);
  }

  // --- Names.

  std::uint32_t ParseName(const FoundName& name, size_t start) {
    const size_t end = pos_;
    if (Take('(')) {
      const bool isArray =
          name.entry && name.entry->Is(Thing::Variable) && names_.SizeOf(name.entry->As(Thing::Variable).index).IsArray();
      if (isArray) return ParseElement(name, start);
      if (const auto function = FindFunction(name.text)) return ParseCall(*function, start);
      if (name.entry && name.entry->Is(Thing::Variable)) Fail(kArray, start, end, Quoted(name.text) + " has no rows");
      Fail(kUnknownFunction, start, end, "there is no function " + Quoted(name.text), NearestFunction(name.text));
    }
    pos_ = end;
    if (!name.entry) FailUnknown(name.text, start, end);
    return AddValue(name, start, end);
  }

  static std::string NearestFunction(std::string_view name) {
    for (int i = 0; i <= static_cast<int>(Function::If); ++i) {
      const std::string_view known = InfoOf(static_cast<Function>(i)).name;
      if (known.size() >= 3 && name.size() >= 3 && EqualAsciiIgnoringCase(known.substr(0, 3), name.substr(0, 3)))
        return "Did you mean " + std::string(known) + "?";
    }
    return "";
  }

  [[noreturn]] void FailUnknown(std::string_view name, size_t start, size_t end) {
    if (!within_.empty() && within_.back() && IsTemplateWord(*within_.back(), name))
      Fail(kTemplate, start, end, "put a value in place of " + Quoted(name));
    std::string sentence = "nothing is called " + Quoted(name);
    if (const std::string_view nearest = names_.Nearest(name); !nearest.empty())
      sentence += "; did you mean " + Quoted(nearest) + "?";
    Fail(kUnknownName, start, end, std::move(sentence));
  }

  std::uint32_t AddValue(const FoundName& name, size_t start, size_t end) {
    const auto* const found = std::ranges::find_if(kValues, [&](Thing thing) { return name.entry->Is(thing); });
    if (found == std::end(kValues)) FailNoValue(name, start, end);
    const Reference meant = name.entry->As(*found);
    for (const Thing* other = found + 1; other != std::end(kValues); ++other)
      if (name.entry->Is(*other))
        result_.doubts.push_back(
            {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end - start), std::string(name.text), *found, *other});
    ExpressionNode node{.index = meant.index};
    switch (meant.thing) {
      case Thing::Variable:
        if (const VariableSize size = names_.SizeOf(meant.index); size.IsArray())
          Fail(kArray, start, end, Quoted(name.text) + " has " + Counted(size.rows, "row"),
               "Write " + std::string(name.text) + (size.columns > 0 ? "(i, j)" : "(i)") + ".");
        node.kind = NodeKind::Variable;
        break;
      case Thing::Attribute:
      case Thing::EntityAttribute:
        if (!withEntity_) Fail(kNoEntity, start, end, "there is no entity here whose " + Quoted(name.text) + " could be taken");
        node.kind = meant.thing == Thing::Attribute ? NodeKind::Attribute : NodeKind::EntityAttribute;
        break;
      case Thing::EntityType:
        node.kind = NodeKind::EntityType;
        break;
      case Thing::Picture:
        node.kind = NodeKind::Picture;
        break;
      default:
        node.kind = NodeKind::J;
        break;
    }
    return Add(node, start, end);
  }

  [[noreturn]] void FailNoValue(const FoundName& name, size_t start, size_t end) {
    for (const auto& [thing, hint] : kHints)
      if (name.entry->Is(thing))
        Fail(kExpression, start, end, Quoted(name.text) + " is " + WithArticle(thing) + ", which has no value of its own",
             std::string(hint));
    Fail(kExpression, start, end, Quoted(name.text) + " has no value");
  }

  std::uint32_t ParseElement(const FoundName& name, size_t start) {
    const int variable = name.entry->As(Thing::Variable).index;
    const VariableSize size = names_.SizeOf(variable);
    const std::vector<std::uint32_t> indexes = ParseArguments({}, {});
    const int dimensions = size.columns > 0 ? 2 : 1;
    if (static_cast<int>(indexes.size()) != dimensions)
      Fail(kArray, start, pos_,
           Quoted(name.text) + " wants " + (dimensions == 1 ? "1 index" : "2 indexes") + ", not " +
               std::to_string(indexes.size()));
    RequireWithin(name, indexes[0], size.rows, "row");
    if (dimensions == 2) RequireWithin(name, indexes[1], size.columns, "column");
    ExpressionNode node{.kind = NodeKind::Variable, .index = variable};
    return dimensions == 1 ? Add(node, start, pos_, {indexes[0]}) : Add(node, start, pos_, {indexes[0], indexes[1]});
  }

  void RequireWithin(const FoundName& name, std::uint32_t index, int count, std::string_view what) {
    const ExpressionNode& node = result_.nodes[index];
    const auto value = ConstantOf(result_, node);
    if (value && (std::floor(*value + 0.5) < 1 || std::floor(*value + 0.5) > count))
      Fail(kArray, node.position, node.position + node.length, Quoted(name.text) + " has " + Counted(count, what));
  }

  // --- Calls. The opening parenthesis has been taken.

  std::vector<std::uint32_t> ParseArguments(std::optional<Function> of, std::optional<Thing> object) {
    std::vector<std::uint32_t> arguments;
    if (Take(')')) return arguments;
    within_.push_back(of);
    do {
      arguments.push_back(object && arguments.empty() ? ParseObject(*of, *object) : ParseSum(0));
    } while (Take(','));
    within_.pop_back();
    if (!Take(')')) FailExpected("\",\" or \")\"");
    return arguments;
  }

  std::uint32_t ParseObject(Function of, Thing wanted) {
    SkipBlanks();
    const size_t start = pos_;
    FoundName name{};
    if (pos_ < text_.size() && text_[pos_] == '[') {
      name = TakeBracketed();
    } else if (const Names::Prefix known = names_.LongestPrefix(text_.substr(pos_)); known.entry) {
      pos_ += known.length;
      name = {text_.substr(start, known.length), known.entry};
    } else {
      name = {TakeUnknown(), nullptr};
    }
    if (name.text.empty()) FailExpected(WithArticle(wanted));
    if (!name.entry) FailUnknown(name.text, start, pos_);
    const Reference found = name.entry->As(wanted);
    if (!found)
      Fail(kArguments, start, pos_,
           std::string(InfoOf(of).name) + " wants " + WithArticle(wanted) + "; " + Quoted(name.text) + " is none");
    return Add({.kind = NodeKind::Object, .thing = wanted, .index = found.index}, start, pos_);
  }

  std::uint32_t ParseCall(Function function, size_t start) {
    const FunctionInfo& info = InfoOf(function);
    std::vector<std::uint32_t> arguments = ParseArguments(function, info.object);
    const std::int32_t stream = TakeStream(info, arguments);
    const int count = static_cast<int>(arguments.size());
    if (count < info.least || count > info.most) Fail(kArguments, start, pos_, WrongCount(info, count));
    const std::uint32_t call =
        Add({.kind = NodeKind::Function, .code = static_cast<std::uint8_t>(function), .index = stream}, start, pos_);
    std::uint32_t* link = &result_.nodes[call].firstChild;
    for (const std::uint32_t argument : arguments) {
      *link = argument;
      link = &result_.nodes[argument].nextSibling;
    }
    return call;
  }

  // The last argument of a distribution that has one more than it needs.
  std::int32_t TakeStream(const FunctionInfo& info, std::vector<std::uint32_t>& arguments) {
    const int count = static_cast<int>(arguments.size());
    const bool hasStream = info.isDistribution && (info.inPairs ? count > info.least && count % 2 == 1 : count == info.most + 1);
    if (!hasStream) return kNoStream;
    const ExpressionNode& node = result_.nodes[arguments.back()];
    const auto stream = ConstantOf(result_, node);
    constexpr double kMost = 2147483647;
    if (!stream || *stream < 0 || *stream > kMost || *stream != std::floor(*stream))
      Fail(kArguments, node.position, node.position + node.length,
           "the stream of " + std::string(info.name) + " is a whole number");
    arguments.pop_back();
    return static_cast<std::int32_t>(*stream);
  }

  static std::string WrongCount(const FunctionInfo& info, int count) {
    std::string sentence = std::string(info.name) + " wants ";
    if (info.inPairs)
      sentence += "pairs of a probability and a value";
    else if (info.most == kAnyNumber)
      sentence += "at least " + Counted(info.least, "value");
    else
      sentence += info.least == 0 ? "no value" : Counted(info.least, "value");
    if (info.isDistribution) sentence += ", and perhaps a stream";
    return sentence + ", not " + std::to_string(count);
  }

  // ---

  void CountInCharacters() {
    if (std::ranges::none_of(text_, [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) return;
    std::vector<std::uint32_t> before(text_.size() + 2);
    for (size_t i = 0; i < text_.size(); ++i) before[i + 1] = before[i] + ((text_[i] & 0xC0) != 0x80);
    before.back() = before[text_.size()] + 1;
    const auto convert = [&](auto& place) {
      const std::uint32_t from = before[std::min<size_t>(place.position, text_.size())];
      place.length = before[std::min<size_t>(place.position + place.length, text_.size() + 1)] - from;
      place.position = from;
    };
    for (ExpressionNode& node : result_.nodes) convert(node);
    for (ExpressionDoubt& doubt : result_.doubts) convert(doubt);
    if (result_.error) convert(*result_.error);
  }

  std::string_view text_;
  const Names& names_;
  bool withEntity_;
  size_t pos_ = 0;
  int depth_ = 0;
  std::vector<std::optional<Function>> within_;
  Expression result_;
};

// Empty: it may be assigned to.
std::string WhyNotAssigned(const Expression& target, std::string_view text) {
  const ExpressionNode& root = target.Root();
  const bool isTarget = root.kind == NodeKind::Variable || root.kind == NodeKind::Attribute || root.kind == NodeKind::J ||
                        (root.kind == NodeKind::EntityAttribute && IsAssignable(root.AsEntityAttribute())) ||
                        (root.kind == NodeKind::Function && root.AsFunction() == Function::Capacity);
  return isTarget ? "" : Quoted(text) + " cannot be assigned";
}

}  // namespace

Expression ParseExpression(std::string_view text, const Names& names, bool withEntity) {
  return Parser(text, names, withEntity).Parse();
}

Expression ParseTarget(std::string_view text, const Names& names) {
  Expression target = ParseExpression(text, names, true);
  if (!target.IsGood()) return target;
  if (std::string why = WhyNotAssigned(target, text); !why.empty()) {
    target.error = {kReadOnly, 0, CharactersBefore(text, text.size()), std::move(why), ""};
    target.root = kNoNode;
    target.nodes.clear();
  }
  return target;
}

}  // namespace vardo
