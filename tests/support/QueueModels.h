// Models of the theory of queues. Times are in minutes; the resources are "R", "S" and so on.
#pragma once

#include "DrawnModel.h"

#include <string>

namespace vardo::test {

inline Properties With(Properties properties, const Properties& more) {
  properties.insert(properties.end(), more.begin(), more.end());
  return properties;
}

// So long between arrivals on the average.
inline Properties Arrivals(const std::string& mean, const Properties& more = {}) {
  return With({{"CreateType", "Random"}, {"CreateValue", mean}, {"CreateUnits", "Minutes"}}, more);
}
inline Properties Delayed(const std::string& expression, const Properties& more = {}) {
  return With({{"ProcessDelayType", "Expression"}, {"ProcessExpression", expression}, {"ProcessUnits", "Minutes"}}, more);
}
inline Properties Served(const std::string& expression, const std::string& resource = "R", const Properties& more = {}) {
  return With(Delayed(expression, {{"ProcessAction", "SDR"}, {"Process_RCount", "1"}, {"Process_RResourceName", resource}}),
              more);
}
inline Properties Capacity(const std::string& units) { return {{"ResourceCapacity", units}}; }
inline Properties Condition(const std::string& expression) {
  return {{"DecideType", "If"}, {"DecideIf", "Expression"}, {"DecideValue", expression}};
}
inline Properties Noted(const std::string& expression, const std::string& tally) {
  return {{"RecordType", "Expression"}, {"RecordValue", expression}, {"RecordTallyName", tally}};
}
inline Properties SinceCreation() { return {{"RecordType", "Interval"}, {"RecordAttributeName", "Entity.CreateTime"}}; }

// Come - Serve - Go, with resource R.
inline DrawnModel OneQueue(const std::string& between, const Properties& served, const std::string& capacity = "1",
                           const Properties& arrivals = {}) {
  DrawnModel model;
  model.Add("Create", "Come", Arrivals(between, arrivals)).Add("Process", "Serve", served).Add("Dispose", "Go");
  model.Add("Resource", "R", Capacity(capacity)).Chain({"Come", "Serve", "Go"});
  return model;
}

}  // namespace vardo::test
