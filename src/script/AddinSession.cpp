#include "script/AddinSession.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "document/CellText.h"
#include "memoryhost/HostObjects.h"
#include "platform/Platform.h"

#include <optional>

namespace vardo {
namespace {

// A caption as it is read, without the marks of its access key.
std::string WithoutAccessKey(std::string_view caption) {
  std::string plain;
  for (size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&') ++i;
    if (i < caption.size()) plain += caption[i];
  }
  return plain;
}

// A line of the macro language names the object it creates in quotes.
std::string_view CompanionOf(std::string_view statement) {
  const size_t opening = statement.find('"'), closing = statement.find('"', opening + 1);
  return closing == std::string_view::npos ? statement : statement.substr(opening + 1, closing - opening - 1);
}

std::string NotInstalled(std::string_view caption, std::string_view statement) {
  return "\"" + InWords(WithoutAccessKey(caption)) + "\" needs its companion " + InWords(CompanionOf(statement)) +
         ", which is not installed: install it and choose the item again.";
}

}  // namespace

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

void AddinSession::RunAddOn(std::string_view caption, std::string_view statement) {
  if (!RunCall(statement) && !ThePlatform().RunAddOn(statement))
    ThePlatform().ShowMessage(NotInstalled(caption, statement), kProductTitle, kStyleExclamation);
}

bool AddinSession::RunCall(std::string_view statement) {
  constexpr std::string_view kCreate = R"(Set t=CreateObject("VardoBasic.Application"):t.)";
  if (!statement.starts_with(kCreate)) return false;
  const std::string_view call = statement.substr(kCreate.size());
  const auto selected = [this] {
    if (host_.selection().empty()) throw HostError(kHostBadIndex, "No shape is selected.");
    return SheetRef{host_.serial(), host_.ActivePage().id(), host_.selection().front()};
  };
  if (call == "CloseSubmodel Application,ActivePage")
    CloseSubmodel(host_.ActivePage().id());
  else if (call == "ShowEditor Application,ActiveWindow.Selection.Item(1)")
    ShowEditor(selected(), false);
  else if (call == "Submodel Application,ActiveWindow.Selection.Item(1)")
    Submodel(selected());
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
