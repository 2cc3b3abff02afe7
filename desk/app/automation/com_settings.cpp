#include "app/automation/com_settings.h"

#include "app/automation/give.h"

namespace desk::app {

STDMETHODIMP ComSetting::get_Value(BSTR* result) noexcept {
  return Give(result, [&] { return NewBstr(Own().Get()); });
}

STDMETHODIMP ComRights::get_CanAdd(VARIANT_BOOL* result) noexcept {
  return Give(result, [&] { return Flag(Own().CanAdd()); });
}

STDMETHODIMP ComRights::get_CanEdit(VARIANT_BOOL* result) noexcept {
  return Give(result, [&] { return Flag(Own().CanEdit()); });
}

STDMETHODIMP ComFolders::get_UserFolder(BSTR* result) noexcept {
  return Give(result, [&] { return NewBstr(Own().UserFolder()); });
}

}  // namespace desk::app
