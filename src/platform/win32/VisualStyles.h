// Windows made while one of these lives have the visual styles of the system, also in a host that is not made for them.
#pragma once

#include <windows.h>

namespace vardo {

class VisualStyles {
 public:
  // The manifest that asks for them is this resource of the module; without it windows look as the host's do.
  static constexpr WORD kManifest = 2;

  VisualStyles();
  ~VisualStyles();
  VisualStyles(const VisualStyles&) = delete;
  VisualStyles& operator=(const VisualStyles&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

}  // namespace vardo
