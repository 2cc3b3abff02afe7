#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "picker/picker_support.h"

namespace tavrix::picker {
namespace {

using testing::ElementsAre;
using viewkit::Key;

/// Rows of the list by their codes, for a picker that was refreshed.
struct Loaded : PickerFixture {
  Loaded() { picker.Refresh(); }
  std::string Current() {
    return Vs().Row() < Vs().FixedRows() ? "" : std::string(Vs().TextMatrix(Vs().Row(), 1));
  }
  std::vector<viewkit::Control*> Everywhere() {
    std::vector<viewkit::Control*> controls;
    for (std::size_t at = 0; at < picker.Controls().Count(); ++at) {
      controls.push_back(&dynamic_cast<viewkit::Control&>(picker.Controls().At(at)));
    }
    return controls;
  }
};

TEST(Search, GoesToTheFirstMatchAsOneTypes) {
  Loaded f;
  f.Search().SetText("应付");
  EXPECT_EQ(f.Current(), "2202");
  EXPECT_EQ(f.Count(), "共:8条，已选中1条");  // Enter picks what was found
  f.Search().SetText("GH");                   // without case
  EXPECT_EQ(f.Current(), "100201");
  f.Search().SetText("nowhere");
  EXPECT_EQ(f.Current(), "100201");
  f.Search().SetText("款%yh");  // across the border of two columns
  EXPECT_EQ(f.Current(), "1002");
  f.Search().SetText("0%1%5");  // 100202 ends with the one, 2202 begins with the other
  EXPECT_EQ(f.Current(), "1002");
  f.Search().SetText("");
  EXPECT_EQ(f.Current(), "1001");
}

TEST(Search, HidesWhatDoesNotMatchInFilterMode) {
  Loaded f;
  f.Search().SetText("成本");
  f.Box("Check").Click();  // searches again
  EXPECT_TRUE(f.Search().FilterMode());
  EXPECT_THAT(f.Column(), ElementsAre("(1001)", "(1002)", "(100201)", "(100202)", "(2202)", "5001",
                                      "500101", "50010101"));
  f.Search().SetText("银行");
  EXPECT_THAT(f.Column(), ElementsAre("(1001)", "1002", "(100201)", "(100202)", "(2202)", "(5001)",
                                      "(500101)", "(50010101)"));
  f.Search().SetText("");
  EXPECT_THAT(f.Column(), ElementsAre("1001", "1002", "100201", "100202", "2202", "5001", "500101",
                                      "50010101"));
  f.Search().SetText("zzz");
  f.Box("Check").Click();  // off: all rows are back
  EXPECT_EQ(f.Column()[0], "1001");
}

TEST(Search, SeesRowsThatCameLater) {
  Loaded f;
  f.Search().SetText("直接");
  f.Vs().SetTextMatrix(1, 2, "直接费用");
  f.Search().Search();
  EXPECT_EQ(f.Current(), "1001");
  f.SelectNode("r成本");
  f.Search().Search();
  EXPECT_EQ(f.Current(), "50010101");
}

TEST(Search, FoldsLettersOfEveryKindTheTextFolds) {
  Loaded f;
  f.Vs().SetTextMatrix(3, 2, "ÄÖ Ω Ж Ａ");
  for (const char* wanted : {"äö", "ω", "ж", "ａ"}) {
    f.Vs().SetRow(0);
    f.Search().SetText(wanted);
    EXPECT_EQ(f.Current(), "100201") << wanted;
  }
}

TEST(Keys, OneEnterGivesOnePickWhereverTheFocusIs) {
  for (std::size_t at = 0; at < Loaded().Everywhere().size(); ++at) {
    Loaded f;
    viewkit::Control* control = f.Everywhere()[at];
    f.SelectRows({"1001"});
    f.Press(*control, Key::kEnter);
    EXPECT_EQ(f.picks, 1) << control->Name();
    f.Press(*control, Key::kEnter);
    EXPECT_EQ(f.picks, 2) << control->Name();
  }
}

TEST(Keys, AHeldEnterAndOneThatClickedAButtonDoNotPickAgain) {
  Loaded f;
  f.picker.DoSelect.Add([&] { f.picker.Refresh(); });
  f.Vs().KeyDown.Raise(Key::kEnter, {});
  for (int times = 0; times < 5; ++times) f.Vs().KeyDown.Raise(Key::kEnter, {.repeated = true});
  f.Vs().KeyUp.Raise(Key::kEnter, {});
  EXPECT_EQ(f.picks, 1);
  f.Cmd(1).KeyDown.Raise(Key::kEnter, {});
  f.Cmd(1).Click();
  f.Cmd(1).KeyUp.Raise(Key::kEnter, {});
  EXPECT_EQ(f.picks, 1);
  EXPECT_EQ(f.cancels, 1);
}

TEST(Keys, AnEnterThatWasPressedElsewhereIsNotThePickers) {
  Loaded f;
  // The host opened the picker by Enter: the list got the focus, then the key came up.
  f.Vs().NotifyFocus(false);
  f.Vs().NotifyFocus(true);
  f.Vs().KeyDown.Raise(Key::kEnter, {.repeated = true});
  f.Vs().KeyUp.Raise(Key::kEnter, {});
  EXPECT_EQ(f.picks, 0);
  // It chose a word in the input method's list, as an arrow did before.
  f.Search().KeyDown.Raise(Key::kProcessed, {});
  f.Search().KeyUp.Raise(Key::kDown, {});
  f.Search().KeyDown.Raise(Key::kProcessed, {});
  f.Search().KeyUp.Raise(Key::kEnter, {});
  EXPECT_EQ(f.picks, 0);
  EXPECT_EQ(f.Current(), "");
  // The host opened it by Alt and Down, and Alt came up first.
  f.Search().NotifyFocus(true);
  f.Search().KeyUp.Raise(Key{0x12}, {});
  f.Search().KeyUp.Raise(Key::kDown, {});
  EXPECT_EQ(f.Current(), "");
  // A container kept the key's press for itself while one was typing.
  f.Search().KeyDown.Raise(Key::kC, {});
  f.Search().KeyUp.Raise(Key::kEnter, {});
  EXPECT_EQ(f.picks, 1);
  // The host closed the picker on Enter, so that its release never came.
  f.Vs().KeyDown.Raise(Key::kEnter, {});
  f.Press(f.Vs(), Key::kEnter);
  EXPECT_EQ(f.picks, 3);
}

TEST(Keys, ArrowsStepOverHiddenRowsOneAtATime) {
  for (const char* place : {"SearchBox1", "Vs", "Chk"}) {
    Loaded f;
    viewkit::Control& control = f.Control<viewkit::Control>(place);
    f.Vs().SetRow(f.RowOf("1001"));
    f.Vs().SetRowHidden(f.RowOf("1002"), true);
    f.Vs().SetRowHidden(f.RowOf("100201"), true);
    f.Press(control, Key::kDown);
    EXPECT_EQ(f.Current(), "100202") << place;
    f.Press(control, Key::kUp);
    EXPECT_EQ(f.Current(), "1001") << place;
    f.Press(control, Key::kUp);
    EXPECT_EQ(f.Current(), "1001") << place;  // never into the header
    f.Vs().SetRow(f.RowOf("50010101"));
    f.Press(control, Key::kDown);
    EXPECT_EQ(f.Current(), "50010101") << place;
  }
  Loaded f;
  f.Press(f.Search(), Key::kDown);  // from no row to the first
  EXPECT_EQ(f.Current(), "1001");
}

TEST(Keys, ArrowsInTheTreeMoveThereAlone) {
  Loaded f;
  f.Press(f.TV(), Key::kDown);
  EXPECT_EQ(f.TV().SelectedItem()->Key(), "r资产");
  EXPECT_EQ(f.Current(), "");
  EXPECT_EQ(f.Column().size(), 4U);
}

TEST(Keys, ControlBLeadsToTheSearchBox) {
  Loaded f;
  f.Press(f.Vs(), Key::kB);
  EXPECT_FALSE(f.Search().Focused());
  f.Press(f.Vs(), Key::kB, {.control = true});
  EXPECT_TRUE(f.Search().Focused());
}

TEST(View, BoxesAndLayoutFitEverySize) {
  Loaded f;
  for (const auto& [width, height] :
       {std::pair{4800, 3600}, {28800, 16200}, {9000, 6000}, {300, 100}, {0, 0}}) {
    f.picker.Resize(width, height);
    const bool usable = width >= 4800;
    std::vector<host::Bounds> places;
    for (const viewkit::Control* control : f.Everywhere()) {
      if (!control->Visible()) continue;
      const host::Bounds b = control->GetBounds();
      EXPECT_GE(b.width, 0);
      EXPECT_GE(b.height, 0);
      if (!usable) continue;
      EXPECT_TRUE(b.left >= 0 && b.left + b.width <= width) << control->Name();
      EXPECT_TRUE(b.top >= 0 && b.top + b.height <= height) << control->Name();
      for (const host::Bounds& o : places) {
        EXPECT_TRUE(b.left >= o.left + o.width || o.left >= b.left + b.width ||
                    b.top >= o.top + o.height || o.top >= b.top + b.height)
            << control->Name();
      }
      places.push_back(b);
    }
    if (usable) {
      EXPECT_GE(f.Vs().GetBounds().height, 100 * 15);
      EXPECT_GE(f.Search().GetBounds().width, 100 * 15);
    }
  }
}

TEST(View, TheSplitterSharesTheWidthAndStaysInBounds) {
  Loaded f;
  auto& splitter = f.Control<viewkit::Splitter>("Splitter1");
  splitter.SetPosition(4000);
  EXPECT_EQ(splitter.GetBounds().left, 4000);
  EXPECT_EQ(f.TV().GetBounds().left + f.TV().GetBounds().width, 4000);
  splitter.SetPosition(20000);
  EXPECT_GE(f.Vs().GetBounds().width, 60 * 15);
  splitter.SetPosition(-5);
  EXPECT_GE(f.TV().GetBounds().width, 60 * 15);
}

TEST(View, ShowsTheBackgroundTheDesignerSets) {
  PickerFixture f;
  auto parameters = std::make_shared<desk::book::ParameterList>();
  f.picker.SetParameters(parameters);
  EXPECT_EQ(f.picker.BackColor(), viewkit::color::kButtonFace);
  parameters->Set("backcolor", -2147483643.0);  // a system colour, as a signed number
  f.picker.SetParameters(parameters);
  EXPECT_EQ(f.picker.BackColor(), viewkit::color::kWindow);
  f.picker.SetParameters(nullptr);
  EXPECT_EQ(f.picker.BackColor(), viewkit::color::kWindow);
}

}  // namespace
}  // namespace tavrix::picker
