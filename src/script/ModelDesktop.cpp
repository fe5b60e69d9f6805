#include "script/ModelDesktop.h"

#include "forms/Forms.h"

namespace vardo {
namespace {

Control& Named(const std::string& control) { return *TopForm()->Find(control); }

template <class C>
C& Named(const std::string& control) {
  return dynamic_cast<C&>(Named(control));
}

ControlSeen See(const Control& control) {
  ControlSeen seen{control.name(), control.kind(), control.Caption(), {}, {}, {}, {}, control.IsVisible(), control.Shown()};
  if (const auto* text = dynamic_cast<const TextControl*>(&control)) seen.text = text->Text();
  if (const auto* check = dynamic_cast<const CheckBox*>(&control)) seen.checked = check->Checked();
  const auto seeItems = [&seen](const auto* list) {
    if (!list) return;
    seen.items = list->Items();
    seen.index = list->ListIndex();
  };
  seeItems(dynamic_cast<const ComboBox*>(&control));
  seeItems(dynamic_cast<const ListBox*>(&control));
  return seen;
}

}  // namespace

// Messages and help are only told of; the screen is the desktop's own.
class ModelDesktop::OwnPlatform : public ForwardingPlatform {
 public:
  OwnPlatform(ModelDesktop& desktop, Platform& machine) : ForwardingPlatform(machine), desktop_(desktop) {}
  void ShowMessage(std::string_view text, std::string_view title, int style) override {
    desktop_.listener_->MessageShown(std::string(text), std::string(title), style);
  }
  void ShowHelp(std::string_view file, std::string_view topic) override {
    desktop_.listener_->HelpShown(std::string(file), std::string(topic));
  }
  TwipsSize ScreenSize() override { return desktop_.screen_; }

 private:
  ModelDesktop& desktop_;
};

// Tells of forms that come and go; the toolkit does the rest.
class ModelDesktop::OwnPresenter : public FormPresenter {
 public:
  OwnPresenter(ModelDesktop& desktop, FormPresenter& toolkit) : desktop_(desktop), toolkit_(toolkit) {}
  void Loaded(Form& form) override { toolkit_.Loaded(form); }
  void Unloaded(Form& form) override { toolkit_.Unloaded(form); }
  void RunModal(Form& form) override {
    desktop_.listener_->FormShown(form.name(), form.Caption());
    toolkit_.RunModal(form);
  }
  void Closed(Form& form) override {
    desktop_.listener_->FormClosed(form.name());
    toolkit_.Closed(form);
  }

 private:
  ModelDesktop& desktop_;
  FormPresenter& toolkit_;
};

ModelDesktop::ModelDesktop(Platform& machine, FormPresenter& presenter, FormDriver& driver)
    : platform_(std::make_unique<OwnPlatform>(*this, machine)),
      presenter_(std::make_unique<OwnPresenter>(*this, presenter)),
      driver_(driver) {
  SetPlatform(platform_.get());
  SetFormPresenter(presenter_.get());
}

ModelDesktop::~ModelDesktop() {
  UnloadAllForms();
  SetFormPresenter(nullptr);
  SetPlatform(nullptr);
}

std::vector<std::string> ModelDesktop::LoadedForms() { return vardo::LoadedForms(); }

std::string ModelDesktop::TopForm() {
  const Form* form = vardo::TopForm();
  return form ? form->name() : "";
}

FormSeen ModelDesktop::SeeForm() {
  const Form& form = *vardo::TopForm();
  FormSeen seen{form.name(), form.Caption(), form.Place(), form.Focus() ? form.Focus()->name() : "", {}};
  for (const Control* control : form.Controls()) seen.controls.push_back(See(*control));
  return seen;
}

std::optional<ControlSeen> ModelDesktop::SeeControl(const std::string& name) {
  const Control* control = vardo::TopForm()->Find(name);
  return control ? std::optional(See(*control)) : std::nullopt;
}

void ModelDesktop::Focus(const std::string& control) { driver_.Focus(Named(control)); }
void ModelDesktop::Type(const std::string& control, const std::string& text) { driver_.Type(Named<TextControl>(control), text); }
void ModelDesktop::Pick(const std::string& control, int index) { driver_.Pick(Named(control), index); }
void ModelDesktop::Check(const std::string& control, bool checked) { driver_.Check(Named<CheckBox>(control), checked); }
void ModelDesktop::Click(const std::string& control) { driver_.Click(Named(control)); }
void ModelDesktop::DblClick(const std::string& control) { driver_.DblClick(Named(control)); }
void ModelDesktop::Key(const std::string& key) { driver_.Key(*vardo::TopForm(), key); }
void ModelDesktop::Screenshot(const std::string& file) { driver_.Screenshot(*vardo::TopForm(), file); }

}  // namespace vardo
