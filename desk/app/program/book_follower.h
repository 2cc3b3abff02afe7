#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>

#include "book/session/change_watch.h"

namespace desk::app {

/// Looks every two seconds whether others have changed the open book, but not while a dialog or a
/// menu is open, the mouse drags something, or the program is at work. Where the book does not
/// answer, it is not asked again before it has been read for another reason.
class BookFollower {
 public:
  struct Calls {
    std::function<book::Session*()> session;  ///< null without a book
    /// What is asked from now on (true) is not worth to be waited for.
    std::function<void(bool)> quiet;
    std::function<void(book::ChangeWatch::Seen)> changed;
  };
  /// The frame must outlive it.
  BookFollower(HWND frame, Calls calls);
  BookFollower(const BookFollower&) = delete;
  BookFollower& operator=(const BookFollower&) = delete;
  ~BookFollower();

  /// The book is about to be read: only what changes from now on is news.
  void Note();
  /// The book closes.
  void Forget() { watch_.reset(); }

 private:
  class Ticker;
  void Look();
  [[nodiscard]] bool MayLook() const;

  HWND frame_;
  Calls calls_;
  std::optional<book::ChangeWatch> watch_;
  std::shared_ptr<Ticker> ticker_;
};

}  // namespace desk::app
