#include "canvas/FieldEdits.h"

#include "base/Errors.h"
#include "base/ScopeExit.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "platform/Platform.h"

#include <exception>

namespace vardo {
namespace {

constexpr int kRefused = 5;

// Keeps what would be shown.
class QuietPlatform : public ForwardingPlatform {
 public:
  using ForwardingPlatform::ForwardingPlatform;
  void ShowMessage(std::string_view text, std::string_view, int) override {
    if (message_.empty()) message_ = text;
  }
  const std::string& message() const { return message_; }

 private:
  std::string message_;
};

}  // namespace

void FillDialog(AddinSession& session, const SheetRef& module, const std::vector<FieldText>& texts) {
  QuietPlatform quiet(ThePlatform());
  DialogFiller filler(texts);
  std::exception_ptr failure;
  HeadlessPresenter presenter([&](Form& form) {
    try {
      filler.Fill(form);
    } catch (const AutomationError&) {
      failure = std::current_exception();
    }
  });
  Platform* const platform = SetPlatform(&quiet);
  FormPresenter* const shown = SetFormPresenter(&presenter);
  const AtExit restore([&] {
    SetPlatform(platform);
    SetFormPresenter(shown);
  });
  session.ShowEditor(module, true);
  if (failure) std::rethrow_exception(failure);
  if (!filler.accepted())
    throw AutomationError(kRefused, quiet.message().empty() ? "The module does not take this." : quiet.message());
}

}  // namespace vardo
