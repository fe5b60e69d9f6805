#include "report/ResultsHtml.h"

#include "base/Numbers.h"
#include "base/Text.h"
#include "report/ResultsReport.h"
#include "report/Svg.h"

#include <fmt/ostream.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <optional>

namespace vardo {
namespace {

// More plots of a kind tell nobody more.
constexpr size_t kMostPlots = 8;
constexpr size_t kMostBars = 30;
constexpr int kHistogramBars = 30;
constexpr double kShownShare = 0.995;

constexpr std::string_view kStyle = R"(
:root { color-scheme: light dark; --page: #fff; --ink: #1d2733; --soft: #5b6875; --rule: #d8dee4; --shade: #f2f5f8;
  --c0: #2f6fb0; --c1: #d9822b; --c2: #3c9464; --c3: #b94a5c; --c4: #7b61a8; --c5: #a3722c; --c6: #2a9aa8; --c7: #7d8790; }
@media (prefers-color-scheme: dark) { :root { --page: #14191f; --ink: #e3e8ed; --soft: #9aa7b3; --rule: #36414c; --shade: #1d242c;
  --c0: #6aa8e6; --c1: #f0a557; --c2: #6cc394; --c3: #e68294; --c4: #b09be0; --c5: #d0a45e; --c6: #63c8d4; --c7: #a5afb8; } }
* { box-sizing: border-box; }
body { margin: 0; background: var(--page); color: var(--ink); font: 16px/1.5 "Liberation Sans", Arial, Helvetica, sans-serif; }
main { max-width: 76rem; margin: 0 auto; padding: 1rem; }
h1 { margin: .3rem 0 0; font-size: 1.7rem; overflow-wrap: anywhere; } h2 { margin: 2.2rem 0 .6rem; font-size: 1.2rem; }
p { margin: .3rem 0; max-width: 50rem; } .soft, figcaption { color: var(--soft); } .soft { font-size: .9rem; }
ul { padding-left: 1.2rem; margin: .4rem 0; max-width: 50rem; } li { margin: .25rem 0; }
.plots { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 22rem), 1fr)); gap: 1.2rem; }
figure { margin: 0 0 .6rem; } figcaption { font-size: .85rem; margin-top: .2rem; } svg { display: block; width: 100%; height: auto; }
svg text { font: 12px "Liberation Sans", Arial, Helvetica, sans-serif; fill: var(--soft); }
.axis { stroke: var(--soft); } .grid { stroke: var(--rule); } .mark { stroke: var(--c3); stroke-dasharray: 4 3; }
.line { fill: none; stroke: var(--c0); stroke-width: 1.8; } .band { fill: var(--c0); opacity: .22; } .dot { fill: var(--c0); opacity: .75; }
.empty { fill: var(--shade); } .whisker { stroke: var(--ink); stroke-width: 2; }
.c0 { fill: var(--c0); background: var(--c0); } .c1 { fill: var(--c1); background: var(--c1); }
.c2 { fill: var(--c2); background: var(--c2); } .c3 { fill: var(--c3); background: var(--c3); }
.c4 { fill: var(--c4); background: var(--c4); } .c5 { fill: var(--c5); background: var(--c5); }
.c6 { fill: var(--c6); background: var(--c6); } .c7 { fill: var(--c7); background: var(--c7); }
.key { display: inline-block; width: .8em; height: .8em; margin: 0 .35em 0 .9em; }
table { border-collapse: collapse; width: 100%; font-size: .9rem; font-variant-numeric: tabular-nums; }
th, td { padding: .18rem .5rem; text-align: right; border-bottom: 1px solid var(--rule); white-space: nowrap; }
th:first-child, td:first-child { text-align: left; white-space: normal; overflow-wrap: anywhere; }
thead th { color: var(--soft); font-weight: normal; } .kind th { padding-top: 1.1rem; font-size: 1rem; } .of th { font-weight: 600; background: var(--shade); }
td:first-child { padding-left: 1.2rem; }
@media screen and (max-width: 40rem) { .wide { display: none; } th, td { padding: .18rem .3rem; } table { font-size: .82rem; } h1 { font-size: 1.4rem; } }
@media print { :root { color-scheme: light; --page: #fff; --ink: #000; --soft: #444; --rule: #bbb; --shade: #f4f4f4;
  --c0: #2f6fb0; --c1: #d9822b; --c2: #3c9464; --c3: #b94a5c; --c4: #7b61a8; --c5: #a3722c; --c6: #2a9aa8; --c7: #7d8790; }
  body { font-size: 10pt; } main { max-width: none; padding: 0; } figure, tr, li { break-inside: avoid; } h2 { break-after: avoid; }
  .plots { grid-template-columns: repeat(2, 1fr); } table { font-size: 8.5pt; }
  * { print-color-adjust: exact; -webkit-print-color-adjust: exact; } }
)";

std::string Cell(double x) { return std::isnan(x) ? "-" : NumberText(x, 6); }
// In a sentence.
std::string Said(double x) { return NumberText(x, 3); }

struct Sorted {
  size_t output;
  double by;
};

class PageWriter {
 public:
  PageWriter(const ResultsPage& page, std::ostream& output)
      : page_(page), program_(page.program), summary_(page.results.summary), output_(output) {
    for (size_t i = 0; i < program_.outputs.size(); ++i) summaries_.push_back(summary_.Of(i));
  }

