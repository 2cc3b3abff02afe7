#pragma once

#include <memory>

#include "app/com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

/// The navigator for the grids of views, which come as their objects from `Controls`.
class GridNavigatorFace : public DispatchObject<IHostGridNavigator> {
 public:
  explicit GridNavigatorFace(std::shared_ptr<tavrix::host::GridNavigator> navigator)
      : navigator_(std::move(navigator)) {}

  STDMETHODIMP MoveTop(IDispatch* grid, VARIANT_BOOL* result) override;
  STDMETHODIMP MovePrevious(IDispatch* grid, VARIANT_BOOL* result) override;
  STDMETHODIMP MoveNext(IDispatch* grid, VARIANT_BOOL* result) override;
  STDMETHODIMP MoveBottom(IDispatch* grid, VARIANT_BOOL* result) override;
  STDMETHODIMP FindNext(IDispatch* grid, VARIANT_BOOL* result) override;
  STDMETHODIMP Find(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) override;
  STDMETHODIMP Filter(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) override;

 private:
  std::shared_ptr<tavrix::host::GridNavigator> navigator_;
};

}  // namespace desk::app
