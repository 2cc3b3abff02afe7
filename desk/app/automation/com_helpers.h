#pragma once

#include <memory>
#include <string>

#include "app/automation/over.h"
#include "host/objects.h"
#include "qnSystem.h"

/// The helpers that have no window and no grid.
namespace desk::app {

class ComCodeRule : public Over<tavrix::host::CodeRule, IHostCodeRule> {
 public:
  using Over::Over;
  STDMETHODIMP ParentCode(BSTR code, BSTR rule, BSTR* result) noexcept override;
  STDMETHODIMP LevelOf(BSTR code, BSTR rule, long* result) noexcept override;
  STDMETHODIMP LengthAtLevel(long level, BSTR rule, long* result) noexcept override;
};

class ComLogHelper : public Over<tavrix::host::LogHelper, IHostLogHelper> {
 public:
  using Over::Over;
};

class ComDataHelper : public Over<tavrix::host::DataHelper, IHostDataHelper> {
 public:
  using Over::Over;
  STDMETHODIMP SetDatabase(IDispatch* database) noexcept override;
};

class ComSettingsFile : public Over<tavrix::host::SettingsFile, IHostSettingsFile> {
 public:
  using Over::Over;
  STDMETHODIMP get_FileName(BSTR* result) noexcept override;
  STDMETHODIMP put_FileName(BSTR path) noexcept override;
  STDMETHODIMP ReadValue(BSTR section, BSTR key, BSTR fallback, BSTR* result) noexcept override;
  STDMETHODIMP WriteValue(BSTR section, BSTR key, BSTR value) noexcept override;

 private:
  std::string path_;
};

class ComParameters : public Over<tavrix::host::Parameters, IHostParameters> {
 public:
  using Over::Over;
  STDMETHODIMP Exists(VARIANT key, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_Item(VARIANT key, IDispatch** result) noexcept override;
  STDMETHODIMP Clear() noexcept override;
};

/// One entry. Its value is written only in a list that can be written to.
class ComParameter : public Over<tavrix::host::Parameters, IHostParameter> {
 public:
  ComParameter(std::shared_ptr<tavrix::host::Parameters> parameters, std::string key)
      : Over(std::move(parameters)), key_(std::move(key)) {}
  STDMETHODIMP get_Value(VARIANT* result) noexcept override;
  STDMETHODIMP put_Value(VARIANT value) noexcept override;

 private:
  std::string key_;
};

}  // namespace desk::app
