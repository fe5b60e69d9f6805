// The schemas of the module kinds against what the dialogs write.
#include "DialogTables.h"
#include "modules/ModuleKinds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace vardo::test {
namespace {

using testing::Contains;
using testing::ElementsAreArray;
using testing::IsEmpty;

const ModuleSchema& SchemaOf(const DialogTable& table) { return *FindModule(table.kind); }

TEST(ModuleSchema, EveryKindHasItsDialog) {
  Texts kinds;
  for (const DialogTable& table : ModuleTables()) kinds.push_back(table.kind);
  EXPECT_THAT(kinds, testing::UnorderedElementsAreArray(kModuleKinds));
}

TEST(ModuleSchema, EveryCellThatADialogWritesIsAPropertyInThatSpelling) {
  for (const DialogTable& table : ModuleTables()) {
    Texts fields;
    for (const ModuleProperty& property : SchemaOf(table).properties) fields.emplace_back(property.field);
    for (const WriteRow& write : table.writes) {
      const bool isProperty = !write.property.empty() && write.property.find('.') == std::string::npos;
      if (isProperty) {
        EXPECT_THAT(fields, Contains(write.property)) << table.form;
      }
    }
  }
}

// What the columns get without rows, where the dialog writes it with them.
TEST(ModuleSchema, RowGroupsAreWhatTheDialogsWrite) {
  for (const DialogTable& table : ModuleTables()) {
    SCOPED_TRACE(table.form);
    const ModuleSchema& module = SchemaOf(table);
    Texts columns, noRows;
    for (const RowColumn& column : module.rows.columns) {
      columns.emplace_back(column.field);
      noRows.emplace_back(column.unused.value_or(module.Property(column.field).defaultValue));
    }
    if (table.rows.empty()) {
      EXPECT_THAT(columns, IsEmpty());
      EXPECT_EQ(module.rows.count, "");
    }
    for (const test::RowGroup& group : table.rows) {
      EXPECT_EQ(module.rows.count, group.count);
      if (group.noRows.empty()) continue;
      EXPECT_THAT(columns, ElementsAreArray(group.columns));
      EXPECT_THAT(noRows, ElementsAreArray(group.noRows));
    }
  }
}

// Of a set's dialog the tables tell among the other cells what it writes without members.
TEST(ModuleSchema, ASetsColumnsAreWrittenBehindItsType) {
  const DialogTable& table = TableOf("frmSet");
  Texts written, expected;
  for (const WriteRow& write : table.writes)
    if (write.control.empty()) written.push_back(write.property + "=" + write.text);
  for (const RowColumn& column : kSetModule.rows.columns)
    expected.push_back(std::string(column.field) + "=" + std::string(kSetModule.Property(column.field).defaultValue));
  expected.push_back(std::string(kSetModule.rows.count) + "=0");
  EXPECT_THAT(written, ElementsAreArray(expected));
}

TEST(ModuleSchema, WhatIsNoFieldIsNotFound) {
  EXPECT_EQ(kCreateModule.Property("CreateValue").label, "Value");
  EXPECT_THROW(kCreateModule.Property("createvalue"), std::out_of_range);
  EXPECT_THROW(kCreateModule.Property("DecideValue"), std::out_of_range);
  EXPECT_THROW(kProcessModule.rows.ColumnOf("Process_RCount"), std::out_of_range);
}

}  // namespace
}  // namespace vardo::test
