#pragma once

#include <functional>
#include <random>
#include <string>

#include "editing/editor_test.h"
#include "maintenance/view_test.h"

namespace tavrix::sharing {

/// One desk at work on a book: it does random deeds and tells what it is about to do, and, once the
/// library has reported success, that it is done. One line each: "try WORD ID", "add ID CODE",
/// "move ID CODE", "delete ID", "rename ID", "post NUMBER".
class Worker {
 public:
  Worker(const std::string& place, std::function<void(const std::string&)> tell, unsigned seed);

  void Add();
  /// A leaf with its postings goes to a free code beside it, or below another account.
  void Move();
  /// A leaf without postings.
  void Delete();
  /// With all accounts below it, if none has postings.
  void DeleteAny();
  void Rename();
  /// A voucher of two lines. `desk::book::DatabaseError`, unless an account was refused.
  void Post();
  /// A random number from 0 below `limit`.
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

 private:
  void Delete(const std::string& code);
  std::string IdOf(const std::string& code);
  std::string AnyCode(const std::string& where);
  std::string CategoryOf(const std::string& code);

  std::function<void(const std::string&)> tell_;
  editing::Editor editor_;
  test::ViewTest view_;
  std::mt19937 random_;
};

}  // namespace tavrix::sharing
