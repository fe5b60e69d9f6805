#include "dialogs/data/frmEntity.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "modules/data/EntityModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmEntity::frmEntity() : ModuleDialog(kEntityModule, "frmEntity", "Entity", "Entity_.htm") {
  Name(cboEntityType, NamesOf<NameList::EntityTypes>);
  Field(cboInitialPicture, "EntityInitialPicture")
      .Items(kPictures)
      .Offers(NamesOf<NameList::Pictures>)
      .Check(kSymbolName)
      .WhenEmpty();
  Field(txtHoldingCosts_Hour, "EntityHoldingCost_Hour").Check(kReal).WhenEmpty();
  Field(txtValueAdded, "EntityValueAdded").Check(kReal).WhenEmpty();
  Field(txtNonValueAdded, "EntityNonValueAdded").Check(kReal).WhenEmpty();
  Field(txtWaiting, "EntityWaiting").Check(kReal).WhenEmpty();
  Field(txtTransfer, "EntityTransfer").Check(kReal).WhenEmpty();
  Field(txtOther, "EntityOther").Check(kReal).WhenEmpty();
  Field(chkReportStatistics, "ReportStatistics");

  FormLayout(*this, 2100, 3000)
      .Row(lblEntityType, cboEntityType)
      .Row(lblInitialPicture, cboInitialPicture)
      .Row(lblHoldingCosts_Hour, txtHoldingCosts_Hour)
      .BeginFrame(Frame1)
      .Row(lblValueAdded, txtValueAdded)
      .Row(lblNonValueAdded, txtNonValueAdded)
      .Row(lblWaiting, txtWaiting)
      .Row(lblTransfer, txtTransfer)
      .Row(lblOther, txtOther)
      .EndFrame()
      .Row(chkReportStatistics)
      .Buttons(buttons.All());
}

}  // namespace vardo
