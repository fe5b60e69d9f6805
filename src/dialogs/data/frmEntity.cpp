#include "dialogs/data/frmEntity.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmEntity::frmEntity() : ModuleDialog("frmEntity", "Entity", "Entity_.htm") {
  Name(cboEntityType, "EntityName", NamesOf<NameList::EntityTypes>);
  Field(cboInitialPicture, "EntityInitialPicture")
      .Default("Picture.Report")
      .Items(kPictures)
      .Offers(NamesOf<NameList::Pictures>)
      .Check(kSymbolName)
      .WhenEmpty();
  Field(txtHoldingCosts_Hour, "EntityHoldingCost_Hour").Default("0.0").Check(kReal).WhenEmpty();
  Field(txtValueAdded, "EntityValueAdded").Default("0.0").Check(kReal).WhenEmpty();
  Field(txtNonValueAdded, "EntityNonValueAdded").Default("0.0").Check(kReal).WhenEmpty();
  Field(txtWaiting, "EntityWaiting").Default("0.0").Check(kReal).WhenEmpty();
  Field(txtTransfer, "EntityTransfer").Default("0.0").Check(kReal).WhenEmpty();
  Field(txtOther, "EntityOther").Default("0.0").Check(kReal).WhenEmpty();
  Field(chkReportStatistics, "ReportStatistics").Default("Yes");

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
