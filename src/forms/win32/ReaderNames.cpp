#include "forms/win32/ReaderNames.h"

#include "platform/win32/WideText.h"

// The identifiers that oleacc.h declares are made here.
#include <initguid.h>
#include <oleacc.h>

#include <memory>

namespace vardo {
namespace {

struct Releaser {
  void operator()(IUnknown* object) const { object->Release(); }
};

// What is read of a caption: "&" marks the letter behind it, which may be another "&".
std::wstring NameIn(const std::string& caption) {
  const std::wstring marked = ToWide(caption);
  std::wstring name;
  for (size_t at = 0; at < marked.size(); ++at) {
    if (marked[at] == L'&' && at + 1 < marked.size()) ++at;
    name += marked[at];
  }
  if (!name.empty() && name.back() == L':') name.pop_back();
  return name;
}

std::unique_ptr<IAccPropServices, Releaser> MakePropServices() {
  void* services = nullptr;
  CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices, &services);
  return std::unique_ptr<IAccPropServices, Releaser>(static_cast<IAccPropServices*>(services));
}

}  // namespace

void NameForReaders(const Form& form, const std::function<HWND(const Control&)>& windowOf) {
  const auto services = MakePropServices();
  if (!services) return;
  const Control* before = nullptr;
  for (const Control* control : form.Controls()) {
    const Label* label = control->TakesFocus() && control->Caption().empty() ? form.LabelOf(*control) : nullptr;
    if (label && label != before)
      services->SetHwndPropStr(windowOf(*control), static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_NAME,
                               NameIn(label->Caption()).c_str());
    before = control;
  }
}

}  // namespace vardo
