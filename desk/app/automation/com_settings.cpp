#include "app/automation/com_settings.h"

#include "app/automation/give.h"

namespace desk::app {

STDMETHODIMP ComSetting::get_Value(BSTR* result) noexcept {
  return Give(result, [&] { return NewBstr(entry_->Get()); });
}

STDMETHODIMP ComRights::get_CanAdd(VARIANT_BOOL* result) noexcept {
  return Give(result, [&] { return Flag(rights_->CanAdd()); });
}

STDMETHODIMP ComRights::get_CanEdit(VARIANT_BOOL* result) noexcept {
  return Give(result, [&] { return Flag(rights_->CanEdit()); });
}

STDMETHODIMP ComFolders::get_UserFolder(BSTR* result) noexcept {
  return Give(result, [&] { return NewBstr(folders_->UserFolder()); });
}

}  // namespace desk::app
