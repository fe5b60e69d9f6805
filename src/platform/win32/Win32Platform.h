// The services of Windows.
#pragma once

#include "platform/Platform.h"

#include <windows.h>

#include <functional>

namespace vardo {

class Win32Platform : public Platform {
 public:
  // The window that messages and the help stand over and whose screen is the forms'; by default the thread's active one.
  explicit Win32Platform(std::function<HWND()> owner = GetActiveWindow) : owner_(std::move(owner)) {}

  // Modal to the owner and the thread's other windows; what was active is active again afterwards.
  void ShowMessage(std::string_view text, std::string_view title, int style) override;
  TwipsSize ScreenSize() override;
  void ShowHelp(std::string_view file, std::string_view topic) override;
  // From the folder addons beside the program.
  bool RunAddOn(std::string_view name) override;
  // A value of more than 255 bytes counts as none.
  std::string ReadRegistryString(std::string_view key, std::string_view valueName) override;
  bool EqualTextIgnoringCase(std::string_view a, std::string_view b) override;
  std::string CaseFoldKey(std::string_view text) override;
  bool IsAnsiAlpha(std::string_view character) override;
  bool IsAnsiAlphaNumeric(std::string_view character) override;
  std::optional<double> ParseReal(std::string_view text) override;

 private:
  std::function<HWND()> owner_;
};

}  // namespace vardo
