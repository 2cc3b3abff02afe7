#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/program/desk_settings.h"
#include "app/sheet/sheet_window.h"
#include "host/non_copyable.h"

namespace desk::app {

/// The sheets that are open on a book, each in its window. They must be closed before the book is.
class Sheets : private tavrix::host::NonCopyable {
 public:
  struct Calls {
    std::function<SharedStyle()> style;
    /// As `SheetWindow::Calls::key`; may be empty.
    std::function<bool(SheetWindow&, tavrix::viewkit::Key, tavrix::viewkit::Modifiers)> key = {};
  };
  /// `frame` is disabled, as the other sheets are, while a dialog stands above one of them: it
  /// could close the book under it. Settings must outlive this.
  Sheets(HWND frame, DeskSettings& settings, Calls calls);
  ~Sheets() { CloseAll(); }

  /// Brings the sheet of this kind and key (`Sheet::Key`) to the front, or makes it. Its window
  /// comes up where the last one of that kind was closed; `kind` names the section of the settings
  /// and must live as long as the program. Throws what making the view raises.
  SheetWindow& Open(const char* kind, const std::string& key, const SheetWindow::Plan& plan);
  /// Reads all of them again, as they follow the book; no box opens. Throws what the first one
  /// raises that cannot be read, when all the others have been.
  void Follow();
  /// Asks, where something would be lost; true when all may close.
  [[nodiscard]] bool MayClose();
  void CloseAll();
  /// For the message loop: true when the message was for one of them and has been dealt with.
  [[nodiscard]] bool Translate(MSG& message);
  /// A dialog has opened above `owner`, or closed: neither frame nor sheets take input meanwhile.
  void SetModal(HWND owner, bool modal);

 private:
  struct Opened {
    const char* kind;
    std::shared_ptr<SheetWindow> window;
  };
  [[nodiscard]] SheetWindow* Find(const char* kind, const std::string& key) const;
  void Show(HWND window, const char* kind);
  void Forget(const SheetWindow* window);

  HWND frame_;
  DeskSettings& settings_;
  Calls calls_;
  std::vector<Opened> opened_;
  int dialogs_ = 0;
  std::vector<HWND> disabled_;  // by these dialogs
};

}  // namespace desk::app
