#pragma once

#include <memory>
#include <string>

#include "editing/fm_bkm_add.h"
#include "host/error.h"
#include "host/objects.h"
#include "viewkit/ports.h"

namespace tavrix::editing {

struct FmBkmAdd::Session {
  std::shared_ptr<host::SystemObject> pcSystem;
  std::shared_ptr<host::CodeRule> code_rule;
  std::shared_ptr<host::LogHelper> log_helper;  // created and released, asked for nothing
  std::shared_ptr<host::DataHelper> data_helper;
  std::string rule;       // setting "kmbm": one digit for each level
  std::string category;   // that the dialog was opened with
  std::string reference;  // code of the account a new one stands below or beside
  std::string initial_code;
  std::int32_t record_id = 0;  // 0 until a new account has been written
  std::int32_t level = 0;      // of the code, as it is written
  bool changed = false;
  bool code_changed = false;
};

/// The record that the dialog works on is gone: someone else has deleted it.
[[nodiscard]] inline host::HostError AccountMissing() {
  return host::HostError("找不到该科目");
}

class FmBkmAdd::Busy {
 public:
  Busy(FmBkmAdd& dialog, const std::string& status) : wait_(dialog.user_), dialog_(dialog) {
    dialog_.Message.Raise(status);
  }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
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

}  // namespace tavrix::editing
