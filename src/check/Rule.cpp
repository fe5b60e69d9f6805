#include "check/Rule.h"

#include "base/Numbers.h"
#include "base/Text.h"

namespace vardo {
namespace {

void Put(std::string& message, std::string_view mark, const std::string& text) {
  if (const size_t at = message.find(mark); at != std::string::npos) message.replace(at, mark.size(), text);
}

std::string NameOfConnector(const SourceConnector& connector) { return Quoted(connector.name); }

}  // namespace

std::string Quoted(std::string_view text) { return '"' + InWords(text) + '"'; }

std::string NameOf(const SourceModule& module) { return std::string(module.schema->kind) + " " + Quoted(module.name); }

std::string NameOfField(const CheckedModel& checked, const FieldPlace& at) {
  std::string name(checked.Module(at.module).schema->properties[at.place].label);
  if (at.row >= 0) name += " (row " + std::to_string(at.row + 1) + ")";
  return name;
}

std::string Counted(int count, std::string_view word) {
  return std::to_string(count) + " " + std::string(word) + (count == 1 ? "" : "s");
}

std::string Short(double value) { return NumberText(value, 6); }

Finding& RuleReport::Add(std::string message) {
  return findings_.emplace_back(Finding{.severity = rule_.severity, .rule = rule_.id, .message = std::move(message)});
}

Finding& RuleReport::Module(int module, std::string message) {
  const SourceModule& of = checked_.Module(module);
  Put(message, "{m}", NameOf(of));
  Finding& finding = Add(std::move(message));
  finding.order = {.page = of.page, .position = of.position};
  finding.page = checked_.Page(of.page).name;
  finding.kind = of.schema->kind;
  finding.module = of.name;
  finding.shape = of.shape;
  return finding;
}

Finding& RuleReport::Field(const FieldPlace& at, std::string message) {
  Put(message, "{f}", NameOfField(checked_, at));
  Finding& finding = Module(at.module, std::move(message));
  const ModuleProperty& property = checked_.Module(at.module).schema->properties[at.place];
  const ModuleFields& fields = checked_.Fields(at.module);
  finding.order.field = static_cast<int>(at.place);
  finding.order.row = at.row;
  finding.field = property.label;
  finding.property = property.field;
  finding.row = at.row < 0 ? -1 : at.row + 1;
  finding.text = at.row < 0 ? fields.At(at.place).text : fields.At(at.place, at.row).text;
  return finding;
}

Finding& RuleReport::Connector(int connector, std::string message, int module) {
  const SourceConnector& of = checked_.model.source.connectors[static_cast<size_t>(connector)];
  Put(message, "{c}", NameOfConnector(of));
  if (module >= 0) Put(message, "{m}", NameOf(checked_.Module(module)));
  Finding& finding = Add(std::move(message));
  finding.order = {.page = of.page, .position = of.position};
  finding.page = checked_.Page(of.page).name;
  finding.module = of.name;
  finding.shape = of.shape;
  return finding;
}

Finding& RuleReport::Page(int page, std::string message) {
  Finding& finding = Add(std::move(message));
  finding.page = checked_.Page(page).name;
  return finding;
}

Finding& RuleReport::Drawing(std::string message) { return Add(std::move(message)); }

}  // namespace vardo
