#pragma once

#include <windows.h>

#include <oleidl.h>

#include <functional>
#include <string>
#include <vector>

#include "com/com_ptr.h"
#include "viewkit/win32/handles.h"
#include "viewkit/win32/view_window.h"

namespace tavrix::test {

using com::ComPtr;

/// The properties that a container offers to all its controls.
struct Ambients {
  long back_color = 0x00C0D0E0;
  long fore_color = 0x00403020;
  std::wstring face = viewkit::win32::FontSpec::System().face;  // one that is there
  int points = 15;
};

/// A container of one control that fills its window, with a frame around it. It tells what the
/// control asks of it.
struct OwnContainer {
  Ambients ambients;
  viewkit::win32::OwnedWindow window;
  HACCEL accelerators = nullptr;  ///< lent to the control
  bool clips = true;              ///< fills in a clipping rectangle
  int saved = 0;
  int control_info_changes = 0;
  std::vector<bool> modeless;  ///< what `EnableModeless` was told, in order
  /// Hears of each call of the control, with the name of the member, and gives its answer.
  std::function<HRESULT(const std::string& member)> on_call;

  OwnContainer();
  /// Outlives no container.
  [[nodiscard]] ComPtr<IOleClientSite> MakeSite();
  /// A new control in the container: with its site set, not yet active.
  [[nodiscard]] ComPtr<IUnknown> Place(const wchar_t* prog_id);
  /// `verb` is one of OLEIVERB_...
  [[nodiscard]] HRESULT Do(const ComPtr<IUnknown>& control, LONG verb);
  /// Takes the control out again.
  void Remove(const ComPtr<IUnknown>& control);
  /// For the container's parts: `member` has been called.
  [[nodiscard]] HRESULT Hear(const char* member);
  /// The control's own window; null when it has none.
  [[nodiscard]] HWND ControlWindow() const { return GetWindow(window.Get(), GW_CHILD); }
};

}  // namespace tavrix::test
