#include "formula/CellNames.h"

#include "addin/host/HostConstants.h"

#include <gtest/gtest.h>

#include <set>

namespace vardo {
namespace {

TEST(CellNames, TakesNamesApart) {
  const struct {
    std::string_view name, section, row, cell;
    bool byNumber;
    std::string_view why;
  } cases[] = {
      {"Width", "", "", "Width", false, "a cell of the object section"},
      {"eventdblclick", "", "", "EventDblClick", false, "known names get their spelling"},
      {"LineWeight", "", "", "LineWeight", false, "others are taken as they are"},
      {"Prop.CreateName", "Property", "CreateName", "Value", false, "a row alone means its value"},
      {"prop.CreateName.LABEL", "Property", "CreateName", "Label", false, "letter case counts in neither section nor column"},
      {"User.menuid", "User", "menuid", "Value", false, "user row"},
      {"User.menuid.Prompt", "User", "menuid", "Prompt", false, "user row"},
      {"Actions.Row_1", "Actions", "Row_1", "Action", false, "an action's short name"},
      {"Connections.X2", "Connection", "2", "X", true, "a point by its number, from 1"},
      {"Connections.AutoGen12", "Connection", "12", "AutoGen", true, "more digits"},
      {"Connections.U04R.X", "Connection", "U04R", "X", false, "a named point"},
      {"Connections.U04R", "Connection", "U04R", "X", false, "a named point's short name"},
      {"Controls.Row_1.Y", "Control", "Row_1", "Y", false, "a control handle"},
  };
  for (const auto& c : cases) {
    const auto name = ParseCellName(c.name);
    ASSERT_TRUE(name) << c.name;
    EXPECT_EQ(name->section ? name->section->element : "", c.section) << c.name << ": " << c.why;
    EXPECT_EQ(c.byNumber ? std::to_string(name->position) : std::string(name->row.text()), c.row) << c.name;
    EXPECT_EQ(name->cell.text(), c.cell) << c.name;
    EXPECT_EQ(name->position != 0, c.byNumber) << c.name;
  }
  for (const std::string_view name : {"", "Prop.", "Nowhere.X", "Prop..Label", "Prop.Name."})
    EXPECT_FALSE(ParseCellName(name)) << name;
}

TEST(CellNames, SectionsAreFoundByNumberAndElement) {
  std::set<short> numbers;
  for (const SectionInfo& section : AllSections()) {
    EXPECT_TRUE(numbers.insert(section.section).second) << section.element;
    EXPECT_EQ(FindSection(section.section), &section);
    EXPECT_EQ(FindSectionByElement(section.element), &section);
    std::set<short> columns;
    for (const ColumnInfo& column : section.columns)
      EXPECT_TRUE(columns.insert(column.column).second) << section.element << "." << column.name;
  }
  EXPECT_EQ(FindSection(10), nullptr);
  EXPECT_EQ(FindSectionByElement("Geometry"), nullptr);
}

TEST(CellNames, ObjectCellsAreFoundByNumbersAndName) {
  const struct {
    short row, column;
    std::string_view name;
  } cases[] = {
      {kRowXFormOut, 0, "PinX"}, {kRowXForm1D, 3, "EndY"}, {kRowEvent, 2, "EventDblClick"}, {kRowMisc, 0, "NoObjHandles"}};
  for (const auto& c : cases) {
    ASSERT_TRUE(FindObjectCell(c.row, c.column)) << c.name;
    EXPECT_EQ(FindObjectCell(c.row, c.column)->name, c.name);
    EXPECT_EQ(FindObjectCell(c.name), FindObjectCell(c.row, c.column));
  }
  EXPECT_EQ(FindObjectCell(kRowXFormOut, 99), nullptr);
  EXPECT_EQ(FindObjectCell("NoSuchCell"), nullptr);
  EXPECT_TRUE(IsOneDimensionalRow(kRowXForm1D));
  EXPECT_FALSE(IsOneDimensionalRow(kRowXFormOut));
}

}  // namespace
}  // namespace vardo
