#pragma once

#include <sqlite3.h>

#include <set>
#include <string>

#include "host/non_copyable.h"

namespace desk::book {

/// Holds callers' statements to reading and changing rows of the schema's tables, while a
/// `Watch` lives; the desk's own statements are free. Installed in one connection.
class SqliteGuard {
 public:
  void Install(sqlite3* database);
  /// Why the last watched statement was refused; empty when the guard had no objection.
  [[nodiscard]] const std::string& Objection() const { return objection_; }

  class Watch : private tavrix::host::NonCopyable {
   public:
    Watch(SqliteGuard& guard, bool on) : guard_(guard) {
      guard_.on_ = on;
      guard_.objection_.clear();
      guard_.tables_of_book_.clear();
    }
    ~Watch() { guard_.on_ = false; }

   private:
    SqliteGuard& guard_;
  };

 private:
  static int Authorize(void* self, int action, const char* first, const char* second,
                       const char* database, const char* trigger) noexcept;
  [[nodiscard]] int Judge(int action, const char* table, const char* column, const char* trigger);
  [[nodiscard]] int JudgeTable(const char* table, const char* column, bool of_book);
  [[nodiscard]] int Object(std::string reason);

  bool on_ = false;
  std::string objection_;
  std::set<std::string> tables_of_book_;  ///< that views and triggers of the book have read
};

}  // namespace desk::book
