// Something that is to be said about a model.
#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace vardo {

enum class Severity : std::uint8_t { Error, Warning, Note };
// "error".
std::string_view WordFor(Severity severity);

// Where a finding belongs among the others: by page, shape, field and place in it. Those of no shape come last.
struct FindingOrder {
  int page = kLast, position = kLast;  // of the shape among those of its page
  int field = -1, row = -1;
  static constexpr int kLast = std::numeric_limits<int>::max();
  friend auto operator<=>(const FindingOrder&, const FindingOrder&) = default;
};

// Texts that are empty and numbers that are negative do not apply.
struct Finding {
  Severity severity = Severity::Error;
  std::string_view rule = {};  // "structure/dead-end"
  FindingOrder order = {};
  std::string page = {};
  std::string kind = {}, module = {};  // of the module it is about; of a connector: kind empty
  int shape = -1;                      // the ID of the shape
  std::string field = {}, property = {};
  int row = -1;                    // of a repeated field, from 1
  int position = -1, length = -1;  // within the field's text, in characters from 0
  std::string text = {};           // the field's
  std::string message = {};        // one sentence, which names the module and the field
  std::string hint = {};           // what to do
};

}  // namespace vardo
