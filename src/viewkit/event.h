#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace tavrix::viewkit {

/// The one event convention of all widgets: listeners are functions, called in the order in which
/// they came, on the raising thread. A listener may add or remove listeners, raise the event again,
/// or destroy the event's owner; a raise in progress then stops at those that are left.
template <class... Args>
class Event {
 public:
  using Listener = std::function<void(Args...)>;

  /// Ends with the event or with `Remove`.
  int Add(Listener listener) {
    list_->push_back({++last_, std::make_shared<Listener>(std::move(listener))});
    return last_;
  }

  void Remove(int id) {
    std::erase_if(*list_, [id](const Entry& entry) { return entry.id == id; });
  }

  void Raise(Args... args) const {
    if (list_->empty()) return;
    const std::weak_ptr<List> alive = list_;
    const List snapshot = *list_;
    for (const Entry& entry : snapshot) {
      const auto list = alive.lock();
      if (!list) return;
      const bool listed = std::any_of(list->begin(), list->end(),
                                      [&](const Entry& other) { return other.id == entry.id; });
      if (listed) (*entry.call)(args...);
    }
  }

 private:
  struct Entry {
    int id;
    std::shared_ptr<Listener> call;
  };
  using List = std::vector<Entry>;

  std::shared_ptr<List> list_ = std::make_shared<List>();
  int last_ = 0;
};

}  // namespace tavrix::viewkit
