#include "support/recorder.h"

#include <algorithm>
#include <functional>
#include <type_traits>

#include "support/recorder_log.h"

namespace tavrix::test {

namespace {

using Log = std::shared_ptr<RecorderLog>;

/// What is no value at all.
class SomeObject : public host::ForeignValue {
 public:
  [[nodiscard]] std::string ToText() const override { return {}; }
  [[nodiscard]] double ToNumber() const override { return 0; }
  [[nodiscard]] bool IsObject() const override { return true; }
};

host::Value WrongValue(Fault fault) {
  return fault == Fault::kObject ? host::Value(std::make_shared<SomeObject>()) : host::Value();
}

/// A wrapper of one host object. `Inner` is what it wraps.
template <class Inner>
class Wrapper : public Inner {
 public:
  Wrapper(std::shared_ptr<Inner> inner, Log log) : inner_(std::move(inner)), log_(std::move(log)) {}

 protected:
  /// A call that gives nothing, or something that has no null.
  template <class Body>
  auto Plain(const char* name, const Body& body) {
    (void)log_->Note({.name = name});
    return body();
  }
  host::Value Nullable(const char* name, const std::function<host::Value()>& body) {
    const auto fault = log_->Note({.name = name, .can_give_null = true, .can_give_object = true});
    return fault ? WrongValue(fault->fault) : body();
  }
  /// A call that gives an object, which is wrapped in turn.
  template <class Wrapped, class Body>
  std::invoke_result_t<Body> Object(const char* name, const Body& body) {
    if (log_->Note({.name = name, .can_give_null = true})) return nullptr;
    auto object = body();
    if (!object) return nullptr;
    auto wrapped = std::make_shared<Wrapped>(std::move(object), log_);
    Wrapped* const bare = wrapped.get();
    return {bare, [wrapped = std::move(wrapped), log = log_, name](Wrapped*) mutable {
              wrapped.reset();
              if (log->on_release) log->on_release(name);
            }};
  }

  std::shared_ptr<Inner> inner_;
  Log log_;
};

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
