#include "addin/Vardo_Visio_Link_Module.h"

#include "addin/host/HostConstants.h"
#include "addin/host/IVShape.h"
#include "dialogs/data/frmEntity.h"
#include "dialogs/data/frmQueue.h"
#include "dialogs/data/frmResource.h"
#include "dialogs/data/frmSchedule.h"
#include "dialogs/data/frmSet.h"
#include "dialogs/data/frmVariable.h"
#include "dialogs/flow/frmAssign.h"
#include "dialogs/flow/frmBatch.h"
#include "dialogs/flow/frmCreate.h"
#include "dialogs/flow/frmDecide.h"
#include "dialogs/flow/frmDispose.h"
#include "dialogs/flow/frmProcess.h"
#include "dialogs/flow/frmRecord.h"
#include "dialogs/flow/frmSeparate.h"
#include "forms/Forms.h"
#include "props/ShapeKinds.h"
#include "props/StringFunctions.h"

#include <string_view>

namespace vardo {
namespace {

constexpr struct {
  std::string_view kind;
  void (*open)();
} kDialogs[] = {
    {"Create", [] { DefaultForm<frmCreate>().Create(); }},
    {"Process", [] { DefaultForm<frmProcess>().Process(); }},
    {"Decide", [] { DefaultForm<frmDecide>().Decide(); }},
    {"Assign", [] { DefaultForm<frmAssign>().Assign(); }},
    {"Batch", [] { DefaultForm<frmBatch>().Batch(); }},
    {"Separate", [] { DefaultForm<frmSeparate>().Separate(); }},
    {"Record", [] { DefaultForm<frmRecord>().Record(); }},
    {"Dispose", [] { DefaultForm<frmDispose>().Dispose(); }},
    {"Entity", [] { DefaultForm<frmEntity>().Entity(); }},
    {"Queue", [] { DefaultForm<frmQueue>().Queue(); }},
    {"Resource", [] { DefaultForm<frmResource>().Resource(); }},
    {"Schedule", [] { DefaultForm<frmSchedule>().Schedule(); }},
    {"Set", [] { DefaultForm<frmSet>().SetSub(); }},
    {"Variable", [] { DefaultForm<frmVariable>().Variable(); }},
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
