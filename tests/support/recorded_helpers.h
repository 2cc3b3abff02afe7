#pragma once

#include <memory>
#include <string>

#include "support/recorded_object.h"

/// The helper objects of a host, each call of which is kept.
namespace tavrix::test {

class RecordedSetting : public Wrapper<host::SettingEntry> {
 public:
  using Wrapper::Wrapper;
  std::string Get() override {
    return Plain("SettingEntry.Value", [&] { return inner_->Get(); });
  }
};

class RecordedRights : public Wrapper<host::RightsObject> {
 public:
  using Wrapper::Wrapper;
  bool CanAdd() override {
    return Plain("Rights.CanAdd", [&] { return inner_->CanAdd(); });
  }
  bool CanEdit() override {
    return Plain("Rights.CanEdit", [&] { return inner_->CanEdit(); });
  }
};

class RecordedFolders : public Wrapper<host::FoldersObject> {
 public:
  using Wrapper::Wrapper;
  std::string UserFolder() override {
    return Plain("Folders.UserFolder", [&] { return inner_->UserFolder(); });
  }
};

class RecordedCodeRule : public Wrapper<host::CodeRule> {
 public:
  using Wrapper::Wrapper;
  std::string ParentCode(const std::string& code, const std::string& rule) override {
    return Plain("CodeRule.ParentCode", [&] { return inner_->ParentCode(code, rule); });
  }
  std::int32_t LevelOf(const std::string& code, const std::string& rule) override {
    return Plain("CodeRule.LevelOf", [&] { return inner_->LevelOf(code, rule); });
  }
  std::int32_t LengthAtLevel(std::int32_t level, const std::string& rule) override {
    return Plain("CodeRule.LengthAtLevel", [&] { return inner_->LengthAtLevel(level, rule); });
  }
};

class RecordedLogHelper : public Wrapper<host::LogHelper> {
 public:
  using Wrapper::Wrapper;
};

class RecordedDataHelper : public host::DataHelper {
 public:
  RecordedDataHelper(std::shared_ptr<host::DataHelper> inner, Log log)
      : inner_(std::move(inner)), log_(std::move(log)) {}
  void SetDatabase(const std::shared_ptr<host::Database>& database) override {
    (void)log_->Note({.name = "DataHelper.SetDatabase"});
    inner_->SetDatabase(database);
  }

 private:
  std::shared_ptr<host::DataHelper> inner_;
  Log log_;
};

class RecordedNavigator : public Wrapper<host::GridNavigator> {
 public:
  using Wrapper::Wrapper;
  bool MoveTop(host::Grid& grid) override {
    return Plain("GridNavigator.MoveTop", [&] { return inner_->MoveTop(grid); });
  }
  bool MovePrevious(host::Grid& grid) override {
    return Plain("GridNavigator.MovePrevious", [&] { return inner_->MovePrevious(grid); });
  }
  bool MoveNext(host::Grid& grid) override {
    return Plain("GridNavigator.MoveNext", [&] { return inner_->MoveNext(grid); });
  }
  bool MoveBottom(host::Grid& grid) override {
    return Plain("GridNavigator.MoveBottom", [&] { return inner_->MoveBottom(grid); });
  }
  bool Find(host::Grid& grid, const host::Value& data) override {
    return Plain("GridNavigator.Find", [&] { return inner_->Find(grid, data); });
  }
  bool FindNext(host::Grid& grid) override {
    return Plain("GridNavigator.FindNext", [&] { return inner_->FindNext(grid); });
  }
  bool Filter(host::Grid& grid, const host::Value& data) override {
    return Plain("GridNavigator.Filter", [&] { return inner_->Filter(grid, data); });
  }
};

class RecordedMouseEvent : public Wrapper<host::MouseEvent> {
 public:
  using Wrapper::Wrapper;
  void SetRange(std::int32_t maximum) override {
    Plain("MouseEvent.SetRange", [&] { inner_->SetRange(maximum); });
  }
  void SetRange(std::int32_t maximum, std::int32_t first_row) override {
    Plain("MouseEvent.SetRange", [&] { inner_->SetRange(maximum, first_row); });
  }
  void Attach(std::intptr_t window) override {
    Plain("MouseEvent.Attach", [&] { inner_->Attach(window); });
  }
  void Detach() override {
    Plain("MouseEvent.Detach", [&] { inner_->Detach(); });
  }
  std::intptr_t AttachedTo() override {
    return Plain("MouseEvent.AttachedTo", [&] { return inner_->AttachedTo(); });
  }
  void SetPosition(std::int32_t position) override {
    Plain("MouseEvent.Position", [&] { inner_->SetPosition(position); });
  }
  void OnWheel(std::function<void(std::int32_t)> handler) override {
    inner_->OnWheel(std::move(handler));  // not a call of the contract: the event's other half
  }
};

class RecordedSettingsFile : public Wrapper<host::SettingsFile> {
 public:
  using Wrapper::Wrapper;
  void SetFileName(const std::string& path) override {
    Plain("SettingsFile.FileName", [&] { inner_->SetFileName(path); });
  }
  std::string ReadValue(const std::string& section, const std::string& key,
                        const std::string& fallback) override {
    (void)log_->Note({.name = "SettingsFile.ReadValue", .detail = section + "|" + key});
    return inner_->ReadValue(section, key, fallback);
  }
  void WriteValue(const std::string& section, const std::string& key,
                  const std::string& value) override {
    Plain("SettingsFile.WriteValue", [&] { inner_->WriteValue(section, key, value); });
  }
};

class RecordedParameters : public Wrapper<host::Parameters> {
 public:
  using Wrapper::Wrapper;
  bool Exists(const std::string& key) override {
    return Plain("Parameters.Exists", [&] { return inner_->Exists(key); });
  }
  host::Value Item(const std::string& key) override {
    return Nullable("Parameters.Item", [&] { return inner_->Item(key); });
  }
  void Clear() override {
    Plain("Parameters.Clear", [&] { inner_->Clear(); });
  }
};

}  // namespace tavrix::test
