#include <utility>

#include "picker/sel_kjkm_impl.h"

// Keys and buttons.
namespace tavrix::picker {

using viewkit::Key;

void selKjkm::ConnectKeys() {
  for (std::size_t position = 0; position < controls_.Count(); ++position) {
    viewkit::Control& control = dynamic_cast<viewkit::Control&>(controls_.At(position));
    control.KeyDown.Add([this, &control](Key key, viewkit::Modifiers modifiers) {
      OnKeyDown(control, key, modifiers);
    });
    control.KeyUp.Add([this](Key key, viewkit::Modifiers) { OnKeyUp(key); });
    control.GotFocus.Add([this] {
      key_from_elsewhere_ = true;
      enter_ = Press::kNone;
    });
  }
}

void selKjkm::OnKeyDown(const viewkit::Control& control, Key key, viewkit::Modifiers modifiers) {
  if (!modifiers.repeated) key_from_elsewhere_ = false;
  const bool in_grid = &control == &Vs_;
  if (key == Key::kB && modifiers.control) {
    (void)SearchBox1_.SetFocus();
  } else if (key == Key::kEnter && !modifiers.repeated) {
    enter_ = in_grid ? Press::kSpent : Press::kHeld;
    if (in_grid) FinishSelection();
  } else if (key == Key::kProcessed) {
    enter_ = Press::kSpent;
    control_stepped_ = true;
  } else if (key == Key::kUp || key == Key::kDown) {
    control_stepped_ = in_grid || &control == &TV_;
  }
}

void selKjkm::OnKeyUp(Key key) {
  // A modifier that came along is released too: it must not use up the mark of the key it was with.
  if (key != Key::kEnter && key != Key::kUp && key != Key::kDown) return;
  const bool pressed_elsewhere = std::exchange(key_from_elsewhere_, false);
  if (key == Key::kEnter) {
    const bool spent = std::exchange(enter_, Press::kNone) == Press::kSpent;
    if (!spent && !pressed_elsewhere) FinishSelection();
  } else if (key == Key::kUp || key == Key::kDown) {
    const bool stepped = std::exchange(control_stepped_, false);
    if (!stepped && !pressed_elsewhere) MoveRow(key);
  }
}

void selKjkm::MoveRow(Key key) {
  Trapped([&] {
    const int fixed = Vs_.FixedRows();
    const int from = Vs_.Row() < fixed ? fixed - 1 : Vs_.Row();
    const int row = key == Key::kDown ? Vs_.NextShownRow(from) : Vs_.PreviousShownRow(from);
    if (row < fixed) return;
    Vs_.SetRow(row);
    Vs_.ShowRow(row);
  });
}

void selKjkm::OnButton(int index) noexcept {
  if (enter_ == Press::kHeld) enter_ = Press::kSpent;  // the key that clicked the button
  switch (index) {
    case 0:
      FinishSelection();
      break;
    case 1:
      Cancel();
      break;
    case 2:
      ReloadAccountList();
      break;
    case 3:
      Trapped([this] { OpenForm(); });
      break;
    default:
      break;
  }
}

}  // namespace tavrix::picker
