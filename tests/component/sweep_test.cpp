#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "component/answers.h"
#include "component/resources.h"
#include "component/sweep_commands.h"

/// Every host call of every command fails or is answered wrongly once.
namespace tavrix::test {
namespace {

constexpr const char* kTold = "宿主在此处失败";

/// A way in which a host goes wrong in one call; it throws what a gate throws.
struct Fault {
  const char* name;
  std::function<void()> strike;
  bool raises;
  /// A host may mean it: as an empty text, a flag that is not set, a text of its own.
  bool may_be_meant;
};

const std::vector<Fault>& Faults() {
  static const std::vector<Fault> faults = {
      {"raised", [] { throw Raised(DISP_E_EXCEPTION, kTold); }, true, false},
      {"bare", [] { throw BareFailure(E_ACCESSDENIED); }, true, false},
      {"Nothing", [] { throw Answered(Variant(ComPtr<IDispatch>())); }, false, false},
      {"Null", [] { throw Answered(Variant::Null()); }, false, true},
      {"Empty", [] { throw Answered(Variant()); }, false, true},
      {"object", [] { throw Answered(Variant(NamedObject::Make({}))); }, false, false},
      {"text", [] { throw Answered(Variant(std::string_view("无"))); }, false, true},
      {"array", [] { throw Answered(RowArray({{Variant(1.5).Get()}})); }, false, false},
  };
  return faults;
}

/// All that a run of a command leaves.
struct Outcome {
  HRESULT result = S_OK;
  bool success = true;  ///< as far as the command tells
  std::vector<std::string> executed;
  std::string given;
  std::string shown;
  std::string message;
  std::vector<std::string> events;
  int boxes = 0;
  int saves = 0;
};

class Sweep {
 public:
  Sweep(const Subject& subject, const Command& command) : subject_(subject), command_(command) {}

  /// The members that the command calls when all is well, in order.
  [[nodiscard]] const std::vector<std::wstring>& Calls() {
    const Answers answers(IDYES);
    Life life(subject_.prog_id);
    Start(life);
    good_ = Run(life, answers, [&](const std::wstring& member) { calls_.push_back(member); });
    EXPECT_TRUE(good_.success && good_.message.empty()) << command_.name << " " << good_.message;
    Reload(life);
    reloaded_ = life.Shown(subject_.grid);
    EXPECT_GT(life.RowsOf(subject_.grid), 2);
    return calls_;
  }

  /// The command with a fault in its call number `position`.
  void Strike(std::size_t position, const Fault& fault) {
    SCOPED_TRACE(command_.name + ", call " + std::to_string(position) + " (" +
                 std::string(calls_[position].begin(), calls_[position].end()) + ") " + fault.name);
    const int windows = Resources::Now().windows;
    {
      const Answers answers(IDYES);
      Life life(subject_.prog_id);
      Start(life);
      std::size_t call = 0;
      const Outcome outcome = Run(life, answers, [&](const std::wstring&) {
        if (call++ == position) fault.strike();
      });
      CheckClaims(outcome, fault);
      Reload(life);
      EXPECT_EQ(life.Shown(subject_.grid), reloaded_);  // the view works on
    }
    EXPECT_EQ(Resources::Now().windows, windows);
    ++runs_;
  }
  [[nodiscard]] int Runs() const { return runs_; }
  [[nodiscard]] int Told() const { return told_; }

 private:
  void Start(Life& life) const {
    subject_.prepare(life);
    if (!command_.from_scratch) {
      ASSERT_EQ(subject_.init(life), S_OK);
      subject_.refresh(life);
    }
    life.host->executed.clear();
    life.answer = VARIANT_FALSE;
  }

  [[nodiscard]] Outcome Run(Life& life, const Answers& answers, const NamedObject::Gate& gate) {
    Outcome outcome;
    const EventSink sink(life.object.Get(), subject_.events,
                         [&](DISPID id, const std::vector<Variant>& arguments) {
                           std::string line = std::to_string(id);
                           for (const Variant& each : arguments) line += "|" + TextOf(each);
                           outcome.events.push_back(line);
                           return S_OK;
                         });
    life.host->gate = gate;
    outcome.result = command_.run(life);
    life.host->gate = {};
    if (!command_.may_fail) {
      EXPECT_EQ(outcome.result, S_OK);
    }
    outcome.success =
        SUCCEEDED(outcome.result) && (!command_.answers || life.answer != VARIANT_FALSE);
    outcome.executed = life.host->executed;
    outcome.given = life.given;
    outcome.shown = life.Shown(subject_.grid);
    outcome.message = subject_.message(life);
    outcome.boxes = answers.Boxes();
    outcome.saves = answers.Saves();
    return outcome;
  }

