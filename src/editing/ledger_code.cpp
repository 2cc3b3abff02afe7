#include "editing/ledger_code.h"

#include "host/calls.h"

namespace tavrix::editing {

std::string MovePostings(host::SystemObject& system, const std::string& ledger,
                         const std::string& from, const std::string& to) {
  return host::ExecuteSql(
      system, "update " + ledger + " set ccode='" + to + "' where ccode='" + from + "'");
}

std::string UpdateLedgerCode(host::SystemObject& system, const std::string& from,
                             const std::string& to) {
  for (const char* ledger : kLedgers) {
    std::string error = MovePostings(system, ledger, from, to);
    if (!error.empty()) return error;
  }
  return {};
}

}  // namespace tavrix::editing
