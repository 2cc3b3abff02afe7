#pragma once

#include "component/controls/child_control_object.h"
#include "viewkit/grid/flex_grid.h"

namespace tavrix::component {

/// VSFlexGrid for callers.
class GridObject : public ChildControlObject<IFlexGrid, viewkit::FlexGrid, IGridRows> {
 public:
  using ChildControlObject::ChildControlObject;

  // IGridRows
  STDMETHODIMP GetRows(long first, long rows, SAFEARRAY** levels, SAFEARRAY** ends,
                       SAFEARRAY** text) noexcept override;
  STDMETHODIMP TextVersion(hyper* result) noexcept override;
  STDMETHODIMP GetStates(long first, long rows, SAFEARRAY** states) noexcept override;
  STDMETHODIMP SetStates(long first, SAFEARRAY* states) noexcept override;

  // IFlexGrid
  STDMETHODIMP get_TextMatrix(long row, long col, BSTR* result) noexcept override;
  STDMETHODIMP get_Rows(long* result) noexcept override;
  STDMETHODIMP get_Cols(long* result) noexcept override;
  STDMETHODIMP get_FixedRows(long* result) noexcept override;
  STDMETHODIMP get_FixedCols(long* result) noexcept override;
  STDMETHODIMP get_FrozenCols(long* result) noexcept override;
  STDMETHODIMP put_FrozenCols(long value) noexcept override;
  STDMETHODIMP get_Row(long* result) noexcept override;
  STDMETHODIMP put_Row(long value) noexcept override;
  STDMETHODIMP get_Col(long* result) noexcept override;
  STDMETHODIMP put_Col(long value) noexcept override;
  STDMETHODIMP get_TopRow(long* result) noexcept override;
  STDMETHODIMP put_TopRow(long value) noexcept override;
  STDMETHODIMP get_RowHidden(long row, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_RowHidden(long row, VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_RowHeight(long row, long* result) noexcept override;
  STDMETHODIMP get_IsSubtotal(long row, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_RowOutlineLevel(long row, long* result) noexcept override;
  STDMETHODIMP get_IsCollapsed(long row, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_IsCollapsed(long row, VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_ColWidth(long col, long* result) noexcept override;
  STDMETHODIMP put_ColWidth(long col, long value) noexcept override;
  STDMETHODIMP get_ColHidden(long col, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_ColHidden(long col, VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_ColAlignment(long col, long* result) noexcept override;
  STDMETHODIMP get_ColDataType(long col, long* result) noexcept override;
  STDMETHODIMP get_ColFormat(long col, BSTR* result) noexcept override;
  STDMETHODIMP get_MergeCol(long col, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP get_Sort(long* result) noexcept override;
  STDMETHODIMP put_Sort(long value) noexcept override;
  STDMETHODIMP get_SelectionMode(long* result) noexcept override;
  STDMETHODIMP get_SelectedRows(long* result) noexcept override;
  STDMETHODIMP get_SelectedRow(long n, long* result) noexcept override;
  STDMETHODIMP get_IsSelected(long row, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_IsSelected(long row, VARIANT_BOOL value) noexcept override;
  STDMETHODIMP get_CellForeColor(long row, long col, OLE_COLOR* result) noexcept override;
  STDMETHODIMP get_CellBackColor(long row, long col, OLE_COLOR* result) noexcept override;
  STDMETHODIMP get_CellFontBold(long row, long col, VARIANT_BOOL* result) noexcept override;
};

}  // namespace tavrix::component
