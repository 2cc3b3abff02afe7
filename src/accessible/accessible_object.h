#pragma once

#include <windows.h>

#include <oleacc.h>

#include <memory>
#include <string>

#include "com/abi.h"
#include "com/com_object.h"
#include "viewkit/win32/window.h"

namespace tavrix::accessible {

/// Makes the windows of this module that paint themselves speak to assistive programs.
void OfferAccessibility();

/// What an assistive program holds of a window's client area, or of an item with parts in it. It
/// holds neither the window nor what the window shows: when these have gone every question is
/// answered with CO_E_OBJNOTCONNECTED.
///
/// A control that has items of its own is answered for by its `Accessible`; what that leaves open
/// of the window itself (its place, its neighbours, the windows in it), by the system's own object
/// for the window.
class AccessibleObject : public com::ComObject, public com::InterfaceImpl<IAccessible> {
 public:
  AccessibleObject(std::weak_ptr<viewkit::win32::Window> window, viewkit::AccessibleId self);

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** result) noexcept override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                             DISPID* ids) noexcept override;
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments,
                      VARIANT* result, EXCEPINFO* exception, UINT* bad_argument) noexcept override;

  STDMETHODIMP get_accParent(IDispatch** result) noexcept override;
  STDMETHODIMP get_accChildCount(LONG* result) noexcept override;
  STDMETHODIMP get_accChild(VARIANT child, IDispatch** result) noexcept override;
  STDMETHODIMP get_accName(VARIANT child, BSTR* result) noexcept override;
  STDMETHODIMP get_accValue(VARIANT child, BSTR* result) noexcept override;
  STDMETHODIMP get_accDescription(VARIANT child, BSTR* result) noexcept override;
  STDMETHODIMP get_accRole(VARIANT child, VARIANT* result) noexcept override;
  STDMETHODIMP get_accState(VARIANT child, VARIANT* result) noexcept override;
  STDMETHODIMP get_accHelp(VARIANT child, BSTR* result) noexcept override;
  STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) noexcept override;
  STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* result) noexcept override;
  STDMETHODIMP get_accFocus(VARIANT* result) noexcept override;
  STDMETHODIMP get_accSelection(VARIANT* result) noexcept override;
  STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* result) noexcept override;
  STDMETHODIMP accSelect(LONG flags, VARIANT child) noexcept override;
  STDMETHODIMP accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                           VARIANT child) noexcept override;
  STDMETHODIMP accNavigate(LONG direction, VARIANT start, VARIANT* result) noexcept override;
  STDMETHODIMP accHitTest(LONG x, LONG y, VARIANT* result) noexcept override;
  STDMETHODIMP accDoDefaultAction(VARIANT child) noexcept override;
  STDMETHODIMP put_accName(VARIANT child, BSTR name) noexcept override;
  STDMETHODIMP put_accValue(VARIANT child, BSTR value) noexcept override;

 private:
  /// The numbers of the children, one after the other.
  class Walk : public com::InterfaceImpl<IEnumVARIANT> {
   public:
    explicit Walk(AccessibleObject& owner) : InterfaceImpl(owner), object_(owner) {}
    STDMETHODIMP Next(ULONG count, VARIANT* result, ULONG* fetched) noexcept override;
    STDMETHODIMP Skip(ULONG count) noexcept override;
    STDMETHODIMP Reset() noexcept override;
    STDMETHODIMP Clone(IEnumVARIANT** result) noexcept override;

   private:
    AccessibleObject& object_;
    int next_ = 0;
  };
  /// The window while a call is answered, which may lead to its end.
  struct Reached {
    std::shared_ptr<viewkit::win32::Window> window;
    std::shared_ptr<void> held;
    viewkit::Accessible& inside;
  };

  [[nodiscard]] Reached Reach() const;
  /// What `answer` gives for what is reached, or the failure that keeps it from being given.
  template <class Answer>
  [[nodiscard]] HRESULT Ask(const Answer& answer,
                            const char* member = __builtin_FUNCTION()) const noexcept {
    return com::Guarded(
        __uuidof(IAccessible), [&]() -> HRESULT { return answer(Reach()); }, member);
  }
  template <class Answer>
  [[nodiscard]] HRESULT AskValue(VARIANT* result, const Answer& answer,
                                 const char* member = __builtin_FUNCTION()) const noexcept {
    if (result == nullptr) return E_POINTER;
    VariantInit(result);
    return Ask(answer, member);
  }
  using OurText = std::string (*)(const viewkit::Accessible&, viewkit::AccessibleId);
  using SystemText = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);
  [[nodiscard]] HRESULT AskText(BSTR* result, const VARIANT& given, OurText ours, SystemText theirs,
                                const char* member = __builtin_FUNCTION()) const noexcept;
  [[nodiscard]] HRESULT Neighbour(LONG direction, viewkit::AccessibleId id,
                                  const viewkit::Accessible& inside, VARIANT* result) const;
  [[nodiscard]] viewkit::AccessibleId IdOf(const VARIANT& child,
                                           const viewkit::Accessible& inside) const;
  /// The system's object where all about `child` is its business; else null.
  [[nodiscard]] IAccessible* SystemFor(const VARIANT& child, const Reached& reached) const;
  /// The system's object where all inside is its business; else null.
  [[nodiscard]] IAccessible* SystemInside(const Reached& reached) const;
  /// How a client gets an id: as a number of this object, or as an object of its own.
  [[nodiscard]] VARIANT Given(viewkit::AccessibleId id, const viewkit::Accessible& inside) const;
  [[nodiscard]] com::ComPtr<IDispatch> ObjectOf(viewkit::AccessibleId id) const;

  std::weak_ptr<viewkit::win32::Window> window_;
  viewkit::AccessibleId self_;
  com::ComPtr<IAccessible> system_;  // of the window itself
  com::ComPtr<IEnumVARIANT> system_walk_;
  Walk walk_{*this};
};

}  // namespace tavrix::accessible
