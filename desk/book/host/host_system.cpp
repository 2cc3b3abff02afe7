#include "book/host/host_system.h"

#include <exception>
#include <utility>

#include "book/host/database_object.h"
#include "book/host/grid_navigator.h"
#include "book/host/parameters.h"
#include "book/host/settings_file.h"
#include "book/host/wheel_source.h"
#include "book/ledger/account_search.h"
#include "book/ledger/code_rule.h"
#include "book/session/identifiers.h"
#include "book/session/settings.h"
#include "host/report.h"

namespace desk::book {

namespace {

class GivenRights : public host::RightsObject {
 public:
  explicit GivenRights(Rights rights) : rights_(rights) {}
  [[nodiscard]] bool CanAdd() override { return rights_.can_add; }
  [[nodiscard]] bool CanEdit() override { return rights_.can_edit; }

 private:
  Rights rights_;
};

class UserFolders : public host::FoldersObject {
 public:
  explicit UserFolders(std::string folder) : folder_(std::move(folder)) {}
  [[nodiscard]] std::string UserFolder() override { return folder_; }

 private:
  std::string folder_;
};

class KeptDatabase : public host::DataHelper {
 public:
  void SetDatabase(const std::shared_ptr<host::Database>& database) override {
    database_ = database;
  }

 private:
  std::shared_ptr<host::Database> database_;
};

}  // namespace

HostSystem::HostSystem(std::shared_ptr<Session> session,
                       std::shared_ptr<const HostEnvironment> environment)
    : session_(std::move(session)), environment_(std::move(environment)) {}

std::shared_ptr<host::Database> HostSystem::GetDatabase() {
  return std::make_shared<DatabaseObject>(session_);
}

std::shared_ptr<host::SettingEntry> HostSystem::GetSetting(const std::string& key,
                                                           const std::string& section) {
  return std::make_shared<Given<host::SettingEntry, std::string>>(
      ReadSetting(*session_, section, key));
}

host::SystemObject::Identifier HostSystem::NewIdentifier(const std::string& table,
                                                         const std::string& column) {
  try {
    return {book::NewIdentifier(*session_, table, column), {}};
  } catch (const std::exception& error) {
    return {0, host::ErrorText(error)};
  }
}

std::shared_ptr<host::RightsObject> HostSystem::Rights(std::int32_t program) {
  const auto& own = environment_->rights_by_program;
  const auto found = own.find(program);
  return std::make_shared<GivenRights>(found == own.end() ? environment_->rights : found->second);
}

std::shared_ptr<host::FoldersObject> HostSystem::Folders() {
  return std::make_shared<UserFolders>(environment_->user_folder);
}

std::shared_ptr<host::CodeRule> HostSystem::CreateCodeRule() {
  return std::make_shared<CodeRuleArithmetic>();
}

std::shared_ptr<host::LogHelper> HostSystem::CreateLogHelper() {
  return std::make_shared<host::LogHelper>();
}

std::shared_ptr<host::GridNavigator> HostSystem::CreateGridNavigator() {
  return std::make_shared<GridSearch>(environment_->tally,
                                      [session = session_](const FoldedPattern& pattern) {
                                        return CodesByMnemonic(*session, pattern);
                                      });
}

std::shared_ptr<host::DataHelper> HostSystem::CreateDataHelper() {
  return std::make_shared<KeptDatabase>();
}

std::shared_ptr<host::MouseEvent> HostSystem::CreateMouseEvent() {
  if (environment_->make_mouse_event) return environment_->make_mouse_event();
  return std::make_shared<WheelSource>();
}

std::shared_ptr<host::SettingsFile> HostSystem::CreateSettingsFile() {
  return std::make_shared<SharedSettingsFile>();
}

std::shared_ptr<host::Parameters> HostSystem::CreateParameters() {
  return std::make_shared<ParameterList>();
}

}  // namespace desk::book
