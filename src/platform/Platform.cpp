#include "platform/Platform.h"

#include <utility>

namespace vardo {
namespace {
Platform* installed = nullptr;
}  // namespace

Platform& ThePlatform() { return *installed; }
Platform* SetPlatform(Platform* platform) { return std::exchange(installed, platform); }

}  // namespace vardo
