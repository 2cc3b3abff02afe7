#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

#include "app/com/object.h"

namespace desk::app {

/// What `For Each` runs over: a fixed list of objects.
class VariantEnum : public ComObject<IEnumVARIANT> {
 public:
  explicit VariantEnum(std::vector<ComPtr<IDispatch>> items, std::size_t next = 0)
      : items_(std::move(items)), next_(next) {}

  STDMETHODIMP Next(ULONG count, VARIANT* items, ULONG* fetched) override;
  STDMETHODIMP Skip(ULONG count) override;
  STDMETHODIMP Reset() override;
  STDMETHODIMP Clone(IEnumVARIANT** copy) override;

 private:
  std::vector<ComPtr<IDispatch>> items_;
  std::size_t next_;
};

}  // namespace desk::app
