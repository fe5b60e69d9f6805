// The add-in as a drawing host holds it: the seven methods of its one class, wherever that lives.
#pragma once

#include "addin/host/HostFwd.h"

#include <memory>

namespace vardo {

// Every method throws what the add-in lets through: AutomationError with its number and description.
class HostedAddin {
 public:
  virtual ~HostedAddin() = default;
  virtual void AddVardoMenu() = 0;
  virtual void InitializePage() = 0;
  virtual void SetupEventSink(const IVApplicationPtr& application) = 0;
  virtual void ShowEditor(const IVApplicationPtr& application, const IVShapePtr& shape) = 0;
  virtual void Submodel(const IVApplicationPtr& application, const IVShapePtr& shape) = 0;
  virtual void CloseSubmodel(const IVApplicationPtr& application, const IVPagePtr& page) = 0;
  // With no object, which will do as well as any.
  virtual void CopyAndPaste() = 0;
};

// The add-in that is part of this program. It forgets the host when it is destroyed.
std::unique_ptr<HostedAddin> MakeBuiltInAddin();

}  // namespace vardo
