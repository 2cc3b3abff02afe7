#pragma once

#include <memory>

#include "app/com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

class DatabaseFace : public DispatchObject<IHostDatabase> {
 public:
  explicit DatabaseFace(std::shared_ptr<tavrix::host::Database> database)
      : database_(std::move(database)) {}

  /// The portable object behind `face`; null when it is not one of these.
  [[nodiscard]] static std::shared_ptr<tavrix::host::Database> Behind(IDispatch* face);

  STDMETHODIMP OpenSql(BSTR sql, long mode, IDispatch** result) override;
  STDMETHODIMP get_LastError(IDispatch** result) override;
  STDMETHODIMP get_ConnectionProperties(IDispatch** result) override;

 private:
  [[nodiscard]] void* InterfaceOf(REFIID iid) override;

  std::shared_ptr<tavrix::host::Database> database_;
};

class ErrorFace : public DispatchObject<IHostError> {
 public:
  explicit ErrorFace(std::shared_ptr<tavrix::host::ErrorEntry> entry) : entry_(std::move(entry)) {}
  STDMETHODIMP get_Description(BSTR* result) override;
  STDMETHODIMP Clear() override;

 private:
  std::shared_ptr<tavrix::host::ErrorEntry> entry_;
};

class PropertySetFace : public DispatchObject<IHostPropertySet> {
 public:
  explicit PropertySetFace(std::shared_ptr<tavrix::host::PropertySet> properties)
      : properties_(std::move(properties)) {}
  STDMETHODIMP get_Item(VARIANT key, IDispatch** result) override;

 private:
  std::shared_ptr<tavrix::host::PropertySet> properties_;
};

class PropertyFace : public DispatchObject<IHostProperty> {
 public:
  explicit PropertyFace(std::shared_ptr<tavrix::host::Property> property)
      : property_(std::move(property)) {}
  STDMETHODIMP get_Value(VARIANT* result) override;

 private:
  std::shared_ptr<tavrix::host::Property> property_;
};

class StatementFace : public DispatchObject<IHostStatement> {
 public:
  explicit StatementFace(std::shared_ptr<tavrix::host::Statement> statement)
      : statement_(std::move(statement)) {}
  STDMETHODIMP Execute() override;
  STDMETHODIMP ScalarValue(VARIANT index, VARIANT* result) override;
  STDMETHODIMP Recordset(VARIANT index, IDispatch** result) override;

 private:
  std::shared_ptr<tavrix::host::Statement> statement_;
};

}  // namespace desk::app
