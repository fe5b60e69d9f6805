// The registered add-in, made and called as Visio makes and calls it.
#pragma once

#include "automation/HostAutomation.h"
#include "script/HostedAddin.h"
#include "visio/LateBound.h"

namespace vardo {

// The host's objects go there as automation objects. The thread must have an apartment of its own.
class AutomationAddin : public HostedAddin {
 public:
  // Throws AutomationError when there is no such class or no object of it can be made.
  AutomationAddin();

  // The library that the add-in lives in.
  HMODULE library() const;
  // How often the add-in has called the host's objects.
  size_t HostCallCount() const { return host_.CallCount(); }

  void AddVardoMenu() override;
  void InitializePage() override;
  void SetupEventSink(const IVApplicationPtr& application) override;
  void ShowEditor(const IVApplicationPtr& application, const IVShapePtr& shape) override;
  void Submodel(const IVApplicationPtr& application, const IVShapePtr& shape) override;
  void CloseSubmodel(const IVApplicationPtr& application, const IVPagePtr& page) override;
  void CopyAndPaste() override;

 private:
  template <class... Objects>
  void Call(const wchar_t* method, const Objects&... objects) const;

  HostAutomation host_;
  LateBound addin_;
};

}  // namespace vardo
