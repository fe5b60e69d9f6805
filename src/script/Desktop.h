// What stands before a person while the add-in works: the screen, the forms on it, the message boxes and the help.
//   Text is UTF-8; places and sizes are twips.
#pragma once

#include "forms/Controls.h"
#include "platform/Platform.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// A control as it is seen; what its kind has not is left out.
struct ControlSeen {
  std::string name;
  ControlKind kind;
  std::string caption;
  std::optional<std::string> text;
  std::optional<std::vector<std::string>> items;
  std::optional<int> index;
  std::optional<bool> checked;
  bool visible;
  bool shown;
};

struct FormSeen {
  std::string name, caption;
  TwipsRect place;
  std::string focus;                  // empty: no control has it
  std::vector<ControlSeen> controls;  // in tab order
};

// Hears of what comes and goes.
class DesktopListener {
 public:
  virtual ~DesktopListener() = default;
  virtual void FormShown(const std::string& name, const std::string& caption) = 0;
  virtual void FormClosed(const std::string& name) = 0;
  // Its OK is pressed at once.
  virtual void MessageShown(const std::string& text, const std::string& title, int style) = 0;
  virtual void HelpShown(const std::string& file, const std::string& topic) = 0;
};

class Desktop {
 public:
  static constexpr TwipsSize kUsualScreen{1280 * 15.0, 1024 * 15.0};

  virtual ~Desktop() = default;
  // Before anything is shown; the listener must outlive that.
  virtual void SetListener(DesktopListener& listener) = 0;

  // As the forms see it; kUsualScreen at first.
  virtual TwipsSize ScreenSize() = 0;
  virtual void SetScreenSize(const TwipsSize& size) = 0;

  // Names of the forms that are loaded, in that order, and of the shown one on top; empty when none is shown.
  virtual std::vector<std::string> LoadedForms() = 0;
  virtual std::string TopForm() = 0;

  // The form on top; one must be shown.
  virtual FormSeen SeeForm() = 0;
  // A control of it; none when it has none of that name.
  virtual std::optional<ControlSeen> SeeControl(const std::string& name) = 0;

  // --- What a person does to the form on top. The control and the item must be there, and the control one that takes it. Each
  // throws RuntimeError 5, and changes nothing, where a person could not do it.
  virtual void Focus(const std::string& control) = 0;
  virtual void Type(const std::string& control, const std::string& text) = 0;
  virtual void Pick(const std::string& control, int index) = 0;
  virtual void Check(const std::string& control, bool checked) = 0;
  virtual void Click(const std::string& control) = 0;
  virtual void DblClick(const std::string& control) = 0;
  virtual void Key(const std::string& key) = 0;
  // Writes a PNG picture; throws RuntimeError 5 when there is none to see or the file cannot be written.
  virtual void Screenshot(const std::string& file) = 0;
};

}  // namespace vardo
