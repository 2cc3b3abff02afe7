#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "book/host/grid_navigator.h"
#include "book/session/session.h"
#include "host/objects.h"

namespace desk::book {

struct Rights {
  bool can_add = true;
  bool can_edit = true;
};

/// What the application around a book decides.
struct HostEnvironment {
  std::string user_folder = ".";  ///< of the current user, without a trailing separator
  Rights rights;                  ///< for programs that `rights_by_program` does not name
  std::map<std::int32_t, Rights> rights_by_program;
  /// Makes mouse-wheel sources; without it they have no window to listen to.
  std::function<std::shared_ptr<host::MouseEvent>()> make_mouse_event;
  /// What the last search of one of its navigators met.
  std::shared_ptr<SearchTally> tally = std::make_shared<SearchTally>();
};

/// `pcSystem` over an open book.
class HostSystem : public host::SystemObject {
 public:
  HostSystem(std::shared_ptr<Session> session, std::shared_ptr<const HostEnvironment> environment);

  [[nodiscard]] std::shared_ptr<host::Database> GetDatabase() override;
  [[nodiscard]] std::shared_ptr<host::SettingEntry> GetSetting(const std::string& key,
                                                               const std::string& section) override;
  [[nodiscard]] Identifier NewIdentifier(const std::string& table,
                                         const std::string& column) override;
  [[nodiscard]] std::shared_ptr<host::RightsObject> Rights(std::int32_t program) override;
  [[nodiscard]] std::shared_ptr<host::FoldersObject> Folders() override;
  [[nodiscard]] std::shared_ptr<host::CodeRule> CreateCodeRule() override;
  [[nodiscard]] std::shared_ptr<host::LogHelper> CreateLogHelper() override;
  [[nodiscard]] std::shared_ptr<host::GridNavigator> CreateGridNavigator() override;
  [[nodiscard]] std::shared_ptr<host::DataHelper> CreateDataHelper() override;
  [[nodiscard]] std::shared_ptr<host::MouseEvent> CreateMouseEvent() override;
  [[nodiscard]] std::shared_ptr<host::SettingsFile> CreateSettingsFile() override;
  [[nodiscard]] std::shared_ptr<host::Parameters> CreateParameters() override;

 private:
  std::shared_ptr<Session> session_;
  std::shared_ptr<const HostEnvironment> environment_;
};

}  // namespace desk::book
