#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <string_view>
#include <vector>

#include "com/com_ptr.h"
#include "com/variant.h"

namespace tavrix::com {

struct Parameter {
  VARTYPE type = VT_EMPTY;  ///< VT_BYREF set where the method takes a pointer
  bool result = false;      ///< the value that the member gives
  bool optional = false;
  Variant fallback;  ///< for an argument that is left out
};

/// One method of a dual interface, as its type library describes it.
struct Member {
  DISPID id = DISPID_UNKNOWN;
  INVOKEKIND kind = INVOKE_FUNC;
  ULONG_PTR slot = 0;  ///< offset in the table of methods, in bytes
  std::vector<Parameter> parameters;

  /// How many arguments a caller by name may give.
  [[nodiscard]] std::size_t Arguments() const;
  [[nodiscard]] bool HasResult() const;
};

/// The members of a dual interface of this module, with those it inherits from other duals.
class MemberTable {
 public:
  /// Reads the type library at the first request; later ones get the same table. Throws
  /// `ComFailure`.
  [[nodiscard]] static const MemberTable& Of(const IID& iid);

  explicit MemberTable(const IID& iid);

  /// The member for a call with `flags` (DISPATCH_...); null when there is none.
  [[nodiscard]] const Member* Find(DISPID id, WORD flags) const;
  /// As IDispatch::GetIDsOfNames; case does not matter.
  [[nodiscard]] HRESULT IdsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const;
  /// Whether `iid` is the interface itself or one that it inherits.
  [[nodiscard]] bool Covers(const IID& iid) const;
  /// The interface's own name.
  [[nodiscard]] std::wstring_view Name() const { return name_; }
  [[nodiscard]] const ComPtr<ITypeInfo>& Info() const { return info_; }

 private:
  void Read(ITypeInfo& methods);
  void ReadInherited(ITypeInfo& methods);

  std::vector<IID> iids_;  // its own, then those it inherits
  ComPtr<ITypeInfo> info_;
  std::wstring name_;
  std::vector<Member> members_;
};

}  // namespace tavrix::com
