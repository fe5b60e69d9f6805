// A form as a window: the windows of its controls, and what a person does with them.
#pragma once

#include "forms/win32/ControlView.h"
#include "forms/win32/DialogFont.h"
#include "platform/win32/ModalState.h"

#include <windows.h>

#include <memory>
#include <optional>
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
  HWND window() const { return window_.handle; }
  ControlView& View(const Control& control) const { return *views_.at(&control); }

  // Shows the window over its owner, and keeps a person to it until Close.
  void Open();
  void Close();

 private:
  friend class FormWindowClass;
  // The window, which Windows takes away with its owner.
  struct OwnedWindow {
    OwnedWindow() = default;
    ~OwnedWindow() {
      if (handle) DestroyWindow(handle);
    }
    OwnedWindow(const OwnedWindow&) = delete;
    OwnedWindow& operator=(const OwnedWindow&) = delete;
    HWND handle = nullptr;
  };

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
  std::unordered_map<const Control*, std::unique_ptr<ControlView>> views_;
  Font font_;
  std::optional<ModalState> modal_;
  const Control* entered_ = nullptr;
  bool mirroring_ = false;
  OwnedWindow window_;  // the first to go, as long as all that it asks for is there
};

}  // namespace vardo
