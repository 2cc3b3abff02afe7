#pragma once

#include "component/activex/of_control.h"
#include "host/forms.h"
#include "qnFormUI.h"

namespace tavrix::component {

/// IFormUI for callers, on a view's own.
class FormUi : public OfControl<com::DualInterfaceImpl<IFormUI>> {
 public:
  FormUi(ActiveControl& control, host::IFormUI& view) : OfControl(control), view_(view) {}

  STDMETHODIMP Init(IDispatch** pcSystem, long plCzID, long plID,
                    VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Refresh(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::Refresh, result);
  }
  STDMETHODIMP FileNew(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::FileNew, result);
  }
  STDMETHODIMP FileNewNext(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::FileNewNext, result);
  }
  STDMETHODIMP FileEdit(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::FileEdit, result);
  }
  STDMETHODIMP FileDelete(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::FileDelete, result);
  }
  STDMETHODIMP FileSave(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::FileSave, result);
  }
  STDMETHODIMP FileCancel(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::FileCancel, result);
  }
  STDMETHODIMP Help(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::Help, result);
  }
  STDMETHODIMP PrintSetup(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::PrintSetup, result);
  }
  STDMETHODIMP RecordTop(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::RecordTop, result);
  }
  STDMETHODIMP RecordPrevious(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::RecordPrevious, result);
  }
  STDMETHODIMP RecordNext(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::RecordNext, result);
  }
  STDMETHODIMP RecordBottom(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::RecordBottom, result);
  }
  STDMETHODIMP FindNext(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::FindNext, result);
  }
  STDMETHODIMP Clear(VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::Clear, result);
  }
  STDMETHODIMP Check(IDispatch**, VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::Check, result);
  }
  STDMETHODIMP UnCheck(IDispatch**, VARIANT_BOOL* result) noexcept override {
    return Do(&host::IFormUI::UnCheck, result);
  }
  STDMETHODIMP DoPrint(VARIANT_BOOL pbRealPrint, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Find(VARIANT pvData, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Filter(VARIANT pvData, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP DoSetStatus(BSTR psStatusName, VARIANT_BOOL pbStatus,
                           VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_CheckStatus(BSTR psStatusName, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_IsDirty(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_GetID(long* result) noexcept override;
  STDMETHODIMP get_ReturnPrintName(BSTR* result) noexcept override;
  STDMETHODIMP get_Attributes(BSTR psName, BSTR* result) noexcept override;
  STDMETHODIMP DoSaveFormStatus() noexcept override {
    return Run([&] { view_.DoSaveFormStatus(); });
  }
  STDMETHODIMP DoGetFormStatus() noexcept override {
    return Run([&] { view_.DoGetFormStatus(); });
  }

 private:
  /// Carries out a command of the view while the control stays.
  [[nodiscard]] HRESULT Do(bool (host::IFormUI::*command)(), VARIANT_BOOL* result,
                           const char* member = __builtin_FUNCTION()) noexcept;
  /// As `Run`, and gives the body's flag to the caller.
  template <class Body>
  [[nodiscard]] HRESULT Answer(VARIANT_BOOL* result, const Body& body,
                               const char* member = __builtin_FUNCTION()) noexcept;

  host::IFormUI& view_;
};

}  // namespace tavrix::component
