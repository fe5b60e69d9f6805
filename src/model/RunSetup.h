// How a model is to be run: what the options and the cells of the drawing say, and what is taken when neither does.
#pragma once

#include "addin/host/HostFwd.h"
#include "model/Choices.h"
#include "model/Finding.h"
#include "model/ModelSource.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// A value that is another one for this run: of a variable, or of a field of a module.
struct RunSetting {
  std::string module;  // empty: a variable
  std::string name;    // the variable, or the field's label or property
  std::string value;
};

struct RunSetup {
  int firstReplication = 1, lastReplication = 20;
  std::optional<double> length;         // seconds
  std::string until;                    // an expression; empty: none
  double warmUp = 0;                    // seconds
  bool warmUpIsProposed = false;        // found in pilot runs
  TimeUnit timeUnit = TimeUnit::Hours;  // of times without one of their own, and of what is shown
  std::uint64_t seed = 1;
  double confidence = 95;                // percent
  std::optional<double> precision;       // percent
  std::vector<std::string> precisionOf;  // outputs
  int maxReplications = 1000;
  std::vector<RunSetting> settings;
  std::vector<std::string> ignore;  // rules
};

// What an item is called, and how it is asked for.
struct SetupItemInfo {
  SetupItem item;
  std::string_view option;  // "--replications"
  std::string_view cell;    // "User.VardoRunReplications"
};
const SetupItemInfo& InfoOf(SetupItem item);

// Options beat cells, cells beat what is usual. One finding (run/setup) for each that cannot be read, which is left as is usual.
RunSetup ReadSetup(const SetupTexts& options, const SetupTexts& cells, std::vector<Finding>& findings);

// Writes what is given into the cells of the document's sheet. Throws HostError.
void KeepSetup(const IVDocumentPtr& document, const SetupTexts& options);

// A time such as "8h", "30 d" or "90 min", in seconds; a bare number is in the unit. None when it is no time, or negative.
std::optional<double> ParseTime(std::string_view text, TimeUnit unit);

// NAME=VALUE, or MODULE, FIELD=TEXT. None when it is neither.
std::optional<RunSetting> ParseSetting(std::string_view text);
// Puts the settings into what the drawing says, before a model is made of it. One finding (run/setup) for each that names
// nothing.
void ApplySettings(const std::vector<RunSetting>& settings, ModelSource& source, std::vector<Finding>& findings);

}  // namespace vardo
