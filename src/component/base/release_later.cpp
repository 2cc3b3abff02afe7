#include "component/base/release_later.h"

#include <mutex>
#include <unordered_map>
#include <utility>

namespace tavrix::component {

namespace {

/// What waits, by the timer that will come for it.
class Waiting {
 public:
  void Add(UINT_PTR timer, ComPtr<IUnknown> object) {
    const std::lock_guard lock(mutex_);
    objects_.emplace(timer, std::move(object));
  }
  [[nodiscard]] ComPtr<IUnknown> Take(UINT_PTR timer) {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(timer);
    if (found == objects_.end()) return {};
    ComPtr<IUnknown> object = std::move(found->second);
    objects_.erase(found);
    return object;
  }

 private:
  std::mutex mutex_;
  std::unordered_map<UINT_PTR, ComPtr<IUnknown>> objects_;
};

Waiting& AllWaiting() {
  static Waiting waiting;
  return waiting;
}

void CALLBACK OnTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  const ComPtr<IUnknown> end = AllWaiting().Take(timer);
}

}  // namespace

void ReleaseLater(ComPtr<IUnknown> object) {
  const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &OnTimer);
  if (timer != 0) AllWaiting().Add(timer, std::move(object));
}

}  // namespace tavrix::component
