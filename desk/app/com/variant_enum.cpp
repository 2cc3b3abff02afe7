#include "app/com/variant_enum.h"

#include <algorithm>

#include "app/com/values.h"

namespace desk::app {

STDMETHODIMP VariantEnum::Next(ULONG count, VARIANT* items, ULONG* fetched) {
  if (items == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
  ULONG given = 0;
  for (; given < count && next_ < items_.size(); ++given, ++next_) {
    VariantInit(&items[given]);
    items[given].pdispVal = ComPtr<IDispatch>(items_[next_]).Detach();
    items[given].vt = VT_DISPATCH;
  }
  if (fetched != nullptr) *fetched = given;
  return given == count ? S_OK : S_FALSE;
}

STDMETHODIMP VariantEnum::Skip(ULONG count) {
  const std::size_t left = items_.size() - next_;
  next_ += std::min<std::size_t>(count, left);
  return count <= left ? S_OK : S_FALSE;
}

STDMETHODIMP VariantEnum::Reset() {
  next_ = 0;
  return S_OK;
}

STDMETHODIMP VariantEnum::Clone(IEnumVARIANT** copy) {
  if (copy == nullptr) return E_POINTER;
  *copy = nullptr;
  return Guarded([&] { *copy = MakeObject<VariantEnum>(items_, next_).Detach(); });
}

}  // namespace desk::app
