#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "com/com_object.h"
#include "com/com_ptr.h"
#include "com/variant.h"

namespace tavrix::test {

using com::ComPtr;
using com::Variant;

/// An error that a stub raises as a language with exceptions does: a text and a code.
struct Raised {
  HRESULT code;
  std::string text;
};
/// A failure that comes as a bare code.
struct BareFailure {
  HRESULT code;
};
/// Something else than what the member gives; what it does it does all the same.
struct Answered {
  Variant value;
};

/// One call by name, with its arguments in their written order.
class StubCall {
 public:
  StubCall(WORD flags, const DISPPARAMS& arguments) : flags_(flags), arguments_(arguments) {}
  [[nodiscard]] bool Puts() const { return (flags_ & DISPATCH_PROPERTYPUT) != 0; }
  [[nodiscard]] std::size_t Count() const { return arguments_.cArgs; }
  /// References are followed.
  [[nodiscard]] Variant At(std::size_t position) const { return Variant(Raw(position)); }
  /// UTF-8.
  [[nodiscard]] std::string Text(std::size_t position) const;
  [[nodiscard]] long Number(std::size_t position) const;
  [[nodiscard]] const VARIANT& Raw(std::size_t position) const;

 private:
  WORD flags_;
  const DISPPARAMS& arguments_;
};

/// An Automation object whose members are functions, found by name and by nothing else; the one
/// without a name is the default member. Members that are properties look at `Puts`.
class NamedObject : public com::Implements<IDispatch> {
 public:
  using Function = std::function<Variant(const StubCall& call)>;
  using Members = std::vector<std::pair<std::wstring, Function>>;
  /// Hears of each call before it is made and may throw in its place.
  using Gate = std::function<void(const std::wstring& member)>;

  explicit NamedObject(Members members, Gate gate = {});
  [[nodiscard]] static ComPtr<IDispatch> Make(Members members, Gate gate = {});

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                             DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO* exception, UINT* bad_argument) noexcept override;

 private:
  Members members_;
  Gate gate_;
};

/// The text of a value, in the notation of no particular country; "(null)" and "(empty)" for those.
[[nodiscard]] std::string TextOf(const Variant& value);

}  // namespace tavrix::test
