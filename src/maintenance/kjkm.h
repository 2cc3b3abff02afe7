#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/forms.h"
#include "host/non_copyable.h"
#include "host/objects.h"
#include "host/report.h"
#include "viewkit/control.h"
#include "viewkit/controls/tab_strip.h"
#include "viewkit/event.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/ports.h"

namespace tavrix::editing {
class FmBkmAdd;
}

namespace tavrix::maintenance {

/// The chart-of-accounts maintenance view: one outline grid for each category tab.
///
/// The host calls `Init`, then `Refresh`; after `Clear` it must call `Init` again. No member throws
/// except `Init`; failures are reported through `ErrMessage`. The system object is borrowed from
/// `Init` to `Clear`. Works the same with and without windows.
class Kjkm : public host::IFormUI, public host::IDesignUI, private host::NonCopyable {
 public:
  static constexpr int kPages = 7;

  /// `user` must outlive the view.
  explicit Kjkm(viewkit::UserPort& user);
  ~Kjkm() override;

  // host::IFormUI
  [[nodiscard]] bool Init(std::shared_ptr<host::SystemObject> pcSystem, std::int32_t plCzID,
                          std::int32_t plID) override;
  bool Refresh() override;
  bool FileNew() override;
  bool FileNewNext() override;
  bool FileEdit() override;
  bool FileDelete() override;
  bool FileSave() override { return true; }
  bool FileCancel() override { return true; }
  bool Check() override { return false; }
  bool UnCheck() override { return false; }
  bool Help() override { return false; }
  bool PrintSetup() override { return false; }
  bool DoPrint(bool) override { return false; }
  bool RecordTop() override;
  bool RecordPrevious() override;
  bool RecordNext() override;
  bool RecordBottom() override;
  bool Find(const host::Value& pvData) override;
  bool FindNext() override;
  bool Filter(const host::Value& pvData) override;
  bool Clear() override;
  bool DoSetStatus(const std::string&, bool) override { return false; }
  [[nodiscard]] bool CheckStatus(const std::string&) const override { return false; }
  [[nodiscard]] bool IsDirty() const override { return false; }
  [[nodiscard]] std::int32_t GetID() const override { return 0; }
  [[nodiscard]] std::string ReturnPrintName() const override { return {}; }
  [[nodiscard]] std::string Attributes(const std::string& psName) const override;
  void DoSaveFormStatus() override;
  void DoGetFormStatus() override;

  // host::IDesignUI
  [[nodiscard]] viewkit::ControlList& Controls() override { return controls_; }
  void SetParameters(const std::shared_ptr<host::Parameters>& parameters) override;

  /// Background of the view itself.
  [[nodiscard]] viewkit::Color BackColor() const { return back_color_; }
  void SetBackColor(viewkit::Color color);

  /// Arranges tab strip and grids in a view of this size (twips).
  void Resize(int width, int height);

  viewkit::Event<const std::string&> Message;
  viewkit::Event<const std::string&, std::int32_t, const std::string&> ErrMessage;
  viewkit::Event<> BackColorChanged;

 private:
  /// What lives from `Init` to `Clear`. The host may call `Clear` inside any of its own objects, an
  /// event or a modal dialog: routines keep what they use by references of their own, and compare
  /// the session with the running one before they go on.
  struct Session;

  [[nodiscard]] std::shared_ptr<editing::FmBkmAdd> CreateEditDialog();
  /// Raises `ErrMessage` with the application title.
  void Report(const std::string& text, std::int32_t level);
  template <class Body>
  host::TrapResult<Body> Trapped(std::string_view prefix, std::int32_t level, Body&& body) noexcept;
  using RecordMove = bool (host::GridNavigator::*)(host::Grid&);
  bool MoveRecord(std::string_view prefix, RecordMove move);
  /// The running session, or a `HostError` when the last `Init` has not succeeded.
  [[nodiscard]] std::shared_ptr<Session> Running() const;
  /// `Clear` has not ended the session.
  [[nodiscard]] static bool Runs(const std::weak_ptr<Session>& session);
  [[nodiscard]] viewkit::FlexGrid& Grid(int page) { return *Vs_[static_cast<std::size_t>(page)]; }
  [[nodiscard]] viewkit::FlexGrid& CurrentGrid() { return Grid(current_tab_); }

  void ConnectEnter(viewkit::FlexGrid& grid);

  // Status of the controls
  void GetFormStatus(const std::string& psFile, bool pbWidthOnly);
  void SaveFormStatus(const std::string& psFile, bool pbWidthOnly);

  // Account list
  [[nodiscard]] bool InitVsControl(viewkit::FlexGrid& grid) noexcept;
  [[nodiscard]] bool DoRefresh(const std::shared_ptr<Session>& session, viewkit::FlexGrid& grid,
                               std::string_view category);
  void FormatOutline(viewkit::FlexGrid& grid, bool reset);
  /// The row that an edit started from.
  [[nodiscard]] static int EditedRow(viewkit::FlexGrid& grid, std::string_view id);
  void LocateCode(viewkit::FlexGrid& grid, std::string_view code);
  void OnAccountSaved(bool pNew, std::int32_t plID) noexcept;
  void OnTabActivated(const std::string& key) noexcept;

  // Commands
  [[nodiscard]] std::shared_ptr<host::GridNavigator> Navigator() const;
  bool AddAccount(std::string_view prefix, bool pnNewNext);
  void OpenEditor(bool pbNew, bool pnNewNext);
  [[nodiscard]] bool ConfirmDelete(const std::string& code, const std::string& name);
  /// Deletes `code` with all below it; `new_leaf`, when not empty, is the parent that has no
  /// sub-account left. Throws the database's text; what stands already stays done.
  static void DeleteAccounts(host::SystemObject& system, const std::string& code,
                             const std::string& new_leaf);
  static void RemoveDeleted(viewkit::FlexGrid& grid, const std::string& code);
  /// The row of an account: the current one when it holds the code. Below the data rows for none.
  [[nodiscard]] static int RowOf(const viewkit::FlexGrid& grid, const std::string& code);

  // Mouse wheel
  void ArmWheel(std::shared_ptr<Session> session);
  void OnWheel(std::int32_t value) noexcept;
  void OnScrolled(int page) noexcept;
  void OnGridFocused(int page) noexcept;

  viewkit::UserPort& user_;
  viewkit::ControlList controls_;
  viewkit::TabStrip vxVSTab_;
  std::array<std::unique_ptr<viewkit::FlexGrid>, kPages> Vs_;
  int width_ = -1;  // before the first `Resize`
  int height_ = -1;
  viewkit::Color back_color_ = viewkit::color::kButtonFace;
  std::shared_ptr<Session> session_;
  int current_tab_ = 0;
};

}  // namespace tavrix::maintenance
