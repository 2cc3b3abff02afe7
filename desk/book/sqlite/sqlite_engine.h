#pragma once

#include "book/database/database.h"

namespace desk::book {

/// Books in one file each, through the SQLite that is built in.
class SqliteEngine : public Engine {
 public:
  [[nodiscard]] std::unique_ptr<Connection> Open(const Place& place) const override;
  [[nodiscard]] std::shared_ptr<Session> Make(const Place& place,
                                              const Filling& fill) const override;
};

inline constexpr const char* kInMemory = ":memory:";

}  // namespace desk::book
