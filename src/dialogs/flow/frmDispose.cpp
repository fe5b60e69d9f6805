#include "dialogs/flow/frmDispose.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"

namespace vardo {

frmDispose::frmDispose() : ModuleDialog("frmDispose", "Dispose", "Dispose_.htm") {
  Name(cboName, "DisposeName", NamesOf<NameList::FlowModules>);
  Field(chkStatistics, "EntityStatistics").Default("Yes");

  FormLayout(*this, 1500, 3000).Row(lblName, cboName).Row(chkStatistics).Buttons(buttons.All());
}

}  // namespace vardo
