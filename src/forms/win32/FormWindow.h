// A form as a window: the windows of its controls, and what a person does with them.
#pragma once

#include "forms/win32/ControlView.h"
#include "forms/win32/ModalState.h"

#include <windows.h>

#include <memory>
#include <optional>
#include <type_traits>
#include <unordered_map>

namespace vardo {

// The class of the forms' windows; it goes with the library that brings it.
class FormWindowClass {
 public:
  FormWindowClass();
  ~FormWindowClass();
  FormWindowClass(const FormWindowClass&) = delete;
  FormWindowClass& operator=(const FormWindowClass&) = delete;
};

class FormWindow : private FormObserver {
 public:
  // Shows nothing yet. The form is mirrored until the window is destroyed, and must outlive it. Throws RuntimeError when Windows
  // makes no window.
  FormWindow(Form& form, HWND owner);
  ~FormWindow() override;
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  Form& form() const { return form_; }
  // Null when the owner has gone and has taken this window with it.
  HWND window() const { return window_; }
  ControlView& View(const Control& control) const { return *views_.at(&control); }

  // Shows the window over its owner, and keeps a person to it until Close.
  void Open();
  void Close();

 private:
  friend class FormWindowClass;
  struct FontDeleter {
    void operator()(HFONT font) const { DeleteObject(font); }
  };
  using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, FontDeleter>;

  void ControlChanged(Control& control) override { View(control).Mirror(); }
  void FocusMoved(Control* focus) override;

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

  ControlView& MakeView(Control& control);
  void PlaceWindow();
  void PlaceControls(int dotsPerInch);
  void MarkDefaultButton() const;
  void GiveKeyboard();

  Form& form_;
  HWND owner_;
  HWND window_ = nullptr;
  std::unordered_map<const Control*, std::unique_ptr<ControlView>> views_;
  Font font_;
  std::optional<ModalState> modal_;
  const Control* entered_ = nullptr;
  bool mirroring_ = false;
};

}  // namespace vardo
