#include "app/program/history_commands.h"

#include <windows.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/program/follow_codes.h"
#include "app/program/refusal.h"
#include "app/progress/long_work.h"
#include "book/journal/command_text.h"
#include "book/journal/local_time.h"
#include "book/journal/undo.h"
#include "host/utf.h"
#include "views/history_view.h"

namespace desk::app {

namespace {

namespace viewkit = tavrix::viewkit;
using book::HistoryEntry;
using tavrix::host::Narrow;
using viewkit::UserPort;

constexpr char kTitle[] = "变更记录";

bool MayAnswer(const Workplace& place, const HistoryEntry& entry, const char* question) {
  const bool own = entry.who == place.book.GetSession().User();
  if (own) return true;
  const std::string who = entry.who.empty() ? "其他程序" : entry.who;
  const std::string text = "这是 " + who + " 在 " + book::LocalTime(entry.made_at) + " 做的：\n" +
                           book::CommandText(entry) + "\n\n" + question;
  return place.user.Ask(text, kTitle, UserPort::Icon::kQuestion,
                        UserPort::Buttons::kYesNoDefaultNo) == UserPort::Answer::kYes;
}

/// The account that was selected stays so when it has got back another code.
void FollowChanges(const Workplace& place, std::int64_t command) {
  const std::size_t code = book::AccountColumn("ccode");
  std::map<std::string, std::string> codes;
  for (const book::AccountChange& change : book::ReadChanges(place.book.GetSession(), command)) {
    if (!change.Stays() || !change.Differs(code)) continue;
    codes.emplace(change.before.Text(code), change.after.Text(code));
  }
  if (!codes.empty()) FollowCodes(place, codes);
}

void Answer(const Workplace& place, const std::optional<HistoryEntry>& entry, bool undo) {
  const std::wstring what = undo ? L"撤销" : L"重做";
  if (!entry) return place.frame.SetMessage(L"没有可以" + what + L"的操作");
  if (!MayAnswer(place, *entry, undo ? "是否撤销？" : "是否重做？")) return;
  book::Session& session = place.book.GetSession();
  TellRefusal(place, kTitle, [&] {
    std::int64_t done = 0;
    RunLong(place.frame.Hwnd(), what, [&](const book::Progress& progress) {
      done = book::UndoCommand(session, entry->id, progress);
    });
    FollowChanges(place, done);
  });
}

}  // namespace

void UndoLast(const Workplace& place) {
  Answer(place, book::ReadSteps(place.book.GetSession()).undo, true);
}

void RedoLast(const Workplace& place) {
  Answer(place, book::ReadSteps(place.book.GetSession()).redo, false);
}

void ShowHistory(const Workplace& place) {
  book::Session& session = place.book.GetSession();
  const auto run_long = LongRunnerAbove(place.frame.Hwnd());
  place.sheets.Open(DeskSettings::kHistory, {},
                    {.make = [&session, run_long](viewkit::UserPort& user) {
                      return std::make_unique<views::HistoryView>(session, user, run_long);
                    }});
}

std::string UserName() {
  constexpr DWORD kMax = 257;  // a name's greatest length with its end
  std::array<wchar_t, kMax> name{};
  DWORD size = kMax;
  if (GetUserNameW(name.data(), &size) == FALSE) return {};
  return Narrow(name.data());
}

}  // namespace desk::app
