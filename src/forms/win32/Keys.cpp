#include "forms/win32/Keys.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace vardo {
namespace {

struct NamedKey {
  std::string_view name;
  WORD key;
  bool shift = false;
  bool alt = false;
};

constexpr NamedKey kNamedKeys[] = {
    {"Enter", VK_RETURN},
    {"Escape", VK_ESCAPE},
    {"Tab", VK_TAB},
    {"Shift+Tab", VK_TAB, true},
    {"Space", VK_SPACE},
    {"Up", VK_UP},
    {"Down", VK_DOWN},
    {"PageUp", VK_PRIOR},
    {"PageDown", VK_NEXT},
    {"Home", VK_HOME},
    {"End", VK_END},
    {"F4", VK_F4},
    {"Alt+Down", VK_DOWN, false, true},
};

constexpr std::string_view kAlt = "Alt+";

// In the lParam of a key message: one press; Alt is held; the key was down before, and goes up.
constexpr LPARAM kOnce = 1, kAltHeld = 1 << 29, kReleased = static_cast<LPARAM>(0xC0000000);

bool IsAccessKey(WPARAM character) { return character > ' ' && character <= '~'; }

bool IsHeld(int key) { return GetKeyState(key) < 0; }

// Holds Shift down as far as this thread can see.
class ShiftHeld {
 public:
  explicit ShiftHeld(bool held) {
    GetKeyboardState(before_.data());
    auto now = before_;
    now[VK_SHIFT] = held ? 0x80 : 0;
    SetKeyboardState(now.data());
  }
  ~ShiftHeld() { SetKeyboardState(before_.data()); }
  ShiftHeld(const ShiftHeld&) = delete;
  ShiftHeld& operator=(const ShiftHeld&) = delete;

 private:
  std::array<BYTE, 256> before_;
};

void SendKey(HWND window, const NamedKey& key) {
  const ShiftHeld shift(key.shift);
  const LPARAM alt = key.alt ? kAltHeld : 0;
  SendMessageW(window, key.alt ? WM_SYSKEYDOWN : WM_KEYDOWN, key.key, kOnce | alt);
  SendMessageW(window, key.alt ? WM_SYSKEYUP : WM_KEYUP, key.key, kOnce | alt | kReleased);
}

}  // namespace

std::string NameOfKey(UINT message, WPARAM key) {
  if (message == WM_SYSCHAR) return IsAccessKey(key) ? std::string(kAlt) + static_cast<char>(key) : "";
  if (IsHeld(VK_CONTROL)) return {};
  const bool alt = message == WM_SYSKEYDOWN, shift = IsHeld(VK_SHIFT);
  const auto named = std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys),
                                  [&](const NamedKey& k) { return k.key == key && k.shift == shift && k.alt == alt; });
  return named == std::end(kNamedKeys) ? "" : std::string(named->name);
}

bool SendNamedKey(HWND window, std::string_view name) {
  const auto named =
      std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys), [&](const NamedKey& k) { return k.name == name; });
  if (named != std::end(kNamedKeys)) {
    SendKey(window, *named);
    return true;
  }
  const bool access = name.size() == kAlt.size() + 1 && name.starts_with(kAlt) && IsAccessKey(static_cast<BYTE>(name.back()));
  if (access) SendMessageW(window, WM_SYSCHAR, static_cast<BYTE>(name.back()), kOnce | kAltHeld);
  return access;
}

void SendPlainKey(HWND window, WORD key) { SendKey(window, {"", key}); }

}  // namespace vardo
