#pragma once

#include "viewkit/controls/date_picker.h"
#include "viewkit/win32/native_peer.h"

namespace tavrix::viewkit::win32 {

/// The system's box for a day, shown as year-month-day.
class DatePeer : public NativePeer {
 public:
  DatePeer(ViewContext& context, DTPicker& picker) : NativePeer(context, picker), picker_(picker) {}
  void Open() override;
  [[nodiscard]] bool WantsKey(Key key, Modifiers modifiers) const override;
  std::optional<LRESULT> OnNotify(UINT message, WPARAM wparam, LPARAM lparam) override;

 protected:
  void ApplyBounds() override;
  void OnContent(const Change& change) override;
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  DTPicker& picker_;
  TypedDay typed_;
  bool taking_ = false;  // the native box shows already what the model takes over
};

}  // namespace tavrix::viewkit::win32
