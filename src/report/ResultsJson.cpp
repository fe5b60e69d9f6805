#include "report/ResultsJson.h"

#include "base/Text.h"
#include "platform/FileSystem.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

namespace vardo {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;
constexpr std::string_view kProgram = "vardo " VARDO_VERSION;
constexpr std::string_view kKinds[] = {"tally", "level", "counter", "area", "ratio"};
constexpr std::string_view kReasons[] = {"length", "condition", "nothing left", "stopped"};
constexpr std::string_view kWarnings[] = {"negative time", "rounded count", "percent out of range", "nothing to split",
                                          "left holding"};

// What does not exist is null.
Json Number(double x) { return std::isnan(x) ? Json() : Json(x); }
double NumberFrom(const Json& json) { return json.is_null() ? kNothing : json.get<double>(); }

std::string Line(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

template <size_t count>
size_t PlaceOf(const std::string& word, const std::string_view (&words)[count]) {
  const auto found = std::find(std::begin(words), std::end(words), word);
  if (found == std::end(words)) throw std::runtime_error("\"" + InWords(word) + "\" is not known");
  return static_cast<size_t>(found - std::begin(words));
}

Json SetupJson(const Program& program, const RunSetup& setup) {
  Json settings = Json::object();
  for (const RunSetting& setting : setup.settings)
    settings[setting.module.empty() ? setting.name : setting.module + ", " + setting.name] = setting.value;
  return {{"seed", setup.seed},
          {"length", setup.length ? Json(*setup.length / program.unit) : Json()},
          {"warmUp", setup.warmUp / program.unit},
          {"timeUnit", program.timeUnit},
          {"until", setup.until.empty() ? Json() : Json(setup.until)},
          {"confidence", setup.confidence},
          {"set", settings}};
}

Json OutputsJson(const Program& program) {
  Json outputs = Json::array();
  for (size_t i = 0; i < program.outputs.size(); ++i) {
    const Output& output = program.outputs[i];
    outputs.push_back({{"id", i},
                       {"category", output.category},
                       {"of", output.of},
                       {"statistic", output.statistic},
                       {"kind", kKinds[static_cast<size_t>(output.kind)]},
                       {"unit", output.unit.empty() ? Json() : Json(output.unit)},
                       {"factor", output.factor},
                       {"divisor", output.divisor}});
  }
  return outputs;
}

Json ValueJson(const Output& output, const OutputValue& value) {
  if (output.kind == OutputKind::Level)
    return {{"mean", Number(value.mean)}, {"min", Number(value.min)}, {"max", Number(value.max)}, {"last", Number(value.last)}};
  if (output.kind != OutputKind::Tally) return {{"value", Number(value.mean)}};
  Json json = {{"n", value.n},
               {"mean", Number(value.mean)},
               {"sd", Number(value.deviation)},
               {"min", Number(value.min)},
               {"max", Number(value.max)}};
  if (!value.buckets.empty()) json["buckets"] = value.buckets;
  return json;
}

OutputValue ValueFrom(const Json& json) {
  OutputValue value;
  if (json.contains("value")) {
    value.mean = NumberFrom(json["value"]);
    return value;
  }
  value.n = json.value("n", std::uint64_t{0});
  value.mean = NumberFrom(json.at("mean"));
  value.min = NumberFrom(json.at("min"));
  value.max = NumberFrom(json.at("max"));
  if (json.contains("sd")) value.deviation = NumberFrom(json["sd"]);
  if (json.contains("last")) value.last = NumberFrom(json["last"]);
  if (json.contains("buckets")) value.buckets = json["buckets"].get<std::vector<Buckets::Count>>();
  return value;
}

Json RecordJson(const Program& program, const ReplicationRecord& record) {
  Json values = Json::array();
  for (size_t i = 0; i < record.values.size(); ++i) values.push_back(ValueJson(program.outputs[i], record.values[i]));
  Json warnings = Json::array();
  for (const WarningCount& warning : record.warnings)
    warnings.push_back({{"warning", kWarnings[static_cast<size_t>(warning.warning)]},
                        {"at", WordsFor(program.places[warning.place])},
                        {"count", warning.count},
                        {"of", warning.of}});
  Json series = Json::object();
  for (size_t i = 0; i < record.series.size(); ++i)
    if (!record.series[i].empty()) series[std::to_string(i)] = record.series[i];
  return {{"number", record.number}, {"end", record.end}, {"because", kReasons[static_cast<size_t>(record.because)]},
          {"events", record.events}, {"values", values},  {"warnings", warnings},
          {"series", series}};
}

// Places are known by their words alone.
std::uint32_t PlaceFor(Program& program, const std::string& words) {
  for (std::uint32_t i = 0; i < program.places.size(); ++i)
    if (program.places[i].kind == words) return i;
  program.places.push_back({"", words, "", -1, "", ""});
  return static_cast<std::uint32_t>(program.places.size()) - 1;
}

ReplicationRecord RecordFrom(const Json& json, Program& program) {
  ReplicationRecord record;
  record.number = json.at("number");
  record.end = json.at("end");
  record.because = static_cast<EndReason>(PlaceOf(json.at("because"), kReasons));
  record.events = json.at("events");
  for (const Json& value : json.at("values")) record.values.push_back(ValueFrom(value));
  if (record.values.size() != program.outputs.size()) throw std::runtime_error("a replication has not a value for each output");
  for (const Json& warning : json.at("warnings"))
    record.warnings.push_back({static_cast<RunWarning>(PlaceOf(warning.at("warning"), kWarnings)),
                               PlaceFor(program, warning.at("at")), warning.at("count"), warning.at("of")});
  const Json& series = json.at("series");
  if (!series.empty()) record.series.resize(program.outputs.size());
  for (const auto& [output, values] : series.items()) record.series.at(std::stoul(output)) = values.get<std::vector<double>>();
  return record;
}

Json SummaryJson(const Program& program, const Summary& all, size_t output) {
  const OutputSummary of = all.Of(output);
  Json json = {{"id", output},
               {"n", of.n},
               {"mean", Number(of.mean)},
               {"halfWidth", Number(of.halfWidth)},
               {"min", Number(of.min)},
               {"max", Number(of.max)}};
  if (program.outputs[output].kind == OutputKind::Level) json["all"] = {{"min", Number(of.all.min)}, {"max", Number(of.all.max)}};
  if (program.outputs[output].kind == OutputKind::Tally)
    json["all"] = {{"n", of.all.n},
                   {"mean", Number(of.all.mean)},
                   {"halfWidth", Number(of.all.halfWidth)},
                   {"min", Number(of.all.min)},
                   {"max", Number(of.all.max)},
                   {"median", Number(of.all.median)},
                   {"medianHalfWidth", Number(of.all.medianHalfWidth)},
                   {"p95", Number(of.all.p95)},
                   {"p95HalfWidth", Number(of.all.p95HalfWidth)}};
  return json;
}

}  // namespace

ResultsWriter::ResultsWriter(std::ostream& output, const Program& program, const RunSetup& setup)
    : output_(output), program_(program) {
  output_ << "{\"format\": \"vardo-results\", \"version\": " << kVersion << ", \"program\": " << Line(kProgram)
          << ",\n\"model\": "
          << Line({{"file", program.file}, {"hash", fmt::format("{:016x}", program.hash)}, {"modules", program.modules}})
          << ",\n\"setup\": " << Line(SetupJson(program, setup)) << ",\n\"outputs\": " << Line(OutputsJson(program))
          << ",\n\"replications\": [";
}

void ResultsWriter::Add(const ReplicationRecord& record) {
  output_ << (isFirst_ ? "\n" : ",\n") << Line(RecordJson(program_, record));
  isFirst_ = false;
}

void ResultsWriter::Finish(const RunResults& results) {
  output_ << "],\n\"summary\": [";
  for (size_t i = 0; i < program_.outputs.size(); ++i)
    output_ << (i == 0 ? "\n" : ",\n") << Line(SummaryJson(program_, results.summary, i));
  Json warnings = Json::array();
  for (const WarningCount& warning : results.summary.warnings()) warnings.push_back(SentenceOf(warning, program_));
  output_ << "],\n\"warnings\": " << Line(warnings) << "}\n";
}

Json SummaryOf(const Program& program, const RunResults& results) {
  Json outputs = Json::object();
  for (size_t i = 0; i < program.outputs.size(); ++i) {
    Json line = SummaryJson(program, results.summary, i);
    line.erase("id");
    outputs[NameOf(program.outputs[i])] = std::move(line);
  }
  Json warnings = Json::array();
  for (const WarningCount& warning : results.summary.warnings()) warnings.push_back(SentenceOf(warning, program));
  return {{"replications", results.summary.replications()}, {"outputs", outputs}, {"warnings", warnings}};
}

ReadResults ReadResultsFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  try {
    if (!stream) throw std::runtime_error("it cannot be opened");
    const Json json = Json::parse(stream);
    if (json.value("format", "") != "vardo-results" || json.value("version", 0) != kVersion)
      throw std::runtime_error("it holds no results of this version");
    ReadResults read;
    read.head = Line({json.at("program"), json.at("model"), json.at("setup"), json.at("outputs")});
    const auto keep = [&](const Json& text) -> std::string_view {
      return text.is_null() ? std::string_view() : std::string_view(read.texts.emplace_back(text.get<std::string>()));
    };
    const Json& setup = json.at("setup");
    Program& program = read.program;
    program.file = json.at("model").at("file");
    program.hash = std::stoull(json.at("model").at("hash").get<std::string>(), nullptr, 16);
    program.modules = json.at("model").at("modules");
    program.timeUnit = keep(setup.at("timeUnit"));
    for (size_t i = 0; i < std::size(kTimeUnitChoices); ++i)
      if (kTimeUnitChoices[i].code == program.timeUnit) read.setup.timeUnit = static_cast<TimeUnit>(i);
    program.unit = SecondsOf(read.setup.timeUnit);
    read.setup.seed = setup.at("seed");
    if (!setup.at("length").is_null()) read.setup.length = setup.at("length").get<double>() * program.unit;
    read.setup.warmUp = setup.at("warmUp").get<double>() * program.unit;
    if (!setup.at("until").is_null()) read.setup.until = setup.at("until");
    read.setup.confidence = setup.at("confidence");
    for (const auto& [name, value] : setup.at("set").items()) read.setup.settings.push_back({"", name, value});
    for (const Json& output : json.at("outputs")) {
      Output of;
      of.category = keep(output.at("category"));
      of.of = output.at("of");
      of.statistic = keep(output.at("statistic"));
      of.kind = static_cast<OutputKind>(PlaceOf(output.at("kind"), kKinds));
      of.unit = keep(output.at("unit"));
      of.factor = output.at("factor");
      of.divisor = output.at("divisor");
      program.outputs.push_back(std::move(of));
    }
    for (const Json& record : json.at("replications")) read.records.push_back(RecordFrom(record, program));
    return read;
  } catch (const Json::exception& error) {
    const bool isJson = dynamic_cast<const Json::parse_error*>(&error) == nullptr;
    throw std::runtime_error(PathInWords(file) + " cannot be read as results: it is " +
                             (isJson ? "not built like them." : "no JSON, or not all of it."));
  } catch (const std::exception& error) {
    throw std::runtime_error(PathInWords(file) + " cannot be read as results: " + InWords(error.what()) + ".");
  }
}

