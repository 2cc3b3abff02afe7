#include "component/adapters/database.h"

#include "com/failure.h"
#include "com/values.h"
#include "component/adapters/adapted.h"
#include "component/adapters/row_sets.h"

namespace tavrix::component {

namespace {

/// The index for statements that want one.
com::Variant FirstResult() {
  return com::Variant(std::int32_t{0});
}

class AutomationRecordset : public Adapted<host::Recordset, IHostRecordset> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] bool EndOfFile() override { return Object().GivenFlagOf(L"EOF"); }
  [[nodiscard]] bool BeginningOfFile() override { return Object().GivenFlagOf(L"BOF"); }
  [[nodiscard]] host::RowSet GetRows() override {
    if (const auto texts = Object().Dispatch().As<IHostRowTexts>())
      return TakeRowTexts(*texts.Get());
    return ToRowSet(Object().Get(L"GetRows"));
  }
  void Find(const std::string& criteria) override {
    Object().Call(L"Find", {com::Variant(criteria)});
  }
  void MoveFirst() override { Object().Call(L"MoveFirst"); }
  [[nodiscard]] host::Value Field(const std::string& name) override {
    return ValueOf(com::Variant(name));
  }
  [[nodiscard]] host::Value Field(int position) override { return ValueOf(com::Variant(position)); }
  void Close() override { Object().Call(L"Close"); }

 private:
  [[nodiscard]] host::Value ValueOf(const com::Variant& key) const {
    const auto field = FieldObject(key);
    if (!field) throw com::ComFailure(DISP_E_TYPEMISMATCH);
    return com::ToValue(com::LateObject(field, IID_IHostField).Get(L"Value"));
  }
  /// `Fields(key)`, or `Fields.Item(key)` where the property takes no argument.
  [[nodiscard]] com::ComPtr<IDispatch> FieldObject(const com::Variant& key) const {
    try {
      if (auto field = Object().ObjectOf(L"Fields", {key})) return field;
    } catch (const com::ComFailure&) {
      // Languages do not name the failure of a property that takes no argument alike.
      try {
        if (auto field = ItemObject(key)) return field;
      } catch (
          const com::ComFailure&) {  // then it was not about the argument: the first one tells why
      }
      throw;
    }
    return ItemObject(key);
  }
  [[nodiscard]] com::ComPtr<IDispatch> ItemObject(const com::Variant& key) const {
    const auto fields = Object().ObjectOf(L"Fields");
    return fields ? com::LateObject(fields, IID_IHostFields).ObjectOf(L"Item", {key}) : nullptr;
  }
};

class AutomationStatement : public Adapted<host::Statement, IHostStatement> {
 public:
  using Adapted::Adapted;
  void Execute() override { Object().Call(L"Execute"); }
  [[nodiscard]] host::Value ScalarValue() override {
    return com::ToValue(Object().GetOptional(L"ScalarValue", FirstResult()));
  }
  [[nodiscard]] std::shared_ptr<host::Recordset> OpenRecordset() override {
    return Adapt<AutomationRecordset>(Object().GetOptional(L"Recordset", FirstResult()).Object());
  }
};

class AutomationError : public Adapted<host::ErrorEntry, IHostError> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::string Description() override { return Object().TextOf(L"Description"); }
  void Clear() override { Object().Call(L"Clear"); }
};

class AutomationProperty : public Adapted<host::Property, IHostProperty> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] host::Value Get() override { return com::ToValue(Object().Get(L"Value")); }
};

class AutomationPropertySet : public Adapted<host::PropertySet, IHostPropertySet> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::shared_ptr<host::Property> Item(const std::string& key) override {
    return Adapt<AutomationProperty>(Object().ObjectOf(L"Item", {com::Variant(key)}));
  }
};

class AutomationDatabase : public Adapted<host::Database, IHostDatabase> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::shared_ptr<host::Statement> OpenSql(const std::string& sql,
                                                         int mode) override {
    return Adapt<AutomationStatement>(
        Object().ObjectOf(L"OpenSql", {com::Variant(sql), com::Variant(mode)}));
  }
  [[nodiscard]] std::shared_ptr<host::ErrorEntry> LastError() override {
    return Adapt<AutomationError>(Object().ObjectOf(L"LastError"));
  }
  [[nodiscard]] std::shared_ptr<host::PropertySet> ConnectionProperties() override {
    return Adapt<AutomationPropertySet>(Object().ObjectOf(L"ConnectionProperties"));
  }
};

}  // namespace

std::shared_ptr<host::Database> AdaptDatabase(const com::ComPtr<IDispatch>& object) {
  return Adapt<AutomationDatabase>(object);
}

com::ComPtr<IDispatch> DispatchOf(const std::shared_ptr<host::Database>& database) {
  const auto* adapted = dynamic_cast<const AutomationDatabase*>(database.get());
  return adapted == nullptr ? nullptr : adapted->Object().Dispatch();
}

}  // namespace tavrix::component
