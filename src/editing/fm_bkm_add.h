#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "editing/account_form.h"
#include "editing/ledger_code.h"
#include "host/objects.h"
#include "host/report.h"
#include "viewkit/event.h"
#include "viewkit/ports.h"

namespace tavrix::editing {

/// The modal dialog in which one account is added or changed.
///
/// Hold it in a `shared_ptr`: while it is shown it keeps itself and all it uses alive, so that its
/// owner may let go of it, or be cleared, at any time. No member throws; failures are reported
/// through `ErrMessage`. Every member but `py_SubProgram` expects the dialog to be open and reports
/// a failure otherwise.
class FmBkmAdd : public AccountForm, public std::enable_shared_from_this<FmBkmAdd> {
 public:
  /// `user` must outlive the dialog.
  explicit FmBkmAdd(viewkit::UserPort& user);

  /// An account as whoever opens the dialog knows it.
  struct NamedAccount {
    std::string code;
    std::string name;
  };
  /// The account above the one that is opened next; an empty code says that it is of the first
  /// level. It is shown and decides nothing. Untold, only the code of a reference account is known.
  /// While the dialog is open it keeps what it was told, as the next opening is refused.
  void SetAbove(NamedAccount above) {
    if (!session_) above_ = std::move(above);
  }

  /// Opens the dialog and returns when it has been closed.
  ///
  /// `psKmLb`: category of a new account, may be empty. `pbNew`: add an account, below the
  /// reference account `psBm` when `pnNewNext` is set, beside it otherwise; `psBm` may be empty.
  /// When `pbNew` is clear, `plID` is the record to change. The dialog does not open when the code
  /// rule or the record cannot be read, or while it is open already.
  void py_SubProgram(std::shared_ptr<host::SystemObject> pcSystem, const std::string& psKmLb,
                     bool pbNew, bool pnNewNext = false, const std::string& psBm = {},
                     std::int32_t plID = 0) noexcept;

  /// The account with this id has been written.
  viewkit::Event<bool /*pNew*/, std::int32_t /*plID*/> EvHasLoad;
  viewkit::Event<const std::string&, std::int32_t, const std::string&> ErrMessage;
  viewkit::Event<const std::string&> Message;

  // Checks. All refuse by a report.

  /// Whether the account may be written; computes the level that is written. False without a report
  /// when nothing was changed.
  [[nodiscard]] bool IsCanSave() noexcept;
  /// `BmIsTrue` on the code box, with status text and focus. An empty code passes.
  [[nodiscard]] bool IsCanCodeRule() noexcept;
  /// Switches the comparisons with the record's own row off.
  static constexpr std::int32_t kNoRecord = -2;
  /// The level of `code` when it fits the rule, has a parent and is not taken by another record
  /// than `record_id`; nothing when it is refused.
  [[nodiscard]] std::optional<std::int32_t> BmIsTrue(const std::string& code,
                                                     std::int32_t record_id) noexcept;
  struct EditCheck {
    bool allowed = false;
    std::optional<std::string> stored_code;  ///< nothing when the record could not be read
  };
  /// Whether the record may be given `code`: an account with sub-accounts keeps its own.
  [[nodiscard]] EditCheck IsCanEdit(const std::string& code, std::int32_t record_id) noexcept;

  /// The next free code of `category`: below `reference` when `below` is set, else beside it.
  /// Nothing, with a report, when there is none.
  [[nodiscard]] std::optional<std::string> NextBm(const std::string& reference,
                                                  const std::string& category, bool below) noexcept;

  /// Writes the account, the leaf flags of its parents and a changed code. True when all is done.
  /// After a failure the next save finishes what is left.
  bool FileSave() noexcept;

  /// Whether the dialog may be closed; asks when there are unsaved changes.
  [[nodiscard]] bool CloseForm() noexcept;
  void Cmd_Click(int Index) noexcept;
  void Chk_Click(int Index) noexcept;
  /// Selects the book type that follows from the currency and the quantity box.
  void SetBookType();

 protected:
  [[nodiscard]] bool QueryUnload() override { return CloseForm(); }
  /// The name, when the code has been proposed.
  [[nodiscard]] viewkit::Control* FirstFocus() override;
  [[nodiscard]] bool MayEnter() override { return CheckPassedBy(); }
  void OnUnload() override;
  void OnFocusMoved(viewkit::Control& from, viewkit::Control& to) override;

 private:
  /// What lives from opening to closing. Routines hold it by a reference of their own: they report
  /// and ask in between, and the dialog may be closed meanwhile.
  struct Session;
  /// Status text and hourglass while a routine works.
  class Busy;

  template <class Body>
  host::TrapResult<Body> Trapped(std::string_view prefix, std::int32_t level, Body&& body) noexcept;
  [[nodiscard]] std::shared_ptr<Session> Current() const;
  /// Raises `ErrMessage` with the application title.
  void Report(const std::string& text, std::int32_t level);
  /// Reports a refusal.
  void Refuse(const std::string& text);
  [[nodiscard]] std::string CodeText();

  void ConnectControls();
  void Edited();
  void TellAbove();
  [[nodiscard]] bool CheckPassedBy() noexcept;

  // Opening
  void StartSession(std::shared_ptr<host::SystemObject> pcSystem, const std::string& psKmLb,
                    const std::string& psBm);
  [[nodiscard]] bool InitBaseValue() noexcept;
  [[nodiscard]] bool Prepare(bool pbNew, bool pnNewNext, std::int32_t plID);
  void PrepareNew();
  void GetNewCode() noexcept;
  void ProposeDirection();
  [[nodiscard]] bool LoadData(std::int32_t plID) noexcept;
  void FillControls(host::Recordset& account);
  void ShowStored(int list, const std::string& text);

  // Checks
  [[nodiscard]] bool ParentAllows(Session& session, const std::string& code,
                                  std::int32_t record_id);
  [[nodiscard]] bool FirstLevelIsFree(Session& session, const std::string& code,
                                      std::int32_t record_id);

  struct StoredAccount {
    std::string code;
    bool is_leaf = false;
  };
  /// Nothing when there is no such record.
  [[nodiscard]] static std::optional<StoredAccount> ReadStored(Session& session,
                                                               std::int32_t record_id);

  // Saving
  [[nodiscard]] bool Send(Session& session, const std::string& sql);
  [[nodiscard]] std::string UpdateStatement(Session& session);
  [[nodiscard]] std::string InsertStatement(Session& session, std::int32_t id);
  [[nodiscard]] bool UpdateAccount(Session& session, const std::string& code);
  [[nodiscard]] bool InsertAccount(Session& session, const std::string& code);
  /// Whether the insert that the last save attempted stands.
  void FindInserted(Session& session);
  static void Inserted(Session& session, std::int32_t id, const std::string& code);
  /// The account stands with the code `to`; before that its code was `from`.
  static void Written(Session& session, const std::string& from, const std::string& to);
  /// Sends what follows the statement that wrote the account; stops at the first that fails.
  [[nodiscard]] bool SendRest(Session& session, const std::string& code);
  [[nodiscard]] bool MoveLedger(Session& session, const std::string& code);
  [[nodiscard]] bool LeaveOldParent(Session& session);
  [[nodiscard]] bool JoinNewParent(Session& session, const std::string& code);

  // Check boxes
  void EnableList(int check, int list);
  void LockOut(int clicked);
  void FillGatherList() noexcept;
  void ShowDependencies();

  viewkit::UserPort& user_;
  std::shared_ptr<Session> session_;
  std::optional<NamedAccount> above_;
  bool filling_ = false;  // the program fills the controls: no consequences, no changed flag
};

}  // namespace tavrix::editing
