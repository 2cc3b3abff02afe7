#include "component/adapters/helpers.h"

#include <variant>

#include "component/adapters/adapted.h"
#include "component/adapters/database.h"
#include "component/adapters/values.h"
#include "host/calls.h"
#include "host/text.h"

namespace tavrix::component {

namespace {

Variant Text(const std::string& text) {
  return Variant(std::string_view(text));
}

std::int32_t WholeNumber(const Variant& value, const char* what) {
  return host::ToLong32(host::RequiredNumber(ToValue(value), what));
}

class AutomationCodeRule : public Adapted<host::CodeRule> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::string ParentCode(const std::string& code, const std::string& rule) override {
    return host::RequiredText(ToValue(Object().Get(L"ParentCode", {Text(code), Text(rule)})),
                              "ParentCode");
  }
  [[nodiscard]] std::int32_t LevelOf(const std::string& code, const std::string& rule) override {
    return WholeNumber(Object().Get(L"LevelOf", {Text(code), Text(rule)}), "LevelOf");
  }
  [[nodiscard]] std::int32_t LengthAtLevel(std::int32_t level, const std::string& rule) override {
    return WholeNumber(Object().Get(L"LengthAtLevel", {Variant(level), Text(rule)}),
                       "LengthAtLevel");
  }
};

class AutomationDataHelper : public Adapted<host::DataHelper> {
 public:
  using Adapted::Adapted;
  void SetDatabase(const std::shared_ptr<host::Database>& database) override {
    Object().Call(L"SetDatabase", {Variant(DispatchOf(database))});
  }
};

class AutomationNavigator : public Adapted<host::GridNavigator> {
 public:
  AutomationNavigator(ComPtr<IDispatch> object, GridObjects grids)
      : Adapted(std::move(object)), grids_(std::move(grids)) {}
  [[nodiscard]] bool MoveTop(host::Grid& grid) override { return Ask(L"MoveTop", grid); }
  [[nodiscard]] bool MovePrevious(host::Grid& grid) override { return Ask(L"MovePrevious", grid); }
  [[nodiscard]] bool MoveNext(host::Grid& grid) override { return Ask(L"MoveNext", grid); }
  [[nodiscard]] bool MoveBottom(host::Grid& grid) override { return Ask(L"MoveBottom", grid); }
  [[nodiscard]] bool FindNext(host::Grid& grid) override { return Ask(L"FindNext", grid); }
  [[nodiscard]] bool Find(host::Grid& grid, const host::Value& data) override {
    return ToFlag(Object().Get(L"Find", {Variant(grids_(grid)), ToVariant(data)}));
  }
  [[nodiscard]] bool Filter(host::Grid& grid, const host::Value& data) override {
    return ToFlag(Object().Get(L"Filter", {Variant(grids_(grid)), ToVariant(data)}));
  }

 private:
  [[nodiscard]] bool Ask(const wchar_t* member, host::Grid& grid) const {
    return ToFlag(Object().Get(member, {Variant(grids_(grid))}));
  }

  GridObjects grids_;
};

class AutomationSettingsFile : public Adapted<host::SettingsFile> {
 public:
  using Adapted::Adapted;
  void SetFileName(const std::string& path) override { Object().Put(L"FileName", Text(path)); }
  [[nodiscard]] std::string ReadValue(const std::string& section, const std::string& key,
                                      const std::string& fallback) override {
    const host::Value value =
        ToValue(Object().Get(L"ReadValue", {Text(section), Text(key), Text(fallback)}));
    // Null, Empty, Nothing and other objects are no text: the key counts as absent.
    const bool foreign =
        std::holds_alternative<std::shared_ptr<const host::ForeignValue>>(value.Raw());
    return value.IsNull() || foreign ? fallback : value.ToText();
  }
  void WriteValue(const std::string& section, const std::string& key,
                  const std::string& value) override {
    Object().Call(L"WriteValue", {Text(section), Text(key), Text(value)});
  }
};

class AutomationParameters : public Adapted<host::Parameters> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] bool Exists(const std::string& key) override {
    return ToFlag(Object().Get(L"Exists", {Text(key)}));
  }
  [[nodiscard]] host::Value Item(const std::string& key) override {
    // An entry is an object with a value; a plain value is accepted too.
    const Variant entry = Object().Get(L"Item", {Text(key)});
    const auto object = entry.Object();
    return ToValue(object ? LateObject(object).Get(L"Value") : entry);
  }
  void Clear() override { Object().Call(L"Clear"); }
};

}  // namespace

std::shared_ptr<host::CodeRule> AdaptCodeRule(const ComPtr<IDispatch>& object) {
  return Adapt<AutomationCodeRule>(object);
}

std::shared_ptr<host::LogHelper> AdaptLogHelper(const ComPtr<IDispatch>& object) {
  return Adapt<Adapted<host::LogHelper>>(object);
}

std::shared_ptr<host::DataHelper> AdaptDataHelper(const ComPtr<IDispatch>& object) {
  return Adapt<AutomationDataHelper>(object);
}

std::shared_ptr<host::GridNavigator> AdaptGridNavigator(const ComPtr<IDispatch>& object,
                                                        GridObjects grids) {
  return Adapt<AutomationNavigator>(object, std::move(grids));
}

std::shared_ptr<host::SettingsFile> AdaptSettingsFile(const ComPtr<IDispatch>& object) {
  return Adapt<AutomationSettingsFile>(object);
}

std::shared_ptr<host::Parameters> AdaptParameters(const ComPtr<IDispatch>& object) {
  return Adapt<AutomationParameters>(object);
}

ComPtr<IDispatch> DispatchOf(const std::shared_ptr<host::Parameters>& parameters) {
  const auto* adapted = dynamic_cast<const AutomationParameters*>(parameters.get());
  return adapted == nullptr ? nullptr : adapted->Object().Dispatch();
}

}  // namespace tavrix::component
