#pragma once

#include <windows.h>

#include <unknwn.h>

#include "com/com_object.h"
#include "com/module.h"
#include "component/server/classes.h"

namespace tavrix::component {

/// Creates the objects of one class.
class ClassFactory : public com::Implements<IClassFactory> {
 public:
  explicit ClassFactory(const ClassEntry& entry) : entry_(entry) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** result) noexcept override;
  STDMETHODIMP LockServer(WINBOOL lock) noexcept override;

 private:
  const ClassEntry& entry_;
};

}  // namespace tavrix::component
