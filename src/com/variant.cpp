#include "com/variant.h"

#include "com/failure.h"

namespace tavrix::com {

Variant::Variant(Bstr text) : Variant() {
  value_.vt = VT_BSTR;
  value_.bstrVal = text.Detach();
}

Variant::Variant(std::int32_t number) : Variant() {
  value_.vt = VT_I4;
  value_.lVal = number;
}

Variant::Variant(double number) : Variant() {
  value_.vt = VT_R8;
  value_.dblVal = number;
}

Variant::Variant(bool flag) : Variant() {
  value_.vt = VT_BOOL;
  value_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

Variant::Variant(const ComPtr<IDispatch>& object) : Variant() {
  value_.vt = VT_DISPATCH;
  object.CopyTo(&value_.pdispVal);
}

Variant::Variant(const VARIANT& value) : Variant() {
  Check(VariantCopyInd(&value_, Readable(Target(value))));
}

Variant Variant::Null() {
  Variant null;
  null.value_.vt = VT_NULL;
  return null;
}

Variant Variant::Missing() {
  Variant missing;
  missing.value_.vt = VT_ERROR;
  missing.value_.scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

VARIANT* Variant::Put() {
  VariantClear(&value_);
  return &value_;
}

VARIANT Variant::Detach() {
  const VARIANT value = value_;
  VariantInit(&value_);
  return value;
}

VARIANT Variant::Reference() {
  VARIANT reference;
  VariantInit(&reference);
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = &value_;
  return reference;
}

Variant Variant::As(VARTYPE type) const {
  Variant result;
  Check(VariantChangeTypeEx(&result.value_, Readable(value_), LOCALE_INVARIANT, VARIANT_ALPHABOOL,
                            type));
  return result;
}

ComPtr<IDispatch> Variant::Object() const {
  const bool object = value_.vt == VT_DISPATCH || value_.vt == VT_UNKNOWN;
  return object ? Query<IDispatch>(value_.punkVal) : nullptr;
}

const VARIANT& Target(const VARIANT& value) {
  const VARIANT* target = &value;
  while (target->vt == (VT_BYREF | VT_VARIANT) && target->pvarVal != nullptr) {
    target = target->pvarVal;
  }
  return *target;
}

}  // namespace tavrix::com
