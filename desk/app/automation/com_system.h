#pragma once

#include <memory>

#include "app/automation/over.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

/// `pcSystem` as Automation sees it, over any portable system object.
class ComSystem : public Over<tavrix::host::SystemObject, IHostSystem> {
 public:
  using Over::Over;

  STDMETHODIMP GetDatabase(IDispatch** result) noexcept override;
  STDMETHODIMP GetSetting(VARIANT key, BSTR section, IDispatch** result) noexcept override;
  STDMETHODIMP NewIdentifier(BSTR table, BSTR column, VARIANT* error,
                             long* result) noexcept override;
  STDMETHODIMP get_Rights(long program, IDispatch** result) noexcept override;
  STDMETHODIMP get_Folders(IDispatch** result) noexcept override;
  STDMETHODIMP CreateHelper(BSTR name, IDispatch** result) noexcept override;
};

}  // namespace desk::app
