#include "component/classes/picked_accounts.h"

#include "com/abi.h"
#include "component/controls/child_control_object.h"

namespace tavrix::component {

ClsKjkmObject::ClsKjkmObject(IUnknown* outer, std::shared_ptr<picker::clsKjkm> account)
    : DispatchObject(outer),
      account_(std::move(account)),
      entry_(account_.get(), *this),
      class_info_(*this, CLSID_clsKjkm) {
  AddInterface(IID_IProvideClassInfo, &class_info_);
}

HRESULT ClsKjkmObject::Get(std::int32_t Account::*field, long* result,
                           const char* member) noexcept {
  return com::Guarded(
      IID__clsKjkm, [&] { com::Out(result) = (*account_).*field; }, member);
}

HRESULT ClsKjkmObject::Get(std::string Account::*field, BSTR* result, const char* member) noexcept {
  return com::Guarded(
      IID__clsKjkm, [&] { GiveText(result, (*account_).*field); }, member);
}

HRESULT ClsKjkmObject::Get(bool Account::*field, VARIANT_BOOL* result,
                           const char* member) noexcept {
  return com::Guarded(
      IID__clsKjkm, [&] { com::Out(result) = com::Flag((*account_).*field); }, member);
}

HRESULT ClsKjkmObject::Put(std::int32_t Account::*field, long value, const char* member) noexcept {
  return com::Guarded(
      IID__clsKjkm, [&] { (*account_).*field = value; }, member);
}

HRESULT ClsKjkmObject::Put(std::string Account::*field, BSTR value, const char* member) noexcept {
  return com::Guarded(
      IID__clsKjkm, [&] { (*account_).*field = com::TextOf(value); }, member);
}

HRESULT ClsKjkmObject::Put(bool Account::*field, VARIANT_BOOL value, const char* member) noexcept {
  return com::Guarded(
      IID__clsKjkm, [&] { (*account_).*field = value != VARIANT_FALSE; }, member);
}

HRESULT ClsKjkmObject::get_colKjkm(_colKjkm** result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] {
    com::Out(result) = nullptr;
    *result = PickedAccountsObject(account_->Children()).Detach();
  });
}

HRESULT ClsKjkmObject::putref_colKjkm(_colKjkm* children) noexcept {
  return com::Guarded(IID__clsKjkm,
                      [&] { account_->SetChildren(ColKjkmObject::AccountsOf(children)); });
}

HRESULT ClsKjkmObject::sbClear() noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->sbClear(); });
}

com::ComPtr<_clsKjkm> PickedAccountObject(const std::shared_ptr<picker::clsKjkm>& account) {
  return com::ObjectFor<ClsKjkmObject, _clsKjkm>(account);
}

}  // namespace tavrix::component
