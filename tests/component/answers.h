#pragma once

#include <windows.h>

#include "host/non_copyable.h"

namespace tavrix::test {

/// Answers what opens on this thread while it lives, from a timer: message boxes with `answer` (as
/// IDYES), an account dialog by typing a name, clicking its save button and, where that leaves it
/// open, its cancel button.
class Answers : private host::NonCopyable {
 public:
  explicit Answers(int answer);
  ~Answers();

  /// Message boxes that were answered.
  [[nodiscard]] int Boxes() const;
  /// Account dialogs that closed on the click on their save button.
  [[nodiscard]] int Saves() const;
};

}  // namespace tavrix::test
