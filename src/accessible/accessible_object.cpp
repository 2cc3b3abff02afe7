#include "accessible/accessible_object.h"

#include <optional>
#include <utility>
#include <vector>

#include "accessible/accessible_words.h"
#include "accessible/system_accessibility.h"
#include "com/abi.h"
#include "com/enumerator.h"
#include "viewkit/win32/accessibility.h"

namespace tavrix::accessible {
namespace {

using viewkit::Accessible;
using viewkit::AccessibleAction;
using viewkit::AccessibleId;
using viewkit::AccessibleRole;
using viewkit::AccessibleSelect;

/// The system's type library for these interfaces.
constexpr GUID kDescriptions = {
    0x1ea4dbf0, 0x3c3b, 0x11cf, {0x81, 0x0c, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71}};

/// Nothing, and so no text.
std::string NoText(const Accessible&, AccessibleId) {
  return {};
}

/// Nothing for flags that contradict each other.
std::optional<AccessibleSelect> SelectionOf(LONG flags) {
  switch (flags) {
    case SELFLAG_TAKESELECTION:
      return AccessibleSelect::kOnly;
    case SELFLAG_EXTENDSELECTION:
    case SELFLAG_EXTENDSELECTION | SELFLAG_ADDSELECTION:
      return AccessibleSelect::kExtend;
    case SELFLAG_ADDSELECTION:
      return AccessibleSelect::kAdd;
    case SELFLAG_REMOVESELECTION:
      return AccessibleSelect::kRemove;
    default:
      return std::nullopt;
  }
}

LRESULT AnswerFor(const std::shared_ptr<viewkit::win32::Window>& window, WPARAM wparam) {
  const auto object = com::MakeObject<AccessibleObject>(window, AccessibleId{});
  return SystemAccessibility::Get().result_from_object(__uuidof(IAccessible), wparam, object.Get());
}

}  // namespace

void OfferAccessibility() {
  viewkit::win32::SetAccessibleAnswer(AnswerFor);
}

AccessibleObject::AccessibleObject(std::weak_ptr<viewkit::win32::Window> window, AccessibleId self)
    : com::InterfaceImpl<IAccessible>(static_cast<com::ComObject&>(*this)),
      window_(std::move(window)),
      self_(self) {
  AddInterface(IID_IDispatch, this);
  AddInterface(__uuidof(IAccessible), this);
  const Reached reached = Reach();
  if (self_ == AccessibleId{}) {
    com::Check(SystemAccessibility::Get().standard_object(
        reached.window->Hwnd(), OBJID_CLIENT, __uuidof(IAccessible), system_.PutVoid()));
  }
  if (reached.inside.HasItems()) {
    AddInterface(__uuidof(IEnumVARIANT), &walk_);
  } else if (system_walk_ = system_.As<IEnumVARIANT>(); system_walk_) {
    AddInterface(__uuidof(IEnumVARIANT), system_walk_.Get());
  }
}

AccessibleObject::Reached AccessibleObject::Reach() const {
  auto window = window_.lock();
  Accessible* inside = window && window->Alive() ? window->Inside() : nullptr;
  if (inside == nullptr || !inside->Exists(self_)) throw com::ComFailure(CO_E_OBJNOTCONNECTED);
  auto held = window->Held();
  return {std::move(window), std::move(held), *inside};
}

AccessibleId AccessibleObject::IdOf(const VARIANT& child, const Accessible& inside) const {
  if (child.vt != VT_I4) throw com::ComFailure(E_INVALIDARG);
  if (child.lVal == CHILDID_SELF) return self_;
  const auto number = static_cast<int>(child.lVal);
  const AccessibleId id =
      self_.item == 0 ? AccessibleId{number, 0} : AccessibleId{self_.item, number};
  if (number < 0 || !inside.Exists(id)) throw com::ComFailure(E_INVALIDARG);
  return id;
}

IAccessible* AccessibleObject::SystemInside(const Reached& reached) const {
  return reached.inside.HasItems() ? nullptr : system_.Get();
}

IAccessible* AccessibleObject::SystemFor(const VARIANT& child, const Reached& reached) const {
  return IsSelf(child) ? system_.Get() : SystemInside(reached);
}

com::ComPtr<IDispatch> AccessibleObject::ObjectOf(AccessibleId id) const {
  return com::MakeObject<AccessibleObject>(window_, id).As<IDispatch>();
}

VARIANT AccessibleObject::Given(AccessibleId id, const Accessible& inside) const {
  if (id == self_) return Number(CHILDID_SELF);
  if (id.part != 0 && id.item == self_.item) return Number(id.part);
  const bool number = self_.item == 0 && inside.Children({id.item, 0}) == 0;
  return number ? Number(id.item) : com::Variant(ObjectOf({id.item, 0})).Detach();
}

HRESULT AccessibleObject::get_accParent(IDispatch** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return Ask([&](const Reached&) -> HRESULT {
    if (system_) return system_->get_accParent(result);
    *result = ObjectOf({}).Detach();
    return S_OK;
  });
}

HRESULT AccessibleObject::get_accChildCount(LONG* result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = 0;
  return Ask([&](const Reached& reached) -> HRESULT {
    if (IAccessible* system = SystemInside(reached)) return system->get_accChildCount(result);
    *result = reached.inside.Children(self_);
    return S_OK;
  });
}

HRESULT AccessibleObject::get_accChild(VARIANT child, IDispatch** result) noexcept {
  child = ChildOf(child);
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return Ask([&](const Reached& reached) -> HRESULT {
    if (IAccessible* system = SystemInside(reached)) return system->get_accChild(child, result);
    const AccessibleId id = IdOf(child, reached.inside);
    if (id == self_) return E_INVALIDARG;
    if (reached.inside.Children(id) == 0) return S_FALSE;
    *result = ObjectOf(id).Detach();
    return S_OK;
  });
}

HRESULT AccessibleObject::AskText(BSTR* result, const VARIANT& given, OurText ours,
                                  SystemText theirs, const char* member) const noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  const VARIANT child = ChildOf(given);
  const auto give = [&](const Reached& reached) -> HRESULT {
    IAccessible* system = SystemFor(child, reached);
    const bool own = IsSelf(child) || reached.inside.HasItems();
    const std::string text =
        own ? ours(reached.inside, IdOf(child, reached.inside)) : std::string();
    if (text.empty()) return system == nullptr ? S_FALSE : (system->*theirs)(child, result);
    *result = com::Bstr(text).Detach();
    return S_OK;
  };
  return Ask(give, member);
}

