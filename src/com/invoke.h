#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/member_table.h"

namespace tavrix::com {

/// One call by name, as IDispatch::Invoke gets it.
struct LateCall {
  WORD flags = 0;
  LCID locale = 0;
  const DISPPARAMS* arguments = nullptr;
  VARIANT* result = nullptr;  ///< null when the caller wants none
  UINT* bad_argument = nullptr;
};

/// Calls a method of `object` (its dual interface's pointer) with the arguments of `call`, each
/// converted to what the method takes. Where the method takes a reference, a value passed plainly
/// is accepted, and a reference is filled in afterwards whatever its type: the system's own
/// implementation accepts exact types only. Arguments too many for a property that gives an object
/// go to that object's default member. Throws `ComFailure`; a failure of the method itself is given
/// back as it is.
[[nodiscard]] HRESULT InvokeMember(void* object, const Member& member, const LateCall& call);

/// Fills `exception` with the thread's error information about `failure`.
void FillException(HRESULT failure, EXCEPINFO& exception) noexcept;

}  // namespace tavrix::com
