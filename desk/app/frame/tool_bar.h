#pragma once

#include <windows.h>

#include <commctrl.h>

#include <vector>

#include "app/frame/commands.h"
#include "app/frame/icons.h"
#include "app/frame/style.h"
#include "viewkit/win32/handles.h"

namespace desk::app {

/// The tool bar: pictures with their captions below, and a tip with each command's key. Buttons
/// that have no room go to a menu at its end.
class ToolBar {
 public:
  ToolBar(HWND parent, SharedStyle style);

  [[nodiscard]] HWND Handle() const { return window_.Get(); }
  [[nodiscard]] int Height() const;
  void SetStyle(SharedStyle style);
  void SetEnabled(Command command, bool enabled);
  void SetShown(Command command, bool shown);
  /// Shows the buttons that fit into so many pixels.
  void Fit(int room);
  /// The commands that have no room at present.
  [[nodiscard]] std::vector<Command> Others() const;
  /// The lower left corner of the button that leads to them, on the screen.
  [[nodiscard]] POINT MorePlace() const;
  void SetPressed(Command command, bool pressed);
  /// Answers the bar's notifications; true when `result` is the answer.
  [[nodiscard]] bool OnNotify(const NMHDR& header, LRESULT& result) const;

 private:
  /// One button, or the line before it.
  struct Item {
    Command command = Command::kNone;  ///< none for a line
    int id = 0;
    bool wanted = true;
    bool shown = true;
  };

  void AddButtons();
  void AddItem(Command command, const TBBUTTON& button, std::vector<TBBUTTON>& buttons);
  [[nodiscard]] int WidthOf(const Item& item) const;
  void Show(int id, bool shown);
  void Size();
  [[nodiscard]] LRESULT Paint(const NMHDR& header) const;
  [[nodiscard]] static LRESULT PaintButton(NMTBCUSTOMDRAW& button);

  SharedStyle style_;
  std::vector<Item> items_;
  int room_ = 0;
  int button_width_ = 0;
  ImageList pictures_;  // before the window that shows them
  ImageList grey_pictures_;
  tavrix::viewkit::win32::OwnedWindow window_;
};

}  // namespace desk::app
