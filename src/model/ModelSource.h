// What a drawing says of a model, as plain data: read once through the host's interfaces, and good without the host.
#pragma once

#include "addin/host/HostFwd.h"
#include "modules/ModuleKinds.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

struct SourcePage {
  int id = 0;
  std::string name;
  std::string parent;                                      // the page that a submodel page says it belongs to; empty for others
  int shapes = 0;                                          // on the page itself
  bool isKept = false;                                     // it has registers
  std::array<std::string, kModuleKinds.size()> registers;  // the positions of the shapes of each kind, as stored
  std::string count;                                       // of module shapes, as stored
};

struct SourceModule {
  const ModuleSchema* schema = nullptr;
  int page = 0;                // its place among the pages
  int shape = 0;               // the shape's ID
  int position = 0;            // among the shapes of its page, from 1
  std::string name;            // as its property says; when that is empty, the text shown
  std::string text;            // shown by the shape
  bool hasClass = true;        // else its master alone says of what kind it is
  bool hasThirdPoint = false;  // connection points; only looked at where a second exit may be
  // As stored, without the quotes; none for a property that the shape has not. One for each of the schema's.
  std::vector<std::optional<std::string>> values;
};

// By the connector's master.
enum class ConnectorKind : std::uint8_t { Plain, True, False, Original, Duplicate };

struct ConnectorEnd {
  enum class At : std::uint8_t { Nothing, Module, OtherShape };
  At at = At::Nothing;
  int module = -1;
  int point = 0;     // the connection point, from 1; 0: glued to the shape as a whole, or to a point without a number
  std::string text;  // of another shape: its text or, without one, its name
};

struct SourceConnector {
  int page = 0;
  int shape = 0;
  int position = 0;
  std::string name;
  ConnectorKind kind = ConnectorKind::Plain;
  ConnectorEnd begin, end;
};

// The cells of the document's sheet that set up a run; what each means is said in RunSetup.h.
enum class SetupItem : std::uint8_t {
  Replications,
  Length,
  Until,
  WarmUp,
  TimeUnit,
  Seed,
  Confidence,
  Precision,
  PrecisionOf,
  MaxReplications,
  Ignore,
};
inline constexpr size_t kSetupItemCount = static_cast<size_t>(SetupItem::Ignore) + 1;
using SetupTexts = std::array<std::optional<std::string>, kSetupItemCount>;

struct ModelSource {
  std::vector<SourcePage> pages;
  // Both in drawing order: page by page, and on a page from the shape at the back to the one in front.
  std::vector<SourceModule> modules;
  std::vector<SourceConnector> connectors;
  SetupTexts setup;
};

// Throws HostError when the host refuses to tell something.
ModelSource ReadDrawing(const IVDocumentPtr& document);

}  // namespace vardo
