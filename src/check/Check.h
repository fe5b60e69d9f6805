// The rules that a model is held against.
#pragma once

#include "addin/host/HostFwd.h"
#include "model/Finding.h"
#include "model/Model.h"
#include "model/RunSetup.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

struct RuleInfo {
  std::string_view id;
  Severity severity;  // as a rule; what is known of a case may make it milder
};
// All of them, in the order of the help.
std::vector<RuleInfo> AllRules();
bool FindRule(std::string_view id);

enum class CheckFor {
  Itself,  // the drawing: rules that the set-up says to ignore are left out
  Run,     // a run with that set-up, which no error may stand in the way of
};

// What all rules find, and what has been found before, in the order of the drawing. Changes nothing.
std::vector<Finding> Check(const Model& model, const RunSetup& setup, CheckFor purpose, std::vector<Finding> before = {});

// A drawing read, its set-up, and what is to be said of both.
struct Examined {
  Model model;
  RunSetup setup;
  std::vector<Finding> findings;
  int CountOf(Severity severity) const;
};
// Throws HostError when the host refuses to tell something.
Examined Examine(const IVDocumentPtr& document, const SetupTexts& options, const std::vector<RunSetting>& settings,
                 CheckFor purpose);

}  // namespace vardo
