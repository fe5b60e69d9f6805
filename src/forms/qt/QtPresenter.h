// Forms as Qt windows: shown to a person, or driven by a program through the toolkit's own events.
//   Needs a QtSession. All calls come from the thread that made it.
#pragma once

#include "forms/FormPresenter.h"
#include "forms/ShownWindows.h"

#include <functional>

namespace vardo {

class ControlView;
class FormWindow;

class QtPresenter : public FormPresenter, public FormDriver {
 public:
  // Without a pump the person at the screen is served. With one, it acts on the shown form until that is closed and calls
  // ProcessEvents while it waits; a form still open when it returns is cancelled with Escape.
  explicit QtPresenter(std::function<void(Form&)> pump = nullptr) : pump_(std::move(pump)) {}

  // FormPresenter. The window is modal to the one of the form below, or to the active window when no form is shown.
  void RunModal(Form& form) override;
  void Closed(Form& form) override;

  // FormDriver.
  void Focus(Control& control) override;
  void Type(TextControl& control, std::string_view text) override;
  void Pick(Control& control, int index) override;
  void Check(CheckBox& control, bool checked) override;
  void Click(Control& control) override;
  void DblClick(Control& control) override;
  void Key(Form& form, std::string_view key) override;
  void Screenshot(Form& form, const std::string& file) override;

  static void ProcessEvents();

 private:
  ControlView& ViewOf(const Control& control) const;
  void Serve(FormWindow& window);

  std::function<void(Form&)> pump_;
  ShownWindows<FormWindow> windows_;
};

}  // namespace vardo
