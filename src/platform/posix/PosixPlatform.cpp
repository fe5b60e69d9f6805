#include "platform/posix/PosixPlatform.h"

#include "base/Characters.h"
#include "base/Text.h"
#include "platform/NativePlatform.h"

#include <langinfo.h>
#include <locale.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unicode/coleitr.h>
#include <unicode/unistr.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <type_traits>
#include <vector>

extern char** environ;

namespace vardo {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::string_view kDigits = "0123456789";

// A registry value longer than the reader's buffer is no value.
constexpr size_t kRegistryBufferSize = 256;

constexpr double kScreenWidthPixels = 1280;
constexpr double kScreenHeightPixels = 1024;
constexpr double kTwipsPerPixel = 15;

using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)>;

Locale MakeLocale(int mask, const char* name) { return {newlocale(mask, name, nullptr), &freelocale}; }

std::string_view TrimWhiteSpace(std::string_view text) {
  const auto first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

bool ConsumePrefix(std::string_view& rest, std::string_view prefix) {
  if (prefix.empty() || !rest.starts_with(prefix)) return false;
  rest.remove_prefix(prefix.size());
  return true;
}

bool ConsumeSign(std::string_view& rest, std::string& number) {
  if (rest.empty() || (rest.front() != '+' && rest.front() != '-')) return false;
  number += rest.front();
  rest.remove_prefix(1);
  return true;
}

// Moves the leading digits over and says whether there were any.
bool ConsumeDigits(std::string_view& rest, std::string& number) {
  const auto count = std::min(rest.find_first_not_of(kDigits), rest.size());
  number += rest.substr(0, count);
  rest.remove_prefix(count);
  return count > 0;
}

// A keyboard has one blank for all that locales set between groups.
bool ConsumeMark(std::string_view& rest, std::string_view mark) {
  constexpr std::string_view kBlanks[] = {" ", "\u00A0", "\u2009", "\u202F"};
  if (std::find(std::begin(kBlanks), std::end(kBlanks), mark) == std::end(kBlanks)) return ConsumePrefix(rest, mark);
  return std::any_of(std::begin(kBlanks), std::end(kBlanks), [&](std::string_view blank) { return ConsumePrefix(rest, blank); });
}

// Moves the digits before a fraction over, without the marks between them.
bool ConsumeGroups(std::string_view& rest, std::string_view mark, std::string& number) {
  if (!ConsumeDigits(rest, number)) return false;
  while (ConsumeMark(rest, mark)) ConsumeDigits(rest, number);
  return true;
}

// How the user writes numbers; with a point alone when the environment names a locale that is not installed.
NumberMarks UserNumberMarks() {
  const auto locale = MakeLocale(LC_NUMERIC_MASK, "");
  if (!locale) return {".", ""};
  return {nl_langinfo_l(RADIXCHAR, locale.get()), nl_langinfo_l(THOUSEP, locale.get())};
}

// The letters, and the digits beyond 0 to 9, that Windows-1252 has above ASCII.
bool IsWindows1252Letter(char32_t point) {
  if (point >= 0xC0 && point <= 0xFF) return point != 0xD7 && point != 0xF7;
  constexpr std::u32string_view kScattered = U"\u00AA\u00B5\u00BA\u0152\u0153\u0160\u0161\u0178\u017D\u017E\u0192\u02C6";
  return kScattered.find(point) != kScattered.npos;
}
bool IsWindows1252Digit(char32_t point) { return point == 0xB2 || point == 0xB3 || point == 0xB9; }

// The code point of a text of just one character.
std::optional<char32_t> OnlyCodePoint(std::string_view text) {
  if (text.empty() || FirstCharacter(text).size() != text.size()) return std::nullopt;
  return CodePoint(text);
}

// A collation element without what sets only case and width apart; 0 for one that does not count at all.
int Weight(int element) { return element & ~0xFF; }

std::optional<std::string> Environment(const char* name) {
  const char* value = std::getenv(name);
  return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

fs::path ConfigurationFolder() {
  if (const auto configured = Environment("XDG_CONFIG_HOME")) return *configured;
  return fs::path(Environment("HOME").value_or("")) / ".config";
}

// The folder that holds the bin folder that the program was started from.
fs::path InstallationFolder() {
  std::error_code none;
  return fs::read_symlink("/proc/self/exe", none).parent_path().parent_path();
}

// The shell leaves at once, so that no program is waited for and none is left behind as a zombie.
void StartDetached(std::string program, std::string argument) {
  std::string shell = "sh", option = "-c", command = "\"$@\" >/dev/null 2>&1 &";
  char* arguments[] = {shell.data(), option.data(),  command.data(),
                       shell.data(), program.data(), argument.empty() ? nullptr : argument.data(),
                       nullptr};
  pid_t process = 0;
  if (posix_spawnp(&process, shell.c_str(), nullptr, nullptr, arguments, environ) == 0) waitpid(process, nullptr, 0);
}

}  // namespace

std::optional<double> ParseRealWith(const NumberMarks& marks, std::string_view text) {
  std::string number;
  auto rest = TrimWhiteSpace(text);
  ConsumeSign(rest, number);
  bool hasDigits = ConsumeGroups(rest, marks.grouping, number);
  if (ConsumePrefix(rest, marks.decimal)) {
    number += '.';
    hasDigits |= ConsumeDigits(rest, number);
  }
  if (!hasDigits) return std::nullopt;
  if (ConsumePrefix(rest, "e") || ConsumePrefix(rest, "E")) {
    number += 'e';
    ConsumeSign(rest, number);
    if (!ConsumeDigits(rest, number)) return std::nullopt;
  }
  if (!rest.empty()) return std::nullopt;
  // The process's own locale may have another separator.
  const auto plain = MakeLocale(LC_ALL_MASK, "C");
  const double value = strtod_l(number.c_str(), nullptr, plain.get());
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

// The root order, not the user's: whether two names of a drawing clash must not depend on who opens it.
PosixPlatform::PosixPlatform() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getRoot(), status));
  if (U_SUCCESS(status)) collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, status);
  if (U_SUCCESS(status)) collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
  if (U_FAILURE(status)) throw std::runtime_error(std::string("ICU collation: ") + u_errorName(status));
  collator_.reset(dynamic_cast<icu::RuleBasedCollator*>(collator.release()));

  for (char character = ' '; character <= '~'; ++character) {
    const std::unique_ptr<icu::CollationElementIterator> elements(
        collator_->createCollationElementIterator(icu::UnicodeString(character)));
    asciiByWeight_.emplace(Weight(elements->next(status)), LowerAscii({&character, 1}).front());
  }
}

