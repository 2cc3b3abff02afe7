#pragma once

#include <windows.h>

#include <ocidl.h>

#include "component/activex/of_control.h"
#include "viewkit/color.h"

namespace tavrix::component {

/// What a container keeps of a control's design.
struct KeptState {
  LONG width;  ///< HIMETRIC
  LONG height;
  viewkit::Color back_color;  ///< `kDefault`: the container's own
  friend bool operator==(const KeptState&, const KeptState&) = default;
};

/// The state in a stream.
class StreamPersistence : public OfControl<com::InterfaceImpl<IPersistStreamInit>> {
 public:
  using OfControl::OfControl;

  STDMETHODIMP GetClassID(CLSID* result) noexcept override;
  STDMETHODIMP IsDirty() noexcept override;
  STDMETHODIMP Load(IStream* stream) noexcept override;
  STDMETHODIMP Save(IStream* stream, WINBOOL clear_dirty) noexcept override;
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER* result) noexcept override;
  STDMETHODIMP InitNew() noexcept override { return S_OK; }
};

/// The background colour as a named property.
class BagPersistence : public OfControl<com::InterfaceImpl<IPersistPropertyBag>> {
 public:
  using OfControl::OfControl;

  STDMETHODIMP GetClassID(CLSID* result) noexcept override;
  STDMETHODIMP InitNew() noexcept override { return S_OK; }
  STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* errors) noexcept override;
  STDMETHODIMP Save(IPropertyBag* bag, WINBOOL clear_dirty, WINBOOL all) noexcept override;
};

/// The state as a stream of a document's storage, for containers of documents. The storage is not
/// held on to.
class StoragePersistence : public OfControl<com::InterfaceImpl<IPersistStorage>> {
 public:
  using OfControl::OfControl;

  STDMETHODIMP GetClassID(CLSID* result) noexcept override;
  STDMETHODIMP IsDirty() noexcept override;
  STDMETHODIMP InitNew(IStorage*) noexcept override { return S_OK; }
  STDMETHODIMP Load(IStorage* storage) noexcept override;
  STDMETHODIMP Save(IStorage* storage, WINBOOL same_as_load) noexcept override;
  STDMETHODIMP SaveCompleted(IStorage*) noexcept override { return S_OK; }
  STDMETHODIMP HandsOffStorage() noexcept override { return S_OK; }
};

}  // namespace tavrix::component
