#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "editing/fm_bkm_add.h"
#include "host/forms.h"
#include "host/non_copyable.h"
#include "host/objects.h"
#include "host/report.h"
#include "picker/col_kjkm.h"
#include "picker/columns.h"
#include "picker/placement.h"
#include "picker/row_texts.h"
#include "viewkit/control.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/search_box.h"
#include "viewkit/controls/splitter.h"
#include "viewkit/event.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/ports.h"
#include "viewkit/tree/tree_view.h"

namespace tavrix::picker {

/// The account picker: a category tree beside the list of the accounts that the caller's parameters
/// allow.
///
/// The host calls `Init`, sets the parameters and calls `Refresh` each time it shows the picker;
/// after `Clear` it must call `Init` again. Only `Init` and `Validate` throw; other failures are
/// shown in the message label. Works the same with and without windows.
class selKjkm : public host::IPickerUI, public host::IDesignUI, private host::NonCopyable {
 public:
  static constexpr int kButtons = 4;

  /// `user` must outlive the picker.
  explicit selKjkm(viewkit::UserPort& user);
  ~selKjkm() override;

  // host::IPickerUI
  [[nodiscard]] bool Init(std::shared_ptr<host::SystemObject> pcSystem, std::int32_t plProgID,
                          const std::string& psHostName) override;
  bool Refresh() override;
  bool Validate(const std::string& psSqlString, const std::string& psField_Code,
                const std::string& psField_Name, const std::string& psText,
                std::string& sReturnField_Code, std::string& sReturnField_Name) override;
  void Clear() override;
  void DoGetFormStatus() override;
  void DoSaveFormStatus() override;
  [[nodiscard]] std::string Attributes(const std::string&) const override { return {}; }
  [[nodiscard]] bool IsDirty() const override { return false; }
  void SetIsDirty(bool) override {}
  [[nodiscard]] std::shared_ptr<host::PickedObjects> Objects() const override { return m_Selected; }
  [[nodiscard]] std::shared_ptr<host::Parameters> PickerParameters() const override {
    return m_Parameters;
  }
  void SetPickerParameters(std::shared_ptr<host::Parameters> parameters) override;
  [[nodiscard]] const std::string& Text() const override { return m_Text; }
  void SetText(const std::string& text) override;
  [[nodiscard]] const host::Value& GetValue() const override { return m_Value; }
  void SetValue(const host::Value& value) override { m_Value = value; }

  // host::IDesignUI
  [[nodiscard]] viewkit::ControlList& Controls() override { return controls_; }
  void SetParameters(const std::shared_ptr<host::Parameters>& parameters) override;

  /// `Objects` by its own type.
  [[nodiscard]] const std::shared_ptr<colKjkm>& Selected() const { return m_Selected; }

  /// Background of the view itself.
  [[nodiscard]] viewkit::Color BackColor() const { return back_color_; }
  void SetBackColor(viewkit::Color color);

  /// The display name that the container gives this control; part of the status file's name.
  void SetContainerName(std::string name) { container_name_ = std::move(name); }
  /// Name of the status file without folder and ending. Throws `HostError` before `Init`.
  [[nodiscard]] std::string StatusName() const;

  /// Arranges the controls in a view of this size (twips).
  void Resize(int width, int height);

  viewkit::Event<> DoSelect;  ///< a pick has ended: value, text and objects are set
  viewkit::Event<> DoCancel;  ///< the user gave up: the objects are empty
  viewkit::Event<> BackColorChanged;

 private:
  /// What lives from `Init` to `Clear`. Routines hold it by a reference of their own: they ask the
  /// user and raise events, and the host may call `Clear` meanwhile.
  struct Session;

  void AddControls();
  void ConnectControls();
  void ConnectKeys();
  /// Runs `body`; a failure is shown in the message label and gives false.
  template <class Body>
  host::TrapResult<Body> Trapped(Body&& body) noexcept;
  void ShowError(const std::string& text);
  /// The running session, or a `HostError` when `Init` has not succeeded.
  [[nodiscard]] std::shared_ptr<Session> Running() const;
  /// The session has neither ended nor is it about to: routines that hold it may outlast `Clear`.
  [[nodiscard]] static bool Runs(const std::weak_ptr<Session>& session);
  /// The value of a parameter; nothing when its key does not exist.
  [[nodiscard]] std::optional<host::Value> Parameter(const char* key) const;
  [[nodiscard]] bool ParameterIsOne(const char* key) const;

