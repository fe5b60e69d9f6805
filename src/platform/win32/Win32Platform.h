// The services of Windows.
#pragma once

#include "platform/Platform.h"

namespace vardo {

class Win32Platform : public Platform {
 public:
  // Modal to the active window of the calling thread, as the form is that asks.
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
};

}  // namespace vardo
