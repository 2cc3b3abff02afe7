#include "component/base/release_later.h"

#include <map>
#include <mutex>
#include <utility>

namespace tavrix::component {

namespace {

/// What waits, by the timer that will come for it. Threads number their timers alike.
class Waiting {
 public:
  void Add(UINT_PTR timer, ComPtr<IUnknown> object) {
    const std::lock_guard lock(mutex_);
    objects_.emplace(Here(timer), std::move(object));
  }
  [[nodiscard]] ComPtr<IUnknown> Take(UINT_PTR timer) {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(Here(timer));
    if (found == objects_.end()) return {};
    ComPtr<IUnknown> object = std::move(found->second);
    objects_.erase(found);
    return object;
  }

 private:
  using Key = std::pair<DWORD, UINT_PTR>;
  [[nodiscard]] static Key Here(UINT_PTR timer) { return {GetCurrentThreadId(), timer}; }

  std::mutex mutex_;
  std::map<Key, ComPtr<IUnknown>> objects_;
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
  if (timer != 0) return AllWaiting().Add(timer, std::move(object));
  // The system has no timer left: an object too many is better than one that ends under its own
  // code.
  static_cast<void>(object.Detach());
}

}  // namespace tavrix::component
