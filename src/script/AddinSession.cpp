#include "script/AddinSession.h"

#include "addin/Global_Variables.h"
#include "drawing/CellText.h"
#include "drawing/HostObjects.h"

#include <optional>

namespace vardo {

AddinSession::~AddinSession() {
  visApp.reset();
  eventSink.reset();
}

void AddinSession::New() {
  host_.New();
  StartAddin();
}

void AddinSession::Open(const std::filesystem::path& file) {
  host_.Open(file);
  StartAddin();
}

void AddinSession::StartAddin() {
  if (!withAddin_) return;
  addin_.SetupEventSink(host_.application());
  addin_.AddVardoMenu();
}

void AddinSession::ShowEditor(const SheetRef& shape, bool select) {
  if (select) {
    host_.ShowPage(shape.page);
    host_.Select({shape.shape});
  }
  host_.RunCommand("Edit Module", [&] { addin_.ShowEditor(host_.application(), MakeShape(host_, shape)); });
}

bool AddinSession::RunStatement(std::string_view statement) {
  constexpr std::string_view kShowEditor = R"(Set t=CreateObject("VardoBasic.Application"):t.ShowEditor Application,ActiveWindow.Selection.Item(1))";
  if (statement != kShowEditor || host_.selection().empty()) return false;
  ShowEditor(host_.RefTo(host_.ActivePage(), host_.selection().front()), false);
  return true;
}

std::string StatementOfAction(std::string_view formula) {
  constexpr std::string_view kCall = "RUNADDON(";
  if (formula.size() <= kCall.size() || formula.substr(0, kCall.size()) != kCall || formula.back() != ')') return "";
  const auto text = ParseConstant(formula.substr(kCall.size(), formula.size() - kCall.size() - 1));
  return text && text->unit == "STR" ? text->value : "";
}

}  // namespace vardo
