#include "component/base/identity.h"

#include <algorithm>

namespace tavrix::component {

Identity::Identity(IUnknown* outer) : controlling_(outer == nullptr ? &inner_ : outer) {}

void Identity::PublishDual(const IID& iid, IDispatch* face) {
  if (std::none_of(faces_.begin(), faces_.end(), [](const Entry& other) {
        return IsEqualGUID(other.iid, IID_IDispatch) != FALSE;
      })) {
    Publish(IID_IDispatch, face);
  }
  Publish(iid, face);
  dispatcher_.Add(iid, face);
}

HRESULT Identity::InnerUnknown::QueryInterface(REFIID iid, void** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  if (IsEqualGUID(iid, IID_IUnknown) != FALSE) {
    ComPtr<IUnknown>(this).CopyTo(reinterpret_cast<IUnknown**>(result));
    return S_OK;
  }
  for (const Entry& face : owner_.faces_) {
    if (IsEqualGUID(face.iid, iid) == FALSE) continue;
    ComPtr<IUnknown>(face.face).CopyTo(reinterpret_cast<IUnknown**>(result));
    return S_OK;
  }
  return E_NOINTERFACE;
}

ULONG Identity::InnerUnknown::Release() noexcept {
  const ULONG left = --owner_.references_;
  if (left != 0) return left;
  // What ends with the object may take and drop references of it: only the first drop counts.
  owner_.references_ = 1;
  owner_.controlling_ = this;  // an object around it is at its end too
  const std::unique_ptr<Identity> end(&owner_);
  return 0;
}

}  // namespace tavrix::component
