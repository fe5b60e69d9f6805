// Forms as windows of Windows: shown to a person, or, by Win32Driver, driven by a program through window messages.
//   All calls come from the thread that made it, the one whose windows the forms stand over. The windows follow the
//   resolution of the screen they are on, whether their host does or not.
#pragma once

#include "forms/FormPresenter.h"
#include "forms/ShownWindows.h"
#include "forms/win32/FormWindow.h"
#include "forms/win32/WindowNames.h"

#include <windows.h>

#include <functional>
#include <unordered_map>

namespace vardo {

class Win32Presenter : public FormPresenter {
 public:
  // owner says which window a form stands over when no other form is shown; it may say null.
  // Without a pump the person at the screen is served. With one, it acts on the shown form until that is closed and calls
  // ProcessMessages while it waits; a form still open when it returns is cancelled with Escape.
  explicit Win32Presenter(std::function<HWND()> owner = GetActiveWindow, std::function<void(Form&)> pump = nullptr)
      : owner_(std::move(owner)), pump_(std::move(pump)) {}

  // The window of the form on top, else the owner: what a message stands over.
  HWND TopWindow() const { return windows_.Top() ? windows_.Top()->window() : owner_(); }
  // Null when the form is not shown.
  HWND WindowOf(const Form& form) const;

  // FormPresenter. When the program is to quit meanwhile, the form is cancelled and the wish passed on.
  void Loaded(Form& form) override { marks_.try_emplace(&form, form.name()); }
  void Unloaded(Form& form) override { marks_.erase(&form); }
  void RunModal(Form& form) override;
  void Closed(Form& form) override;

 protected:
  const ShownWindows<FormWindow>& windows() const { return windows_; }

 private:
  void Serve(FormWindow& window);

  std::function<HWND()> owner_;
  std::function<void(Form&)> pump_;
  FormWindowClass windowClass_;
  std::unordered_map<const Form*, LoadedMark> marks_;
  ShownWindows<FormWindow> windows_;
};

}  // namespace vardo
