#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "viewkit/control.h"
#include "viewkit/win32/back_buffer.h"
#include "viewkit/win32/colors.h"
#include "viewkit/win32/fonts.h"
#include "viewkit/win32/window.h"

namespace tavrix::viewkit::win32 {

/// What the windows of one view share. Each peer holds it, so that a message being handled finds it
/// even when the view has gone meanwhile.
struct ViewContext : std::enable_shared_from_this<ViewContext> {
  HWND window = nullptr;
  Scale scale;
  std::unique_ptr<FontSet> fonts;
  BackBuffer buffer;
  Color back_color = color::kButtonFace;
  Brush back_brush;                       ///< of that colour
  Color fore_color = color::kButtonText;  ///< of the texts that lie on it
  /// What the two are on this system, now.
  [[nodiscard]] COLORREF Ground() const { return ToColorRef(back_color, color::kButtonFace); }
  [[nodiscard]] COLORREF Ink() const {
    return TextOn(Ground(), ToColorRef(fore_color, color::kButtonText));
  }
  /// A control's window has got (true) or lost the focus, before its model hears of it; with the
  /// window on the other side of the change.
  std::function<void(bool, HWND)> focus_moved;
  /// Gives what is held while a message is handled; may be empty.
  std::function<std::shared_ptr<void>()> keep;
  [[nodiscard]] std::shared_ptr<void> Held() const { return keep ? keep() : nullptr; }
};

/// What all peers share: the model's place, state, tool tip and focus.
class ControlPeer : public Window, public Peer {
 public:
  ControlPeer(ViewContext& context, Control& control);
  ~ControlPeer() override;

  [[nodiscard]] std::intptr_t Handle() const override;
  void Update(const Change& change) override;
  bool TakeFocus() override;
  [[nodiscard]] Control& Model() const { return control_; }
  [[nodiscard]] std::shared_ptr<void> Held() const override { return context_->Held(); }
  /// Creates the window; the peer must be owned by a shared_ptr.
  virtual void Open() = 0;
  /// All windows of the view stand now.
  virtual void OnAllOpen() {}
  /// The Tab key stops here.
  [[nodiscard]] virtual bool TabStop() const { return true; }
  /// The focused window wants this key before any container does.
  [[nodiscard]] virtual bool WantsKey(Key key, Modifiers modifiers) const = 0;
  /// A key pressed anywhere in the view; true when it means something to this control and was used.
  virtual bool UseViewKey(Key, Modifiers) { return false; }
  /// A notification that the native control sent to its parent; nothing when it means nothing here.
  virtual std::optional<LRESULT> OnNotify(UINT message, WPARAM wparam, LPARAM lparam);
  /// The font or the resolution of the view is another.
  virtual void OnFontChanged() = 0;

 protected:
  [[nodiscard]] ViewContext& Context() const { return *context_; }
  [[nodiscard]] RECT PlaceOfModel() const;
  /// Style bits for creation that follow from the model's state.
  [[nodiscard]] DWORD StateStyle() const;
  virtual void ApplyState();
  virtual void ApplyBounds();
  virtual void OnContent(const Change& change) = 0;

  /// The control has got or lost the focus; `other` is the window on the other side.
  void FocusChanged(bool focused, HWND other);

  /// The answer to what asks for paint; nothing to other messages. `paint` covers the window.
  std::optional<LRESULT> OnPaintMessage(UINT message, WPARAM wparam,
                                        const std::function<void(HDC)>& paint);
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override;

 private:
  void Detach();

  std::shared_ptr<ViewContext> context_;
  Control& control_;
  bool attached_ = true;  // the model, which may end before this object, knows it
};

/// A peer of one kind of control, on the peer that it shares with others.
template <class Kind, class Base>
class PeerOf : public Base {
 public:
  PeerOf(ViewContext& context, Kind& model) : Base(context, model) {}
  [[nodiscard]] Kind& Model() const { return static_cast<Kind&>(Base::Model()); }
};

/// The peer for a control by its kind, without a window yet.
[[nodiscard]] std::shared_ptr<ControlPeer> MakePeer(ViewContext& context, Control& control);

/// Whether the window could take the focus now.
[[nodiscard]] bool CanTakeFocus(HWND window);

}  // namespace tavrix::viewkit::win32
