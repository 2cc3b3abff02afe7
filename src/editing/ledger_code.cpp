#include "editing/ledger_code.h"

#include "host/calls.h"

namespace tavrix::editing {

std::string UpdateLedgerCode(host::SystemObject& system, const std::string& from,
                             const std::string& to) {
  for (const char* table : {"gl_accvouch", "gl_accass", "gl_accsum"}) {
    std::string error = host::ExecuteSql(system, std::string("update ") + table + " set ccode='" +
                                                     to + "' where ccode='" + from + "'");
    if (!error.empty()) return error;
  }
  return {};
}

}  // namespace tavrix::editing
