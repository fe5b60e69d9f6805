// A scenario: a script, and behind each request the lines that are to come of it.
//
// The file is a script as it stands; what is expected stands in its comments:
//   # A comment tells the story; the first line is the title.
//   {"do": "new"}                                       a request with nothing behind it must succeed and raise no event
//   {"do": "cell", "of": "Create", "name": "Prop.X"}
//   #= {"ok": true, "result": {"exists": false}}        one line for every event and reply that comes before the next request
//   #= {"exit": 0}                                      at the end of the file, where wanted: the script's exit status
//   #@ {"addin": false, "registry": {"KEY": {"NAME": "TEXT"}}, "addons": ["NAME"]}
//                                                       what differs from a machine that has nothing in its registry and no
//                                                       add-on
// An expected object matches when each of its members does; other members are free. Arrays are equal in length and item by item.
// An object expected of an array names items by their name, caption or text: {"cboName": {"text": "a"}}; null is for one that
// must not be there, true for one that must be, whatever it is. ${TMP} is a fresh folder, ${DATA} that of the tests' data.
#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vardo {

using ScenarioJson = nlohmann::ordered_json;

struct Expectation {
  int line;
  ScenarioJson value;
};

struct ScenarioRequest {
  int line;
  std::string text;
  std::vector<Expectation> expected;
};

struct Scenario {
  std::string file;
  bool withAddin = true;
  std::map<std::pair<std::string, std::string>, std::string> registry;  // by key and value name
  std::vector<std::string> addOns;                                      // those installed
  std::vector<ScenarioRequest> requests;
  std::optional<Expectation> exit;
};

// Throws std::runtime_error, naming file and line, when the file cannot be read or an expectation is no JSON.
Scenario ReadScenario(const std::filesystem::path& file, const std::map<std::string, std::string>& placeholders);

// What is wrong with the lines that came of a request, each beginning with file and line; empty when all is as expected.
std::vector<std::string> Mismatches(const Scenario& scenario, const ScenarioRequest& request,
                                    const std::vector<std::string>& came);

bool Matches(const ScenarioJson& expected, const ScenarioJson& came);

}  // namespace vardo
