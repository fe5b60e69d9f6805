#include "report/ResultsReport.h"

#include "base/Numbers.h"
#include "base/Text.h"

#include <fmt/ostream.h>

#include <cmath>

namespace vardo {
namespace {

constexpr int kDigits = 6;
constexpr int kNameWidth = 32, kNumberWidth = 13;

std::string NumberCell(double x) { return std::isnan(x) ? "-" : NumberText(x, kDigits); }

void PrintRow(std::ostream& output, const std::string& name, std::initializer_list<std::string> cells) {
  fmt::print(output, "{:<{}}", name, cells.size() == 0 ? 0 : kNameWidth);
  for (const std::string& cell : cells) fmt::print(output, " {:>{}}", cell, kNumberWidth);
  output << '\n';
}

// One table; cells says what stands in a line, for an output's number and its summary.
template <class Cells, class IsShown>
void PrintTable(const Program& program, const Summary& summary, std::initializer_list<std::string> head, const IsShown& isShown,
                const Cells& cells, std::ostream& output) {
  std::string_view category;
  std::string of;
  for (size_t i = 0; i < program.outputs.size(); ++i) {
    const Output& line = program.outputs[i];
    const OutputSummary summarised = summary.Of(i);
    if (!isShown(line, summarised)) continue;
    if (line.category != category) {
      PrintRow(output, CategoryTitle(line.category), category.empty() ? head : std::initializer_list<std::string>{});
      of.clear();
    }
    if (line.of != of || line.category != category) fmt::print(output, "  {}\n", InWords(line.of));
    category = line.category;
    of = line.of;
    cells("    " + InSentence(line.statistic), i, summarised);
  }
}

// "Each replication ended at 8 h.", "3 replications ended at 8 h, 17 by their condition."
std::string SentenceOnEnds(const RunSetup& setup, const Summary& summary) {
  const struct {
    EndReason reason;
    std::string how;
  } kEnds[] = {{EndReason::Length, setup.length ? "at " + TimeText(*setup.length) : ""},
               {EndReason::Condition, "by its condition"},
               {EndReason::NothingLeft, "when nothing was left to happen"}};
  std::string sentence;
  for (const auto& [reason, how] : kEnds) {
    const std::uint64_t count = summary.EndedBecause(reason);
    if (count == 0) continue;
    if (count == summary.replications()) return "Each replication ended " + how + ".";
    sentence += sentence.empty() ? fmt::format("{} replication{} ended {}", count, count == 1 ? "" : "s", how)
                                 : fmt::format(", {} {}", count, how);
  }
  return sentence + ".";
}

}  // namespace

std::string CategoryTitle(std::string_view category) {
  constexpr struct {
    std::string_view category, title;
  } kTitles[] = {{"Entity", "Entities"},   {"Queue", "Queues"},  {"Resource", "Resources"},
                 {"Process", "Processes"}, {"Batch", "Batches"}, {"Separate", "Separates"},
                 {"Counter", "Counters"},  {"Tally", "Tallies"}, {"Variable", "Variables"}};
  for (const auto& [of, title] : kTitles)
    if (of == category) return std::string(title);
  return std::string(category);
}

// Without its capital, unless that begins an abbreviation.
std::string InSentence(std::string_view text) {
  std::string words(text);
  if (words.size() > 1 && LowerAscii(words[1]) == words[1]) words[0] = LowerAscii(words[0]);
  return words;
}

std::string TimeText(double seconds) {
  constexpr struct {
    double seconds;
    std::string_view unit;
  } kUnits[] = {{86400, " d"}, {3600, " h"}, {60, " min"}};
  for (const auto& [each, unit] : kUnits)
    if (seconds >= each && std::floor(seconds / each * 100) == seconds / each * 100)
      return NumberText(seconds / each) + std::string(unit);
  return NumberText(seconds) + " s";
}

bool IsOfNoInterest(const Output& output, const OutputSummary& summary) {
  const bool hasCategories = output.category == "Entity" || output.category == "Process";
  return hasCategories && output.kind == OutputKind::Tally && summary.all.min == 0 && summary.all.max == 0;
}

std::string RunTitle(const Program& program, const RunSetup& setup, std::uint64_t replications) {
  std::string title = fmt::format("{}: {} replication{}", InWords(program.file), replications, replications == 1 ? "" : "s");
  if (setup.length) title += " of " + TimeText(*setup.length);
  if (setup.warmUp > 0) title += ", warm-up " + TimeText(setup.warmUp);
  return title + fmt::format(", seed {}", setup.seed);
}

std::vector<std::string> ClosingSentences(const Program& program, const RunSetup& setup, const RunResults& results) {
  std::vector<std::string> sentences = {SentenceOnEnds(setup, results.summary)};
  if (!results.batchHalfWidths.empty())
    sentences.push_back(
        "The half-widths of this one replication are those of 40 batches of its time; n/a: neighbouring parts hang together "
        "too much.");
  sentences.insert(sentences.end(), results.notes.begin(), results.notes.end());
  for (const WarningCount& warning : results.summary.warnings()) sentences.push_back(SentenceOf(warning, program));
  const std::uint64_t count = results.summary.replications();
  if (results.isStopped) sentences.push_back(fmt::format("Stopped after {} replication{}.", count, count == 1 ? "" : "s"));
  return sentences;
}

void PrintResults(const Program& program, const RunSetup& setup, const RunResults& results, const TableOptions& options,
                  std::ostream& output) {
  const Summary& summary = results.summary;
  fmt::print(output, "{}; times in {}, {} % half-widths of each number alone,\nminimum and maximum of the replications\n",
             RunTitle(program, setup, summary.replications()), LowerAscii(program.timeUnit), NumberText(setup.confidence));
  bool isAll = true;
  PrintTable(
      program, summary, {"average", "half-width", "minimum", "maximum"},
      [&](const Output& line, const OutputSummary& of) {
        const bool isShown = options.all || !IsOfNoInterest(line, of);
        isAll = isAll && isShown;
        return isShown;
      },
      [&](const std::string& name, size_t i, const OutputSummary& of) {
        const bool byBatches = !results.batchHalfWidths.empty();
        const double halfWidth = byBatches ? results.batchHalfWidths[i] : of.halfWidth;
        const std::string width = std::isnan(halfWidth) && of.n == 1 ? "n/a" : NumberCell(halfWidth);
        PrintRow(output, name, {NumberCell(of.mean), width, NumberCell(of.min), NumberCell(of.max)});
      },
      output);
  if (options.all) {
    output << "\nAll observations together:\n";
    PrintTable(
        program, summary, {"number", "average", "minimum", "maximum", "median", "95 %"},
        [](const Output& line, const OutputSummary&) { return line.kind == OutputKind::Tally || line.kind == OutputKind::Level; },
        [&](const std::string& name, size_t i, const OutputSummary& of) {
          const bool isTally = program.outputs[i].kind == OutputKind::Tally;
          PrintRow(output, name,
                   {isTally ? fmt::format("{}", of.all.n) : "-", NumberCell(of.all.mean), NumberCell(of.all.min),
                    NumberCell(of.all.max), NumberCell(of.all.median), NumberCell(of.all.p95)});
        },
        output);
  }
  output << '\n';
  if (!isAll) output << "Times and costs that were 0 throughout are left out; --all prints them.\n";
  fmt::print(output, "{} events{}.\n", summary.events(),
             options.seconds == 0 ? "" : fmt::format(" in {:.1f} s", options.seconds));
  for (const std::string& sentence : ClosingSentences(program, setup, results)) output << sentence << '\n';
}

}  // namespace vardo
