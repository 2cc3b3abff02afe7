#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "app/frame/pane.h"
#include "app/print/page_painter.h"
#include "viewkit/win32/back_buffer.h"
#include "views/print_preview.h"

namespace desk::app {

/// The page of a preview, on grey ground. What has no room is scrolled; where there is nothing more
/// to scroll the next page comes.
class PagePane : public Pane {
 public:
  struct Calls {
    std::function<bool(int page)> go;          ///< false when there is no such page
    std::function<void(bool backward)> leave;  ///< Tab
  };
  /// Preview and measure must outlive it.
  [[nodiscard]] static std::shared_ptr<PagePane> Make(HWND parent, SharedStyle style,
                                                      const views::PrintPreview& preview,
                                                      const PageMeasure& measure, Calls calls);

  /// Another page, or the same in another way.
  void Show();
  void SetStyle(SharedStyle style);
  [[nodiscard]] tavrix::viewkit::Accessible* Inside() override { return &accessible_; }

 private:
  enum class Bar { kHorizontal, kVertical };

  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void Arrange() override { SetBars(); }
  void Paint(HDC dc, const RECT& area) override;
  void SetBars();
  void OnScroll(Bar bar, WORD action);
  bool OnKey(WPARAM key);
  /// Moves what is seen; at the end of the page goes to the next one, or the one before.
  void ScrollBy(int down, bool turn);
  void TurnTo(int page, bool at_its_end);
  [[nodiscard]] SIZE PageSize() const;
  /// The room that is scrolled: the page with its surroundings.
  [[nodiscard]] SIZE Extent() const;
  [[nodiscard]] double PixelsPerTwip() const;
  [[nodiscard]] int Surrounding() const { return style_->scale.Design(14); }

  SharedStyle style_;
  const views::PrintPreview* preview_ = nullptr;
  Calls calls_;
  std::unique_ptr<PagePainter> painter_;
  views::PrintPage page_;
  tavrix::viewkit::AccessibleLines accessible_;
  POINT scrolled_{};
  tavrix::viewkit::win32::BackBuffer buffer_;
};

}  // namespace desk::app
