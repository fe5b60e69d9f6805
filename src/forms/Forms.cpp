#include "forms/Forms.h"

#include "base/Errors.h"

#include <algorithm>
#include <utility>

namespace vardo {
namespace {

struct Instance {
  std::type_index type;
  std::unique_ptr<Form> form;
};

FormPresenter* presenter = nullptr;
// The forms are not destroyed with the process: should it end while one is shown, what the form refers to may be gone already.
std::vector<Instance>& instances = *new std::vector<Instance>;
std::vector<Form*> modalForms;
// Unloaded while their own handler was running; destroyed when their modal loop has ended.
std::vector<std::unique_ptr<Form>>& unloaded = *new std::vector<std::unique_ptr<Form>>;

bool InModalLoop(const Form& form) { return std::find(modalForms.begin(), modalForms.end(), &form) != modalForms.end(); }

void Close(Form& form) {
  if (!form.IsShown()) return;
  form.SetShown(false);
  presenter->Closed(form);
}

// Takes the form off the stack of modal forms however the loop ends, and destroys it when it was unloaded meanwhile.
class ModalScope {
 public:
  explicit ModalScope(Form& form) : form_(&form) {
    modalForms.push_back(form_);
    form.SetShown(true);
  }
  ~ModalScope() {
    form_->SetShown(false);
    modalForms.erase(std::find(modalForms.begin(), modalForms.end(), form_));
    std::erase_if(unloaded, [this](const auto& form) { return form.get() == form_; });
  }

 private:
  Form* form_;
};

}  // namespace

FormPresenter* SetFormPresenter(FormPresenter* newPresenter) { return std::exchange(presenter, newPresenter); }

Form* FindInstance(std::type_index type) {
  const auto found = std::find_if(instances.begin(), instances.end(), [&](const Instance& i) { return i.type == type; });
  return found == instances.end() ? nullptr : found->form.get();
}

Form& KeepInstance(std::type_index type, std::unique_ptr<Form> form) {
  Form& kept = *form;
  instances.push_back({type, std::move(form)});
  if (presenter) presenter->Loaded(kept);
  kept.Form_Load();
  return kept;
}

void RequireNotShown(const Form& form) {
  if (InModalLoop(form)) throw RuntimeError(5, form.name() + " is shown already.");
}

void ShowModal(Form& form) {
  if (!presenter) throw RuntimeError(5, "No forms toolkit is at hand to show " + form.name() + ".");
  RequireNotShown(form);
  const ModalScope scope(form);
  try {
    form.FocusFirst();
    presenter->RunModal(form);
  } catch (...) {
    form.SetShown(false);
    Unload(form);
    throw;
  }
}

void Hide(Form& form) { Close(form); }

void Unload(Form& form) {
  Close(form);
  const auto found = std::find_if(instances.begin(), instances.end(), [&](const Instance& i) { return i.form.get() == &form; });
  if (found == instances.end()) return;
  if (presenter) presenter->Unloaded(form);
  std::unique_ptr<Form> gone = std::move(found->form);
  instances.erase(found);
  if (InModalLoop(form)) unloaded.push_back(std::move(gone));
}

Form* TopForm() {
  const auto shown = std::find_if(modalForms.rbegin(), modalForms.rend(), [](const Form* form) { return form->IsShown(); });
  return shown == modalForms.rend() ? nullptr : *shown;
}

std::vector<std::string> LoadedForms() {
  std::vector<std::string> names;
  for (const Instance& instance : instances) names.push_back(instance.form->name());
  return names;
}

void UnloadAllForms() {
  while (!instances.empty()) Unload(*instances.back().form);
}

}  // namespace vardo
