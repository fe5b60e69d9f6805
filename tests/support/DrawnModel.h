// Models as somebody would draw them, without a drawing: modules with the properties that are not as new, and connectors.
#pragma once

#include "model/Compile.h"
#include "model/Model.h"
#include "model/ModelSource.h"
#include "modules/ModuleKinds.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vardo::test {

using Properties = std::vector<std::pair<std::string, std::string>>;

class DrawnModel {
 public:
  DrawnModel() { AddPage("Page-1"); }

  int AddPage(const std::string& name, const std::string& parent = "") {
    SourcePage page;
    page.id = static_cast<int>(source_.pages.size());
    page.name = name;
    page.parent = parent;
    source_.pages.push_back(std::move(page));
    return source_.pages.back().id;
  }
  // What is drawn from now on stands on that page.
  void GoTo(int page) { page_ = page; }

  DrawnModel& Add(const std::string& kind, const std::string& name, const Properties& properties = {}) {
    const ModuleSchema* schema = FindModule(kind);
    if (schema == nullptr) throw std::logic_error("no kind " + kind);
    SourceModule module;
    module.schema = schema;
    module.page = page_;
    module.shape = ++shapes_;
    module.position = shapes_;
    module.name = module.text = name;
    module.hasThirdPoint = true;
    for (const ModuleProperty& property : schema->properties) module.values.emplace_back(std::string(property.defaultValue));
    module.values[0] = name;
    for (const auto& [field, value] : properties) module.values[PlaceOf(*schema, field)] = value;
    source_.modules.push_back(std::move(module));
    return *this;
  }
  DrawnModel& Set(const std::string& module, const std::string& field, const std::string& value) {
    SourceModule& of = source_.modules[static_cast<size_t>(Find(module))];
    of.values[PlaceOf(*of.schema, field)] = value;
    return *this;
  }
  // The one connector that leaves a module leads elsewhere.
  DrawnModel& Reconnect(const std::string& from, const std::string& to) {
    for (SourceConnector& connector : source_.connectors)
      if (connector.begin.module == Find(from)) connector.end.module = Find(to);
    return *this;
  }
  // From the only or first exit; the second is the False one, or that of duplicates.
  DrawnModel& Connect(const std::string& from, const std::string& to) { return Join(from, to, 1, ConnectorKind::Plain); }
  DrawnModel& ConnectSecond(const std::string& from, const std::string& to) { return Join(from, to, 3, ConnectorKind::Plain); }
  DrawnModel& Chain(const std::vector<std::string>& names) {
    for (size_t i = 1; i < names.size(); ++i) Connect(names[i - 1], names[i]);
    return *this;
  }

  // A module in the middle of a connector; with both of its exits leading on where it has two.
  DrawnModel& Insert(size_t connector, const std::string& kind, const std::string& name, const Properties& properties = {}) {
    page_ = source_.connectors[connector].page;
    const std::string behind = source_.modules[static_cast<size_t>(source_.connectors[connector].end.module)].name;
    Add(kind, name, properties);
    source_.connectors[connector].end.module = Find(name);
    Connect(name, behind);
    return kind == "Decide" ? ConnectSecond(name, behind) : *this;
  }

  const ModelSource& source() const { return source_; }

  std::shared_ptr<const Program> Compile(const RunSetup& setup) const {
    const Model model = MakeModel(source_);
    std::vector<Finding> findings;
    auto program = vardo::Compile(model, setup, "model.vsdx", findings);
    if (!program) throw std::runtime_error(findings.front().message);
    return program;
  }

 private:
  static size_t PlaceOf(const ModuleSchema& schema, const std::string& field) {
    for (size_t i = 0; i < schema.properties.size(); ++i)
      if (schema.properties[i].field == field) return i;
    throw std::logic_error("no property " + field);
  }
  int Find(const std::string& name) const {
    for (size_t i = 0; i < source_.modules.size(); ++i)
      if (source_.modules[i].name == name) return static_cast<int>(i);
    throw std::logic_error("no module " + name);
  }
  DrawnModel& Join(const std::string& from, const std::string& to, int point, ConnectorKind kind) {
    SourceConnector connector;
    connector.page = page_;
    connector.shape = ++shapes_;
    connector.position = shapes_;
    connector.name = "Connector." + std::to_string(shapes_);
    connector.kind = kind;
    connector.begin = {ConnectorEnd::At::Module, Find(from), point, ""};
    connector.end = {ConnectorEnd::At::Module, Find(to), 2, ""};
    source_.connectors.push_back(std::move(connector));
    return *this;
  }

  ModelSource source_;
  int page_ = 0;
  int shapes_ = 0;
};

}  // namespace vardo::test
