#include "report/FindingsReport.h"

#include "base/Text.h"

#include <fmt/ostream.h>

namespace vardo {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kFormat = "vardo-findings";
constexpr int kVersion = 1;
// A longer text is not shown below its finding.
constexpr size_t kLongestShown = 100;

std::string Counted(int count, const char* word) { return fmt::format("{} {}{}", count, word, count == 1 ? "" : "s"); }

void PrintPlace(const Finding& finding, std::ostream& output) {
  if (finding.position < 0 || finding.text.empty() || finding.text.size() > kLongestShown) return;
  fmt::print(output, "    {}\n    {:>{}}\n", InWords(finding.text), '^', finding.position + 1);
}

void Put(Json& json, const char* name, const std::string& text) {
  if (!text.empty()) json[name] = text;
}
void Put(Json& json, const char* name, int number) {
  if (number >= 0) json[name] = number;
}

Json FindingJson(const Finding& finding) {
  Json json{{"severity", WordFor(finding.severity)}, {"rule", finding.rule}};
  Put(json, "page", finding.page);
  Put(json, "kind", finding.kind);
  Put(json, "module", finding.module);
  Put(json, "shape", finding.shape);
  Put(json, "field", finding.field);
  Put(json, "property", finding.property);
  Put(json, "row", finding.row);
  if (finding.position >= 0) {
    json["position"] = finding.position + 1;
    json["length"] = finding.length;
  }
  json["message"] = finding.message;
  Put(json, "hint", finding.hint);
  return json;
}

}  // namespace

FindingCounts CountFindings(std::span<const Finding> findings) {
  FindingCounts counts;
  for (const Finding& finding : findings)
    ++(finding.severity == Severity::Error     ? counts.errors
       : finding.severity == Severity::Warning ? counts.warnings
                                               : counts.notes);
  return counts;
}

void PrintFindings(std::string_view file, std::span<const Finding> findings, std::ostream& output) {
  for (const Finding& finding : findings) {
    const std::string page = finding.page.empty() ? "" : InWords(finding.page) + ": ";
    const std::string hint = finding.hint.empty() ? "" : " " + finding.hint;
    fmt::print(output, "{}: {}{}{} [{}]\n", file, page, finding.message, hint, finding.rule);
    PrintPlace(finding, output);
  }
  const FindingCounts counts = CountFindings(findings);
  fmt::print(output, "{}: {}, {}, {}\n", file, Counted(counts.errors, "error"), Counted(counts.warnings, "warning"),
             Counted(counts.notes, "note"));
}

Json FindingsJson(std::string_view file, std::span<const Finding> findings) {
  Json json{{"format", kFormat}, {"version", kVersion}};
  Put(json, "file", std::string(file));
  json["findings"] = Json::array();
  for (const Finding& finding : findings) json["findings"].push_back(FindingJson(finding));
  const FindingCounts counts = CountFindings(findings);
  json["errors"] = counts.errors;
  json["warnings"] = counts.warnings;
  json["notes"] = counts.notes;
  return json;
}

}  // namespace vardo
