#include "app/faces/mouse_event_face.h"

#include <olectl.h>

#include "app/faces/give.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

constexpr DISPID kWheel = 1;

}  // namespace

MouseEventFace::MouseEventFace(std::shared_ptr<host::MouseEvent> source)
    : source_(std::move(source)),
      wheel_(MakeObject<ConnectionPoint>(static_cast<IConnectionPointContainer*>(this),
                                         __uuidof(IHostMouseEvents))) {
  // The point, which others may hold, outlives neither the source's handler nor this object's use
  // of it: the destructor takes the handler away.
  source_->OnWheel([point = wheel_](std::int32_t value) {
    VARIANT argument{};
    argument.vt = VT_I4;
    argument.lVal = value;
    point->Raise(kWheel, {&argument, 1});
  });
}

MouseEventFace::~MouseEventFace() {
  source_->OnWheel({});
  wheel_->Retire();
}

void* MouseEventFace::InterfaceOf(REFIID iid) {
  if (iid == IID_IProvideClassInfo) return static_cast<IProvideClassInfo2*>(this);
  return DispatchObject::InterfaceOf(iid);
}

STDMETHODIMP MouseEventFace::SetRange(long maximum, VARIANT first_row) {
  return Guarded([&] {
    const bool left_out = first_row.vt == VT_ERROR || first_row.vt == VT_EMPTY;
    if (left_out) return source_->SetRange(maximum);
    source_->SetRange(maximum, ValueOf(first_row).ToLong());
  });
}

STDMETHODIMP MouseEventFace::Attach(long window) {
  return Guarded([&] { source_->Attach(window); });
}

STDMETHODIMP MouseEventFace::Detach() {
  return Guarded([&] { source_->Detach(); });
}

STDMETHODIMP MouseEventFace::get_AttachedTo(long* result) {
  return Give(result, [&] { return static_cast<long>(source_->AttachedTo()); });
}

STDMETHODIMP MouseEventFace::put_Position(long position) {
  return Guarded([&] { source_->SetPosition(position); });
}

STDMETHODIMP MouseEventFace::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (points == nullptr) return E_POINTER;
  *points = nullptr;
  return E_NOTIMPL;  // there is one, which every caller knows by its identifier
}

STDMETHODIMP MouseEventFace::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (point == nullptr) return E_POINTER;
  *point = nullptr;
  const bool known = iid == __uuidof(IHostMouseEvents) || iid == IID_IDispatch;
  if (!known) return CONNECT_E_NOCONNECTION;
  *point = ComPtr<IConnectionPoint>(wheel_.Get()).Detach();
  return S_OK;
}

STDMETHODIMP MouseEventFace::GetClassInfo(ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = TypeInfoOf(CLSID_HostMouseEvent).Detach();
  return *info != nullptr ? S_OK : TYPE_E_LIBNOTREGISTERED;
}

STDMETHODIMP MouseEventFace::GetGUID(DWORD kind, GUID* guid) {
  if (guid == nullptr) return E_POINTER;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  *guid = __uuidof(IHostMouseEvents);
  return S_OK;
}

}  // namespace desk::app
