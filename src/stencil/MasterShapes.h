// The shapes of the masters: what stands between the tags of each master's one top shape.
#pragma once

#include "modules/ModuleLook.h"
#include "modules/ModuleSchema.h"
#include "stencil/PartWriter.h"

#include <span>
#include <string_view>

namespace vardo {

struct Connector {
  std::string_view name, prompt, keywords;
  std::string_view text;    // empty for none
  std::string_view colour;  // "#rrggbb"
};
inline constexpr double kConnectorWidth = 1, kConnectorHeight = 0.5;

// The five connectors in stencil order.
std::span<const Connector> Connectors();
// The corners of their way, in parts of their width and of the height that they go down.
std::span<const Place> ConnectorWay();

void WriteModule(PartWriter& writer, const ModuleSchema& module);
void WriteConnector(PartWriter& writer, const Connector& connector);

}  // namespace vardo
