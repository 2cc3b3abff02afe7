#pragma once

#include <functional>
#include <random>
#include <string>

#include "book/session/journal_command.h"
#include "editing/editor_test.h"

namespace tavrix::sharing {

namespace book = desk::book;

/// Someone at a desk who does this and that to the accounts, at random.
class Bookkeeper {
 public:
  Bookkeeper(book::Book opened, std::mt19937& random)
      : editor_(std::move(opened)), random_(random) {}

  void Act();
  [[nodiscard]] const book::Book& Book() const { return editor_.book; }

 private:
  [[nodiscard]] int Below(int end);
  [[nodiscard]] std::string Any(const std::string& where, const std::string& column = "ccode");
  void Save(const std::function<void()>& change);
  void Add();
  void Edit();
  void Delete();
  /// What the desk does by itself, the rules at rest.
  void Rearrange(book::CommandKind kind, const std::function<void(book::JournalCommand&)>& work);
  void Run(const std::string& sql) { test::Run(Book(), sql); }
  void Recode(const std::string& set, const std::string& where);
  void Renumber();
  /// Two accounts change codes with each other.
  void Swap();
  void Merge();

  editing::Editor editor_;
  std::mt19937& random_;
};

}  // namespace tavrix::sharing
