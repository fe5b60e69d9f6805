// What keeps the server loaded.
#pragma once

#include <windows.h>

namespace vardo {

// Keeps the module (the DLL) loaded while it exists: one in every object that is handed out, and one for a client's own lock.
class ModuleLock {
 public:
  ModuleLock() noexcept { InterlockedIncrement(&count_); }
  ~ModuleLock() { InterlockedDecrement(&count_); }
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;

  static void Add(bool lock) noexcept { lock ? InterlockedIncrement(&count_) : InterlockedDecrement(&count_); }
  static bool IsHeld() noexcept { return count_ != 0; }

 private:
  static inline LONG count_ = 0;
};

}  // namespace vardo
