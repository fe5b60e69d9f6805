#include "app/Commands.h"

#include "addin/host/IVApplication.h"
#include "base/FileError.h"
#include "check/Check.h"
#include "memoryhost/DrawingHost.h"
#include "platform/FileSystem.h"
#include "platform/NativePlatform.h"
#include "platform/Platform.h"
#include "props/StringFunctions.h"
#include "report/FindingsReport.h"

#include <fstream>

namespace vardo {
namespace {

constexpr std::string_view kToStandardOutput = "-";

void WriteFile(const std::filesystem::path& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
  stream.close();
  if (!stream) throw FileError(PathInWords(file) + " could not be written; choose another place.");
}

}  // namespace

Outcome CheckDrawing(const CheckOptions& options, std::ostream& output) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  SetPlatform(machine.get());
  DrawingHost host;
  host.Open(options.file);

  SetupTexts texts;
  if (!options.ignore.empty()) texts[static_cast<size_t>(SetupItem::Ignore)] = JoinList(options.ignore);
  const Examined examined = Examine(host.application()->ActiveDocument(), texts, {}, CheckFor::Itself);

  const std::string file = PathInWords(options.file);
  const std::string json =
      FindingsJson(file, examined.findings).dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
  if (options.json == kToStandardOutput)
    output << json;
  else
    PrintFindings(file, examined.findings, output);
  if (!options.json.empty() && options.json != kToStandardOutput) WriteFile(options.json, json);

  const bool tooManyWarnings = options.maxWarnings && examined.CountOf(Severity::Warning) > *options.maxWarnings;
  return {examined.CountOf(Severity::Error) > 0 || tooManyWarnings ? 1 : 0, {}};
}

}  // namespace vardo
