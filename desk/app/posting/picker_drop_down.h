#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/controls/account_picker.h"
#include "app/frame/pane.h"
#include "app/frame/style.h"

namespace desk::app {

/// The account picker in a window that drops down from a field. It closes when accounts have been
/// picked, when the user gives up, and when the user goes elsewhere. Its edges at the right and
/// below can be dragged.
class PickerDropDown : public Pane {
 public:
  struct Calls {
    /// The drop-down has closed; no codes when nothing was picked.
    std::function<void(const std::vector<std::wstring>& codes)> closed;
  };

  /// Hidden at first. `owner` is the top-level window; `system` the host's system object. Throws
  /// `host::HostError`.
  [[nodiscard]] static std::shared_ptr<PickerDropDown> Make(HWND owner, SharedStyle style,
                                                            IDispatch* system, Calls calls);
  /// The control goes before its window does.
  ~PickerDropDown() override { picker_.reset(); }

  void SetStyle(SharedStyle style);
  /// For resolving typed text, and for what may be picked.
  [[nodiscard]] AccountPicker& Picker() { return *picker_; }
  /// Below the field, in screen pixels, or above it where there is more room; `sought` is searched.
  void Open(const RECT& field, const std::wstring& sought);
  [[nodiscard]] bool Shown() const { return shown_; }
  /// Closes without a pick.
  void Cancel() { Close({}); }
  /// For the message loop: true when the message was for this window and has been dealt with.
  [[nodiscard]] bool Translate(MSG& message);

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override { picker_.reset(); }
  void Close(const std::vector<std::wstring>& codes);
  void SetModeless(bool modeless);
  void Arrange() override;
  void Paint(HDC dc, const RECT& area) override;
  [[nodiscard]] RECT ControlArea() const;
  [[nodiscard]] LRESULT PartAt(POINT screen) const;
  void OnContextMenu(LPARAM place);
  [[nodiscard]] bool ClosesBy(const MSG& message) const;

  HWND owner_ = nullptr;
  SharedStyle style_;
  Calls calls_;
  HWND area_ = nullptr;  // the control's place: a child, which goes with the window
  std::unique_ptr<AccountPicker> picker_;
  bool shown_ = false;
  bool in_dialog_ = false;  // a dialog of the picker is open
};

}  // namespace desk::app
