#pragma once

#include "component/controls/child_face.h"
#include "viewkit/grid/flex_grid.h"

namespace tavrix::component {

/// VSFlexGrid for callers.
class GridFace : public ChildFace<IFlexGrid, viewkit::FlexGrid> {
 public:
  explicit GridFace(ModelReference<viewkit::FlexGrid> model);

  /// `IGridRows`.
  [[nodiscard]] HRESULT GetRows(long first, long rows, SAFEARRAY** levels, SAFEARRAY** ends,
                                SAFEARRAY** text) noexcept;
  [[nodiscard]] HRESULT TextVersion(hyper* result) noexcept;
  [[nodiscard]] HRESULT GetStates(long first, long rows, SAFEARRAY** states) noexcept;
  [[nodiscard]] HRESULT SetStates(long first, SAFEARRAY* states) noexcept;

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

 private:
  class RowsFace : public Face<IGridRows> {
   public:
    explicit RowsFace(GridFace& grid) : Face(static_cast<Identity&>(grid)), grid_(grid) {}
    STDMETHODIMP GetRows(long first, long rows, SAFEARRAY** levels, SAFEARRAY** ends,
                         SAFEARRAY** text) noexcept override {
      return grid_.GetRows(first, rows, levels, ends, text);
    }
    STDMETHODIMP TextVersion(hyper* result) noexcept override { return grid_.TextVersion(result); }
    STDMETHODIMP GetStates(long first, long rows, SAFEARRAY** states) noexcept override {
      return grid_.GetStates(first, rows, states);
    }
    STDMETHODIMP SetStates(long first, SAFEARRAY* states) noexcept override {
      return grid_.SetStates(first, states);
    }

   private:
    GridFace& grid_;
  };

  RowsFace rows_{*this};
};

}  // namespace tavrix::component
