// A form as the script's clients see it.
#pragma once

#include "script/Desktop.h"

#include <nlohmann/json.hpp>

namespace vardo {

nlohmann::ordered_json FormToJson(const FormSeen& form);

}  // namespace vardo
