#include "viewkit/win32/window.h"

#include <commctrl.h>

#include <functional>
#include <map>
#include <system_error>
#include <utility>

#include "host/report.h"
#include "viewkit/win32/accessibility.h"
#include "viewkit/win32/visual_styles.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr UINT_PTR kSubclass = 1;
constexpr UINT kOpenItem = WM_APP + 1;
constexpr LPARAM kWasDown = 1 << 30;  // of a key message, see "Keystroke Message Flags"

Window* AttachedTo(HWND hwnd) {
  // The system hands addresses through integers.
  return reinterpret_cast<Window*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
}

HWND CreateNative(const wchar_t* class_name, const WindowPlan& plan, void* parameter) {
  const RECT& place = plan.place;
  return CreateWindowExW(plan.extended_style, class_name, plan.text, plan.style, place.left,
                         place.top, place.right - place.left, place.bottom - place.top, plan.parent,
                         nullptr, ThisModule(), parameter);
}

[[noreturn]] void ThrowLastError(const char* what) {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

bool Pressed(int key) {
  return GetKeyState(key) < 0;
}

}  // namespace

HINSTANCE ThisModule() {
  static const HINSTANCE module = [] {
    HMODULE found = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&ThisModule), &found);
    return found;
  }();
  return module;
}

RECT WorkArea(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

WindowClass::WindowClass(std::wstring name, UINT style) : name_(std::move(name)) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof description;
  description.style = style;
  description.lpfnWndProc = Window::Entry;
  description.hInstance = ThisModule();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.lpszClassName = Name();
  if (RegisterClassExW(&description) == 0) ThrowLastError("RegisterClassEx");
}

const WindowClass& ClassNamed(const wchar_t* name, UINT style) {
  static std::map<std::wstring, WindowClass, std::less<>> classes;
  return classes.try_emplace(name, name, style).first->second;
}

WindowClass::~WindowClass() {
  UnregisterClassW(Name(), ThisModule());
}

Window::~Window() {
  Destroy();
}

void Window::Create(const WindowClass& window_class, const WindowPlan& plan) {
  if (CreateNative(window_class.Name(), plan, this) == nullptr) ThrowLastError("CreateWindowEx");
}

void Window::CreateSystem(const wchar_t* class_name, const WindowPlan& plan) {
  const VisualStyles styles;
  hwnd_ = CreateNative(class_name, plan, nullptr);
  if (hwnd_ == nullptr) ThrowLastError("CreateWindowEx");
  system_class_ = true;
  SetWindowSubclass(hwnd_, SubclassEntry, kSubclass, reinterpret_cast<DWORD_PTR>(this));
}

void Window::Destroy() {
  if (hwnd_ != nullptr) DestroyWindow(hwnd_);
}

LRESULT Window::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (hwnd_ == nullptr) return 0;
  if (system_class_) return DefSubclassProc(hwnd_, message, wparam, lparam);
  return DefWindowProcW(hwnd_, message, wparam, lparam);
}

LRESULT Window::Answer(UINT message, WPARAM wparam, LPARAM lparam) {
  if (Inside() == nullptr) return OnMessage(message, wparam, lparam);
  if (message == kOpenItem && Inside()->HasItems()) {
    OpenItem({static_cast<int>(wparam), static_cast<int>(lparam)});
    return 0;
  }
  const bool asked = message == WM_GETOBJECT && static_cast<LONG>(lparam) == OBJID_CLIENT;
  const auto answer = asked ? GetAccessibleAnswer() : nullptr;
  return answer == nullptr ? OnMessage(message, wparam, lparam)
                           : answer(shared_from_this(), wparam);
}

void Window::PostOpen(AccessibleId id) const {
  PostMessageW(hwnd_, kOpenItem, static_cast<WPARAM>(id.item), id.part);
}

bool Window::TakesInput() const {
  return IsWindowEnabled(hwnd_) != FALSE && IsWindowEnabled(GetAncestor(hwnd_, GA_ROOT)) != FALSE;
}

void Window::OpenItem(AccessibleId id) {
  if (!Inside()->Exists(id) || !TakesInput()) return;
  Inside()->Select({id.item, 0}, AccessibleSelect::kOnly);
  if (Alive() && Inside()->Exists(id)) Inside()->Act(id);
}

LRESULT CALLBACK Window::Entry(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  if (message == WM_NCCREATE) {
    const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lparam);
    auto* window = static_cast<Window*>(creation->lpCreateParams);
    window->hwnd_ = hwnd;
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(window));
  }
  Window* window = AttachedTo(hwnd);
  if (window == nullptr) return DefWindowProcW(hwnd, message, wparam, lparam);
  return window->Dispatch(message, wparam, lparam);
}

LRESULT Window::Dispatch(UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  // Null while the object is being destroyed: then only the class's own answer is left.
  const std::shared_ptr<Window> keep = weak_from_this().lock();
  std::shared_ptr<void> held;
  LRESULT result = 0;
  try {
    if (keep) held = Held();
    result = keep ? Answer(message, wparam, lparam) : Window::OnMessage(message, wparam, lparam);
  } catch (...) {
    // Nothing may unwind through the system. Views report their own errors before this.
  }
  if (message == WM_NCDESTROY) host::IgnoreErrors([&] { Forget(keep != nullptr); });
  return result;
}

void Window::Forget(bool tell) {
  if (hwnd_ == nullptr) return;
  if (system_class_) {
    RemoveWindowSubclass(hwnd_, SubclassEntry, kSubclass);
  } else {
    SetWindowLongPtrW(hwnd_, GWLP_USERDATA, 0);
  }
  hwnd_ = nullptr;
  if (tell) OnDestroyed();
}

LRESULT CALLBACK Window::SubclassEntry(HWND, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                       DWORD_PTR window) noexcept {
  return reinterpret_cast<Window*>(window)->Dispatch(message, wparam, lparam);
}

Modifiers ModifiersNow() {
  return {Pressed(VK_SHIFT), Pressed(VK_CONTROL), Pressed(VK_MENU)};
}

Modifiers ModifiersOf(LPARAM lparam) {
  Modifiers modifiers = ModifiersNow();
  modifiers.repeated = (lparam & kWasDown) != 0;
  return modifiers;
}

}  // namespace tavrix::viewkit::win32
