// The desktop of an add-in in a library of its own: its dialogs are seen and used through their windows, as a person or an
// assistive tool does.
//   Everything happens on the thread that made it, which must be the add-in's.
#pragma once

#include "automation_script/ScreenOfScript.h"
#include "script/Desktop.h"

#include <windows.h>

#include <functional>
#include <vector>

namespace vardo {

// One at a time.
class WindowDesktop : public Desktop {
 public:
  // formCame is called when a form has come to be shown, before the add-in waits for what a person does with it.
  WindowDesktop(HMODULE addin, std::function<void()> formCame);
  ~WindowDesktop() override;
  WindowDesktop(const WindowDesktop&) = delete;
  WindowDesktop& operator=(const WindowDesktop&) = delete;

  void SetListener(DesktopListener& listener) override { listener_ = &listener; }
  TwipsSize ScreenSize() override { return screen_.Size(); }
  // To the nearest pixel.
  void SetScreenSize(const TwipsSize& size) override { screen_.SetSize(size); }
  std::vector<std::string> LoadedForms() override;
  std::string TopForm() override;
  FormSeen SeeForm() override;
  std::optional<ControlSeen> SeeControl(const std::string& name) override;
  void Focus(const std::string& control) override;
  void Type(const std::string& control, const std::string& text) override;
  void Pick(const std::string& control, int index) override;
  void Check(const std::string& control, bool checked) override;
  void Click(const std::string& control) override;
  void DblClick(const std::string& control) override;
  void Key(const std::string& key) override;
  void Screenshot(const std::string& file) override;

  // The help viewer beside the program tells of what it was asked for.
  static void HelpShown(const std::string& file, const std::string& topic);

 private:
  static LRESULT CALLBACK Watch(int code, WPARAM wParam, LPARAM lParam);
  void Appeared(HWND window);
  void Vanished(HWND window);
  HWND Front() const;
  HWND Usable(const std::string& control) const;

  ScreenOfScript screen_;
  std::function<void()> formCame_;
  DesktopListener* listener_ = nullptr;
  std::vector<HWND> forms_;  // the shown ones, the topmost last
  HHOOK hook_;
};

}  // namespace vardo
