#include "component/classes/col_kjkm_object.h"

#include <vector>

#include "component/adapters/values.h"
#include "component/base/abi.h"
#include "component/base/enumerator.h"
#include "component/classes/picked_accounts.h"

namespace tavrix::component {

namespace {

/// The address under which a collection's face is known.
const void* AddressOf(_colKjkm* face) {
  return face;
}

}  // namespace

ColKjkmObject::ColKjkmObject(IUnknown* outer, std::shared_ptr<picker::colKjkm> accounts)
    : Identity(outer),
      DualFace(static_cast<Identity&>(*this)),
      accounts_(std::move(accounts)),
      entry_(accounts_.get(), *this),
      own_entry_(AddressOf(this), *this),
      errors_(*this),
      class_info_(*this, CLSID_colKjkm) {
  PublishDual(IID__colKjkm, this);
  Publish(IID_ISupportErrorInfo, &errors_);
  Publish(IID_IProvideClassInfo, &class_info_);
}

std::shared_ptr<picker::colKjkm> ColKjkmObject::AccountsOf(IDispatch* object) {
  if (object == nullptr) return nullptr;
  const auto face = Query<_colKjkm>(object);
  auto* ours = face ? FaceRegistry<ColKjkmObject>::Find(AddressOf(face.Get())) : nullptr;
  if (ours == nullptr) throw ComFailure(DISP_E_TYPEMISMATCH);
  return ours->accounts_;
}

HRESULT ColKjkmObject::get_Item(VARIANT vntIndexKey, _clsKjkm** result) noexcept {
  return Guarded(IID__colKjkm, [&] {
    Out(result) = nullptr;
    *result = PickedAccountObject(accounts_->Item(ToValue(Variant(vntIndexKey)))).Detach();
  });
}

HRESULT ColKjkmObject::Add(BSTR sKey, long ID, BSTR ccode, BSTR ccode_name, BSTR chelp, BSTR cclass,
                           _clsKjkm** result) noexcept {
  return Guarded(IID__colKjkm, [&] {
    Out(result) = nullptr;
    const auto account = accounts_->Add(TextOf(sKey), ID, TextOf(ccode), TextOf(ccode_name),
                                        TextOf(chelp), TextOf(cclass));
    *result = PickedAccountObject(account).Detach();
  });
}

HRESULT ColKjkmObject::get_Count(long* result) noexcept {
  return Guarded(IID__colKjkm, [&] { Out(result) = accounts_->Count(); });
}

HRESULT ColKjkmObject::Remove(VARIANT vntIndexKey) noexcept {
  return Guarded(IID__colKjkm, [&] { accounts_->Remove(ToValue(Variant(vntIndexKey))); });
}

HRESULT ColKjkmObject::get_NewEnum(IUnknown** result) noexcept {
  return Guarded(IID__colKjkm, [&] {
    Out(result) = nullptr;
    std::vector<Variant> all;
    all.reserve(static_cast<std::size_t>(accounts_->Count()));
    for (std::int32_t i = 0; i < accounts_->Count(); ++i) {
      all.emplace_back(PickedAccountObject(accounts_->At(static_cast<std::size_t>(i))));
    }
    *result = VariantEnumerator::Make(std::move(all)).Detach();
  });
}

ComPtr<_colKjkm> PickedAccountsObject(const std::shared_ptr<picker::colKjkm>& accounts) {
  if (!accounts) return nullptr;
  if (auto* face = FaceRegistry<ColKjkmObject>::Find(accounts.get())) return ComPtr<_colKjkm>(face);
  return MakeObject<ColKjkmObject>(nullptr, accounts).As<_colKjkm>();
}

}  // namespace tavrix::component
