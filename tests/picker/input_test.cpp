#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "picker/picker_support.h"
#include "support/matchers.h"

namespace tavrix::picker {
namespace {

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
  f.Vs().SetTextMatrix(8, 3, "ABBB");
  f.Search().SetText("bbb");  // a part of it comes before the whole
  EXPECT_EQ(f.Vs().Row(), 8);
  f.Search().SetText("");
  EXPECT_EQ(f.Current(), "1001");
  f.Vs().SetTextMatrix(8, 3, "A7Z");
  for (const char* end_of_alphabet : {"a7", "7z"}) {
    f.Vs().SetRow(1);
    f.Search().SetText(end_of_alphabet);
    EXPECT_EQ(f.Vs().Row(), 8);
  }
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
    if (dynamic_cast<viewkit::CommandButton*>(control) != nullptr) continue;
    f.SelectRows({"1001"});
    f.Press(*control, Key::kEnter);
    EXPECT_EQ(f.picks, 1) << control->Name();
    f.Press(*control, Key::kEnter);
    EXPECT_EQ(f.picks, 2) << control->Name();
  }
}

TEST(Keys, EnterOnAButtonIsItsClickAndNothingMore) {
  Loaded f;
  f.SelectRows({"1001"});
  f.Press(f.Cmd(1), Key::kEnter);
  EXPECT_EQ(f.picks, 0);
  EXPECT_EQ(f.cancels, 1);
  f.Press(f.Cmd(0), Key::kEnter);
  EXPECT_EQ(f.picks, 1);
  const auto reload = f.StatementsOf([&] { f.Press(f.Cmd(2), Key::kEnter); });
  EXPECT_FALSE(reload.empty());
  f.Cmd(1).KeyDown.Raise(Key::kEnter, {.repeated = true});  // held since it opened the picker
  EXPECT_TRUE(f.Cmd(1).HandleKey(Key::kEnter, {.repeated = true}));
  EXPECT_EQ(f.picks, 1);
  EXPECT_EQ(f.cancels, 1);
}

TEST(Keys, TypingOnTheListSeeksTheCode) {
  Loaded f;
  for (const char* digit : {"5", "0", "0"}) (void)f.Vs().HandleTypeAhead(digit, 0);
  EXPECT_EQ(f.Current(), "5001");
}

TEST(Keys, AHeldEnterDoesNotPickAgain) {
  Loaded f;
  f.picker.DoSelect.Add([&] { f.picker.Refresh(); });
  f.Vs().KeyDown.Raise(Key::kEnter, {});
  for (int times = 0; times < 5; ++times) f.Vs().KeyDown.Raise(Key::kEnter, {.repeated = true});
  f.Vs().KeyUp.Raise(Key::kEnter, {});
  EXPECT_EQ(f.picks, 1);
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
  std::string captions;
  for (viewkit::Control* control : f.Everywhere()) {
    const auto* captioned = dynamic_cast<viewkit::Captioned*>(control);
    if (captioned != nullptr) captions += captioned->Caption() + "|";
  }
  EXPECT_EQ(captions, "显示封存科目|筛选|查找|确定|取消|刷新|科目...|共:8条||");
  for (const auto& [width, height] :
       {std::pair{3600, 3600}, {4800, 3600}, {28800, 16200}, {9000, 6000}, {300, 100}, {0, 0}}) {
    f.picker.Resize(width, height);
    const bool usable = width >= 3600;
    std::vector<host::Bounds> places;
    for (const viewkit::Control* control : f.Everywhere()) {
      if (!control->Visible()) continue;
      const host::Bounds b = control->GetBounds();
      EXPECT_GE(b.width, 0);
      EXPECT_GE(b.height, 0);
      if (!usable) continue;
      EXPECT_GT(std::min(b.width, b.height), 0) << control->Name();
      EXPECT_TRUE(b.left >= 0 && b.left + b.width <= width) << control->Name();
      EXPECT_TRUE(b.top >= 0 && b.top + b.height <= height) << control->Name();
      for (const host::Bounds& o : places) {
        EXPECT_TRUE(b.left >= o.left + o.width || o.left >= b.left + b.width ||
                    b.top >= o.top + o.height || o.top >= b.top + b.height)
            << control->Name();
      }
      places.push_back(b);
    }
    const auto place = [&](const char* name) {
      return f.Control<viewkit::Control>(name).GetBounds();
    };
    if (usable) {
      EXPECT_GE(f.Vs().GetBounds().height, 100 * 15);
      EXPECT_GE(f.Search().GetBounds().width, 100 * 15);
      for (const host::Bounds& last : {place("Vs"), place("lblMessage"), f.Cmd(1).GetBounds(),
                                       place(width > 3600 ? "Chk" : "SearchBox1")}) {
        EXPECT_EQ(last.left + last.width, width - 60) << "each line ends at the same margin";
      }
      int left = 0;
      for (const int button : {2, 3, 0, 1}) {
        EXPECT_LT(std::exchange(left, f.Cmd(button).GetBounds().left),
                  f.Cmd(button).GetBounds().left);
      }
      EXPECT_LT(place("TV").left, place("Vs").left);
    } else if (width == 0) {
      EXPECT_EQ(place("Vs").width + place("TV").width + place("lblMessage").width +
                    f.Search().GetBounds().width + f.Cmd(0).GetBounds().width + place("Vs").height,
                0);
    }
  }
}

