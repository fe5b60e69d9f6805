#include "report/TraceText.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <iterator>
#include <string_view>

namespace vardo {
namespace {

using Json = nlohmann::ordered_json;

// In the order of the enumeration.
constexpr std::string_view kWords[] = {"create", "enter",   "queue",    "seize",   "delay", "release",   "preempt",
                                       "resume", "decide",  "assign",   "batch",   "split", "duplicate", "record",
                                       "leave",  "dispose", "capacity", "warm-up", "end"};
static_assert(std::size(kWords) == static_cast<size_t>(TraceAct::End) + 1);

void AddDetails(const Program& program, const TraceRecord& record, Json& line) {
  switch (record.does) {
    case TraceAct::Seize:
    case TraceAct::Release:
    case TraceAct::Preempt:
    case TraceAct::Capacity:
      line["resource"] = program.resources[record.what].name;
      line["units"] = record.number;
      break;
    case TraceAct::Delay:
      line["for"] = record.number / program.unit;
      break;
    case TraceAct::Resume:
      line["left"] = record.number / program.unit;
      break;
    case TraceAct::Decide:
      line["exit"] = record.what == 0 ? "True" : "False";
      break;
    case TraceAct::Assign:
      line["of"] = program.assigned[record.what];
      line["value"] = record.number;
      break;
    case TraceAct::Record:
      line["value"] = record.number;
      break;
    case TraceAct::Batch:
    case TraceAct::Split:
      line["members"] = record.number;
      break;
    case TraceAct::Duplicate:
      line["duplicates"] = record.number;
      break;
    default:
      break;
  }
}

}  // namespace

void TraceWriter::Take(const TraceRecord& record) {
  Json line{{"t", record.time / program_.unit}};
  if (record.entity != 0) {
    line["entity"] = record.entity;
    line["type"] = program_.types[record.type].name;
  }
  if (record.step != kNone)
    if (const SourcePlace& place = program_.places[program_.placeOfStep[record.step]]; !place.module.empty())
      line["at"] = place.module;
  line["does"] = kWords[static_cast<size_t>(record.does)];
  AddDetails(program_, record, line);
  output_ << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace vardo
