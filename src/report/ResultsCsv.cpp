#include "report/ResultsCsv.h"

#include <fmt/ostream.h>

#include <cmath>
#include <string>
#include <string_view>

namespace vardo {
namespace {

constexpr std::string_view kEndOfLine = "\r\n";

std::string Quoted(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char character : text) quoted.append(character == '"' ? 2 : 1, character);
  return quoted + "\"";
}

std::string Number(double x) { return std::isnan(x) ? "" : fmt::format("{}", x + 0.0); }

std::string Name(const Output& output) {
  return Quoted(output.category) + "," + Quoted(output.of) + "," + Quoted(output.statistic);
}

}  // namespace

void WriteSummaryCsv(const Program& program, const Summary& summary, std::ostream& output) {
  output << "category,of,statistic,unit,replications,mean,half_width,minimum,maximum,observations,mean_of_all,"
            "least_of_all,largest_of_all,median,p95"
         << kEndOfLine;
  for (size_t i = 0; i < program.outputs.size(); ++i) {
    const OutputSummary of = summary.Of(i);
    const bool isTally = program.outputs[i].kind == OutputKind::Tally;
    fmt::print(output, "{},{},{},{},{},{},{},{},{},{},{},{},{}{}", Name(program.outputs[i]), program.outputs[i].unit, of.n,
               Number(of.mean), Number(of.halfWidth), Number(of.min), Number(of.max), isTally ? std::to_string(of.all.n) : "",
               Number(of.all.mean), Number(of.all.min), Number(of.all.max), Number(of.all.median), Number(of.all.p95),
               kEndOfLine);
  }
}

void WriteReplicationsHead(std::ostream& output) { output << "replication,category,of,statistic,value" << kEndOfLine; }

void WriteReplicationCsv(const Program& program, const ReplicationRecord& record, std::ostream& output) {
  for (size_t i = 0; i < program.outputs.size(); ++i)
    fmt::print(output, "{},{},{}{}", record.number, Name(program.outputs[i]), Number(record.values[i].mean), kEndOfLine);
}

}  // namespace vardo
