#include "component/foreign_container.h"

#include <ocidl.h>
#include <oleidl.h>

#include "com/failure.h"

namespace tavrix::test {

namespace {

constexpr const wchar_t* kClass = L"AtlAxWin100";

/// The functions of the system's library, which stays loaded.
struct Atl {
  template <class Function>
  static Function* Entry(const char* name) {
    static const HMODULE module = LoadLibraryW(L"atl100.dll");
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
  }
  static void Start() {
    static const BOOL started = Entry<BOOL WINAPI()>("AtlAxWinInit")();
    if (started == FALSE) throw com::ComFailure(E_FAIL);
  }
  static HRESULT Control(HWND window, IUnknown** control) {
    return Entry<HRESULT WINAPI(HWND, IUnknown**)>("AtlAxGetControl")(window, control);
  }
};

bool IsKey(const MSG& message) {
  return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
}

}  // namespace

ForeignContainer::ForeignContainer(const wchar_t* prog_id, int width, int height) {
  Atl::Start();
  window_ = CreateWindowExW(0, kClass, prog_id, WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0,
                            width, height, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  if (window_ == nullptr) throw com::ComFailure(HRESULT_FROM_WIN32(GetLastError()));
  com::Check(Atl::Control(window_, control_.Put()));
}

void ForeignContainer::Resize(int width, int height) {
  SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
}

void ForeignContainer::Close() {
  control_ = nullptr;
  if (window_ != nullptr) DestroyWindow(window_);
  window_ = nullptr;
}

HWND ForeignContainer::ControlWindow() const {
  HWND window = nullptr;
  const auto place = control_.As<IOleWindow>();
  return place && SUCCEEDED(place->GetWindow(&window)) ? window : nullptr;
}

void ForeignContainer::Pump() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    const auto active = control_.As<IOleInPlaceActiveObject>();
    if (active && IsKey(message) && active->TranslateAccelerator(&message) == S_OK) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void ForeignContainer::Press(WORD key) {
  const HWND focus = GetFocus();
  const auto scan = static_cast<LPARAM>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC)) << 16;
  PostMessageW(focus, WM_KEYDOWN, key, scan | 1);
  PostMessageW(focus, WM_KEYUP, key, scan | static_cast<LPARAM>(0xC0000001));
  Pump();
}

}  // namespace tavrix::test
