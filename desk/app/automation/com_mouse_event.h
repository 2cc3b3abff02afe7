#pragma once

#include <memory>

#include "com/class_info.h"
#include "com/dispatch_object.h"
#include "com/events.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

/// The mouse-wheel source as Automation sees it; `Wheel` goes to all who advise.
class ComMouseEvent : public tavrix::com::DispatchObject<IHostMouseEvent> {
 public:
  explicit ComMouseEvent(std::shared_ptr<tavrix::host::MouseEvent> source);
  ~ComMouseEvent() override;

  STDMETHODIMP SetRange(long maximum, VARIANT first_row) noexcept override;
  STDMETHODIMP Attach(long window) noexcept override;
  STDMETHODIMP Detach() noexcept override;
  STDMETHODIMP get_AttachedTo(long* result) noexcept override;
  STDMETHODIMP put_Position(long position) noexcept override;

 private:
  std::shared_ptr<tavrix::host::MouseEvent> source_;
  tavrix::com::EventSource events_;
  tavrix::com::ConnectionPointContainer points_;
  tavrix::com::EventClassInfo class_info_;
};

}  // namespace desk::app
