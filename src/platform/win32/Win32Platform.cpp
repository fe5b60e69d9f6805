#include "platform/win32/Win32Platform.h"

#include "base/Characters.h"
#include "base/Text.h"
#include "platform/NativePlatform.h"
#include "platform/win32/ModalState.h"
#include "platform/win32/OwnModule.h"
#include "platform/win32/Screen.h"
#include "platform/win32/VisualStyles.h"
#include "platform/win32/WideText.h"

#include <windows.h>
// After windows.h, which it needs.
#include <oleauto.h>

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <type_traits>

namespace vardo {
namespace {

constexpr REGSAM kQueryAccess = 1;
constexpr size_t kRegistryBufferSize = 256;
constexpr UINT kDisplayTopic = 0;

// In the ANSI code page; *replaced tells whether it lacks a character. UTF-8 as code page takes neither flag nor question.
std::string ToAnsi(std::string_view text, BOOL* replaced = nullptr) {
  const bool isUtf8 = GetACP() == CP_UTF8;
  const DWORD flags = isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS;
  const auto wide = ToWide(text);
  const auto size = static_cast<int>(wide.size());
  std::string ansi(WideCharToMultiByte(CP_ACP, flags, wide.data(), size, nullptr, 0, nullptr, nullptr), '\0');
  WideCharToMultiByte(CP_ACP, flags, wide.data(), size, ansi.data(), static_cast<int>(ansi.size()), nullptr,
                      isUtf8 ? nullptr : replaced);
  return ansi;
}

std::string FromAnsi(std::string_view text) {
  const auto size = static_cast<int>(text.size());
  std::wstring wide(MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return FromWide(wide);
}

// The one byte that a character has in the ANSI code page.
std::optional<char> AnsiCode(std::string_view character) {
  BOOL replaced = FALSE;
  const auto ansi = ToAnsi(character, &replaced);
  if (replaced || ansi.size() != 1) return std::nullopt;
  return ansi.front();
}

struct KeyCloser {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using RegistryKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

RegistryKey OpenUserKey(std::string_view path) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, ToAnsi(path).c_str(), 0, kQueryAccess, &key) != ERROR_SUCCESS) return nullptr;
  return RegistryKey(key);
}

std::filesystem::path AddOnFolder() { return ModuleFile(nullptr).parent_path() / "addons"; }

// The whole path of the file beside this module; the name alone, for the viewer to look for, where there is none or the code page
// lacks letters of the path.
std::string HelpPath(std::string_view file) {
  const auto path = ModuleFile(OwnModule()).replace_filename(ToWide(file));
  BOOL replaced = FALSE;
  const auto name = ToAnsi(FromWide(path.native()), &replaced);
  std::error_code none;
  return !replaced && std::filesystem::is_regular_file(path, none) ? name : ToAnsi(file);
}

using HtmlHelpFunction = HWND(WINAPI*)(HWND caller, LPCSTR file, UINT command, DWORD_PTR data);

// Stays loaded: the viewer's window lives in this process. The current folder, which may be a stranger's, is not searched.
HtmlHelpFunction HtmlHelp() {
  static const HMODULE library = LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
  if (!library) return nullptr;
  return reinterpret_cast<HtmlHelpFunction>(reinterpret_cast<void*>(GetProcAddress(library, "HtmlHelpA")));
}

std::string Mapped(DWORD flags, std::wstring_view text) {
  const auto map = [&](std::string* bytes) {
    return LCMapStringEx(LOCALE_NAME_INVARIANT, flags, text.data(), static_cast<int>(text.size()),
                         bytes ? reinterpret_cast<wchar_t*>(bytes->data()) : nullptr, bytes ? static_cast<int>(bytes->size()) : 0,
                         nullptr, nullptr, 0);
  };
  std::string bytes(static_cast<size_t>(map(nullptr)), '\0');
  map(&bytes);
  return bytes;
}

// The invariant order, not the user's: whether two names of a drawing clash must not depend on who opens it.
std::string SortKey(std::wstring_view text) {
  return Mapped(LCMAP_SORTKEY | NORM_IGNORECASE | NORM_IGNOREKANATYPE | NORM_IGNOREWIDTH, text);
}

// A character that does not count leaves nothing but separators in a key.
bool DoesNotCount(wchar_t character) {
  const std::string key = SortKey({&character, 1});
  return std::all_of(key.begin(), key.end(), [](char byte) { return byte == 0 || byte == 1; });
}

// The printable ASCII text, in lower case, that weighs the same; none when there is none.
std::optional<std::string> AsciiEquivalent(std::wstring_view text) {
  std::wstring plain;
  for (const wchar_t character : text) {
    wchar_t narrow = character;
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_HALFWIDTH, &character, 1, &narrow, 1, nullptr, nullptr, 0);
    if (narrow >= L' ' && narrow <= L'~')
      plain += narrow;
    else if (!DoesNotCount(character))
      return std::nullopt;
  }
  if (SortKey(plain) != SortKey(text)) return std::nullopt;
  return LowerAscii(std::string(plain.begin(), plain.end()));
}

}  // namespace

