#include "package/Limits.h"

#include "base/FileError.h"

namespace vardo {

void CheckMemory(std::uint64_t bytes, const std::string& file, const std::string& part) {
  if (bytes > kMaxMemoryBytes)
    throw FileError::Unsafe(
        file, PartInWords(part) + " brings it to more than " + std::to_string(kMaxMemoryBytes >> 20) + " MiB in memory");
}

}  // namespace vardo
