#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "app/frame/icons.h"
#include "app/frame/pane.h"
#include "app/frame/style.h"
#include "viewkit/win32/handles.h"

namespace desk::app {

/// What tells one strip from another, and what it calls.
struct SearchStripPlan {
  Icon icon = Icon::kFind;
  const wchar_t* label = L"";
  const wchar_t* hint = L"";  ///< shown in the empty box
  const wchar_t* apply = L"";
  const wchar_t* second = L"";
  std::function<void(const std::wstring& text)> on_apply;   ///< Enter, or the first button
  std::function<void(const std::wstring& text)> on_second;  ///< the second button
  std::function<void()> on_close;                           ///< Escape, or the cross
};

/// A strip above the view with a box for one text: the find bar and the filter bar.
class SearchStrip : public Pane {
 public:
  [[nodiscard]] static std::shared_ptr<SearchStrip> Make(HWND parent, SharedStyle style,
                                                         SearchStripPlan plan);

  void SetStyle(SharedStyle style);
  [[nodiscard]] bool Shown() const { return shown_; }
  /// The owner lays the frame out afterwards.
  void SetShown(bool shown);
  [[nodiscard]] int Height() const { return style_->strip_height + style_->scale.Design(8); }
  /// Focus to the box, its text selected.
  void FocusBox();
  [[nodiscard]] std::wstring Text() const;
  void SetText(const std::wstring& text);
  /// A short answer beside the buttons: what was found, or that nothing was.
  void SetAnswer(std::wstring answer, bool refused = false);

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  [[nodiscard]] HWND AddChild(const wchar_t* class_name, const wchar_t* text, DWORD style, int id);
  void Arrange() override;
  void Paint(HDC dc, const RECT& area) override;
  void OnCommand(int id);
  [[nodiscard]] RECT CloseButton() const;

  SharedStyle style_;
  SearchStripPlan plan_;
  HWND box_ = nullptr;  // children, which go with the window
  HWND apply_ = nullptr;
  HWND second_ = nullptr;
  int answer_left_ = 0;
  std::wstring answer_;
  bool refused_ = false;
  bool shown_ = false;
};

/// The text of a window, as the user left it.
[[nodiscard]] std::wstring WindowText(HWND window);

}  // namespace desk::app
