#include "component/classes/cls_kjkm_object.h"

#include "com/abi.h"
#include "component/classes/col_kjkm_object.h"
#include "component/classes/picked_accounts.h"
#include "component/controls/child_control_object.h"

namespace tavrix::component {

ClsKjkmObject::ClsKjkmObject(IUnknown* outer, std::shared_ptr<picker::clsKjkm> account)
    : DispatchObject(outer),
      account_(std::move(account)),
      entry_(account_.get(), *this),
      class_info_(*this, CLSID_clsKjkm) {
  AddInterface(IID_IProvideClassInfo, &class_info_);
}

HRESULT ClsKjkmObject::get_ID(long* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { com::Out(result) = account_->ID; });
}

HRESULT ClsKjkmObject::put_ID(long value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->ID = value; });
}

HRESULT ClsKjkmObject::get_ccode(BSTR* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { GiveText(result, account_->ccode); });
}

HRESULT ClsKjkmObject::put_ccode(BSTR value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->ccode = com::TextOf(value); });
}

HRESULT ClsKjkmObject::get_ccode_name(BSTR* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { GiveText(result, account_->ccode_name); });
}

HRESULT ClsKjkmObject::put_ccode_name(BSTR value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->ccode_name = com::TextOf(value); });
}

HRESULT ClsKjkmObject::get_chelp(BSTR* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { GiveText(result, account_->chelp); });
}

HRESULT ClsKjkmObject::put_chelp(BSTR value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->chelp = com::TextOf(value); });
}

HRESULT ClsKjkmObject::get_bpr(BSTR* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { GiveText(result, account_->bpr); });
}

HRESULT ClsKjkmObject::put_bpr(BSTR value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->bpr = com::TextOf(value); });
}

HRESULT ClsKjkmObject::get_cclass(BSTR* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { GiveText(result, account_->cclass); });
}

HRESULT ClsKjkmObject::put_cclass(BSTR value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->cclass = com::TextOf(value); });
}

HRESULT ClsKjkmObject::get_bclose(VARIANT_BOOL* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { com::Out(result) = com::Flag(account_->bclose); });
}

HRESULT ClsKjkmObject::put_bclose(VARIANT_BOOL value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->bclose = value != VARIANT_FALSE; });
}

HRESULT ClsKjkmObject::get_bend(VARIANT_BOOL* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { com::Out(result) = com::Flag(account_->bend); });
}

HRESULT ClsKjkmObject::put_bend(VARIANT_BOOL value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->bend = value != VARIANT_FALSE; });
}

HRESULT ClsKjkmObject::get_cbook_type(BSTR* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { GiveText(result, account_->cbook_type); });
}

HRESULT ClsKjkmObject::put_cbook_type(BSTR value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->cbook_type = com::TextOf(value); });
}

HRESULT ClsKjkmObject::get_Change(VARIANT_BOOL* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { com::Out(result) = com::Flag(account_->Change); });
}

HRESULT ClsKjkmObject::put_Change(VARIANT_BOOL value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->Change = value != VARIANT_FALSE; });
}

HRESULT ClsKjkmObject::get_sKey(BSTR* result) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { GiveText(result, account_->sKey); });
}

HRESULT ClsKjkmObject::put_sKey(BSTR value) noexcept {
  return com::Guarded(IID__clsKjkm, [&] { account_->sKey = com::TextOf(value); });
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
  if (!account) return nullptr;
  if (auto* object = com::ObjectRegistry<ClsKjkmObject>::Find(account.get()))
    return com::ComPtr<_clsKjkm>(object);
  return com::MakeObject<ClsKjkmObject>(nullptr, account).As<_clsKjkm>();
}

}  // namespace tavrix::component
