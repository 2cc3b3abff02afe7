#pragma once

#include <memory>

#include "app/automation/over.h"
#include "book/host/recordset.h"
#include "qnSystem.h"

namespace desk::app {

/// A recordset with the members of ADO's that callers use, and its rows in one piece.
class ComRecordset : public Over<book::SnapshotRecordset, IHostRecordset, IHostRowTexts> {
 public:
  using Over::Over;

  STDMETHODIMP get_EOF(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_BOF(VARIANT_BOOL* result) noexcept override;
  /// All rows from the current one on, as an array (field, record); the arguments that limit it in
  /// ADO are not supported.
  STDMETHODIMP GetRows(VARIANT rows, VARIANT start, VARIANT fields,
                       VARIANT* result) noexcept override;
  STDMETHODIMP Find(BSTR criteria) noexcept override;
  STDMETHODIMP get_Fields(IDispatch** result) noexcept override;
  STDMETHODIMP MoveFirst() noexcept override;
  STDMETHODIMP Close() noexcept override;

  /// As `GetRows`.
  STDMETHODIMP GetRowTexts(long* fields, SAFEARRAY** ends, BSTR* text) noexcept override;
};

/// The columns of a recordset, by name without regard to case or by position from 0.
class ComFields : public Over<book::SnapshotRecordset, IHostFields> {
 public:
  using Over::Over;
  STDMETHODIMP get_Item(VARIANT index, IDispatch** result) noexcept override;
  STDMETHODIMP get_Count(long* result) noexcept override;
  STDMETHODIMP get_NewEnum(IUnknown** result) noexcept override;
};

/// One column: its value is that of the recordset's row at the time of asking.
class ComField : public Over<book::SnapshotRecordset, IHostField> {
 public:
  ComField(std::shared_ptr<book::SnapshotRecordset> rows, int position)
      : Over(std::move(rows)), position_(position) {}
  STDMETHODIMP get_Value(VARIANT* result) noexcept override;
  STDMETHODIMP get_Name(BSTR* result) noexcept override;

 private:
  int position_;
};

}  // namespace desk::app
