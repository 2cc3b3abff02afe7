#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/controls/kjkm_view.h"
#include "app/frame/frame_window.h"
#include "app/posting/posting_pane.h"
#include "app/program/account_follower.h"
#include "app/program/book_follower.h"
#include "app/program/desk_log.h"
#include "app/program/desk_settings.h"
#include "app/program/server_wait.h"
#include "app/program/workplace.h"
#include "app/sheet/sheets.h"
#include "book/book.h"
#include "book/journal/command_text.h"
#include "host/non_copyable.h"

namespace desk::app {

/// The program: one frame, at most one open book, and the view on it.
class Desk : private FrameOwner, private tavrix::host::NonCopyable {
 public:
  Desk();
  ~Desk() override;

  /// Shows the frame and opens `book`; with an empty name the sample book, which is made when it is
  /// not there yet.
  void Start(const std::wstring& book, int show);
  /// Runs until the frame is closed; gives the program's exit code.
  int Run();

 private:
  /// An open book and the view on it. The view goes first.
  struct OpenBook {
    book::Book book;
    std::wstring file;
    std::unique_ptr<KjkmView> view;
    std::uint64_t shown = 0;   ///< the session's count of changes when the pages were last read
    std::uint64_t posted = 0;  ///< and of postings
    book::OutcomeTeller teller = {};
  };

  // FrameOwner
  void OnCommand(Command command) override;
  [[nodiscard]] views::DeskState State() override;
  [[nodiscard]] std::optional<Deeds> OnDeeds() override;
  void OnFind(const std::wstring& text) override;
  void OnFindNext() override;
  void OnFilter(const std::wstring& text) override;
  void OnViewArea(const RECT& area) override;
  void OnViewMenu(HWND part, std::optional<POINT> at) override;
  void OnActivate(bool active) override;
  bool OnFocusView() override;
  void OnStyle() override;
  [[nodiscard]] bool OnClosing() override;

  /// What a command does; the table has one for each.
  struct Action {
    Command command;
    void (*run)(Desk&);
  };
  static const Action kActions[];

  void Do(Command command);
  void ExpandTo(int level);
  void TellFound(bool found);
  void AskNew();
  void AskOpen();
  void OpenRecent(std::size_t position);
  void Open(const std::wstring& file);
  void OpenSample();
  void Show(book::Book book, const std::wstring& file);
  void StartView();
  void KeepBranches();
  void CloseBook();
  /// Brings what is shown in line with the book after a change.
  void CatchUp();
  void ReadAgain();
  void ReadPostings();
  [[nodiscard]] BookFollower::Calls MakeBookFollowerCalls();
  /// Others have changed the book: reads it again, though nobody has asked. When that fails no box
  /// and no list opens: the status line and the log say why.
  [[nodiscard]] bool FollowOthers(book::ChangeWatch::Seen seen);
  /// Asks whether what has been begun may go.
  [[nodiscard]] bool MayLeave(const char* question);
  void TellBook();
  /// Warns when others can read the book on its way from the server.
  void TellWire();
  void ShowPosting(bool shown);
  void EnterVoucher(const book::Voucher& voucher);
  [[nodiscard]] PostingPlan MakePostingPlan();
  [[nodiscard]] AccountFollower::Calls MakeFollowerCalls();
  /// Runs `body`; what it throws becomes a report, and the empty view area says it too.
  void Trapped(const std::wstring& context, const std::function<void()>& body);
  void Fail(const std::wstring& text, const std::wstring& book);
  void TellUnsaved(const std::string& text);
  /// For commands on the open book and its view, which must be there.
  [[nodiscard]] Workplace Place();
  [[nodiscard]] KjkmView* View() const { return open_ ? open_->view.get() : nullptr; }

  DeskFolders folders_;
  DeskSettings settings_;
  DeskLog log_;
  std::shared_ptr<FrameWindow> frame_;
  tavrix::viewkit::win32::WindowsUser user_;
  std::shared_ptr<ServerWait> wait_;
  std::shared_ptr<PostingPane> posting_;
  bool posting_shown_ = false;
  std::optional<AccountFollower> account_;
  std::optional<OpenBook> open_;
  bool unasked_ = false;  // the book is being read though nobody has asked
  std::wstring unread_;   // why that has failed; empty when it has not
  Sheets sheets_;         // they go before the book
  BookFollower follower_;
};

}  // namespace desk::app
