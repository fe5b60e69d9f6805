#include "model/Finding.h"

namespace vardo {

std::string_view WordFor(Severity severity) {
  constexpr std::string_view kWords[] = {"error", "warning", "note"};
  return kWords[static_cast<size_t>(severity)];
}

}  // namespace vardo
