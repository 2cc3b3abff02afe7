#include "support/server_user.h"

#include <chrono>

#include "book/engines.h"

namespace tavrix::test {

namespace book = desk::book;

namespace {

std::string NewName() {
  static int count = 0;
  const auto now = std::chrono::system_clock::now().time_since_epoch().count();
  return "user_" + std::to_string(now) + "_" + std::to_string(++count);
}

}  // namespace

ServerUser::ServerUser(const std::string& place)
    : place_(place), name_(NewName()), others_(book::EngineFor(place).Open({.path = place})) {
  Run("create role " + name_ + " superuser login");
}

ServerUser::~ServerUser() {
  try {
    Away();
    Run("drop role " + name_);
  } catch (const book::DatabaseError&) {
    // The server goes with all its users.
  }
}

std::string ServerUser::Place() const {
  return place_ + "Uid=" + name_ + ";";
}

void ServerUser::Away() {
  Run("alter role " + name_ + " nologin");
  Run("select pg_terminate_backend(pid,5000) from pg_stat_activity where usename='" + name_ + "'");
}

void ServerUser::Back() {
  Run("alter role " + name_ + " login");
}

void ServerUser::Run(const std::string& sql) {
  others_->Execute(sql, book::Origin::kDesk);
}

}  // namespace tavrix::test
