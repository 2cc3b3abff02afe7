#include "component/classes/picker_ui.h"

#include "component/activex/active_control.h"
#include "component/adapters/host_objects.h"
#include "component/adapters/values.h"
#include "component/base/abi.h"
#include "component/classes/adapt.h"
#include "component/classes/picked_accounts.h"
#include "component/controls/child_face.h"

namespace tavrix::component {

namespace {

/// Replaces a text of the caller.
void PutText(BSTR& target, const std::string& text) {
  Bstr replacement{std::string_view(text)};
  SysFreeString(std::exchange(target, replacement.Detach()));
}

}  // namespace

PickerUi::PickerUi(ActiveControl& control, picker::selKjkm& view)
    : DualFace(control), control_(control), view_(view) {}

template <class Body>
HRESULT PickerUi::Run(Body&& body) noexcept {
  return Guarded(IID_IPickerUI, [&] {
    const ComPtr<IUnknown> keep(&control_.Controlling());
    body();
  });
}

HRESULT PickerUi::Init(IDispatch** pcSystem, long plProgID, BSTR psHostName,
                       VARIANT_BOOL* result) noexcept {
  return Run([&] {
    Out(result) = VARIANT_FALSE;
    *result = Flag(view_.Init(SystemOf(control_, pcSystem), plProgID, TextOf(psHostName)));
  });
}

HRESULT PickerUi::Refresh(VARIANT_BOOL* result) noexcept {
  return Run([&] { Out(result) = Flag(view_.Refresh()); });
}

HRESULT PickerUi::Validate(BSTR psSqlString, BSTR psField_Code, BSTR psField_Name, BSTR psText,
                           BSTR* sReturnField_Code, BSTR* sReturnField_Name,
                           VARIANT_BOOL* result) noexcept {
  return Run([&] {
    Out(result) = VARIANT_FALSE;
    // A caller may give the same variable for a result.
    const std::string sql = TextOf(psSqlString);
    const std::string code_field = TextOf(psField_Code);
    const std::string name_field = TextOf(psField_Name);
    const std::string text = TextOf(psText);
    // Both are empty after a failure.
    PutText(Out(sReturnField_Code), {});
    PutText(Out(sReturnField_Name), {});
    std::string code;
    std::string name;
    *result = Flag(view_.Validate(sql, code_field, name_field, text, code, name));
    PutText(*sReturnField_Code, code);
    PutText(*sReturnField_Name, name);
  });
}

HRESULT PickerUi::Clear() noexcept {
  return Run([&] { view_.Clear(); });
}

HRESULT PickerUi::DoGetFormStatus() noexcept {
  return Run([&] { view_.DoGetFormStatus(); });
}

HRESULT PickerUi::DoSaveFormStatus() noexcept {
  return Run([&] { view_.DoSaveFormStatus(); });
}

HRESULT PickerUi::get_Attributes(BSTR psName, BSTR* result) noexcept {
  return Run([&] { GiveText(result, view_.Attributes(TextOf(psName))); });
}

HRESULT PickerUi::get_IsDirty(VARIANT_BOOL* result) noexcept {
  return Run([&] { Out(result) = Flag(view_.IsDirty()); });
}

HRESULT PickerUi::put_IsDirty(VARIANT_BOOL dirty) noexcept {
  return Run([&] { view_.SetIsDirty(dirty != VARIANT_FALSE); });
}

HRESULT PickerUi::get_Objects(IDispatch** result) noexcept {
  return Run([&] {
    Out(result) = nullptr;
    *result = PickedAccountsObject(view_.Selected()).Detach();
  });
}

HRESULT PickerUi::get_Parameters(IDispatch** result) noexcept {
  return Run([&] {
    Out(result) = nullptr;
    *result = DispatchOf(view_.PickerParameters()).Detach();
  });
}

HRESULT PickerUi::putref_Parameters(IDispatch* parameters) noexcept {
  return Run([&] {
    view_.SetPickerParameters(AdaptParameters(ComPtr<IDispatch>(parameters), control_.Owner()));
  });
}

HRESULT PickerUi::get_Text(BSTR* result) noexcept {
  return Run([&] { GiveText(result, view_.Text()); });
}

HRESULT PickerUi::put_Text(BSTR text) noexcept {
  return Run([&] { view_.SetText(TextOf(text)); });
}

HRESULT PickerUi::get_Value(VARIANT* result) noexcept {
  return Run([&] { Out(result) = ToVariant(view_.GetValue()).Detach(); });
}

HRESULT PickerUi::put_Value(VARIANT value) noexcept {
  return Run([&] { view_.SetValue(Carried(Variant(value))); });
}

}  // namespace tavrix::component
