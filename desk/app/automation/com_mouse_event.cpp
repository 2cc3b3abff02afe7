#include "app/automation/com_mouse_event.h"

#include "app/automation/give.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

constexpr DISPID kWheel = 1;

}  // namespace

ComMouseEvent::ComMouseEvent(std::shared_ptr<host::MouseEvent> source)
    : source_(std::move(source)),
      events_(*this, DIID_IHostMouseEvents),
      points_(*this, events_),
      class_info_(*this, CLSID_HostMouseEvent, DIID_IHostMouseEvents) {
  AddInterface(IID_IConnectionPointContainer, &points_);
  AddInterface(IID_IProvideClassInfo, &class_info_);
  AddInterface(IID_IProvideClassInfo2, &class_info_);
  source_->OnWheel([this](std::int32_t value) { events_.Fire(kWheel, {Variant(value)}); });
}

ComMouseEvent::~ComMouseEvent() {
  source_->OnWheel({});
}

STDMETHODIMP ComMouseEvent::SetRange(long maximum, VARIANT first_row) noexcept {
  return Guarded([&] {
    const bool left_out = first_row.vt == VT_ERROR || first_row.vt == VT_EMPTY;
    if (left_out) return source_->SetRange(maximum);
    source_->SetRange(maximum, ValueOf(first_row).ToLong());
  });
}

STDMETHODIMP ComMouseEvent::Attach(long window) noexcept {
  return Guarded([&] { source_->Attach(window); });
}

STDMETHODIMP ComMouseEvent::Detach() noexcept {
  return Guarded([&] { source_->Detach(); });
}

STDMETHODIMP ComMouseEvent::get_AttachedTo(long* result) noexcept {
  return Give(result, [&] { return static_cast<long>(source_->AttachedTo()); });
}

STDMETHODIMP ComMouseEvent::put_Position(long position) noexcept {
  return Guarded([&] { source_->SetPosition(position); });
}

}  // namespace desk::app
