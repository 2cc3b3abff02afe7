#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/controls.h"
#include "host/non_copyable.h"
#include "viewkit/event.h"
#include "viewkit/input.h"
#include "viewkit/peer.h"

namespace tavrix::viewkit {

/// What all widget models share. Models are created by a view, live as long as it does and do not
/// move; setters raise a change notice only when the value changes, whoever sets it.
class Control : public virtual host::Control, private host::NonCopyable {
 public:
  Control(std::string name, std::optional<int> index = {});
  ~Control() override = default;

  [[nodiscard]] const std::string& Name() const override { return name_; }
  [[nodiscard]] std::optional<int> Index() const override { return index_; }
  [[nodiscard]] std::intptr_t WindowHandle() const override;
  [[nodiscard]] bool Visible() const override { return visible_; }
  void SetVisible(bool visible) override;
  [[nodiscard]] bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override;
  [[nodiscard]] host::Bounds GetBounds() const override { return bounds_; }
  void SetBounds(const host::Bounds& bounds) override;
  [[nodiscard]] const std::string& ToolTipText() const override { return tool_tip_; }
  void SetToolTipText(std::string text) override;

  /// What the control is, for users who hear it and do not see what stands around it. Empty where
  /// its caption, or the label created before it, says it.
  [[nodiscard]] const std::string& AccessibleName() const { return accessible_name_; }
  /// Before the control has a window.
  void SetAccessibleName(std::string name) { accessible_name_ = std::move(name); }

  /// Whether a view that gets the focus for the first time passes it here rather than to the first
  /// control that can take it: where the user's work is.
  [[nodiscard]] virtual bool PrefersFocus() const { return false; }
  /// Makes this the active input target. Without a window the model takes the focus at once; with
  /// one, `NotifyFocus` follows when the window has it. False when it cannot take it.
  bool SetFocus();
  [[nodiscard]] bool Focused() const { return focused_; }
  /// Called by the peer, and by `SetFocus` without one. Raises `GotFocus` or `LostFocus`.
  void NotifyFocus(bool focused);

  Event<> VisibleChanged;
  Event<> GotFocus;
  Event<> LostFocus;
  /// A key went down (repeats included, and marked) or up while the control has the focus.
  /// `KeyDown` comes before the control itself acts on the key.
  Event<Key, Modifiers> KeyDown;
  Event<Key, Modifiers> KeyUp;

  /// Set by the peer itself, null when its window goes away: the focus goes with it,
  /// without an event.
  void SetPeer(Peer* peer);
  [[nodiscard]] Peer* GetPeer() const { return peer_; }

 protected:
  void Notify(const Change& change) const;

 private:
  std::string name_;
  std::optional<int> index_;
  std::string tool_tip_;
  std::string accessible_name_;
  host::Bounds bounds_;
  bool visible_ = true;
  bool enabled_ = true;
  bool focused_ = false;
  Peer* peer_ = nullptr;
};

/// The child controls of a view in their order of creation; the view owns the controls themselves.
class ControlList : public host::ControlCollection {
 public:
  void Add(Control& control) { controls_.push_back(&control); }
  [[nodiscard]] std::size_t Count() const override { return controls_.size(); }
  [[nodiscard]] Control& At(std::size_t position) const override { return *controls_.at(position); }

 private:
  std::vector<Control*> controls_;
};

}  // namespace tavrix::viewkit
