#include "forms/FormLayout.h"

#include <gtest/gtest.h>

namespace vardo {
namespace {

class LaidOutForm : public Form {
 public:
  LaidOutForm() : Form("frmLaidOut", "Laid out") {
    FormLayout layout(*this, 1500, 3000);
    layout.Row(lblA, cboA)
        .BeginFrame(frame)
        .Row(lblB, txtB)
        .InPlace(lblC, cboC)
        .Row(lblD, txtD)
        .EndFrame()
        .Row(lblE, txtE)
        .Buttons({&cmdOK, &cmdCancel, &cmdHelp});
  }
  Label lblA{*this, "lblA"};
  ComboBox cboA{*this, "cboA"};
  Frame frame{*this, "Frame1"};
  Label lblB{*this, "lblB"};
  TextBox txtB{*this, "txtB"};
  Label lblC{*this, "lblC"};
  ComboBox cboC{*this, "cboC"};
  Label lblD{*this, "lblD"};
  TextBox txtD{*this, "txtD"};
  Label lblE{*this, "lblE"};
  TextBox txtE{*this, "txtE"};
  Button cmdOK{*this, "cmdOK"}, cmdCancel{*this, "cmdCancel"}, cmdHelp{*this, "cmdHelp"};
};

double Right(const Control& control) { return control.Place().left + control.Place().width; }
double Bottom(const Control& control) { return control.Place().top + control.Place().height; }
bool Overlap(const Control& a, const Control& b) {
  return a.Place().left < Right(b) && b.Place().left < Right(a) && a.Place().top < Bottom(b) && b.Place().top < Bottom(a);
}

TEST(FormLayout, PutsEveryControlInsideTheForm) {
  const LaidOutForm form;
  for (const Control* control : form.Controls()) {
    EXPECT_GE(control->Place().left, 0) << control->name();
    EXPECT_GE(control->Place().top, 0) << control->name();
    EXPECT_GT(control->Place().width, 0) << control->name();
    EXPECT_LT(Right(*control), form.Place().width) << control->name();
    EXPECT_LT(Bottom(*control), form.Place().height) << control->name();
  }
}

TEST(FormLayout, OnlyBoxesThatTakeEachOthersPlaceOverlap) {
  const LaidOutForm form;
  for (const Control* a : form.Controls())
    for (const Control* b : form.Controls()) {
      const bool framed = a->kind() == ControlKind::Frame || b->kind() == ControlKind::Frame;
      const bool inPlace = (a == &form.lblB && b == &form.lblC) || (a == &form.txtB && b == &form.cboC) ||
                           (b == &form.lblB && a == &form.lblC) || (b == &form.txtB && a == &form.cboC);
      if (a == b || framed) continue;
      EXPECT_EQ(Overlap(*a, *b), inPlace) << a->name() << " and " << b->name();
    }
  EXPECT_EQ(form.txtB.Place().left, form.cboC.Place().left);
  EXPECT_EQ(form.txtB.Place().top, form.cboC.Place().top);
}

TEST(FormLayout, LabelsStandInOneColumnAndBoxesInTheNext) {
  const LaidOutForm form;
  for (const Label* label : {&form.lblA, &form.lblB, &form.lblD, &form.lblE}) {
    EXPECT_EQ(label->Place().left, form.lblA.Place().left);
    EXPECT_EQ(Right(*label) + 120, form.cboA.Place().left) << "a gap between them";
  }
  for (const Control* box : {static_cast<const Control*>(&form.txtB), static_cast<const Control*>(&form.txtE)}) {
    EXPECT_EQ(box->Place().left, form.cboA.Place().left);
    EXPECT_EQ(box->Place().width, 3000);
  }
  EXPECT_LT(form.lblA.Place().left, form.cboA.Place().left);
}

TEST(FormLayout, AFrameHoldsItsRows) {
  const LaidOutForm form;
  for (const Control* control : {static_cast<const Control*>(&form.lblB), static_cast<const Control*>(&form.txtB),
                                 static_cast<const Control*>(&form.cboC), static_cast<const Control*>(&form.txtD)}) {
    EXPECT_EQ(control->parent(), &form.frame) << control->name();
    EXPECT_GT(control->Place().left, form.frame.Place().left);
    EXPECT_GT(control->Place().top, form.frame.Place().top);
    EXPECT_LT(Right(*control), Right(form.frame));
    EXPECT_LT(Bottom(*control), Bottom(form.frame));
  }
  EXPECT_EQ(form.cboA.parent(), nullptr);
  EXPECT_EQ(form.txtE.parent(), nullptr);
  EXPECT_EQ(form.frame.parent(), nullptr);
  EXPECT_GE(form.txtE.Place().top, Bottom(form.frame));
}

TEST(FormLayout, ButtonsStandInARowAtTheLowerRight) {
  const LaidOutForm form;
  EXPECT_LT(Right(form.cmdOK), form.cmdCancel.Place().left);
  EXPECT_LT(Right(form.cmdCancel), form.cmdHelp.Place().left);
  EXPECT_EQ(form.cmdOK.Place().top, form.cmdHelp.Place().top);
  EXPECT_GT(form.cmdOK.Place().top, Bottom(form.txtE));
  EXPECT_EQ(Right(form.cmdHelp), Right(form.txtE)) << "flush with the boxes";
}

}  // namespace
}  // namespace vardo
