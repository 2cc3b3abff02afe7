#pragma once

#include <windows.h>

#include <unknwn.h>

#include "component/base/identity.h"
#include "component/base/module.h"
#include "component/server/classes.h"

namespace tavrix::component {

/// Creates the objects of one class.
class ClassFactory : public Identity, public Face<IClassFactory> {
 public:
  explicit ClassFactory(const ClassEntry& entry);

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** result) noexcept override;
  STDMETHODIMP LockServer(WINBOOL lock) noexcept override;

 private:
  const ClassEntry& entry_;
};

}  // namespace tavrix::component
