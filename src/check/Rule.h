// How a rule reports what it finds.
#pragma once

#include "check/CheckedModel.h"
#include "model/Finding.h"

#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class RuleReport;

struct Rule {
  std::string_view id;
  Severity severity;
  void (*find)(const CheckedModel& checked, RuleReport& report);
};

// --- Words that messages are made of.
std::string Quoted(std::string_view text);
// Process "Weld".
std::string NameOf(const SourceModule& module);
// "the third of 3 rows" is "row 3"; a field of the module itself is its label alone.
std::string NameOfField(const CheckedModel& checked, const FieldPlace& at);
// "1 row", "2 rows".
std::string Counted(int count, std::string_view word);
// At most six digits.
std::string Short(double value);

class RuleReport {
 public:
  RuleReport(const CheckedModel& checked, const Rule& rule, std::vector<Finding>& findings)
      : checked_(checked), rule_(rule), findings_(findings) {}

  std::string_view rule() const { return rule_.id; }

  // The messages are whole sentences but for the module's name, which is put where "{m}" stands, and that of a field, "{f}".
  Finding& Module(int module, std::string message);
  Finding& Field(const FieldPlace& at, std::string message);
  // "{c}" is the connector, {m} the module, where one is given.
  Finding& Connector(int connector, std::string message, int module = -1);
  Finding& Page(int page, std::string message);
  Finding& Drawing(std::string message);

 private:
  Finding& Add(std::string message);

  const CheckedModel& checked_;
  const Rule& rule_;
  std::vector<Finding>& findings_;
};

}  // namespace vardo
