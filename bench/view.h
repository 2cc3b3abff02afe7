#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "book/book.h"
#include "editing/fm_bkm_add.h"
#include "maintenance/kjkm.h"
#include "quiet_user.h"

namespace tavrix::bench {

/// A view on a book, as a host starts it.
class View {
 public:
  explicit View(const std::string& path) : book_(desk::book::Book::Open(path)), view_(user_) {
    view_.ErrMessage.Add([](const std::string& text, std::int32_t, const std::string&) {
      throw std::runtime_error(text);
    });
    if (!view_.Init(system_, 0, 0)) throw std::runtime_error("Init failed");
  }

  void Refresh() {
    if (!view_.Refresh()) throw std::runtime_error("Refresh failed");
  }
  [[nodiscard]] viewkit::FlexGrid& Page(int page) {
    return dynamic_cast<viewkit::FlexGrid&>(
        view_.Controls().At(static_cast<std::size_t>(page) + 1));
  }
  [[nodiscard]] maintenance::Kjkm& Control() { return view_; }
  [[nodiscard]] host::SystemObject& System() { return *system_; }
  [[nodiscard]] desk::book::Book& Book() { return book_; }
  /// Opens the account of row `row` of the first page and runs `in_dialog` in the open dialog.
  void Edit(int row, std::function<void(editing::FmBkmAdd&)> in_dialog) {
    Page(0).SetRow(row);
    user_.in_dialog = [work = std::move(in_dialog)](viewkit::DialogModel& dialog) {
      dialog.Opened();
      work(dynamic_cast<editing::FmBkmAdd&>(dialog));
      dialog.Unload();
    };
    if (!view_.FileEdit()) throw std::runtime_error("FileEdit failed");
  }

 private:
  desk::book::Book book_;
  std::shared_ptr<host::SystemObject> system_ = book_.System();
  QuietUser user_;
  maintenance::Kjkm view_;
};

}  // namespace tavrix::bench
