#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "app/frame/commands.h"
#include "app/frame/notice.h"
#include "app/frame/report_pane.h"
#include "app/frame/search_strip.h"
#include "app/frame/status_bar.h"
#include "app/frame/style.h"
#include "app/frame/tool_bar.h"
#include "app/frame/view_area.h"
#include "viewkit/win32/window.h"

namespace desk::app {

/// What the frame asks and tells the desk. All calls come on the frame's thread.
class FrameOwner {
 public:
  virtual ~FrameOwner() = default;
  virtual void OnCommand(Command command) = 0;
  /// How things stand, as far as commands depend on it.
  [[nodiscard]] virtual views::DeskState State() = 0;
  /// What undoing would take back and what would be done again, for their entries in a menu that is
  /// about to open; nothing where the book does not say.
  struct Deeds {
    std::string undo = {};  ///< empty for nothing
    std::string redo = {};
  };
  [[nodiscard]] virtual std::optional<Deeds> OnDeeds() = 0;
  virtual void OnFind(const std::wstring& text) = 0;
  virtual void OnFindNext() = 0;
  virtual void OnFilter(const std::wstring& text) = 0;
  /// The view's place has changed, in pixels of the view area's client area.
  virtual void OnViewArea(const RECT& area) = 0;
  /// The frame has become the active window, or ceases to be it.
  virtual void OnActivate(bool active) = 0;
  /// The view shall take the focus; false when there is none.
  virtual bool OnFocusView() = 0;
  /// Resolution or fonts have changed.
  virtual void OnStyle() = 0;
  /// A menu is asked for in the view: at this place of the screen, or by a key.
  virtual void OnViewMenu(HWND part, std::optional<POINT> at) = 0;
  /// The user closes the frame; false to stay open.
  [[nodiscard]] virtual bool OnClosing() = 0;
};

/// The main window: menu, tool bar, find and filter bars, the view, a docked pane, reports, status.
/// `owner` must outlive it.
class FrameWindow : public tavrix::viewkit::win32::Window {
 public:
  [[nodiscard]] static std::shared_ptr<FrameWindow> Make(FrameOwner& owner);

  void SetTitle(const std::wstring& book);
  void SetRecent(const std::vector<std::wstring>& recent);
  void SetMessage(const std::wstring& text) { status_->SetMessage(text); }
  void SetBookTexts(const std::wstring& company, const std::wstring& file);
  void AddReport(const Report& report);
  /// `heard` is told of each report.
  void OnReport(std::function<void(const Report&)> heard) { report_heard_ = std::move(heard); }

  [[nodiscard]] ReportPane& Reports() { return *reports_; }
  [[nodiscard]] ViewArea& Area() { return *area_; }
  [[nodiscard]] SearchStrip& FindBar() { return *find_; }
  [[nodiscard]] SearchStrip& FilterBar() { return *filter_; }
  [[nodiscard]] const SharedStyle& CurrentStyle() const { return style_; }

  /// Shows or hides a bar; a shown one gets the focus.
  void ShowBar(SearchStrip& bar, bool shown);
  /// Both bars empty and hidden, as for a book that has just been opened.
  void ResetBars();
  /// A child that stands between view and reports while it is visible; null for none.
  void Dock(HWND pane, int design_height);
  /// A child that stands beside the view while it is visible; null for none. `design_width` is what
  /// it has where there is room for it, `min_width` what it always has.
  void DockBeside(HWND pane, int design_width, int min_width);
  /// Lets the user choose one of these commands at a place of the screen.
  void ShowMenu(std::span<const Command> commands, POINT at);
  void Arrange();
  /// Focus to the part after the view, or the one before it: a bar, the docked pane, the reports.
  void FocusBeside(bool backward);
  /// Brings menu and tool bar in line with what the owner says.
  void UpdateCommands();
  /// For the message loop: true when the frame has used the message up. `in_view`: the focus is in
  /// the view.
  [[nodiscard]] bool Translate(MSG& message, bool in_view);

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void CreateParts();
  void CreateBars();
  void ShowNotice();
  void SizeFirst();
  void ShowOthers();
  void OnContextMenu(LPARAM place);
  void OnDpi(const RECT& wanted);
  void OnColors();
  void OnMenuOpening(HMENU menu);
  void ShowDeeds(HMENU menu);
  void OnActivation(bool active);
  void RestoreFocus();
  [[nodiscard]] LRESULT OnNotification(const NMHDR& header);

  FrameOwner* owner_ = nullptr;
  SharedStyle style_;
  OwnedIcon big_icon_;
  OwnedIcon small_icon_;
  Accelerators frame_keys_;
  Accelerators view_keys_;
  std::optional<ToolBar> tool_bar_;
  std::optional<StatusBar> status_;
  std::shared_ptr<SearchStrip> find_;
  std::shared_ptr<SearchStrip> filter_;
  std::shared_ptr<ViewArea> area_;
  std::shared_ptr<ReportPane> reports_;
  std::shared_ptr<Notice> notice_;
  std::function<void(const Report&)> report_heard_;
  std::optional<Report> waiting_;  ///< the report to show above a dialog
  HWND docked_ = nullptr;
  int docked_design_height_ = 0;
  HWND beside_ = nullptr;
  int beside_design_width_ = 0;
  int beside_min_width_ = 0;
  HWND last_focus_ = nullptr;
};

}  // namespace desk::app
