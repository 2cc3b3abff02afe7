#include "app/automation/com_system.h"

#include <string>

#include "app/automation/com_database.h"
#include "app/automation/com_grid_navigator.h"
#include "app/automation/com_helpers.h"
#include "app/automation/com_mouse_event.h"
#include "app/automation/com_settings.h"
#include "app/automation/give.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

IDispatch* NewHelper(host::SystemObject& system, const std::string& name) {
  if (name == "CodeRule") return NewDispatch<ComCodeRule>(system.CreateCodeRule());
  if (name == "LogHelper") return NewDispatch<ComLogHelper>(system.CreateLogHelper());
  if (name == "GridNavigator") return NewDispatch<ComGridNavigator>(system.CreateGridNavigator());
  if (name == "DataHelper") return NewDispatch<ComDataHelper>(system.CreateDataHelper());
  if (name == "MouseEvent") return NewDispatch<ComMouseEvent>(system.CreateMouseEvent());
  if (name == "SettingsFile") return NewDispatch<ComSettingsFile>(system.CreateSettingsFile());
  if (name == "Parameters") return NewDispatch<ComParameters>(system.CreateParameters());
  throw host::HostError("没有这个助手对象：" + name);
}

}  // namespace

STDMETHODIMP ComSystem::GetDatabase(IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComDatabase>(Own().GetDatabase()); });
}

STDMETHODIMP ComSystem::GetSetting(VARIANT key, BSTR section, IDispatch** result) noexcept {
  return Give(result, [&] {
    return NewDispatch<ComSetting>(Own().GetSetting(ValueOf(key).ToText(), TextOf(section)));
  });
}

STDMETHODIMP ComSystem::NewIdentifier(BSTR table, BSTR column, VARIANT* error,
                                      long* result) noexcept {
  if (error == nullptr) return E_POINTER;
  return Give(result, [&] {
    const auto given = Own().NewIdentifier(TextOf(table), TextOf(column));
    Variant text(std::string_view(given.error));
    VariantClear(error);
    *error = text.Detach();
    return static_cast<long>(given.id);
  });
}

STDMETHODIMP ComSystem::get_Rights(long program, IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComRights>(Own().Rights(program)); });
}

STDMETHODIMP ComSystem::get_Folders(IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComFolders>(Own().Folders()); });
}

STDMETHODIMP ComSystem::CreateHelper(BSTR name, IDispatch** result) noexcept {
  return Give(result, [&] { return NewHelper(Own(), TextOf(name)); });
}

}  // namespace desk::app
