// The names by which screen readers announce boxes.
#pragma once

#include "forms/Form.h"

#include <windows.h>

#include <functional>

namespace vardo {

// A reader names a box after the label right before it. The boxes of the form that have theirs elsewhere are given its text.
void NameForReaders(const Form& form, const std::function<HWND(const Control&)>& windowOf);

}  // namespace vardo
