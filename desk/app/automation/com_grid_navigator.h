#pragma once

#include <memory>

#include "app/automation/over.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

/// The navigator for the grids of views, which come as their objects from `Controls`.
class ComGridNavigator : public Over<tavrix::host::GridNavigator, IHostGridNavigator> {
 public:
  using Over::Over;

  STDMETHODIMP MoveTop(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP MovePrevious(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP MoveNext(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP MoveBottom(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP FindNext(IDispatch* grid, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Find(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Filter(IDispatch* grid, VARIANT data, VARIANT_BOOL* result) noexcept override;
};

}  // namespace desk::app
