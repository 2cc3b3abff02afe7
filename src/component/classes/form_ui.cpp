#include "component/classes/form_ui.h"

#include "com/abi.h"
#include "com/values.h"
#include "component/activex/active_control.h"
#include "component/adapters/host_objects.h"
#include "component/classes/adapt.h"
#include "component/controls/child_control_object.h"

namespace tavrix::component {

template <class Body>
HRESULT FormUi::Answer(VARIANT_BOOL* result, const Body& body, const char* member) noexcept {
  const auto answer = [&] {
    com::Out(result) = VARIANT_FALSE;
    *result = com::Flag(body());
  };
  return Run(answer, member);
}

HRESULT FormUi::Do(bool (host::IFormUI::*command)(), VARIANT_BOOL* result,
                   const char* member) noexcept {
  return Answer(
      result, [&] { return (view_.*command)(); }, member);
}

HRESULT FormUi::Init(IDispatch** pcSystem, long plCzID, long plID, VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.Init(SystemOf(Control(), pcSystem), plCzID, plID); });
}

HRESULT FormUi::DoPrint(VARIANT_BOOL pbRealPrint, VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.DoPrint(pbRealPrint != VARIANT_FALSE); });
}

HRESULT FormUi::Find(VARIANT pvData, VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.Find(com::PassThrough(com::Variant(pvData))); });
}

HRESULT FormUi::Filter(VARIANT pvData, VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.Filter(com::PassThrough(com::Variant(pvData))); });
}

HRESULT FormUi::DoSetStatus(BSTR psStatusName, VARIANT_BOOL pbStatus,
                            VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] {
    return view_.DoSetStatus(com::TextOf(psStatusName), pbStatus != VARIANT_FALSE);
  });
}

HRESULT FormUi::get_CheckStatus(BSTR psStatusName, VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.CheckStatus(com::TextOf(psStatusName)); });
}

HRESULT FormUi::get_IsDirty(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.IsDirty(); });
}

HRESULT FormUi::get_GetID(long* result) noexcept {
  return Run([&] { com::Out(result) = view_.GetID(); });
}

HRESULT FormUi::get_ReturnPrintName(BSTR* result) noexcept {
  return Run([&] { GiveText(result, view_.ReturnPrintName()); });
}

HRESULT FormUi::get_Attributes(BSTR psName, BSTR* result) noexcept {
  return Run([&] { GiveText(result, view_.Attributes(com::TextOf(psName))); });
}

}  // namespace tavrix::component
