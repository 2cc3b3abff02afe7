#pragma once

#include "book/database/database.h"

namespace desk::book {

/// Books on servers and in files that ODBC reaches; the place is a connection string.
class OdbcEngine : public Engine {
 public:
  [[nodiscard]] std::unique_ptr<Connection> Open(const Place& place) const override;
  /// The tables come with the transaction that fills them.
  [[nodiscard]] std::shared_ptr<Session> Make(const Place& place,
                                              const Filling& fill) const override;
};

}  // namespace desk::book
