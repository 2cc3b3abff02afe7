#include "sharing/worker.h"

#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

#include "book/ledger/posting.h"

namespace tavrix::sharing {

namespace {

desk::book::Book Open(const std::string& place) {
  desk::book::Book book = desk::book::Book::Open(place);
  book.Environment().user_folder.clear();
  return book;
}

}  // namespace

Worker::Worker(const std::string& place, std::function<void(const std::string&)> tell,
               unsigned seed)
    : tell_(std::move(tell)), editor_(Open(place)), view_(Open(place)), random_(seed) {}

void Worker::Add() {
  const std::string parent = AnyCode(Below(2) == 0 ? "igrade<3" : "igrade=2 and bend=1");
  if (parent.empty()) return;
  tell_("try add 0");
  editor_.saved.clear();
  std::string code;
  editor_.Open(editing::Below(parent, CategoryOf(parent)), [&] {
    code = editor_.Code();
    editor_.SetName("下级");
    (void)editor_.dialog->FileSave();
  });
  if (!editor_.saved.empty()) {
    tell_("add " + std::to_string(editor_.saved.front().second) + " " + code);
  }
}

void Worker::Move() {
  const std::string code = AnyCode("igrade=2 and bend=1");
  if (code.empty()) return;
  const std::string id = IdOf(code);
  if (id == "(none)") return;  // the other desk was quicker
  const std::string parent = Below(2) == 0 ? code.substr(0, 4) : AnyCode("igrade<3");
  const std::string target = parent + std::to_string(5000 + Below(5000));
  tell_("try move " + id);
  editor_.saved.clear();
  editor_.Open(editing::Edit(std::stoi(id)), [&] {
    editor_.SetCode(target);
    (void)editor_.dialog->FileSave();
  });
  if (!editor_.saved.empty()) tell_("move " + id + " " + target);
}

void Worker::Delete() {
  Delete(AnyCode("igrade>1 and bend=1 and ccode not in(select ccode from gl_accvouch)"));
}

void Worker::DeleteAny() {
  Delete(AnyCode("igrade>1"));
}

void Worker::Rename() {
  const std::string id = IdOf(AnyCode("igrade>1"));
  if (id == "(none)") return;
  editor_.saved.clear();
  editor_.Open(editing::Edit(std::stoi(id)), [&] {
    editor_.SetName("改名" + std::to_string(Below(1000)));
    (void)editor_.dialog->FileSave();
  });
  if (!editor_.saved.empty()) tell_("rename " + id);
}

void Worker::Post() {
  desk::book::Voucher voucher = {
      .year = 2026,
      .month = 1,
      .day = 1,
      .entries = {{.summary = "a", .code = AnyCode("bend=1"), .debit = 1 + Below(100)},
                  {.summary = "b", .code = AnyCode("bend=1"), .credit = 0}}};
  voucher.entries[1].credit = voucher.entries[0].debit;
  try {
    tell_("try post 0");
    tell_("post " + std::to_string(desk::book::Post(editor_.book.GetSession(), voucher)));
  } catch (const desk::book::DatabaseError& error) {
    // The account may have got a sub-account since it was chosen.
    if (error.Kind() != desk::book::ErrorKind::kRefused) throw;
  }
}

void Worker::Delete(const std::string& code) {
  if (code.empty()) return;
  const std::string id = IdOf(code);
  tell_("try delete " + id);
  if (!view_.view.Init(view_.host.System(), 0, 0) || !view_.view.Refresh()) {
    throw std::runtime_error("the account list does not show the book");
  }
  const int row = view_.Grid().FindRow(code, 1, 0);
  if (row < 0) return;  // the other desk was quicker
  view_.Grid().SetRow(row);
  view_.user.answers = {viewkit::UserPort::Answer::kYes};
  view_.user.in_question = [this](const auto&) {
    std::this_thread::sleep_for(std::chrono::milliseconds(Below(5)));
  };
  if (view_.view.FileDelete()) tell_("delete " + id);
}

std::string Worker::IdOf(const std::string& code) {
  return test::Scalar(editor_.book, "select i_id from gl_code where ccode='" + code + "'");
}

std::string Worker::AnyCode(const std::string& where) {
  const auto codes =
      test::AllRows(editor_.book, "select ccode from gl_code where " + where + " order by ccode");
  if (codes.empty()) return "";
  return codes[static_cast<std::size_t>(Below(static_cast<int>(codes.size())))];
}

std::string Worker::CategoryOf(const std::string& code) {
  return test::Scalar(editor_.book, "select cclass from gl_code where ccode='" + code + "'");
}

}  // namespace tavrix::sharing
