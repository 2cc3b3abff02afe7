#include "component/adapters/adapted.h"
#include "component/adapters/database.h"
#include "component/adapters/helpers.h"
#include "component/adapters/host_objects.h"
#include "component/adapters/mouse_event.h"
#include "component/adapters/values.h"
#include "host/calls.h"

namespace tavrix::component {

namespace {

Variant Text(const std::string& text) {
  return Variant(std::string_view(text));
}

class AutomationSetting : public Adapted<host::SettingEntry> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::string Get() override {
    return host::NoObject(ToValue(Object().Get(L"Value")), "GetSetting").ToText();
  }
};

class AutomationRights : public Adapted<host::RightsObject> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] bool CanAdd() override { return ToFlag(Object().Get(L"CanAdd")); }
  [[nodiscard]] bool CanEdit() override { return ToFlag(Object().Get(L"CanEdit")); }
};

class AutomationFolders : public Adapted<host::FoldersObject> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::string UserFolder() override {
    return ToValue(Object().Get(L"UserFolder")).ToText();
  }
};

class AutomationSystem : public Adapted<host::SystemObject> {
 public:
  AutomationSystem(ComPtr<IDispatch> object, GridObjects grids)
      : Adapted(std::move(object)), grids_(std::move(grids)) {}

  [[nodiscard]] std::shared_ptr<host::Database> GetDatabase() override {
    return AdaptDatabase(Object().ObjectOf(L"GetDatabase"));
  }
  [[nodiscard]] std::shared_ptr<host::SettingEntry> GetSetting(
      const std::string& key, const std::string& section) override {
    return Adapt<AutomationSetting>(Object().ObjectOf(L"GetSetting", {Text(key), Text(section)}));
  }
  [[nodiscard]] Identifier NewIdentifier(const std::string& table,
                                         const std::string& column) override {
    Variant error = Text({});
    const Variant id =
        Object().GetWithReference(L"NewIdentifier", {Text(table), Text(column)}, error);
    return {ToValue(id).ToLong(), ToValue(error).ToText()};
  }
  [[nodiscard]] std::shared_ptr<host::RightsObject> Rights(std::int32_t program) override {
    return Adapt<AutomationRights>(Object().ObjectOf(L"Rights", {Variant(program)}));
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
    return AdaptGridNavigator(Helper("GridNavigator"), grids_);
  }
  [[nodiscard]] std::shared_ptr<host::DataHelper> CreateDataHelper() override {
    return AdaptDataHelper(Helper("DataHelper"));
  }
  [[nodiscard]] std::shared_ptr<host::MouseEvent> CreateMouseEvent() override {
    return AdaptMouseEvent(Helper("MouseEvent"));
  }
  [[nodiscard]] std::shared_ptr<host::SettingsFile> CreateSettingsFile() override {
    return AdaptSettingsFile(Helper("SettingsFile"));
  }
  [[nodiscard]] std::shared_ptr<host::Parameters> CreateParameters() override {
    return AdaptParameters(Helper("Parameters"));
  }

 private:
  [[nodiscard]] ComPtr<IDispatch> Helper(const char* name) const {
    return Object().ObjectOf(L"CreateHelper", {Variant(std::string_view(name))});
  }

  GridObjects grids_;
};

}  // namespace

std::shared_ptr<host::SystemObject> AdaptSystem(const ComPtr<IDispatch>& object,
                                                GridObjects grids) {
  return Adapt<AutomationSystem>(object, std::move(grids));
}

}  // namespace tavrix::component
