#pragma once

#include <memory>

#include "app/com/connection_point.h"
#include "app/com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

/// The mouse-wheel source as Automation sees it; `Wheel` goes to all who advise.
class MouseEventFace
    : public DispatchObject<IHostMouseEvent, IConnectionPointContainer, IProvideClassInfo2> {
 public:
  explicit MouseEventFace(std::shared_ptr<tavrix::host::MouseEvent> source);

  // IHostMouseEvent
  STDMETHODIMP SetRange(long maximum, VARIANT first_row) override;
  STDMETHODIMP Attach(long window) override;
  STDMETHODIMP Detach() override;
  STDMETHODIMP get_AttachedTo(long* result) override;
  STDMETHODIMP put_Position(long position) override;
  // IConnectionPointContainer
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;
  // IProvideClassInfo2
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override;

 private:
  ~MouseEventFace() override;
  [[nodiscard]] void* InterfaceOf(REFIID iid) override;

  std::shared_ptr<tavrix::host::MouseEvent> source_;
  ComPtr<ConnectionPoint> wheel_;
};

}  // namespace desk::app
