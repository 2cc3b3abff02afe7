#pragma once

#include "component/base/class_info.h"

namespace tavrix::component {

/// IProvideClassInfo2: the class in the type library, and the interface of its events.
class ControlClassInfo : public ClassInfoFace<IProvideClassInfo2> {
 public:
  ControlClassInfo(Identity& owner, const CLSID& clsid, const IID& source)
      : ClassInfoFace(owner, clsid), source_(source) {}
  STDMETHODIMP GetGUID(DWORD kind, GUID* result) noexcept override;

 private:
  IID source_;
};

}  // namespace tavrix::component
