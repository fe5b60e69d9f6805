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

Json ControlToJson(const ControlSeen& control) {
  Json json = {{"name", control.name}, {"kind", KindName(control.kind)}};
  if (!control.caption.empty()) json["caption"] = control.caption;
  if (control.text) json["text"] = *control.text;
  if (control.items) json["items"] = *control.items;
  if (control.index) json["index"] = *control.index;
  if (control.checked) json["checked"] = *control.checked;
  json["visible"] = control.visible;
  json["shown"] = control.shown;
  return json;
}

}  // namespace

Json FormToJson(const FormSeen& form) {
  Json json = {{"name", form.name},
               {"caption", form.caption},
               {"left", form.place.left},
               {"top", form.place.top},
               {"width", form.place.width},
               {"height", form.place.height},
               {"focus", form.focus.empty() ? Json() : Json(form.focus)},
               {"controls", Json::array()}};
  for (const ControlSeen& control : form.controls) json["controls"].push_back(ControlToJson(control));
  return json;
}

}  // namespace vardo
