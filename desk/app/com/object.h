#pragma once

#include <windows.h>

#include <unknwn.h>

#include <utility>

#include "component/base/com_ptr.h"

namespace desk::app {

using tavrix::component::ComPtr;
using tavrix::component::Query;

/// A COM object on one thread: identity, reference count and the interfaces it is made of. The
/// first is its identity. A class whose interfaces derive from others overrides `InterfaceOf` for
/// those.
template <class First, class... Others>
class ComObject : public First, public Others... {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = InterfaceOf(iid);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~ComObject() = default;

  /// The interface `iid` of this object without a reference; null when it has none.
  [[nodiscard]] virtual void* InterfaceOf(REFIID iid) {
    if (iid == IID_IUnknown) return static_cast<First*>(this);
    if (iid == __uuidof(First)) return static_cast<First*>(this);
    void* found = nullptr;
    ((iid == __uuidof(Others) ? (found = static_cast<Others*>(this)) : nullptr), ...);
    return found;
  }

 private:
  ULONG references_ = 1;
};

/// Makes a COM object; the caller owns its first reference.
template <class Object, class... Args>
[[nodiscard]] ComPtr<Object> MakeObject(Args&&... args) {
  // Its count of references owns it.
  // NOLINTNEXTLINE(cppcoreguidelines-owning-memory)
  return ComPtr<Object>::Attach(new Object(std::forward<Args>(args)...));
}

}  // namespace desk::app
