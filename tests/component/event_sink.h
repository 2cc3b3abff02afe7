#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <string>
#include <vector>

#include "com/com_ptr.h"
#include "component/named_object.h"
#include "host/non_copyable.h"

namespace tavrix::test {

/// What a listener does with event `id`; the arguments stand in their written order.
using Listener = std::function<HRESULT(DISPID id, const std::vector<Variant>& arguments)>;

/// Listens to `source` of an object from its making to its end or to `Stop`.
class EventSink : private host::NonCopyable {
 public:
  /// `events` is the source interface.
  EventSink(IUnknown* object, const IID& events, Listener listener);
  ~EventSink() { Stop(); }

  void Stop();
  /// Leaves the connection to the object's end. Until then this keeps the object.
  void Forget() { point_ = nullptr; }

 private:
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

/// The events of a `Kjkm` as lines: the text of a `Message`, "text|level|title" of an `ErrMessage`.
class EventLog {
 public:
  explicit EventLog(IUnknown* view);
  [[nodiscard]] const std::vector<std::string>& Messages() const { return messages_; }
  [[nodiscard]] const std::vector<std::string>& Errors() const { return errors_; }
  void Forget() { sink_.Forget(); }

 private:
  std::vector<std::string> messages_;
  std::vector<std::string> errors_;
  EventSink sink_;
};

}  // namespace tavrix::test
