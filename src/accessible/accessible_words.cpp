#include "accessible/accessible_words.h"

#include <oleacc.h>

#include <utility>

namespace tavrix::accessible {

using viewkit::Accessible;
using viewkit::AccessibleAction;
using viewkit::AccessibleId;
using viewkit::AccessibleRole;
using viewkit::AccessibleStates;

LONG RoleNumber(AccessibleRole role) {
  switch (role) {
    case AccessibleRole::kTable:
      return ROLE_SYSTEM_TABLE;
    case AccessibleRole::kOutline:
      return ROLE_SYSTEM_OUTLINE;
    case AccessibleRole::kRow:
      return ROLE_SYSTEM_ROW;
    case AccessibleRole::kOutlineRow:
      return ROLE_SYSTEM_OUTLINEITEM;
    case AccessibleRole::kCell:
      return ROLE_SYSTEM_CELL;
    case AccessibleRole::kColumnHeader:
      return ROLE_SYSTEM_COLUMNHEADER;
    case AccessibleRole::kRowHeader:
      return ROLE_SYSTEM_ROWHEADER;
    case AccessibleRole::kTabList:
      return ROLE_SYSTEM_PAGETABLIST;
    case AccessibleRole::kTab:
      return ROLE_SYSTEM_PAGETAB;
    case AccessibleRole::kSeparator:
      return ROLE_SYSTEM_SEPARATOR;
    case AccessibleRole::kDialog:
      return ROLE_SYSTEM_DIALOG;
    case AccessibleRole::kSystem:
      break;
  }
  return ROLE_SYSTEM_CLIENT;
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
