// The services of a Linux machine.
#pragma once

#include "platform/Platform.h"

#include <unicode/tblcoll.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vardo {

class PosixPlatform : public Platform {
 public:
  // Throws std::runtime_error when ICU lacks its collation data.
  PosixPlatform();

  // Prints "title: text" to standard error.
  void ShowMessage(std::string_view text, std::string_view title, int style) override;
  TwipsSize ScreenSize() override;
  // Hands the topic's HTML page, from the help folder installed with the program, to the user's browser.
  void ShowHelp(std::string_view file, std::string_view topic) override;
  // From the folder lib/vardo/addons installed with the program.
  bool RunAddOn(std::string_view name) override;
  // From vardo/registry.ini in the user's configuration folder: sections are key paths, lines are name=value.
  std::string ReadRegistryString(std::string_view key, std::string_view valueName) override;
  bool EqualTextIgnoringCase(std::string_view a, std::string_view b) override;
  std::string CaseFoldKey(std::string_view text) override;
  bool IsAnsiAlpha(std::string_view character) override;
  bool IsAnsiAlphaNumeric(std::string_view character) override;
  // As the locale writes numbers, else with a point, as the defaults of the fields have it.
  std::optional<double> ParseReal(std::string_view text) override;

 private:
  std::optional<std::string> AsciiEquivalent(const icu::UnicodeString& text) const;
  std::string SortKey(const icu::UnicodeString& text) const;

  std::unique_ptr<icu::RuleBasedCollator> collator_;
  // The printable ASCII characters, lower case, by what they weigh in a comparison.
  std::unordered_map<int, char> asciiByWeight_;
};

// What sets off fractions, and groups of digits before them. Either may be empty.
struct NumberMarks {
  std::string decimal, grouping;
};

// The number that a text stands for where numbers have these marks; none when it is no number or too large. Groups may be of any
// length, and a blank between them may be any blank.
std::optional<double> ParseRealWith(const NumberMarks& marks, std::string_view text);

// Starts an executable file of that folder, named without a path. False when there is none.
bool RunProgramOf(const std::filesystem::path& folder, std::string_view name);

}  // namespace vardo
