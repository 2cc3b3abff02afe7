#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/error.h"
#include "picker/picker_support.h"

// Every call of the host is made to fail once.
namespace tavrix::picker {
namespace {

using test::Fault;
using test::Recorder;
using Action = std::function<void(PickerFixture&)>;

/// `n` counts the host's calls from 0; `call` is the name of the one that failed.
using Check = std::function<void(PickerFixture&, int n, const std::string& call)>;

constexpr Fault kFaults[] = {Fault::kThrow, Fault::kErrorText, Fault::kNull, Fault::kObject};

/// The report that a user sees: in the message label or in a box.
std::string Report(PickerFixture& f) {
  return f.user.questions.empty() ? f.Message() : f.user.questions.back().text;
}

/// Whatever happened, the picker works on as if it had not.
void ExpectSound(PickerFixture& f) {
  f.recorder.Clear();
  f.user.questions.clear();
  f.parameters->Clear();
  f.parameters->Set("bsup", 1);
  f.picker.Refresh();
  EXPECT_EQ(f.Message(), "");
  EXPECT_THAT(f.Column(), testing::ElementsAre("2202"));
  EXPECT_EQ(f.Count(), "共:1条");
  EXPECT_EQ(f.TV().Nodes().Count(), 7);
  EXPECT_TRUE(f.TV().Painting());
  EXPECT_TRUE(f.Cmd(3).Visible());
  EXPECT_EQ(f.user.wait_depth, 0);
  f.Vs().SetRow(1);
  const int picks = f.picks;
  f.Cmd(0).Click();
  EXPECT_EQ(f.picks, picks + 1);
  EXPECT_THAT(f.Picked(), testing::ElementsAre("2202"));
}

/// Runs `action` once for each call of the host that it makes and each way in which that can fail.
void Sweep(const Action& prepare, const Action& action, const Check& expect_failed) {
  int fired = 0;
  for (const Fault fault : kFaults) {
    for (int n = 0;; ++n) {
      PickerFixture f;
      prepare(f);
      f.recorder.Clear();
      f.recorder.FailAt(n, fault);
      action(f);
      const int calls = static_cast<int>(f.recorder.Calls().size());
      if (n >= calls) break;  // all have had their turn
      if (!f.recorder.Fired()) continue;
      ++fired;
      const std::string failed = f.recorder.Calls()[static_cast<std::size_t>(n)].name;
      SCOPED_TRACE(failed);
      EXPECT_EQ(f.user.wait_depth, 0);
      EXPECT_EQ(f.recorder.OpenRecordsets(), 0);
      if (failed.starts_with("Folders")) {  // keeping the status fails in silence
        EXPECT_EQ(Report(f), "");
        ExpectSound(f);
        continue;
      }
      if (fault == Fault::kThrow) {
        EXPECT_THAT(Report(f),
                    testing::EndsWith(Recorder::kFaultText));  // the form adds its prefix
      }
      if (fault == Fault::kObject) {
        EXPECT_THAT(Report(f), testing::HasSubstr("主程序没有提供："));
      }
      if (fault != Fault::kNull) expect_failed(f, n, failed);
      ExpectSound(f);
    }
  }
  EXPECT_GT(fired, 5);
}

void Refreshed(PickerFixture& f) {
  f.picker.Refresh();
}

/// Of the list's load, what comes before it is in place fails it; all else is the rest's concern.
Check LoadsUnlessItsQueryFails(const Action& prepare, std::size_t whole, std::size_t before) {
  PickerFixture sound;
  prepare(sound);
  sound.recorder.Clear();
  sound.picker.Refresh();
  int start = 0;
  for (const test::HostCall& call : sound.recorder.Calls()) {
    if (call.name == "Database.ConnectionProperties") break;
    ++start;
  }
  return [=](PickerFixture& f, int n, const std::string& call) {
    const bool fails = n >= start - 1 && !call.starts_with("MouseEvent.");
    EXPECT_EQ(f.Column().size(), fails ? before : whole);
    EXPECT_EQ(f.Count(), fails ? "" : "共:" + std::to_string(whole) + "条");
  };
}

TEST(Faults, Refresh) {
  const Action nothing = [](PickerFixture&) {};
  Sweep(
      nothing, [](PickerFixture& f) { EXPECT_TRUE(f.picker.Refresh()); },
      LoadsUnlessItsQueryFails(nothing, 8, 0));
}

TEST(Faults, RefreshWithATreeOfAccounts) {
  const Action codes = [](PickerFixture& f) { f.parameters->Set("科目编码", ""); };
  Sweep(
      codes, [](PickerFixture& f) { EXPECT_TRUE(f.picker.Refresh()); },
      LoadsUnlessItsQueryFails(codes, 8, 0));
}

TEST(Faults, AListThatCannotBeLoadedAnewStays) {
  const auto keeps = [](std::size_t loaded) {
    return [loaded](PickerFixture& f, int, const std::string& call) {
      const std::size_t rows = call.starts_with("MouseEvent.") ? loaded : 8;
      EXPECT_EQ(f.Column().size(), rows);
      EXPECT_THAT(f.Count(), testing::StartsWith("共:" + std::to_string(rows) + "条"));
    };
  };
  Sweep(
      Refreshed, [](PickerFixture& f) { f.SelectNode("r资产"); }, keeps(4));
  Sweep(
      Refreshed, [](PickerFixture& f) { f.Box("Chk").Click(); }, keeps(8));
}

/// Everything of an account is there, or the account is not.
void ExpectWholeAccounts(PickerFixture& f) {
  for (std::int32_t at = 0; f.picker.Selected() && at < f.picker.Selected()->Count(); ++at) {
    EXPECT_NE(f.picker.Selected()->At(static_cast<std::size_t>(at))->cbook_type, "");
  }
}

TEST(Faults, Pick) {
  const auto select = [](PickerFixture& f) {
    f.picker.Refresh();
    f.SelectRows({"1001", "2202"});
  };
  Sweep(
      select, [](PickerFixture& f) { f.Cmd(0).Click(); },
      [](PickerFixture& f, int, const std::string&) {
        EXPECT_EQ(f.picks, 0);
        EXPECT_EQ(f.picker.Text(), "");
        ExpectWholeAccounts(f);
      });
}

TEST(Faults, RowOfASavedAccount) {
  Sweep(
      Refreshed,
      [](PickerFixture& f) {
        f.Vs().SetRow(f.RowOf("2202"));
        f.user.in_dialog = [&](viewkit::DialogModel& dialog) {
          dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(false, 5);
          dialog.Unload();
        };
        f.Cmd(3).Click();
      },
      [](PickerFixture& f, int, const std::string&) {
        EXPECT_EQ(f.Vs().TextMatrix(f.RowOf("2202"), 2), "应付账款");
      });
}

TEST(Faults, InitHandsTheFailureToItsCaller) {
  for (const Fault fault : kFaults) {
    for (int n = 0;; ++n) {
      PickerFixture f;
      f.picker.Clear();
      f.recorder.Clear();
      f.recorder.FailAt(n, fault);
      bool failed = false;
      try {
        (void)f.picker.Init(f.recorder.System(), 77, "");
      } catch (const host::HostError&) {
        failed = true;
      }
      const int calls = static_cast<int>(f.recorder.Calls().size());
      if (n >= calls) break;
      const std::string call = f.recorder.Calls()[static_cast<std::size_t>(n)].name;
      SCOPED_TRACE(call);
      // A setting may be null.
      const bool harmless = fault == Fault::kNull && call == "Recordset.Fields";
      EXPECT_EQ(failed, f.recorder.Fired() && !harmless);
      EXPECT_EQ(f.recorder.OpenRecordsets(), 0);
      if (failed) {
        f.recorder.Clear();
        f.picker.Refresh();
        f.Cmd(2).Click();
        f.Cmd(3).Click();
        EXPECT_EQ(f.Message(), "控件尚未初始化");
        EXPECT_TRUE(f.recorder.Calls().empty());
        EXPECT_EQ(f.Vs().Rows(), f.Vs().FixedRows());
      }
      f.picker.Clear();
      f.Init();
      ExpectSound(f);
    }
  }
}

TEST(Faults, ValidateHandsTheFailureToItsCaller) {
  for (const Fault fault : {Fault::kThrow, Fault::kObject}) {
    for (int n = 0;; ++n) {
      PickerFixture f;
      f.recorder.Clear();
      f.recorder.FailAt(n, fault);
      std::string code = "old";
      std::string name = "old";
      bool failed = false;
      try {
        (void)f.picker.Validate("", "", "", "1001", code, name);
      } catch (const host::HostError&) {
        failed = true;
        EXPECT_EQ(code + name, "");
      }
      if (n >= static_cast<int>(f.recorder.Calls().size())) break;
      SCOPED_TRACE(f.recorder.Calls()[static_cast<std::size_t>(n)].name);
      EXPECT_EQ(failed, f.recorder.Fired());
      EXPECT_EQ(f.recorder.OpenRecordsets(), 0);
      ExpectWholeAccounts(f);
      ExpectSound(f);
    }
  }
}

TEST(Faults, ClearGoesOnPastEveryFailure) {
  for (int n = 0; n < 6; ++n) {
    PickerFixture f;
    f.picker.Refresh();
    f.recorder.FailAt(n, Fault::kThrow);
    f.picker.Clear();
    EXPECT_EQ(f.picker.Objects(), nullptr);
    EXPECT_EQ(f.picker.PickerParameters(), nullptr);
    f.recorder.Clear();
    f.Init();
    ExpectSound(f);
  }
}

}  // namespace
}  // namespace tavrix::picker
