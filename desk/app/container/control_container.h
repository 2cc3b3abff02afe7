#pragma once

#include <windows.h>

#include <oleidl.h>

#include <functional>
#include <memory>
#include <string>

#include "host/non_copyable.h"

namespace desk::app {

class ControlSite;
class InPlaceFrame;

/// What a container tells and asks the program around it.
struct ContainerPlan {
  HWND area = nullptr;   ///< the window in which the control is placed
  HWND frame = nullptr;  ///< the top-level window
  std::wstring display_name = {};
  std::function<void(const std::wstring&)> status_text = {};
  /// A modal dialog of the control has opened (false) or closed (true).
  std::function<void(bool)> modeless = {};
  /// Tab has left the control, backward or forward: the frame takes the focus on.
  std::function<void(bool backward)> tab_out = {};
};

/// The place of one ActiveX control: activates it in place and lets go of it when it ends.
class ControlContainer : private tavrix::host::NonCopyable {
 public:
  /// Places `control` into `area`. Throws `host::HostError` when it cannot be activated.
  ControlContainer(IUnknown* control, ContainerPlan plan);
  ~ControlContainer();

  void SetArea(const RECT& area);
  void OnFrameActivate(bool active);
  /// The control gets the focus; false when it does not take it.
  bool Focus();
  /// The focus is in the control's window or below it.
  [[nodiscard]] bool HasFocus() const;
  /// Hands a message of the loop to the control first; true when it has used it up.
  [[nodiscard]] bool Translate(MSG& message);
  /// The resolution or the colours have changed: the control reads the ambient properties again.
  void OnAmbientChange();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace desk::app
