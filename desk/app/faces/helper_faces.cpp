#include "app/faces/helper_faces.h"

#include "app/faces/database_face.h"
#include "app/faces/give.h"
#include "book/host/parameters.h"

namespace desk::app {

namespace host = tavrix::host;

STDMETHODIMP CodeRuleFace::ParentCode(BSTR code, BSTR rule, BSTR* result) {
  return Give(result, [&] { return NewBstr(rule_->ParentCode(TextOf(code), TextOf(rule))); });
}

STDMETHODIMP CodeRuleFace::LevelOf(BSTR code, BSTR rule, long* result) {
  return Give(result, [&] { return long{rule_->LevelOf(TextOf(code), TextOf(rule))}; });
}

STDMETHODIMP CodeRuleFace::LengthAtLevel(long level, BSTR rule, long* result) {
  return Give(result, [&] { return long{rule_->LengthAtLevel(level, TextOf(rule))}; });
}

STDMETHODIMP DataHelperFace::SetDatabase(IDispatch* database) {
  return Guarded([&] {
    const std::shared_ptr<host::Database> own = DatabaseFace::Behind(database);
    if (!own) throw host::HostError("不是本程序的数据库对象");
    helper_->SetDatabase(own);
  });
}

STDMETHODIMP SettingsFileFace::get_FileName(BSTR* result) {
  return Give(result, [&] { return NewBstr(path_); });
}

STDMETHODIMP SettingsFileFace::put_FileName(BSTR path) {
  return Guarded([&] {
    const std::string name = TextOf(path);
    file_->SetFileName(name);
    path_ = name;
  });
}

STDMETHODIMP SettingsFileFace::ReadValue(BSTR section, BSTR key, BSTR fallback, BSTR* result) {
  return Give(result, [&] {
    return NewBstr(file_->ReadValue(TextOf(section), TextOf(key), TextOf(fallback)));
  });
}

STDMETHODIMP SettingsFileFace::WriteValue(BSTR section, BSTR key, BSTR value) {
  return Guarded([&] { file_->WriteValue(TextOf(section), TextOf(key), TextOf(value)); });
}

STDMETHODIMP ParametersFace::Exists(VARIANT key, VARIANT_BOOL* result) {
  return Give(result, [&] { return Flag(parameters_->Exists(ValueOf(key).ToText())); });
}

STDMETHODIMP ParametersFace::get_Item(VARIANT key, IDispatch** result) {
  return Give(result, [&] { return NewFace<ParameterFace>(parameters_, ValueOf(key).ToText()); });
}

STDMETHODIMP ParametersFace::Clear() {
  return Guarded([&] { parameters_->Clear(); });
}

STDMETHODIMP ParameterFace::get_Value(VARIANT* result) {
  return GiveValue(result, [&] { return parameters_->Item(key_); });
}

STDMETHODIMP ParameterFace::put_Value(VARIANT value) {
  return Guarded([&] {
    const auto list = std::dynamic_pointer_cast<book::ParameterList>(parameters_);
    if (!list) throw host::HostError("参数不能修改");
    list->Set(key_, ValueOf(value));
  });
}

}  // namespace desk::app
