#pragma once

// What only the sources of the class need.

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "editing/fm_bkm_add.h"
#include "editing/unfinished_save.h"
#include "host/error.h"
#include "host/non_copyable.h"
#include "host/objects.h"
#include "host/report.h"
#include "viewkit/ports.h"

namespace tavrix::editing {

struct FmBkmAdd::Session {
  std::shared_ptr<host::SystemObject> pcSystem;
  std::shared_ptr<host::CodeRule> code_rule;
  std::shared_ptr<host::LogHelper> log_helper;  // created and released, asked for nothing
  std::shared_ptr<host::DataHelper> data_helper;
  std::string rule;            // setting "kmbm": one digit for each level
  std::string category;        // that the dialog was opened with
  std::string reference;       // code of the account a new one stands below or beside
  std::string initial_code;    // that the record has, as far as is known
  std::int32_t record_id = 0;  // 0 until a new account has been written
  // An insert or an update that was sent and is not known to stand: the next save looks. The new
  // row's identifier, 0 for none; the code that the row had.
  std::int32_t attempted_id = 0;
  std::optional<std::string> attempted_from;
  std::optional<UnfinishedSave> unfinished;
  std::int32_t level = 0;  // of the code, as it is written
  bool changed = false;    // what closing asks for; a check that fails clears it
  bool unwritten = false;  // the fields differ from the row as it was last sent
  bool code_changed = false;
  bool proposes_direction = false;  // from the category: a new account whose user has not chosen
  bool saving = false;
  /// The focus began behind the code box: what leaving that box checks is still to be checked.
  bool passed_by = false;

  /// Something would be lost by closing.
  [[nodiscard]] bool Unsaved() const {
    return changed || unfinished || attempted_id != 0 || attempted_from;
  }
};

/// The record that the dialog works on is gone: someone else has deleted it.
[[nodiscard]] inline host::HostError AccountMissing() {
  return host::HostError("找不到该科目");
}

class FmBkmAdd::Busy : private host::NonCopyable {
 public:
  Busy(FmBkmAdd& dialog, const std::string& status) : wait_(dialog.user_), dialog_(dialog) {
    dialog_.Message.Raise(status);
  }
  ~Busy() {
    try {
      dialog_.Message.Raise("");
    } catch (...) {  // a listener that throws does not stop the routine
    }
  }

 private:
  viewkit::WaitCursor wait_;
  FmBkmAdd& dialog_;
};

template <class Body>
host::TrapResult<Body> FmBkmAdd::Trapped(std::string_view prefix, std::int32_t level,
                                         Body&& body) noexcept {
  const auto report = [this](const std::string& text, std::int32_t at) { Report(text, at); };
  return host::Trap(report, prefix, level, std::forward<Body>(body));
}

}  // namespace tavrix::editing
