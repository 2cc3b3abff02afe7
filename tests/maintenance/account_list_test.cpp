#include <string>
#include <utility>

#include "maintenance/view_test.h"

namespace tavrix::test {
namespace {

TEST(AccountList, EveryPageShowsItsAccountsInCodeOrderWithFirstLevelOpen) {
  ViewTest t;
  t.Start();
  const Texts all = {"1001", "1002", ".100201", ".100202", "2202", "5001", ".500101", "..50010101"};
  EXPECT_EQ(t.Codes(0), all);
  EXPECT_EQ(t.Codes(1), (Texts{"1001", "1002", ".100201", ".100202"}));
  EXPECT_EQ(t.Codes(2), (Texts{"2202"}));
  EXPECT_EQ(t.Codes(3), Texts());
  EXPECT_EQ(t.Codes(5), (Texts{"5001", ".500101", "..50010101"}));

  viewkit::FlexGrid& grid = t.Grid(0);
  EXPECT_EQ(grid.ShownRows(), 4);
  EXPECT_EQ(grid.Row(), 0) << "no account is current after a load";
  EXPECT_EQ(grid.TextMatrix(3, 1), "工行");
  EXPECT_EQ(grid.TextMatrix(3, 4), "3");
  EXPECT_EQ(grid.TextMatrix(3, 6), "资产");
  std::string captions;
  for (int col = 0; col < grid.Cols(); ++col) {
    captions += "|" + std::string(grid.TextMatrix(0, col));
    EXPECT_EQ(grid.FixedAlignment(col), viewkit::Alignment::kCenterCenter);
    EXPECT_EQ(grid.ColHidden(col), col > 3) << col;
    if (col > 3) continue;
    EXPECT_EQ(grid.ColAlignment(col), viewkit::Alignment::kLeftCenter) << col;
  }
  EXPECT_EQ(captions, "|科目编码|科目名称|外币币种|辅助核算|科目ID|级次|类别");
  EXPECT_EQ(grid.FixedRows() * 10 + grid.FixedCols(), 10);
  const viewkit::FlexGrid::Look look = grid.GetLook();
  EXPECT_TRUE(!look.grid_lines && look.resize_columns && look.resize_rows);
  EXPECT_EQ(look.outline_bar, 5);
  grid.HandlePress(1, 1, false);
  grid.HandlePress(2, 1, false, {.shift = true});
  EXPECT_EQ(grid.SelectedRows(), 1) << "one account at a time";
}

TEST(AccountList, AsksForEachPageOnceAndShowsItsProgress) {
  ViewTest t;
  ASSERT_TRUE(t.view.Init(t.host.System(), 0, 0));
  EXPECT_EQ(t.Grid().Rows(), 1) << "Init loads nothing";
  t.host.Clear();
  ASSERT_TRUE(t.view.Refresh());
  const std::string start = "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code";
  Texts expected = {start + " order by ccode"};
  for (const std::string category : {"资产", "负债", "共同", "权益", "成本", "损益"}) {
    expected.push_back(start + " where cclass='" + category + "' order by ccode");
  }
  EXPECT_EQ(t.host.Statements(), expected);
  ASSERT_EQ(t.events.size(), 14U);
  EXPECT_EQ(t.events[0], "Message:正在加载数据...");
  EXPECT_EQ(t.events[1], "Message:");
  EXPECT_EQ(t.user.wait_depth, 0);
  EXPECT_EQ(t.user.deepest_wait, 1);
}

TEST(AccountList, AnEmptyChartLeavesHeaders) {
  ViewTest t(MakeBook({}));
  t.Start();
  for (int page = 0; page < 7; ++page) EXPECT_EQ(t.Grid(page).Rows(), 1);
  EXPECT_GT(t.Grid().ColWidth(0), t.Grid().Measure().Width("科目编码", false) - 1);
  EXPECT_LT(t.Grid().ColWidth(0), t.Grid().Measure().Width("科目编码          ", false) + 300);
}

TEST(AccountList, AFailedPageIsReportedAndStopsTheLoad) {
  ViewTest t;
  t.Start();
  t.Sql("update gl_code set ccode_name='改名'");
  // The third page's recordset fails; its rows are gone, later pages keep what they held.
  t.host.Clear();
  ASSERT_TRUE(t.view.Refresh());
  const auto calls = t.host.Calls();
  int third = -1;
  for (int call = 0, opened = 0; call < static_cast<int>(calls.size()); ++call) {
    if (calls[static_cast<std::size_t>(call)].name == "Statement.Recordset" && ++opened == 3)
      third = call;
  }
  ASSERT_GE(third, 0);
  t.Sql("update gl_code set ccode_name='再改名'");
  t.events.clear();
  t.wheel->attached = 0;
  t.host.FailAt(third, Fault::kThrow, "连接断开");
  EXPECT_TRUE(t.view.Refresh()) << "the failure has been reported already";
  EXPECT_EQ(t.reports, (Texts{"DoRefresh连接断开|8|测试程序"}));
  EXPECT_EQ(t.events, (Texts{"Message:正在加载数据...", "Message:", "Message:正在加载数据...",
                             "Message:", "Message:正在加载数据...", "ErrMessage", "Message:"}));
  EXPECT_EQ(t.user.wait_depth, 0);
  EXPECT_EQ(t.Grid(1).TextMatrix(1, 1), "再改名");
  EXPECT_EQ(t.Grid(2).Rows(), 1);
  EXPECT_EQ(t.Grid(5).TextMatrix(1, 1), "改名");
  EXPECT_EQ(t.wheel->attached, 1) << "the wheel is armed all the same";

  ASSERT_TRUE(t.view.Refresh());
  EXPECT_EQ(t.Codes(2), (Texts{"2202"})) << "the next refresh works again";
}

TEST(AccountList, ALoadThatTheHostInterruptsShowsNothingOfTheOldBook) {
  ViewTest t;
  t.Start();
  desk::book::Book other = MakeBook({{.code = "9001", .name = "另一账簿", .category = "资产"}});
  bool once = true;
  t.host.BeforeEach([&](const std::string&) {
    if (!std::exchange(once, false)) return;
    t.view.Clear();
    ASSERT_TRUE(t.view.Init(other.System(), 0, 0) && t.view.Refresh());
  });
  EXPECT_FALSE(t.view.Refresh());
  EXPECT_EQ(t.Codes(), (Texts{"9001"}));
  EXPECT_EQ(t.reports, Texts());
}

TEST(AccountList, EveryFailingCallOfALoadClosesItsRecordset) {
  ViewTest sound;
  sound.Start();
  ASSERT_TRUE(sound.view.Refresh());
  const auto calls = sound.host.Calls();
  EXPECT_EQ(sound.host.OpenRecordsets(), 0);
  for (int call = 0; call < static_cast<int>(calls.size()) / 7; ++call) {  // those of one page
    ViewTest t;
    t.Start();
    t.host.FailAt(call, Fault::kThrow);
    EXPECT_TRUE(t.view.Refresh());
    EXPECT_EQ(t.reports.size(), 1U);
    EXPECT_EQ(t.host.OpenRecordsets(), 0) << calls[static_cast<std::size_t>(call)].name;
  }
}

TEST(AccountList, AMissingTableIsReportedWithTheDatabasesText) {
  ViewTest t;
  t.Start();
  t.Sql("drop table gl_code");
  EXPECT_TRUE(t.view.Refresh());
  ASSERT_EQ(t.reports.size(), 1U);
  EXPECT_TRUE(t.reports[0].starts_with("DoRefresh")) << t.reports[0];
  EXPECT_NE(t.reports[0].find("gl_code"), std::string::npos) << t.reports[0];
}

TEST(AccountList, OddRowsAreShownWhole) {
  ViewTest t;
  t.Start();
  const std::string long_name(10000, 'x');
  t.Sql("update gl_code set ccode_name='" + long_name + "' where ccode='1001'");
  t.Sql("update gl_code set igrade=2000000000 where ccode='1002'");
  t.Sql("update gl_code set igrade=-5 where ccode='100201'");
  t.Sql(
      "insert into gl_code(i_ID,ccode,ccode_name,igrade,cclass) values(90,'甲-7 "
      "b','规则外',1,'资产')");
  ASSERT_TRUE(t.view.Refresh());
  EXPECT_EQ(t.reports, Texts());
  EXPECT_EQ(t.Grid().TextMatrix(1, 1), long_name);
  EXPECT_EQ(t.Codes().back(), "甲-7 b");
  EXPECT_EQ(t.Grid().RowOutlineLevel(t.Grid().FindRow("100201", 1, 0)), 0);
}

TEST(AccountList, TabsChangeThePageAndReloadNothing) {
  ViewTest t;
  t.Start();
  t.wheel->attached = 0;
  t.Tabs().SetCurrTab(5);
  for (int page = 0; page < 7; ++page) EXPECT_EQ(t.Grid(page).Visible(), page == 5) << page;
  EXPECT_EQ(t.wheel->attached, 1);
  EXPECT_EQ(t.wheel->range, 3 / 5);
  EXPECT_EQ(t.host.Statements(), Texts());

  t.host.FailNext("MouseEvent.Attach", Fault::kThrow, "窗口无效");
  t.Tabs().SetCurrTab(1);
  EXPECT_EQ(t.reports, (Texts{"Kjkm-->vxVSTab_TabActivated::窗口无效|8|测试程序"}));
  EXPECT_TRUE(t.Grid(1).Visible());
}

struct SavedCase {
  const char* code;
  const char* category;
  int page;
  bool shown;
};

TEST(SavedAccount, ANewOneStandsAtItsPlaceOnThePageThatTakesIt) {
  for (const SavedCase& saved :
       {SavedCase{"100203", "资产", 0, true}, SavedCase{"100203", "资产", 1, true},
        SavedCase{"2203", "负债", 1, false}, SavedCase{"2203", "负债", 0, true}}) {
    ViewTest t;
    t.Start();
    t.Tabs().SetCurrTab(saved.page);
    t.Select("1001", saved.page);
    const Texts before = t.Codes(saved.page);
    t.Sql(std::string(
              "insert into gl_code(i_ID,ccode,ccode_name,igrade,cclass,cexch_name) values(77,'") +
          saved.code + "','新户'," + (std::string(saved.code).size() == 4 ? "1" : "2") + ",'" +
          saved.category + "','美元')");
    t.SaveInDialog(true, 77);
    EXPECT_TRUE(t.view.FileNew());
    EXPECT_EQ(t.reports, Texts());
    viewkit::FlexGrid& grid = t.Grid(saved.page);
    if (!saved.shown) {
      EXPECT_EQ(t.Codes(saved.page), before);
      continue;
    }
    EXPECT_EQ(t.Codes(saved.page).size(), before.size() + 1);
    EXPECT_EQ(grid.TextMatrix(grid.Row(), 0), saved.code);
    EXPECT_TRUE(grid.IsShown(grid.Row())) << "its ancestors are expanded";
    EXPECT_EQ(grid.TextMatrix(grid.Row(), 2), "美元");
    EXPECT_EQ(grid.TextMatrix(grid.Row(), 4), "77");
    EXPECT_EQ(t.Codes(2), (Texts{"2202"})) << "other pages wait for the next refresh";
  }
}

TEST(SavedAccount, AChangedOneReplacesItsRow) {
  ViewTest t;
  t.Start();
  t.Select("1001");
  t.Sql("update gl_code set ccode='100299',igrade=2,ccode_name='移' where ccode='1001'");
  t.SaveInDialog(false, 1);
  EXPECT_TRUE(t.view.FileEdit());
  EXPECT_EQ(t.Codes(), (Texts{"1002", ".100201", ".100202", ".100299", "2202", "5001", ".500101",
                              "..50010101"}));
  EXPECT_EQ(t.Grid().TextMatrix(t.Grid().Row(), 1), "移");
  EXPECT_TRUE(t.Grid().IsShown(t.Grid().Row()));
}

TEST(SavedAccount, ARefreshWhileTheDialogIsOpenDoesNoHarm) {
  ViewTest t;
  t.Start();
  t.Select("2202");
  t.user.in_dialog = [&](viewkit::DialogModel& dialog) {
    ASSERT_TRUE(t.view.Refresh());
    t.Sql("update gl_code set ccode_name='应付' where ccode='2202'");
    dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(false, 5);
    dialog.Unload();
  };
  EXPECT_TRUE(t.view.FileEdit());
  EXPECT_EQ(t.Codes().size(), 8U);
  EXPECT_EQ(t.Grid().TextMatrix(0, 1), "科目名称");
  EXPECT_EQ(t.Grid().TextMatrix(t.Grid().FindRow("2202", 1, 0), 1), "应付");
}

TEST(SavedAccount, AfterAClearUnderTheDialogASaveIsNotTheViewsConcern) {
  ViewTest t;
  t.Start();
  t.Select("2202");
  desk::book::Book other = MakeBook({{.code = "9001", .name = "另一账簿", .category = "资产"}});
  t.user.in_dialog = [&](viewkit::DialogModel& dialog) {
    t.view.Clear();
    ASSERT_TRUE(t.view.Init(other.System(), 0, 0) && t.view.Refresh());
    t.host.Clear();
    dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(false, 1);
    dialog.Unload();
  };
  EXPECT_TRUE(t.view.FileEdit());
  EXPECT_EQ(t.reports, Texts());
  EXPECT_EQ(t.Codes(), (Texts{"9001"}));
  EXPECT_EQ(t.Grid().Row(), 0);
}

TEST(SavedAccount, AMissingOrUnreadableRowChangesNothing) {
  ViewTest t;
  t.Start();
  t.Select("1001");
  t.SaveInDialog(false, 12345);
  EXPECT_TRUE(t.view.FileEdit());
  EXPECT_EQ(t.Codes().size(), 8U);

  t.user.in_dialog = [&](viewkit::DialogModel& dialog) {
    t.host.FailNext("Statement.Recordset", Fault::kThrow, "读取失败");
    dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(true, 1);
    dialog.Unload();
  };
  EXPECT_TRUE(t.view.FileEdit());
  EXPECT_EQ(t.reports, (Texts{"mFrmBmAdd_EvHasLoad->读取失败|8|测试程序"}));
  EXPECT_EQ(t.Codes().size(), 8U);

  for (const char* call : {"Recordset.EOF", "Recordset.Fields"}) {
    t.user.in_dialog = [&](viewkit::DialogModel& dialog) {
      t.host.FailNext(call, Fault::kThrow, "读取失败");
      dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(true, 1);
      dialog.Unload();
    };
    EXPECT_TRUE(t.view.FileNew());
    EXPECT_EQ(t.Codes().size(), 8U);
    EXPECT_EQ(t.host.OpenRecordsets(), 0);
  }
}

}  // namespace
}  // namespace tavrix::test
