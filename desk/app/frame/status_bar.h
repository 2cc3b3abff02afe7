#pragma once

#include <windows.h>

#include <string>

#include "app/frame/style.h"
#include "viewkit/win32/handles.h"

namespace desk::app {

/// The line at the bottom: the view's message, then the company and the file of the open book.
class StatusBar {
 public:
  StatusBar(HWND parent, SharedStyle style);

  [[nodiscard]] HWND Handle() const { return window_.Get(); }
  [[nodiscard]] int Height() const;
  void SetStyle(SharedStyle style);
  /// The bar's parts for its width as it is now.
  void Arrange();
  /// Shown at once, even while the program is busy; an empty text clears it.
  void SetMessage(const std::wstring& text);
  void SetBook(const std::wstring& company, const std::wstring& file);

 private:
  void SetPart(int part, const std::wstring& text);
  [[nodiscard]] std::wstring Cut(const std::wstring& text, int room) const;

  SharedStyle style_;
  tavrix::viewkit::win32::OwnedWindow window_;
  std::wstring company_;
  std::wstring file_;
};

}  // namespace desk::app
