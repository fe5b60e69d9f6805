#include "script/FormJson.h"

namespace vardo {
namespace {

using Json = nlohmann::ordered_json;

const char* KindName(ControlKind kind) {
  switch (kind) {
    case ControlKind::Label:
      return "label";
    case ControlKind::Combo:
      return "combo";
    case ControlKind::Text:
      return "text";
    case ControlKind::Check:
      return "check";
    case ControlKind::Button:
      return "button";
    case ControlKind::List:
      return "list";
    case ControlKind::Frame:
      return "frame";
    case ControlKind::Line:
      return "line";
  }
  return "";
}

Json ControlToJson(const Control& control) {
  Json json = {{"name", control.name()}, {"kind", KindName(control.kind())}};
  if (!control.Caption().empty()) json["caption"] = control.Caption();
  if (const auto* text = dynamic_cast<const TextControl*>(&control)) json["text"] = text->Text();
  if (const auto* items = ItemsOf(control)) json["items"] = *items;
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) json["index"] = combo->ListIndex();
  if (const auto* list = dynamic_cast<const ListBox*>(&control)) json["index"] = list->ListIndex();
  if (const auto* check = dynamic_cast<const CheckBox*>(&control)) json["checked"] = check->Checked();
  json["visible"] = control.IsVisible();
  json["shown"] = control.Shown();
  return json;
}

}  // namespace

Json FormToJson(const Form& form) {
  const TwipsRect& place = form.Place();
  Json json = {{"name", form.name()},
               {"caption", form.Caption()},
               {"left", place.left},
               {"top", place.top},
               {"width", place.width},
               {"height", place.height},
               {"focus", form.Focus() ? Json(form.Focus()->name()) : Json()},
               {"controls", Json::array()}};
  for (const Control* control : form.Controls()) json["controls"].push_back(ControlToJson(*control));
  return json;
}

const std::vector<std::string>* ItemsOf(const Control& control) {
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) return &combo->Items();
  if (const auto* list = dynamic_cast<const ListBox*>(&control)) return &list->Items();
  return nullptr;
}

}  // namespace vardo
