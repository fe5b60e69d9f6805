#include "forms/headless/HeadlessPresenter.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "forms/Forms.h"

namespace vardo {

void HeadlessPresenter::RunModal(Form& form) {
  pump_(form);
  if (form.IsShown()) form.UserKey("Escape");
  if (form.IsShown()) Hide(form);
}

void HeadlessPresenter::Screenshot(Form& form, const std::string& file) {
  throw RuntimeError(5, "No picture of " + form.name() + " was written to " + InWords(file) + ": headless forms are not drawn.");
}

}  // namespace vardo
