#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "editor_test.h"
#include "host/report.h"

namespace tavrix::editing {
namespace {

using host::kCommandError;
using host::kLoadingError;
using test::Fault;

/// A routine of the dialog, with what surrounds it.
struct Scenario {
  const char* name;
  Opening opening;
  /// Edits before the routine; null when the opening itself is the routine.
  void (*prepare)(Editor&);
  bool (*run)(Editor&);
  /// The prefixes of the reports, in the order in which the host's calls come. A text of the
  /// database's own has none.
  Texts prefixes;
};

void PostEverywhere(Editor& editor) {
  for (const char* ledger : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
    test::AddPosting(editor.book, ledger, "1001");
  }
}

const Scenario kScenarios[] = {
    {"OpenBelow",
     Below("1002"),
     nullptr,
     nullptr,
     {"py_SubProgram->", "InitBaseValue->", "-->NextBm::"}},
    {"OpenRecord", Edit(3), nullptr, nullptr, {"py_SubProgram->", "InitBaseValue->", "LoadData->"}},
    {"SaveNew",
     Below("1001"),
     [](Editor& editor) {
       editor.SetCode("100102");
       editor.SetName("人民币");
     },
     [](Editor& editor) { return editor.dialog->FileSave(); },
     {"IsCanSave->", "BmIsTrue::", "FileSave->"}},
    {"SaveMoved",
     Edit(8),
     [](Editor& editor) { editor.SetCode("100101"); },
     [](Editor& editor) { return editor.dialog->FileSave(); },
     {"IsCanSave->", "BmIsTrue::", "IsCanEdit::", "FileSave->"}},
    {"LeaveCodeBox",
     Edit(3),
     [](Editor& editor) {
       editor.dialog->Chk(kGatherCheck).Click();
       editor.SetCode("100209");
       editor.dialog->Txt(kCodeBox).SetFocus();
     },
     [](Editor& editor) {
       editor.dialog->Txt(kNameBox).SetFocus();
       return editor.reports.empty();
     },
     {"BmIsTrue::", "FillGatherList->"}},
};

struct Outcome {
  std::unique_ptr<Editor> editor;
  bool done = false;
  bool shown = false;
  Texts before;
  Texts after;
};

/// Runs the scenario; `call` < 0: without a fault.
Outcome Play(const char* driver, const Scenario& scenario, int call, Fault fault) {
  Outcome outcome;
  outcome.editor = std::make_unique<Editor>(test::MakeBookOn(driver));
  Editor& editor = *outcome.editor;
  PostEverywhere(editor);
  const auto plan = [&] {
    if (call >= 0) editor.recorder.FailAt(call, fault);
  };
  editor.user.in_dialog = [&](viewkit::DialogModel& shown) {
    outcome.shown = true;
    shown.Opened();
    if (scenario.run != nullptr) {
      scenario.prepare(editor);
      editor.recorder.Clear();
      outcome.before = Look(editor);
      plan();
      outcome.done = scenario.run(editor);
      outcome.after = Look(editor);
    }
    EXPECT_TRUE(editor.messages.empty() || editor.messages.back().empty());
    editor.user.answers = {viewkit::UserPort::Answer::kNo};
    EXPECT_TRUE(shown.Close());
  };
  if (scenario.run == nullptr) plan();
  const Opening& how = scenario.opening;
  editor.dialog->py_SubProgram(editor.recorder.System(), how.category, how.is_new, how.below,
                               how.reference, how.id);
  if (scenario.run == nullptr) outcome.done = outcome.shown && editor.reports.empty();
  EXPECT_EQ(editor.user.wait_depth, 0);
  return outcome;
}

std::string PrefixOf(const std::string& report, Fault fault) {
  const bool missing = fault == Fault::kNull || fault == Fault::kObject;
  const std::string text = missing ? "主程序没有提供：" : test::Recorder::kFaultText;
  const std::size_t at = report.find(text);
  return at == std::string::npos ? "no text of the fault: " + report : report.substr(0, at);
}

/// Reads a value that may well be null: a column, the flag of a parent, a driver's name.
bool MayBeNull(const std::string& call) {
  return call == "Recordset.Fields" || call == "Statement.ScalarValue" || call == "Property.Value";
}

/// All of `part` is in `whole`, in its order.
bool Follows(const Texts& part, const Texts& whole) {
  auto at = whole.begin();
  return std::ranges::all_of(part, [&](const std::string& text) {
    at = std::find(at, whole.end(), text);
    return at != whole.end() && at++ != whole.end();
  });
}

/// One report with the fault's text, nothing else changed; gives the report's prefix.
std::string CheckFailure(const Outcome& failed, const Scenario& scenario, Fault fault,
                         const std::string& call, const Texts& sound) {
  const Reports& reports = failed.editor->reports;
  EXPECT_FALSE(failed.done);
  EXPECT_EQ(reports.size(), 1U);
  if (reports.empty()) return {};
  const std::string prefix = PrefixOf(reports[0].text, fault);
  const bool loading = scenario.run == nullptr && prefix != "-->NextBm::";
  EXPECT_EQ(reports[0].level, loading ? kLoadingError : kCommandError);
  // A list that cannot be read stays empty; without the record or the code rule nothing can be
  // saved.
  const bool list =
      prefix == "InitBaseValue->" && call != "GetSetting" && call != "SettingEntry.Value";
  EXPECT_EQ(failed.shown, !loading || list);
  EXPECT_EQ(failed.before, failed.after);
  // A check of the record that fails counts as no change; anything else is still unsaved.
  const bool unsaved = scenario.run != nullptr && prefix != "IsCanEdit::";
  EXPECT_EQ(failed.editor->user.questions.empty(), !unsaved);
  EXPECT_EQ(failed.editor->recorder.OpenRecordsets(), 0);
  EXPECT_TRUE(Follows(failed.editor->recorder.Statements(), sound));
  return prefix;
}

/// Makes every call that allows it fail once; gives the reports' prefixes without repetitions.
Texts Sweep(const char* driver, const Scenario& scenario, Fault fault) {
  const Outcome sound = Play(driver, scenario, -1, fault);
  EXPECT_TRUE(sound.done);
  const auto calls = sound.editor->recorder.Calls();
  Texts prefixes;
  for (std::size_t call = 0; call < calls.size(); ++call) {
    if (!calls[call].Allows(fault)) continue;
    SCOPED_TRACE(std::to_string(call) + " " + calls[call].name);
    const Outcome outcome = Play(driver, scenario, static_cast<int>(call), fault);
    EXPECT_TRUE(outcome.editor->recorder.Fired());
    // A leaf flag that is missing is not that of a leaf.
    const Reports& reports = outcome.editor->reports;
    const bool by_rule =
        outcome.done || (!reports.empty() && reports[0].text == "不能修改非明细级编码!");
    if (fault == Fault::kNull && MayBeNull(calls[call].name) && by_rule) continue;
    const std::string prefix = CheckFailure(outcome, scenario, fault, calls[call].name,
                                            sound.editor->recorder.Statements());
    if (prefixes.empty() || prefixes.back() != prefix) prefixes.push_back(prefix);
  }
  return prefixes;
}

TEST(FaultSweep, EachFailingCallOfTheHostIsReportedOnceAndChangesNothingMore) {
  for (const char* driver : test::Engines()) {
    for (const Scenario& scenario : kScenarios) {
      SCOPED_TRACE(std::string(driver) + " " + scenario.name);
      EXPECT_EQ(Sweep(driver, scenario, Fault::kThrow), scenario.prefixes);
      for (const Fault fault : {Fault::kNull, Fault::kObject}) {
        EXPECT_THAT(scenario.prefixes, testing::IsSupersetOf(Sweep(driver, scenario, fault)));
      }
      const bool writes = std::string_view(scenario.name).starts_with("Save");
      // The database's own text has no prefix.
      EXPECT_EQ(Sweep(driver, scenario, Fault::kErrorText), writes ? Texts{""} : Texts{});
    }
  }
}

}  // namespace
}  // namespace tavrix::editing
