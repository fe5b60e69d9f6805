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

}  // namespace

void OpenModuleDialog(const IVShapePtr& shape) {
  if (!shape->CellExists(kClassNameCell, kExistsAnywhere)) return;
  const std::string kind = UnquoteFormula(shape->Cells(kClassNameCell)->Formula());
  for (const auto& dialog : kDialogs)
    if (dialog.kind == kind) return dialog.open();
}

}  // namespace vardo