  /// Loads the list after the command, in a control that was never begun or has ended from its
  /// `Init` on.
  void Reload(Life& life) const {
    if (command_.from_scratch || command_.name.starts_with("Clear")) {
      ASSERT_EQ(subject_.init(life), S_OK);
    }
    subject_.refresh(life);
    EXPECT_EQ(life.answer, VARIANT_TRUE);
  }

  /// Whether the user or the caller hears of a failure. Level and title are those of the rules.
  [[nodiscard]] bool Hears(const Outcome& outcome, const Fault& fault) {
    bool heard = FAILED(outcome.result) || !outcome.message.empty() || outcome.boxes > good_.boxes;
    bool told = outcome.message.find(kTold) != std::string::npos;
    for (const std::string& event : outcome.events) {
      if (std::ranges::find(good_.events, event) != good_.events.end()) continue;
      if (!event.starts_with("2|")) continue;
      EXPECT_TRUE(event.ends_with("|2|总账") || event.ends_with("|8|总账")) << event;
      heard = true;
      told = told || event.find(kTold) != std::string::npos;
    }
    if (fault.raises && told) ++told_;
    return heard;
  }

  /// What differs from a run without a fault is heard of, or no success is claimed.
  void CheckClaims(const Outcome& outcome, const Fault& fault) {
    const bool heard = Hears(outcome, fault);
    if (!fault.may_be_meant && !outcome.success) {
      EXPECT_TRUE(heard) << "a failure without a word";
    }
    if (heard || fault.may_be_meant) return;
    EXPECT_EQ(outcome.executed, good_.executed);
    EXPECT_EQ(outcome.given, good_.given);
    EXPECT_EQ(outcome.shown, good_.shown);
    EXPECT_EQ(outcome.events, good_.events);
    EXPECT_EQ(outcome.saves, good_.saves);
  }

  const Subject& subject_;
  const Command& command_;
  std::vector<std::wstring> calls_;
  Outcome good_;          ///< without a fault
  std::string reloaded_;  ///< what the list shows after it
  int runs_ = 0;
  int told_ = 0;
};

bool IsLong() {
  const char* given = std::getenv("TAVRIX_LONG");
  return given != nullptr && std::string(given) == "yes";
}

/// How many of the faults a call gets: all where there is time for it, else all at the first call
/// of each member and the first of them at the last one.
std::ptrdiff_t FaultsFor(const std::vector<std::wstring>& calls, std::size_t position) {
  const auto here = calls.begin() + static_cast<std::ptrdiff_t>(position);
  const auto all = static_cast<std::ptrdiff_t>(Faults().size());
  if (IsLong() || std::find(calls.begin(), here, *here) == here) return all;
  return std::find(here + 1, calls.end(), *here) == calls.end() ? 1 : 0;
}

TEST(Sweep, NoFaultOfTheHostCrashesEscapesOrIsTakenForSuccess) {
  int runs = 0;
  std::size_t calls_made = 0;
  std::size_t commands = 0;
  for (const Subject& subject : {ViewCommands(), PickerCommands()}) {
    for (const Command& command : subject.commands) {
      Sweep sweep(subject, command);
      const auto& calls = sweep.Calls();
      for (std::size_t i = 0; i < calls.size(); ++i) {
        const auto end = Faults().begin() + FaultsFor(calls, i);
        std::for_each(Faults().begin(), end, [&](const Fault& fault) { sweep.Strike(i, fault); });
      }
      ++commands;
      calls_made += calls.size();
      runs += sweep.Runs();
      std::cout << command.name << ": " << calls.size() << " calls, " << sweep.Runs() << " runs, "
                << sweep.Told() << " told" << std::endl;
    }
  }
  std::cout << commands << " commands, " << calls_made << " calls, " << runs << " runs\n";
  EXPECT_GT(runs, 500);
}

}  // namespace
}  // namespace tavrix::test
