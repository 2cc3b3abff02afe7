#pragma once

#include <memory>

#include "com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

/// The navigator for the grids of views, which come as their objects from `Controls`.
class ComGridNavigator : public tavrix::com::DispatchObject<IHostGridNavigator> {
 public:
  explicit ComGridNavigator(std::shared_ptr<tavrix::host::GridNavigator> navigator)
      : navigator_(std::move(navigator)) {}

  STDMETHODIMP MoveTop(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP MovePrevious(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP MoveNext(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP MoveBottom(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FindNext(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Find(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Filter(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::GridNavigator> navigator_;
};

}  // namespace desk::app
