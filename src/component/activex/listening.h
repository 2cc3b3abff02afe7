#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "host/non_copyable.h"
#include "viewkit/event.h"

namespace tavrix::component {

/// Listeners that end with the object that owns them, or before: what raises the events may live
/// longer. The events must outlive this.
class Listening : private host::NonCopyable {
 public:
  ~Listening() { End(); }

  template <class... Args>
  void To(viewkit::Event<Args...>& event, typename viewkit::Event<Args...>::Listener listener) {
    const int id = event.Add(std::move(listener));
    ends_.emplace_back([&event, id] { event.Remove(id); });
  }
  void End() {
    for (const auto& end : std::exchange(ends_, {})) end();
  }

 private:
  std::vector<std::function<void()>> ends_;
};

}  // namespace tavrix::component
