#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <string>

#include "component/base/com_ptr.h"

namespace desk::app {

/// Hears one source of events of an object until it ends.
class EventSink {
 public:
  /// Gets the event's number and its arguments, which stand last first. Exceptions end in the sink.
  using Hear = std::function<HRESULT(DISPID event, const DISPPARAMS& arguments)>;

  /// Throws `component::ComFailure` when the object does not take listeners for `events`.
  EventSink(IUnknown* object, const IID& events, Hear hear);
  EventSink(const EventSink&) = delete;
  EventSink& operator=(const EventSink&) = delete;
  ~EventSink();

 private:
  tavrix::component::ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace desk::app