  // Parameters and list
  void InitGrid();
  /// The user may add or change accounts.
  [[nodiscard]] static bool MayMaintain(Session& session);
  [[nodiscard]] std::string Fingerprint() const;
  /// The conditions that list and typed text share, each with its leading blank.
  [[nodiscard]] std::string ParameterFilter() const;
  /// The conditions that follow from the selected node and the show-closed box.
  [[nodiscard]] std::string ViewFilter() const;
  void ReloadAccountList() noexcept;
  bool LoadAccountList() noexcept;
  void ShowRows(host::RowSet accounts);
  void ShowSealed(int row);
  void ShowRowCount();
  [[nodiscard]] bool HasTotals() const;
  /// Rows of the list that are accounts and not totals of a layout.
  [[nodiscard]] int AccountRows() const;

  // Status of the controls
  void GetFormStatus(const std::string& psFile, bool pbWidthOnly);
  void SaveFormStatus(const std::string& psFile, bool pbWidthOnly);
  /// Order and totals of the restored layout, again after a change of the list's rows.
  void RestoreTotals();

  // Category tree
  [[nodiscard]] bool LoadCategoryTree() noexcept;
  [[nodiscard]] host::RowSet AccountsOfCode(Session& session, const std::string& code);
  void m_Tv_Selected() noexcept;

  // Selection
  void FinishSelection() noexcept;
  [[nodiscard]] bool CollectSelection();
  [[nodiscard]] bool RefusesRow(int row);
  static void AddAccount(Session& session, colKjkm& selected, std::int32_t id);
  static void AddResultRow(host::Recordset& account, colKjkm& selected);
  void Cancel() noexcept;
  void ShowSelectionCount();

  // Search, keys, buttons
  /// The first data row that matches the search box's text, from 0; negative for none.
  [[nodiscard]] int FirstMatch();
  void OnSearch() noexcept;
  void OnSearchMode() noexcept;
  void OnKeyDown(const viewkit::Control& control, viewkit::Key key, viewkit::Modifiers modifiers);
  void OnKeyUp(viewkit::Key key);
  void MoveRow(viewkit::Key key);
  void OnButton(int index) noexcept;

  // Account form
  void OpenForm();
  [[nodiscard]] std::shared_ptr<editing::FmBkmAdd> CreateForm(
      const std::shared_ptr<Session>& session);
  [[nodiscard]] std::string CategoryOfNewAccount() const;
  void mfrmKjkm_EvHasLoad(bool pNew, std::int32_t plID) noexcept;
  void mfrmKjkm_ErrMessage(const std::string& psMsg) noexcept;
  void WriteRow(const std::array<std::string, kColumns>& texts, bool is_new, const std::string& id);
  void SortInto();
  [[nodiscard]] int RowAbove(int row) const;
  /// The row of the account that was edited; negative when the list no longer shows it.
  [[nodiscard]] int RowOfEdited(const std::string& id) const;

  // Mouse wheel
  void SetWheelRange(Session& session);
  void OnWheel(std::int32_t value) noexcept;
  void OnScrolled() noexcept;
  void OnGridFocused() noexcept;

  // Layout. The second gives the top of what follows below the line.
  void PlaceControls();
  [[nodiscard]] int PlaceSearchLine(int room);
  void PlacePanes(int top, int height, int room);
  void OnSplitterMoved();

  viewkit::UserPort& user_;
  viewkit::ControlList controls_;
  viewkit::TreeView TV_;
  viewkit::FlexGrid Vs_;
  viewkit::SearchBox SearchBox1_;
  viewkit::CheckBox Chk_;
  viewkit::CheckBox Check_;
  viewkit::CheckBox ChkFind_;
  std::array<std::unique_ptr<viewkit::CommandButton>, kButtons> Cmd_;
  viewkit::Label LblCount_;
  viewkit::Label lblMessage_;
  viewkit::Splitter Splitter1_;
  viewkit::Color back_color_ = viewkit::color::kButtonFace;
  int width_ = -1;  // before the first `Resize`
  int height_ = -1;
  Placement placement_;
  bool splitter_dragged_ = false;

  std::shared_ptr<Session> session_;
  std::shared_ptr<host::Parameters> m_Parameters;
  std::shared_ptr<colKjkm> m_Selected;
  host::Value m_Value;
  std::string m_Text;
  std::string container_name_;
  RowTexts row_texts_;
  std::string load_error_;  // that the message label shows since a failed load
  bool filling_tree_ = false;

  // One Enter gives one pick, one Down or Up one step, wherever the focus is.
  enum class Press { kNone, kHeld, kSpent };
  Press enter_ = Press::kNone;
  bool control_stepped_ = false;     // the pressed arrow key has done its work already
  bool key_from_elsewhere_ = false;  // focus has come and no key since: a release belongs elsewhere
};

}  // namespace tavrix::picker