HRESULT AccessibleObject::get_accName(VARIANT child, BSTR* result) noexcept {
  const auto name = [](const Accessible& inside, AccessibleId id) { return inside.Name(id); };
  return AskText(result, child, name, &IAccessible::get_accName);
}

HRESULT AccessibleObject::get_accValue(VARIANT child, BSTR* result) noexcept {
  const auto value = [](const Accessible& inside, AccessibleId id) { return inside.Value(id); };
  return AskText(result, child, value, &IAccessible::get_accValue);
}

HRESULT AccessibleObject::get_accDescription(VARIANT child, BSTR* result) noexcept {
  return AskText(result, child, NoText, &IAccessible::get_accDescription);
}

HRESULT AccessibleObject::get_accHelp(VARIANT child, BSTR* result) noexcept {
  return AskText(result, child, NoText, &IAccessible::get_accHelp);
}

HRESULT AccessibleObject::get_accKeyboardShortcut(VARIANT child, BSTR* result) noexcept {
  return AskText(result, child, NoText, &IAccessible::get_accKeyboardShortcut);
}

HRESULT AccessibleObject::get_accDefaultAction(VARIANT child, BSTR* result) noexcept {
  return AskText(result, child, ActionText, &IAccessible::get_accDefaultAction);
}

HRESULT AccessibleObject::get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) noexcept {
  if (file == nullptr || topic == nullptr) return E_POINTER;
  *file = nullptr;
  *topic = 0;
  return Ask([&](const Reached& reached) -> HRESULT {
    IAccessible* system = SystemInside(reached);
    return system == nullptr ? S_FALSE : system->get_accHelpTopic(file, ChildOf(child), topic);
  });
}

