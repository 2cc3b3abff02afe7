#include "viewkit/win32/accessibility.h"

#include <atomic>

namespace tavrix::viewkit::win32 {
namespace {

std::atomic<AccessibleAnswer> the_answer = nullptr;

}  // namespace

void SetAccessibleAnswer(AccessibleAnswer answer) {
  the_answer = answer;
}

AccessibleAnswer GetAccessibleAnswer() {
  return the_answer;
}

void RaiseAccessibleEvent(HWND window, DWORD event, AccessibleId id) {
  if (IsWinEventHookInstalled(event) == FALSE) return;
  NotifyWinEvent(event, window, OBJID_CLIENT, id.item == 0 ? CHILDID_SELF : id.item);
}

}  // namespace tavrix::viewkit::win32