bool Apart(const host::Bounds& a, const host::Bounds& b) {
  return a.left + a.width <= b.left || b.left + b.width <= a.left;
}

TEST(View, ABoxThatTheHostShowsHasItsPlace) {
  Loaded f;
  viewkit::CheckBox& find = f.Box("ChkFind");
  const int room = f.Search().GetBounds().width;
  find.SetVisible(true);
  EXPECT_EQ(find.Caption(), "查找");
  const host::Bounds place = find.GetBounds();
  EXPECT_LE(place.left + place.width, 9000);
  for (const char* other : {"SearchBox1", "Chk", "Check"}) {
    EXPECT_TRUE(Apart(place, f.Control<viewkit::Control>(other).GetBounds())) << other;
  }
  find.SetVisible(false);
  EXPECT_EQ(f.Search().GetBounds().width, room);
}

TEST(View, WhatTheHostHasPlacedStaysUntilTheViewIsResized) {
  Loaded f;
  const host::Bounds list{300, 2000, 4000, 1000};
  const host::Bounds button{5000, 100, 700, 300};
  const host::Bounds was = f.Vs().GetBounds();
  f.Vs().SetBounds(list);
  f.Cmd(2).SetBounds(button);
  f.picker.Refresh();
  f.Box("ChkFind").SetVisible(true);
  f.picker.Resize(9000, 6000);  // as large as before
  EXPECT_EQ(f.Vs().GetBounds(), list);
  EXPECT_EQ(f.Cmd(2).GetBounds(), button);
  f.picker.Resize(9000, 6015);
  EXPECT_EQ(f.Vs().GetBounds().left, was.left);
  EXPECT_NE(f.Cmd(2).GetBounds(), button);

  selKjkm unsized(f.user);
  auto& control = dynamic_cast<viewkit::Control&>(unsized.Controls().At(0));
  control.SetBounds(list);
  control.SetVisible(false);
  EXPECT_EQ(control.GetBounds(), list) << "there is no size to arrange anything in";
}

TEST(View, TheWheelTurnsTheListByTheRateOfTheSetting) {
  const std::tuple<const char*, int, int> rates[] = {{"", 40, 15}, {"0", 40, 15}, {"2.5", 80, 8}};
  for (const auto& [setting, range, top] : rates) {
    PickerFixture f(test::DefaultEngine(), test::ManyAccounts());
    f.book.SetSetting("system", "mouseeventscrollrate", setting);
    f.Init();
    f.picker.Refresh();
    EXPECT_EQ(f.wheel->range, range) << setting;
    EXPECT_EQ(f.wheel->first_row, 1);
    f.wheel->turn(3);
    if (range == 40) {
      EXPECT_EQ(f.Vs().TopRow(), 3) << "below the rate a value is a row";
      f.wheel->turn(5);
      EXPECT_EQ(f.Vs().TopRow(), 25);
    } else {
      EXPECT_EQ(f.Vs().TopRow(), top);
    }
    f.Vs().SetTopRow(50);
    EXPECT_EQ(f.wheel->position, 50 / (range == 40 ? 5 : 2.5));
    f.SelectNode("r负债");  // an empty list
    EXPECT_EQ(f.wheel->range, 0);
  }
}

TEST(View, TheListTakesTheWheelWhenItGetsTheFocus) {
  PickerFixture f;
  f.picker.Refresh();
  f.wheel->Attach(4711);
  f.wheel->attached = 0;
  f.Vs().NotifyFocus(false);
  EXPECT_TRUE(f.Vs().SetFocus());
  EXPECT_EQ(f.wheel->attached, 1);
  EXPECT_EQ(f.wheel->AttachedTo(), f.Vs().WindowHandle());
  f.Vs().NotifyFocus(false);
  EXPECT_TRUE(f.Vs().SetFocus());
  EXPECT_EQ(f.wheel->attached, 1) << "it is attached already";
}

TEST(View, AMatchIsBroughtIntoView) {
  PickerFixture f(test::DefaultEngine(), test::ManyAccounts());
  f.picker.Refresh();
  ASSERT_FALSE(f.Vs().IsInView(150));
  f.Search().SetText("1150");
  EXPECT_EQ(f.Vs().Row(), 150);
  EXPECT_TRUE(f.Vs().IsInView(150));
  const int top = f.Vs().TopRow();
  f.Search().SetText("1152");
  EXPECT_EQ(f.Vs().TopRow(), top) << "what is in view stays where it is";
  f.Search().SetText("");
  for (int step = 0; step < 60; ++step) f.Press(f.Search(), Key::kDown);
  EXPECT_TRUE(f.Vs().IsInView(f.Vs().Row())) << "and what one steps to";
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
