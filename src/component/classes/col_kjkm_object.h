#pragma once

#include <memory>

#include "com/class_info.h"
#include "com/dispatch_object.h"
#include "com/object_registry.h"
#include "picker/col_kjkm.h"
#include "tavrix.h"

namespace tavrix::component {

/// The class `colKjkm`: picked accounts.
class ColKjkmObject : public com::DispatchObject<_colKjkm> {
 public:
  /// An empty collection.
  explicit ColKjkmObject(IUnknown* outer)
      : ColKjkmObject(outer, std::make_shared<picker::colKjkm>()) {}
  ColKjkmObject(IUnknown* outer, std::shared_ptr<picker::colKjkm> accounts);

  /// The collection behind an object of this class; null for null. Throws `ComFailure` for any
  /// other object.
  [[nodiscard]] static std::shared_ptr<picker::colKjkm> AccountsOf(IDispatch* object);

  STDMETHODIMP get_Item(VARIANT vntIndexKey, _clsKjkm** result) noexcept override;
  STDMETHODIMP Add(BSTR sKey, long ID, BSTR ccode, BSTR ccode_name, BSTR chelp, BSTR cclass,
                   _clsKjkm** result) noexcept override;
  STDMETHODIMP get_Count(long* result) noexcept override;
  STDMETHODIMP Remove(VARIANT vntIndexKey) noexcept override;
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;

 private:
  std::shared_ptr<picker::colKjkm> accounts_;
  com::ObjectRegistry<ColKjkmObject> entry_;
  com::ObjectRegistry<ColKjkmObject>
      own_entry_;  // under its own address: tells our objects from others
  com::ClassInfo class_info_;
};

}  // namespace tavrix::component
