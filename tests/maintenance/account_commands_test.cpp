#include <string>

#include "maintenance/view_test.h"

namespace tavrix::test {
namespace {

using Answer = viewkit::UserPort::Answer;
using Buttons = viewkit::UserPort::Buttons;
using Icon = viewkit::UserPort::Icon;

constexpr const char* kUsedInVouchers = "该科目或及其下级已在凭证表中使用，不能删除！";
constexpr const char* kUsedInAuxiliary = "该科目或其下级已在总帐辅助表中使用，不能删除！";
constexpr const char* kUsedInTotals = "该科目或其下级已在总帐表中使用，不能删除！";

class Commands : public testing::TestWithParam<const char*> {
 protected:
  [[nodiscard]] bool Jet() const { return std::string(GetParam()) == "jet"; }
  ViewTest t{MakeBookOn(GetParam())};
};
INSTANTIATE_TEST_SUITE_P(Dialects, Commands, testing::ValuesIn(test::Engines()));

TEST_P(Commands, DeletingOneOfTwoChildrenSendsTheseStatementsInThisOrder) {
  t.Start();
  t.Select("100201");
  t.user.answers = {Answer::kYes};
  EXPECT_TRUE(t.view.FileDelete());
  EXPECT_EQ(t.host.Statements(),
            (Texts{std::string("select count(i_id) from gl_code where ccode like '1002") +
                       (Jet() ? "*" : "%") + "' and len(ccode)>4",
                   "select count(i_id) from gl_accvouch where ccode like '100201%'",
                   "select count(i_id) from gl_accass where ccode like '100201%'",
                   "select count(i_id) from gl_accsum where ccode like '100201%'",
                   "delete from gl_code where ccode like '100201%'"}));
  EXPECT_EQ(t.user.questions,
            (std::vector<ScriptedUser::Question>{{"是否删除当前科目：100201 工行", "提示：",
                                                  Icon::kInformation, Buttons::kYesNoDefaultNo}}));
  EXPECT_EQ(t.Codes(), (Texts{"1001", "1002", ".100202", "2202", "5001", ".500101", "..50010101"}));
  EXPECT_TRUE(t.Grid().Focused());
  EXPECT_EQ(Scalar(t.book, "select bend from gl_code where ccode='1002'"), "0");
}

TEST_P(Commands, DeletingTheLastChildMakesTheParentALeaf) {
  t.Start();
  t.Sql("delete from gl_code where ccode='100202'");
  t.Select("100201");
  t.user.answers = {Answer::kYes};
  EXPECT_TRUE(t.view.FileDelete());
  EXPECT_EQ(t.reports, Texts());
  EXPECT_EQ(Scalar(t.book, "select bend from gl_code where ccode='1002'"), "1");
  const Texts& sent = t.host.Statements();
  ASSERT_EQ(sent.size(), 9U);
  EXPECT_EQ(sent[5], "update gl_code set bend=1 where ccode='1002'");
  EXPECT_EQ(sent[6], "update gl_accvouch set ccode='1002' where ccode='100201'");
  EXPECT_EQ(sent[8], "update gl_accsum set ccode='1002' where ccode='100201'");
}

TEST_P(Commands, DeletingANodeTakesAllBelowIt) {
  t.Start();
  t.Tabs().SetCurrTab(5);
  t.Select("5001", 5);
  t.user.answers = {Answer::kYes};
  EXPECT_TRUE(t.view.FileDelete());
  EXPECT_EQ(t.user.questions.at(0).text, "是否删除当前及其下级科目：5001 生产成本");
  EXPECT_EQ(t.host.Statements().front(),
            "select count(i_id) from gl_accvouch where ccode like '5001%'")
      << "a first-level account has no parent to ask about";
  EXPECT_EQ(t.Codes(5), Texts());
  EXPECT_EQ(Scalar(t.book, "select count(*) from gl_code where cclass='成本'"), "0");
}

TEST_P(Commands, AnAccountInUseIsRefusedWithTheFirstTableThatHoldsIt) {
  struct Case {
    const char* ledger;
    const char* refusal;
  };
  for (const Case& use : {Case{"gl_accsum", kUsedInTotals}, Case{"gl_accass", kUsedInAuxiliary},
                          Case{"gl_accvouch", kUsedInVouchers}}) {
    t.Start();
    AddPosting(t.book, use.ledger, "50010101");
    t.Select("500101");
    t.user.questions.clear();
    EXPECT_FALSE(t.view.FileDelete());
    EXPECT_EQ(t.user.questions, (std::vector<ScriptedUser::Question>{
                                    {use.refusal, "提示：", Icon::kWarning, Buttons::kOk}}));
    EXPECT_EQ(t.Codes().size(), 8U);
  }
  // The first table that is used ends the asking; no question follows.
  EXPECT_EQ(t.host.Statements().size(), 2U);
  EXPECT_EQ(t.host.Statements().back(),
            "select count(i_id) from gl_accvouch where ccode like '500101%'");
}

TEST_P(Commands, NothingIsDeletedWithoutAYesOrWithoutAnAccount) {
  t.Start();
  t.Select("1001");
  t.user.answers = {Answer::kNo};
  EXPECT_FALSE(t.view.FileDelete());
  t.host.Clear();
  t.Grid().SetRow(0);
  EXPECT_FALSE(t.view.FileDelete());
  t.Select("1001");
  t.Grid().SetTextMatrix(t.Grid().Row(), 0, "");
  EXPECT_FALSE(t.view.FileDelete());
  EXPECT_EQ(t.host.Statements(), Texts());
  EXPECT_EQ(Scalar(t.book, "select count(*) from gl_code"), "8");
}

/// Deleting the only child, the command with the most calls.
void PrepareSweep(ViewTest& t) {
  t.Start();
  t.Sql("delete from gl_code where ccode='100202'");
  t.Select("100201");
  t.user.answers = {Answer::kYes};
}

TEST_P(Commands, EveryFailingCallOfADeleteIsReportedOnceAndKeepsTheRow) {
  ViewTest whole(MakeBookOn(GetParam()));
  PrepareSweep(whole);
  ASSERT_TRUE(whole.view.FileDelete());
  const auto calls = whole.host.Calls();
  ASSERT_GT(calls.size(), 30U);
  for (int call = 0; call < static_cast<int>(calls.size()); ++call) {
    for (const Fault fault : {Fault::kThrow, Fault::kErrorText, Fault::kNull, Fault::kObject}) {
      const HostCall& failing = calls[static_cast<std::size_t>(call)];
      if (!failing.Allows(fault)) continue;
      if (failing.name.starts_with("MouseEvent.")) continue;  // the focus comes after the deed
      if (fault == Fault::kNull && failing.name == "Property.Value")
        continue;  // a server's dialect
      ViewTest swept(MakeBookOn(GetParam()));
      PrepareSweep(swept);
      swept.host.FailAt(call, fault);
      EXPECT_FALSE(swept.view.FileDelete()) << failing.name << " " << call;
      ASSERT_TRUE(swept.host.Fired()) << failing.name << " " << call;
      ASSERT_EQ(swept.reports.size(), 1U) << failing.name << " " << call;
      EXPECT_TRUE(swept.reports[0].starts_with("FileDelete->")) << swept.reports[0];
      EXPECT_TRUE(swept.reports[0].ends_with("|2|测试程序")) << swept.reports[0];
      if (fault != Fault::kNull && fault != Fault::kObject) {
        EXPECT_EQ(swept.reports[0],
                  std::string("FileDelete->") + Recorder::kFaultText + "|2|测试程序");
      }
      EXPECT_EQ(swept.Codes().size(), 8U) << "the grid keeps the row";
      EXPECT_EQ(swept.user.wait_depth, 0);
    }
  }
}

TEST_P(Commands, AClearDuringTheQuestionEndsTheCommand) {
  t.Start();
  t.Select("100201");
  struct ClearingUser : ScriptedUser {
    maintenance::Kjkm* view = nullptr;
    Answer Ask(const std::string&, const std::string&, Icon, Buttons) override {
      view->Clear();
      return Answer::kYes;
    }
  } user;
  maintenance::Kjkm view(user);
  user.view = &view;
  ASSERT_TRUE(view.Init(t.host.System(), 0, 0) && view.Refresh());
  auto& grid = dynamic_cast<viewkit::FlexGrid&>(view.Controls().At(1));
  grid.SetRow(1);
  EXPECT_FALSE(view.FileDelete());
  EXPECT_EQ(Scalar(t.book, "select count(*) from gl_code"), "8");
}

TEST_P(Commands, AddingAndEditingOpenTheDialogInTheirMode) {
  t.Start();
  EXPECT_FALSE(t.view.FileNew());
  EXPECT_FALSE(t.view.FileNewNext());
  EXPECT_FALSE(t.view.FileEdit());
  EXPECT_EQ(t.reports, (Texts{"请选择新增参照科目！|2|测试程序", "请选择新增参照科目！|2|测试程序",
                              "请选择欲修改的科目！|2|测试程序"}));
  t.reports.clear();
  t.Select("1002");
  Texts captions;
  t.user.in_dialog = [&](viewkit::DialogModel& dialog) {
    auto& form = dynamic_cast<editing::FmBkmAdd&>(dialog);
    captions.push_back(form.Caption() + " " + form.Txt(0).Text() + " " + form.Combo(1).Text() +
                       " " + LabelBehind(dialog, "上级科目"));
    dialog.Unload();
  };
  EXPECT_TRUE(t.view.FileNew());
  EXPECT_TRUE(t.view.FileNewNext());
  EXPECT_TRUE(t.view.FileEdit());
  EXPECT_EQ(captions,
            (Texts{"新增同级 1003 资产 无（一级科目）", "新增下级 100203 资产 1002 银行存款",
                   "修改 1002 资产 无（一级科目）"}));
  EXPECT_EQ(t.reports, Texts());
  t.Grid().HandleDoubleClick(t.Grid().Row());
  EXPECT_EQ(captions.size(), 4U);
  t.Grid().KeyDown.Raise(viewkit::Key::kEnter, {});
  EXPECT_EQ(captions.size(), 5U);
  t.Grid().KeyDown.Raise(viewkit::Key::kEnter, {.repeated = true});
  EXPECT_EQ(captions.size(), 5U) << "a key that is held down";
  t.Select("50010101");
  EXPECT_TRUE(t.view.FileEdit());
  // A page may lack the account above: none stands there, or another one does.
  t.Sql("update gl_code set cclass='成本' where ccode='100201'");
  t.Sql(
      "insert into gl_code(i_ID,ccode,ccode_name,igrade,cclass) values(90,'6001','',1,'损益'),"
      "(91,'600101','',2,'成本')");
  ASSERT_TRUE(t.view.Refresh());
  t.Tabs().SetCurrTab(5);
  for (const char* code : {"100201", "600101"}) {
    t.Select(code, 5);
    EXPECT_TRUE(t.view.FileEdit());
  }
  captions.erase(captions.begin(), captions.begin() + 5);
  EXPECT_EQ(captions, (Texts{"修改 50010101 成本 500101 基本生产成本", "修改 100201 成本 ",
                             "修改 600101 成本 "}));
}

TEST_P(Commands, AnEmptyPageOpensTheDialogWithItsCategoryAndNoReference) {
  ViewTest empty(MakeBookOn(GetParam(), {}));
  empty.Start();
  Texts captions;
  empty.user.in_dialog = [&](viewkit::DialogModel& dialog) {
    auto& form = dynamic_cast<editing::FmBkmAdd&>(dialog);
    captions.push_back(form.Caption() + " " + form.Txt(0).Text() + " " + form.Combo(1).Text());
    dialog.Unload();
  };
  EXPECT_TRUE(empty.view.FileNew());
  empty.Tabs().SetCurrTab(4);
  EXPECT_TRUE(empty.view.FileNewNext());
  EXPECT_FALSE(empty.view.FileEdit());
  EXPECT_EQ(empty.reports, Texts());
  EXPECT_EQ(captions, (Texts{"新增同级 0001 资产", "新增下级 0001 权益"}));
}

TEST_P(Commands, AnAccountAddedInTheDialogArrivesInGridAndLedgers) {
  t.Start();
  AddPosting(t.book, "gl_accvouch", "1001");
  t.Select("1001");
  t.user.in_dialog = [&](viewkit::DialogModel& dialog) {
    auto& form = dynamic_cast<editing::FmBkmAdd&>(dialog);
    form.Txt(1).SetText("人民币");
    form.Cmd(0).Click();
  };
  EXPECT_TRUE(t.view.FileNewNext());
  EXPECT_EQ(t.reports, Texts());
  EXPECT_EQ(t.Codes().at(1), ".100101");
  EXPECT_EQ(t.Grid().TextMatrix(t.Grid().Row(), 1), "人民币");
  EXPECT_EQ(Scalar(t.book, "select ccode from gl_accvouch"), "100101");
  EXPECT_EQ(Scalar(t.book, "select bend from gl_code where ccode='1001'"), "0");
}

TEST_P(Commands, MovesFindAndFilterGoToTheNavigator) {
  t.Start();
  EXPECT_TRUE(t.view.RecordBottom());
  EXPECT_EQ(t.Grid().TextMatrix(t.Grid().Row(), 0), "5001");
  EXPECT_TRUE(t.view.RecordPrevious());
  EXPECT_EQ(t.Grid().TextMatrix(t.Grid().Row(), 0), "2202");
  EXPECT_TRUE(t.view.RecordTop());
  EXPECT_TRUE(t.view.RecordNext());
  EXPECT_EQ(t.Grid().TextMatrix(t.Grid().Row(), 0), "1002");
  EXPECT_TRUE(t.view.Find("建行"));
  EXPECT_EQ(t.Grid().TextMatrix(t.Grid().Row(), 0), "100202");
  EXPECT_TRUE(t.Grid().IsShown(t.Grid().Row()));
  EXPECT_TRUE(t.view.Filter("直接材料"));
  EXPECT_TRUE(t.Grid().RowHidden(1));
  EXPECT_FALSE(t.Grid().RowHidden(t.Grid().FindRow("5001", 1, 0))) << "ancestors of a match stay";
  EXPECT_TRUE(t.view.Filter(""));
  EXPECT_FALSE(t.Grid().RowHidden(1));
  t.host.FailNext("GridNavigator.Find", Fault::kThrow, "无法查找");
  EXPECT_FALSE(t.view.Find("x"));
  EXPECT_EQ(t.reports, (Texts{"Find->无法查找|2|测试程序"}));
}

}  // namespace
}  // namespace tavrix::test
