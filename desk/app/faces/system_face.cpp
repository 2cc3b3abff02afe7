#include "app/faces/system_face.h"

#include <string>

#include "app/faces/database_face.h"
#include "app/faces/give.h"
#include "app/faces/grid_navigator_face.h"
#include "app/faces/helper_faces.h"
#include "app/faces/mouse_event_face.h"
#include "app/faces/setting_faces.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

IDispatch* NewHelper(host::SystemObject& system, const std::string& name) {
  if (name == "CodeRule") return NewFace<CodeRuleFace>(system.CreateCodeRule());
  if (name == "LogHelper") return NewFace<LogHelperFace>(system.CreateLogHelper());
  if (name == "GridNavigator") return NewFace<GridNavigatorFace>(system.CreateGridNavigator());
  if (name == "DataHelper") return NewFace<DataHelperFace>(system.CreateDataHelper());
  if (name == "MouseEvent") return NewFace<MouseEventFace>(system.CreateMouseEvent());
  if (name == "SettingsFile") return NewFace<SettingsFileFace>(system.CreateSettingsFile());
  if (name == "Parameters") return NewFace<ParametersFace>(system.CreateParameters());
  throw host::HostError("没有这个助手对象：" + name);
}

}  // namespace

STDMETHODIMP SystemFace::GetDatabase(IDispatch** result) {
  return Give(result, [&] { return NewFace<DatabaseFace>(system_->GetDatabase()); });
}

STDMETHODIMP SystemFace::GetSetting(VARIANT key, BSTR section, IDispatch** result) {
  return Give(result, [&] {
    return NewFace<SettingFace>(system_->GetSetting(ValueOf(key).ToText(), TextOf(section)));
  });
}

STDMETHODIMP SystemFace::NewIdentifier(BSTR table, BSTR column, VARIANT* error, long* result) {
  if (error == nullptr) return E_POINTER;
  return Give(result, [&] {
    const auto given = system_->NewIdentifier(TextOf(table), TextOf(column));
    Variant text(std::string_view(given.error));
    VariantClear(error);
    *error = text.Detach();
    return static_cast<long>(given.id);
  });
}

STDMETHODIMP SystemFace::get_Rights(long program, IDispatch** result) {
  return Give(result, [&] { return NewFace<RightsFace>(system_->Rights(program)); });
}

STDMETHODIMP SystemFace::get_Folders(IDispatch** result) {
  return Give(result, [&] { return NewFace<FoldersFace>(system_->Folders()); });
}

STDMETHODIMP SystemFace::CreateHelper(BSTR name, IDispatch** result) {
  return Give(result, [&] { return NewHelper(*system_, TextOf(name)); });
}

}  // namespace desk::app
