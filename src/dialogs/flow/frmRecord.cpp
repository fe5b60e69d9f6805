#include "dialogs/flow/frmRecord.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "modules/flow/RecordModule.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

constexpr std::string_view kCount = "Count";
constexpr std::string_view kEntityStatistics = "Entity Statistics";
constexpr std::string_view kTimeInterval = "Time Interval";
constexpr std::string_view kTimeBetween = "Time Between";
constexpr std::string_view kOfExpression = "Expression";
constexpr CodeRow kTypes[] = {
    {"Count", kCount},         {"Entity", kEntityStatistics}, {"Interval", kTimeInterval},
    {"Between", kTimeBetween}, {"Expression", kOfExpression},
};

void RecordNames(ItemList& items) { AddNames(items, kRecordModule.kind, kRecordModule.Name().field); }

}  // namespace

frmRecord::frmRecord() : ModuleDialog(kRecordModule, "frmRecord", "Record", "Record_.htm") {
  Name(cboName, RecordNames);
  Field(cboType, "RecordType").Codes(kTypes, UnknownCode::ShowsNothing);
  Field(cboAttributeName, "RecordAttributeName").Offers(UserAttributes).Check(kSymbolName).WhenEmpty();
  Field(cboSetIndex, "RecordSetIndex").Items(kAssignableAttributes).Offers(UserAttributes).Check(kExpression).WhenEmpty();
  Field(txtValue, "RecordValue").Check(kExpression).WhenEmpty();
  Field(chkRecordIntoSet, "RecordInSet");
  Field(cboCounterSetName, "RecordCounterSetName").Offers(NamesOf<NameList::Sets>).Check(kSymbolName).WhenEmpty();
  Field(cboTallySetName, "RecordTallySetName").Offers(NamesOf<NameList::Sets>).Check(kSymbolName).WhenEmpty();
  const auto moduleName = [this] { return cboName.Text(); };
  Field(cboCounterName, "RecordCounterName").Offers(NamesOf<NameList::Counters>).Check(kSymbolName).WhenEmpty(moduleName);
  Field(cboTallyName, "RecordTallyName").Offers(NamesOf<NameList::Tallies>).Check(kSymbolName).WhenEmpty(moduleName);

  CheckInOrder({&cboName, &cboAttributeName, &txtValue, &cboSetIndex, &cboCounterSetName, &cboTallySetName, &cboCounterName,
                &cboTallyName});
  WriteInOrder({&cboName, &txtValue, &cboAttributeName, &chkRecordIntoSet, &cboType, &cboCounterSetName, &cboTallySetName,
                &cboSetIndex, &cboCounterName, &cboTallyName});

  cboType.Click = chkRecordIntoSet.Click = [this] { cboType_Click(); };

  FormLayout(*this, 2100, 3000)
      .Row(lblName, cboName)
      .Row(lblType, cboType)
      .Row(lblValue, txtValue)
      .InPlace(lblAttributeName, cboAttributeName)
      .Row(chkRecordIntoSet)
      .Row(lblCounterName, cboCounterName)
      .InPlace(lblTallyName, cboTallyName)
      .InPlace(lblCounterSetName, cboCounterSetName)
      .InPlace(lblTallySetName, cboTallySetName)
      .Row(lblSetIndex, cboSetIndex)
      .Buttons(buttons.All());
}

// A counter or tally without a name of its own bears the module's.
void frmRecord::AfterLoad() {
  for (ComboBox* box : {&cboCounterName, &cboTallyName})
    if (box->Text().empty()) box->SetText(cboName.Text());
  cboType_Click();
}

void frmRecord::cboType_Click() {
  const std::string type = cboType.Text();
  const bool counts = type == kCount;
  const bool tallies = type == kOfExpression || type == kTimeInterval || type == kTimeBetween;
  const bool set = chkRecordIntoSet.Checked();
  Show({&lblValue, &txtValue}, counts || type == kOfExpression);
  Show({&lblAttributeName, &cboAttributeName}, type == kTimeInterval);
  Show({&chkRecordIntoSet}, type != kEntityStatistics);
  Show({&lblCounterSetName, &cboCounterSetName}, counts && set);
  Show({&lblTallySetName, &cboTallySetName}, tallies && set);
  Show({&lblTallyName, &cboTallyName}, tallies && !set);
  Show({&lblCounterName, &cboCounterName}, counts && !set);
  Show({&lblSetIndex, &cboSetIndex}, set && type != kEntityStatistics);
}

}  // namespace vardo
