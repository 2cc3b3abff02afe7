#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

#include "host/non_copyable.h"

namespace desk::book {

/// A thread of its own for the calls into one driver, which may block for as long as they like: the
/// caller waits only as long as it wants to. A call that nobody waits for any more goes on alone,
/// so whatever a task uses belongs to it (shared pointers), and the thread may outlive the worker.
class OdbcWorker : private tavrix::host::NonCopyable {
  struct Call;
  struct State;

 public:
  using Task = std::function<void()>;
  /// Asked a few times a second while a call lasts, in the thread that waits for it.
  using StillWaits = std::function<bool(std::chrono::milliseconds waited)>;
  /// A call under way.
  using Pending = std::shared_ptr<Call>;

  OdbcWorker();
  /// Waits a little for what is under way; a thread that hangs is left behind, and one whose call
  /// was given up is not waited for.
  ~OdbcWorker();

  /// Runs `task` in the thread, after those that came before. Does not wait.
  Pending Start(Task task);
  /// Waits for a call; what it threw is thrown here. False when `still_waits` had enough.
  [[nodiscard]] bool Finish(const Pending& call, const StillWaits& still_waits);

 private:
  static void Serve(const std::shared_ptr<State>& state);

  std::shared_ptr<State> state_;
  std::thread thread_;
};

}  // namespace desk::book
