#pragma once

#include <windows.h>

#include "com/com_ptr.h"
#include "host/non_copyable.h"

namespace tavrix::test {

using com::ComPtr;

/// The system's own container for a control, as a window of the size given (pixels of its client
/// area). It has no ambient properties and leaves the keys to its program's message loop.
class ForeignContainer : private host::NonCopyable {
 public:
  /// Places a new control of the class with this ProgID. Throws `ComFailure`.
  ForeignContainer(const wchar_t* prog_id, int width, int height);
  ~ForeignContainer() { Close(); }

  void Resize(int width, int height);
  void Close();
  [[nodiscard]] const ComPtr<IUnknown>& Control() const { return control_; }
  [[nodiscard]] HWND Window() const { return window_; }
  /// The control's own window; null when it has none.
  [[nodiscard]] HWND ControlWindow() const;
  /// Handles all messages that wait. Keys go to the control first, as a container's loop does it.
  void Pump();
  /// Types a key into the window that has the focus.
  void Press(WORD key);

 private:
  HWND window_ = nullptr;
  ComPtr<IUnknown> control_;
};

}  // namespace tavrix::test
