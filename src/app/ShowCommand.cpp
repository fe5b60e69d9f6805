#include "app/Commands.h"
#include "app/Modules.h"

#include <fmt/ostream.h>
#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace vardo {
namespace {

using Json = nlohmann::ordered_json;

Json ModuleJson(DrawingPage& page, const DrawingShape& shape, const std::string& kind) {
  Json properties = Json::object();
  for (const auto& [name, value] : PropertiesOfShape(shape)) properties[name] = value;
  return {{"shape", page.NameOf(shape)}, {"id", shape.id()}, {"kind", kind}, {"name", shape.Text()}, {"properties", properties}};
}

// A connector and the shapes at its ends; a loose end is null.
Json ConnectionsJson(DrawingPage& page) {
  Json connections = Json::array();
  std::unordered_map<int, size_t> known;
  for (const auto& [connector, target, isBegin] : page.GluedEnds()) {
    const auto [place, isNew] = known.emplace(connector, connections.size());
    if (isNew)
      connections.push_back({{"connector", page.NameOf(*page.FindShape(connector))}, {"from", nullptr}, {"to", nullptr}});
    connections[place->second][isBegin ? "from" : "to"] = page.NameOf(*page.FindShape(target));
  }
  return connections;
}

Json PageJson(DrawingPage& page) {
  Json modules = Json::array();
  for (int i = 1; i <= page.ShapeCount(); ++i) {
    const DrawingShape& shape = page.ShapeAt(i);
    const std::string kind = ModuleKindOf(shape);
    if (!kind.empty()) modules.push_back(ModuleJson(page, shape, kind));
  }
  return {{"page", page.Name()}, {"shapes", page.ShapeCount()}, {"modules", modules}, {"connections", ConnectionsJson(page)}};
}

std::string EndText(const Json& end) { return end.is_null() ? "(loose)" : end.get<std::string>(); }

std::string Counted(size_t count, const std::string& word) { return fmt::format("{} {}{}", count, word, count == 1 ? "" : "s"); }

void PrintPage(const Json& page, std::ostream& output) {
  fmt::print(output, "{}: {}, {}, {}\n", page["page"].get<std::string>(), Counted(page["shapes"].get<size_t>(), "shape"),
             Counted(page["modules"].size(), "module"), Counted(page["connections"].size(), "connection"));
  for (const Json& module : page["modules"]) {
    fmt::print(output, "  {} \"{}\" ({})\n", module["kind"].get<std::string>(), module["name"].get<std::string>(),
               module["shape"].get<std::string>());
    for (const auto& [name, value] : module["properties"].items())
      fmt::print(output, "    {} = {}\n", name, value.get<std::string>());
  }
  for (const Json& connection : page["connections"])
    fmt::print(output, "  {}: {} -> {}\n", connection["connector"].get<std::string>(), EndText(connection["from"]),
               EndText(connection["to"]));
}

}  // namespace

Outcome ShowDrawing(const ShowOptions& options, std::ostream& output) {
  const std::unique_ptr<Drawing> drawing = Drawing::Open(options.file);
  Json pages = Json::array();
  for (int i = 1; i <= drawing->PageCount(); ++i) pages.push_back(PageJson(drawing->PageAt(i)));
  if (options.json)
    output << Json{{"pages", pages}}.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  else
    for (const Json& page : pages) PrintPage(page, output);
  return {};
}

}  // namespace vardo
