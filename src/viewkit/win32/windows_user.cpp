#include "viewkit/win32/windows_user.h"

#include <memory>
#include <utility>
#include <vector>

#include "host/non_copyable.h"
#include "host/utf.h"
#include "viewkit/win32/dialog_window.h"
#include "viewkit/win32/prompt.h"

namespace tavrix::viewkit::win32 {
namespace {

UINT IconFlag(UserPort::Icon icon) {
  switch (icon) {
    case UserPort::Icon::kInformation:
      return MB_ICONINFORMATION;
    case UserPort::Icon::kWarning:
      return MB_ICONWARNING;
    case UserPort::Icon::kCritical:
      return MB_ICONERROR;
    case UserPort::Icon::kQuestion:
      return MB_ICONQUESTION;
    case UserPort::Icon::kNone:
      break;
  }
  return 0;
}

UINT ButtonFlags(UserPort::Buttons buttons) {
  switch (buttons) {
    case UserPort::Buttons::kYesNo:
      return MB_YESNO;
    case UserPort::Buttons::kYesNoDefaultNo:
      return MB_YESNO | MB_DEFBUTTON2;
    case UserPort::Buttons::kOk:
      break;
  }
  return MB_OK;
}

std::wstring ProgramFile() {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size()));
    if (length < file.size()) return file.substr(0, length);
    file.resize(file.size() * 2);
  }
}

/// A value of a version block; empty when there is none.
template <class Value>
std::pair<const Value*, UINT> Query(const std::vector<BYTE>& block, const std::wstring& path) {
  void* value = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(block.data(), path.c_str(), &value, &length)) return {nullptr, 0};
  return {static_cast<const Value*>(value), length};
}

/// The last name of a path, without what follows its last dot.
std::wstring Stem(const std::wstring& file) {
  const std::wstring name = file.substr(file.find_last_of(L"\\/") + 1);
  return name.substr(0, name.find_last_of(L'.'));
}

std::wstring Description(const std::wstring& file) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &ignored);
  std::vector<BYTE> block(size);
  if (size == 0 || !GetFileVersionInfoW(file.c_str(), 0, size, block.data())) return {};
  const auto [language, bytes] = Query<WORD>(block, L"\\VarFileInfo\\Translation");
  if (language == nullptr || bytes < 2 * sizeof(WORD)) return {};
  wchar_t path[64];
  swprintf(path, std::size(path), L"\\StringFileInfo\\%04x%04x\\FileDescription", language[0],
           language[1]);
  const auto text = Query<wchar_t>(block, path).first;
  return text == nullptr ? std::wstring() : std::wstring(text);
}

}  // namespace

/// The container knows of a modal window as long as this lives; then the focus goes back.
class WindowsUser::Modal : private host::NonCopyable {
 public:
  explicit Modal(const WindowsUser& user) : user_(user), focus_(GetFocus()) {
    if (user_.options_.modal) user_.options_.modal(true);
  }
  ~Modal() {
    if (IsWindow(focus_)) SetFocus(focus_);
    if (user_.options_.modal) user_.options_.modal(false);
  }

 private:
  const WindowsUser& user_;
  HWND focus_;
};

/// An owner that takes no input. It has to take it again before the modal window goes: else the
/// system would activate another program's window.
class WindowsUser::DisabledOwner : private host::NonCopyable {
 public:
  explicit DisabledOwner(HWND owner)
      : owner_(owner), was_enabled_(owner != nullptr && IsWindowEnabled(owner)) {
    if (was_enabled_) EnableWindow(owner_, FALSE);
  }
  ~DisabledOwner() {
    if (was_enabled_) EnableWindow(owner_, TRUE);
  }

 private:
  HWND owner_;
  bool was_enabled_;
};

HWND WindowsUser::Owner() const {
  const HWND window = options_.owner ? options_.owner() : nullptr;
  if (window == nullptr) return GetActiveWindow();
  // Asked from inside a dialog, the question stands above that dialog.
  const HWND top = GetAncestor(window, GA_ROOT);
  const HWND popup = GetLastActivePopup(top);
  return popup != nullptr && IsWindowVisible(popup) ? popup : top;
}

UserPort::Answer WindowsUser::Ask(const std::string& text, const std::string& title, Icon icon,
                                  Buttons buttons) {
  const Modal modal(*this);
  // The box disables its owner itself, and enables only one that it has disabled.
  const int answer = MessageBoxW(Owner(), host::Wide(text).c_str(), host::Wide(title).c_str(),
                                 ButtonFlags(buttons) | IconFlag(icon));
  if (answer == IDYES) return Answer::kYes;
  return buttons == Buttons::kOk ? Answer::kOk : Answer::kNo;
}

std::string WindowsUser::Input(const std::string& prompt, const std::string& title) {
  Prompt dialog(prompt, title);
  ShowModal(dialog);
  return dialog.Answer();
}

void WindowsUser::ShowModal(DialogModel& dialog) {
  const Modal modal(*this);
  const HWND owner = Owner();
  const auto window = std::make_shared<DialogWindow>(dialog);
  window->Open(owner);
  const DisabledOwner disabled(owner);
  window->Run();
}

void WindowsUser::SetWaitCursor(bool on) {
  if (on && waiting_++ == 0) pointer_ = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  if (!on && waiting_ > 0 && --waiting_ == 0) SetCursor(pointer_);
}

std::string WindowsUser::ApplicationTitle() {
  return ProgramTitle(ProgramFile());
}

std::string ProgramTitle(const std::wstring& file) {
  const std::wstring description = Description(file);
  return host::Narrow(description.empty() ? Stem(file) : description);
}

}  // namespace tavrix::viewkit::win32
