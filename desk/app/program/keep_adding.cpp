#include "app/program/keep_adding.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/non_copyable.h"
#include "host/utf.h"
#include "views/account_proposal.h"

namespace desk::app {
namespace {

using tavrix::host::Narrow;
using tavrix::host::Wide;

// The dialog's window, as docs/edit-dialog.md has it.
constexpr wchar_t kDialogClass[] = L"TavrixAccount";
constexpr int kNameBox = 101;
constexpr int kDebit = 300;
constexpr int kCredit = 301;

struct HookDeleter {
  void operator()(HHOOK hook) const noexcept { UnhookWindowsHookEx(hook); }
};
using OwnedHook = std::unique_ptr<std::remove_pointer_t<HHOOK>, HookDeleter>;

/// Fills the account's dialog in as a user would, when he has begun to type a name.
class Proposing : private tavrix::host::NonCopyable {
 public:
  explicit Proposing(std::optional<views::AccountProposal> proposal)
      : proposal_(std::move(proposal)) {
    current = this;
    hook_.reset(SetWindowsHookExW(WH_CALLWNDPROCRET, &Heard, nullptr, GetCurrentThreadId()));
  }
  ~Proposing() { current = nullptr; }

 private:
  static LRESULT CALLBACK Heard(int code, WPARAM wparam, LPARAM lparam) {
    const auto& message = *reinterpret_cast<const CWPRETSTRUCT*>(lparam);
    const bool typed = code == HC_ACTION && message.message == WM_COMMAND &&
                       HIWORD(message.wParam) == EN_CHANGE && LOWORD(message.wParam) == kNameBox;
    if (typed && current != nullptr) current->OnName(message.hwnd);
    return CallNextHookEx(nullptr, code, wparam, lparam);
  }

  void OnName(HWND dialog) {
    std::array<wchar_t, 64> name{};
    GetClassNameW(dialog, name.data(), static_cast<int>(name.size()));
    if (!proposal_ || std::wstring(name.data()) != kDialogClass) return;
    if (GetWindowTextLengthW(GetDlgItem(dialog, kNameBox)) == 0) return;
    const views::AccountProposal proposal = *std::exchange(proposal_, std::nullopt);
    Tick(dialog, proposal.debit ? kDebit : kCredit);
    for (const auto& box : proposal.boxes) {
      Tick(dialog, box.control);
      if (box.list != 0) Choose(dialog, box.list, Wide(box.item));
    }
  }
  static void Notify(HWND dialog, int control, WORD what) {
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(control, what),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
  }
  static void Tick(HWND dialog, int control) {
    const HWND box = GetDlgItem(dialog, control);
    if (box == nullptr || !IsWindowEnabled(box)) return;
    if (SendMessageW(box, BM_GETCHECK, 0, 0) == BST_UNCHECKED) Notify(dialog, control, BN_CLICKED);
  }
  static void Choose(HWND dialog, int control, const std::wstring& item) {
    const HWND list = GetDlgItem(dialog, control);
    const LRESULT at = SendMessageW(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                    reinterpret_cast<LPARAM>(item.c_str()));
    if (at == CB_ERR) return;
    SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(at), 0);
    Notify(dialog, control, CBN_SELCHANGE);
  }

  static thread_local Proposing* current;
  std::optional<views::AccountProposal> proposal_;
  OwnedHook hook_;
};
thread_local Proposing* Proposing::current = nullptr;

std::string SelectedCode(const KjkmView& view) {
  const auto account = view.SelectedAccount();
  return account ? Narrow(account->code) : std::string();
}

/// The account that was added; empty when the user has closed the dialog.
std::string AddOne(const Workplace& place, const std::string& beside) {
  book::Session& session = place.book.GetSession();
  const std::int64_t newest = views::NewestAccount(session);
  const std::uint64_t changes = session.Changes();
  {
    const Proposing proposing(views::ProposalBeside(session, beside));
    place.view.Call(&IFormUI::FileNew);
  }
  if (session.Changes() == changes) return {};
  const std::vector<std::string> added = views::NewerAccounts(session, newest);
  std::string selected = SelectedCode(place.view);
  if (added.empty() || std::ranges::find(added, selected) != added.end()) return selected;
  return added.back();
}

}  // namespace

void KeepAdding(const Workplace& place) {
  int count = 0;
  std::string beside = SelectedCode(place.view);
  for (;;) {
    const std::string added = AddOne(place, beside);
    if (added.empty() || added == beside) break;
    beside = added;
    ++count;
    place.frame.SetMessage(L"已新增 " + std::to_wstring(count) + L" 个科目，最后是 " + Wide(added));
  }
}

}  // namespace desk::app
