// The references in a formula's text: which sheets and cells it names.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

struct FormulaReference {
  std::string sheet;  // before "!", without quotes; empty for the formula's own sheet
  std::string cell;
  bool onOtherPage = false;  // more stands before the sheet's name: Pages[Page-2]!Sheet.3!PinX
};

inline bool NamesPageSheet(const FormulaReference& reference) { return !reference.onOtherPage && reference.sheet == "ThePage"; }

// In the order of the text. Names in strings do not count, nor do functions.
std::vector<FormulaReference> ReferencesIn(std::string_view formula);

// The formula with those references rewritten that change says it has changed; all other text stays as it is.
std::string RewriteReferences(std::string_view formula, const std::function<bool(FormulaReference&)>& change);

// A sheet's name as a formula writes it: in quotes where it is no plain name.
std::string SheetNameInFormula(std::string_view name);

}  // namespace vardo
