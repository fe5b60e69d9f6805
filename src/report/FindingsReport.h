// Findings as a person reads them, and as programs do.
#pragma once

#include "model/Finding.h"

#include <nlohmann/json.hpp>

#include <ostream>
#include <span>
#include <string>
#include <string_view>

namespace vardo {

struct FindingCounts {
  int errors = 0, warnings = 0, notes = 0;
};
FindingCounts CountFindings(std::span<const Finding> findings);

// One line each, the place in its text below where there is one; then their numbers. file is as the person named it.
void PrintFindings(std::string_view file, std::span<const Finding> findings, std::ostream& output);

// Members that do not apply are left out. Positions count from 1, as the sentences do.
nlohmann::ordered_json FindingsJson(std::string_view file, std::span<const Finding> findings);

}  // namespace vardo
