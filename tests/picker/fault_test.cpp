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

constexpr Fault kFaults[] = {Fault::kThrow, Fault::kErrorText, Fault::kNull};

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
void Sweep(const Action& prepare, const Action& action, const Action& expect_failed) {
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
      if (failed.starts_with("Folders")) {  // keeping the status fails in silence
        EXPECT_EQ(Report(f), "");
        ExpectSound(f);
        continue;
      }
      if (fault == Fault::kThrow) {
        EXPECT_THAT(Report(f),
                    testing::EndsWith(Recorder::kFaultText));  // the form adds its prefix
      }
      if (fault != Fault::kNull) expect_failed(f);
      ExpectSound(f);
    }
  }
  EXPECT_GT(fired, 5);
}

void Refreshed(PickerFixture& f) {
  f.picker.Refresh();
}

TEST(Faults, Refresh) {
  Sweep([](PickerFixture&) {}, [](PickerFixture& f) { EXPECT_TRUE(f.picker.Refresh()); },
        [](PickerFixture& f) { EXPECT_THAT(f.Column().size(), testing::AnyOf(0U, 8U)); });
}

TEST(Faults, RefreshWithATreeOfAccounts) {
  Sweep([](PickerFixture& f) { f.parameters->Set("科目编码", ""); },
        [](PickerFixture& f) { EXPECT_TRUE(f.picker.Refresh()); },
        [](PickerFixture& f) { EXPECT_THAT(f.Column().size(), testing::AnyOf(0U, 8U)); });
}

TEST(Faults, AListThatCannotBeLoadedAnewStays) {
  const auto keeps = [](PickerFixture& f) {
    EXPECT_THAT(f.Column().size(), testing::AnyOf(8U, 4U));
    const std::string rows = std::to_string(f.Column().size());
    EXPECT_THAT(f.Count(), testing::StartsWith("共:" + rows + "条"));
  };
  Sweep(
      Refreshed, [](PickerFixture& f) { f.SelectNode("r资产"); }, keeps);
  Sweep(
      Refreshed, [](PickerFixture& f) { f.Box("Chk").Click(); }, keeps);
}

TEST(Faults, Pick) {
  const auto select = [](PickerFixture& f) {
    f.picker.Refresh();
    f.SelectRows({"1001", "2202"});
  };
  Sweep(
      select, [](PickerFixture& f) { f.Cmd(0).Click(); },
      [](PickerFixture& f) {
        EXPECT_EQ(f.picks, 0);
        EXPECT_EQ(f.picker.Text(), "");
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
      [](PickerFixture& f) { EXPECT_EQ(f.Vs().TextMatrix(f.RowOf("2202"), 2), "应付账款"); });
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
      if (n >= static_cast<int>(f.recorder.Calls().size())) break;
      EXPECT_TRUE(failed || fault != Fault::kThrow);
      f.picker.Clear();
      f.Init();
      ExpectSound(f);
    }
  }
}

TEST(Faults, ValidateHandsTheFailureToItsCaller) {
  for (int n = 0;; ++n) {
    PickerFixture f;
    f.recorder.Clear();
    f.recorder.FailAt(n, Fault::kThrow);
    std::string code = "old";
    std::string name = "old";
    try {
      (void)f.picker.Validate("", "", "", "1001", code, name);
    } catch (const host::HostError& error) {
      EXPECT_STREQ(error.what(), Recorder::kFaultText);
      EXPECT_EQ(code + name, "");
    }
    if (!f.recorder.Fired()) break;
    ExpectSound(f);
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
