#include "support/recorder.h"

#include <algorithm>
#include <functional>

#include "support/recorded_helpers.h"
#include "support/recorder_log.h"

namespace tavrix::test {

namespace {

class RecordedRows : public Wrapper<host::Recordset> {
 public:
  RecordedRows(std::shared_ptr<host::Recordset> inner, Log log)
      : Wrapper(std::move(inner), std::move(log)) {
    ++log_->open_recordsets;
  }
  bool EndOfFile() override {
    return Plain("Recordset.EOF", [&] { return inner_->EndOfFile(); });
  }
  bool BeginningOfFile() override {
    return Plain("Recordset.BOF", [&] { return inner_->BeginningOfFile(); });
  }
  host::RowSet GetRows() override {
    return Plain("Recordset.GetRows", [&] { return inner_->GetRows(); });
  }
  void Find(const std::string& criteria) override {
    Plain("Recordset.Find", [&] { inner_->Find(criteria); });
  }
  void MoveFirst() override {
    Plain("Recordset.MoveFirst", [&] { inner_->MoveFirst(); });
  }
  host::Value Field(const std::string& name) override {
    return Nullable("Recordset.Fields", [&] { return inner_->Field(name); });
  }
  host::Value Field(int position) override {
    return Nullable("Recordset.Fields", [&] { return inner_->Field(position); });
  }
  void Close() override {
    if (!std::exchange(closed_, true)) --log_->open_recordsets;
    Plain("Recordset.Close", [&] { inner_->Close(); });
  }

 private:
  bool closed_ = false;
};

class RecordedStatement : public host::Statement {
 public:
  RecordedStatement(std::shared_ptr<host::Statement> inner, Log log, std::string sql)
      : inner_(std::move(inner)), log_(std::move(log)), sql_(std::move(sql)) {}
  void Execute() override {
    log_->Statement(sql_);
    (void)log_->Note({.name = "Statement.Execute"});
    inner_->Execute();
  }
  host::Value ScalarValue() override {
    log_->Statement(sql_);
    const auto fault = log_->Note(
        {.name = "Statement.ScalarValue", .can_give_null = true, .can_give_object = true});
    return fault ? WrongValue(fault->fault) : inner_->ScalarValue();
  }
  std::shared_ptr<host::Recordset> OpenRecordset() override {
    log_->Statement(sql_);
    if (log_->Note({.name = "Statement.Recordset", .can_give_null = true})) return nullptr;
    auto rows = inner_->OpenRecordset();
    if (!rows) return nullptr;
    return std::make_shared<RecordedRows>(std::move(rows), log_);
  }

