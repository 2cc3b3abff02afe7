#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

#include "com/member_table.h"

namespace tavrix::com {

/// What an object's IDispatch answers: every member of every dual interface that the object
/// implements. The interfaces have disjoint numbers. Where two have a member of one name, the
/// interface that was added first is meant; "Interface_Member" tells them apart.
class Dispatcher {
 public:
  /// `implementation` is the object's pointer of the dual interface `iid`. Throws `ComFailure`.
  void Add(const IID& iid, IDispatch* implementation) {
    parts_.push_back({&MemberTable::Of(iid), implementation});
  }

  [[nodiscard]] HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const noexcept;
  [[nodiscard]] HRESULT Invoke(DISPID id, LCID locale, WORD flags, DISPPARAMS* arguments,
                               VARIANT* result, EXCEPINFO* exception,
                               UINT* bad_argument) const noexcept;
  /// Whether `iid` is one of the dual interfaces added, or one that such an interface inherits.
  [[nodiscard]] bool Has(const IID& iid) const;

 private:
  struct Part {
    const MemberTable* members;
    IDispatch* implementation;
  };
  /// Throws `ComFailure` when there is no such member or the arguments do not fit.
  [[nodiscard]] HRESULT Call(DISPID id, LCID locale, WORD flags, DISPPARAMS* arguments,
                             VARIANT* result, UINT* bad_argument) const;

  std::vector<Part> parts_;
};

/// The description of the dual interface `iid`, as IDispatch::GetTypeInfo gives it.
[[nodiscard]] HRESULT DescriptionOf(const IID& iid, UINT index, ITypeInfo** result) noexcept;

}  // namespace tavrix::com
