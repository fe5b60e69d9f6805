#include "addin/Vardo_Visio_Link_Module.h"

#include "addin/host/HostConstants.h"
#include "addin/host/IVShape.h"
#include "dialogs/flow/frmCreate.h"
#include "forms/Forms.h"
#include "props/StringFunctions.h"

#include <string_view>

namespace vardo {
namespace {

constexpr std::string_view kClassNameCell = "User.ClassName";

constexpr struct {
  std::string_view kind;
  void (*open)();
} kDialogs[] = {
    {"Create", [] { DefaultForm<frmCreate>().Create(); }},
};

using OpenDialog = void (*)();

// Null when there is none.
OpenDialog DialogFor(std::string_view kind) {
  for (const auto& dialog : kDialogs)
    if (dialog.kind == kind) return dialog.open;
  return nullptr;
}

}  // namespace

void OpenModuleDialog(const IVShapePtr& shape) {
  if (!shape->CellExists(kClassNameCell, kExistsAnywhere)) return;
  if (const OpenDialog open = DialogFor(UnquoteFormula(shape->Cells(kClassNameCell)->Formula()))) open();
}

bool HasModuleDialog(std::string_view kind) { return DialogFor(kind) != nullptr; }

}  // namespace vardo