HRESULT AccessibleObject::get_accRole(VARIANT child, VARIANT* result) noexcept {
  child = ChildOf(child);
  return AskValue(result, [&](const Reached& reached) -> HRESULT {
    const bool own = IsSelf(child) || reached.inside.HasItems();
    const AccessibleRole role =
        own ? reached.inside.Role(IdOf(child, reached.inside)) : AccessibleRole::kSystem;
    if (role == AccessibleRole::kSystem) return system_->get_accRole(child, result);
    *result = Number(RoleNumber(role));
    return S_OK;
  });
}

HRESULT AccessibleObject::get_accState(VARIANT child, VARIANT* result) noexcept {
  child = ChildOf(child);
  return AskValue(result, [&](const Reached& reached) -> HRESULT {
    IAccessible* system = SystemFor(child, reached);
    if (system != nullptr && !IsSelf(child)) return system->get_accState(child, result);
    com::Variant bits(std::int32_t{0});
    if (system != nullptr && FAILED(system->get_accState(child, bits.Put()))) bits = com::Variant();
    const LONG known = bits.Type() == VT_I4 ? bits.Get().lVal : 0;
    *result = Number(known | StateBits(reached.inside.States(IdOf(child, reached.inside))));
    return S_OK;
  });
}

HRESULT AccessibleObject::get_accFocus(VARIANT* result) noexcept {
  return AskValue(result, [&](const Reached& reached) -> HRESULT {
    if (IAccessible* system = SystemInside(reached)) return system->get_accFocus(result);
    const AccessibleId current = reached.inside.Current();
    const bool mine = self_.item == 0 || current == self_;
    if (!mine || !reached.inside.States(current).focused) return S_FALSE;
    *result = Given(current, reached.inside);
    return S_OK;
  });
}

HRESULT AccessibleObject::get_accSelection(VARIANT* result) noexcept {
  return AskValue(result, [&](const Reached& reached) -> HRESULT {
    if (IAccessible* system = SystemInside(reached)) return system->get_accSelection(result);
    if (self_.item != 0) return S_FALSE;
    const std::vector<AccessibleId> ids = reached.inside.Selected();
    if (ids.size() == 1) *result = Given(ids.front(), reached.inside);
    if (ids.size() <= 1) return S_OK;
    std::vector<com::Variant> numbers;
    numbers.reserve(ids.size());
    for (const AccessibleId& id : ids) numbers.emplace_back(std::int32_t{id.item});
    result->vt = VT_UNKNOWN;
    result->punkVal = com::VariantEnumerator::Make(std::move(numbers)).Detach();
    return S_OK;
  });
}

HRESULT AccessibleObject::accSelect(LONG flags, VARIANT child) noexcept {
  child = ChildOf(child);
  return Ask([&](const Reached& reached) -> HRESULT {
    if (IAccessible* system = SystemInside(reached)) return system->accSelect(flags, child);
    const AccessibleId id = IdOf(child, reached.inside);
    const bool focus = (flags & SELFLAG_TAKEFOCUS) != 0;
    const LONG selection = flags & ~SELFLAG_TAKEFOCUS;
    if (!reached.window->TakesInput()) return S_FALSE;
    if (focus && !reached.window->TakeFocus()) return S_FALSE;
    if (!reached.window->Alive()) return CO_E_OBJNOTCONNECTED;
    // The focus alone leaves what is selected, and with it the current item, as it is.
    if (id == AccessibleId{} || selection == SELFLAG_NONE) return focus ? S_OK : E_INVALIDARG;
    const auto how = SelectionOf(selection);
    if (!how || !reached.inside.Exists(id)) return E_INVALIDARG;
    return reached.inside.Select(id, *how) ? S_OK : S_FALSE;
  });
}

