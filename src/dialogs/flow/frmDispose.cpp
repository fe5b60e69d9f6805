#include "dialogs/flow/frmDispose.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "modules/flow/DisposeModule.h"

namespace vardo {

frmDispose::frmDispose() : ModuleDialog(kDisposeModule, "frmDispose", "Dispose", "Dispose_.htm") {
  Name(cboName, NamesOf<NameList::FlowModules>);
  Field(chkStatistics, "EntityStatistics");

  FormLayout(*this, 1500, 3000).Row(lblName, cboName).Row(chkStatistics).Buttons(buttons.All());
}

}  // namespace vardo
