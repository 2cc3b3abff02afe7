#include "component/event_sink.h"

#include <utility>

#include "com/com_object.h"
#include "com/failure.h"
#include "tavrix.h"

namespace tavrix::test {

namespace {

using com::Check;

/// Answers its source interface as the sinks of scripts do, and no dispatch names.
class Sink : public com::Implements<IDispatch> {
 public:
  Sink(const IID& events, Listener listener) : listener_(std::move(listener)) {
    AddInterface(events, static_cast<IDispatch*>(this));
  }
  STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    const Listener listener = listener_;  // it may end the sink
    std::vector<Variant> arguments;
    for (UINT i = given->cArgs; i > 0; --i) arguments.emplace_back(given->rgvarg[i - 1]);
    return listener(id, arguments);
  }

 private:
  Listener listener_;
};

}  // namespace

EventSink::EventSink(IUnknown* object, const IID& events, Listener listener) {
  const auto container = com::Query<IConnectionPointContainer>(object);
  if (!container) throw com::ComFailure(E_NOINTERFACE);
  Check(container->FindConnectionPoint(events, point_.Put()));
  const auto sink = com::Make<Sink>(events, std::move(listener));
  Check(point_->Advise(sink.Get(), &cookie_));
}

void EventSink::Stop() {
  if (point_) static_cast<void>(point_->Unadvise(cookie_));
  point_ = nullptr;
}

EventLog::EventLog(IUnknown* view)
    : sink_(view, __uuidof(__Kjkm), [this](DISPID id, const std::vector<Variant>& arguments) {
        std::string line;
        for (const Variant& argument : arguments) {
          if (&argument != &arguments.front()) line += "|";
          line += TextOf(argument);
        }
        (id == 1 ? messages_ : errors_).push_back(line);
        return S_OK;
      }) {}

}  // namespace tavrix::test
