#include "dialogs/Utilities.h"

#include "platform/Platform.h"
#include "props/StringFunctions.h"

namespace vardo {

void CenterForm(Form& form) {
  const TwipsSize screen = ThePlatform().ScreenSize();
  form.MoveTo(screen.width / 2.0 - form.Place().width / 2.0, screen.height / 2.0 - form.Place().height / 2.0);
}

void TrimControlText(TextControl& control, std::string_view defaultText) {
  const std::string text = control.Text();
  control.SetText(text.empty() ? std::string(defaultText) : std::string(TrimBlanks(text)));
}

}  // namespace vardo