  void Write() {
    Head();
    InShort();
    Findings();
    OverTime();
    Spread();
    Distributions();
    Shares();
    Tables();
    output_ << "</main></body></html>\n";
  }

 private:
  std::string Unit() const { return LowerAscii(program_.timeUnit); }
  // With the unit of what is measured in time.
  std::string Amount(const Output& output, double x) const {
    return Said(x) + (output.unit.empty() ? "" : " " + LowerAscii(output.unit));
  }
  std::string Around(size_t i) const {
    const double halfWidth = summaries_[i].halfWidth;
    return std::isnan(halfWidth) ? "" : " \u00b1 " + Said(halfWidth);
  }
  static std::string TitleOf(const Output& output) { return InWords(output.of) + ": " + InSentence(output.statistic); }

  // --- Which outputs.
  template <class IsWanted>
  std::vector<size_t> Outputs(const IsWanted& isWanted) const {
    std::vector<size_t> found;
    for (size_t i = 0; i < program_.outputs.size(); ++i)
      if (summaries_[i].n > 0 && isWanted(program_.outputs[i])) found.push_back(i);
    return found;
  }
  std::vector<size_t> Outputs(std::string_view category, std::string_view statistic) const {
    return Outputs([&](const Output& output) { return output.category == category && output.statistic == statistic; });
  }
  // The largest means first; those of equal ones in the order of the drawing.
  std::vector<size_t> Largest(std::vector<size_t> outputs, size_t most) const {
    std::stable_sort(outputs.begin(), outputs.end(), [&](size_t a, size_t b) { return summaries_[a].mean > summaries_[b].mean; });
    if (outputs.size() > most) outputs.resize(most);
    return outputs;
  }
  std::optional<size_t> Beside(size_t of, std::string_view statistic) const {
    for (size_t i = 0; i < program_.outputs.size(); ++i)
      if (program_.outputs[i].category == program_.outputs[of].category && program_.outputs[i].of == program_.outputs[of].of &&
          program_.outputs[i].statistic == statistic)
        return i;
    return std::nullopt;
  }

  // --- Parts of the page.
  void Head() {
    const RunSetup& setup = page_.setup;
    const std::string name = HtmlText(InWords(program_.file));
    fmt::print(output_,
               "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n<meta name=\"viewport\" "
               "content=\"width=device-width, initial-scale=1\">\n<title>{}: simulation</title>\n<style>{}</style></head>\n"
               "<body><main>\n<h1>{}</h1>\n",
               name, kStyle, name);
    const std::string title = RunTitle(program_, setup, summary_.replications());
    const std::string what = title.substr(InWords(program_.file).size() + 2);
    fmt::print(output_, "<p>{}; times in {}.</p>\n", HtmlText(what), Unit());
    for (const RunSetting& setting : setup.settings)
      fmt::print(output_, "<p class=\"soft\">Set for this run: {}{} = {}</p>\n",
                 HtmlText(InWords(setting.module.empty() ? "" : setting.module + ", ")), HtmlText(InWords(setting.name)),
                 HtmlText(InWords(setting.value)));
    for (const std::string& sentence : ClosingSentences(program_, setup, page_.results))
      fmt::print(output_, "<p class=\"soft\">{}</p>\n", HtmlText(sentence));
    fmt::print(output_,
               "<p class=\"soft\">{} modules, model {:016x}, {} events. Behind \u00b1 stands the half-width of a {} % confidence "
               "interval, of each number alone.</p>\n",
               program_.modules, program_.hash, summary_.events(), NumberText(setup.confidence));
  }

