#pragma once

#include <memory>
#include <string>

#include "com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

/// The helpers that have no window and no grid.
namespace desk::app {

class ComCodeRule : public tavrix::com::DispatchObject<IHostCodeRule> {
 public:
  explicit ComCodeRule(std::shared_ptr<tavrix::host::CodeRule> rule) : rule_(std::move(rule)) {}
  STDMETHODIMP ParentCode(BSTR code, BSTR rule, BSTR* result) noexcept override;
  STDMETHODIMP LevelOf(BSTR code, BSTR rule, long* result) noexcept override;
  STDMETHODIMP LengthAtLevel(long level, BSTR rule, long* result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::CodeRule> rule_;
};

class ComLogHelper : public tavrix::com::DispatchObject<IHostLogHelper> {
 public:
  explicit ComLogHelper(std::shared_ptr<tavrix::host::LogHelper> helper)
      : helper_(std::move(helper)) {}

 private:
  std::shared_ptr<tavrix::host::LogHelper> helper_;
};

class ComDataHelper : public tavrix::com::DispatchObject<IHostDataHelper> {
 public:
  explicit ComDataHelper(std::shared_ptr<tavrix::host::DataHelper> helper)
      : helper_(std::move(helper)) {}
  STDMETHODIMP SetDatabase(IDispatch* database) noexcept override;

 private:
  std::shared_ptr<tavrix::host::DataHelper> helper_;
};

class ComSettingsFile : public tavrix::com::DispatchObject<IHostSettingsFile> {
 public:
  explicit ComSettingsFile(std::shared_ptr<tavrix::host::SettingsFile> file)
      : file_(std::move(file)) {}
  STDMETHODIMP get_FileName(BSTR* result) noexcept override;
  STDMETHODIMP put_FileName(BSTR path) noexcept override;
  STDMETHODIMP ReadValue(BSTR section, BSTR key, BSTR fallback, BSTR* result) noexcept override;
  STDMETHODIMP WriteValue(BSTR section, BSTR key, BSTR value) noexcept override;

 private:
  std::shared_ptr<tavrix::host::SettingsFile> file_;
  std::string path_;
};

class ComParameters : public tavrix::com::DispatchObject<IHostParameters> {
 public:
  explicit ComParameters(std::shared_ptr<tavrix::host::Parameters> parameters)
      : parameters_(std::move(parameters)) {}
  STDMETHODIMP Exists(VARIANT key, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_Item(VARIANT key, IDispatch** result) noexcept override;
  STDMETHODIMP Clear() noexcept override;

 private:
  std::shared_ptr<tavrix::host::Parameters> parameters_;
};

/// One entry. Its value is written only in a list that can be written to.
class ComParameter : public tavrix::com::DispatchObject<IHostParameter> {
 public:
  ComParameter(std::shared_ptr<tavrix::host::Parameters> parameters, std::string key)
      : parameters_(std::move(parameters)), key_(std::move(key)) {}
  STDMETHODIMP get_Value(VARIANT* result) noexcept override;
  STDMETHODIMP put_Value(VARIANT value) noexcept override;

 private:
  std::shared_ptr<tavrix::host::Parameters> parameters_;
  std::string key_;
};

}  // namespace desk::app
