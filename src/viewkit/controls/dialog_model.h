#pragma once

#include <string>
#include <vector>

#include "host/non_copyable.h"
#include "viewkit/control.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/event.h"
#include "viewkit/input.h"

namespace tavrix::viewkit {

/// A modal dialog without its window. `UserPort::ShowModal` gives it one: it creates the window and
/// a peer for each control, calls `Opened`, runs until `Closed` is raised, and takes the window
/// away. A dialog that is shown without a window works completely.
///
/// The order of the controls is the order of the Tab key. The dialog must outlive its window.
class DialogModel : private host::NonCopyable {
 public:
  /// `name` names the class of the dialog's window.
  explicit DialogModel(std::string name);
  virtual ~DialogModel() = default;

  [[nodiscard]] const std::string& Name() const { return name_; }
  [[nodiscard]] const std::string& Caption() const { return caption_; }
  void SetCaption(std::string caption);
  /// The screen has room for a client area of this height, in twips. A dialog that is higher makes
  /// itself lower, as far as it can; called before it is shown.
  virtual void FitInto(int /*height*/) {}
  /// Size of the client area in twips; fixed, the dialog cannot be sized.
  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return height_; }

  [[nodiscard]] const ControlList& Controls() const { return controls_; }
  /// The number that the control's window carries in the dialog; 0 for labels and frames.
  [[nodiscard]] int Identifier(const Control& control) const;
  /// Clicked by Enter, unless the focus is on another button; null for none.
  [[nodiscard]] CommandButton* DefaultButton() const { return default_button_; }
  /// The control that has the focus, or had it last while the dialog is not the active window.
  [[nodiscard]] Control* FocusControl() const { return focus_; }

  /// From `Opened` until the dialog has been closed.
  [[nodiscard]] bool IsOpen() const { return open_; }
  /// The dialog is on the screen: gives the focus to its first control.
  void Opened();
  /// Asks to close the dialog, as the window's close box does. True when it is closed now; false
  /// while the dialog refuses, and while an earlier request is still waiting for its answer.
  bool Close();
  /// Ends the dialog without asking, for whoever showed it; does nothing when it is closed.
  void Unload();
  /// What Enter and Escape do. True when the key has been used up; other keys are not the dialog's.
  bool KeyDown(Key key);

  Event<> CaptionChanged;
  Event<> Closed;

 protected:
  /// The control must live as long as the dialog.
  void Add(Control& control, int identifier = 0);
  void SetSize(int width, int height);
  /// The second one is clicked by Escape; without one Escape closes the dialog.
  void SetButtons(CommandButton& default_button, CommandButton& cancel_button);

  /// Whether the dialog may be closed; may ask the user.
  [[nodiscard]] virtual bool QueryUnload() { return true; }
  /// Where the user begins; null for the first control that can take the focus.
  [[nodiscard]] virtual Control* FirstFocus() { return nullptr; }
  /// Enter is about to click the default button; false keeps it from doing so.
  [[nodiscard]] virtual bool MayEnter() { return true; }
  /// The dialog has been closed; called before `Closed` is raised.
  virtual void OnUnload() {}
  /// The focus went from one control of the open dialog to another. Not called when the dialog
  /// merely stops being the active window.
  virtual void OnFocusMoved(Control& /*from*/, Control& /*to*/) {}

 private:
  void FocusArrived(Control& control);

  std::string name_;
  std::string caption_;
  int width_ = 0;
  int height_ = 0;
  ControlList controls_;
  std::vector<int> identifiers_;
  CommandButton* default_button_ = nullptr;
  CommandButton* cancel_button_ = nullptr;
  Control* focus_ = nullptr;
  bool open_ = false;
  bool closing_ = false;
};

}  // namespace tavrix::viewkit
