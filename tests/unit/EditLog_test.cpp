#include "document/EditLog.h"

#include "TestTree.h"
#include "document/UndoStep.h"
#include "package/TreeMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>

namespace vardo {
namespace {

using testing::ElementsAre;

class EditLogTest : public testing::Test {
 protected:
  pugi::xml_node root() { return tree_.part().root(); }
  std::string Tree() { return tree_.part().Serialise(root()); }
  EditLog& log() { return tree_.log(); }
  TreeEditor& editor() { return tree_.editor(); }
  void Set(const char* name, std::string_view value) { editor().SetAttribute(tree_.part(), root(), name, value); }
  pugi::xml_node Add(const char* name, pugi::xml_node parent = {}) {
    return editor().Insert(tree_.part(), parent ? parent : root(), name, {{"N", "1"}});
  }

  test::TestTree tree_{"<Row a='1'><Old/><!-- kept --><Last/></Row>"};
};

TEST_F(EditLogTest, AStepIsEverythingOneCommandDid) {
  {
    const UndoStep outer(log(), "Drop");
    Set("a", "2");
    const UndoStep inner(log(), "Typing");
    Set("b", "3");
  }
  Set("c", "4");
  EXPECT_EQ(log().Undo().label, "Edit") << "an edit outside any command is a step of its own";
  EXPECT_EQ(root().attribute("b").as_int(), 3);
  EXPECT_EQ(log().Undo().label, "Drop") << "the outermost scope names the step";
  EXPECT_EQ(Tree(), "<Row a='1'><Old/><!-- kept --><Last/></Row>");
  EXPECT_FALSE(log().CanUndo());
  EXPECT_EQ(log().Redo().label, "Drop");
  EXPECT_EQ(log().Redo().label, "Edit");
  EXPECT_EQ(Tree(), "<Row a='2' b='3' c='4'><Old/><!-- kept --><Last/></Row>");
  EXPECT_FALSE(log().CanRedo());
}

TEST_F(EditLogTest, StepsHaveNames) {
  for (const char* label : {"One", "Two", "Three"}) {
    const UndoStep step(log(), label);
    Add("X");
  }
  log().Undo();
  EXPECT_THAT(log().UndoLabels(), ElementsAre("One", "Two"));
  EXPECT_THAT(log().RedoLabels(), ElementsAre("Three"));
}

TEST_F(EditLogTest, AStepWithoutEditsIsNotKept) {
  Set("a", "2");
  log().Undo();
  { const UndoStep step(log(), "Nothing"); }
  EXPECT_FALSE(log().CanUndo());
  EXPECT_TRUE(log().CanRedo()) << "nothing was done that redo could clash with";
}

TEST_F(EditLogTest, ANewEditEndsRedo) {
  Set("a", "2");
  log().Undo();
  Set("a", "3");
  EXPECT_FALSE(log().CanRedo());
}

TEST_F(EditLogTest, EveryKindOfEditIsUndoneAndDoneAgain) {
  const std::string before = Tree();
  {
    const UndoStep step(log(), "All");
    editor().Remove(tree_.part(), root().child("Old"));
    const pugi::xml_node row = editor().Insert(tree_.part(), root(), "New", {{"N", "x"}}, root().child("Last"));
    editor().AppendText(tree_.part(), row, "text");
    editor().SetAttribute(tree_.part(), row, "V", "within what is new");
    editor().RemoveAttribute(tree_.part(), root(), "a");
    Set("z", "9");
    editor().Remove(tree_.part(), row.first_child());
  }
  const std::string after = Tree();
  EXPECT_EQ(after, "<Row z='9'><!-- kept --><New N='x' V='within what is new'/><Last/></Row>");
  for (int round = 0; round < 3; ++round) {
    log().Undo();
    EXPECT_EQ(Tree(), before);
    EXPECT_FALSE(tree_.part().changed());
    log().Redo();
    EXPECT_EQ(Tree(), after);
    EXPECT_TRUE(tree_.part().changed());
  }
}

TEST_F(EditLogTest, AStepThatFailsIsTakenBackWhole) {
  Set("a", "2");
  log().Undo();
  const std::string before = Tree();
  const auto fail = [&] {
    const UndoStep step(log(), "Fails");
    Set("a", "3");
    Add("X", Add("Y"));
    editor().Remove(tree_.part(), root().child("Old"));
    const UndoStep inner(log(), "Inner");
    throw std::runtime_error("refused");
  };
  EXPECT_THROW(fail(), std::runtime_error);
  EXPECT_EQ(Tree(), before);
  EXPECT_FALSE(tree_.part().changed());
  EXPECT_FALSE(log().CanUndo());
  EXPECT_TRUE(log().CanRedo()) << "as if nothing had been tried";
}

TEST_F(EditLogTest, AFailureThatTheCommandTakesCareOfIsNoFailureOfTheCommand) {
  {
    const UndoStep step(log(), "Goes on");
    try {
      const UndoStep inner(log(), "Inner");
      Set("a", "2");
      throw std::runtime_error("refused");
    } catch (const std::runtime_error&) {
    }
  }
  EXPECT_EQ(root().attribute("a").as_int(), 2);
  EXPECT_TRUE(log().CanUndo());
}

TEST_F(EditLogTest, ThePartIsUnchangedWhereItWasSaved) {
  Set("a", "2");
  Set("a", "3");
  tree_.part().MarkSaved();
  log().Undo();
  EXPECT_TRUE(tree_.part().changed());
  log().Redo();
  EXPECT_FALSE(tree_.part().changed());
  log().Undo();
  Set("a", "3");
  EXPECT_TRUE(tree_.part().changed()) << "the same text, but not by the step that was saved";
}

TEST_F(EditLogTest, ManyWritesToOneElementAreOneRecord) {
  {
    const UndoStep step(log(), "Typing");
    Set("a", "x");
  }
  const size_t one = log().Bytes();
  log().Undo();
  {
    const UndoStep step(log(), "Typing");
    for (int i = 0; i < 1000; ++i) Set("a", std::to_string(i));
  }
  EXPECT_LE(log().Bytes(), one + 8);
  log().Undo();
  EXPECT_EQ(root().attribute("a").as_int(), 1);
}

TEST_F(EditLogTest, ALongTextThatGrowsIsKeptAsWhatItGrewBy) {
  std::string text(50'000, 'x');
  Set("a", text);
  const size_t before = log().Bytes();
  for (int i = 0; i < 10; ++i) Set("a", text += ";1");
  EXPECT_LT(log().Bytes() - before, 10u * 400);
  for (int i = 0; i < 10; ++i) log().Undo();
  EXPECT_EQ(root().attribute("a").value(), std::string(50'000, 'x'));
  for (int i = 0; i < 10; ++i) log().Redo();
  EXPECT_EQ(root().attribute("a").value(), text);
}

TEST_F(EditLogTest, TheOldestStepsAreDroppedBeyondTheLimit) {
  log().SetLimit({.steps = 3});
  for (int i = 2; i < 10; ++i) Set("a", std::to_string(i));
  int undone = 0;
  for (; log().CanUndo(); ++undone) log().Undo();
  EXPECT_EQ(undone, 3);
  EXPECT_EQ(root().attribute("a").as_int(), 6);
}

TEST_F(EditLogTest, TheLastStepIsKeptHoweverMuchItHolds) {
  log().SetLimit({.steps = 10, .bytes = 1});
  for (const char* text : {"2", "3"}) Set("a", text);
  EXPECT_THAT(log().UndoLabels(), testing::SizeIs(1));
  log().Undo();
  EXPECT_EQ(root().attribute("a").as_int(), 2);
}

TEST_F(EditLogTest, WhatTheLogHoldsStaysWithinTheLimit) {
  log().SetLimit({.steps = 1'000'000, .bytes = 20'000});
  for (int i = 0; i < 2'000; ++i) {
    const pugi::xml_node added = Add("X");
    editor().Remove(tree_.part(), added);
    EXPECT_LE(log().Bytes(), 20'000u);
  }
  EXPECT_TRUE(log().CanUndo());
  EXPECT_LT(std::distance(tree_.part().root().root().child("aside").begin(), tree_.part().root().root().child("aside").end()),
            200)
      << "what can no longer come back is freed";
}

TEST_F(EditLogTest, PartsComeAndGoWithTheirSteps) {
  {
    const UndoStep step(log(), "Insert");
    editor().AddPart("new", "<New/>", [](pugi::xml_node root) { root.append_attribute("a") = 1; });
  }
  EXPECT_EQ(tree_.package().Bytes("new"), "<New a=\"1\"/>");
  log().Undo();
  EXPECT_FALSE(tree_.package().Has("new"));
  log().Redo();
  EXPECT_EQ(tree_.package().Bytes("new"), "<New a=\"1\"/>");
  log().Undo();
  editor().AddPart("new", "<Other/>");
  EXPECT_EQ(tree_.package().Bytes("new"), "<Other/>") << "the name is free once the first cannot come back";
}

TEST_F(EditLogTest, APartThatFailedToComeTakesNothingFromTheOneThatCanComeBack) {
  editor().AddPart("new", "<New/>");
  log().Undo();
  const auto fail = [&] {
    const UndoStep step(log(), "Fails");
    editor().AddPart("new", "<Other/>");
    throw std::runtime_error("refused");
  };
  EXPECT_THROW(fail(), std::runtime_error);
  log().Redo();
  EXPECT_EQ(tree_.package().Bytes("new"), "<New/>");
  log().Undo();
  EXPECT_THROW(fail(), std::runtime_error);
  Set("a", "2");
  EXPECT_FALSE(log().CanRedo());
  editor().AddPart("new", "<Third/>");
  EXPECT_EQ(tree_.package().Bytes("new"), "<Third/>");
}

TEST_F(EditLogTest, AnEditWithoutMemoryIsTakenBack) {
  const std::string before = Tree();
  const auto edit = [&] {
    const UndoStep step(log(), "Fails");
    Set("a", "2");
    editor().Insert(tree_.part(), root(), "New", {}, {}, [](pugi::xml_node) { TakeTreePage(SIZE_MAX / 2); });
  };
  EXPECT_THROW(edit(), std::bad_alloc);
  EXPECT_EQ(Tree(), before);
  EXPECT_FALSE(log().CanUndo());
  Set("a", "2");
  EXPECT_TRUE(log().CanUndo()) << "the next edit finds memory";
}

}  // namespace
}  // namespace vardo