 private:
  std::shared_ptr<host::Statement> inner_;
  Log log_;
  std::string sql_;
};

class RecordedError : public Wrapper<host::ErrorEntry> {
 public:
  using Wrapper::Wrapper;
  std::string Description() override {
    const auto fault = log_->Note({.name = "ErrorEntry.Description", .can_give_error_text = true});
    return fault ? fault->text : inner_->Description();
  }
  void Clear() override {
    Plain("ErrorEntry.Clear", [&] { inner_->Clear(); });
  }
};

class RecordedProperty : public Wrapper<host::Property> {
 public:
  using Wrapper::Wrapper;
  host::Value Get() override {
    return Nullable("Property.Value", [&] { return inner_->Get(); });
  }
};

class RecordedProperties : public Wrapper<host::PropertySet> {
 public:
  using Wrapper::Wrapper;
  std::shared_ptr<host::Property> Item(const std::string& key) override {
    return Object<RecordedProperty>("PropertySet.Item", [&] { return inner_->Item(key); });
  }
};

class RecordedDatabase : public Wrapper<host::Database> {
 public:
  using Wrapper::Wrapper;
  std::shared_ptr<host::Statement> OpenSql(const std::string& sql, int mode) override {
    if (log_->Note({.name = "Database.OpenSql", .can_give_null = true})) return nullptr;
    auto statement = inner_->OpenSql(sql, mode);
    if (!statement) return nullptr;
    return std::make_shared<RecordedStatement>(std::move(statement), log_, sql);
  }
  std::shared_ptr<host::ErrorEntry> LastError() override {
    return Object<RecordedError>("Database.LastError", [&] { return inner_->LastError(); });
  }
  std::shared_ptr<host::PropertySet> ConnectionProperties() override {
    return Object<RecordedProperties>("Database.ConnectionProperties",
                                      [&] { return inner_->ConnectionProperties(); });
  }
};

class RecordedSystem : public Wrapper<host::SystemObject> {
 public:
  using Wrapper::Wrapper;
  std::shared_ptr<host::Database> GetDatabase() override {
    return Object<RecordedDatabase>("GetDatabase", [&] { return inner_->GetDatabase(); });
  }
  std::shared_ptr<host::SettingEntry> GetSetting(const std::string& key,
                                                 const std::string& section) override {
    return Object<RecordedSetting>("GetSetting", [&] { return inner_->GetSetting(key, section); });
  }
  Identifier NewIdentifier(const std::string& table, const std::string& column) override {
    const auto fault = log_->Note({.name = "NewIdentifier",
                                   .can_give_null = true,
                                   .can_give_error_text = true,
                                   .detail = table + "|" + column});
    if (fault && fault->fault == Fault::kNull) return {-1, {}};  // that of no row
    if (fault) return {0, fault->text};
    return inner_->NewIdentifier(table, column);
  }
  std::shared_ptr<host::RightsObject> Rights(std::int32_t program) override {
    return Object<RecordedRights>("Rights", [&] { return inner_->Rights(program); });
  }
  std::shared_ptr<host::FoldersObject> Folders() override {
    return Object<RecordedFolders>("Folders", [&] { return inner_->Folders(); });
  }
  std::shared_ptr<host::CodeRule> CreateCodeRule() override {
    return Object<RecordedCodeRule>("CodeRule", [&] { return inner_->CreateCodeRule(); });
  }
  std::shared_ptr<host::LogHelper> CreateLogHelper() override {
    return Object<RecordedLogHelper>("LogHelper", [&] { return inner_->CreateLogHelper(); });
  }
  std::shared_ptr<host::GridNavigator> CreateGridNavigator() override {
    return Object<RecordedNavigator>("GridNavigator",
                                     [&] { return inner_->CreateGridNavigator(); });
  }
  std::shared_ptr<host::DataHelper> CreateDataHelper() override {
    return Object<RecordedDataHelper>("DataHelper", [&] { return inner_->CreateDataHelper(); });
  }
  std::shared_ptr<host::MouseEvent> CreateMouseEvent() override {
    return Object<RecordedMouseEvent>("MouseEvent", [&] { return inner_->CreateMouseEvent(); });
  }
  std::shared_ptr<host::SettingsFile> CreateSettingsFile() override {
    return Object<RecordedSettingsFile>("SettingsFile",
                                        [&] { return inner_->CreateSettingsFile(); });
  }
  std::shared_ptr<host::Parameters> CreateParameters() override {
    return Object<RecordedParameters>("Parameters", [&] { return inner_->CreateParameters(); });
  }
};

}  // namespace

Recorder::Recorder(std::shared_ptr<host::SystemObject> inner)
    : log_(std::make_shared<RecorderLog>()),
      system_(std::make_shared<RecordedSystem>(std::move(inner), log_)) {}

const std::vector<std::string>& Recorder::Statements() const {
  return log_->statements;
}

void Recorder::OnCall(std::function<void(const HostCall&)> deed) {
  log_->on_call = std::move(deed);
}

const std::vector<HostCall>& Recorder::Calls() const {
  return log_->calls;
}

int Recorder::Count(const std::string& name) const {
  return static_cast<int>(std::ranges::count(log_->calls, name, &HostCall::name));
}

void Recorder::Clear() {
  log_->statements.clear();
  log_->calls.clear();
  log_->planned.reset();
  log_->fired = false;
}

void Recorder::FailAt(int n, Fault fault, std::string text) {
  log_->planned = {.calls_left = n, .name = {}, .fault = fault, .text = std::move(text)};
  log_->fired = false;
}

void Recorder::FailNext(const std::string& name, Fault fault, std::string text) {
  log_->planned = {.calls_left = {}, .name = name, .fault = fault, .text = std::move(text)};
  log_->fired = false;
}

void Recorder::BeforeEach(std::function<void(const std::string&)> deed) {
  log_->before = std::move(deed);
}

int Recorder::OpenRecordsets() const {
  return log_->open_recordsets;
}

void Recorder::OnRelease(std::function<void(const std::string&)> deed) {
  log_->on_release = std::move(deed);
}

bool Recorder::Fired() const {
  return log_->fired;
}

}  // namespace tavrix::test
