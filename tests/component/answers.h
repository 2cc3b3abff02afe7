#pragma once

#include <windows.h>

namespace tavrix::test {

/// Answers what opens on this thread while it lives, from a timer: message boxes with `answer` (as
/// IDYES), an account dialog by typing a name, clicking its save button and, where that leaves it
/// open, its cancel button.
class Answers {
 public:
  explicit Answers(int answer);
  Answers(const Answers&) = delete;
  Answers& operator=(const Answers&) = delete;
  ~Answers();

  /// Message boxes that were answered.
  [[nodiscard]] int Boxes() const;
  /// Account dialogs that closed on the click on their save button.
  [[nodiscard]] int Saves() const;
};

}  // namespace tavrix::test
