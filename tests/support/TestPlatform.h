// The machine's own services in force for the time of a test, except that messages and help calls are kept instead of shown.
#pragma once

#include "RecordingPlatform.h"
#include "platform/NativePlatform.h"

#include <memory>

namespace vardo {

class TestPlatform {
 public:
  TestPlatform() : before_(SetPlatform(&recording_)) {}
  ~TestPlatform() { SetPlatform(before_); }
  TestPlatform(const TestPlatform&) = delete;
  TestPlatform& operator=(const TestPlatform&) = delete;

  RecordingPlatform* operator->() { return &recording_; }

 private:
  std::unique_ptr<Platform> native_ = MakeNativePlatform();
  RecordingPlatform recording_{*native_};
  Platform* before_;
};

}  // namespace vardo
