// The forms of the process: each form class has one default instance, made on first use and gone when it is unloaded.
#pragma once

#include "forms/FormPresenter.h"

#include <memory>
#include <string>
#include <typeindex>
#include <vector>

namespace vardo {

// Keeps no ownership; returns the presenter before.
FormPresenter* SetFormPresenter(FormPresenter* presenter);

// The default instance of a form class; made, and its Form_Load run, when there is none.
template <class F>
F& DefaultForm();

// The default instance, or null when it is not loaded.
template <class F>
F* LoadedForm();

// Throws RuntimeError 5 when the form is being shown.
void RequireNotShown(const Form& form);
// Shows the form until it is hidden or unloaded. An unloaded form is destroyed before this returns: touch it no more. The same
// goes for one that could not be shown to the end. Throws RuntimeError 5 when it is shown already, and leaves it as it is then.
void ShowModal(Form& form);
void Hide(Form& form);
// Closes the form if it is shown and gives its instance up.
void Unload(Form& form);

// The shown form on top; null when none is shown.
Form* TopForm();
// Names of the instances that exist, shown or hidden, in the order they were loaded.
std::vector<std::string> LoadedForms();
// Unloads all that are loaded, the topmost first.
void UnloadAllForms();

// --- Behind the templates.
Form* FindInstance(std::type_index type);
Form& KeepInstance(std::type_index type, std::unique_ptr<Form> form);

template <class F>
F* LoadedForm() {
  return static_cast<F*>(FindInstance(typeid(F)));
}

template <class F>
F& DefaultForm() {
  if (F* loaded = LoadedForm<F>()) return *loaded;
  return static_cast<F&>(KeepInstance(typeid(F), std::make_unique<F>()));
}

}  // namespace vardo
