#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "picker/columns.h"
#include "picker/picker_support.h"
#include "support/matchers.h"

namespace tavrix::picker {
namespace {

using Values = std::vector<std::pair<std::string, host::Value>>;

std::string ListQuery(const std::string& driver, const std::string& where) {
  const std::string direction = driver == "jet" ? "iif(bproperty=1,'借','贷')"
                                                : "case when bproperty=1 then '借' else '贷' end ";
  return "SELECT i_id,ccode,ccode_name,chelp," + direction +
         ",cclass,bclose,bend FROM gl_code  WHERE " + where + " order by ccode";
}

class ListTest : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Dialects, ListTest, testing::ValuesIn(test::Engines()));

TEST_P(ListTest, SendsExactlyWhatTheParametersAllow) {
  struct Case {
    Values parameters;
    std::string where;            // between "ccode<>''" and " AND bclose=0"
    std::string tree_where = {};  // empty: the tree needs no query
  };
  const std::vector<Case> cases = {
      {{}, ""},
      {{{"科目编码", "1001,1002"}},
       " and (ccode like '1001%' or ccode like '1002%')",
       " and ccode in('1001,1002')"},
      {{{"科目编码", "1001,,1002"}},
       " and (ccode like '1001%' or ccode like '%' or ccode like '1002%')",
       " and ccode in('1001,,1002')"},
      {{{"科目编码", ","}}, " and (ccode like '%' or ccode like '%')", " and ccode in(',')"},
      {{{"科目编码", 1002}}, " and (ccode like '1002%')", " and ccode in('1002')"},
      {{{"科目编码", ""}, {"科目类别", "资产"}}, "", "-"},
      {{{"科目编码", host::Value()}, {"bcus", ""}}, " and bcus=", "-"},
      {{{"科目类别", "资产"}, {"bcus", 1}}, " and cclass='资产' and bcus=1"},
      {{{"科目类别", ""}}, " and cclass=''"},
      {{{"bsup", "1"}, {"bcus", 0.0}}, " and bcus=0 and bsup=1"},
      {{{"科目编码", "22"}, {"bsup", 1}},
       " and (ccode like '22%') and bsup=1",
       " and ccode in('22')"},
      {{{"single", "1.0"}, {"ismx", 1}}, ""},
  };
  for (const Case& c : cases) {
    PickerFixture f(GetParam());
    for (const auto& [key, value] : c.parameters) f.parameters->Set(key, value);
    std::vector<std::string> expected;
    if (!c.tree_where.empty()) {
      expected.push_back("select ccode,ccode_name,cclass,i_id from gl_code  where 1=1" +
                         (c.tree_where == "-" ? "" : c.tree_where) + " order by igrade,ccode");
    }
    expected.push_back(ListQuery(GetParam(), "ccode<>''" + c.where + " AND bclose=0"));
    EXPECT_EQ(f.StatementsOf([&] { f.picker.Refresh(); }), expected) << c.where;
  }
}

TEST_P(ListTest, AQuoteInACodePrefixIsRemovedForTheListButBreaksTheTree) {
  PickerFixture f(GetParam());
  f.parameters->Set("科目编码", "10'01");
  f.picker.Refresh();
  EXPECT_THAT(f.Column(), ElementsAre("1001"));
  ASSERT_EQ(f.user.questions.size(), 1U);
  EXPECT_EQ(f.user.questions[0].title, "FmMKjkm");
  EXPECT_EQ(f.user.questions[0].icon, viewkit::UserPort::Icon::kCritical);
  EXPECT_EQ(f.TV().Nodes().Count(), 1);
  EXPECT_EQ(f.recorder.Count("ErrorEntry.Clear"), 1);
}

TEST_P(ListTest, TheHostMayActWhileTheTreesErrorIsOnTheScreen) {
  const std::function<void(PickerFixture&)> acts[] = {[](PickerFixture& f) { f.picker.Clear(); },
                                                      [](PickerFixture& f) { f.Init(); },
                                                      [](PickerFixture& f) {
                                                        f.parameters->Set("科目编码", "1001");
                                                        f.picker.Refresh();
                                                      }};
  for (const auto& act : acts) {
    PickerFixture f(GetParam());
    f.parameters->Set("科目编码", "10'01");
    f.user.in_question = [&](const auto&) { act(f); };
    f.picker.Refresh();
    EXPECT_EQ(f.user.questions.size(), 1U);
    const bool loaded_anew = f.TV().Nodes().Find("k1001") != nullptr;
    EXPECT_EQ(f.TV().Nodes().Count(), loaded_anew ? 2 : 0);
    EXPECT_TRUE(f.TV().Painting());
    f.user.in_question = {};
    f.Init();
    f.parameters->Set("科目编码", "1001");
    f.picker.Refresh();
    EXPECT_EQ(f.TV().Nodes().Count(), 2);
  }
}

TEST_P(ListTest, ASecondInitLeavesTheHostsParametersAlone) {
  PickerFixture f(GetParam());
  f.parameters->Set("科目类别", "");
  f.Init();
  EXPECT_TRUE(f.parameters->Exists("科目类别"));
  f.picker.Refresh();
  EXPECT_EQ(f.TV().Nodes().Count(), 1);  // a category without a name has no node
  f.picker.Clear();
  EXPECT_FALSE(f.parameters->Exists("科目类别"));
}

TEST_P(ListTest, ShowsTheAccountsInTheirColumns) {
  PickerFixture f(GetParam());
  f.parameters->Set("科目编码", "2202,1002");
  f.picker.Refresh();
  EXPECT_THAT(f.Column(), ElementsAre("1002", "100201", "100202", "2202"));
  EXPECT_THAT(f.Column(0), ElementsAre("2", "3", "4", "5"));
  EXPECT_THAT(f.Column(2), ElementsAre("银行存款", "工行", "建行", "应付账款"));
  EXPECT_THAT(f.Column(3), ElementsAre("yhck", "gh", "jh", "yfzk"));
  EXPECT_THAT(f.Column(4), ElementsAre("借", "借", "借", "贷"));
  EXPECT_THAT(f.Column(5), ElementsAre("资产", "资产", "资产", "负债"));
  EXPECT_THAT(f.Column(7), ElementsAre("0", "1", "1", "1"));
  EXPECT_EQ(f.Count(), "共:4条");
  EXPECT_EQ(f.Message(), "");
  EXPECT_EQ(f.user.wait_depth, 0);
}

TEST_P(ListTest, TheTreeNarrowsTheList) {
  PickerFixture f(GetParam());
  f.picker.Refresh();
  EXPECT_THAT(f.StatementsOf([&] { f.SelectNode("r资产"); }),
              ElementsAre(ListQuery(GetParam(), "ccode<>'' AND cclass='资产' AND bclose=0")));
  EXPECT_THAT(f.Column(), ElementsAre("1001", "1002", "100201", "100202"));
  EXPECT_THAT(f.StatementsOf([&] { f.SelectNode("r资产"); }), IsEmpty());  // it stands already
  f.SelectNode("r");
  EXPECT_EQ(f.Column().size(), 8U);
  f.parameters->Set("科目编码", "");
  f.picker.Refresh();
  EXPECT_THAT(f.StatementsOf([&] { f.SelectNode("k1002"); }),
              ElementsAre(ListQuery(
                  GetParam(), "ccode<>'' AND ccode like '1002%' and ccode<>'1002' AND bclose=0")));
  EXPECT_THAT(f.Column(), ElementsAre("100201", "100202"));
  f.SelectNode("k1001");
  EXPECT_THAT(f.Column(), IsEmpty());
  EXPECT_EQ(f.Count(), "共:0条");
}

TEST_P(ListTest, ClosedAccountsAreShownOnRequest) {
  auto accounts = test::FewAccounts();
  accounts[0].closed = true;
  PickerFixture f(GetParam(), accounts);
  f.picker.Refresh();
  EXPECT_EQ(f.Column().size(), 7U);
  EXPECT_TRUE(f.Vs().ColHidden(6));
  EXPECT_THAT(f.StatementsOf([&] { f.Box("Chk").Click(); }),
              ElementsAre(ListQuery(GetParam(), "ccode<>''")));
  EXPECT_EQ(f.Column().size(), 8U);
  EXPECT_FALSE(f.Vs().ColHidden(6));
  EXPECT_EQ(f.Vs().CellForeColor(1, kName), viewkit::color::kGrayText) << "closed";
  EXPECT_NE(f.Vs().CellForeColor(2, kName), viewkit::color::kGrayText);
}

TEST(List, InitReadsItsSettings) {
  PickerFixture f;
  EXPECT_THAT(f.StatementsOf([&] { f.Init(); }),
              ElementsAre("select item_value from xt_accinformation where system_code='system' and "
                          "item_code='mouseeventscrollrate'",
                          "select progID from xt_objects where billitem=2015"));
  EXPECT_EQ(f.Search().ToolTipText(), "提示：按回车键选择完毕！");
  EXPECT_EQ(f.Vs().ToolTipText(), "提示：双击或按回车键选择完毕！");
  EXPECT_EQ(f.Vs().Cols(), 8);
  EXPECT_EQ(f.Vs().FixedRows() * 10 + f.Vs().FixedCols(), 10);
  EXPECT_EQ(f.Vs().SelectionMode(), viewkit::SelectionMode::kListBox);
  std::string captions;
  for (int col = 0; col < f.Vs().Cols(); ++col) {
    captions.append(f.Vs().TextMatrix(0, col)).append("|");
    const bool word = col == 4 || col == 6 || col == 7;  // of one or two characters
    EXPECT_EQ(f.Vs().ColAlignment(col),
              word ? viewkit::Alignment::kCenterCenter : viewkit::Alignment::kLeftCenter);
    EXPECT_EQ(f.Vs().FixedAlignment(col), viewkit::Alignment::kCenterCenter);
  }
  EXPECT_EQ(captions, "科目ID|科目编码|科目名称|助忆词|余额方向|科目类别|是否使用|是否明细|");
  EXPECT_GT(f.Vs().ColWidth(2), f.Vs().ColWidth(1)) << "the blanks of the captions widen";
}

TEST(List, RefreshLoadsOnlyWhatHasChanged) {
  PickerFixture f;
  const auto refresh = [&] { return f.StatementsOf([&] { f.picker.Refresh(); }).size(); };
  EXPECT_EQ(refresh(), 1U);
  EXPECT_EQ(refresh(), 0U);
  f.parameters->Set("bsup", 0);
  EXPECT_EQ(refresh(), 1U);
  f.parameters->Set("bsup", 1);
  EXPECT_EQ(refresh(), 1U);
  f.parameters->Set("single", "1.0");
  f.parameters->Set("ismx", 1);
  EXPECT_EQ(refresh(), 0U);
  EXPECT_EQ(f.Vs().SelectionMode(), viewkit::SelectionMode::kByRow);
  f.parameters->Set("single", 2);
  EXPECT_EQ(refresh(), 0U);
  EXPECT_EQ(f.Vs().SelectionMode(), viewkit::SelectionMode::kListBox);
  for (const char* key : {"bcus", "科目类别", "科目编码"}) {
    f.parameters->Set(key, 1);
    EXPECT_GE(refresh(), 1U) << key;
  }
  f.parameters->Clear();
  EXPECT_EQ(refresh(), 1U);
  f.Init();
  EXPECT_EQ(f.Column().size(), 0U);
  EXPECT_EQ(refresh(), 1U);  // another book may stand behind the same parameters
}

TEST(List, TheFormButtonFollowsTheRightsOnTheMaintenance) {
  PickerFixture f;
  f.book.Environment().rights_by_program[201] = {.can_add = false, .can_edit = false};
  f.picker.Refresh();
  EXPECT_FALSE(f.Cmd(3).Visible());
  f.book.Environment().rights_by_program[201].can_edit = true;
  f.picker.Refresh();
  EXPECT_TRUE(f.Cmd(3).Visible());
  f.recorder.FailNext("Rights", test::Fault::kThrow);
  f.picker.Refresh();
  EXPECT_FALSE(f.Cmd(3).Visible()) << "a right that cannot be read is not granted";
}

TEST(List, AFailedLoadKeepsTheListAndIsTriedAgain) {
  PickerFixture f;
  f.picker.Refresh();
  f.parameters->Set("bcus", "nonsense");
  f.picker.Refresh();
  EXPECT_NE(f.Message(), "");
  EXPECT_EQ(f.Column().size(), 8U);
  EXPECT_EQ(f.Count(), "共:8条");
  EXPECT_EQ(f.StatementsOf([&] { f.picker.Refresh(); }).size(), 1U);
  f.parameters->Set("bcus", 0);
  f.Cmd(2).Click();
  EXPECT_EQ(f.Message(), "");
  EXPECT_EQ(f.Column().size(), 8U);
}

TEST(List, TheTreeIsFilledWithoutPaintingAndEndsWithIt) {
  PickerFixture f;
  f.picker.Refresh();
  EXPECT_TRUE(f.TV().Painting());
  std::string keys;
  for (int index = 1; index <= f.TV().Nodes().Count(); ++index) {
    const viewkit::TreeNode& node = f.TV().Nodes().Item(index);
    keys += node.Key() + "," + node.Text() + "," + node.Tag() + ";";
  }
  EXPECT_EQ(keys,
            "r,会计科目,;r资产,资产,资产;r负债,负债,负债;r共同,共同,共同;r权益,权益,权益;"
            "r成本,成本,成本;r损益,损益,损益;");
  EXPECT_EQ(f.TV().SelectedItem()->Key(), "r");
  EXPECT_TRUE(f.TV().Nodes().Item("r资产").IsShown());
  f.parameters->Set("科目编码", "1002");
  f.picker.Refresh();
  ASSERT_EQ(f.TV().Nodes().Count(), 2);
  EXPECT_EQ(f.TV().Nodes().Item("k1002").Text(), "1002  银行存款");
  EXPECT_EQ(f.TV().Nodes().Item("k1002").Tag(), "2");
  EXPECT_EQ(f.Column().size(), 3U);
}

TEST(List, HostileParametersRunNoSecondStatement) {
  for (const char* value : {"0;delete from gl_code", "0 or 1=1;--", "(select 1);drop table gl_code",
                            "资产';delete from gl_code;--", "'", "\xff\xfe"}) {
    for (const char* key : {"bcus", "bsup", "科目类别", "科目编码"}) {
      PickerFixture f;
      f.parameters->Set(key, value);
      f.picker.Refresh();
      EXPECT_EQ(test::Scalar(f.book, "select count(*) from gl_code"), "8") << key << value;
    }
  }
}

}  // namespace
}  // namespace tavrix::picker
