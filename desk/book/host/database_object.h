#pragma once

#include <memory>
#include <string>
#include <utility>

#include "book/session/session.h"
#include "host/objects.h"

namespace desk::book {

/// A setting or a property that answers with what it was made with.
template <class Interface, class Content>
class Given : public Interface {
 public:
  explicit Given(Content content) : content_(std::move(content)) {}
  [[nodiscard]] Content Get() override { return content_; }

 private:
  Content content_;
};

/// The database object of the host's contract. Each has a last error of its own, shared with the
/// statements that it opened.
class DatabaseObject : public host::Database {
 public:
  explicit DatabaseObject(std::shared_ptr<Session> session);
  [[nodiscard]] std::shared_ptr<host::Statement> OpenSql(const std::string& sql, int mode) override;
  [[nodiscard]] std::shared_ptr<host::ErrorEntry> LastError() override;
  [[nodiscard]] std::shared_ptr<host::PropertySet> ConnectionProperties() override;

 private:
  std::shared_ptr<Session> session_;
  std::shared_ptr<std::string> last_error_;
};

}  // namespace desk::book
