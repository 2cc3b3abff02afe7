#pragma once

#include <memory>
#include <string>

#include "app/com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

/// The helpers that have no window and no grid.
namespace desk::app {

class CodeRuleFace : public DispatchObject<IHostCodeRule> {
 public:
  explicit CodeRuleFace(std::shared_ptr<tavrix::host::CodeRule> rule) : rule_(std::move(rule)) {}
  STDMETHODIMP ParentCode(BSTR code, BSTR rule, BSTR* result) override;
  STDMETHODIMP LevelOf(BSTR code, BSTR rule, long* result) override;
  STDMETHODIMP LengthAtLevel(long level, BSTR rule, long* result) override;

 private:
  std::shared_ptr<tavrix::host::CodeRule> rule_;
};

class LogHelperFace : public DispatchObject<IHostLogHelper> {
 public:
  explicit LogHelperFace(std::shared_ptr<tavrix::host::LogHelper> helper)
      : helper_(std::move(helper)) {}

 private:
  std::shared_ptr<tavrix::host::LogHelper> helper_;
};

class DataHelperFace : public DispatchObject<IHostDataHelper> {
 public:
  explicit DataHelperFace(std::shared_ptr<tavrix::host::DataHelper> helper)
      : helper_(std::move(helper)) {}
  STDMETHODIMP SetDatabase(IDispatch* database) override;

 private:
  std::shared_ptr<tavrix::host::DataHelper> helper_;
};

class SettingsFileFace : public DispatchObject<IHostSettingsFile> {
 public:
  explicit SettingsFileFace(std::shared_ptr<tavrix::host::SettingsFile> file)
      : file_(std::move(file)) {}
  STDMETHODIMP get_FileName(BSTR* result) override;
  STDMETHODIMP put_FileName(BSTR path) override;
  STDMETHODIMP ReadValue(BSTR section, BSTR key, BSTR fallback, BSTR* result) override;
  STDMETHODIMP WriteValue(BSTR section, BSTR key, BSTR value) override;

 private:
  std::shared_ptr<tavrix::host::SettingsFile> file_;
  std::string path_;
};

class ParametersFace : public DispatchObject<IHostParameters> {
 public:
  explicit ParametersFace(std::shared_ptr<tavrix::host::Parameters> parameters)
      : parameters_(std::move(parameters)) {}
  STDMETHODIMP Exists(VARIANT key, VARIANT_BOOL* result) override;
  STDMETHODIMP get_Item(VARIANT key, IDispatch** result) override;
  STDMETHODIMP Clear() override;

 private:
  std::shared_ptr<tavrix::host::Parameters> parameters_;
};

/// One entry. Its value is written only in a list that can be written to.
class ParameterFace : public DispatchObject<IHostParameter> {
 public:
  ParameterFace(std::shared_ptr<tavrix::host::Parameters> parameters, std::string key)
      : parameters_(std::move(parameters)), key_(std::move(key)) {}
  STDMETHODIMP get_Value(VARIANT* result) override;
  STDMETHODIMP put_Value(VARIANT value) override;

 private:
  std::shared_ptr<tavrix::host::Parameters> parameters_;
  std::string key_;
};

}  // namespace desk::app
