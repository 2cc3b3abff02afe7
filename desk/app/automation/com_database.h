#pragma once

#include <memory>

#include "app/automation/over.h"
#include "com/object_registry.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

class ComDatabase : public Over<tavrix::host::Database, IHostDatabase> {
 public:
  using Over::Over;

  /// The portable object behind `object`; null when that is not one of these.
  [[nodiscard]] static std::shared_ptr<tavrix::host::Database> Behind(IDispatch* object);

  STDMETHODIMP OpenSql(BSTR sql, long mode, IDispatch** result) noexcept override;
  STDMETHODIMP get_LastError(IDispatch** result) noexcept override;
  STDMETHODIMP get_ConnectionProperties(IDispatch** result) noexcept override;

 private:
  // Under its own address: tells these objects from others.
  tavrix::com::ObjectRegistry<ComDatabase> entry_{static_cast<IHostDatabase*>(this), *this};
};

class ComErrorEntry : public Over<tavrix::host::ErrorEntry, IHostError> {
 public:
  using Over::Over;
  STDMETHODIMP get_Description(BSTR* result) noexcept override;
  STDMETHODIMP Clear() noexcept override;
};

class ComPropertySet : public Over<tavrix::host::PropertySet, IHostPropertySet> {
 public:
  using Over::Over;
  STDMETHODIMP get_Item(VARIANT key, IDispatch** result) noexcept override;
};

class ComProperty : public Over<tavrix::host::Property, IHostProperty> {
 public:
  using Over::Over;
  STDMETHODIMP get_Value(VARIANT* result) noexcept override;
};

class ComStatement : public Over<tavrix::host::Statement, IHostStatement> {
 public:
  using Over::Over;
  STDMETHODIMP Execute() noexcept override;
  STDMETHODIMP ScalarValue(VARIANT index, VARIANT* result) noexcept override;
  STDMETHODIMP Recordset(VARIANT index, IDispatch** result) noexcept override;
};

}  // namespace desk::app
