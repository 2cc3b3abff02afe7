#include <array>
#include <string>

#include "editor_test.h"
#include "host/report.h"

namespace tavrix::editing {
namespace {

using host::kCommandError;
using host::kLoadingError;
using viewkit::CheckBox;
using Answer = viewkit::UserPort::Answer;

class DialogTest : public testing::Test {
 protected:
  [[nodiscard]] int Value(int box) { return editor_.dialog->Chk(box).Value(); }
  [[nodiscard]] bool Enabled(int box) { return editor_.dialog->Chk(box).Enabled(); }
  void Click(int box) { editor_.dialog->Chk(box).Click(); }
  [[nodiscard]] std::string Chosen(int list) { return editor_.dialog->Combo(list).Text(); }
  [[nodiscard]] Texts Items(int list) {
    Texts items;
    const viewkit::ComboBox& box = editor_.dialog->Combo(list);
    for (int i = 0; i < box.ListCount(); ++i) items.push_back(box.List(i));
    return items;
  }
  /// The disabled ones of the auxiliary boxes, as "57".
  [[nodiscard]] std::string Locked() {
    std::string locked;
    for (int box = kDepartmentCheck; box <= kProjectCheck; ++box) {
      if (!Enabled(box)) locked += std::to_string(box);
    }
    return locked;
  }

