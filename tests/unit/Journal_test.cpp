#include "document/Journal.h"

#include <gtest/gtest.h>

#include <string>

namespace vardo {
namespace {

class JournalTest : public testing::Test {
 protected:
  // Appends a letter, as an edit that can be taken back.
  void Append(char letter) {
    text_ += letter;
    journal_.Record([this] { text_.pop_back(); }, [this, letter] { text_ += letter; });
  }
  Journal journal_;
  std::string text_;
};

TEST_F(JournalTest, AStepIsEverythingOneCommandDid) {
  {
    const UndoStep outer(journal_, "Drop");
    Append('a');
    const UndoStep inner(journal_, "Typing");
    Append('b');
  }
  Append('c');
  EXPECT_EQ(journal_.Undo(), "Edit") << "an edit outside any command is a step of its own";
  EXPECT_EQ(text_, "ab");
  EXPECT_EQ(journal_.Undo(), "Drop") << "the outermost scope names the step";
  EXPECT_EQ(text_, "");
  EXPECT_FALSE(journal_.CanUndo());
  EXPECT_EQ(journal_.Redo(), "Drop");
  EXPECT_EQ(text_, "ab");
  EXPECT_EQ(journal_.Redo(), "Edit");
  EXPECT_EQ(text_, "abc");
  EXPECT_FALSE(journal_.CanRedo());
}

TEST_F(JournalTest, AStepWithoutEditsIsNotKept) {
  Append('a');
  journal_.Undo();
  { const UndoStep step(journal_, "Nothing"); }
  EXPECT_FALSE(journal_.CanUndo());
  EXPECT_TRUE(journal_.CanRedo()) << "nothing was done that redo could clash with";
}

TEST_F(JournalTest, ANewEditEndsRedo) {
  Append('a');
  journal_.Undo();
  Append('b');
  EXPECT_FALSE(journal_.CanRedo());
}

TEST_F(JournalTest, WhatUndoDoesIsNotRecorded) {
  bool replaying = false;
  journal_.Record(
      [&] {
        replaying = journal_.UndoingOrRedoing();
        Append('x');
      },
      [] {});
  journal_.Undo();
  EXPECT_TRUE(replaying);
  EXPECT_FALSE(journal_.UndoingOrRedoing());
  EXPECT_FALSE(journal_.CanUndo());
}

}  // namespace
}  // namespace vardo
