#include "forms/win32/Picture.h"

#include "forms/win32/MessageLoop.h"
#include "platform/win32/WideText.h"

// After windows.h, which they need.
#include <objidl.h>
#include <propidl.h>
// After these.
#include <gdiplus.h>

#include <algorithm>
#include <memory>
#include <type_traits>

namespace vardo {
namespace {

// {557CF406-1A04-11D3-9A73-0000F81EF32E}: Windows' encoder of PNG files.
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

class Drawing {
 public:
  Drawing() { started_ = Gdiplus::GdiplusStartup(&token_, &input_, nullptr) == Gdiplus::Ok; }
  ~Drawing() {
    if (started_) Gdiplus::GdiplusShutdown(token_);
  }
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;
  bool IsReady() const { return started_; }

 private:
  Gdiplus::GdiplusStartupInput input_;
  ULONG_PTR token_ = 0;
  bool started_;
};

struct BitmapDeleter {
  void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using Bitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, BitmapDeleter>;

Bitmap CopyScreen(const RECT& area) {
  const int width = static_cast<int>(area.right - area.left), height = static_cast<int>(area.bottom - area.top);
  const HDC screen = GetDC(nullptr), copy = CreateCompatibleDC(screen);
  Bitmap bitmap(CreateCompatibleBitmap(screen, width, height));
  const HGDIOBJ before = SelectObject(copy, bitmap.get());
  BitBlt(copy, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
  SelectObject(copy, before);
  DeleteDC(copy);
  ReleaseDC(nullptr, screen);
  return bitmap;
}

RECT ClientAreaOnScreen(HWND window) {
  RECT area = {};
  GetClientRect(window, &area);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&area), 2);
  return area;
}

bool IsOnScreens(const RECT& area) {
  RECT screens = {GetSystemMetrics(SM_XVIRTUALSCREEN), GetSystemMetrics(SM_YVIRTUALSCREEN), 0, 0};
  screens.right = screens.left + GetSystemMetrics(SM_CXVIRTUALSCREEN);
  screens.bottom = screens.top + GetSystemMetrics(SM_CYVIRTUALSCREEN);
  RECT all = {};
  return UnionRect(&all, &screens, &area) && EqualRect(&all, &screens);
}

}  // namespace

bool SavePicture(HWND window, const std::string& file) {
  AwaitQuietScreen();
  RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  GdiFlush();
  const RECT area = ClientAreaOnScreen(window);
  const Drawing drawing;
  if (!drawing.IsReady() || !IsOnScreens(area)) return false;
  const Bitmap bitmap = CopyScreen(area);
  Gdiplus::Bitmap picture(bitmap.get(), nullptr);
  return picture.Save(ToWide(file).c_str(), &kPngEncoder, nullptr) == Gdiplus::Ok;
}

}  // namespace vardo
