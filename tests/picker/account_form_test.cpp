#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editing/fm_bkm_add.h"
#include "picker/picker_support.h"
#include "support/matchers.h"

namespace tavrix::picker {
namespace {

using editing::FmBkmAdd;

class FormTest : public testing::TestWithParam<const char*> {
 protected:
  FormTest() { f.picker.Refresh(); }

  /// Opens the form by button 3 and does `action` while it is open.
  void InForm(std::function<void(FmBkmAdd&)> action) {
    f.user.in_dialog = [&](viewkit::DialogModel& dialog) {
      action(dynamic_cast<FmBkmAdd&>(dialog));
      dialog.Unload();
    };
    f.Cmd(3).Click();
  }
  std::vector<std::string> AfterSaving(bool is_new, int id) {
    std::vector<std::string> statements;
    InForm([&](FmBkmAdd& form) {
      statements = f.StatementsOf([&] { form.EvHasLoad.Raise(is_new, id); });
    });
    return statements;
  }
  std::string Query(const std::string& where) {
    const bool jet = std::string("jet") == GetParam();
    return std::string("SELECT i_id,ccode,ccode_name,chelp,") +
           (jet ? "iif(bproperty=1,'借','贷') as bpr"
                : "(case when (bproperty=1) then '借' else '贷'end) as bpr") +
           ",cclass,bclose,bend FROM gl_code  WHERE i_id=" + where + " order by ccode";
  }

  PickerFixture f{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Dialects, FormTest, testing::ValuesIn(test::Engines()));

TEST_P(FormTest, AChangedAccountIsShownInItsRow) {
  f.Vs().SetRow(f.RowOf("2202"));
  test::Run(f.book, "update gl_code set ccode_name='新名' where ccode='2202'");
  f.parameters->Set("bcus", 1);  // not applied here
  EXPECT_THAT(AfterSaving(false, 5), ElementsAre(Query("5 AND bclose=0")));
  EXPECT_EQ(f.Vs().TextMatrix(f.RowOf("2202"), 2), "新名");
  EXPECT_EQ(f.Vs().TextMatrix(f.RowOf("2202"), 4), "贷");
  EXPECT_EQ(f.Column().size(), 8U);
}

TEST_P(FormTest, AChangedAccountIsFoundAgainAfterARefresh) {
  f.Vs().SetRow(f.RowOf("2202"));
  InForm([&](FmBkmAdd& form) {
    f.parameters->Set("bcus", 0);
    f.picker.Refresh();  // no row is current now
    form.EvHasLoad.Raise(false, 5);
  });
  EXPECT_EQ(f.Column().size(), 8U);
  EXPECT_EQ(f.Column()[0], "1001");
}

TEST_P(FormTest, ANewAccountIsAppendedAndCurrentWhenItPassesTheView) {
  f.SelectNode("r负债");
  f.Box("Chk").Click();
  EXPECT_THAT(AfterSaving(true, 1), ElementsAre(Query("1 AND cclass='负债'")));
  EXPECT_THAT(f.Column(), ElementsAre("2202"));
  f.SelectNode("r");
  f.SelectRows({});
  test::Run(f.book,
            "insert into gl_code(i_id,ccode,ccode_name,cclass) values(90,'1003','备用','资产')");
  EXPECT_THAT(AfterSaving(true, 90), ElementsAre(Query("90")));
  EXPECT_EQ(f.Column().back(), "1003");
  EXPECT_EQ(f.Vs().Row(), f.Vs().Rows() - 1);
  EXPECT_EQ(f.Count(), "共:9条，已选中1条");
  EXPECT_THAT(AfterSaving(true, 0), IsEmpty());
}

TEST_P(FormTest, OpensOnTheCurrentAccountOrForANewOne) {
  std::vector<std::string> opened;
  const auto note = [&](FmBkmAdd& form) {
    opened.push_back(form.Caption() + " " + form.Txt(editing::kCodeBox).Text() + "/" +
                     form.Combo(editing::kCategoryList).Text() + "/" +
                     test::LabelBehind(form, "上级科目"));
  };
  for (const char* code : {"1001", "2202", "50010101", "100202"}) {
    f.Vs().SetRow(f.RowOf(code));
    InForm(note);
  }
  f.SelectNode("r成本");  // a load leaves no row current
  InForm(note);
  f.SelectNode("r");
  InForm(note);
  f.parameters->Set("科目类别", "负债");
  f.picker.Refresh();
  f.SelectNode("r");
  InForm(note);
  EXPECT_THAT(opened, ElementsAre("修改 1001/资产/", "修改 2202/负债/",
                                  "修改 50010101/成本/500101 基本生产成本",
                                  "修改 100202/资产/1002 银行存款", "新增同级 5002/成本/",
                                  "新增同级 1003/资产/", "新增同级 2203/负债/"));
}

TEST_P(FormTest, ItsReportsAreShownInABox) {
  InForm([](FmBkmAdd& form) { form.ErrMessage.Raise("代码重复", 2, "另一个标题"); });
  ASSERT_FALSE(f.user.questions.empty());
  const test::ScriptedUser::Question shown = f.user.questions.back();
  EXPECT_EQ(shown.text, "代码重复");
  EXPECT_EQ(shown.title, "提示：");
  EXPECT_EQ(shown.icon, viewkit::UserPort::Icon::kInformation);
}

TEST_P(FormTest, ClearingThePickerWhileItIsOpenIsHarmless) {
  InForm([&](FmBkmAdd& form) {
    f.picker.Clear();
    form.EvHasLoad.Raise(true, 1);
    form.ErrMessage.Raise("x", 2, "");
  });
  EXPECT_EQ(f.Column().size(), 8U);
  EXPECT_TRUE(f.user.questions.empty());
}

TEST(Form, MayOutliveThePicker) {
  const auto book = test::MakeBook();
  test::ScriptedUser user;
  auto picker = std::make_unique<selKjkm>(user);
  EXPECT_TRUE(picker->Init(book.System(), 77, ""));
  auto& button = dynamic_cast<viewkit::CommandButton&>(picker->Controls().At(9));
  user.in_dialog = [&](viewkit::DialogModel& dialog) {
    picker.reset();
    dynamic_cast<FmBkmAdd&>(dialog).EvHasLoad.Raise(true, 1);
    dialog.Unload();
  };
  button.Click();
  EXPECT_EQ(user.dialogs, 1);
}

}  // namespace
}  // namespace tavrix::picker
