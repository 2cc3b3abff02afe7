#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "app/frame/icons.h"
#include "app/frame/pane.h"
#include "app/frame/style.h"
#include "viewkit/win32/back_buffer.h"
#include "viewkit/win32/handles.h"

namespace desk::app {

/// One error report as a view raised it.
struct Report {
  std::wstring text;
  long level = 0;
  std::wstring title;
  std::wstring book = {};  ///< the name of the book it speaks of; empty for none
};

/// The list of error reports at the bottom of the frame: a heading that opens and closes it, and
/// the reports below, the newest last.
class ReportPane : public Pane {
 public:
  /// `layout_changed`: the pane wants another height than it has.
  [[nodiscard]] static std::shared_ptr<ReportPane> Make(HWND parent, SharedStyle style,
                                                        std::function<void()> layout_changed);

  void Add(const Report& report);
  void Clear();
  void SetStyle(SharedStyle style);
  [[nodiscard]] bool Open() const { return open_; }
  void SetOpen(bool open);
  /// Height that the pane wants, in pixels; never more than `available`.
  [[nodiscard]] int WantedHeight(int available) const;
  /// Height of the open pane at 96 dots per inch.
  [[nodiscard]] int DesignHeight() const { return design_height_; }
  void SetDesignHeight(int height);

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void CreateList();
  void Arrange() override;
  [[nodiscard]] PaneEdge Edge() const override { return open_ ? PaneEdge::kTop : PaneEdge::kNone; }
  void OnEdgeDragged(int design_size) override;
  void WidenTexts();
  void Paint(HDC dc, const RECT& area) override;
  void DrawHeading(HDC dc, const RECT& area) const;
  [[nodiscard]] RECT ClearButton() const;
  void OnClick(POINT at);
  [[nodiscard]] bool OnListNotify(const NMHDR& header);
  void CopySelected() const;
  void OnContextMenu(LPARAM place);
  [[nodiscard]] std::wstring RowText(int row) const;

  static constexpr int kMaxReports = 1000;

  SharedStyle style_;
  std::function<void()> layout_changed_;
  ImageList pictures_;
  tavrix::viewkit::win32::OwnedWindow list_;
  tavrix::viewkit::win32::BackBuffer back_buffer_;
  bool open_ = false;
  int design_height_ = 150;
  int count_ = 0;
};

}  // namespace desk::app
