#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <memory>
#include <string>

#include "component/base/com_ptr.h"

namespace desk::app {

/// What the view `Kjkm` tells. Exceptions of these functions end in the sink.
struct ViewEvents {
  std::function<void(const std::wstring& text)> message;
  std::function<void(const std::wstring& text, long level, const std::wstring& title)> report;
};

/// Hears the events of a view until it ends.
class EventSink {
 public:
  /// Throws `component::ComFailure` when the view does not take listeners.
  EventSink(IUnknown* view, ViewEvents events);
  EventSink(const EventSink&) = delete;
  EventSink& operator=(const EventSink&) = delete;
  ~EventSink();

 private:
  tavrix::component::ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace desk::app
