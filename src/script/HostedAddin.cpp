#include "script/HostedAddin.h"

#include "addin/Application.h"
#include "addin/Global_Variables.h"

namespace vardo {
namespace {

class BuiltInAddin : public HostedAddin {
 public:
  ~BuiltInAddin() override {
    visApp.reset();
    eventSink.reset();
  }
  void AddVardoMenu() override { addin_.AddVardoMenu(); }
  void InitializePage() override { addin_.InitializePage(); }
  void SetupEventSink(const IVApplicationPtr& application) override { addin_.SetupEventSink(application); }
  void ShowEditor(const IVApplicationPtr& application, const IVShapePtr& shape) override {
    addin_.ShowEditor(application, shape);
  }
  void Submodel(const IVApplicationPtr& application, const IVShapePtr& shape) override { addin_.Submodel(application, shape); }
  void CloseSubmodel(const IVApplicationPtr& application, const IVPagePtr& page) override {
    addin_.CloseSubmodel(application, page);
  }
  void CopyAndPaste() override { addin_.CopyAndPaste({}); }

 private:
  Application addin_;
};

}  // namespace

std::unique_ptr<HostedAddin> MakeBuiltInAddin() { return std::make_unique<BuiltInAddin>(); }

}  // namespace vardo
