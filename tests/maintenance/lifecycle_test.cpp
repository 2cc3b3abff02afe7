#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "host/error.h"
#include "maintenance/view_test.h"

namespace tavrix::test {
namespace {

TEST(Lifecycle, MembersWithoutWorkAnswerAsHostsExpect) {
  ViewTest t;
  EXPECT_EQ(t.view.Attributes("isVisibleNewNext"), "True");
  EXPECT_EQ(t.view.Attributes("IsVisibleNewNext"), "");
  EXPECT_TRUE(t.view.FileSave() && t.view.FileCancel());
  EXPECT_FALSE(t.view.Check() || t.view.UnCheck() || t.view.Help() || t.view.PrintSetup() ||
               t.view.DoPrint(true) || t.view.DoSetStatus("x", true) || t.view.CheckStatus("x") ||
               t.view.IsDirty());
  EXPECT_EQ(t.view.GetID(), 0);
  EXPECT_EQ(t.view.ReturnPrintName(), "");
}

TEST(Lifecycle, BeforeInitAndAfterClearEveryCommandIsRefusedWithAReport) {
  ViewTest t;
  EXPECT_FALSE(t.view.Refresh());
  t.reports.clear();
  t.Start();
  t.Select("1001");
  EXPECT_FALSE(t.view.Clear());
  EXPECT_EQ(t.wheel->detached, 1);
  EXPECT_FALSE(t.view.Refresh());
  EXPECT_FALSE(t.view.RecordTop() || t.view.RecordPrevious() || t.view.RecordNext() ||
               t.view.RecordBottom() || t.view.Find("x") || t.view.FindNext() ||
               t.view.Filter("x") || t.view.FileNew() || t.view.FileNewNext() ||
               t.view.FileEdit() || t.view.FileDelete());
  Texts expected = {"刷新数据时出错：控件尚未初始化|8|测试程序"};
  for (const std::string command :
       {"RecordTop", "RecordPrevious", "RecordNext", "RecordBottom", "Find", "FindNext", "Filter",
        "FileNew", "FileNewNext", "FileEdit", "FileDelete"}) {
    expected.push_back(command + "->控件尚未初始化|2|测试程序");
  }
  EXPECT_EQ(t.reports, expected);
  EXPECT_FALSE(t.view.Clear()) << "a second time does no harm";

  t.reports.clear();
  t.Start();
  EXPECT_EQ(t.Codes().size(), 8U);
}

TEST(Lifecycle, InitAsksTheHostInItsOrder) {
  ViewTest t;
  ASSERT_TRUE(t.view.Init(t.host.System(), 0, 0));
  Texts calls;
  for (const HostCall& call : t.host.Calls()) calls.push_back(call.name);
  EXPECT_EQ(calls, (Texts{"CodeRule", "LogHelper", "GridNavigator", "DataHelper", "GetDatabase",
                          "DataHelper.SetDatabase", "MouseEvent", "GetSetting",
                          "SettingEntry.Value", "GetSetting", "SettingEntry.Value"}));
}

TEST(Lifecycle, ClearReleasesInItsOrderAndTheDialogToo) {
  ViewTest t;
  Texts ended;
  std::weak_ptr<editing::FmBkmAdd> dialog;
  const auto note = [&](const std::string& name) {
    static const Texts kHeld = {"CodeRule", "LogHelper", "GridNavigator", "DataHelper",
                                "MouseEvent"};
    if (std::ranges::find(kHeld, name) == kHeld.end() && name != "pcSystem") return;
    ended.push_back(name + (dialog.expired() ? "" : ", dialog there"));
  };
  {
    const auto system = t.host.System();
    ASSERT_TRUE(t.view.Init({system.get(), [&, system](auto*) { note("pcSystem"); }}, 0, 0));
  }
  ASSERT_TRUE(t.view.Refresh());
  t.user.in_dialog = [&](viewkit::DialogModel& shown) {
    dialog = dynamic_cast<editing::FmBkmAdd&>(shown).weak_from_this();
    shown.Unload();
  };
  t.Select("1001");
  EXPECT_TRUE(t.view.FileEdit());
  t.host.OnRelease(note);
  t.view.Clear();
  EXPECT_EQ(t.wheel->detached, 1);
  EXPECT_EQ(ended, (Texts{"MouseEvent, dialog there", "pcSystem", "DataHelper", "CodeRule",
                          "LogHelper", "GridNavigator"}));
}

TEST(Lifecycle, AViewThatEndsLetsGoOfTheHostAsClearDoes) {
  auto wheel = std::make_shared<TestWheel>();
  auto book = MakeBook();
  book.Environment().make_mouse_event = [&] { return wheel; };
  ScriptedUser user;
  {
    maintenance::Kjkm view(user);
    ASSERT_TRUE(view.Init(book.System(), 0, 0));
  }
  EXPECT_EQ(wheel->detached, 1);
  EXPECT_FALSE(wheel->turn) << "a wheel that is turned now reaches nobody";
}

/// A window that cannot follow its model.
class BrokenPeer : public viewkit::Peer {
 public:
  [[nodiscard]] std::intptr_t Handle() const override { return 1; }
  void Update(const viewkit::Change&) override { throw std::runtime_error("窗口"); }
  bool TakeFocus() override { return false; }
};

TEST(Lifecycle, AGridThatCannotBeSetUpStopsInit) {
  ViewTest t;
  BrokenPeer broken;
  t.Grid(2).SetPeer(&broken);
  EXPECT_FALSE(t.view.Init(t.host.System(), 0, 0));
  EXPECT_EQ(t.reports, Texts());
  EXPECT_TRUE(t.Grid(1).ColHidden(4));
  EXPECT_FALSE(t.Grid(3).Cols() == 7) << "the grids behind it are not set up";
  EXPECT_EQ(t.host.Calls().back().name, "SettingEntry.Value");
  EXPECT_EQ(t.host.Count("GetSetting"), 1) << "no code rule";
  EXPECT_FALSE(t.view.FileNew());
  EXPECT_EQ(t.user.dialogs, 0);
  t.Grid(2).SetPeer(nullptr);
}

TEST(Lifecycle, AfterAFailedInitCommandsReportAndDoNothing) {
  ViewTest sound;
  ASSERT_TRUE(sound.view.Init(sound.host.System(), 0, 0));
  const auto calls = sound.host.Calls();
  for (int call = 0; call < static_cast<int>(calls.size()); ++call) {
    SCOPED_TRACE(std::to_string(call) + " " + calls[static_cast<std::size_t>(call)].name);
    ViewTest t;
    t.Start();
    t.Select("100201");
    t.view.Clear();
    t.host.Clear();
    t.wheel->range = -1;
    t.host.FailAt(call, Fault::kThrow);
    EXPECT_THROW((void)t.view.Init(t.host.System(), 0, 0), host::HostError);
    t.host.Clear();
    EXPECT_FALSE(t.view.Refresh() || t.view.FileNew() || t.view.FileNewNext() ||
                 t.view.FileEdit() || t.view.FileDelete() || t.view.RecordTop() ||
                 t.view.Find("x"));
    EXPECT_EQ(t.reports.size(), 7U);
    EXPECT_EQ(t.reports[0], "刷新数据时出错：控件尚未初始化|8|测试程序");
    EXPECT_EQ(t.host.Calls().size(), 0U);
    EXPECT_EQ(t.wheel->range, -1);
    t.Grid().SetTopRow(2);
    EXPECT_LE(t.wheel->position, 8) << "the rate is that of no setting";
    EXPECT_TRUE(t.user.questions.empty());
  }
}

TEST(Lifecycle, ClearReleasesEverythingEvenWhenDetachingFails) {
  ViewTest t;
  t.Start();
  const std::weak_ptr<host::SystemObject> system = t.host.System();
  t.host.FailNext("MouseEvent.Detach", Fault::kThrow);
  t.view.Clear();
  EXPECT_EQ(t.reports, Texts());
  const long others = system.use_count();
  t.Start();
  EXPECT_GT(system.use_count(), others);
  t.view.Clear();
  EXPECT_EQ(system.use_count(), others);
}

TEST(Lifecycle, AFailureOfTheHostLeavesInitAsAnErrorWithoutReport) {
  ViewTest t;
  ASSERT_TRUE(t.view.Init(t.host.System(), 0, 0));
  const auto calls = t.host.Calls();
  ASSERT_GT(calls.size(), 8U);
  for (int call = 0; call < static_cast<int>(calls.size()); ++call) {
    for (const Fault fault : {Fault::kThrow, Fault::kNull}) {
      if (!calls[static_cast<std::size_t>(call)].Allows(fault)) continue;
      ViewTest failing;
      failing.host.FailAt(call, fault);
      EXPECT_THROW((void)failing.view.Init(failing.host.System(), 0, 0), host::HostError)
          << calls[static_cast<std::size_t>(call)].name;
      EXPECT_EQ(failing.reports, Texts());
      EXPECT_TRUE(failing.view.Init(failing.host.System(), 0, 0)) << "and a second try works";
    }
  }
  EXPECT_THROW((void)t.view.Init(nullptr, 0, 0), host::HostError);
}

TEST(Wheel, TheRateComesFromTheSettingLeniently) {
  // 8 accounts: 9 rows, 8 after the header.
  const std::map<std::string, std::int32_t> ranges = {{"", 1},    {"0", 1},   {"abc", 1},
                                                      {"2.5", 3}, {"-3", -2}, {" 4 rows", 2}};
  for (const auto& [setting, range] : ranges) {
    ViewTest t;
    t.book.SetSetting("system", "mouseeventscrollrate", setting);
    t.Start();
    EXPECT_EQ(t.wheel->range, range) << setting;
  }
}

TEST(Wheel, SmallValuesAreRowsAndOthersAreScaled) {
  ViewTest t(MakeBook(test::ManyAccounts()));
  t.book.SetSetting("system", "mouseeventscrollrate", "2.5");
  t.view.Resize(9000, 6000);
  t.Start();
  t.wheel->turn(2);
  EXPECT_EQ(t.Grid().TopRow(), 2);
  t.wheel->turn(3);  // 7.5 rounds to the even neighbour
  EXPECT_EQ(t.Grid().TopRow(), 8);
  EXPECT_EQ(t.wheel->position, -1) << "the wheel knows where it has scrolled to";
  t.Grid().SetTopRow(50);
  EXPECT_EQ(t.wheel->position, 20) << "wheel and scroll bar stay in step";
  t.wheel->turn(2000000000);
  const int last = t.Grid().TopRow();
  EXPECT_GT(last, 150);
  EXPECT_TRUE(t.Grid().IsInView(200));
  t.wheel->turn(-7);
  EXPECT_EQ(t.Grid().TopRow(), 1);
  EXPECT_EQ(t.reports, Texts());
}

TEST(SavedAccount, IsBroughtIntoView) {
  ViewTest t(MakeBook(test::ManyAccounts()));
  t.view.Resize(9000, 6000);
  t.Start();
  t.Select("1001");
  t.Sql(
      "insert into gl_code(i_ID,ccode,ccode_name,igrade,cclass) values(900,'11905','新',1,'资产')");
  ASSERT_FALSE(t.Grid().IsInView(190));
  t.SaveInDialog(true, 900);
  EXPECT_TRUE(t.view.FileNew());
  EXPECT_EQ(t.Grid().TextMatrix(t.Grid().Row(), 1), "新");
  EXPECT_TRUE(t.Grid().IsInView(t.Grid().Row()));
  const int top = t.Grid().TopRow();
  t.Select("1189");
  t.SaveInDialog(false, 900);
  EXPECT_TRUE(t.view.FileEdit());
  EXPECT_EQ(t.Grid().TopRow(), top) << "what is in view stays where it is";
}

/// Twenty accounts of the first level with a hundred below each.
std::vector<desk::book::Account> DeepAccounts() {
  std::vector<desk::book::Account> accounts;
  for (int head = 1001; head < 1021; ++head) {
    accounts.push_back({.code = std::to_string(head), .name = "户", .category = "资产"});
    for (int leaf = 100; leaf < 200; ++leaf) {
      accounts.push_back(
          {.code = std::to_string(head * 1000 + leaf), .name = "明细", .category = "资产"});
    }
  }
  return accounts;
}

TEST(Wheel, EachNotchMovesAChartThatIsCollapsed) {
  ViewTest t(MakeBook(DeepAccounts(), "43"));
  t.view.Resize(9000, 2500);
  t.Start();
  const auto turns = [&](bool heard, std::initializer_list<int> notches) {
    std::vector<int> positions;
    int value = t.wheel->position;
    for (const int notch : notches) {
      value = (heard ? t.wheel->position : value) + notch;
      t.wheel->turn(value);
      positions.push_back(t.Grid().ShownPosition(t.Grid().TopRow()));
    }
    return positions;
  };
  ASSERT_EQ(t.Grid().ShownRows(), 20);
  t.Grid().SetTopRow(102);
  EXPECT_EQ(turns(true, {1, 1, 1, -1, -1, -1}), (std::vector{2, 3, 4, 3, 2, 1}));
  // A source that does not listen while its wheel turns.
  EXPECT_EQ(turns(false, {1, 1, 1}), (std::vector{2, 3, 4}));
}

TEST(Wheel, AGridThatGetsTheFocusTakesTheSource) {
  ViewTest t;
  t.Start();
  t.wheel->Attach(4711);
  t.wheel->attached = 0;
  EXPECT_TRUE(t.Grid().SetFocus());
  EXPECT_EQ(t.wheel->attached, 1);
  EXPECT_EQ(t.wheel->AttachedTo(), t.Grid().WindowHandle());
  t.Grid().NotifyFocus(false);
  EXPECT_TRUE(t.Grid().SetFocus());
  EXPECT_EQ(t.wheel->attached, 1) << "it is attached already";
  t.wheel->Attach(4711);
  t.Grid().NotifyFocus(false);
  t.host.FailNext("MouseEvent.Attach", Fault::kThrow, "x");
  EXPECT_TRUE(t.Grid().SetFocus());
  t.host.FailNext("MouseEvent.Position", Fault::kThrow, "x");
  t.Grid().SetTopRow(3);
  EXPECT_EQ(t.reports, (Texts{"Vs_GotFocus->x|8|测试程序", "Vs_AfterScroll->x|8|测试程序"}));
}

TEST(Design, WhatTheHostHasPlacedStaysUntilTheViewIsResized) {
  ViewTest t;
  t.view.Resize(9000, 6000);
  const host::Bounds was = t.Grid().GetBounds();
  t.Grid().SetBounds({300, 2000, 4000, 1000});
  t.view.Resize(9000, 6000);
  EXPECT_EQ(t.Grid().GetBounds().left, 300);
  t.view.Resize(9000, 6015);
  EXPECT_EQ(t.Grid().GetBounds().left, was.left);
}

TEST(Design, BackColorIsTheOnlyParameter) {
  ViewTest t;
  const auto parameters = std::make_shared<desk::book::ParameterList>();
  const viewkit::Color before = t.view.BackColor();
  t.view.SetParameters(nullptr);
  parameters->Set("forecolor", 1);
  t.view.SetParameters(parameters);
  EXPECT_EQ(t.view.BackColor(), before);
  parameters->Set("backcolor", host::Value(static_cast<std::int64_t>(0x8000000FU)));
  t.view.SetParameters(parameters);
  EXPECT_EQ(t.view.BackColor(), 0x8000000FU);
  parameters->Set("backcolor", -2147483643);  // the same kind of colour, as a signed Long
  t.view.SetParameters(parameters);
  EXPECT_EQ(t.view.BackColor(), 0x80000005U);
  EXPECT_EQ(t.Tabs().BackColor(), 0x80000005U);
  parameters->Set("backcolor", "黑");
  t.view.SetParameters(parameters);
  EXPECT_EQ(t.view.BackColor(), 0x80000005U) << "what is no number is no colour";
  ASSERT_EQ(t.reports.size(), 1U);
  EXPECT_TRUE(t.reports[0].starts_with("IDesignUI_Parameters->")) << t.reports[0];
}

}  // namespace
}  // namespace tavrix::test
