#pragma once

#include <memory>

#include "app/automation/over.h"
#include "host/objects.h"
#include "qnSystem.h"

/// What the system object knows beside the database: settings, rights, folders.
namespace desk::app {

class ComSetting : public Over<tavrix::host::SettingEntry, IHostSetting> {
 public:
  using Over::Over;
  STDMETHODIMP get_Value(BSTR* result) noexcept override;
};

class ComRights : public Over<tavrix::host::RightsObject, IHostRights> {
 public:
  using Over::Over;
  STDMETHODIMP get_CanAdd(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_CanEdit(VARIANT_BOOL* result) noexcept override;
};

class ComFolders : public Over<tavrix::host::FoldersObject, IHostFolders> {
 public:
  using Over::Over;
  STDMETHODIMP get_UserFolder(BSTR* result) noexcept override;
};

}  // namespace desk::app
