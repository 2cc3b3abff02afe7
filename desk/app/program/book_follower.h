#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>

#include "book/session/change_watch.h"
#include "host/non_copyable.h"

namespace desk::app {

/// Looks every two seconds whether others have changed the open book, but not while a dialog or a
/// menu is open, the mouse drags something, or the program is at work. What could not be read is
/// tried again with the next look; a server that does not answer is not asked again before it has
/// been read for another reason.
class BookFollower : private tavrix::host::NonCopyable {
 public:
  struct Calls {
    std::function<book::Session*()> session;  ///< null without a book
    /// What is asked from now on (true) is not worth to be waited for.
    std::function<void(bool)> quiet;
    /// False when it could not be read.
    std::function<bool(book::ChangeWatch::Seen)> changed;
  };
  /// The frame must outlive it.
  BookFollower(HWND frame, Calls calls);
  ~BookFollower();

  /// The book is about to be read: only what changes from now on is news.
  void Note();
  /// The book closes.
  void Forget();

 private:
  class Ticker;
  void Look();
  /// What others have changed since the last look; nothing when that cannot be told at present.
  [[nodiscard]] book::ChangeWatch::Seen Ask();
  [[nodiscard]] bool MayLook() const;

  HWND frame_;
  Calls calls_;
  std::optional<book::ChangeWatch> watch_;
  book::ChangeWatch::Seen unread_;  // what has been seen and could not be read
  std::shared_ptr<Ticker> ticker_;
};

}  // namespace desk::app