  void InShort() {
    std::vector<std::string> sentences;
    for (const size_t i : Largest(Outputs("Entity", "Total time"), 3)) sentences.push_back(OfType(i));
    if (const auto queues = Largest(Outputs("Queue", "Waiting time"), 1); !queues.empty())
      sentences.push_back(OfQueue(queues[0]));
    if (const auto busy = Largest(Outputs("Resource", "Utilisation"), 1); !busy.empty())
      sentences.push_back(fmt::format(
          "The busiest resource is \u201c{}\u201d: at work {} % of the time{}.", InWords(program_.outputs[busy[0]].of),
          Said(100 * summaries_[busy[0]].mean),
          std::isnan(summaries_[busy[0]].halfWidth) ? "" : " (\u00b1 " + Said(100 * summaries_[busy[0]].halfWidth) + ")"));
    if (sentences.empty()) return;
    output_ << "<section><h2>In short</h2><ul>\n";
    for (const std::string& sentence : sentences) fmt::print(output_, "<li>{}</li>\n", HtmlText(sentence));
    output_ << "</ul></section>\n";
  }
  std::string OfType(size_t i) const {
    const OutputSummary& of = summaries_[i];
    std::string sentence = fmt::format("\u201c{}\u201d is in the model for {}{} {} on the average",
                                       InWords(program_.outputs[i].of), Said(of.mean), Around(i), Unit());
    if (!std::isnan(of.all.median))
      sentence +=
          fmt::format("; half of them no more than {}, one in twenty more than {}", Said(of.all.median), Said(of.all.p95));
    if (const auto wait = Beside(i, "Wait time"); wait && of.mean > 0)
      sentence += fmt::format(". {} % of that time is waiting", Said(100 * summaries_[*wait].mean / of.mean));
    return sentence + ".";
  }
  std::string OfQueue(size_t i) const {
    const OutputSummary& of = summaries_[i];
    const std::string name = InWords(program_.outputs[i].of);
    if (of.all.max == 0) return "Nobody ever waits in a queue.";
    std::string sentence =
        fmt::format("The longest waits are in \u201c{}\u201d: {}{} {} on the average", name, Said(of.mean), Around(i), Unit());
    if (const auto length = Beside(i, "Length"); length && summaries_[*length].n > 0)
      sentence += fmt::format(", with {} waiting at a time and at most {}", Said(summaries_[*length].mean),
                              Said(summaries_[*length].all.max));
    return sentence + ".";
  }

  void Findings() {
    if (page_.findings.empty()) return;
    output_ << "<section><h2>What the check says of the drawing</h2><ul>\n";
    for (const Finding& finding : page_.findings) {
      const std::string page = finding.page.empty() ? "" : InWords(finding.page) + ": ";
      const std::string hint = finding.hint.empty() ? "" : " " + finding.hint;
      fmt::print(output_, "<li>{}: {} <span class=\"soft\">[{}]</span></li>\n", WordFor(finding.severity),
                 HtmlText(page + finding.message + hint), finding.rule);
    }
    output_ << "</ul></section>\n";
  }

  void Begin(std::string_view title, std::string_view about) {
    fmt::print(output_, "<section><h2>{}</h2>\n<p class=\"soft\">{}</p>\n<div class=\"plots\">\n", title, about);
  }
  void End(size_t shown, size_t all) {
    output_ << "</div>\n";
    if (shown < all) fmt::print(output_, "<p class=\"soft\">These are the {} largest of {}.</p>\n", shown, all);
    output_ << "</section>\n";
  }

