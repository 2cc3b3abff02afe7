#pragma once

#include <memory>
#include <string>

#include "book/database/database.h"
#include "host/non_copyable.h"

namespace tavrix::test {

/// A user of the server for whom the server can go away and come back, while it serves all others.
class ServerUser : private host::NonCopyable {
 public:
  /// For the book at `place`, which exists (see `NewServerPlace`).
  explicit ServerUser(const std::string& place);
  ~ServerUser();

  /// The book as this user reaches it.
  [[nodiscard]] std::string Place() const;
  /// Ends the user's connections; no new one succeeds.
  void Away();
  void Back();

 private:
  void Run(const std::string& sql);

  std::string place_;
  std::string name_;
  std::unique_ptr<desk::book::Connection> others_;
};

}  // namespace tavrix::test
