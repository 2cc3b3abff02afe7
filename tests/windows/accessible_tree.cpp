#include "windows/accessible_tree.h"

#include <uiautomationclient.h>
#include <uiautomationcore.h>

#include <utility>

#include "com/bstr.h"
#include "com/variant.h"
#include "host/utf.h"

namespace tavrix::test {
namespace {

using com::Bstr;
using com::Variant;
using host::Narrow;

VARIANT Number(LONG child) {
  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = child;
  return value;
}

using TextMember = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);

std::string TextOf(const Element& element, TextMember member) {
  Bstr text;
  (element.object.Get()->*member)(Number(element.child), text.Put());
  return com::TextOf(text.Get());
}

std::string RoleText(LONG role) {
  wchar_t text[64] = L"";
  GetRoleTextW(static_cast<DWORD>(role), text, 64);
  return Narrow(text);
}

std::string StateText(LONG bits) {
  // What is so of nearly everything tells nothing.
  bits &= ~(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_MOVEABLE);
  std::string all;
  for (LONG bit = 1; bit != 0 && bit <= STATE_SYSTEM_EXTSELECTABLE; bit <<= 1) {
    if ((bits & bit) == 0) continue;
    wchar_t text[64] = L"";
    GetStateTextW(static_cast<DWORD>(bit), text, 64);
    all += (all.empty() ? "" : ", ") + Narrow(text);
  }
  return all;
}

HWND WindowOf(const Element& element) {
  HWND window = nullptr;
  WindowFromAccessibleObject(element.object.Get(), &window);
  return window;
}

/// What UI Automation makes of an element: the system's bridge for objects such as ours.
ComPtr<IRawElementProviderSimple> Bridged(const Element& element) {
  using Bridge = HRESULT(WINAPI*)(IAccessible*, LONG, DWORD, IRawElementProviderSimple**);
  static const HMODULE library = LoadLibraryW(L"uiautomationcore.dll");
  const auto bridge = reinterpret_cast<Bridge>(
      reinterpret_cast<void*>(GetProcAddress(library, "UiaProviderFromIAccessible")));
  ComPtr<IRawElementProviderSimple> provider;
  bridge(element.object.Get(), element.child, 0, provider.Put());
  return provider;
}

LONG ControlTypeOf(IRawElementProviderSimple& provider) {
  Variant type;
  provider.GetPropertyValue(UIA_ControlTypePropertyId, type.Put());
  return type.Type() == VT_I4 ? type.Get().lVal : 0;
}

}  // namespace

Element ElementOf(const ComPtr<IAccessible>& object, const VARIANT& value) {
  if (value.vt == VT_DISPATCH) return {com::Query<IAccessible>(value.pdispVal)};
  if (value.vt != VT_I4) return {};
  ComPtr<IDispatch> child;
  if (value.lVal != CHILDID_SELF && object->get_accChild(value, child.Put()) == S_OK && child) {
    return {child.As<IAccessible>()};
  }
  return {object, value.lVal};
}

Element ClientOf(HWND window) {
  Element element;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                             element.object.PutVoid());
  return element;
}

std::string Element::Name() const {
  return TextOf(*this, &IAccessible::get_accName);
}

std::string Element::Value() const {
  return TextOf(*this, &IAccessible::get_accValue);
}

std::string Element::Action() const {
  return TextOf(*this, &IAccessible::get_accDefaultAction);
}

LONG Element::Role() const {
  Variant role;
  object->get_accRole(Number(child), role.Put());
  return role.Type() == VT_I4 ? role.Get().lVal : 0;
}

LONG Element::State() const {
  Variant state;
  object->get_accState(Number(child), state.Put());
  return state.Type() == VT_I4 ? state.Get().lVal : 0;
}

RECT Element::Place() const {
  LONG left = 0;
  LONG top = 0;
  LONG width = 0;
  LONG height = 0;
  if (object->accLocation(&left, &top, &width, &height, Number(child)) != S_OK) return {};
  return {left, top, left + width, top + height};
}

Element Element::Go(LONG direction) const {
  Variant end;
  if (object->accNavigate(direction, Number(child), end.Put()) != S_OK) return {};
  return ElementOf(object, end.Get());
}

std::vector<Element> Element::Children() const {
  LONG count = 0;
  if (child != CHILDID_SELF || FAILED(object->get_accChildCount(&count)) || count == 0) return {};
  std::vector<VARIANT> values(static_cast<std::size_t>(count));
  LONG obtained = 0;
  AccessibleChildren(object.Get(), 0, count, values.data(), &obtained);
  std::vector<Element> children;
  for (LONG at = 0; at < obtained; ++at) {
    children.push_back(ElementOf(object, values[static_cast<std::size_t>(at)]));
    VariantClear(&values[static_cast<std::size_t>(at)]);
  }
  return children;
}

HRESULT Element::DoDefaultAction() const {
  return object->accDoDefaultAction(Number(child));
}

HRESULT Element::Select(LONG flags) const {
  return object->accSelect(flags, Number(child));
}

LONG Element::ControlType() const {
  const auto provider = Bridged(*this);
  return provider ? ControlTypeOf(*provider.Get()) : 0;
}

std::vector<LONG> Element::ControlTypesInside() const {
  std::vector<LONG> types;
  ComPtr<IRawElementProviderFragment> next;
  const auto fragment = Bridged(*this).As<IRawElementProviderFragment>();
  if (fragment) fragment->Navigate(NavigateDirection_FirstChild, next.Put());
  while (next) {
    types.push_back(ControlTypeOf(*next.As<IRawElementProviderSimple>().Get()));
    ComPtr<IRawElementProviderFragment> sibling;
    next->Navigate(NavigateDirection_NextSibling, sibling.Put());
    next = sibling;
  }
  return types;
}

std::string Element::Spoken() const {
  std::string line = RoleText(Role());
  if (!Name().empty()) line += " \"" + Name() + "\"";
  if (!Value().empty()) line += " = " + Value();
  const std::string states = StateText(State());
  return states.empty() ? line : line + " (" + states + ")";
}

std::string TreeOf(const Element& element, int depth) {
  std::string tree =
      std::string(2 * static_cast<std::size_t>(depth), ' ') + element.Spoken() + "\n";
  const HWND window = WindowOf(element);
  for (const Element& child : element.Children()) {
    const HWND inner = child.child == CHILDID_SELF ? WindowOf(child) : window;
    if (inner == window) {
      tree += TreeOf(child, depth + 1);
    } else if (IsWindowVisible(inner) != FALSE) {
      tree += TreeOf(ClientOf(inner), depth + 1);
    }
  }
  return tree;
}

}  // namespace tavrix::test
