// What fields mean in a run against what the dialogs offer for them.
#include "model/FieldTable.h"
#include "DialogTables.h"
#include "base/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace vardo::test {
namespace {

using testing::ElementsAreArray;
using testing::IsSubsetOf;

const FieldMeaning* MeaningOf(const DialogTable& table, const std::string& control) {
  const auto field = std::ranges::find(table.fields, control, &FieldRow::control);
  if (field == table.fields.end() || field->property.empty()) return nullptr;
  const ModuleSchema& schema = *FindModule(table.kind);
  for (const FieldMeaning& meaning : MeaningsOf(schema))
    if (EqualAsciiIgnoringCase(schema.properties[meaning.place].field, field->property)) return &meaning;
  return nullptr;
}

std::string Shown(const Choice& choice) { return std::string(choice.caption.empty() ? choice.code : choice.caption); }

TEST(FieldTable, CodesAreThoseOfTheDialogs) {
  for (const DialogTable& table : ModuleTables())
    for (const CodeRow& row : table.codes) {
      SCOPED_TRACE(table.form + "." + row.control);
      const FieldMeaning* meaning = MeaningOf(table, row.control);
      ASSERT_TRUE(meaning);
      Texts ours, theirs;
      for (const Choice& choice : meaning->choices) ours.push_back(Shown(choice) + " = " + std::string(choice.code));
      for (const auto& [item, code] : row.codes) theirs.push_back(item + " = " + code);
      EXPECT_THAT(ours, ElementsAreArray(theirs));
    }
}

TEST(FieldTable, ItemsToPickAreChoices) {
  for (const DialogTable& table : ModuleTables())
    for (const ControlRow& control : table.controls) {
      const auto list = std::ranges::find(table.lists, control.name, &ListRow::control);
      const FieldMeaning* meaning = MeaningOf(table, control.name);
      if (control.kind != Kind::Pick || list == table.lists.end() || !meaning) continue;
      SCOPED_TRACE(table.form + "." + control.name);
      EXPECT_EQ(meaning->meaning, Meaning::Choice);
      Texts shown;
      for (const Choice& choice : meaning->choices) shown.push_back(Shown(choice));
      EXPECT_THAT(list->items, IsSubsetOf(shown));
      if (meaning->choices.data() != kTimeUnitChoices) {
        EXPECT_EQ(list->items.size(), shown.size());
      }
    }
}

// What a dialog shows for a code that is none of its own.
TEST(FieldTable, UnknownCodesAreTakenAsTheDialogsShowThem) {
  for (const DialogTable& table : ModuleTables())
    for (const OddRow& odd : table.odd) {
      const FieldMeaning* meaning = MeaningOf(table, odd.control);
      if (!meaning || meaning->meaning != Meaning::Choice || odd.shown == odd.stored) continue;
      SCOPED_TRACE(table.form + "." + odd.control + " " + odd.stored);
      const std::string taken =
          meaning->unknownChoice < 0 ? "" : Shown(meaning->choices[static_cast<size_t>(meaning->unknownChoice)]);
      EXPECT_EQ(taken, odd.shown);
    }
}

TEST(FieldTable, FieldsAreCheckedAsInTheDialogs) {
  for (const DialogTable& table : ModuleTables())
    for (const CheckRow& check : table.checks) {
      const FieldMeaning* meaning = MeaningOf(table, check.control);
      if (!meaning || meaning->meaning == Meaning::Name) continue;
      SCOPED_TRACE(table.form + "." + check.control);
      const bool isExpression =
          meaning->meaning == Meaning::Expression || meaning->meaning == Meaning::Count || meaning->meaning == Meaning::Percent;
      EXPECT_EQ(check.kind == "expression", isExpression);
      EXPECT_EQ(check.kind == "real", meaning->meaning == Meaning::Real);
      EXPECT_EQ(check.kind == "integer", meaning->meaning == Meaning::Integer);
      EXPECT_EQ(check.kind == "symbol name", meaning->meaning == Meaning::Reference);
    }
}

}  // namespace
}  // namespace vardo::test
