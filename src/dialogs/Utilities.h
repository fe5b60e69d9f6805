// What every form does on loading and every field on losing the focus.
#pragma once

#include "forms/Form.h"

#include <string_view>

namespace vardo {

// Places the form in the middle of the screen (twips, unrounded).
void CenterForm(Form& form);

// Tidies a field: an empty text becomes defaultText; otherwise blanks (code 32 only) go from the end and then from the start.
// A text of blanks alone becomes empty and stays so: the default is for a field that was already empty.
void TrimControlText(TextControl& control, std::string_view defaultText);

}  // namespace vardo
