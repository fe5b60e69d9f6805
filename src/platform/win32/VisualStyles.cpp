#include "platform/win32/VisualStyles.h"

#include "platform/win32/OwnModule.h"

namespace vardo {
namespace {

HANDLE MakeContext() {
  ACTCTXW context = {};
  context.cbSize = sizeof context;
  context.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  context.hModule = OwnModule();
  context.lpResourceName = MAKEINTRESOURCEW(VisualStyles::kManifest);
  return CreateActCtxW(&context);
}

}  // namespace

VisualStyles::VisualStyles() : context_(MakeContext()) {
  active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
}

VisualStyles::~VisualStyles() {
  if (active_) DeactivateActCtx(0, cookie_);
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace vardo
