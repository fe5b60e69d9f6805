#include "formula/FormulaReferences.h"

#include <algorithm>

namespace vardo {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}
bool IsNamePart(char c) { return IsNameStart(c) || IsDigit(c) || c == '.'; }

// Hands each reference, with the place of its text, to whoever wants it.
class Scanner {
 public:
  using Found = std::function<void(FormulaReference reference, size_t start, size_t end)>;

  Scanner(std::string_view text, const Found& found) : text_(text), found_(found) {}

  void Run() {
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c == '"')
        SkipQuoted();
      else if (c == '[')
        at_ = std::min(text_.find(']', at_), text_.size() - 1) + 1;
      else if (c == '\'')
        QuotedReference();
      else if (IsNameStart(c))
        NamedReference();
      else if (IsDigit(c))
        SkipName();
      else
        ++at_;
    }
  }

 private:
  void SkipName() {
    while (at_ < text_.size() && IsNamePart(text_[at_])) ++at_;
  }

  // Behind the closing quote; returns what stands between, doubled quotes as one.
  std::string SkipQuoted() {
    const char quote = text_[at_++];
    std::string inner;
    for (; at_ < text_.size(); ++at_) {
      if (text_[at_] == quote && (++at_ >= text_.size() || text_[at_] != quote)) break;
      inner += text_[at_];
    }
    return inner;
  }

  bool TakeMark() {
    if (at_ >= text_.size() || text_[at_] != '!') return false;
    ++at_;
    return true;
  }

  std::string TakeCell() {
    const size_t start = at_;
    SkipName();
    return std::string(text_.substr(start, at_ - start));
  }

  void QuotedReference() {
    const size_t start = at_;
    std::string sheet = SkipQuoted();
    if (TakeMark()) Tell({std::move(sheet), TakeCell(), false}, start);
  }

  void NamedReference() {
    const size_t start = at_;
    std::string name = TakeCell();
    if (TakeMark()) return Tell({std::move(name), TakeCell(), false}, start);
    if (at_ < text_.size() && text_[at_] == '(') return;
    Tell({"", std::move(name), false}, start);
  }

  void Tell(FormulaReference reference, size_t start) {
    reference.onOtherPage = start > 0 && text_[start - 1] == '!';
    found_(std::move(reference), start, at_);
  }

  std::string_view text_;
  const Found& found_;
  size_t at_ = 0;
};

}  // namespace

std::vector<FormulaReference> ReferencesIn(std::string_view formula) {
  std::vector<FormulaReference> references;
  const Scanner::Found keep = [&](FormulaReference reference, size_t, size_t) { references.push_back(std::move(reference)); };
  Scanner(formula, keep).Run();
  return references;
}

std::string RewriteReferences(std::string_view formula, const std::function<bool(FormulaReference&)>& change) {
  std::string result;
  size_t copied = 0;
  const Scanner::Found rewrite = [&](FormulaReference reference, size_t start, size_t end) {
    if (!change(reference)) return;
    result += formula.substr(copied, start - copied);
    if (!reference.sheet.empty()) result += SheetNameInFormula(reference.sheet) + "!";
    result += reference.cell;
    copied = end;
  };
  Scanner(formula, rewrite).Run();
  return result += formula.substr(copied);
}

std::string SheetNameInFormula(std::string_view name) {
  if (!name.empty() && IsNameStart(name.front()) && std::all_of(name.begin(), name.end(), IsNamePart)) return std::string(name);
  std::string quoted = "'";
  for (const char c : name) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

}  // namespace vardo
