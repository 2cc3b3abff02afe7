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
  STDMETHODIMP Refresh(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FileNew(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FileNewNext(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FileEdit(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FileDelete(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FileSave(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FileCancel(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Help(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP PrintSetup(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP RecordTop(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP RecordPrevious(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP RecordNext(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP RecordBottom(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FindNext(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Clear(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Check(IDispatch** objCheckParameters, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP UnCheck(IDispatch** objCheckParameters, VARIANT_BOOL* result) noexcept override;
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
  STDMETHODIMP DoSaveFormStatus() noexcept override;
  STDMETHODIMP DoGetFormStatus() noexcept override;

 private:
  /// As `Run`, and gives the body's flag to the caller.
  template <class Body>
  [[nodiscard]] HRESULT Answer(VARIANT_BOOL* result, Body&& body) noexcept;

  host::IFormUI& view_;
};

}  // namespace tavrix::component
