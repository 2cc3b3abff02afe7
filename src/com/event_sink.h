#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>

#include "com/com_ptr.h"
#include "host/non_copyable.h"

namespace tavrix::com {

/// Hears one source of events of an object until it ends.
class EventSink : private host::NonCopyable {
 public:
  /// Gets the event's number and its arguments, which stand last first. Exceptions end in the sink.
  /// It may end the sink.
  using Handler = std::function<HRESULT(DISPID event, const DISPPARAMS& arguments)>;

  /// Throws `ComFailure` when the object does not take listeners for `events`.
  EventSink(IUnknown* object, const IID& events, Handler handler);
  /// The same for a connection point, whatever its events.
  EventSink(const ComPtr<IConnectionPoint>& point, Handler handler);
  ~EventSink();

 private:
  class Listener;
  EventSink(ComPtr<IConnectionPoint> point, const IID& events, Handler handler);

  ComPtr<IConnectionPoint> point_;
  ComPtr<Listener> listener_;
  DWORD cookie_ = 0;
};

}  // namespace tavrix::com
