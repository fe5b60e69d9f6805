// The same forms, acted on by a program as a person acts on them: through messages to their windows.
#pragma once

#include "forms/win32/Win32Presenter.h"

namespace vardo {

class Win32Driver : public Win32Presenter, public FormDriver {
 public:
  using Win32Presenter::Win32Presenter;
  using Win32Presenter::WindowOf;

  void Focus(Control& control) override;
  void Type(TextControl& control, std::string_view text) override;
  void Pick(Control& control, int index) override;
  void Check(CheckBox& control, bool checked) override;
  void Click(Control& control) override;
  void DblClick(Control& control) override;
  void Key(Form& form, std::string_view key) override;
  void Screenshot(Form& form, const std::string& file) override;

 private:
  HWND WindowOf(const Control& control) const;
};

}  // namespace vardo
