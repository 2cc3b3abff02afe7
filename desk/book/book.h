#pragma once

#include <memory>
#include <string>

#include "book/host/host_system.h"
#include "book/ledger/template.h"
#include "book/session/session.h"

namespace desk::book {

/// An open book. Objects that it gave out keep its database open after it has gone.
class Book {
 public:
  /// Makes a new book at a place where nothing is: no file, or the database of a connection string
  /// that holds no book. A file is there for others when it is whole, with what `furnish` has added
  /// to it; nothing is left when it fails.
  /// `DatabaseError`, as for all members that reach the database.
  [[nodiscard]] static Book Create(const std::string& path, const Template& content = {},
                                   const Filling& furnish = {});
  /// Opens an existing book. A book that lacks something opens all the same: see `Faults`.
  [[nodiscard]] static Book Open(const std::string& path);
  [[nodiscard]] static Book Open(const Place& place);

  /// A book of this session alone: one path gives a new one each time.
  static constexpr const char* kInMemory = ":memory:";

  /// What the book lacks, one line for each table or column; empty for a sound book.
  [[nodiscard]] const std::string& Faults() const { return faults_; }
  [[nodiscard]] bool ReadOnly() const { return session_->Own().ReadOnly(); }

  /// The object to hand to the controls.
  [[nodiscard]] std::shared_ptr<host::SystemObject> System() const;
  /// What `System` tells of the application; changes count at once.
  [[nodiscard]] HostEnvironment& Environment() { return *environment_; }

  /// Overrides the connection property "driver": "jet", or the engine's name ("sqlite",
  /// "postgresql").
  void SetDriver(const std::string& driver) { session_->SetDriver(driver); }
  [[nodiscard]] const std::string& Driver() const { return session_->Driver(); }

  [[nodiscard]] std::string Setting(const std::string& section, const std::string& key) const;
  void SetSetting(const std::string& section, const std::string& key, const std::string& value);

  /// For the desk's own statements.
  [[nodiscard]] Session& GetSession() const { return *session_; }

 private:
  explicit Book(std::shared_ptr<Session> session);

  std::shared_ptr<Session> session_;
  std::shared_ptr<HostEnvironment> environment_;
  std::string faults_;
};

}  // namespace desk::book
