#pragma once

#include <functional>
#include <string>

#include "app/controls/kjkm_view.h"
#include "app/frame/frame_window.h"
#include "app/program/desk_settings.h"
#include "app/sheet/sheets.h"
#include "book/book.h"
#include "book/ledger/posting.h"
#include "viewkit/win32/windows_user.h"

namespace desk::app {

/// What a command on the open book works with; all of it lives until the book is closed, as sheets
/// do. Accounts that it changes by statements of its own are shown anew when it has told the
/// session (`Session::NoteChange`).
struct Workplace {
  FrameWindow& frame;
  tavrix::viewkit::win32::WindowsUser& user;  ///< asks above the frame
  DeskSettings& settings;
  book::Book& book;
  const std::wstring& file;
  KjkmView& view;
  Sheets& sheets;
  /// Brings all that is shown in line with the book at once. A command that has something to do
  /// with the rows then calls it; for others it happens when they have ended.
  std::function<void()> read_again;
  /// Brings the lines of a voucher where vouchers are entered.
  std::function<void(const book::Voucher&)> enter_voucher;
};

}  // namespace desk::app
