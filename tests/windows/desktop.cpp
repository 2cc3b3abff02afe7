#include "windows/desktop.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <utility>

namespace tavrix::test {
namespace {

const wchar_t* FrameClass() {
  static const ATOM registered = [] {
    WNDCLASSW frame{};
    frame.lpfnWndProc = DefWindowProcW;
    frame.hInstance = GetModuleHandleW(nullptr);
    frame.hbrBackground = GetSysColorBrush(COLOR_APPWORKSPACE);
    frame.lpszClassName = L"TestFrame";
    return RegisterClassW(&frame);
  }();
  return registered == 0 ? nullptr : L"TestFrame";
}

/// One entry of the table in which the system keeps a process's GDI objects.
struct GdiEntry {
  std::uintptr_t object;
  std::uint16_t owner;
  std::uint16_t count;
  std::uint16_t upper;
  std::uint8_t type;
  std::uint8_t flags;
  std::uintptr_t user;
};
constexpr std::size_t kGdiEntries = 16384;

BOOL CALLBACK CountWindow(HWND, LPARAM counter) {
  ++*reinterpret_cast<int*>(counter);
  return TRUE;
}

SIZE ClientSize(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return {client.right, client.bottom};
}

BITMAPINFO TopDown(int width, int height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  return info;
}

}  // namespace

Frame::Frame(int width, int height)
    : window_(CreateWindowExW(0, FrameClass(), L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 20, 20,
                              width, height, nullptr, nullptr, GetModuleHandleW(nullptr),
                              nullptr)) {
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
  Pump();
}

Frame::~Frame() {
  DestroyWindow(window_);
  Pump();
}

RECT Frame::Client() const {
  RECT client{};
  GetClientRect(window_, &client);
  return client;
}

void Pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

Picture::Picture(HWND window)
    : Picture(ClientSize(window), [window](HDC memory, SIZE size) {
        HDC source = GetDC(window);
        BitBlt(memory, 0, 0, size.cx, size.cy, source, 0, 0, SRCCOPY);
        ReleaseDC(window, source);
      }) {}

Picture::Picture(int width, int height, const std::function<void(HDC)>& draw)
    : Picture(SIZE{width, height}, [&draw](HDC memory, SIZE) { draw(memory); }) {}

Picture::Picture(SIZE size, const std::function<void(HDC, SIZE)>& draw)
    : width_(static_cast<int>(size.cx)), height_(static_cast<int>(size.cy)) {
  pixels_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, width_, height_);
  HGDIOBJ before = SelectObject(memory, bitmap);
  draw(memory, size);
  SelectObject(memory, before);
  BITMAPINFO info = TopDown(width_, height_);
  GetDIBits(screen, bitmap, 0, static_cast<UINT>(height_), pixels_.data(), &info, DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
}

COLORREF Picture::At(int x, int y) const {
  const DWORD pixel = pixels_.at(static_cast<std::size_t>(y * width_ + x));
  return RGB((pixel >> 16) & 0xFF, (pixel >> 8) & 0xFF, pixel & 0xFF);
}

int Picture::Count(const RECT& area, COLORREF color) const {
  int found = 0;
  for (int y = static_cast<int>(area.top); y < area.bottom; ++y) {
    for (int x = static_cast<int>(area.left); x < area.right; ++x) found += At(x, y) == color;
  }
  return found;
}

int GdiObjects() {
  // The documented counter always gives 0 on some systems; the table itself is read instead.
  std::uintptr_t process = 0;
#ifdef _WIN64
  constexpr std::size_t kTable = 0xF8;
  asm("movq %%gs:0x60, %0" : "=r"(process));
#else
  constexpr std::size_t kTable = 0x94;
  asm("movl %%fs:0x30, %0" : "=r"(process));
#endif
  const auto* table = *reinterpret_cast<const GdiEntry* const*>(process + kTable);
  int count = 0;
  for (std::size_t i = 0; i < kGdiEntries; ++i) count += table[i].type != 0;
  return count;
}

int ThreadWindows() {
  int count = 0;
  EnumThreadWindows(GetCurrentThreadId(), CountWindow, reinterpret_cast<LPARAM>(&count));
  return count;
}

void Click(HWND window, int x, int y) {
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
  Pump();
}

void HeldKey::Set(BYTE state) const {
  BYTE keys[256] = {};
  GetKeyboardState(keys);
  keys[key_] = state;
  SetKeyboardState(keys);
}

std::wstring ClipboardText() {
  if (!OpenClipboard(nullptr)) return L"(held by another program)";
  std::wstring text;
  if (HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
    text = static_cast<const wchar_t*>(GlobalLock(data));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return text;
}

void PostKey(HWND window, WORD key) {
  PostMessageW(window, WM_KEYDOWN, key, 1);
  PostMessageW(window, WM_KEYUP, key, 0xC0000001);
}

void Press(HWND window, WORD key) {
  PostKey(window, key);
  Pump();
}

void Type(HWND window, const std::wstring& text) {
  for (const wchar_t unit : text) SendMessageW(window, WM_CHAR, unit, 1);
}

std::map<UINT_PTR, Steps*>& RunningSteps() {
  static std::map<UINT_PTR, Steps*> running;
  return running;
}

Steps::Steps(std::vector<std::function<void()>> steps)
    : steps_(std::move(steps)), timer_(SetTimer(nullptr, 0, USER_TIMER_MINIMUM, Tick)) {
  RunningSteps()[timer_] = this;
}

Steps::~Steps() {
  KillTimer(nullptr, timer_);
  RunningSteps().erase(timer_);
  EXPECT_EQ(next_, steps_.size()) << "ended before all steps were done";
}

void CALLBACK Steps::Tick(HWND, UINT, UINT_PTR timer, DWORD) {
  const auto found = RunningSteps().find(timer);
  if (found == RunningSteps().end()) return;
  Steps& running = *found->second;
  if (running.next_ < running.steps_.size()) running.steps_[running.next_++]();
}

}  // namespace tavrix::test