  Editor editor_;
};

TEST_F(DialogTest, EveryOpeningStartsAfresh) {
  for (int time = 0; time < 2; ++time) {
    editor_.recorder.Clear();
    editor_.user.in_dialog = [&](viewkit::DialogModel& shown) {
      shown.Opened();
      EXPECT_FALSE(editor_.CodeHasFocus()) << "the code stands already";
      EXPECT_EQ(editor_.recorder.Statements()[0],
                "select 币种ID,外币名称 from tvxbz order by 外币代号");
      EXPECT_EQ(editor_.recorder.Statements()[1], "select 单位ID,名称 from tvxjldw order by 代码");
      EXPECT_EQ(Items(kCurrencyList), (Texts{"欧元", "美元"}));
      EXPECT_EQ(editor_.dialog->Combo(kCurrencyList).ItemData(1), 2);
      EXPECT_EQ(Items(kUnitList), (Texts{"千克", "台"}));
      EXPECT_EQ(Items(kCategoryList).size() + Items(kBookTypeList).size(), 10U);
      EXPECT_EQ(Look(editor_),
                (Texts{"2203", "",   "",   "",   "",   "-",  "负债+", "-",  "-",  "金额式+", "0+",
                       "0+",   "0+", "0+", "0+", "0+", "0+", "0+",    "0+", "0+", "0+"}));
      EXPECT_TRUE(editor_.dialog->opt(kCreditOption).Value());
      editor_.SetName("x");
      Click(kPersonCheck);
      Click(kCurrencyCheck);
      Click(kGatherCheck);
      editor_.dialog->Combo(kGatherList).SetText("6001");
      editor_.dialog->opt(kDebitOption).Click();
      editor_.user.answers = {Answer::kNo};
      EXPECT_TRUE(shown.Close());
    };
    editor_.dialog->py_SubProgram(editor_.recorder.System(), "负债", true, false, "2202");
  }
}

TEST_F(DialogTest, ANewAccountsDirectionFollowsItsCategoryUntilTheUserSetsIt) {
  const std::pair<const char*, int> proposals[] = {{"资产", kDebitOption}, {"负债", kCreditOption},
                                                   {"共同", kDebitOption}, {"权益", kCreditOption},
                                                   {"成本", kDebitOption}, {"损益", kDebitOption},
                                                   {"", kDebitOption}};
  for (const auto& [category, option] : proposals) {
    editor_.Open({category, true, false, "", 0}, [&] {
      EXPECT_TRUE(editor_.dialog->opt(option).Value()) << category;
      EXPECT_TRUE(editor_.dialog->Close());  // a proposal is no change
      EXPECT_TRUE(editor_.recorder.Statements().empty());
    });
  }
  editor_.Open(Beside("1001"), [&] {
    editor_.SetName("其他");
    editor_.dialog->Combo(kCategoryList).SetText("权益");
    EXPECT_TRUE(editor_.dialog->opt(kCreditOption).Value());
    editor_.dialog->opt(kDebitOption).Click();
    editor_.dialog->Combo(kCategoryList).SetText("负债");
    EXPECT_TRUE(editor_.dialog->opt(kDebitOption).Value()) << "what the user has set stays";
    EXPECT_TRUE(editor_.dialog->FileSave());
  });
  EXPECT_EQ(test::AllRows(editor_.book, "select cclass,bproperty from gl_code where ccode='1003'"),
            Texts{"负债|1"});
  editor_.Open(Edit(1), [&] {
    editor_.dialog->Combo(kCategoryList).SetText("负债");
    EXPECT_TRUE(editor_.dialog->opt(kDebitOption).Value())
        << "an account that is there keeps its own";
    EXPECT_TRUE(editor_.dialog->FileSave());
  });
}

TEST_F(DialogTest, ListsThatCannotBeReadStayEmptyAndTheDialogOpens) {
  test::Run(editor_.book, "update gl_code set cexch_name='美元',bexchange=1 where i_id=3");
  test::Run(editor_.book, "drop table tvxbz");
  test::Run(editor_.book, "drop table tvxjldw");
  editor_.Open(Edit(3), [&] {
    EXPECT_EQ(Items(kCurrencyList), Texts{"美元"});  // what is stored
    EXPECT_EQ(Items(kUnitList), Texts());
    editor_.SetName("工商银行");
    editor_.Save();
  });
  ASSERT_EQ(editor_.reports.size(), 2U);
  for (const ReportSeen& report : editor_.reports) {
    EXPECT_TRUE(report.text.starts_with("InitBaseValue->")) << report.text;
    EXPECT_EQ(report.level, kLoadingError);
  }
  EXPECT_EQ(test::AllRows(editor_.book, "select ccode_name,cexch_name from gl_code where i_id=3"),
            Texts{"工商银行|美元"});
}

TEST_F(DialogTest, ARecordIsShownAsItIsStored) {
  test::Run(editor_.book,
            "update gl_code set ccode_engl='ICBC',cbook_type='金额外币数量式',bexchange=1,"
            "cexch_name='比索',cmeasure='台',cgather='1002',cother='c',bclose=1,bdept=1,br=1,"
            "bproperty=0 where i_id=3");
  editor_.Open(Edit(3), [&] {
    EXPECT_EQ(editor_.dialog->Caption(), "修改");
    EXPECT_EQ(Look(editor_), (Texts{"100201", "工行",  "ICBC",  "gh",  "c",
                                    "比索+",  "资产+", "1002+", "台+", "金额外币数量式+",
                                    "1+",     "1+",    "1+",    "1+",  "1+",
                                    "0-",     "0+",    "0+",    "0+",  "1+",
                                    "0+"}));
    EXPECT_EQ(Items(kGatherList), Texts{"1002"});
    EXPECT_EQ(Items(kCategoryList).size(), 6U);
    EXPECT_TRUE(editor_.dialog->opt(kCreditOption).Value());
    EXPECT_TRUE(editor_.dialog->Close());  // loading is no change
  });
}

TEST_F(DialogTest, FlagsMayBeTheWordsOfALogicalColumn) {
  if (test::DefaultEngine() == "postgresql") GTEST_SKIP() << "its flags are numbers";
  test::DropLedgerRules(editor_.book);
  test::Run(editor_.book,
            "update gl_code set bend='True',bclose='True',br='False',bproperty='False' "
            "where i_id=3");
  editor_.Open(Edit(3), [&] {
    EXPECT_EQ(Value(kClosedCheck), CheckBox::kChecked);
    EXPECT_EQ(Value(kJournalCheck), CheckBox::kUnchecked);
    EXPECT_TRUE(editor_.dialog->opt(kCreditOption).Value());
    EXPECT_TRUE(editor_.dialog->IsCanEdit("100209", 3).allowed) << "a leaf";
  });
}

TEST_F(DialogTest, ContradictingFlagsCanBeMended) {
  test::Run(editor_.book, "update gl_code set bdept=1,bperson=1 where i_id=3");
  editor_.Open(Edit(3), [&] {
    EXPECT_EQ(Value(kDepartmentCheck) + Value(kPersonCheck), 2);
    EXPECT_EQ(Locked(), "678");
    Click(kPersonCheck);
    EXPECT_EQ(Locked(), "");
  });
}

TEST_F(DialogTest, BookTypeFollowsCurrencyAndQuantity) {
  editor_.Open(Beside("1001"), [&] {
    Click(kCurrencyCheck);
    EXPECT_EQ(Chosen(kBookTypeList), "金额外币式");
    EXPECT_TRUE(editor_.dialog->Combo(kCurrencyList).Enabled());
    editor_.dialog->Combo(kCurrencyList).SetText("美元");
    Click(kQuantityCheck);
    EXPECT_EQ(Chosen(kBookTypeList), "金额外币数量式");
    EXPECT_TRUE(editor_.dialog->Combo(kUnitList).Enabled());
    Click(kCurrencyCheck);
    EXPECT_EQ(Chosen(kBookTypeList), "金额数量式");
    EXPECT_FALSE(editor_.dialog->Combo(kCurrencyList).Enabled());
    EXPECT_EQ(Chosen(kCurrencyList), "");
    editor_.dialog->Chk(kQuantityCheck).SetValue(CheckBox::kGrayed);  // not exactly set
    EXPECT_EQ(Chosen(kBookTypeList), "金额式");
    EXPECT_FALSE(editor_.dialog->Combo(kUnitList).Enabled());
  });
}

TEST_F(DialogTest, SummarisingOffersTheAccountsAboveAndLeavesTheBookTypeAlone) {
  editor_.Open(Below("500101", "成本"), [&] {
    editor_.dialog->Combo(kBookTypeList).SetText("金额外币式");
    Click(kGatherCheck);
    EXPECT_EQ(Items(kGatherList), (Texts{"500101", "5001"}));
    editor_.dialog->Combo(kGatherList).SetText("6001");
    editor_.dialog->Txt(kCodeBox).SetFocus();
    editor_.SetCode("100203");
    editor_.dialog->Txt(kNameBox).SetFocus();  // leaving the code box
    EXPECT_EQ(Items(kGatherList), Texts{"1002"});
    EXPECT_EQ(Chosen(kGatherList), "6001");
    Click(kGatherCheck);
    EXPECT_EQ(Chosen(kGatherList), "");
    EXPECT_EQ(Chosen(kBookTypeList), "金额外币式");
  });
}

TEST_F(DialogTest, AuxiliaryBoxesLockOutWhatMayNotBeCombined) {
  editor_.Open(Beside("1001"), [&] {
    const std::pair<int, const char*> cases[] = {{kDepartmentCheck, "5"},
                                                 {kPersonCheck, "4678"},
                                                 {kCustomerCheck, "57"},
                                                 {kSupplierCheck, "56"},
                                                 {kProjectCheck, "5"}};
    for (const auto& [box, locked] : cases) {
      Click(box);
      EXPECT_EQ(Locked(), locked) << box;
      Click(box);
      EXPECT_EQ(Locked(), "") << box;
    }
    Click(kCustomerCheck);
    Click(kDepartmentCheck);
    Click(kProjectCheck);
    EXPECT_EQ(Locked(), "57");
    Click(kDepartmentCheck);  // does not look at 6 and 8, which still exclude 5
    EXPECT_EQ(Locked(), "7");
    Click(kPersonCheck);
    EXPECT_EQ(Locked(), "4678");
    EXPECT_EQ(Value(kCustomerCheck) + Value(kProjectCheck), 0);
    Click(kPersonCheck);
    EXPECT_EQ(Value(kCustomerCheck) + Value(kProjectCheck), 0);  // what was cleared stays so
  });
}

TEST_F(DialogTest, AnyEditIsAChange) {
  const std::function<void(FmBkmAdd&)> edits[] = {
      [](FmBkmAdd& d) { d.Txt(kControlledByBox).SetText("x"); },
      [](FmBkmAdd& d) { d.Combo(kCategoryList).SetListIndex(3); },
      [](FmBkmAdd& d) { d.Chk(kClosedCheck).Click(); },
      [](FmBkmAdd& d) { d.opt(kCreditOption).Click(); }};
  for (const auto& edit : edits) {
    editor_.Open(Beside("1001"), [&] {
      edit(*editor_.dialog);
      editor_.user.answers = {Answer::kNo};
      EXPECT_TRUE(editor_.dialog->Close());
    });
  }
  EXPECT_EQ(editor_.user.questions.size(), std::size(edits));
}

struct ClosingCase {
  const char* what;
  bool changed;
  bool valid;
  std::deque<Answer> answers;
  bool closes;
  bool stored;
};

TEST_F(DialogTest, ClosesInItsFourWays) {
  const ClosingCase cases[] = {
      {"unchanged", false, true, {}, true, false},
      {"changed, not saved", true, true, {Answer::kNo}, true, false},
      {"changed, saved", true, true, {Answer::kYes}, true, true},
      {"cannot be saved, stays", true, false, {Answer::kYes, Answer::kNo}, false, false},
      {"cannot be saved, closes", true, false, {Answer::kYes, Answer::kYes}, true, false}};
  for (const ClosingCase& c : cases) {
    SCOPED_TRACE(c.what);
    Editor editor;
    editor.Open(Edit(1), [&] {
      if (c.changed) editor.SetName(c.valid ? "现金" : "");
      editor.user.answers = c.answers;
      editor.dialog->Cmd(kCancelButton).Click();
      EXPECT_EQ(editor.dialog->IsOpen(), !c.closes);
      EXPECT_EQ(editor.dialog->Txt(kNameBox).Text(), !c.changed ? "库存现金"
                                                     : c.valid  ? "现金"
                                                                : "");
    });
    using Port = viewkit::UserPort;
    std::vector<test::ScriptedUser::Question> asked;
    if (!c.answers.empty()) {
      asked.push_back({"数据在关闭之前未保存，是否保存？", "提示：", Port::Icon::kInformation,
                       Port::Buttons::kYesNo});
    }
    if (c.answers.size() > 1) {  // a Yes loses the data: Enter gives No
      asked.push_back({"保存数据出错，是否关闭窗体？", "提示：", Port::Icon::kInformation,
                       Port::Buttons::kYesNoDefaultNo});
    }
    EXPECT_EQ(editor.user.questions, asked);
    EXPECT_EQ(test::Scalar(editor.book, "select ccode_name from gl_code where i_id=1"),
              c.stored ? "现金" : "库存现金");
    EXPECT_EQ(editor.saved.size(), c.stored ? 1U : 0U);
  }
}

TEST_F(DialogTest, OpensWithoutAProposalButNotWithoutItsRecord) {
  editor_.Open(Below("5001010101", "成本"), [&] { EXPECT_EQ(editor_.Code(), ""); });
  for (const std::int32_t none : {77, 0, -3}) {
    editor_.Open(Edit(none), [] { ADD_FAILURE() << "opened"; });
  }
  const ReportSeen missing{"LoadData->找不到该科目", kLoadingError};
  EXPECT_EQ(editor_.reports,
            (Reports{{" 本软件仅支持 4 级编码!", kCommandError}, missing, missing, missing}));
}

TEST_F(DialogTest, ASecondOpeningIsRefusedAndHarmsNothing) {
  editor_.Open(Edit(3), [&] {
    editor_.SetName("工商银行");
    editor_.dialog->py_SubProgram(editor_.recorder.System(), "", false, false, "", 1);
    EXPECT_EQ(editor_.reports, (Reports{{"py_SubProgram->科目窗体已经打开", kLoadingError}}));
    EXPECT_EQ(editor_.Code(), "100201");
    EXPECT_TRUE(editor_.dialog->FileSave());
  });
  EXPECT_EQ(editor_.user.dialogs, 1);
}

TEST_F(DialogTest, WorksOnWhenItsOwnerLetsGoOfItAndOfTheHost) {
  auto system = std::make_shared<test::Recorder>(editor_.book.System());
  std::weak_ptr<FmBkmAdd> alive = editor_.dialog;
  editor_.user.in_dialog = [&](viewkit::DialogModel& shown) {
    shown.Opened();
    editor_.dialog.reset();
    system.reset();
    const auto dialog = alive.lock();
    ASSERT_TRUE(dialog);
    dialog->Txt(kNameBox).SetText("现金");
    dialog->Cmd(kSaveButton).Click();
    EXPECT_FALSE(shown.IsOpen());
  };
  auto* dialog = editor_.dialog.get();
  dialog->py_SubProgram(system->System(), "", false, false, "", 1);
  EXPECT_TRUE(alive.expired());
  EXPECT_EQ(test::Scalar(editor_.book, "select ccode_name from gl_code where i_id=1"), "现金");
}

TEST_F(DialogTest, NothingOfTheHostIsHeldAfterwards) {
  auto system = editor_.book.System();
  for (const bool closes : {true, false}) {  // false: the program ends under the open dialog
    editor_.user.in_dialog = [&](viewkit::DialogModel& shown) {
      shown.Opened();
      EXPECT_EQ(closes && shown.Close(), closes);
    };
    editor_.dialog->py_SubProgram(system, "", false, false, "", 1);
    EXPECT_EQ(system.use_count(), 1);
    EXPECT_FALSE(editor_.dialog->IsOpen());
  }
}

TEST_F(DialogTest, AListenerThatThrowsDoesNotReachTheUser) {
  editor_.dialog->EvHasLoad.Add([](bool, std::int32_t) { throw host::HostError("view"); });
  editor_.Open(Edit(1), [&] {
    editor_.SetName("现金");
    EXPECT_FALSE(editor_.dialog->FileSave());
  });
  EXPECT_EQ(editor_.reports, (Reports{{"FileSave->view", kCommandError}}));
}

}  // namespace
}  // namespace tavrix::editing
