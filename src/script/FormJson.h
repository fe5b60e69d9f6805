// A form as the script's clients see it.
#pragma once

#include "forms/Form.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace vardo {

nlohmann::ordered_json FormToJson(const Form& form);

// The items of a combo or list box; null for any other control.
const std::vector<std::string>* ItemsOf(const Control& control);

}  // namespace vardo
