// The add-in at work in the in-memory drawing host: the two joined as they are when the drawing program loads the add-in.
#pragma once

#include "memoryhost/DrawingHost.h"
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

  // What choosing a menu item or a shortcut-menu action runs: a call of the add-in, as our shapes make it, or the add-on of that
  // name. Of one that is not installed the user is told, by the item's caption.
  void RunAddOn(std::string_view caption, std::string_view statement);

 private:
  // False when it is none of the add-in's calls.
  bool RunCall(std::string_view statement);
  void StartAddin();

  DrawingHost host_;
  std::unique_ptr<HostedAddin> addin_;
  bool withAddin_;
};

// What RUNADDON("...") would run; empty when the formula is no such call.
std::string StatementOfAction(std::string_view formula);

}  // namespace vardo
