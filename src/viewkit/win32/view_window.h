#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "host/non_copyable.h"
#include "viewkit/color.h"
#include "viewkit/control.h"
#include "viewkit/input.h"

namespace tavrix::viewkit::win32 {

/// A font without a device: the same at every resolution.
struct FontSpec {
  std::wstring face;
  int height = 180;  ///< character height in twips (20 to the point); never 0
  bool bold = false;
  bool italic = false;

  /// The font of the system's message boxes.
  [[nodiscard]] static FontSpec System();
  friend bool operator==(const FontSpec&, const FontSpec&) = default;
};

/// What the owner of a view window decides and hears. Every function may be empty; all are called
/// on the window's thread and may destroy the view window.
struct ViewWindowOptions {
  HWND parent = nullptr;
  RECT place{};  ///< in pixels of the parent's client area
  Color back_color = color::kButtonFace;
  Color fore_color = color::kButtonText;  ///< of the texts that lie on the view itself
  FontSpec font = FontSpec::System();
  /// The client area has another size (twips): the view lays its controls out. Also called once
  /// on creation, before any control has a window, and when the resolution changes.
  std::function<void(int width, int height)> resized{};
  /// The focus has entered (true) or left (false) the window and its children.
  std::function<void(bool)> focus_changed{};
  /// The focus has come to another control of the window, or has left it.
  std::function<void()> focus_moved{};
  /// Gives what is held while a message to the window or to one of its controls is handled.
  std::function<std::shared_ptr<void>()> keep{};
  /// The window is gone, destroyed by its parent; `Handle` is null from now on.
  std::function<void()> destroyed{};
};

/// The native window of one view and, through its peers, of all the view's controls: one peer for
/// each control, in the order of the list, which is also the order of the Tab key.
///
/// The models must outlive it; when it goes (by its destructor or with its parent) they work on
/// without peers. One thread owns it: the one that created it.
class ViewWindow : private host::NonCopyable {
 public:
  /// Creates the window shown, and all peers. Throws `std::system_error` when the system refuses.
  ViewWindow(const ControlList& controls, ViewWindowOptions options);
  ~ViewWindow();

  /// Null once the parent has taken the window with it.
  [[nodiscard]] HWND Handle() const;
  /// Moves and sizes the window, in pixels of the parent's client area.
  void SetPlace(const RECT& place);
  void SetShown(bool shown);
  void SetBackColor(Color color);
  void SetForeColor(Color color);
  void SetFont(const FontSpec& font);

  /// Dots per inch of the monitor the window is on, and the conversions that follow from it.
  [[nodiscard]] int Dpi() const;
  [[nodiscard]] int ToTwips(int pixels) const;
  [[nodiscard]] int ToPixels(int twips) const;

  /// For a container's message loop, before it translates and dispatches `message` itself. True
  /// when the message has been used up: Tab moved the focus among the controls, or the focused
  /// control got a key that it wants for itself. False for Tab on the last control (Shift+Tab on
  /// the first): the container moves the focus on.
  [[nodiscard]] bool TranslateAccelerator(MSG& message);
  /// Focus to the control that had it last, else to one that prefers it, else to the first that can
  /// take it; `backward`: to the last one in any case. False when there is none.
  bool FocusFirst(bool backward = false);
  [[nodiscard]] bool HasFocus() const;
  /// Whether the focused control has a use for `key`, pressed alone, before any container.
  [[nodiscard]] bool FocusWantsKey(Key key) const;

  /// Draws the window with its controls as they look now; `area` is the target in `dc`.
  void Draw(HDC dc, const RECT& area) const;

 private:
  class State;
  std::shared_ptr<State> state_;
};

}  // namespace tavrix::viewkit::win32
