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

void PrintRow(std::ostream& output, const std::string& name, std::initializer_list<std::string> cells) {
  fmt::print(output, "{:<{}}", name, cells.size() == 0 ? 0 : kNameWidth);
  for (const std::string& cell : cells) fmt::print(output, " {:>{}}", cell, kNumberWidth);
  output << '\n';
}

// One table; cells says what stands in a line, for an output's number and its summary.
template <class Cells>
void PrintTable(const Program& program, const Summary& summary, std::initializer_list<std::string> head, const Cells& cells,
                std::ostream& output) {
  std::string_view category;
  std::string of;
  for (size_t i = 0; i < program.outputs.size(); ++i) {
    const Output& line = program.outputs[i];
    if (line.category != category) {
      PrintRow(output, CategoryTitle(line.category), category.empty() ? head : std::initializer_list<std::string>{});
      of.clear();
    }
    if (line.of != of || line.category != category) fmt::print(output, "  {}\n", InWords(line.of));
    category = line.category;
    of = line.of;
    cells("    " + InSentence(line.statistic), i, summary.Of(i));
  }
}

std::string WordsForEnd(const RunSetup& setup) {
  if (setup.length) return "Each replication ended at " + TimeText(*setup.length);
  return setup.until.empty() ? "Each replication ended when nothing was left to happen"
                             : "Each replication ended by its condition";
}

}  // namespace

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

void PrintResults(const Program& program, const RunSetup& setup, const RunResults& results, bool all, std::ostream& output) {
  const Summary& summary = results.summary;
  const std::uint64_t count = summary.replications();
  fmt::print(output, "{}: {} replication{}", InWords(program.file), count, count == 1 ? "" : "s");
  if (setup.length) fmt::print(output, " of {}", TimeText(*setup.length));
  if (setup.warmUp > 0) fmt::print(output, ", warm-up {}", TimeText(setup.warmUp));
  fmt::print(output, ", seed {}; times in {}, {} % half-widths of each number alone\n", setup.seed, LowerAscii(program.timeUnit),
             NumberText(setup.confidence));
  PrintTable(
      program, summary, {"average", "half-width", "minimum", "maximum"},
      [&](const std::string& name, size_t i, const OutputSummary& of) {
        const bool byBatches = !results.batchHalfWidths.empty();
        const double halfWidth = byBatches ? results.batchHalfWidths[i] : of.halfWidth;
        const std::string width = std::isnan(halfWidth) && of.n == 1 ? "n/a" : NumberCell(halfWidth);
        PrintRow(output, name, {NumberCell(of.mean), width, NumberCell(of.min), NumberCell(of.max)});
      },
      output);
  if (all) {
    output << "\nAll observations together:\n";
    PrintTable(
        program, summary, {"average", "minimum", "maximum", "median", "95 %"},
        [&](const std::string& name, size_t, const OutputSummary& of) {
          PrintRow(output, name,
                   {NumberCell(of.all.mean), NumberCell(of.all.min), NumberCell(of.all.max), NumberCell(of.all.median),
                    NumberCell(of.all.p95)});
        },
        output);
  }
  fmt::print(output, "{}. {} events.\n", WordsForEnd(setup), summary.events());
  if (!results.batchHalfWidths.empty())
    output << "The half-widths of this one replication are those of 40 batches of its time; n/a: neighbouring parts hang "
              "together too "
              "much.\n";
  for (const std::string& note : results.notes) output << note << '\n';
  for (const WarningCount& warning : summary.warnings()) output << "  " << SentenceOf(warning, program) << '\n';
  if (results.isStopped) fmt::print(output, "Stopped after {} replication{}.\n", count, count == 1 ? "" : "s");
}

}  // namespace vardo