HRESULT AccessibleObject::accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                      VARIANT child) noexcept {
  child = ChildOf(child);
  for (LONG* result : {left, top, width, height}) {
    if (result == nullptr) return E_POINTER;
    *result = 0;
  }
  return Ask([&](const Reached& reached) -> HRESULT {
    if (IAccessible* system = SystemFor(child, reached)) {
      return system->accLocation(left, top, width, height, child);
    }
    const RECT place = reached.window->PlaceOf(IdOf(child, reached.inside));
    if (IsRectEmpty(&place) != FALSE) return S_FALSE;
    POINT corner{place.left, place.top};
    ClientToScreen(reached.window->Hwnd(), &corner);
    *left = corner.x;
    *top = corner.y;
    *width = place.right - place.left;
    *height = place.bottom - place.top;
    return S_OK;
  });
}

HRESULT AccessibleObject::accHitTest(LONG x, LONG y, VARIANT* result) noexcept {
  return AskValue(result, [&](const Reached& reached) -> HRESULT {
    if (IAccessible* system = SystemInside(reached)) return system->accHitTest(x, y, result);
    POINT point{x, y};
    ScreenToClient(reached.window->Hwnd(), &point);
    RECT client{};
    GetClientRect(reached.window->Hwnd(), &client);
    if (PtInRect(&client, point) == FALSE) return S_FALSE;
    AccessibleId id = reached.window->IdAt(point);
    if (self_.item == 0) id.part = 0;  // the item knows what of it is there
    if (self_.item != 0 && id.item != self_.item) return S_FALSE;
    *result = Given(id, reached.inside);
    return S_OK;
  });
}

HRESULT AccessibleObject::accDoDefaultAction(VARIANT child) noexcept {
  child = ChildOf(child);
  return Ask([&](const Reached& reached) -> HRESULT {
    if (IAccessible* system = SystemFor(child, reached)) return system->accDoDefaultAction(child);
    const AccessibleId id = IdOf(child, reached.inside);
    if (!reached.window->TakesInput()) return S_FALSE;
    switch (reached.inside.Action(id)) {
      case AccessibleAction::kNone:
        return DISP_E_MEMBERNOTFOUND;
      case AccessibleAction::kOpen:
        reached.window->PostOpen(id);
        return S_OK;
      default:
        reached.inside.Act(id);
        return S_OK;
    }
  });
}

// Names and values of what the view paints are its own; the text of a box can be written.
HRESULT AccessibleObject::put_accName(VARIANT child, BSTR name) noexcept {
  return Ask([&](const Reached& reached) -> HRESULT {
    IAccessible* system = SystemInside(reached);
    return system == nullptr ? DISP_E_MEMBERNOTFOUND : system->put_accName(ChildOf(child), name);
  });
}

HRESULT AccessibleObject::put_accValue(VARIANT child, BSTR value) noexcept {
  return Ask([&](const Reached& reached) -> HRESULT {
    IAccessible* system = SystemInside(reached);
    return system == nullptr ? DISP_E_MEMBERNOTFOUND : system->put_accValue(ChildOf(child), value);
  });
}

// Calls by name go by the system's own description of the interface.

HRESULT AccessibleObject::GetTypeInfoCount(UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT AccessibleObject::GetTypeInfo(UINT index, LCID, ITypeInfo** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return Ask([&](const Reached&) -> HRESULT {
    if (index != 0) return DISP_E_BADINDEX;
    com::ComPtr<ITypeLib> library;
    com::Check(LoadRegTypeLib(kDescriptions, 1, 1, LOCALE_NEUTRAL, library.Put()));
    return library->GetTypeInfoOfGuid(__uuidof(IAccessible), result);
  });
}

HRESULT AccessibleObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                                        DISPID* ids) noexcept {
  com::ComPtr<ITypeInfo> description;
  const HRESULT result = GetTypeInfo(0, locale, description.Put());
  return FAILED(result) ? result : DispGetIDsOfNames(description.Get(), names, count, ids);
}

HRESULT AccessibleObject::Invoke(DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* arguments,
                                 VARIANT* result, EXCEPINFO* exception,
                                 UINT* bad_argument) noexcept {
  com::ComPtr<ITypeInfo> description;
  const HRESULT known = GetTypeInfo(0, locale, description.Put());
  if (FAILED(known)) return known;
  return DispInvoke(static_cast<IAccessible*>(this), description.Get(), id, flags, arguments,
                    result, exception, bad_argument);
}

}  // namespace tavrix::accessible
