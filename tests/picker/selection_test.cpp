#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "picker/picker_support.h"
#include "support/matchers.h"

namespace tavrix::picker {
namespace {

using viewkit::Key;

TEST(Selection, HandsBackEverySelectedRow) {
  PickerFixture f;
  f.picker.Refresh();
  f.SelectRows({"2202", "1002"});
  EXPECT_EQ(f.Count(), "共:8条，已选中2条");
  EXPECT_THAT(
      f.StatementsOf([&] { f.Cmd(0).Click(); }),
      ElementsAre("SELECT * FROM gl_code WHERE i_id =2", "SELECT * FROM gl_code WHERE i_id =5"));
  EXPECT_EQ(f.picks, 1);
  EXPECT_THAT(f.Picked(), ElementsAre("1002", "2202"));
  EXPECT_EQ(f.picker.GetValue().ToText(), "2");
  EXPECT_EQ(f.picker.Text(), "1002");
  const auto bank = f.picker.Selected()->Item("2");
  EXPECT_EQ(bank->ID, 2);
  EXPECT_EQ(bank->ccode_name, "银行存款");
  EXPECT_EQ(bank->chelp, "yhck");
  EXPECT_EQ(bank->bpr, "借");
  EXPECT_EQ(bank->cclass, "资产");
  EXPECT_FALSE(bank->bend);
  EXPECT_FALSE(bank->bclose);
  EXPECT_EQ(bank->cbook_type, "金额式");
  EXPECT_EQ(f.picker.Selected()->Item(2)->bpr, "贷");
  EXPECT_TRUE(f.picker.Selected()->Item(2)->bend);
}

TEST(Selection, AParentIsRefusedWhereOnlyLeavesAreWanted) {
  PickerFixture f;
  f.parameters->Set("ismx", 1);
  f.picker.Refresh();
  f.SelectRows({"1001", "1002", "100201"});
  f.Cmd(0).Click();
  EXPECT_EQ(f.picks, 0);
  EXPECT_EQ(f.Message(), "不能返回非明细级科目！");
  EXPECT_THAT(f.Picked(), ElementsAre("1001"));
  EXPECT_EQ(f.picker.Text(), "");
  f.picker.Refresh();
  EXPECT_EQ(f.Message(), "");
  f.parameters->Set("single", 1);
  f.picker.Refresh();
  f.Vs().SetRow(f.RowOf("1002"));
  f.Vs().HandleDoubleClick(f.RowOf("1002"));
  EXPECT_EQ(f.picks, 0);
  f.Vs().SetRow(f.RowOf("100202"));
  f.Vs().HandleDoubleClick(f.RowOf("100202"));
  EXPECT_EQ(f.picks, 1);
  EXPECT_EQ(f.picker.Text(), "100202");
}

TEST(Selection, OneRowIsOneHoweverItIsChosen) {
  PickerFixture f;
  f.parameters->Set("single", 1);
  f.picker.Refresh();
  f.Vs().SetRow(1);
  for (int times = 0; times < 2; ++times) f.Press(f.Vs(), Key::kDown, {.shift = true});
  EXPECT_EQ(f.Count(), "共:8条，已选中1条");
  f.Vs().HandlePress(1, 1, false, {.shift = true});
  f.Vs().HandleDrag(4);
  EXPECT_EQ(f.Count(), "共:8条，已选中1条");
  f.parameters->Set("single", 0);
  f.picker.Refresh();
  f.Press(f.Vs(), Key::kDown, {.shift = true});
  EXPECT_EQ(f.Count(), "共:8条，已选中2条");
}

TEST(Selection, WithoutARowThePickIsEmpty) {
  PickerFixture f;
  f.parameters->Set("single", 1);
  f.parameters->Set("科目类别", "共同");
  f.picker.SetValue(7);
  f.picker.Refresh();
  EXPECT_THAT(f.StatementsOf([&] { f.Press(f.Vs(), Key::kEnter); }),
              ElementsAre("SELECT * FROM gl_code WHERE i_id =-1"));
  EXPECT_EQ(f.picks, 1);
  EXPECT_THAT(f.Picked(), IsEmpty());
  EXPECT_EQ(f.picker.GetValue().ToText(), "");
  f.parameters->Set("single", 0);
  f.picker.Refresh();
  EXPECT_THAT(f.StatementsOf([&] { f.Cmd(0).Click(); }), IsEmpty());
  EXPECT_EQ(f.picks, 2);
}

TEST(Selection, CancellingEmptiesTheObjectsOnly) {
  PickerFixture f;
  f.picker.Refresh();
  f.SelectRows({"1001"});
  f.Cmd(0).Click();
  f.Cmd(1).Click();
  EXPECT_EQ(f.cancels, 1);
  EXPECT_THAT(f.Picked(), IsEmpty());
  EXPECT_EQ(f.picker.GetValue().ToText(), "1");
  EXPECT_EQ(f.picker.Text(), "1001");
}

TEST(Selection, TheHostMayClearThePickerInItsEvent) {
  PickerFixture f;
  f.picker.Refresh();
  f.SelectRows({"1001"});
  f.picker.DoSelect.Add([&] { f.picker.Clear(); });
  f.Press(f.Vs(), Key::kEnter);
  EXPECT_EQ(f.picks, 1);
  EXPECT_EQ(f.picker.Objects(), nullptr);
  EXPECT_EQ(f.picker.Text(), "1001");
  EXPECT_EQ(f.Column().size(), 8U);  // the list stays
  f.picker.Refresh();
  EXPECT_EQ(f.Message(), "控件尚未初始化");
  f.Init();
  f.picker.Refresh();
  EXPECT_EQ(f.Message(), "");
}

/// Parameters of a host that does something when it is asked for them.
class MeddlingParameters : public desk::book::ParameterList {
 public:
  bool Exists(const std::string& key) override {
    if (act) act();
    return ParameterList::Exists(key);
  }
  std::function<void()> act;
};

TEST(Selection, TheHostMayClearThePickerWhileItIsAsked) {
  const std::function<void(PickerFixture&)> routines[] = {
      [](PickerFixture& f) { f.picker.Refresh(); }, [](PickerFixture& f) { f.Cmd(0).Click(); },
      [](PickerFixture& f) { f.Cmd(2).Click(); },
      [](PickerFixture& f) {
        std::string code;
        std::string name;
        f.picker.Validate("", "", "", "1001", code, name);
      }};
  for (const auto& routine : routines) {
    PickerFixture f;
    const auto meddling = std::make_shared<MeddlingParameters>();
    f.picker.SetPickerParameters(meddling);
    f.picker.Refresh();
    f.SelectRows({"1001", "1002"});
    meddling->act = [&] { f.picker.Clear(); };
    routine(f);
    EXPECT_EQ(f.picker.Objects(), nullptr);
    f.Init();
    f.picker.Refresh();
    EXPECT_EQ(f.Message(), "");
    EXPECT_EQ(f.Column().size(), 8U);
  }
}

TEST(Selection, APickThatClearInterruptsIsNoPick) {
  for (const bool again : {false, true}) {
    PickerFixture f;
    f.picker.Refresh();
    f.SelectRows({"1001", "1002"});
    f.picker.SetValue("before");
    f.recorder.BeforeEach([&](const std::string&) {
      f.recorder.BeforeEach({});
      f.picker.Clear();
      if (again) f.Init();
    });
    f.Cmd(0).Click();
    EXPECT_EQ(f.picks, 0);
    EXPECT_EQ(f.picker.GetValue().ToText(), "before");
    EXPECT_THAT(f.Picked(), IsEmpty());
  }
}

TEST(Selection, ALoadThatTheHostInterruptsShowsNothingOfTheOldBook) {
  const std::function<void(PickerFixture&)> loads[] = {
      [](PickerFixture& f) { f.Cmd(2).Click(); }, [](PickerFixture& f) { f.SelectNode("r资产"); },
      [](PickerFixture& f) {
        f.Vs().SetRow(1);
        f.user.in_dialog = [](viewkit::DialogModel& dialog) {
          dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(true, 1);
          dialog.Unload();
        };
        f.Cmd(3).Click();
      }};
  for (const auto& load : loads) {
    PickerFixture f;
    f.picker.Refresh();
    auto other = test::MakeBook({{.code = "9001", .name = "另一账簿", .category = "资产"}});
    int statements = &load == &loads[2] ? 4 : 1;  // those of the dialog come first
    f.recorder.BeforeEach([&](const std::string&) {
      if (--statements > 0) return;
      f.recorder.BeforeEach({});
      f.picker.Clear();
      ASSERT_TRUE(f.picker.Init(other.System(), 77, ""));
      f.picker.Refresh();
    });
    load(f);
    EXPECT_EQ(statements, 0);
    EXPECT_THAT(f.Column(), ElementsAre("9001"));
    EXPECT_EQ(f.Count(), "共:1条");
  }
}

TEST(Selection, ATextThatMatchesNothingLeavesNoRowCurrent) {
  for (const bool filter : {false, true}) {
    PickerFixture f;
    f.picker.Refresh();
    f.picker.SetText("2202");
    EXPECT_EQ(f.Vs().Row(), f.RowOf("2202"));
    if (filter) f.Box("Check").Click();
    f.picker.SetText("nowhere");
    EXPECT_LT(f.Vs().Row(), f.Vs().FixedRows());
    EXPECT_EQ(f.Vs().SelectedRows(), 0);
    EXPECT_EQ(f.picker.Text(), "nowhere");
  }
}

TEST(Selection, ClearReleasesInItsOrder) {
  PickerFixture f;
  f.picker.Refresh();
  std::vector<std::string> ended;
  {
    const auto system = f.recorder.System();
    ASSERT_TRUE(f.picker.Init(
        {system.get(), [&, system](auto*) { ended.emplace_back("m_System"); }}, 77, ""));
  }
  f.recorder.OnRelease([&](const std::string& name) {
    if (name == "MouseEvent" || name == "Parameters") ended.push_back(name);
  });
  const std::weak_ptr<colKjkm> objects = f.picker.Selected();
  f.picker.Clear();
  EXPECT_TRUE(objects.expired());
  EXPECT_THAT(ended, ElementsAre("Parameters", "MouseEvent", "m_System"));
  EXPECT_EQ(f.wheel->detached, 2);  // of both times
}

TEST(Selection, APickerThatEndsLetsGoOfTheHostAsClearDoes) {
  std::shared_ptr<test::TestWheel> wheel;
  std::shared_ptr<desk::book::ParameterList> parameters;
  {
    PickerFixture f;
    wheel = f.wheel;
    parameters = f.parameters;
    parameters->Set("bsup", 1);
  }
  EXPECT_EQ(wheel->detached, 1);
  EXPECT_FALSE(wheel->turn);
  EXPECT_FALSE(parameters->Exists("bsup"));
}

TEST(Selection, ValueAndTextAreTheHosts) {
  PickerFixture f;
  f.picker.Refresh();
  f.picker.SetText("2202");
  EXPECT_EQ(f.Search().Text(), "2202");
  EXPECT_EQ(f.Vs().Row(), f.RowOf("2202"));
  f.Vs().SetRow(1);
  f.picker.SetText("2202");  // searches again
  EXPECT_EQ(f.Vs().Row(), f.RowOf("2202"));
  f.picker.SetValue(3);
  EXPECT_EQ(f.picker.Text(), "2202");
  EXPECT_EQ(f.picker.Attributes("isVisibleNewNext"), "");
  f.picker.SetIsDirty(true);
  EXPECT_FALSE(f.picker.IsDirty());
}

TEST(Selection, NamesItsStatusFileAfterProgramAndContainer) {
  PickerFixture f;
  EXPECT_EQ(f.picker.StatusName(), "77");
  f.picker.SetContainerName("凭证:科目*1");
  EXPECT_EQ(f.picker.StatusName(), "77凭证_科目_1");
  f.picker.SetContainerName("<>:\"/\\|?*\x1F !");
  EXPECT_EQ(f.picker.StatusName(), "77__________ !");
}

TEST(PickedAccounts, AreFoundByPositionAndKey) {
  colKjkm accounts;
  accounts.Add("a", 1, "1001", "", "", "");
  accounts.Add("", 2, "1002", "", "", "");
  accounts.Add("c", 3, "1003", "", "", "");
  EXPECT_EQ(accounts.Item("A")->ID, 1);
  EXPECT_EQ(accounts.Item(2)->ID, 2);
  EXPECT_EQ(accounts.Item("a")->sKey, "a");
  EXPECT_THROW(accounts.Add("C", 4, "", "", "", ""), std::invalid_argument);
  EXPECT_EQ(accounts.Count(), 3);
  for (const host::Value& wrong :
       {host::Value(0), host::Value(4), host::Value(""), host::Value("b"), host::Value()}) {
    EXPECT_THROW((void)accounts.Item(wrong), std::out_of_range);
  }
  accounts.Remove("a");
  EXPECT_EQ(accounts.Item(1)->ID, 2);
  accounts.Remove(1);
  EXPECT_EQ(accounts.Item("c")->ID, 3);
  EXPECT_THROW((void)accounts.Item("a"), std::out_of_range);
}

TEST(PickedAccounts, AnItemIsClearedButForItsChildren) {
  colKjkm accounts;
  const auto item = accounts.Add("k", 1, "1001", "现金", "xj", "资产");
  item->bend = item->bclose = item->Change = true;
  const auto children = item->Children();
  EXPECT_EQ(item->Children(), children);
  item->sbClear();
  EXPECT_EQ(item->ID, 0);
  EXPECT_EQ(item->ccode + item->ccode_name + item->chelp + item->cclass, "");
  EXPECT_FALSE(item->bend || item->bclose || item->Change);
  EXPECT_EQ(item->sKey, "");
  EXPECT_EQ(item->Children(), children);
}

}  // namespace
}  // namespace tavrix::picker
