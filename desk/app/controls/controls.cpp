#include "app/controls/controls.h"

#include "app/automation/view_grid.h"
#include "app/com.h"
#include "host/error.h"
#include "qnDesignUI.h"

namespace desk::app {

namespace host = tavrix::host;
namespace viewkit = tavrix::viewkit;

ComPtr<IUnknown> CreateControl(const CLSID& clsid) {
  ComPtr<IUnknown> control;
  const HRESULT result =
      CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, control.PutVoid());
  if (SUCCEEDED(result)) return control;
  throw host::HostError("找不到科目控件 tavrix.dll，它应当与程序在同一文件夹：" +
                        tavrix::com::MeaningOf(result));
}

ComPtr<IChildControls> ControlsOf(IUnknown* control) {
  const auto design = Query<IDesignUI>(control);
  if (!design) throw ComFailure(E_NOINTERFACE);
  ComPtr<IDispatch> list;
  Check(design->get_Controls(list.Put()));
  auto controls = list.As<IChildControls>();
  if (!controls) throw ComFailure(E_NOINTERFACE);
  return controls;
}

namespace {

template <class Result>
Result ColumnValue(IFlexGrid& grid, HRESULT (STDMETHODCALLTYPE IFlexGrid::*member)(long, Result*),
                   int col) {
  Result value{};
  Check((grid.*member)(col, &value));
  return value;
}

void CopyColumn(IFlexGrid& grid, viewkit::FlexGrid& copy, int col) {
  using viewkit::Alignment;
  using viewkit::ColumnType;
  Bstr format;
  Check(grid.get_ColFormat(col, format.Put()));
  copy.SetColWidth(col, static_cast<int>(ColumnValue(grid, &IFlexGrid::get_ColWidth, col)));
  copy.SetColHidden(col, ColumnValue(grid, &IFlexGrid::get_ColHidden, col) != VARIANT_FALSE);
  copy.SetColDataType(col,
                      static_cast<ColumnType>(ColumnValue(grid, &IFlexGrid::get_ColDataType, col)));
  copy.SetColAlignment(
      col, static_cast<Alignment>(ColumnValue(grid, &IFlexGrid::get_ColAlignment, col)));
  copy.SetColFormat(col, TextOf(format.Get()));
  copy.SetMergeCol(col, ColumnValue(grid, &IFlexGrid::get_MergeCol, col) != VARIANT_FALSE);
}

}  // namespace

std::unique_ptr<viewkit::FlexGrid> CopyColumns(IFlexGrid& grid) {
  const ViewGrid source{ComPtr<IFlexGrid>(&grid)};
  auto copy = std::make_unique<viewkit::FlexGrid>(source.Name(), source.Index());
  long frozen = 0;
  Check(grid.get_FrozenCols(&frozen));
  copy->SetFixedRows(1);
  copy->SetCols(source.Cols());
  copy->SetFixedCols(0);
  for (int col = 0; col < source.Cols(); ++col) {
    copy->SetTextMatrix(0, col, source.TextMatrix(0, col));
    CopyColumn(grid, *copy, col);
  }
  copy->SetFrozenCols(static_cast<int>(frozen));
  return copy;
}

}  // namespace desk::app