  void OverTime() {
    if (!page_.setup.length) return;
    std::vector<size_t> shown;
    size_t all = 0;
    for (const auto& [category, statistic] :
         {std::pair("Entity", "In system"), std::pair("Queue", "Length"), std::pair("Resource", "Busy")}) {
      const auto outputs = Outputs([&](const Output& output) {
        return output.category == category && output.statistic == statistic &&
               !page_.series.Of(static_cast<size_t>(&output - program_.outputs.data())).mean.empty();
      });
      all += outputs.size();
      for (const size_t i : Largest(outputs, kMostPlots / 2)) shown.push_back(i);
    }
    if (shown.empty()) return;
    Begin("Over time", "The average of the first replications, and the band between their lowest and highest.");
    for (const size_t i : shown) LevelPlot(i);
    End(shown.size(), all);
  }
  void LevelPlot(size_t i) {
    const SeriesSeen::Band& band = page_.series.Of(i);
    const double length = *page_.setup.length / program_.unit;
    std::vector<double> x;
    for (size_t part = 0; part < band.mean.size(); ++part)
      x.push_back(length * (static_cast<double>(part) + 0.5) / static_cast<double>(band.mean.size()));
    const double most = *std::max_element(band.most.begin(), band.most.end());
    const double average = summaries_[i].mean;
    Plot plot({TitleOf(program_.outputs[i]), "On the average " + Said(average), "time, " + Unit(), ""}, {0, length}, {0, most});
    plot.Band(x, band.least, band.most);
    plot.Line(x, band.mean);
    if (page_.setup.warmUp > 0) plot.Mark(page_.setup.warmUp / program_.unit, "warm-up");
    output_ << plot.Text();
  }

  void Spread() {
    auto outputs = Outputs("Entity", "Total time");
    for (const auto& [category, statistic] : {std::pair("Queue", "Waiting time"), std::pair("Tally", "Value")})
      for (const size_t i : Largest(Outputs(category, statistic), kMostPlots)) outputs.push_back(i);
    std::erase_if(outputs, [&](size_t i) { return summaries_[i].n < 2 || summaries_[i].all.max == summaries_[i].all.min; });
    if (outputs.empty()) return;
    Begin("From replication to replication",
          "Each dot is the average of one; the line is their mean, the band its confidence interval.");
    const size_t all = outputs.size();
    if (outputs.size() > kMostPlots) outputs.resize(kMostPlots);
    for (const size_t i : outputs) DotPlot(i);
    End(outputs.size(), all);
  }
  void DotPlot(size_t i) {
    const OutputSummary& of = summaries_[i];
    const std::vector<double>& values = summary_.ValuesOf(i);
    const Output& output = program_.outputs[i];
    const double low = std::min(of.min, of.mean - of.halfWidth), high = std::max(of.max, of.mean + of.halfWidth);
    const double margin = (high - low) * 0.08;
    const double first = static_cast<double>(page_.results.first);
    Plot plot({TitleOf(output), fmt::format("{}{}", Amount(output, of.mean), Around(i)), "replication",
               output.unit.empty() ? "" : LowerAscii(output.unit)},
              {first - 1, first + static_cast<double>(values.size())}, {low - margin, high + margin});
    plot.Interval(of.mean, {of.mean - of.halfWidth, of.mean + of.halfWidth});
    for (size_t r = 0; r < values.size(); ++r)
      if (!std::isnan(values[r])) plot.Dot(first + static_cast<double>(r), values[r]);
    output_ << plot.Text();
  }