void PosixPlatform::ShowMessage(std::string_view text, std::string_view title, int) {
  std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(title.size()), title.data(), static_cast<int>(text.size()), text.data());
}

TwipsSize PosixPlatform::ScreenSize() { return {kScreenWidthPixels * kTwipsPerPixel, kScreenHeightPixels * kTwipsPerPixel}; }

void PosixPlatform::ShowHelp(std::string_view, std::string_view topic) {
  const auto page = InstallationFolder() / "share" / "vardo" / "help" / topic;
  std::error_code none;
  if (fs::is_regular_file(page, none)) StartDetached("xdg-open", page.string());
}

bool PosixPlatform::RunAddOn(std::string_view name) {
  return RunProgramOf(InstallationFolder() / "lib" / "vardo" / "addons", name);
}

std::string PosixPlatform::ReadRegistryString(std::string_view key, std::string_view valueName) {
  std::ifstream registry(ConfigurationFolder() / "vardo" / "registry.ini");
  bool inSection = false;
  for (std::string line; std::getline(registry, line);) {
    const auto text = TrimWhiteSpace(line);
    if (text.starts_with('[') && text.ends_with(']')) {
      inSection = EqualTextIgnoringCase(text.substr(1, text.size() - 2), key);
      continue;
    }
    const auto equals = text.find('=');
    if (!inSection || equals == std::string_view::npos) continue;
    if (!EqualTextIgnoringCase(TrimWhiteSpace(text.substr(0, equals)), valueName)) continue;
    const auto value = TrimWhiteSpace(text.substr(equals + 1));
    return std::string(value.size() < kRegistryBufferSize ? value : "");
  }
  return "";
}

bool PosixPlatform::EqualTextIgnoringCase(std::string_view a, std::string_view b) { return CaseFoldKey(a) == CaseFoldKey(b); }

// Most names are ASCII, and weighing is what costs. A text that weighs the same as an ASCII text has that text's key.
std::string PosixPlatform::CaseFoldKey(std::string_view text) {
  if (IsPrintableAscii(text)) return LowerAscii(text);
  const auto wide = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  if (auto ascii = AsciiEquivalent(wide)) return *std::move(ascii);
  return SortKey(wide);
}

std::optional<std::string> PosixPlatform::AsciiEquivalent(const icu::UnicodeString& text) const {
  const std::unique_ptr<icu::CollationElementIterator> elements(collator_->createCollationElementIterator(text));
  std::string ascii;
  UErrorCode status = U_ZERO_ERROR;
  for (int element; (element = elements->next(status)) != icu::CollationElementIterator::NULLORDER;) {
    const int weight = Weight(element);
    if (weight == 0) continue;
    const auto found = asciiByWeight_.find(weight);
    if (found == asciiByWeight_.end()) return std::nullopt;
    ascii += found->second;
  }
  return ascii;
}

// Begins with a byte that no printable text has.
std::string PosixPlatform::SortKey(const icu::UnicodeString& text) const {
  const auto size = collator_->getSortKey(text, nullptr, 0);
  std::string key(1 + static_cast<size_t>(size), '\1');
  collator_->getSortKey(text, reinterpret_cast<std::uint8_t*>(key.data()) + 1, size);
  return key;
}

bool PosixPlatform::IsAnsiAlpha(std::string_view character) {
  const auto point = OnlyCodePoint(character);
  if (!point) return false;
  return (*point >= 'A' && *point <= 'Z') || (*point >= 'a' && *point <= 'z') || IsWindows1252Letter(*point);
}

bool PosixPlatform::IsAnsiAlphaNumeric(std::string_view character) {
  const auto point = OnlyCodePoint(character);
  if (!point) return false;
  return IsAnsiAlpha(character) || (*point >= '0' && *point <= '9') || IsWindows1252Digit(*point);
}

std::optional<double> PosixPlatform::ParseReal(std::string_view text) {
  static const NumberMarks marks = UserNumberMarks();
  const auto value = ParseRealWith(marks, text);
  return value ? value : ParseRealWith({".", ""}, text);
}

bool RunProgramOf(const fs::path& folder, std::string_view name) {
  if (name.empty() || name.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos) return false;
  const auto program = folder / name;
  std::error_code none;
  if (!fs::is_regular_file(program, none) || access(program.c_str(), X_OK) != 0) return false;
  StartDetached(program.string(), "");
  return true;
}

std::unique_ptr<Platform> MakeNativePlatform() { return std::make_unique<PosixPlatform>(); }

}  // namespace vardo
