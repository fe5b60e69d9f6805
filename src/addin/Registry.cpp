#include "addin/Registry.h"

#include "platform/Platform.h"

namespace vardo {

std::string GetRegistryString(std::string_view key, std::string_view valueName, std::string_view /*defaultText*/) {
  return ThePlatform().ReadRegistryString(key, valueName);
}

}  // namespace vardo
