#include "component/classes/picked_accounts.h"

#include <vector>

#include "com/abi.h"
#include "com/enumerator.h"
#include "com/values.h"

namespace tavrix::component {

namespace {

/// The address under which a collection's object is known.
const void* AddressOf(_colKjkm* object) {
  return object;
}

}  // namespace

ColKjkmObject::ColKjkmObject(IUnknown* outer, std::shared_ptr<picker::colKjkm> accounts)
    : DispatchObject(outer),
      accounts_(std::move(accounts)),
      entry_(accounts_.get(), *this),
      own_entry_(AddressOf(this), *this),
      class_info_(*this, CLSID_colKjkm) {
  AddInterface(IID_IProvideClassInfo, &class_info_);
}

std::shared_ptr<picker::colKjkm> ColKjkmObject::AccountsOf(IDispatch* object) {
  if (object == nullptr) return nullptr;
  const auto given = com::Query<_colKjkm>(object);
  auto* ours = given ? com::ObjectRegistry<ColKjkmObject>::Find(AddressOf(given.Get())) : nullptr;
  if (ours == nullptr) throw com::ComFailure(DISP_E_TYPEMISMATCH);
  return ours->accounts_;
}

HRESULT ColKjkmObject::get_Item(VARIANT vntIndexKey, _clsKjkm** result) noexcept {
  return com::Guarded(IID__colKjkm, [&] {
    com::Out(result) = nullptr;
    *result =
        PickedAccountObject(accounts_->Item(com::ToValue(com::Variant(vntIndexKey)))).Detach();
  });
}

HRESULT ColKjkmObject::Add(BSTR sKey, long ID, BSTR ccode, BSTR ccode_name, BSTR chelp, BSTR cclass,
                           _clsKjkm** result) noexcept {
  return com::Guarded(IID__colKjkm, [&] {
    com::Out(result) = nullptr;
    const auto account =
        accounts_->Add(com::TextOf(sKey), ID, com::TextOf(ccode), com::TextOf(ccode_name),
                       com::TextOf(chelp), com::TextOf(cclass));
    *result = PickedAccountObject(account).Detach();
  });
}

HRESULT ColKjkmObject::get_Count(long* result) noexcept {
  return com::Guarded(IID__colKjkm, [&] { com::Out(result) = accounts_->Count(); });
}

HRESULT ColKjkmObject::Remove(VARIANT vntIndexKey) noexcept {
  return com::Guarded(IID__colKjkm,
                      [&] { accounts_->Remove(com::ToValue(com::Variant(vntIndexKey))); });
}

HRESULT ColKjkmObject::get_NewEnum(IUnknown** result) noexcept {
  return com::Guarded(IID__colKjkm, [&] {
    com::Out(result) = nullptr;
    std::vector<com::Variant> all;
    all.reserve(static_cast<std::size_t>(accounts_->Count()));
    for (std::int32_t i = 0; i < accounts_->Count(); ++i) {
      all.emplace_back(PickedAccountObject(accounts_->At(static_cast<std::size_t>(i))));
    }
    *result = com::VariantEnumerator::Make(std::move(all)).Detach();
  });
}

com::ComPtr<_colKjkm> PickedAccountsObject(const std::shared_ptr<picker::colKjkm>& accounts) {
  return com::ObjectFor<ColKjkmObject, _colKjkm>(accounts);
}

}  // namespace tavrix::component
