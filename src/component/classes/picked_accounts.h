#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <memory>
#include <string>

#include "com/class_info.h"
#include "com/com_ptr.h"
#include "com/dispatch_object.h"
#include "com/object_registry.h"
#include "picker/col_kjkm.h"
#include "tavrix.h"

/// What the picker gives out.
namespace tavrix::component {

/// The class `clsKjkm`: one picked account.
class ClsKjkmObject : public com::DispatchObject<_clsKjkm> {
 public:
  /// A new account.
  explicit ClsKjkmObject(IUnknown* outer)
      : ClsKjkmObject(outer, std::make_shared<picker::clsKjkm>()) {}
  ClsKjkmObject(IUnknown* outer, std::shared_ptr<picker::clsKjkm> account);

  STDMETHODIMP get_ID(long* result) noexcept override { return Get(&Account::ID, result); }
  STDMETHODIMP put_ID(long value) noexcept override { return Put(&Account::ID, value); }
  STDMETHODIMP get_ccode(BSTR* result) noexcept override { return Get(&Account::ccode, result); }
  STDMETHODIMP put_ccode(BSTR value) noexcept override { return Put(&Account::ccode, value); }
  STDMETHODIMP get_ccode_name(BSTR* result) noexcept override {
    return Get(&Account::ccode_name, result);
  }
  STDMETHODIMP put_ccode_name(BSTR value) noexcept override {
    return Put(&Account::ccode_name, value);
  }
  STDMETHODIMP get_chelp(BSTR* result) noexcept override { return Get(&Account::chelp, result); }
  STDMETHODIMP put_chelp(BSTR value) noexcept override { return Put(&Account::chelp, value); }
  STDMETHODIMP get_bpr(BSTR* result) noexcept override { return Get(&Account::bpr, result); }
  STDMETHODIMP put_bpr(BSTR value) noexcept override { return Put(&Account::bpr, value); }
  STDMETHODIMP get_cclass(BSTR* result) noexcept override { return Get(&Account::cclass, result); }
  STDMETHODIMP put_cclass(BSTR value) noexcept override { return Put(&Account::cclass, value); }
  STDMETHODIMP get_bclose(VARIANT_BOOL* result) noexcept override {
    return Get(&Account::bclose, result);
  }
  STDMETHODIMP put_bclose(VARIANT_BOOL value) noexcept override {
    return Put(&Account::bclose, value);
  }
  STDMETHODIMP get_bend(VARIANT_BOOL* result) noexcept override {
    return Get(&Account::bend, result);
  }
  STDMETHODIMP put_bend(VARIANT_BOOL value) noexcept override { return Put(&Account::bend, value); }
  STDMETHODIMP get_cbook_type(BSTR* result) noexcept override {
    return Get(&Account::cbook_type, result);
  }
  STDMETHODIMP put_cbook_type(BSTR value) noexcept override {
    return Put(&Account::cbook_type, value);
  }
  STDMETHODIMP get_Change(VARIANT_BOOL* result) noexcept override {
    return Get(&Account::Change, result);
  }
  STDMETHODIMP put_Change(VARIANT_BOOL value) noexcept override {
    return Put(&Account::Change, value);
  }
  STDMETHODIMP get_sKey(BSTR* result) noexcept override { return Get(&Account::sKey, result); }
  STDMETHODIMP put_sKey(BSTR value) noexcept override { return Put(&Account::sKey, value); }
  STDMETHODIMP get_colKjkm(_colKjkm** result) noexcept override;
  STDMETHODIMP putref_colKjkm(_colKjkm* children) noexcept override;
  STDMETHODIMP sbClear() noexcept override;

 private:
  using Account = picker::clsKjkm;
  [[nodiscard]] HRESULT Get(std::int32_t Account::*field, long* result,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Get(std::string Account::*field, BSTR* result,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Get(bool Account::*field, VARIANT_BOOL* result,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Put(std::int32_t Account::*field, long value,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Put(std::string Account::*field, BSTR value,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Put(bool Account::*field, VARIANT_BOOL value,
                            const char* member = __builtin_FUNCTION()) noexcept;

  std::shared_ptr<picker::clsKjkm> account_;
  com::ObjectRegistry<ClsKjkmObject> entry_;
  com::ClassInfo class_info_;
};

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

/// The object that callers see for a collection of picked accounts, or for one of them: the same
/// one for the same collection as long as anyone holds it. Null gives null.
[[nodiscard]] com::ComPtr<_colKjkm> PickedAccountsObject(
    const std::shared_ptr<picker::colKjkm>& accounts);
[[nodiscard]] com::ComPtr<_clsKjkm> PickedAccountObject(
    const std::shared_ptr<picker::clsKjkm>& account);

}  // namespace tavrix::component
