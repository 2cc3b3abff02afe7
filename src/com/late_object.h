#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "com/com_ptr.h"
#include "com/failure.h"
#include "com/member_table.h"
#include "com/variant.h"

namespace tavrix::com {

/// Whether a failing call says that it was given another number of arguments than the member takes.
/// Languages have several codes for it.
[[nodiscard]] bool IsArgumentCount(const ComFailure& failure);

/// An Automation object of the host, called by the names of its members: through the interface that
/// is declared for it where it offers that, else through its IDispatch. Every call throws
/// `ComFailure` with the host's own text when it fails: the text of its exception, else of the
/// thread's error information, else the meaning of the code.
class LateObject {
 public:
  using Values = std::initializer_list<Variant>;

  /// `object` must not be null.
  explicit LateObject(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  /// `declared` is a dual interface of this module's type libraries.
  LateObject(ComPtr<IDispatch> object, const IID& declared);

  /// A call that gives a value.
  [[nodiscard]] Variant Get(const wchar_t* member, Values arguments = {}) const;
  /// As `Get` without an argument; with `argument` where the member does not do without one.
  [[nodiscard]] Variant GetOptional(const wchar_t* member, const Variant& argument) const;
  /// What a call gives, where an object (Nothing too) or an array is a failing call of the host.
  /// Null and Empty are an empty text and a flag that is not set.
  [[nodiscard]] std::string TextOf(const wchar_t* member, Values arguments = {}) const;
  [[nodiscard]] bool FlagOf(const wchar_t* member, Values arguments = {}) const;
  /// What a call gives where it must give something: Null and Empty are failures too. A flag may
  /// also be a number.
  [[nodiscard]] bool GivenFlagOf(const wchar_t* member) const;
  [[nodiscard]] std::string GivenTextOf(const wchar_t* member, Values arguments = {}) const;
  [[nodiscard]] std::int32_t LongOf(const wchar_t* member, Values arguments = {}) const;
  /// The object that a call gives; null when it gives none.
  [[nodiscard]] ComPtr<IDispatch> ObjectOf(const wchar_t* member, Values arguments = {}) const;
  /// As `Get` with one more argument, which is passed by reference.
  [[nodiscard]] Variant GetWithReference(const wchar_t* member, Values arguments,
                                         Variant& last) const;
  /// A call that gives none.
  void Call(const wchar_t* member, Values arguments = {}) const;
  void Put(const wchar_t* member, const Variant& value) const;

  [[nodiscard]] const ComPtr<IDispatch>& Dispatch() const { return object_; }
  /// Whether it may belong to a script engine. The engine may close before a control that its
  /// script has made comes to its end: then the object takes no calls any more, and not every
  /// engine survives one.
  [[nodiscard]] bool IsOfScript() const;

 private:
  /// `arguments` are borrowed and stand in reverse, as the protocol wants them.
  [[nodiscard]] Variant Invoke(const wchar_t* member, WORD flags,
                               std::vector<VARIANT> arguments) const;
  /// Nothing when the declared interface is not offered or lacks the member.
  [[nodiscard]] std::optional<Variant> InvokeDeclared(const wchar_t* member, WORD flags,
                                                      DISPPARAMS& parameters) const;
  [[nodiscard]] Variant InvokeByName(const wchar_t* member, WORD flags,
                                     DISPPARAMS& parameters) const;

  ComPtr<IDispatch> object_;
  ComPtr<IDispatch> declared_;
  const MemberTable* members_ = nullptr;  // of `declared_`
};

}  // namespace tavrix::com