  void Distributions() {
    std::vector<size_t> outputs;
    for (const auto& [category, statistic] :
         {std::pair("Entity", "Total time"), std::pair("Queue", "Waiting time"), std::pair("Tally", "Value")})
      for (const size_t i : Largest(Outputs(category, statistic), kMostPlots)) outputs.push_back(i);
    std::erase_if(outputs,
                  [&](size_t i) { return summary_.CountsOf(i).empty() || !(summaries_[i].all.max > summaries_[i].all.min); });
    if (outputs.empty()) return;
    Begin("How the observations are spread", "All observations of all replications together.");
    const size_t all = outputs.size();
    if (outputs.size() > kMostPlots) outputs.resize(kMostPlots);
    for (const size_t i : outputs) Histogram(i);
    End(outputs.size(), all);
  }
  void Histogram(size_t i) {
    const Output& output = program_.outputs[i];
    const std::vector<Buckets::Count> counts = summary_.CountsOf(i);
    const double scale = output.factor / output.divisor;
    const double high = QuantileOf(counts, kShownShare) * scale, low = std::min(summaries_[i].all.min, 0.0);
    if (!(high > low)) return;
    std::uint64_t all = 0, zeros = 0;
    std::vector<double> bars(kHistogramBars, 0);
    const double width = (high - low) / kHistogramBars;
    for (const auto& [number, count] : counts) {
      all += count;
      if (number == 0) zeros += count;
      if (number != 0) Spread(number, static_cast<double>(count), scale, low, width, bars);
    }
    const double most = *std::max_element(bars.begin(), bars.end());
    std::string about = fmt::format("{} observations", all);
    if (zeros > 0)
      about += fmt::format(", {} % of them 0 and not drawn", Said(100 * static_cast<double>(zeros) / static_cast<double>(all)));
    Plot plot({TitleOf(output) + " (" + about + ")", "Half are below " + Said(summaries_[i].all.median),
               output.unit.empty() ? "value" : LowerAscii(output.unit), "% of all"},
              {low, high}, {0, 100 * most / static_cast<double>(all)});
    for (int bar = 0; bar < kHistogramBars; ++bar)
      plot.Bar({low + bar * width, low + (bar + 1) * width}, 100 * bars[static_cast<size_t>(bar)] / static_cast<double>(all));
    if (!std::isnan(summaries_[i].all.median) && summaries_[i].all.median > low) plot.Mark(summaries_[i].all.median, "median");
    output_ << plot.Text();
  }
  // A bucket's count over the bars that it reaches into.
  static void Spread(std::int32_t number, double count, double scale, double low, double width, std::vector<double>& bars) {
    const double middle = Buckets::ValueOf(number);
    const double half = std::ldexp(1, std::ilogb(middle)) / 128;
    const double from = (middle - half) * scale, to = (middle + half) * scale;
    const auto barOf = [&](double x) { return (x - low) / width; };
    const auto first = static_cast<long>(std::floor(barOf(from))), last = static_cast<long>(std::floor(barOf(to)));
    for (long bar = std::max(first, 0l); bar <= std::min(last, static_cast<long>(bars.size()) - 1); ++bar) {
      const double within =
          std::min(to, low + static_cast<double>(bar + 1) * width) - std::max(from, low + static_cast<double>(bar) * width);
      bars[static_cast<size_t>(bar)] += count * std::max(within, 0.0) / (to - from);
    }
  }

  void Shares() {
    const auto resources = Largest(Outputs("Resource", "Utilisation"), kMostBars);
    std::string plots;
    if (!resources.empty()) {
      double most = 1;
      for (const size_t i : resources) most = std::max(most, summaries_[i].mean);
      BarPlot plot({"Utilisation of the resources; the line at the end is the half-width", "", "", ""}, most);
      for (const size_t i : resources)
        plot.Row(program_.outputs[i].of, Said(100 * summaries_[i].mean) + " %", {{summaries_[i].mean, 0}},
                 summaries_[i].halfWidth);
      plots += plot.Text();
    }
    plots += Categories("Total time", {"VA time", "NVA time", "Transfer time", "Wait time", "Other time"},
                        "Time of the entities, " + Unit());
    plots +=
        Categories("Total cost", {"VA cost", "NVA cost", "Transfer cost", "Wait cost", "Other cost"}, "Cost of the entities");
    if (plots.empty()) return;
    Begin("Where time and money go", "");
    output_ << plots;
    End(1, 1);
  }
  std::string Categories(std::string_view total, std::initializer_list<std::string_view> statistics, const std::string& title) {
    const auto types = Largest(Outputs("Entity", total), kMostBars);
    if (types.empty() || !(summaries_[types[0]].mean > 0)) return "";
    BarPlot plot({title, "", "", ""}, summaries_[types[0]].mean);
    std::vector<bool> isUsed(statistics.size());
    for (const size_t i : types) {
      std::vector<BarPlot::Part> parts;
      int colour = 0;
      for (const std::string_view statistic : statistics) {
        const auto output = Beside(i, statistic);
        const double mean = output && summaries_[*output].n > 0 ? summaries_[*output].mean : 0;
        isUsed[static_cast<size_t>(colour)] = isUsed[static_cast<size_t>(colour)] || mean > 0;
        parts.push_back({mean, colour++});
      }
      plot.Row(program_.outputs[i].of, Said(summaries_[i].mean), parts, summaries_[i].halfWidth);
    }
    std::string key = "<p class=\"soft\">";
    int colour = 0;
    for (const std::string_view statistic : statistics) {
      if (isUsed[static_cast<size_t>(colour)])
        key += fmt::format("<span class=\"key c{}\"></span>{}", colour, InSentence(statistic));
      ++colour;
    }
    return "<div>" + plot.Text() + key + "</p></div>\n";
  }

