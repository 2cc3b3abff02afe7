#include "component/classes/picker_ui.h"

#include "com/abi.h"
#include "com/values.h"
#include "component/activex/active_control.h"
#include "component/adapters/host_objects.h"
#include "component/classes/adapt.h"
#include "component/classes/picked_accounts.h"
#include "component/controls/child_control_object.h"

namespace tavrix::component {

namespace {

/// Replaces a text of the caller.
void PutText(BSTR& target, const std::string& text) {
  com::Bstr replacement{std::string_view(text)};
  SysFreeString(std::exchange(target, replacement.Detach()));
}

}  // namespace

HRESULT PickerUi::Init(IDispatch** pcSystem, long plProgID, BSTR psHostName,
                       VARIANT_BOOL* result) noexcept {
  return Run([&] {
    com::Out(result) = VARIANT_FALSE;
    *result =
        com::Flag(view_.Init(SystemOf(Control(), pcSystem), plProgID, com::TextOf(psHostName)));
  });
}

HRESULT PickerUi::Refresh(VARIANT_BOOL* result) noexcept {
  return Run([&] { com::Out(result) = com::Flag(view_.Refresh()); });
}

HRESULT PickerUi::Validate(BSTR psSqlString, BSTR psField_Code, BSTR psField_Name, BSTR psText,
                           BSTR* sReturnField_Code, BSTR* sReturnField_Name,
                           VARIANT_BOOL* result) noexcept {
  return Run([&] {
    com::Out(result) = VARIANT_FALSE;
    // A caller may give the same variable for a result.
    const std::string sql = com::TextOf(psSqlString);
    const std::string code_field = com::TextOf(psField_Code);
    const std::string name_field = com::TextOf(psField_Name);
    const std::string text = com::TextOf(psText);
    // Both are empty after a failure.
    PutText(com::Out(sReturnField_Code), {});
    PutText(com::Out(sReturnField_Name), {});
    std::string code;
    std::string name;
    *result = com::Flag(view_.Validate(sql, code_field, name_field, text, code, name));
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
  return Run([&] { GiveText(result, view_.Attributes(com::TextOf(psName))); });
}

HRESULT PickerUi::get_IsDirty(VARIANT_BOOL* result) noexcept {
  return Run([&] { com::Out(result) = com::Flag(view_.IsDirty()); });
}

HRESULT PickerUi::put_IsDirty(VARIANT_BOOL dirty) noexcept {
  return Run([&] { view_.SetIsDirty(dirty != VARIANT_FALSE); });
}

HRESULT PickerUi::get_Objects(IDispatch** result) noexcept {
  return Run([&] {
    com::Out(result) = nullptr;
    *result = PickedAccountsObject(view_.Selected()).Detach();
  });
}

HRESULT PickerUi::get_Parameters(IDispatch** result) noexcept {
  return Run([&] {
    com::Out(result) = nullptr;
    *result = DispatchOf(view_.PickerParameters()).Detach();
  });
}

HRESULT PickerUi::putref_Parameters(IDispatch* parameters) noexcept {
  return Run([&] {
    view_.SetPickerParameters(
        AdaptParameters(com::ComPtr<IDispatch>(parameters), Control().Owner()));
  });
}

HRESULT PickerUi::get_Text(BSTR* result) noexcept {
  return Run([&] { GiveText(result, view_.Text()); });
}

HRESULT PickerUi::put_Text(BSTR text) noexcept {
  return Run([&] { view_.SetText(com::TextOf(text)); });
}

HRESULT PickerUi::get_Value(VARIANT* result) noexcept {
  return Run([&] { com::Out(result) = com::ToVariant(view_.GetValue()).Detach(); });
}

HRESULT PickerUi::put_Value(VARIANT value) noexcept {
  return Run([&] { view_.SetValue(com::PassThrough(com::Variant(value))); });
}

}  // namespace tavrix::component
