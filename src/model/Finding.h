// Something that is to be said about a model.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vardo {

enum class Severity : std::uint8_t { Error, Warning, Note };
// "error".
std::string_view WordFor(Severity severity);

// Texts that are empty and numbers that are negative do not apply.
struct Finding {
  Severity severity = Severity::Error;
  std::string_view rule = {};  // "structure/dead-end"
  int order = -1;              // where it belongs among the others: the place of its module in the source; -1: behind all
  std::string page = {};
  std::string kind = {}, module = {};  // of the module it is about, or of the connector: kind empty
  int shape = -1;                      // the ID of that shape
  std::string field = {}, property = {};
  int row = -1;                    // of a repeated field, from 1
  int position = -1, length = -1;  // within the field's text, in characters from 0
  std::string text = {};           // the field's
  std::string message = {};        // one sentence
  std::string hint = {};           // what to do
};

}  // namespace vardo
