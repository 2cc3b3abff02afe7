#include "book/host/parameters.h"
#include "editing/fm_bkm_add.h"
#include "layout/layout_support.h"
#include "maintenance/kjkm.h"
#include "picker/sel_kjkm.h"
#include "support/controls.h"
#include "support/scripted_user.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/dialog_model.h"
#include "viewkit/controls/label.h"
#include "viewkit/tree/tree_view.h"

namespace tavrix {
namespace {

using viewkit::FlexGrid;
using viewkit::Lines;

/// The views as a host drives them; their files lie in a folder of the user's own.
class ViewStatusTest : public testing::Test {
 protected:
  ViewStatusTest() { book_.Environment().user_folder = folder_.Path(); }

  [[nodiscard]] std::string FileOf(const std::string& name) {
    return viewkit::GetSelfFilePath(name, *book_.System());
  }
  [[nodiscard]] std::string Stored(const std::string& name, const std::string& section,
                                   const std::string& key) {
    desk::book::SharedSettingsFile file;
    file.SetFileName(FileOf(name));
    return file.ReadValue(section, key, "(none)");
  }
  void Write(const std::string& name, const std::string& text) {
    std::ofstream(desk::book::PathOf(FileOf(name)), std::ios::binary) << text;
  }
  test::TempFolder folder_;
  desk::book::Book book_ = test::MakeBook();
  test::ScriptedUser user_;
};

class KjkmStatusTest : public ViewStatusTest {
 protected:
  void Start(maintenance::Kjkm& view) {
    view.ErrMessage.Add([this](const std::string& text, std::int32_t, const std::string&) {
      reports_.push_back(text);
    });
    ASSERT_TRUE(view.Init(book_.System(), 0, 0));
    ASSERT_TRUE(view.Refresh());
  }
  Lines reports_;
};

TEST_F(KjkmStatusTest, SavedInFullRestoredByWidths) {
  {
    maintenance::Kjkm view(user_);
    Start(view);
    auto& page = test::Find<FlexGrid>(view, "Vs", 2);
    page.SetColWidth(1, 3210);
    page.SetColWidth(2, 0);
    page.SetFrozenCols(1);
    page.SetColAlignment(3, viewkit::Alignment::kRightCenter);
    view.DoSaveFormStatus();
  }
  EXPECT_EQ(Stored("Kjkm", "VsColWidth_2", "VsCol1"), "3210");
  EXPECT_EQ(Stored("Kjkm", "Vs_2", "VsFixedCols"), "1");
  EXPECT_EQ(Stored("Kjkm", "Vs_2", "VsRowHeight"), "350");
  EXPECT_EQ(Stored("Kjkm", "VsColAlignment_2", "VsCol3"), "7");
  EXPECT_EQ(Stored("Kjkm", "VsIsHidden_0", "VsCol4"), "0") << "hidden otherwise than by its width";

  maintenance::Kjkm view(user_);
  Start(view);
  view.DoGetFormStatus();
  auto& page = test::Find<FlexGrid>(view, "Vs", 2);
  EXPECT_EQ(page.ColWidth(1), 3210);
  EXPECT_EQ(page.ColWidth(2), 0);
  EXPECT_EQ(page.FrozenCols(), 0);
  EXPECT_EQ(page.ColAlignment(3), viewkit::Alignment::kLeftCenter);
  EXPECT_NE(test::Find<FlexGrid>(view, "Vs", 3).ColWidth(1), 3210) << "each page has its own";
  EXPECT_EQ(reports_, Lines());
}

TEST_F(KjkmStatusTest, RestoringNeitherWritesNorSorts) {
  Write("Kjkm", "[VsIsSort_0]\nVsCol0=8\n[VsIsTotalOn_0]\nVsCol5=1\n[VsColWidth_0]\nVsCol1=99\n");
  maintenance::Kjkm view(user_);
  Start(view);
  auto& page = test::Find<FlexGrid>(view, "Vs", 0);
  const auto before = viewkit::Shown(page);
  view.DoGetFormStatus();
  EXPECT_EQ(page.ColWidth(1), 99);
  EXPECT_EQ(viewkit::Shown(page), before);
  std::filesystem::remove(desk::book::PathOf(FileOf("Kjkm")));
  view.DoGetFormStatus();
  EXPECT_FALSE(std::filesystem::exists(desk::book::PathOf(FileOf("Kjkm"))));
}

TEST_F(KjkmStatusTest, AHiddenFirstColumnStaysHidden) {
  Write("Kjkm", "[VsIsHidden_0]\nVsCol0=1\n");
  maintenance::Kjkm view(user_);
  Start(view);
  view.DoGetFormStatus();
  auto& page = test::Find<FlexGrid>(view, "Vs", 0);
  page.SetRow(1);
  user_.in_dialog = [](viewkit::DialogModel& dialog) {
    dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(false, 1);
    dialog.Unload();
  };
  EXPECT_TRUE(view.FileEdit());
  EXPECT_EQ(page.ColWidth(0), 0);
  EXPECT_TRUE(view.Refresh());
  EXPECT_EQ(page.ColWidth(0), 0);
}

TEST_F(KjkmStatusTest, NothingIsReported) {
  maintenance::Kjkm view(user_);
  view.ErrMessage.Add([this](const std::string& text, std::int32_t, const std::string&) {
    reports_.push_back(text);
  });
  view.DoSaveFormStatus();
  view.DoGetFormStatus();
  test::Recorder host(book_.System());
  ASSERT_TRUE(view.Init(host.System(), 0, 0));
  for (const char* call : {"Folders", "CreateHelper", "SettingsFile.WriteValue"}) {
    for (const auto fault : {test::Fault::kThrow, test::Fault::kNull}) {
      host.FailNext(call, fault);
      view.DoSaveFormStatus();
      view.DoGetFormStatus();
      host.Clear();
    }
  }
  book_.Environment().user_folder = folder_.File("missing");
  view.DoSaveFormStatus();
  view.DoGetFormStatus();
  EXPECT_EQ(reports_, Lines());
  EXPECT_FALSE(std::filesystem::exists(desk::book::PathOf(folder_.File("missing"))));
}

class PickerStatusTest : public ViewStatusTest {
 protected:
  void Start(picker::selKjkm& view) {
    view.SetContainerName("凭证:科目");
    ASSERT_TRUE(view.Init(book_.System(), 77, ""));
    ASSERT_TRUE(view.Refresh());
  }
  static Lines CodesAndTotals(picker::selKjkm& view) {
    Lines lines;
    const auto& grid = test::Find<FlexGrid>(view, "Vs");
    for (int row = 1; row < grid.Rows(); ++row) {
      lines.push_back(grid.DisplayText(row, 1) + "|" + grid.DisplayText(row, 7));
    }
    return lines;
  }
  static constexpr const char* kName = "77凭证_科目";
  /// Accounts grouped by category, their leaves counted by adding.
  static constexpr const char* kTotals =
      "[VsIsGroupOn]\nVsCol5=1\n[VsIsTotalOn]\nVsCol7=1\n[VsIsSort]\nVsCol5=7\n";
};

TEST_F(PickerStatusTest, SavedAndRestoredInFull) {
  {
    picker::selKjkm view(user_);
    Start(view);
    auto& grid = test::Find<FlexGrid>(view, "Vs");
    grid.SetColWidth(2, 4321);
    grid.SetFrozenCols(2);
    grid.SetColWidth(0, 0);
    test::Find<viewkit::CheckBox>(view, "Chk").SetValue(1);
    test::Find<viewkit::CheckBox>(view, "Check").SetValue(1);
    test::Find<viewkit::TreeView>(view, "TV").Nodes().Item("r成本").SetSelected(true);
    view.DoSaveFormStatus();
  }
  EXPECT_EQ(Stored(kName, "Form", "TREEVIEW_TV"), "成本");
  EXPECT_EQ(Stored(kName, "Form", "SEARCHBOX_SearchBox1"), "FilterMode=1");

  picker::selKjkm view(user_);
  Start(view);
  view.DoGetFormStatus();
  const auto& grid = test::Find<FlexGrid>(view, "Vs");
  EXPECT_EQ(grid.ColWidth(2), 4321);
  EXPECT_EQ(grid.FrozenCols(), 2);
  EXPECT_EQ(grid.ColWidth(0), 0);
  EXPECT_EQ(test::Find<viewkit::CheckBox>(view, "Chk").Value(), 1);
  EXPECT_TRUE(test::Find<viewkit::SearchBox>(view, "SearchBox1").FilterMode());
  EXPECT_EQ(test::Find<viewkit::TreeView>(view, "TV").SelectedItem()->Key(), "r成本");
  EXPECT_EQ(CodesAndTotals(view), (Lines{"5001|0", "500101|0", "50010101|1"}));
}

TEST_F(PickerStatusTest, TotalsOutliveEachLoad) {
  Write(kName, kTotals);
  picker::selKjkm view(user_);
  Start(view);
  view.DoGetFormStatus();
  const Lines all = CodesAndTotals(view);
  EXPECT_EQ(all, (Lines{"5001|0", "500101|0", "50010101|1", "|1", "2202|1", "|1", "1001|1",
                        "1002|0", "100201|1", "100202|1", "|3", "|5"}));
  auto& tree = test::Find<viewkit::TreeView>(view, "TV");
  auto& grid = test::Find<FlexGrid>(view, "Vs");
  grid.SetColWidth(2, 1111);
  tree.Nodes().Item("r负债").SetSelected(true);
  EXPECT_EQ(CodesAndTotals(view), (Lines{"2202|1", "|1", "|1"}));
  EXPECT_EQ(test::Find<viewkit::Label>(view, "LblCount").Caption(), "共:1条");
  EXPECT_EQ(grid.ColWidth(2), 1111) << "what the user has done since stays";
  tree.Nodes().Item("r").SetSelected(true);
  EXPECT_EQ(CodesAndTotals(view), all);
  view.Clear();
  Start(view);
  EXPECT_EQ(CodesAndTotals(view).size(), 8U) << "a picker begun anew has no status yet";
}

TEST_F(PickerStatusTest, ANewAccountJoinsItsGroup) {
  Write(kName, "[VsIsGroupOn]\nVsCol5=1\n[VsIsTotalOn]\nVsCol7=1\n");
  picker::selKjkm view(user_);
  Start(view);
  view.DoGetFormStatus();
  test::Run(book_,
            "insert into gl_code(i_id,ccode,ccode_name,cclass,bclose,bend)"
            "values(77,'1003','备用金','资产',0,1)");
  user_.in_dialog = [](viewkit::DialogModel& dialog) {
    dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(true, 77);
    dialog.Unload();
  };
  test::Find<viewkit::CommandButton>(view, "Cmd", 3).Click();
  EXPECT_EQ(CodesAndTotals(view),
            (Lines{"1001|1", "1002|0", "100201|1", "100202|1", "1003|1", "|4", "2202|1", "|1",
                   "5001|0", "500101|0", "50010101|1", "|1", "|6"}));
  auto& grid = test::Find<FlexGrid>(view, "Vs");
  EXPECT_EQ(grid.Row(), 5);
  auto& search = test::Find<viewkit::SearchBox>(view, "SearchBox1");
  search.SetText("资产小计");
  search.Search();
  EXPECT_EQ(grid.Row(), 5) << "a total is no find";
}

TEST_F(PickerStatusTest, ATotalIsNoAccount) {
  Write(kName, "[VsIsTotalOn]\nVsCol0=1\n");
  picker::selKjkm view(user_);
  Start(view);
  view.DoGetFormStatus();
  auto& grid = test::Find<FlexGrid>(view, "Vs");
  ASSERT_TRUE(grid.IsTotalRow(9));
  grid.SetTextMatrix(9, 0, "3");
  grid.SetSelected(2, true);
  grid.SetSelected(9, true);
  grid.DoubleClick.Raise();
  ASSERT_TRUE(view.Selected());
  ASSERT_EQ(view.Selected()->Count(), 1);
  EXPECT_EQ(view.Selected()->At(0)->ccode, "1002");
  EXPECT_EQ(test::Find<viewkit::Label>(view, "LblCount").Caption(), "共:8条，已选中1条");

  grid.SetRow(9);
  user_.in_dialog = [](viewkit::DialogModel& dialog) {
    EXPECT_EQ(dialog.Caption(), "新增同级") << "no account that could be changed";
    dialog.Unload();
  };
  test::Find<viewkit::CommandButton>(view, "Cmd", 3).Click();
  EXPECT_EQ(user_.dialogs, 1);
}

}  // namespace
}  // namespace tavrix
