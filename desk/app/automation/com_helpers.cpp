#include "app/automation/com_helpers.h"

#include "app/automation/com_database.h"
#include "app/automation/give.h"
#include "book/host/parameters.h"

namespace desk::app {

namespace host = tavrix::host;

STDMETHODIMP ComCodeRule::ParentCode(BSTR code, BSTR rule, BSTR* result) noexcept {
  return Give(result, [&] { return NewBstr(Own().ParentCode(TextOf(code), TextOf(rule))); });
}

STDMETHODIMP ComCodeRule::LevelOf(BSTR code, BSTR rule, long* result) noexcept {
  return Give(result, [&] { return long{Own().LevelOf(TextOf(code), TextOf(rule))}; });
}

STDMETHODIMP ComCodeRule::LengthAtLevel(long level, BSTR rule, long* result) noexcept {
  return Give(result, [&] { return long{Own().LengthAtLevel(level, TextOf(rule))}; });
}

STDMETHODIMP ComDataHelper::SetDatabase(IDispatch* database) noexcept {
  return Guarded([&] {
    const std::shared_ptr<host::Database> own = ComDatabase::Behind(database);
    if (!own) throw host::HostError("不是本程序的数据库对象");
    Own().SetDatabase(own);
  });
}

STDMETHODIMP ComSettingsFile::get_FileName(BSTR* result) noexcept {
  return Give(result, [&] { return NewBstr(path_); });
}

STDMETHODIMP ComSettingsFile::put_FileName(BSTR path) noexcept {
  return Guarded([&] {
    const std::string name = TextOf(path);
    Own().SetFileName(name);
    path_ = name;
  });
}

STDMETHODIMP ComSettingsFile::ReadValue(BSTR section, BSTR key, BSTR fallback,
                                        BSTR* result) noexcept {
  return Give(result, [&] {
    return NewBstr(Own().ReadValue(TextOf(section), TextOf(key), TextOf(fallback)));
  });
}

STDMETHODIMP ComSettingsFile::WriteValue(BSTR section, BSTR key, BSTR value) noexcept {
  return Guarded([&] { Own().WriteValue(TextOf(section), TextOf(key), TextOf(value)); });
}

STDMETHODIMP ComParameters::Exists(VARIANT key, VARIANT_BOOL* result) noexcept {
  return Give(result, [&] { return Flag(Own().Exists(ValueOf(key).ToText())); });
}

STDMETHODIMP ComParameters::get_Item(VARIANT key, IDispatch** result) noexcept {
  return Give(result, [&] { return NewDispatch<ComParameter>(Shared(), ValueOf(key).ToText()); });
}

STDMETHODIMP ComParameters::Clear() noexcept {
  return Guarded([&] { Own().Clear(); });
}

STDMETHODIMP ComParameter::get_Value(VARIANT* result) noexcept {
  return GiveValue(result, [&] { return Own().Item(key_); });
}

STDMETHODIMP ComParameter::put_Value(VARIANT value) noexcept {
  return Guarded([&] {
    const auto list = std::dynamic_pointer_cast<book::ParameterList>(Shared());
    if (!list) throw host::HostError("参数不能修改");
    list->Set(key_, ValueOf(value));
  });
}

}  // namespace desk::app
