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
  STDMETHODIMP get_Rows(long* result) noexcept override { return Get(&Grid::Rows, result); }
  STDMETHODIMP get_Cols(long* result) noexcept override { return Get(&Grid::Cols, result); }
  STDMETHODIMP get_FixedRows(long* result) noexcept override {
    return Get(&Grid::FixedRows, result);
  }
  STDMETHODIMP get_FixedCols(long* result) noexcept override {
    return Get(&Grid::FixedCols, result);
  }
  STDMETHODIMP get_FrozenCols(long* result) noexcept override {
    return Get(&Grid::FrozenCols, result);
  }
  STDMETHODIMP put_FrozenCols(long value) noexcept override {
    return Set(&Grid::SetFrozenCols, value);
  }
  STDMETHODIMP get_Row(long* result) noexcept override { return Get(&Grid::Row, result); }
  STDMETHODIMP put_Row(long value) noexcept override;
  STDMETHODIMP get_Col(long* result) noexcept override { return Get(&Grid::Col, result); }
  STDMETHODIMP put_Col(long value) noexcept override { return Set(&Grid::SetCol, value); }
  STDMETHODIMP get_TopRow(long* result) noexcept override { return Get(&Grid::TopRow, result); }
  STDMETHODIMP put_TopRow(long value) noexcept override { return Set(&Grid::SetTopRow, value); }
  STDMETHODIMP get_RowHidden(long row, VARIANT_BOOL* result) noexcept override {
    return Get(&Grid::RowHidden, row, result);
  }
  STDMETHODIMP put_RowHidden(long row, VARIANT_BOOL value) noexcept override {
    return Set(&Grid::SetRowHidden, row, value);
  }
  STDMETHODIMP get_RowHeight(long row, long* result) noexcept override {
    return Get(&Grid::RowHeight, row, result);
  }
  STDMETHODIMP get_IsSubtotal(long row, VARIANT_BOOL* result) noexcept override {
    return Get(&Grid::IsSubtotal, row, result);
  }
  STDMETHODIMP get_RowOutlineLevel(long row, long* result) noexcept override {
    return Get(&Grid::RowOutlineLevel, row, result);
  }
  STDMETHODIMP get_IsCollapsed(long row, VARIANT_BOOL* result) noexcept override {
    return Get(&Grid::IsCollapsed, row, result);
  }
  STDMETHODIMP put_IsCollapsed(long row, VARIANT_BOOL value) noexcept override {
    return Set(&Grid::SetCollapsed, row, value);
  }
  STDMETHODIMP get_ColWidth(long col, long* result) noexcept override {
    return Get(&Grid::ColWidth, col, result);
  }
  STDMETHODIMP put_ColWidth(long col, long value) noexcept override;
  STDMETHODIMP get_ColHidden(long col, VARIANT_BOOL* result) noexcept override {
    return Get(&Grid::ColHidden, col, result);
  }
  STDMETHODIMP put_ColHidden(long col, VARIANT_BOOL value) noexcept override {
    return Set(&Grid::SetColHidden, col, value);
  }
  STDMETHODIMP get_ColAlignment(long col, long* result) noexcept override;
  STDMETHODIMP get_ColDataType(long col, long* result) noexcept override;
  STDMETHODIMP get_ColFormat(long col, BSTR* result) noexcept override;
  STDMETHODIMP get_MergeCol(long col, VARIANT_BOOL* result) noexcept override {
    return Get(&Grid::MergeCol, col, result);
  }
  STDMETHODIMP get_Sort(long* result) noexcept override;
  STDMETHODIMP put_Sort(long value) noexcept override;
  STDMETHODIMP get_SelectionMode(long* result) noexcept override;
  STDMETHODIMP get_SelectedRows(long* result) noexcept override {
    return Get(&Grid::SelectedRows, result);
  }
  STDMETHODIMP get_SelectedRow(long n, long* result) noexcept override {
    return Get(&Grid::SelectedRow, n, result);
  }
  STDMETHODIMP get_IsSelected(long row, VARIANT_BOOL* result) noexcept override {
    return Get(&Grid::IsSelected, row, result);
  }
  STDMETHODIMP put_IsSelected(long row, VARIANT_BOOL value) noexcept override {
    return Set(&Grid::SetSelected, row, value);
  }
  STDMETHODIMP get_CellForeColor(long row, long col, OLE_COLOR* result) noexcept override;
  STDMETHODIMP get_CellBackColor(long row, long col, OLE_COLOR* result) noexcept override;
  STDMETHODIMP get_CellFontBold(long row, long col, VARIANT_BOOL* result) noexcept override;

 private:
  using Grid = viewkit::FlexGrid;
  // What a member of the grid gives, and what it is set to: of the grid, of a row or of a column.
  [[nodiscard]] HRESULT Get(int (Grid::*get)() const, long* result,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Get(int (Grid::*get)(int) const, long index, long* result,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Get(bool (Grid::*get)(int) const, long index, VARIANT_BOOL* result,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Set(void (Grid::*set)(int), long value,
                            const char* member = __builtin_FUNCTION()) noexcept;
  [[nodiscard]] HRESULT Set(void (Grid::*set)(int, bool), long index, VARIANT_BOOL value,
                            const char* member = __builtin_FUNCTION()) noexcept;
};

}  // namespace tavrix::component
