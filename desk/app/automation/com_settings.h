#pragma once

#include <memory>

#include "com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

/// What the system object knows beside the database: settings, rights, folders.
namespace desk::app {

class ComSetting : public tavrix::com::DispatchObject<IHostSetting> {
 public:
  explicit ComSetting(std::shared_ptr<tavrix::host::SettingEntry> entry)
      : entry_(std::move(entry)) {}
  STDMETHODIMP get_Value(BSTR* result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::SettingEntry> entry_;
};

class ComRights : public tavrix::com::DispatchObject<IHostRights> {
 public:
  explicit ComRights(std::shared_ptr<tavrix::host::RightsObject> rights)
      : rights_(std::move(rights)) {}
  STDMETHODIMP get_CanAdd(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_CanEdit(VARIANT_BOOL* result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::RightsObject> rights_;
};

class ComFolders : public tavrix::com::DispatchObject<IHostFolders> {
 public:
  explicit ComFolders(std::shared_ptr<tavrix::host::FoldersObject> folders)
      : folders_(std::move(folders)) {}
  STDMETHODIMP get_UserFolder(BSTR* result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::FoldersObject> folders_;
};

}  // namespace desk::app
