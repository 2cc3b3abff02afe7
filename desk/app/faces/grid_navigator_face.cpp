#include "app/faces/grid_navigator_face.h"

#include "app/faces/com_grid.h"
#include "app/faces/give.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

ComGrid GridOf(IDispatch* object) {
  ComPtr<IFlexGrid> grid = Query<IFlexGrid>(object);
  if (!grid) throw host::HostError("不是可以浏览的表格");
  return ComGrid(std::move(grid));
}

template <class Body>
HRESULT OnGrid(IDispatch* object, VARIANT_BOOL* result, Body&& body) noexcept {
  return Give(result, [&] {
    ComGrid grid = GridOf(object);
    return Flag(body(grid));
  });
}

}  // namespace

STDMETHODIMP GridNavigatorFace::MoveTop(IDispatch* grid, VARIANT_BOOL* result) {
  return OnGrid(grid, result, [&](host::Grid& rows) { return navigator_->MoveTop(rows); });
}

STDMETHODIMP GridNavigatorFace::MovePrevious(IDispatch* grid, VARIANT_BOOL* result) {
  return OnGrid(grid, result, [&](host::Grid& rows) { return navigator_->MovePrevious(rows); });
}

STDMETHODIMP GridNavigatorFace::MoveNext(IDispatch* grid, VARIANT_BOOL* result) {
  return OnGrid(grid, result, [&](host::Grid& rows) { return navigator_->MoveNext(rows); });
}

STDMETHODIMP GridNavigatorFace::MoveBottom(IDispatch* grid, VARIANT_BOOL* result) {
  return OnGrid(grid, result, [&](host::Grid& rows) { return navigator_->MoveBottom(rows); });
}

STDMETHODIMP GridNavigatorFace::FindNext(IDispatch* grid, VARIANT_BOOL* result) {
  return OnGrid(grid, result, [&](host::Grid& rows) { return navigator_->FindNext(rows); });
}

STDMETHODIMP GridNavigatorFace::Find(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) {
  return OnGrid(grid, result,
                [&](host::Grid& rows) { return navigator_->Find(rows, ValueOf(data)); });
}

STDMETHODIMP GridNavigatorFace::Filter(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) {
  return OnGrid(grid, result,
                [&](host::Grid& rows) { return navigator_->Filter(rows, ValueOf(data)); });
}

}  // namespace desk::app
