#include "accessible/accessible_words.h"

#include <oleacc.h>

#include <iterator>
#include <utility>

namespace tavrix::accessible {

using viewkit::Accessible;
using viewkit::AccessibleAction;
using viewkit::AccessibleId;
using viewkit::AccessibleRole;
using viewkit::AccessibleStates;

namespace {

/// In the order of `AccessibleRole`.
constexpr LONG kRoles[] = {
    ROLE_SYSTEM_CLIENT,      ROLE_SYSTEM_TABLE,     ROLE_SYSTEM_OUTLINE,      ROLE_SYSTEM_ROW,
    ROLE_SYSTEM_OUTLINEITEM, ROLE_SYSTEM_CELL,      ROLE_SYSTEM_COLUMNHEADER, ROLE_SYSTEM_ROWHEADER,
    ROLE_SYSTEM_PAGETABLIST, ROLE_SYSTEM_PAGETAB,   ROLE_SYSTEM_SEPARATOR,    ROLE_SYSTEM_DIALOG,
    ROLE_SYSTEM_DOCUMENT,    ROLE_SYSTEM_STATICTEXT};
static_assert(std::size(kRoles) == static_cast<std::size_t>(AccessibleRole::kText) + 1);

}  // namespace

LONG RoleNumber(AccessibleRole role) {
  return kRoles[static_cast<std::size_t>(role)];
}

LONG StateBits(const AccessibleStates& states) {
  const std::pair<bool, LONG> bits[] = {
      {states.focusable, STATE_SYSTEM_FOCUSABLE},
      {states.focused, STATE_SYSTEM_FOCUSED},
      {states.selectable, STATE_SYSTEM_SELECTABLE},
      {states.selected, STATE_SYSTEM_SELECTED},
      {states.several_selectable, STATE_SYSTEM_MULTISELECTABLE | STATE_SYSTEM_EXTSELECTABLE},
      {states.expanded, STATE_SYSTEM_EXPANDED},
      {states.collapsed, STATE_SYSTEM_COLLAPSED},
      {states.out_of_view, STATE_SYSTEM_OFFSCREEN},
      {states.unavailable, STATE_SYSTEM_UNAVAILABLE}};
  LONG result = 0;
  for (const auto& [set, bit] : bits) result |= set ? bit : 0;
  return result;
}

std::string ActionText(const Accessible& inside, AccessibleId id) {
  switch (inside.Action(id)) {
    case AccessibleAction::kExpand:
      return "展开";
    case AccessibleAction::kCollapse:
      return "折叠";
    case AccessibleAction::kSwitch:
      return "切换";
    case AccessibleAction::kOpen:
      return "双击";
    case AccessibleAction::kNone:
      break;
  }
  return {};
}

}  // namespace tavrix::accessible
