#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "host/non_copyable.h"
#include "viewkit/color.h"

/// What the tests of native windows share.
namespace tavrix::test {

/// A top-level window to put views in; destroyed with the object.
class Frame : private host::NonCopyable {
 public:
  explicit Frame(int width = 640, int height = 480);
  ~Frame();
  [[nodiscard]] HWND Get() const { return window_; }
  [[nodiscard]] RECT Client() const;

 private:
  HWND window_;
};

/// Handles the messages that wait, and paints.
void Pump();

/// Pixels: of a window's client area as they stand on the screen, or drawn.
class Picture {
 public:
  explicit Picture(HWND window);
  /// What `draw` draws on black.
  Picture(int width, int height, const std::function<void(HDC)>& draw);
  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return height_; }
  [[nodiscard]] COLORREF At(int x, int y) const;
  /// How many pixels of the area have this colour.
  [[nodiscard]] int Count(const RECT& area, COLORREF color) const;
  friend bool operator==(const Picture&, const Picture&) = default;

 private:
  Picture(SIZE size, const std::function<void(HDC, SIZE)>& draw);

  int width_ = 0;
  int height_ = 0;
  std::vector<DWORD> pixels_;
};

/// The GDI objects of this process; the top-level windows of this thread.
[[nodiscard]] int GdiObjects();
[[nodiscard]] int ThreadWindows();

/// Runs functions one after the other, each as soon as the thread's message loop is idle for a
/// moment: so a test acts while a modal dialog runs. What is left when it ends is a failure.
class Steps : private host::NonCopyable {
 public:
  explicit Steps(std::vector<std::function<void()>> steps);
  ~Steps();

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR timer, DWORD);

  std::vector<std::function<void()>> steps_;
  std::size_t next_ = 0;
  UINT_PTR timer_;
};

/// A press and release of the left button at a point of the window's client area, through the
/// window's own message handling.
void Click(HWND window, int x, int y);
/// A key pressed and released; `PostKey` leaves it to the thread's message loop.
void Press(HWND window, WORD key);
void PostKey(HWND window, WORD key);
/// A modifier key that is down while this lives.
class HeldKey : private host::NonCopyable {
 public:
  explicit HeldKey(int key) : key_(key) { Set(0x80); }
  ~HeldKey() { Set(0); }

 private:
  void Set(BYTE state) const;
  int key_;
};

[[nodiscard]] std::wstring ClipboardText();

void Type(HWND window, const std::wstring& text);

}  // namespace tavrix::test