std::vector<std::string> MergeParts(std::vector<ReadResults>& parts, const std::vector<std::string>& names) {
  ReadResults& all = parts.front();
  for (size_t part = 1; part < parts.size(); ++part) {
    if (parts[part].head != all.head)
      throw std::runtime_error(names[part] + " is of another model, set-up or program than " + names.front() + ".");
    for (ReplicationRecord& record : parts[part].records) {
      for (WarningCount& warning : record.warnings)
        warning.place = PlaceFor(all.program, parts[part].program.places[warning.place].kind);
      all.records.push_back(std::move(record));
    }
  }
  std::stable_sort(all.records.begin(), all.records.end(), [](const auto& a, const auto& b) { return a.number < b.number; });
  std::vector<std::string> gaps;
  std::vector<ReplicationRecord> merged;
  for (ReplicationRecord& record : all.records) {
    if (!merged.empty() && merged.back().number == record.number) {
      if (Line(RecordJson(all.program, merged.back())) != Line(RecordJson(all.program, record)))
        throw std::runtime_error(fmt::format("Two parts hold replication {} with different values.", record.number));
      continue;
    }
    const std::uint64_t expected = merged.empty() ? record.number : merged.back().number + 1;
    if (record.number != expected) gaps.push_back(fmt::format("Replications {}..{} are missing.", expected, record.number - 1));
    merged.push_back(std::move(record));
  }
  all.records = std::move(merged);
  return gaps;
}

}  // namespace vardo
