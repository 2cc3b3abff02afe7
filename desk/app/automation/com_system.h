#pragma once

#include <memory>

#include "com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

/// `pcSystem` as Automation sees it, over any portable system object.
class ComSystem : public tavrix::com::DispatchObject<IHostSystem> {
 public:
  explicit ComSystem(std::shared_ptr<tavrix::host::SystemObject> system)
      : system_(std::move(system)) {}

  STDMETHODIMP GetDatabase(IDispatch** result) noexcept override;
  STDMETHODIMP GetSetting(VARIANT key, BSTR section, IDispatch** result) noexcept override;
  STDMETHODIMP NewIdentifier(BSTR table, BSTR column, VARIANT* error,
                             long* result) noexcept override;
  STDMETHODIMP get_Rights(long program, IDispatch** result) noexcept override;
  STDMETHODIMP get_Folders(IDispatch** result) noexcept override;
  STDMETHODIMP CreateHelper(BSTR name, IDispatch** result) noexcept override;

 private:
  std::shared_ptr<tavrix::host::SystemObject> system_;
};

}  // namespace desk::app
