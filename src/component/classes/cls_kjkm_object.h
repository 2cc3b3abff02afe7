#pragma once

#include <memory>

#include "com/class_info.h"
#include "com/dispatch_object.h"
#include "com/object_registry.h"
#include "picker/col_kjkm.h"
#include "tavrix.h"

namespace tavrix::component {

/// The class `clsKjkm`: one picked account.
class ClsKjkmObject : public com::DispatchObject<_clsKjkm> {
 public:
  /// A new account.
  explicit ClsKjkmObject(IUnknown* outer)
      : ClsKjkmObject(outer, std::make_shared<picker::clsKjkm>()) {}
  ClsKjkmObject(IUnknown* outer, std::shared_ptr<picker::clsKjkm> account);

  STDMETHODIMP get_ID(long* result) noexcept override;
  STDMETHODIMP put_ID(long value) noexcept override;
  STDMETHODIMP get_ccode(BSTR* result) noexcept override;
  STDMETHODIMP put_ccode(BSTR value) noexcept override;
  STDMETHODIMP get_ccode_name(BSTR* result) noexcept override;
  STDMETHODIMP put_ccode_name(BSTR value) noexcept override;
  STDMETHODIMP get_chelp(BSTR* result) noexcept override;
  STDMETHODIMP put_chelp(BSTR value) noexcept override;
  STDMETHODIMP get_bpr(BSTR* result) noexcept override;
  STDMETHODIMP put_bpr(BSTR value) noexcept override;
  STDMETHODIMP get_cclass(BSTR* result) noexcept override;
  STDMETHODIMP put_cclass(BSTR value) noexcept override;
  STDMETHODIMP get_bclose(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_bclose(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_bend(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_bend(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_cbook_type(BSTR* result) noexcept override;
  STDMETHODIMP put_cbook_type(BSTR value) noexcept override;
  STDMETHODIMP get_Change(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_Change(VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_sKey(BSTR* result) noexcept override;
  STDMETHODIMP put_sKey(BSTR value) noexcept override;
  STDMETHODIMP get_colKjkm(_colKjkm** result) noexcept override;
  STDMETHODIMP putref_colKjkm(_colKjkm* children) noexcept override;
  STDMETHODIMP sbClear() noexcept override;

 private:
  std::shared_ptr<picker::clsKjkm> account_;
  com::ObjectRegistry<ClsKjkmObject> entry_;
  com::ClassInfo class_info_;
};

}  // namespace tavrix::component