void Win32Platform::ShowMessage(std::string_view text, std::string_view title, int style) {
  const VisualStyles styled;
  const OwnPixels sharp;
  const HWND owner = owner_(), active = GetActiveWindow();
  {
    // The box itself disables its owner, and gives that the activation when it goes.
    const ModalState others(owner, nullptr);
    MessageBoxW(owner, ToWide(text).c_str(), ToWide(title).c_str(), static_cast<UINT>(style));
  }
  if (active && IsWindowEnabled(active)) SetActiveWindow(active);
}

TwipsSize Win32Platform::ScreenSize() {
  const Screen screen = ScreenOf(owner_());
  const double twipsPerPixel = kTwipsPerInch / screen.dotsPerInch;
  return {(screen.pixels.right - screen.pixels.left) * twipsPerPixel, (screen.pixels.bottom - screen.pixels.top) * twipsPerPixel};
}

void Win32Platform::ShowHelp(std::string_view file, std::string_view topic) {
  const auto htmlHelp = HtmlHelp();
  if (!htmlHelp) return;
  const auto topicName = ToAnsi(topic);
  htmlHelp(owner_(), HelpPath(file).c_str(), kDisplayTopic, reinterpret_cast<DWORD_PTR>(topicName.c_str()));
}

bool Win32Platform::RunAddOn(std::string_view name) {
  if (name.empty() || name.find_first_of(std::string_view("/\\:\"*?<>|\0", 10)) != std::string_view::npos) return false;
  const auto program = AddOnFolder() / ToWide(name);
  std::error_code none;
  if (!std::filesystem::is_regular_file(program, none)) return false;
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

std::string Win32Platform::ReadRegistryString(std::string_view key, std::string_view valueName) {
  const auto opened = OpenUserKey(key);
  if (!opened) return "";
  std::array<char, kRegistryBufferSize> buffer;
  DWORD type = REG_NONE;
  DWORD length = buffer.size();
  const auto status =
      RegQueryValueExA(opened.get(), ToAnsi(valueName).c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &length);
  if (status != ERROR_SUCCESS || type != REG_SZ || length == 0) return "";
  // The last byte is the closing zero.
  return FromAnsi({buffer.data(), length - 1});
}

// Most names are ASCII, and weighing is what costs.
bool Win32Platform::EqualTextIgnoringCase(std::string_view a, std::string_view b) {
  if (IsPrintableAscii(a) && IsPrintableAscii(b)) return LowerAscii(a) == LowerAscii(b);
  return CaseFoldKey(a) == CaseFoldKey(b);
}

std::string Win32Platform::CaseFoldKey(std::string_view text) {
  if (IsPrintableAscii(text)) return LowerAscii(text);
  const std::wstring wide = ToWide(text);
  if (auto ascii = AsciiEquivalent(wide)) return *std::move(ascii);
  return "\1" + SortKey(wide);
}

bool Win32Platform::IsAnsiAlpha(std::string_view character) {
  const auto code = AnsiCode(character);
  return code && IsCharAlphaA(*code);
}

bool Win32Platform::IsAnsiAlphaNumeric(std::string_view character) {
  const auto code = AnsiCode(character);
  return code && IsCharAlphaNumericA(*code);
}

std::optional<double> Win32Platform::ParseReal(std::string_view text) {
  double value = 0;
  auto wide = ToWide(text);
  if (FAILED(VarR8FromStr(wide.data(), LOCALE_USER_DEFAULT, 0, &value))) return std::nullopt;
  return value;
}

std::unique_ptr<Platform> MakeNativePlatform() { return std::make_unique<Win32Platform>(); }

}  // namespace vardo
