#include <gmock/gmock.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "editor_test.h"
#include "host/report.h"

// A save that failed half way, and the one after it.
namespace tavrix::editing {
namespace {

using test::Fault;
using Saved = std::vector<std::pair<bool, std::int32_t>>;

/// What is saved, and what the user does to it.
struct Work {
  const char* name;
  Opening opening;
  const char* code;      ///< that the account is given
  const char* old_code;  ///< of an account that is changed
};
const Work kWorks[] = {
    {"the first sub-account", Below("1001"), "100101", ""},
    {"a sibling", Beside("100201"), "100203", ""},
    {"the only sub-account, below another parent", Edit(8), "100101", "50010101"},
    {"one of two sub-accounts, to the first level", Edit(3), "1003", "100201"},
    {"a name", Edit(5), "2202", "2202"},
};

/// What the user does between the two saves.
struct Pause {
  const char* name;
  const char* new_name;  ///< empty: the name stays
  const char* new_code;  ///< empty: the code stays; "old": as it was before
};
const Pause kPauses[] = {{"nothing", "", ""},
                         {"another name", "第二个", ""},
                         {"another parent", "", "220201"},
                         {"a place among siblings", "", "100109"},
                         {"as it was", "", "old"}};

constexpr const char* kTables[] = {"gl_code", "gl_accvouch", "gl_accass", "gl_accsum"};

/// A chart with postings on many accounts, on a host whose database has no rules of its own. It is
/// put back before each case.
class SecondSave : public EditorTest {
 protected:
  SecondSave() {
    test::DropLedgerRules(editor_.book);
    for (const char* code : {"1001", "50010101", "100201", "2202"}) {
      for (const char* ledger : kLedgers) test::AddPosting(editor_.book, ledger, code);
    }
    for (const std::string table : kTables) {
      test::Run(editor_.book, "create table kept_" + table + " as select * from " + table);
    }
  }
  void Restore() {
    for (const std::string table : kTables) {
      test::Run(editor_.book, "delete from " + table);
      test::Run(editor_.book, "insert into " + table + " select * from kept_" + table);
    }
    editor_.reports.clear();
    editor_.saved.clear();
  }
  void Type(const Work& work) {
    editor_.SetCode(work.code);
    editor_.SetName("第一个");
  }
  void DoMeanwhile(const Work& work, const Pause& pause) {
    const std::string code = pause.new_code;
    if (*pause.new_name != 0) editor_.SetName(pause.new_name);
    if (code == "old") {
      editor_.SetCode(*work.old_code != 0 ? work.old_code : work.code);
    } else if (!code.empty()) {
      editor_.SetCode(code);
    }
  }
  /// All that a save writes, but for the identifier that it is given.
  [[nodiscard]] Texts Contents() const {
    Texts all = test::AllRows(editor_.book,
                              "select ccode,ccode_name,igrade,bend,cclass from gl_code "
                              "order by ccode");
    for (const std::string ledger : kLedgers) {
      for (const std::string& code :
           test::AllRows(editor_.book, "select ccode from " + ledger + " order by ccode")) {
        all.push_back(ledger + " " + code);
      }
    }
    return all;
  }
  /// The chart when no call fails: after both saves, or when the user types the whole at once.
  Texts Sound(const Work& work, const Pause& pause, bool both) {
    Restore();
    editor_.Open(work.opening, [&] {
      Type(work);
      EXPECT_TRUE(!both || editor_.dialog->FileSave());
      DoMeanwhile(work, pause);
      (void)editor_.dialog->FileSave();
      EXPECT_TRUE(editor_.reports.empty());
    });
    EXPECT_EQ(test::BrokenRules(editor_.book), Texts());
    return Contents();
  }
  /// Calls whose failure is tried.
  using Chosen = bool (*)(const test::HostCall& call);
  void FailEachCall(const Work& work, const Pause& pause,
                    std::vector<std::pair<Fault, Chosen>> how);
  void SaveAgain(const Work& work, const Pause& pause);
};
INSTANTIATE_TEST_SUITE_P(Dialects, SecondSave, testing::ValuesIn(test::Engines()), DialectName);

void SecondSave::SaveAgain(const Work& work, const Pause& pause) {
  EXPECT_TRUE(editor_.saved.empty());
  const std::string& report = editor_.reports.at(0).text;
  const bool refused = report.starts_with("IsCanEdit::") || report == "不能修改非明细级编码!";
  DoMeanwhile(work, pause);
  if (refused) editor_.SetName(editor_.dialog->Txt(kNameBox).Text() + " ");  // counts as a change
  editor_.reports.clear();
  EXPECT_TRUE(editor_.dialog->FileSave());
  EXPECT_EQ(editor_.reports, Reports());
  const std::string id =
      test::Scalar(editor_.book, "select i_id from gl_code where ccode='" + editor_.Code() + "'");
  EXPECT_EQ(editor_.saved, (Saved{{work.opening.is_new, std::atoi(id.c_str())}}));
  EXPECT_FALSE(editor_.dialog->FileSave());  // nothing is left
  EXPECT_EQ(test::BrokenRules(editor_.book), Texts());
}

void SecondSave::FailEachCall(const Work& work, const Pause& pause,
                              std::vector<std::pair<Fault, Chosen>> how) {
  const Texts after_both = Sound(work, pause, true);
  const Texts at_once = Sound(work, pause, false);
  std::vector<test::HostCall> calls;
  Restore();
  editor_.Open(work.opening, [&] {
    Type(work);
    editor_.recorder.Clear();
    EXPECT_TRUE(editor_.dialog->FileSave());
    calls = editor_.recorder.Calls();
  });
  for (const auto& [fault, chosen] : how) {
    for (std::size_t call = 0; call < calls.size(); ++call) {
      if (!calls[call].Allows(fault) || !chosen(calls[call])) continue;
      SCOPED_TRACE(std::to_string(call) + " " + calls[call].name + " fault " +
                   std::to_string(static_cast<int>(fault)));
      Restore();
      bool failed = true;
      editor_.Open(work.opening, [&] {
        Type(work);
        editor_.recorder.Clear();
        editor_.recorder.FailAt(static_cast<int>(call), fault);
        // A null may stand: for the flag of no leaf, for another dialect.
        failed = !editor_.dialog->FileSave();
        if (failed) SaveAgain(work, pause);
      });
      if (!failed) continue;
      EXPECT_THAT(Contents(), testing::AnyOf(after_both, at_once));
      EXPECT_EQ(editor_.recorder.OpenRecordsets(), 0);
    }
  }
}

TEST_P(SecondSave, FinishesWhatAFailingStatementLeft) {
  const auto runs = [](const test::HostCall& call) { return call.name.starts_with("Statement."); };
  const auto any = [](const test::HostCall&) { return true; };
  for (const Work& work : kWorks) {
    for (const Pause& pause : kPauses) {
      SCOPED_TRACE(std::string(work.name) + ", then " + pause.name);
      if (std::string(pause.new_code).starts_with(work.code)) continue;  // below itself
      // It has not run; it has, whatever the database says.
      FailEachCall(work, pause, {{Fault::kThrow, runs}, {Fault::kErrorText, any}});
    }
  }
}

TEST_P(SecondSave, FinishesWhatEveryFailingCallLeft) {
  const auto any = [](const test::HostCall&) { return true; };
  for (const Work& work : kWorks) {
    SCOPED_TRACE(work.name);
    FailEachCall(work, kPauses[0],
                 {{Fault::kThrow, any}, {Fault::kNull, any}, {Fault::kObject, any}});
  }
}

/// A check of the record that fails clears the changed flag, not what there is to write.
TEST_P(SecondSave, WritesWhatWasTypedBeforeACheckThatFailed) {
  bool failed = false;
  const auto fails_once_at = [&](const std::string& update) {
    failed = false;
    editor_.recorder.BeforeEach([&, update](const std::string& sql) {
      if (failed || !sql.starts_with(update)) return;
      failed = true;
      editor_.recorder.FailNext("ErrorEntry.Description", Fault::kErrorText, "锁定");
    });
    EXPECT_FALSE(editor_.dialog->FileSave());
  };
  const auto account_fails = [&] {
    editor_.SetName("直接用料");
    fails_once_at("update gl_code");
  };
  const auto ledger_fails = [&] {
    editor_.SetCode("100101");
    fails_once_at("update gl_accass");
    editor_.SetName("直接用料");
  };
  const std::function<void()> first_saves[] = {account_fails, ledger_fails};
  for (const auto& first_save : first_saves) {
    Restore();
    editor_.Open(Edit(8), [&] {
      first_save();
      editor_.recorder.FailNext("Statement.Recordset", Fault::kThrow);
      EXPECT_FALSE(editor_.dialog->FileSave());
      EXPECT_TRUE(editor_.reports.back().text.starts_with("IsCanEdit::"));
      // Whatever the first save has written is not counted.
      test::Run(editor_.book, "update gl_code set ccode_name='' where i_id=8");
      EXPECT_TRUE(editor_.dialog->FileSave());
      EXPECT_EQ(test::Scalar(editor_.book, "select ccode_name from gl_code where i_id=8"),
                "直接用料");
      EXPECT_EQ(editor_.saved, (Saved{{false, 8}}));
    });
    EXPECT_EQ(test::BrokenRules(editor_.book), Texts());
  }
}

TEST_P(SecondSave, SendsOnlyWhatIsLeftAndAsksOnClosingUntilItHas) {
  Editor& editor = editor_;
  Restore();
  editor.Open(Below("1001"), [&] {
    editor.SetName("人民币");
    int sent = 0;  // the second of the three ledgers is locked
    editor.recorder.BeforeEach([&](const std::string& sql) {
      if (sql.starts_with("update gl_accass") && sent++ == 0) {
        editor.recorder.FailNext("ErrorEntry.Description", Fault::kErrorText, "锁定");
      }
    });
    EXPECT_FALSE(editor.dialog->FileSave());
    EXPECT_EQ(editor.reports, (Reports{{"锁定", host::kCommandError}}));
    editor.user.answers = {viewkit::UserPort::Answer::kYes};  // yes, save
    editor.recorder.Clear();
    EXPECT_TRUE(editor.dialog->Close());
    const std::string id = test::Scalar(editor.book, "select max(i_id) from gl_code");
    EXPECT_EQ(editor.recorder.Statements(),
              (Texts{"Select bend,ccode from gl_code Where i_ID=" + id,
                     "update gl_accass set ccode='100101' where ccode='1001'",
                     "update gl_accsum set ccode='100101' where ccode='1001'"}));
    EXPECT_EQ(editor.saved, (Saved{{true, std::stoi(id)}}));
  });
  EXPECT_EQ(editor.user.questions.size(), 1U);
}

}  // namespace
}  // namespace tavrix::editing
