#pragma once

#include <memory>

#include "com/dispatch_object.h"
#include "com/object_registry.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

class ComDatabase : public tavrix::com::DispatchObject<IHostDatabase> {
 public:
  explicit ComDatabase(std::shared_ptr<tavrix::host::Database> database)
      : database_(std::move(database)) {}

  /// The portable object behind `object`; null when that is not one of these.
  [[nodiscard]] static std::shared_ptr<tavrix::host::Database> Behind(IDispatch* object);

  STDMETHODIMP OpenSql(BSTR sql, long mode, IDispatch** result) noexcept override;
  STDMETHODIMP get_LastError(IDispatch** result) noexcept override;
  STDMETHODIMP get_ConnectionProperties(IDispatch** result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::Database> database_;
  // Under its own address: tells these objects from others.
  tavrix::com::ObjectRegistry<ComDatabase> entry_{static_cast<IHostDatabase*>(this), *this};
};

class ComErrorEntry : public tavrix::com::DispatchObject<IHostError> {
 public:
  explicit ComErrorEntry(std::shared_ptr<tavrix::host::ErrorEntry> entry)
      : entry_(std::move(entry)) {}
  STDMETHODIMP get_Description(BSTR* result) noexcept override;
  STDMETHODIMP Clear() noexcept override;

 private:
  std::shared_ptr<tavrix::host::ErrorEntry> entry_;
};

class ComPropertySet : public tavrix::com::DispatchObject<IHostPropertySet> {
 public:
  explicit ComPropertySet(std::shared_ptr<tavrix::host::PropertySet> properties)
      : properties_(std::move(properties)) {}
  STDMETHODIMP get_Item(VARIANT key, IDispatch** result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::PropertySet> properties_;
};

class ComProperty : public tavrix::com::DispatchObject<IHostProperty> {
 public:
  explicit ComProperty(std::shared_ptr<tavrix::host::Property> property)
      : property_(std::move(property)) {}
  STDMETHODIMP get_Value(VARIANT* result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::Property> property_;
};

class ComStatement : public tavrix::com::DispatchObject<IHostStatement> {
 public:
  explicit ComStatement(std::shared_ptr<tavrix::host::Statement> statement)
      : statement_(std::move(statement)) {}
  STDMETHODIMP Execute() noexcept override;
  STDMETHODIMP ScalarValue(VARIANT index, VARIANT* result) noexcept override;
  STDMETHODIMP Recordset(VARIANT index, IDispatch** result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::Statement> statement_;
};

}  // namespace desk::app
