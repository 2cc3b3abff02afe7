#include <string>

#include "editor_test.h"
#include "host/report.h"

namespace tavrix::editing {
namespace {

using desk::book::Account;
using host::kCommandError;
using viewkit::CheckBox;

using Saved = std::vector<std::pair<bool, std::int32_t>>;

class SavingTest : public EditorTest {
 protected:
  [[nodiscard]] std::string Cell(const std::string& column, const std::string& code) const {
    return test::Scalar(editor_.book,
                        "select " + column + " from gl_code where ccode='" + code + "'");
  }
  /// The codes of all postings, ledger by ledger.
  [[nodiscard]] Texts Postings() const {
    const std::string from[] = {"gl_accvouch", "gl_accass", "gl_accsum"};
    Texts all;
    for (const std::string& ledger : from) {
      for (const std::string& code :
           test::AllRows(editor_.book, "select ccode from " + ledger + " order by i_id")) {
        all.push_back(ledger.substr(6) + "|" + code);
      }
    }
    return all;
  }
  void PostTo(const std::string& code) {
    for (const char* ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
      test::AddPosting(editor_.book, ledger, code);
    }
  }
  /// Statements that move the postings of `from` to `to`.
  static Texts Moves(const std::string& from, const std::string& to) {
    const std::string rest = " set ccode='" + to + "' where ccode='" + from + "'";
    return {"update gl_accvouch" + rest, "update gl_accass" + rest, "update gl_accsum" + rest};
  }
  static Texts Joined(Texts first, const Texts& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
  }
};
INSTANTIATE_TEST_SUITE_P(Dialects, SavingTest, testing::ValuesIn(test::Engines()), DialectName);

TEST_P(SavingTest, TheFirstSubAccountTakesOverFromItsParent) {
  PostTo("1001");
  editor_.Open(Below("1001"), [&] {
    FmBkmAdd& dialog = *editor_.dialog;
    dialog.Txt(kNameBox).SetText(" 人民币现金 ");
    dialog.Txt(kEnglishNameBox).SetText("Cash");
    dialog.Txt(kMnemonicBox).SetText("rmb");
    dialog.Txt(kControlledByBox).SetText("出纳");
    dialog.Chk(kCurrencyCheck).Click();
    dialog.Combo(kCurrencyList).SetText("美元");
    dialog.Chk(kDepartmentCheck).Click();
    dialog.Chk(kProjectCheck).Click();
    dialog.Chk(kJournalCheck).Click();
    dialog.opt(kCreditOption).Click();
    editor_.Save();
    EXPECT_FALSE(dialog.IsOpen());
  });
  const std::string id = test::Scalar(editor_.book, "select max(i_id) from gl_code");
  const std::string insert =
      "insert into gl_code(I_id,cclass,Cclass_engl,cclassany,cclassany_engl,ccode,ccode_name,"
      "ccode_engl,igrade,bproperty,cbook_type,cbook_type_engl,chelp,cexch_name,cmeasure,bperson,"
      "bcus,bsup,bdept,bitem,cass_item,br,be,cgather,bend,bexchange,bcash,bbank,bused,bd_c,dbegin,"
      "dend,itrans,bclose,cother,iotherused,bcashitem)values(" +
      id + ",'资产','','','','100101','人民币现金','Cash',2,";
  const std::string values =
      Jet() ? "False,'金额外币式','','rmb','美元','',False,False,False,True,True,'',True,False,'',"
              "True,True,0,0,0,0,0,0,0,False,'出纳',0,0)"
            : "0,'金额外币式','','rmb','美元','',0,0,0,1,1,'',1,0,'',"
              "1,1,0,0,0,0,0,0,0,0,'出纳',0,0)";
  const Texts after = {insert + values, "select bend from gl_code where ccode='1001'",
                       "update gl_code set bend=0 where ccode='1001'"};
  EXPECT_EQ(editor_.recorder.Statements(), Joined(after, Moves("1001", "100101")));
  EXPECT_EQ(Cell("bend", "1001"), "0");
  EXPECT_EQ(Cell("ccode_name||bexchange||bdept||bitem||br||bend||bproperty", "100101"),
            "人民币现金111110");
  EXPECT_EQ(Postings(), (Texts{"vouch|100101", "ass|100101", "sum|100101"}));
  EXPECT_EQ(editor_.saved, (Saved{{true, std::stoi(id)}}));
  EXPECT_EQ(editor_.messages, (Texts{"正在保存数据", ""}));
  EXPECT_TRUE(editor_.reports.empty());
  for (const test::HostCall& call : editor_.recorder.Calls()) {
    if (call.name != "NewIdentifier") continue;
    EXPECT_EQ(call.detail, "gl_code|i_ID");
  }
}

TEST_P(SavingTest, ACodeMovesAcrossParentsWithItsPostings) {
  test::Run(editor_.book, "delete from gl_code where ccode='100202'");
  PostTo("100201");
  PostTo("1001");
  PostTo("10020101");  // no account's: it must stay
  editor_.Open(Edit(3), [&] {
    editor_.SetCode("100101");
    editor_.Save();
  });
  const auto flag = [&](int value) -> std::string {
    return Jet() ? (value != 0 ? "True" : "False") : std::to_string(value);
  };
  const std::string update =
      "update gl_code set cclass='资产',ccode='100101',ccode_name='工行',ccode_engl='',igrade=2,"
      "bproperty=" +
      flag(1) + ",cbook_type='金额式',chelp='gh',bexchange=" + flag(0) +
      ",cexch_name='',cmeasure='',bperson=" + flag(0) + ",bcus=" + flag(0) + ",bsup=" + flag(0) +
      ",bdept=" + flag(0) + ",bitem=" + flag(0) + ",br=" + flag(0) + ",be=" + flag(0) +
      ",cgather='',bclose=" + flag(0) + ",cother='' where i_id=3";
  Texts expected = {"Select i_ID,ccode from gl_code where left(ccode,4)='1001'",
                    "Select bend,ccode from gl_code Where i_ID=3", update};
  expected = Joined(expected, Moves("100201", "100101"));
  expected =
      Joined(expected, {"select count(i_ID) from gl_code where ccode like '1002%' and len(ccode)>4",
                        "update gl_code set bend=1 where ccode='1002'",
                        "select bend from gl_code where ccode='1001'",
                        "update gl_code set bend=0 where ccode='1001'"});
  EXPECT_EQ(editor_.recorder.Statements(), Joined(expected, Moves("1001", "100101")));
  EXPECT_EQ(Cell("bend", "1002") + Cell("bend", "1001"), "10");
  EXPECT_EQ(Postings(),
            (Texts{"vouch|100101", "vouch|100101", "vouch|10020101", "ass|100101", "ass|100101",
                   "ass|10020101", "sum|100101", "sum|100101", "sum|10020101"}));
  EXPECT_EQ(editor_.saved, (Saved{{false, 3}}));
}

TEST_P(SavingTest, AParentKeepsItsFlagWhileItHasAccountsAndItsPostingsUnlessTheFlagIsOne) {
  PostTo("1001");
  test::Run(editor_.book, "update gl_code set bend=-1 where ccode='1001'");
  editor_.Open(Edit(3), [&] {
    editor_.SetCode("100101");
    editor_.Save();
  });
  EXPECT_EQ(Cell("bend", "1002") + Cell("bend", "1001"), "0-1");
  EXPECT_EQ(Postings(), (Texts{"vouch|1001", "ass|1001", "sum|1001"}));
  EXPECT_TRUE(editor_.reports.empty());
}

TEST_P(SavingTest, SavingAgainUpdatesTheAccountThatWasJustAdded) {
  editor_.Open(Beside("1001"), [&] {
    editor_.SetName("其他");
    EXPECT_TRUE(editor_.dialog->FileSave());
    EXPECT_FALSE(editor_.dialog->FileSave());  // nothing new
    editor_.SetName("其他货币资金");
    EXPECT_TRUE(editor_.dialog->FileSave());
  });
  ASSERT_EQ(editor_.saved.size(), 2U);
  EXPECT_FALSE(editor_.saved[1].first);
  EXPECT_EQ(editor_.saved[0].second, editor_.saved[1].second);
  EXPECT_EQ(test::AllRows(editor_.book, "select ccode_name from gl_code where ccode='1003'"),
            Texts{"其他货币资金"});
}

TEST_P(SavingTest, WhatTheDatabaseRefusesIsShownAndLeavesTheDialogAsItWas) {
  editor_.Open(Beside("1001"), [&] {
    editor_.SetName("O'Neill");
    editor_.Save();
    EXPECT_TRUE(editor_.dialog->IsOpen());
    ASSERT_EQ(editor_.reports.size(), 1U);
    EXPECT_FALSE(editor_.reports[0].text.starts_with("FileSave->"));  // the database's own text
    EXPECT_EQ(editor_.dialog->Txt(kNameBox).Text(), "O'Neill");
    EXPECT_EQ(Cell("i_id", "1003"), "(none)");
    editor_.SetName("欧尼尔");
    editor_.recorder.FailNext("NewIdentifier", test::Fault::kErrorText, "编号已用完");
    editor_.Save();
    EXPECT_EQ(editor_.reports.back(), (ReportSeen{"编号已用完", kCommandError}));
    editor_.Save();
    EXPECT_FALSE(editor_.dialog->IsOpen());
  });
  EXPECT_EQ(Cell("ccode_name", "1003"), "欧尼尔");
}

TEST_P(SavingTest, OddTextsAreStoredAndShownWhole) {
  std::string long_name;
  for (int i = 0; i < 1000; ++i) long_name += "长";
  const std::string names[] = {long_name, "a \"b\" %_*?#[x]; --", "工行  北京", "😀名"};
  for (const std::string& name : names) {
    editor_.Open(Edit(4), [&] {
      editor_.SetName("  " + name + " ");
      editor_.Save();
    });
    EXPECT_EQ(Cell("ccode_name", "100202"), name);
    editor_.Open(Edit(4), [&] { EXPECT_EQ(editor_.dialog->Txt(kNameBox).Text(), name); });
  }
  for (const std::string code : {" 10AB ", "１００４"}) {
    editor_.Open(Beside("1001"), [&] {
      editor_.SetCode(code);
      editor_.SetName("x");
      editor_.Save();
    });
  }
  EXPECT_EQ(Cell("igrade", "10AB") + Cell("igrade", "１００４"), "11");
  EXPECT_TRUE(editor_.reports.empty());
}

TEST_P(SavingTest, LoadingAndSavingChangeNothingButTheEdit) {
  // Every column away from its default, with flags that exclude each other and texts that no list
  // has: what was stored by others is not the dialog's to mend.
  test::Run(editor_.book,
            "update gl_code set ccode_engl='E',bproperty=0,cbook_type='金额数量式',chelp='h',"
            "cexch_name='比索',cmeasure='台',bperson=1,bcus=1,bsup=1,bdept=1,bitem=1,br=1,be=1,"
            "cgather='1002',bexchange=1,bclose=1,cother='固定资产',cass_item='keep',bcash=1 "
            "where i_id=3");
  const std::string all = "select * from gl_code where i_id=3";
  const Texts before = test::AllRows(editor_.book, all);
  editor_.Open(Edit(3), [&] {
    editor_.SetName("工商银行");
    editor_.Save();
    EXPECT_FALSE(editor_.dialog->IsOpen());
  });
  EXPECT_EQ(editor_.recorder.Statements().size(), 3U);  // no posting is touched
  EXPECT_NE(test::AllRows(editor_.book, all), before);
  test::Run(editor_.book, "update gl_code set ccode_name='工行' where i_id=3");
  EXPECT_EQ(test::AllRows(editor_.book, all), before);
}

TEST(UpdateLedgerCode, StopsAtTheFirstStatementThatFails) {
  Editor editor;
  editor.recorder.FailNext("ErrorEntry.Description", test::Fault::kErrorText, "锁定");
  EXPECT_EQ(UpdateLedgerCode(*editor.recorder.System(), "1001", "1002"), "锁定");
  EXPECT_EQ(editor.recorder.Statements(),
            Texts{"update gl_accvouch set ccode='1002' where ccode='1001'"});
  EXPECT_EQ(UpdateLedgerCode(*editor.recorder.System(), "1001", "1002"), "");
}

}  // namespace
}  // namespace tavrix::editing
