#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>
#include <utility>

#include "host/non_copyable.h"

/// Owners of native handles.
namespace tavrix::viewkit::win32 {

struct GdiDeleter {
  void operator()(void* object) const noexcept { DeleteObject(object); }
};

/// Owns a GDI object; `Handle` is HFONT, HBRUSH, HPEN, HBITMAP or HRGN.
template <class Handle>
using GdiObject = std::unique_ptr<std::remove_pointer_t<Handle>, GdiDeleter>;
using Font = GdiObject<HFONT>;
using Brush = GdiObject<HBRUSH>;
using Bitmap = GdiObject<HBITMAP>;

/// Selects an object into a device context for as long as it lives.
class Selected : private host::NonCopyable {
 public:
  Selected(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
  ~Selected() { SelectObject(dc_, previous_); }

 private:
  HDC dc_;
  HGDIOBJ previous_;
};

/// A device context in memory, compatible with the screen.
class MemoryDc : private host::NonCopyable {
 public:
  MemoryDc() : dc_(CreateCompatibleDC(nullptr)) {}
  ~MemoryDc() { DeleteDC(dc_); }
  [[nodiscard]] HDC Get() const { return dc_; }

 private:
  HDC dc_;
};

/// The painting of one WM_PAINT.
class PaintScope : private host::NonCopyable {
 public:
  explicit PaintScope(HWND window) : window_(window) { BeginPaint(window_, &paint_); }
  ~PaintScope() { EndPaint(window_, &paint_); }
  [[nodiscard]] HDC Dc() const { return paint_.hdc; }
  [[nodiscard]] const RECT& Area() const { return paint_.rcPaint; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
};

/// Keeps what is set in a device context from outliving the scope.
class SavedDc : private host::NonCopyable {
 public:
  explicit SavedDc(HDC dc) : dc_(dc), saved_(SaveDC(dc)) {}
  ~SavedDc() { RestoreDC(dc_, saved_); }

 private:
  HDC dc_;
  int saved_;
};

/// Owns a top-level or child window; empty again when the window has gone on its own.
class OwnedWindow {
 public:
  OwnedWindow() = default;
  explicit OwnedWindow(HWND window) : window_(window) {}
  OwnedWindow(OwnedWindow&& other) noexcept : window_(std::exchange(other.window_, nullptr)) {}
  OwnedWindow& operator=(OwnedWindow&& other) noexcept {
    std::swap(window_, other.window_);
    return *this;
  }
  ~OwnedWindow() {
    if (window_ != nullptr && IsWindow(window_)) DestroyWindow(window_);
  }
  [[nodiscard]] HWND Get() const { return window_; }

 private:
  HWND window_ = nullptr;
};

}  // namespace tavrix::viewkit::win32
