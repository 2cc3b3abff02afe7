#pragma once

#include "book/database.h"

namespace desk::book {

/// Books in one file each, through the SQLite that is built in.
class SqliteEngine : public Engine {
 public:
  [[nodiscard]] std::unique_ptr<Connection> Open(const Place& place) const override;
  void Discard(const Place& place) const noexcept override;
};

inline constexpr const char* kInMemory = ":memory:";

}  // namespace desk::book
