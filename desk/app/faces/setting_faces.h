#pragma once

#include <memory>

#include "app/com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

/// What the system object knows beside the database: settings, rights, folders.
namespace desk::app {

class SettingFace : public DispatchObject<IHostSetting> {
 public:
  explicit SettingFace(std::shared_ptr<tavrix::host::SettingEntry> entry)
      : entry_(std::move(entry)) {}
  STDMETHODIMP get_Value(BSTR* result) override;

 private:
  std::shared_ptr<tavrix::host::SettingEntry> entry_;
};

class RightsFace : public DispatchObject<IHostRights> {
 public:
  explicit RightsFace(std::shared_ptr<tavrix::host::RightsObject> rights)
      : rights_(std::move(rights)) {}
  STDMETHODIMP get_CanAdd(VARIANT_BOOL* result) override;
  STDMETHODIMP get_CanEdit(VARIANT_BOOL* result) override;

 private:
  std::shared_ptr<tavrix::host::RightsObject> rights_;
};

class FoldersFace : public DispatchObject<IHostFolders> {
 public:
  explicit FoldersFace(std::shared_ptr<tavrix::host::FoldersObject> folders)
      : folders_(std::move(folders)) {}
  STDMETHODIMP get_UserFolder(BSTR* result) override;

 private:
  std::shared_ptr<tavrix::host::FoldersObject> folders_;
};

}  // namespace desk::app
