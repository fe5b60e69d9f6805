#include "script/AddinSession.h"

#include "drawing/CellText.h"
#include "drawing/HostObjects.h"

#include <optional>

namespace vardo {

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
  addin_->SetupEventSink(host_.application());
  addin_->AddVardoMenu();
}

void AddinSession::ShowEditor(const SheetRef& shape, bool select) {
  if (select) {
    host_.ShowPage(shape.page);
    host_.Select({shape.shape});
  }
  host_.RunCommand("Edit Module", [&] { addin_->ShowEditor(host_.application(), MakeShape(host_, shape)); });
}

void AddinSession::Submodel(const SheetRef& shape) {
  host_.RunCommand("Edit Submodel", [&] { addin_->Submodel(host_.application(), MakeShape(host_, shape)); });
}

void AddinSession::CloseSubmodel(int pageId) {
  host_.RunCommand("Close Submodel",
                   [&] { addin_->CloseSubmodel(host_.application(), MakePage(host_, host_.serial(), pageId)); });
}

bool AddinSession::RunStatement(std::string_view statement) {
  constexpr std::string_view kCreate = R"(Set t=CreateObject("VardoBasic.Application"):t.)";
  if (statement.substr(0, kCreate.size()) != kCreate) return false;
  const std::string_view call = statement.substr(kCreate.size());
  const int page = host_.ActivePage().id();
  if (call == "CloseSubmodel Application,ActivePage") {
    CloseSubmodel(page);
    return true;
  }
  if (host_.selection().empty()) return false;
  const SheetRef selected{host_.serial(), page, host_.selection().front()};
  if (call == "ShowEditor Application,ActiveWindow.Selection.Item(1)")
    ShowEditor(selected, false);
  else if (call == "Submodel Application,ActiveWindow.Selection.Item(1)")
    Submodel(selected);
  else
    return false;
  return true;
}

std::string StatementOfAction(std::string_view formula) {
  constexpr std::string_view kCall = "RUNADDON(";
  if (formula.size() <= kCall.size() || formula.substr(0, kCall.size()) != kCall || formula.back() != ')') return "";
  const auto text = ParseConstant(formula.substr(kCall.size(), formula.size() - kCall.size() - 1));
  return text && text->unit == "STR" ? text->value : "";
}

}  // namespace vardo
