#include "app/automation/com_grid_navigator.h"

#include "app/automation/give.h"
#include "app/automation/view_grid.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

ViewGrid GridOf(IDispatch* object) {
  ComPtr<IFlexGrid> grid = Query<IFlexGrid>(object);
  if (!grid) throw host::HostError("不是可以浏览的表格");
  return ViewGrid(std::move(grid));
}

template <class Body>
HRESULT OnGrid(IDispatch* object, VARIANT_BOOL* result, Body&& body) noexcept {
  return Give(result, [&] {
    ViewGrid grid = GridOf(object);
    return Flag(body(grid));
  });
}

}  // namespace

STDMETHODIMP ComGridNavigator::MoveTop(IDispatch* grid, VARIANT_BOOL* result) noexcept {
  return OnGrid(grid, result, [&](host::Grid& rows) { return Own().MoveTop(rows); });
}

STDMETHODIMP ComGridNavigator::MovePrevious(IDispatch* grid, VARIANT_BOOL* result) noexcept {
  return OnGrid(grid, result, [&](host::Grid& rows) { return Own().MovePrevious(rows); });
}

STDMETHODIMP ComGridNavigator::MoveNext(IDispatch* grid, VARIANT_BOOL* result) noexcept {
  return OnGrid(grid, result, [&](host::Grid& rows) { return Own().MoveNext(rows); });
}

STDMETHODIMP ComGridNavigator::MoveBottom(IDispatch* grid, VARIANT_BOOL* result) noexcept {
  return OnGrid(grid, result, [&](host::Grid& rows) { return Own().MoveBottom(rows); });
}

STDMETHODIMP ComGridNavigator::FindNext(IDispatch* grid, VARIANT_BOOL* result) noexcept {
  return OnGrid(grid, result, [&](host::Grid& rows) { return Own().FindNext(rows); });
}

STDMETHODIMP ComGridNavigator::Find(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) noexcept {
  return OnGrid(grid, result, [&](host::Grid& rows) { return Own().Find(rows, ValueOf(data)); });
}

STDMETHODIMP ComGridNavigator::Filter(IDispatch* grid, VARIANT data,
                                      VARIANT_BOOL* result) noexcept {
  return OnGrid(grid, result, [&](host::Grid& rows) { return Own().Filter(rows, ValueOf(data)); });
}

}  // namespace desk::app
