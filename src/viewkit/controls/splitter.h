#pragma once

#include "viewkit/control.h"

namespace tavrix::viewkit {

/// A bar between two controls that stand side by side, dragged to share the width between them.
class Splitter : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "Splitter"; }

  /// Left edge in twips, relative to the view. The user's drag (or arrow key) ends here; the view
  /// bounds it when it lays its controls out.
  [[nodiscard]] int Position() const { return position_; }
  /// Raises `Moved` when the position changes.
  void SetPosition(int position) {
    if (position_ == position) return;
    position_ = position;
    Moved.Raise();
  }

  Event<> Moved;

 private:
  int position_ = 0;
};

}  // namespace tavrix::viewkit
