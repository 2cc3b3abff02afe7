#pragma once

#include <memory>

#include "app/com/dispatch_object.h"
#include "book/host/recordset.h"
#include "qnSystem.h"

namespace desk::app {

/// A recordset with the members of ADO's that callers use, and its rows in one piece.
class RecordsetFace : public DispatchObject<IHostRecordset, IHostRowTexts> {
 public:
  explicit RecordsetFace(std::shared_ptr<book::SnapshotRecordset> rows) : rows_(std::move(rows)) {}

  STDMETHODIMP get_EOF(VARIANT_BOOL* result) override;
  STDMETHODIMP get_BOF(VARIANT_BOOL* result) override;
  /// All rows from the current one on, as an array (field, record); the arguments that limit it in
  /// ADO are not supported.
  STDMETHODIMP GetRows(VARIANT rows, VARIANT start, VARIANT fields, VARIANT* result) override;
  STDMETHODIMP Find(BSTR criteria) override;
  STDMETHODIMP get_Fields(IDispatch** result) override;
  STDMETHODIMP MoveFirst() override;
  STDMETHODIMP Close() override;

  /// As `GetRows`.
  STDMETHODIMP GetRowTexts(long* fields, SAFEARRAY** ends, BSTR* text) override;

 private:
  std::shared_ptr<book::SnapshotRecordset> rows_;
};

/// The columns of a recordset, by name without regard to case or by position from 0.
class FieldsFace : public DispatchObject<IHostFields> {
 public:
  explicit FieldsFace(std::shared_ptr<book::SnapshotRecordset> rows) : rows_(std::move(rows)) {}
  STDMETHODIMP get_Item(VARIANT index, IDispatch** result) override;
  STDMETHODIMP get_Count(long* result) override;
  STDMETHODIMP get_NewEnum(IUnknown** result) override;

 private:
  std::shared_ptr<book::SnapshotRecordset> rows_;
};

/// One column: its value is that of the recordset's row at the time of asking.
class FieldFace : public DispatchObject<IHostField> {
 public:
  FieldFace(std::shared_ptr<book::SnapshotRecordset> rows, int position)
      : rows_(std::move(rows)), position_(position) {}
  STDMETHODIMP get_Value(VARIANT* result) override;
  STDMETHODIMP get_Name(BSTR* result) override;

 private:
  std::shared_ptr<book::SnapshotRecordset> rows_;
  int position_;
};

}  // namespace desk::app
