// The font of a form's window.
#pragma once

#include "forms/Form.h"

#include <windows.h>

namespace vardo {

// The system's font for dialogs in the largest size, up to the system's own, in which every caption of the form fits its place.
// The caller deletes it.
HFONT MakeDialogFont(const Form& form, int dotsPerInch);

}  // namespace vardo
