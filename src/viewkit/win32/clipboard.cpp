#include "viewkit/win32/clipboard.h"

#include <cstring>
#include <memory>
#include <string>

#include "host/non_copyable.h"
#include "host/utf.h"

namespace tavrix::viewkit::win32 {
namespace {

struct GlobalDeleter {
  void operator()(void* memory) const noexcept { GlobalFree(memory); }
};
using GlobalMemory = std::unique_ptr<void, GlobalDeleter>;

class OpenedClipboard : private host::NonCopyable {
 public:
  explicit OpenedClipboard(HWND owner) {
    for (int attempt = 0; attempt < 5 && !open_; ++attempt) {
      if (attempt > 0) Sleep(10);
      open_ = OpenClipboard(owner) != 0;
    }
  }
  ~OpenedClipboard() {
    if (open_) CloseClipboard();
  }
  [[nodiscard]] bool IsOpen() const { return open_; }

 private:
  bool open_ = false;
};

GlobalMemory Copy(const std::wstring& text) {
  const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
  GlobalMemory memory(GlobalAlloc(GMEM_MOVEABLE, bytes));
  if (!memory) return memory;
  std::memcpy(GlobalLock(memory.get()), text.c_str(), bytes);
  GlobalUnlock(memory.get());
  return memory;
}

}  // namespace

bool CopyText(HWND owner, std::string_view text) {
  const OpenedClipboard clipboard(owner);
  if (!clipboard.IsOpen()) return false;
  EmptyClipboard();
  GlobalMemory memory = Copy(host::Wide(text));
  if (!memory || SetClipboardData(CF_UNICODETEXT, memory.get()) == nullptr) return false;
  (void)memory.release();  // the clipboard's from now on
  return true;
}

}  // namespace tavrix::viewkit::win32
