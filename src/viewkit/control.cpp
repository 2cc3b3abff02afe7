#include "viewkit/control.h"

#include <utility>

namespace tavrix::viewkit {

Control::Control(std::string name, std::optional<int> index)
    : name_(std::move(name)), index_(index) {}

std::intptr_t Control::WindowHandle() const {
  return peer_ == nullptr ? 0 : peer_->Handle();
}

void Control::SetVisible(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  Notify({Change::Kind::kState});
  VisibleChanged.Raise();
}

void Control::SetEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  Notify({Change::Kind::kState});
}

void Control::SetBounds(const host::Bounds& bounds) {
  if (bounds_ == bounds) return;
  bounds_ = bounds;
  Notify({Change::Kind::kBounds});
}

void Control::SetToolTipText(std::string text) {
  if (tool_tip_ == text) return;
  tool_tip_ = std::move(text);
  Notify({Change::Kind::kState});
}

bool Control::SetFocus() {
  if (peer_ != nullptr) return peer_->TakeFocus();
  if (!visible_ || !enabled_) return false;
  NotifyFocus(true);
  return true;
}

void Control::NotifyFocus(bool focused) {
  if (focused_ == focused) return;
  focused_ = focused;
  (focused ? GotFocus : LostFocus).Raise();
}

void Control::SetPeer(Peer* peer) {
  peer_ = peer;
  if (peer == nullptr) focused_ = false;
}

void Control::Notify(const Change& change) const {
  if (peer_ != nullptr) peer_->Update(change);
}

}  // namespace tavrix::viewkit
