#pragma once

#include "book/database.h"

namespace desk::book {

/// Books on servers and in files that ODBC reaches; the place is a connection string.
class OdbcEngine : public Engine {
 public:
  [[nodiscard]] std::unique_ptr<Connection> Open(const Place& place) const override;
  /// The tables went with the transaction that made them.
  void Discard(const Place&) const noexcept override {}
};

}  // namespace desk::book
