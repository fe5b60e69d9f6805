// A line of a script taken apart, and refused when it could only do harm.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>

namespace vardo {

using Json = nlohmann::ordered_json;

// In bytes.
inline constexpr size_t kLongestRequest = 16 << 20;

// Throws RuntimeError 5, which says what is wrong: the line is no JSON object in UTF-8, is too long, is nested too deeply, has an
// object with too many members or with one of them twice, or holds a NUL, which would cut a text short.
Json ParseRequest(const std::string& line);

}  // namespace vardo
