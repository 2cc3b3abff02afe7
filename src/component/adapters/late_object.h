#pragma once

#include <windows.h>

#include <oaidl.h>

#include <initializer_list>
#include <utility>
#include <vector>

#include "component/base/com_ptr.h"
#include "component/base/variant.h"

namespace tavrix::component {

/// An Automation object of the host, called by the names of its members. Every call throws
/// `ComFailure` with the host's own text when it fails: the text of its exception, else of the
/// thread's error information, else the meaning of the code.
class LateObject {
 public:
  using Values = std::initializer_list<Variant>;

  /// `object` must not be null.
  explicit LateObject(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  /// A call that gives a value.
  [[nodiscard]] Variant Get(const wchar_t* member, Values arguments = {}) const;
  /// The object that a call gives; null when it gives none.
  [[nodiscard]] ComPtr<IDispatch> ObjectOf(const wchar_t* member, Values arguments = {}) const;
  /// As `Get` with one more argument, which is passed by reference.
  [[nodiscard]] Variant GetWithReference(const wchar_t* member, Values arguments,
                                         Variant& last) const;
  /// A call that gives none.
  void Call(const wchar_t* member, Values arguments = {}) const;
  void Put(const wchar_t* member, const Variant& value) const;

  [[nodiscard]] const ComPtr<IDispatch>& Dispatch() const { return object_; }

 private:
  /// `arguments` are borrowed and stand in reverse, as the protocol wants them.
  [[nodiscard]] Variant Invoke(const wchar_t* member, WORD flags,
                               std::vector<VARIANT> arguments) const;

  ComPtr<IDispatch> object_;
};

}  // namespace tavrix::component
