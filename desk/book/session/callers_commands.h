#pragma once

#include <cstdint>
#include <string>

namespace desk::book {

class Session;

/// Which command of the history the statements of callers belong to. The controls send several for
/// one save or deletion; the first of them begins a command, and those that set the flag of a leaf
/// afterwards belong to it.
class CallersCommands {
 public:
  /// Whether `sql` may change accounts.
  [[nodiscard]] static bool Concern(const std::string& sql);
  /// Before `sql`, which concerns the history, inside its transaction.
  void Begin(Session& session, const std::string& sql);

 private:
  std::int64_t last_ = 0;
};

}  // namespace desk::book
