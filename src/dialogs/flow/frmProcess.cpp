#include "dialogs/flow/frmProcess.h"

#include "addin/host/HostConstants.h"
#include "dialogs/ItemLists.h"
#include "dialogs/flow/ProcessRows.h"
#include "dialogs/flow/frmProcess_Resource.h"
#include "events/SubmodelPages.h"
#include "forms/FormLayout.h"
#include "modules/flow/ProcessModule.h"
#include "validate/CheckDataType.h"

#include <algorithm>
#include <iterator>

namespace vardo {
namespace {

constexpr std::string_view kStandard = "Standard";

constexpr std::string_view kDelay = "Delay";
constexpr std::string_view kDelayRelease = "Delay Release";
constexpr CodeRow kActions[] = {{"D", kDelay}, {"SD", "Seize Delay"}, {"SDR", "Seize Delay Release"}, {"DR", kDelayRelease}};

constexpr CodeRow kPriorities[] = {{"1", "High(1)"}, {"2", "Medium(2)"}, {"3", "Low(3)"}};

constexpr CodeRow kAllocations[] = {
    {"VA", "Value Added"}, {"NVA", "Non-Value Added"}, {"Tran", "Transfer"}, {"Wait", "Wait"}, {"Other", "Other"}};

// The cell that chooses between the shape's two shortcut menus: 1 standard, 0 submodel.
constexpr std::string_view kMenuIdRow = "menuid";
constexpr std::string_view kMenuIdCell = "User.menuid";

// A row that is not for a resource is for a set.
std::string RowType(std::string_view stored) { return std::string(stored == kResourceRow ? kResourceRow : kSetRow); }

constexpr const RowGroup& kRows = kProcessModule.rows;
constexpr size_t kType = kRows.ColumnOf("Process_RType"), kResourceName = kRows.ColumnOf("Process_RResourceName"),
                 kSetName = kRows.ColumnOf("Process_RSetName"), kQuantity = kRows.ColumnOf("Process_RQuantity"),
                 kRule = kRows.ColumnOf("Process_RSelectionRule"), kSaveAttribute = kRows.ColumnOf("Process_RSaveAttribute"),
                 kSetIndex = kRows.ColumnOf("Process_RInputAttribute");

std::vector<size_t> LineColumns(const StringList& row) {
  if (row[kType] == kResourceRow) return {kType, kResourceName, kQuantity};
  return {kType, kSetName, kQuantity, kRule, row[kRule] == kSpecificMember.code ? kSetIndex : kSaveAttribute};
}

}  // namespace

std::string RuleCodeToText(std::string_view code) { return CodeToText(kSelectionRules, code); }

std::string RuleTextToCode(std::string_view text) { return TextToCode(kSelectionRules, text); }

frmProcess::frmProcess() : ModuleDialog(kProcessModule, "frmProcess", "Process", "Process_.htm") {
  Name(cboName, NamesOf<NameList::FlowModules>);
  Field(cboType, "ProcessType").Items({kStandard, "Submodel"});
  Field(cboAction, "ProcessAction").Codes(kActions, UnknownCode::ShowsNothing);
  Field(cboPriority, "ProcessPriority").Codes(kPriorities, UnknownCode::ShowsItself).Check(kExpression).WhenEmpty("Medium(2)");
  Field(cboDelayType, "ProcessDelayType").Items({"Constant", "Normal", "Triangular", "Uniform", "Expression"});
  Field(cboUnits, "ProcessUnits").Items(kTimeUnits);
  Field(cboAllocation, "ProcessAllocation").Codes(kAllocations, UnknownCode::ShowsLastText);
  Field(txtMin, "ProcessMin").Check(kExpression).WhenEmpty();
  Field(txtValue, "ProcessValue").Check(kExpression).WhenEmpty();
  Field(txtMax, "ProcessMax").Check(kExpression).WhenEmpty();
  Field(txtStdDev, "ProcessStdDev").Check(kExpression).WhenEmpty();
  Field(cboExpression, "ProcessExpression").Items(kExpressionTemplates).Check(kExpression).WhenEmpty();
  Field(chkReportStatistics, "ReportStatistics");
  CheckInOrder({&cboName, &txtMin, &txtValue, &txtMax, &txtStdDev, &cboExpression, &cboPriority});
  Rows(rows, [](std::string_view line) { DefaultForm<frmProcess_Resource>().Process_Resource(line); })
      .LineShows(LineColumns)
      .ColumnShows(kType, RowType)
      .ColumnShows(kRule, RuleCodeToText, RuleTextToCode);

  cboType.Click = [this] { cboType_Click(); };
  cboAction.Click = [this] { cboAction_Click(); };
  cboDelayType.Click = [this] { cboDelayType_Click(); };

  FormLayout(*this, 2100, 3400)
      .Row(lblName, cboName)
      .Row(lblType, cboType)
      .BeginChoice()
      .BeginFrame(Frame1)
      .Row(lblAction, cboAction)
      .Separator(DelayLine1)
      .Row(lblDelayType, cboDelayType)
      .Row(lblUnits, cboUnits)
      .Row(lblAllocation, cboAllocation)
      .Separator(DelayLine2)
      .Row(lblValue, txtValue)
      .InPlace(lblExpression, cboExpression)
      .Row(lblMin, txtMin)
      .InPlace(lblStdDev, txtStdDev)
      .Row(lblMax, txtMax)
      .Row(lblPriority, cboPriority)
      .List(rows.label, rows.list, rows.Buttons(), 5)
      .EndFrame()
      .Or()
      .Separator(SubmodelLine)
      .BeginFrame(EditSubmodelFrame)
      .Text(EditSubmodelLabel1, 1)
      .Separator(EditSubmodelLine1)
      .Text(EditSubmodelLabel2, 3)
      .EndFrame()
      .BeginFrame(CloseSubmodelFrame)
      .Text(CloseSubmodelLabel1, 1)
      .Separator(CloseSubmodelLine1)
      .Text(CloseSubmodelLabel2, 3)
      .EndFrame()
      .EndChoice()
      .Row(chkReportStatistics)
      .Buttons(buttons.All());
}

void frmProcess::AfterLoad() {
  DefaultForm<frmProcess_Resource>().FillLists();
  cboType_Click();
}

bool frmProcess::IsStandard() const { return cboType.Text() == kStandard; }

void frmProcess::cboType_Click() {
  Show({&Frame1}, IsStandard());
  Show({&SubmodelLine, &EditSubmodelFrame, &CloseSubmodelFrame}, !IsStandard());
  if (!IsStandard()) return;
  cboAction_Click();
  cboDelayType_Click();
}

void frmProcess::cboAction_Click() {
  const std::string action = cboAction.Text();
  Show(rows.Controls(), action != kDelay);
  Show({&lblPriority, &cboPriority}, action != kDelay && action != kDelayRelease);
}

void frmProcess::cboDelayType_Click() {
  const std::string type = cboDelayType.Text();
  struct Boxes {
    std::string_view type;
    bool value, range, deviation, expression;
    const char* caption;  // null leaves it as it is
  };
  static constexpr Boxes kBoxes[] = {
      {"Constant", true, false, false, false, "Value:"},
      {"Normal", true, false, true, false, "Value (Mean):"},
      {"Triangular", true, true, false, false, "Value (Most Likely):"},
      {"Uniform", false, true, false, false, nullptr},
      {"Expression", false, false, false, true, nullptr},
  };
  // Of a type that is none of these nothing is known: no box is shown.
  const auto found = std::find_if(std::begin(kBoxes), std::end(kBoxes), [&](const Boxes& boxes) { return boxes.type == type; });
  const Boxes boxes = found == std::end(kBoxes) ? Boxes{} : *found;
  Show({&lblValue, &txtValue}, boxes.value);
  Show({&lblMin, &txtMin, &lblMax, &txtMax}, boxes.range);
  Show({&lblStdDev, &txtStdDev}, boxes.deviation);
  Show({&lblExpression, &cboExpression}, boxes.expression);
  if (boxes.caption) lblValue.SetCaption(boxes.caption);
}

std::optional<std::string> frmProcess::WhyNotNamed(const IVShapePtr& shape) {
  return IsRenamed() ? WhySubmodelPageStays(shape, NewName()) : std::nullopt;
}

void frmProcess::WriteBeforeName(const IVShapePtr& shape) {
  if (!shape->CellExists(kMenuIdCell, kExistsAnywhere)) shape->AddNamedRow(kSectionUser, kMenuIdRow, kTagDefault);
  shape->Cells(kMenuIdCell)->SetResult(IsStandard() ? 1 : 0);
  if (IsRenamed()) RenameSubmodelPage(shape, NewName());
}

void frmProcess::UnloadRowDialog() { UnloadIfLoaded<frmProcess_Resource>(); }

}  // namespace vardo
