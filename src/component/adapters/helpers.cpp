#include "component/adapters/helpers.h"

#include <variant>

#include "com/values.h"
#include "component/adapters/adapted.h"
#include "component/adapters/database.h"

namespace tavrix::component {

namespace {

class AutomationCodeRule : public Adapted<host::CodeRule, IHostCodeRule> {
 public:
  using Adapted::Adapted;
  [[nodiscard]] std::string ParentCode(const std::string& code, const std::string& rule) override {
    return Object().GivenTextOf(L"ParentCode", {com::Variant(code), com::Variant(rule)});
  }
  [[nodiscard]] std::int32_t LevelOf(const std::string& code, const std::string& rule) override {
    return Object().LongOf(L"LevelOf", {com::Variant(code), com::Variant(rule)});
  }
  [[nodiscard]] std::int32_t LengthAtLevel(std::int32_t level, const std::string& rule) override {
    return Object().LongOf(L"LengthAtLevel", {com::Variant(level), com::Variant(rule)});
  }
};

class AutomationDataHelper : public Adapted<host::DataHelper, IHostDataHelper> {
 public:
  using Adapted::Adapted;
  void SetDatabase(const std::shared_ptr<host::Database>& database) override {
    Object().Call(L"SetDatabase", {com::Variant(DispatchOf(database))});
  }
};

class AutomationNavigator : public Adapted<host::GridNavigator, IHostGridNavigator> {
 public:
  AutomationNavigator(com::ComPtr<IDispatch> object, GridObjects grids)
      : Adapted(std::move(object)), grids_(std::move(grids)) {}
  [[nodiscard]] bool MoveTop(host::Grid& grid) override { return Ask(L"MoveTop", grid); }
  [[nodiscard]] bool MovePrevious(host::Grid& grid) override { return Ask(L"MovePrevious", grid); }
  [[nodiscard]] bool MoveNext(host::Grid& grid) override { return Ask(L"MoveNext", grid); }
  [[nodiscard]] bool MoveBottom(host::Grid& grid) override { return Ask(L"MoveBottom", grid); }
  [[nodiscard]] bool FindNext(host::Grid& grid) override { return Ask(L"FindNext", grid); }
  [[nodiscard]] bool Find(host::Grid& grid, const host::Value& data) override {
    return Object().FlagOf(L"Find", {com::Variant(grids_(grid)), com::ToVariant(data)});
  }
  [[nodiscard]] bool Filter(host::Grid& grid, const host::Value& data) override {
    return Object().FlagOf(L"Filter", {com::Variant(grids_(grid)), com::ToVariant(data)});
  }

 private:
  [[nodiscard]] bool Ask(const wchar_t* member, host::Grid& grid) const {
    return Object().FlagOf(member, {com::Variant(grids_(grid))});
  }

  GridObjects grids_;
};

class AutomationSettingsFile : public Adapted<host::SettingsFile, IHostSettingsFile> {
 public:
  using Adapted::Adapted;
  void SetFileName(const std::string& path) override {
    Object().Put(L"FileName", com::Variant(path));
  }
  [[nodiscard]] std::string ReadValue(const std::string& section, const std::string& key,
                                      const std::string& fallback) override {
    const host::Value kept = com::ToValue(Object().Get(
        L"ReadValue", {com::Variant(section), com::Variant(key), com::Variant(fallback)}));
    // What is no text was not kept by anyone: as an absent key.
    return kept.IsNull() || kept.IsObject() ? fallback : kept.ToText();
  }
  void WriteValue(const std::string& section, const std::string& key,
                  const std::string& value) override {
    Object().Call(L"WriteValue", {com::Variant(section), com::Variant(key), com::Variant(value)});
  }
};

class AutomationParameters : public Adapted<host::Parameters, IHostParameters> {
 public:
  AutomationParameters(com::ComPtr<IDispatch> object, SharedOwner owner)
      : Adapted(std::move(object)), owner_(std::move(owner)) {}
  [[nodiscard]] bool Exists(const std::string& key) override {
    return Object().FlagOf(L"Exists", {com::Variant(key)});
  }
  [[nodiscard]] host::Value Item(const std::string& key) override {
    // An entry is an object with a value; a plain value is accepted too.
    const com::Variant entry = Object().Get(L"Item", {com::Variant(key)});
    const auto object = entry.Object();
    return com::ToValue(object ? com::LateObject(object, IID_IHostParameter).Get(L"Value") : entry);
  }
  void Clear() override {
    if (!owner_->Ended() || !Object().IsOfScript()) Object().Call(L"Clear");
  }

 private:
  SharedOwner owner_;
};

}  // namespace

std::shared_ptr<host::CodeRule> AdaptCodeRule(const com::ComPtr<IDispatch>& object) {
  return Adapt<AutomationCodeRule>(object);
}

std::shared_ptr<host::LogHelper> AdaptLogHelper(const com::ComPtr<IDispatch>& object) {
  return Adapt<Adapted<host::LogHelper, IHostLogHelper>>(object);
}

std::shared_ptr<host::DataHelper> AdaptDataHelper(const com::ComPtr<IDispatch>& object) {
  return Adapt<AutomationDataHelper>(object);
}

std::shared_ptr<host::GridNavigator> AdaptGridNavigator(const com::ComPtr<IDispatch>& object,
                                                        GridObjects grids) {
  return Adapt<AutomationNavigator>(object, std::move(grids));
}

std::shared_ptr<host::SettingsFile> AdaptSettingsFile(const com::ComPtr<IDispatch>& object) {
  return Adapt<AutomationSettingsFile>(object);
}

std::shared_ptr<host::Parameters> AdaptParameters(const com::ComPtr<IDispatch>& object,
                                                  SharedOwner owner) {
  return Adapt<AutomationParameters>(object, std::move(owner));
}

com::ComPtr<IDispatch> DispatchOf(const std::shared_ptr<host::Parameters>& parameters) {
  const auto* adapted = dynamic_cast<const AutomationParameters*>(parameters.get());
  return adapted == nullptr ? nullptr : adapted->Object().Dispatch();
}

}  // namespace tavrix::component
