#include "viewkit/controls/dialog_model.h"

#include <utility>

#include "host/flag_scope.h"

namespace tavrix::viewkit {

DialogModel::DialogModel(std::string name) : name_(std::move(name)) {}

void DialogModel::SetCaption(std::string caption) {
  if (caption_ == caption) return;
  caption_ = std::move(caption);
  CaptionChanged.Raise();
}

int DialogModel::Identifier(const Control& control) const {
  for (std::size_t i = 0; i < controls_.Count(); ++i) {
    if (&controls_.At(i) == &control) return identifiers_[i];
  }
  return 0;
}

void DialogModel::Opened() {
  open_ = true;
  if (Control* first = FirstFocus(); first != nullptr && first->SetFocus()) return;
  for (std::size_t i = 0; i < controls_.Count(); ++i) {
    if (identifiers_[i] != 0 && controls_.At(i).SetFocus()) return;
  }
}

bool DialogModel::Close() {
  if (!open_ || closing_) return false;
  {
    const host::FlagScope asking(closing_);
    if (!QueryUnload()) return false;
  }
  Unload();
  return true;
}

void DialogModel::Unload() {
  if (!open_) return;
  open_ = false;
  if (Control* left = std::exchange(focus_, nullptr)) left->NotifyFocus(false);
  OnUnload();
  Closed.Raise();
}

bool DialogModel::KeyDown(Key key) {
  if (key == Key::kEscape) {
    if (cancel_button_ != nullptr) {
      cancel_button_->Click();
    } else {
      Close();
    }
    return true;
  }
  if (key != Key::kEnter) return false;
  auto* button = dynamic_cast<CommandButton*>(focus_);
  if (button == nullptr) button = default_button_;
  if (button != nullptr && (button != default_button_ || MayEnter())) button->Click();
  return button != nullptr;
}

void DialogModel::Add(Control& control, int identifier) {
  controls_.Add(control);
  identifiers_.push_back(identifier);
  control.GotFocus.Add([this, &control] { FocusArrived(control); });
}

void DialogModel::SetSize(int width, int height) {
  width_ = width;
  height_ = height;
}

void DialogModel::SetButtons(CommandButton& default_button, CommandButton& cancel_button) {
  default_button_ = &default_button;
  cancel_button_ = &cancel_button;
}

void DialogModel::FocusArrived(Control& control) {
  Control* left = std::exchange(focus_, &control);
  if (left == nullptr || left == &control) return;
  left->NotifyFocus(false);  // a control without a window is told by nobody else
  if (open_) OnFocusMoved(*left, control);
}

}  // namespace tavrix::viewkit
