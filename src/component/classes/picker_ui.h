#pragma once

#include "component/activex/of_control.h"
#include "picker/sel_kjkm.h"
#include "qnPickerUI.h"

namespace tavrix::component {

/// IPickerUI for callers, on the picker's own.
class PickerUi : public OfControl<com::DualInterfaceImpl<IPickerUI>> {
 public:
  PickerUi(ActiveControl& control, picker::selKjkm& view) : OfControl(control), view_(view) {}

  STDMETHODIMP Init(IDispatch** pcSystem, long plProgID, BSTR psHostName,
                    VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Refresh(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Validate(BSTR psSqlString, BSTR psField_Code, BSTR psField_Name, BSTR psText,
                        BSTR* sReturnField_Code, BSTR* sReturnField_Name,
                        VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Clear() noexcept override;
  STDMETHODIMP DoGetFormStatus() noexcept override;
  STDMETHODIMP DoSaveFormStatus() noexcept override;
  STDMETHODIMP get_Attributes(BSTR psName, BSTR* result) noexcept override;
  STDMETHODIMP get_IsDirty(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_IsDirty(VARIANT_BOOL dirty) noexcept override;
  STDMETHODIMP get_Objects(IDispatch** result) noexcept override;
  STDMETHODIMP get_Parameters(IDispatch** result) noexcept override;
  STDMETHODIMP putref_Parameters(IDispatch* parameters) noexcept override;
  STDMETHODIMP get_Text(BSTR* result) noexcept override;
  STDMETHODIMP put_Text(BSTR text) noexcept override;
  STDMETHODIMP get_Value(VARIANT* result) noexcept override;
  STDMETHODIMP put_Value(VARIANT value) noexcept override;

 private:
  picker::selKjkm& view_;
};

}  // namespace tavrix::component
