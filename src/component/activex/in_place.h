#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <memory>
#include <vector>

#include "com/com_ptr.h"
#include "host/non_copyable.h"
#include "viewkit/win32/view_window.h"

namespace tavrix::component {

class ActiveControl;

/// A control's life in its container: passive, in place (it has a window), or active for the user
/// (it has the frame's keys too).
class InPlace : private host::NonCopyable {
 public:
  explicit InPlace(ActiveControl& control) : control_(control) {}
  ~InPlace();

  /// Creates the window or shows it again, and hands the frame's keys to the control when `ui` is
  /// set. Throws `ComFailure` when the container refuses.
  void Activate(bool ui);
  /// Back to passive: the window goes.
  void Deactivate();
  /// Gives the frame's keys back; the window stays.
  void UiDeactivate();

  [[nodiscard]] bool Active() const { return window_ != nullptr; }
  /// Null while passive.
  [[nodiscard]] viewkit::win32::ViewWindow* Window() const { return window_.get(); }
  /// Pixels of the container's window; what lies outside `clip` is not shown.
  void Place(const RECT& position, const RECT& clip);
  void SetShown(bool shown);
  /// Which of the keys that mean something to a container's dialog the focused part of the control
  /// uses itself: flags of CONTROLINFO.
  [[nodiscard]] DWORD KeysEaten() const;
  /// True when the control has used the message up.
  [[nodiscard]] bool Translate(MSG& message);

  /// The window that questions stand above.
  [[nodiscard]] HWND ModalOwner() const;
  /// A modal window of the control opens (true) or has been closed.
  void SetModal(bool open);

 private:
  void EnterSite();
  void OpenIn(const com::ComPtr<IOleInPlaceSite>& site);
  [[nodiscard]] std::unique_ptr<viewkit::win32::ViewWindow> MakeWindow(HWND parent,
                                                                       const RECT& position);
  void TakeFrame();
  void FocusChanged(bool focused);
  void FocusMoved();
  void WindowGone();
  void Leave();
  [[nodiscard]] com::ComPtr<IOleInPlaceActiveObject> ActiveObject() const;

  ActiveControl& control_;
  com::ComPtr<IOleInPlaceSite> site_;  // from the first question whether it takes the control
  bool entered_ = false;               // it knows that the control is active
  com::ComPtr<IOleInPlaceFrame> frame_;
  com::ComPtr<IOleInPlaceUIWindow> document_;
  std::unique_ptr<viewkit::win32::ViewWindow> window_;
  std::vector<com::ComPtr<IOleInPlaceFrame>> disabled_frames_;  // one for each open modal window
  bool user_active_ = false;
  DWORD keys_told_ = 0;  // what the container has been told of the keys that the control eats
};

}  // namespace tavrix::component
