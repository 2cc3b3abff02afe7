#include "com/values.h"
#include "component/adapters/adapted.h"
#include "component/adapters/database.h"
#include "component/adapters/helpers.h"
#include "component/adapters/host_objects.h"
#include "component/adapters/mouse_event.h"
#include "host/calls.h"

namespace tavrix::component {

namespace {

class AutomationSetting : public Adapted<host::SettingEntry, IHostSetting> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::string Get() override {
    return host::NoObject(com::ToValue(Object().Get(L"Value")), "GetSetting").ToText();
  }
};

class AutomationRights : public Adapted<host::RightsObject, IHostRights> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] bool CanAdd() override { return Object().FlagOf(L"CanAdd"); }
  [[nodiscard]] bool CanEdit() override { return Object().FlagOf(L"CanEdit"); }
};

class AutomationFolders : public Adapted<host::FoldersObject, IHostFolders> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::string UserFolder() override { return Object().TextOf(L"UserFolder"); }
};

class AutomationSystem : public Adapted<host::SystemObject, IHostSystem> {
 public:
  AutomationSystem(com::ComPtr<IDispatch> object, ServedView view)
      : Adapted(std::move(object)), view_(std::move(view)) {}

  [[nodiscard]] std::shared_ptr<host::Database> GetDatabase() override {
    return AdaptDatabase(Object().ObjectOf(L"GetDatabase"));
  }
  [[nodiscard]] std::shared_ptr<host::SettingEntry> GetSetting(
      const std::string& key, const std::string& section) override {
    return Adapt<AutomationSetting>(
        Object().ObjectOf(L"GetSetting", {com::Variant(key), com::Variant(section)}));
  }
  [[nodiscard]] Identifier NewIdentifier(const std::string& table,
                                         const std::string& column) override {
    com::Variant error = com::Variant(std::string_view());
    const com::Variant id = Object().GetWithReference(
        L"NewIdentifier", {com::Variant(table), com::Variant(column)}, error);
    std::string failure = host::NoObject(com::ToValue(error), "NewIdentifier").ToText();
    if (!failure.empty()) return {0, std::move(failure)};
    return {host::RequiredLong(com::ToValue(id), "NewIdentifier"), {}};
  }
  [[nodiscard]] std::shared_ptr<host::RightsObject> Rights(std::int32_t program) override {
    return Adapt<AutomationRights>(Object().ObjectOf(L"Rights", {com::Variant(program)}));
  }
  [[nodiscard]] std::shared_ptr<host::FoldersObject> Folders() override {
    return Adapt<AutomationFolders>(Object().ObjectOf(L"Folders"));
  }

  [[nodiscard]] std::shared_ptr<host::CodeRule> CreateCodeRule() override {
    return AdaptCodeRule(Helper("CodeRule"));
  }
  [[nodiscard]] std::shared_ptr<host::LogHelper> CreateLogHelper() override {
    return AdaptLogHelper(Helper("LogHelper"));
  }
  [[nodiscard]] std::shared_ptr<host::GridNavigator> CreateGridNavigator() override {
    return AdaptGridNavigator(Helper("GridNavigator"), view_.grids);
  }
  [[nodiscard]] std::shared_ptr<host::DataHelper> CreateDataHelper() override {
    return AdaptDataHelper(Helper("DataHelper"));
  }
  [[nodiscard]] std::shared_ptr<host::MouseEvent> CreateMouseEvent() override {
    return AdaptMouseEvent(Helper("MouseEvent"), view_.owner);
  }
  [[nodiscard]] std::shared_ptr<host::SettingsFile> CreateSettingsFile() override {
    return AdaptSettingsFile(Helper("SettingsFile"));
  }
  [[nodiscard]] std::shared_ptr<host::Parameters> CreateParameters() override {
    return AdaptParameters(Helper("Parameters"), view_.owner);
  }

 private:
  [[nodiscard]] com::ComPtr<IDispatch> Helper(const char* name) const {
    return Object().ObjectOf(L"CreateHelper", {com::Variant(std::string_view(name))});
  }

  ServedView view_;
};

}  // namespace

std::shared_ptr<host::SystemObject> AdaptSystem(const com::ComPtr<IDispatch>& object,
                                                ServedView view) {
  return Adapt<AutomationSystem>(object, std::move(view));
}

}  // namespace tavrix::component
