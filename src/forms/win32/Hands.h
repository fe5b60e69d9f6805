// What a person sees of a control's window and does with it: by the messages that eyes and screen readers, keys and the mouse
// bring.
#pragma once

#include "forms/Controls.h"

#include <windows.h>

#include <string>
#include <vector>

namespace vardo {

// Throws RuntimeError 5 for a window of a class that no control has.
ControlKind KindOf(HWND window);
std::string TextOf(HWND window);
// Of a combo or list box; the chosen one is -1 when there is none.
std::vector<std::string> ItemsOf(HWND window);
int ChosenItem(HWND window);
bool IsChecked(HWND window);
bool TakesFocus(HWND window);
// A combo whose line takes no typing.
bool IsPickOnly(HWND window);

// --- For windows that are shown and take the focus.
void GoTo(HWND window);
// Puts the text in the place of the one that is there.
void TypeInto(HWND window, const std::wstring& text);
void PickItem(HWND window, int index);
void ClickOn(HWND window);
// In a list on its chosen line.
void DoubleClickOn(HWND window);

}  // namespace vardo
