#pragma once

#include <windows.h>

#include <ocidl.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "com/abi.h"
#include "com/com_object.h"
#include "com/variant.h"

namespace tavrix::com {

/// An advised sink, and how a caller gets it.
struct Connection {
  DWORD cookie = 0;
  ComPtr<IUnknown> sink;
};

/// Gives a caller of the ABI an element of its own.
inline void Give(const Variant& item, VARIANT* result) {
  *result = Variant(item).Detach();
}
inline void Give(const Connection& item, CONNECTDATA* result) {
  *result = {ComPtr<IUnknown>(item.sink).Detach(), item.cookie};
}
inline void Give(const ComPtr<IConnectionPoint>& item, IConnectionPoint** result) {
  item.CopyTo(result);
}

/// The one enumerator: walks over a copy of what there was when it was made. `Raw` is the element
/// as callers get it, `Item` as it is owned here.
template <class Interface, class Raw, class Item>
class Enumerator : public Implements<Interface> {
 public:
  using Items = std::shared_ptr<const std::vector<Item>>;
  Enumerator(Items items, std::size_t next) : items_(std::move(items)), next_(next) {}
  [[nodiscard]] static ComPtr<Interface> Make(std::vector<Item> items) {
    auto shared = std::make_shared<const std::vector<Item>>(std::move(items));
    return com::Make<Enumerator>(std::move(shared), std::size_t{0});
  }

  STDMETHODIMP Next(ULONG count, Raw* result, ULONG* fetched) noexcept override {
    return Guarded(__uuidof(Interface), [&] {
      if (result == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
      const auto given = static_cast<ULONG>(std::min<std::size_t>(count, Left()));
      for (ULONG i = 0; i < given; ++i) Give((*items_)[next_++], result + i);
      if (fetched != nullptr) *fetched = given;
      return given == count ? S_OK : S_FALSE;
    });
  }
  STDMETHODIMP Skip(ULONG count) noexcept override {
    const std::size_t skipped = std::min<std::size_t>(count, Left());
    next_ += skipped;
    return skipped == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() noexcept override {
    next_ = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** result) noexcept override {
    return Guarded(__uuidof(Interface),
                   [&] { Out(result) = com::Make<Enumerator>(items_, next_).Detach(); });
  }

 private:
  [[nodiscard]] std::size_t Left() const { return items_->size() - next_; }

  Items items_;
  std::size_t next_;
};

using VariantEnumerator = Enumerator<IEnumVARIANT, VARIANT, Variant>;
using ConnectionEnumerator = Enumerator<IEnumConnections, CONNECTDATA, Connection>;
using PointEnumerator =
    Enumerator<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>>;

}  // namespace tavrix::com
