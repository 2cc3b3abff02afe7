// From one thing to the next: directions, and the children one by one.

#include <algorithm>

#include "accessible/accessible_object.h"
#include "accessible/accessible_words.h"
#include "com/abi.h"

namespace tavrix::accessible {

using viewkit::Accessible;
using viewkit::AccessibleId;

HRESULT AccessibleObject::Neighbour(LONG direction, AccessibleId id, const Accessible& inside,
                                    VARIANT* result) const {
  const bool down = direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD;
  const bool side_by_side = id.part != 0 || inside.Role(id) == viewkit::AccessibleRole::kTab;
  const bool forward =
      direction == NAVDIR_NEXT || direction == (side_by_side ? NAVDIR_RIGHT : NAVDIR_DOWN);
  const bool backward =
      direction == NAVDIR_PREVIOUS || direction == (side_by_side ? NAVDIR_LEFT : NAVDIR_UP);
  if (!down && !forward && !backward) return S_FALSE;
  const AccessibleId parent = down ? id : AccessibleId{id.part == 0 ? 0 : id.item, 0};
  const int count = inside.Children(parent);
  int position = direction == NAVDIR_LASTCHILD ? count - 1 : 0;
  if (!down) position = inside.Position(id) + (forward ? 1 : -1);
  if (position < 0 || position >= count) return S_FALSE;
  *result = Given(inside.Child(parent, position), inside);
  return S_OK;
}

HRESULT AccessibleObject::accNavigate(LONG direction, VARIANT start, VARIANT* result) noexcept {
  start = ChildOf(start);
  return AskValue(result, [&](const Reached& reached) -> HRESULT {
    IAccessible* system = SystemInside(reached);
    const bool down = direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD;
    if (system == nullptr && IsSelf(start) && !down) system = system_.Get();
    if (system != nullptr) return system->accNavigate(direction, start, result);
    return Neighbour(direction, IdOf(start, reached.inside), reached.inside, result);
  });
}

HRESULT AccessibleObject::Walk::Next(ULONG count, VARIANT* result, ULONG* fetched) noexcept {
  if (fetched != nullptr) *fetched = 0;
  return object_.Ask([&](const Reached& reached) -> HRESULT {
    if (result == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    const AccessibleId self = object_.self_;
    const int children = reached.inside.Children(self);
    ULONG given = 0;
    for (; given < count && next_ < children; ++given, ++next_) {
      const AccessibleId id = reached.inside.Child(self, next_);
      result[given] = Number(self.item == 0 ? id.item : id.part);
    }
    if (fetched != nullptr) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  });
}

HRESULT AccessibleObject::Walk::Skip(ULONG count) noexcept {
  return object_.Ask([&](const Reached& reached) -> HRESULT {
    const auto left =
        static_cast<ULONG>(std::max(0, reached.inside.Children(object_.self_) - next_));
    next_ += static_cast<int>(std::min(count, left));
    return count <= left ? S_OK : S_FALSE;
  });
}

HRESULT AccessibleObject::Walk::Reset() noexcept {
  next_ = 0;
  return S_OK;
}

HRESULT AccessibleObject::Walk::Clone(IEnumVARIANT** result) noexcept {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return object_.Ask([&](const Reached&) -> HRESULT {
    const auto copy = com::MakeObject<AccessibleObject>(object_.window_, object_.self_);
    auto walk = copy.As<IEnumVARIANT>();
    const HRESULT skipped = next_ == 0 ? S_OK : walk->Skip(static_cast<ULONG>(next_));
    if (FAILED(skipped)) return skipped;
    *result = walk.Detach();
    return S_OK;
  });
}

}  // namespace tavrix::accessible
