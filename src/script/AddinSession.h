// The add-in at work in the in-memory drawing host: the two joined as they are when the drawing program loads the add-in.
#pragma once

#include "drawing/DrawingHost.h"
#include "script/HostedAddin.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace vardo {

class AddinSession {
 public:
  // withAddin: opening or creating a drawing starts the add-in, as a drawing that uses it does.
  explicit AddinSession(bool withAddin, std::unique_ptr<HostedAddin> addin = MakeBuiltInAddin())
      : addin_(std::move(addin)), withAddin_(withAddin) {}

  DrawingHost& host() { return host_; }
  HostedAddin& addin() { return *addin_; }

  void New();
  void Open(const std::filesystem::path& file);

  // Opens the module dialog of a shape, selected first when asked; all it writes is one undo step.
  void ShowEditor(const SheetRef& shape, bool select);
  // Show a Process's submodel page, made when there is none; and the page that a submodel's Process stands on. One undo step
  // each.
  void Submodel(const SheetRef& shape);
  void CloseSubmodel(int pageId);

  // Runs what RUNADDON is given in a formula or menu item. False when it is none of the statements that our shapes use, so that
  // it names a program of somebody else's.
  bool RunStatement(std::string_view statement);

 private:
  void StartAddin();

  DrawingHost host_;
  std::unique_ptr<HostedAddin> addin_;
  bool withAddin_;
};

// What RUNADDON("...") would run; empty when the formula is no such call.
std::string StatementOfAction(std::string_view formula);

}  // namespace vardo
