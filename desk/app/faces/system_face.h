#pragma once

#include <memory>

#include "app/com/dispatch_object.h"
#include "host/objects.h"
#include "qnSystem.h"

namespace desk::app {

/// `pcSystem` as Automation sees it, over any portable system object.
class SystemFace : public DispatchObject<IHostSystem> {
 public:
  explicit SystemFace(std::shared_ptr<tavrix::host::SystemObject> system)
      : system_(std::move(system)) {}

  STDMETHODIMP GetDatabase(IDispatch** result) override;
  STDMETHODIMP GetSetting(VARIANT key, BSTR section, IDispatch** result) override;
  STDMETHODIMP NewIdentifier(BSTR table, BSTR column, VARIANT* error, long* result) override;
  STDMETHODIMP get_Rights(long program, IDispatch** result) override;
  STDMETHODIMP get_Folders(IDispatch** result) override;
  STDMETHODIMP CreateHelper(BSTR name, IDispatch** result) override;

 private:
  std::shared_ptr<tavrix::host::SystemObject> system_;
};

}  // namespace desk::app