  void Tables() {
    output_ << "<section><h2>All numbers</h2>\n<table><thead><tr><th></th><th>average</th><th>\u00b1</th><th "
               "class=\"wide\">minimum</th>"
               "<th class=\"wide\">maximum</th><th class=\"wide\">median of all</th><th class=\"wide\">95 % of all</th>"
               "<th class=\"wide\">largest of all</th></tr></thead>\n<tbody>\n";
    std::string_view category;
    std::string of;
    bool isAll = true;
    for (size_t i = 0; i < program_.outputs.size(); ++i) {
      const Output& line = program_.outputs[i];
      const OutputSummary& summary = summaries_[i];
      if (IsOfNoInterest(line, summary)) {
        isAll = false;
        continue;
      }
      if (line.category != category) {
        fmt::print(output_, "<tr class=\"kind\"><th colspan=\"8\">{}</th></tr>\n", CategoryTitle(line.category));
        of.clear();
      }
      if (line.of != of || line.category != category)
        fmt::print(output_, "<tr class=\"of\"><th colspan=\"8\">{}</th></tr>\n", HtmlText(InWords(line.of)));
      category = line.category;
      of = line.of;
      const bool byBatches = !page_.results.batchHalfWidths.empty();
      fmt::print(output_, "<tr><td>{}</td><td>{}</td><td>{}</td>", InSentence(line.statistic), Cell(summary.mean),
                 Cell(byBatches ? page_.results.batchHalfWidths[i] : summary.halfWidth));
      for (const double x : {summary.min, summary.max, summary.all.median, summary.all.p95, summary.all.max})
        fmt::print(output_, "<td class=\"wide\">{}</td>", Cell(x));
      output_ << "</tr>\n";
    }
    output_ << "</tbody></table>\n<p class=\"soft\">Minimum and maximum are those of the replications' averages."
            << (isAll ? "" : " Times and costs that were 0 throughout are left out.") << "</p></section>\n";
  }

  const ResultsPage& page_;
  const Program& program_;
  const Summary& summary_;
  std::ostream& output_;
  std::vector<OutputSummary> summaries_;
};

}  // namespace

void SeriesSeen::Add(const ReplicationRecord& record) {
  for (size_t i = 0; i < record.series.size(); ++i) {
    const std::vector<double>& series = record.series[i];
    Band& band = bands_[i];
    if (band.mean.size() < series.size()) {
      band.mean.resize(series.size(), 0);
      band.count.resize(series.size(), 0);
      band.least.resize(series.size(), kNothing);
      band.most.resize(series.size(), kNothing);
    }
    for (size_t part = 0; part < series.size(); ++part) {
      const double x = series[part];
      band.mean[part] += (x - band.mean[part]) / static_cast<double>(++band.count[part]);
      if (!(band.least[part] <= x)) band.least[part] = x;
      if (!(band.most[part] >= x)) band.most[part] = x;
    }
  }
}

void WriteHtml(const ResultsPage& page, std::ostream& output) { PageWriter(page, output).Write(); }

}  // namespace vardo
