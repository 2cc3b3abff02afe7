#include "com/com_object.h"

#include <algorithm>

namespace tavrix::com {

ComObject::ComObject(IUnknown* outer) : controlling_(outer == nullptr ? &inner_ : outer) {}

void ComObject::AddDualInterface(const IID& iid, IDispatch* implementation) {
  if (std::none_of(interfaces_.begin(), interfaces_.end(), [](const Entry& other) {
        return IsEqualGUID(other.iid, IID_IDispatch) != FALSE;
      })) {
    AddInterface(IID_IDispatch, implementation);
  }
  AddInterface(iid, implementation);
  dispatcher_.Add(iid, implementation);
}

HRESULT ComObject::InnerUnknown::QueryInterface(REFIID iid, void** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  if (IsEqualGUID(iid, IID_IUnknown) != FALSE) {
    ComPtr<IUnknown>(this).CopyTo(reinterpret_cast<IUnknown**>(result));
    return S_OK;
  }
  for (const Entry& entry : owner_.interfaces_) {
    if (IsEqualGUID(entry.iid, iid) == FALSE) continue;
    ComPtr<IUnknown>(entry.implementation).CopyTo(reinterpret_cast<IUnknown**>(result));
    return S_OK;
  }
  return E_NOINTERFACE;
}

ULONG ComObject::InnerUnknown::Release() noexcept {
  const ULONG left = --owner_.references_;
  if (left != 0) return left;
  // What ends with the object may take and drop references of it: only the first drop counts.
  owner_.references_ = 1;
  owner_.controlling_ = this;  // an object around it is at its end too
  const std::unique_ptr<ComObject> end(&owner_);
  return 0;
}

}  // namespace tavrix::com
