#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "host/non_copyable.h"
#include "viewkit/accessible.h"
#include "viewkit/input.h"

namespace tavrix::viewkit::win32 {

/// The module (program or library) that holds this code.
[[nodiscard]] HINSTANCE ThisModule();

/// A window class of this module, registered for as long as it lives. A library must give its
/// classes back before it is unloaded, so these are statics of the module.
class WindowClass : private host::NonCopyable {
 public:
  explicit WindowClass(std::wstring name, UINT style = 0);
  ~WindowClass();
  [[nodiscard]] const wchar_t* Name() const { return name_.c_str(); }

 private:
  std::wstring name_;
};

/// The class of that name with that style, which the module keeps from its first use on.
[[nodiscard]] const WindowClass& ClassNamed(const wchar_t* name, UINT style = 0);

/// Of the monitor that most of `window` stands on, in screen pixels: without task bars.
[[nodiscard]] RECT WorkArea(HWND window);

struct WindowPlan {
  const wchar_t* text = L"";
  DWORD style = 0;
  DWORD extended_style = 0;
  RECT place{};
  HWND parent = nullptr;  ///< for a top-level window: its owner
};

/// A window whose messages go to an object.
///
/// A message may lead to the end of the window and of whatever owns this object; it is kept alive
/// until the outermost message has been handled. After each call that may run foreign code a
/// handler therefore asks `Alive` before it goes on.
class Window : public std::enable_shared_from_this<Window>, private host::NonCopyable {
 public:
  virtual ~Window();

  [[nodiscard]] HWND Hwnd() const { return hwnd_; }
  [[nodiscard]] bool Alive() const { return hwnd_ != nullptr; }
  /// Ends the window; no message reaches the object any more.
  void Destroy();
  /// What must live besides this object until a message, or a call, has been handled; null for
  /// nothing.
  [[nodiscard]] virtual std::shared_ptr<void> Held() const { return nullptr; }

  /// What assistive programs are told of this window's inside; null where the system knows it.
  [[nodiscard]] virtual Accessible* Inside() { return nullptr; }
  /// Where an item or part is seen, in pixels of the client area; empty where it is not.
  [[nodiscard]] virtual RECT PlaceOf(AccessibleId) const { return {}; }
  /// What is under a point of the client area; the window itself for nothing.
  [[nodiscard]] virtual AccessibleId IdAt(POINT) const { return {}; }
  [[nodiscard]] virtual bool TakeFocus() { return false; }
  /// Selects the item and does what `Accessible::Act` says, when the caller has had its answer:
  /// a dialog may come of it.
  void PostOpen(AccessibleId id) const;
  /// Keys and clicks reach the window now: no modal window stands before it.
  [[nodiscard]] bool TakesInput() const;

 protected:
  /// Creates a window of an own class. The object must be owned by a shared_ptr.
  void Create(const WindowClass& window_class, const WindowPlan& plan);
  /// Creates a window of a system class, whose messages pass here first.
  void CreateSystem(const wchar_t* class_name, const WindowPlan& plan);

  /// Handles a message; the base class answers as the window's class does.
  virtual LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam);
  /// The window has gone; called once, also when its parent took it along.
  virtual void OnDestroyed() {}

 private:
  friend class WindowClass;
  static LRESULT CALLBACK Entry(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  static LRESULT CALLBACK SubclassEntry(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam,
                                        UINT_PTR id, DWORD_PTR window) noexcept;
  LRESULT Dispatch(UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  LRESULT Answer(UINT message, WPARAM wparam, LPARAM lparam);
  void OpenItem(AccessibleId id);
  void Forget(bool tell);

  HWND hwnd_ = nullptr;
  bool system_class_ = false;
};

/// The state of the modifier keys as of the message being handled.
[[nodiscard]] Modifiers ModifiersNow();
/// As above, and whether the key of a WM_KEYDOWN with this `lparam` is being held.
[[nodiscard]] Modifiers ModifiersOf(LPARAM lparam);

}  // namespace tavrix::viewkit::win32
