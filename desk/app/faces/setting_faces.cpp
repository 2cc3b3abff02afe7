#include "app/faces/setting_faces.h"

#include "app/faces/give.h"

namespace desk::app {

STDMETHODIMP SettingFace::get_Value(BSTR* result) {
  return Give(result, [&] { return NewBstr(entry_->Get()); });
}

STDMETHODIMP RightsFace::get_CanAdd(VARIANT_BOOL* result) {
  return Give(result, [&] { return Flag(rights_->CanAdd()); });
}

STDMETHODIMP RightsFace::get_CanEdit(VARIANT_BOOL* result) {
  return Give(result, [&] { return Flag(rights_->CanEdit()); });
}

STDMETHODIMP FoldersFace::get_UserFolder(BSTR* result) {
  return Give(result, [&] { return NewBstr(folders_->UserFolder()); });
}

}  // namespace desk::app
