#include "component/classes/form_ui.h"

#include "com/abi.h"
#include "com/values.h"
#include "component/activex/active_control.h"
#include "component/adapters/host_objects.h"
#include "component/classes/adapt.h"
#include "component/controls/child_control_object.h"

namespace tavrix::component {

template <class Body>
HRESULT FormUi::Answer(VARIANT_BOOL* result, Body&& body) noexcept {
  return Run([&] {
    com::Out(result) = VARIANT_FALSE;
    *result = com::Flag(body());
  });
}

HRESULT FormUi::Init(IDispatch** pcSystem, long plCzID, long plID, VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.Init(SystemOf(Control(), pcSystem), plCzID, plID); });
}

HRESULT FormUi::Refresh(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.Refresh(); });
}

HRESULT FormUi::FileNew(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.FileNew(); });
}

HRESULT FormUi::FileNewNext(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.FileNewNext(); });
}

HRESULT FormUi::FileEdit(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.FileEdit(); });
}

HRESULT FormUi::FileDelete(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.FileDelete(); });
}

HRESULT FormUi::FileSave(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.FileSave(); });
}

HRESULT FormUi::FileCancel(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.FileCancel(); });
}

HRESULT FormUi::Help(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.Help(); });
}

HRESULT FormUi::PrintSetup(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.PrintSetup(); });
}

HRESULT FormUi::RecordTop(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.RecordTop(); });
}

HRESULT FormUi::RecordPrevious(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.RecordPrevious(); });
}

HRESULT FormUi::RecordNext(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.RecordNext(); });
}

HRESULT FormUi::RecordBottom(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.RecordBottom(); });
}

HRESULT FormUi::FindNext(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.FindNext(); });
}

HRESULT FormUi::Clear(VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.Clear(); });
}

HRESULT FormUi::Check(IDispatch**, VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.Check(); });
}

HRESULT FormUi::UnCheck(IDispatch**, VARIANT_BOOL* result) noexcept {
  return Answer(result, [&] { return view_.UnCheck(); });
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

HRESULT FormUi::DoSaveFormStatus() noexcept {
  return Run([&] { view_.DoSaveFormStatus(); });
}

HRESULT FormUi::DoGetFormStatus() noexcept {
  return Run([&] { view_.DoGetFormStatus(); });
}

}  // namespace tavrix::component
