#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "book/odbc/odbc_link.h"
#include "book/odbc/odbc_worker.h"
#include "host/non_copyable.h"

namespace desk::book {

/// One connection to a server, as those see it who use it: every call runs in the connection's own
/// thread, and is waited for no longer than the time limit of the place or until the user has
/// enough. Shared by the results that came through it.
class OdbcChannel : private tavrix::host::NonCopyable {
 public:
  /// Connects. `DatabaseError` with the driver's reason, or when the server stays silent.
  OdbcChannel(const std::string& connection_string, const Place& place);
  ~OdbcChannel();

  [[nodiscard]] SqlDialect Server() const { return flavor_; }
  /// Whether nobody answers any more, or an answer was given up: it can be used for nothing then.
  [[nodiscard]] bool Dead() const { return given_up_ || dead_; }
  /// Whether the connection broke, so that a query may be sent again. A server that was silent for
  /// so long is not asked the same once more.
  [[nodiscard]] bool Lost() const { return dead_ && !given_up_; }
  /// Whether an answer was given up: what was asked for may have been done.
  [[nodiscard]] bool GivenUp() const { return given_up_; }
  /// From now on it counts as dead.
  void GiveUp() { dead_ = true; }
  /// Zero is no limit. Counts for what is sent from now on.
  void SetTimeLimit(std::chrono::milliseconds limit) { limit_ = limit; }

  /// A call under way whose result is wanted later.
  template <class Result>
  struct Pending {
    OdbcWorker::Pending call;
    std::shared_ptr<std::optional<Result>> result;
  };

  /// Starts `body(link)` in the connection's thread. What it needs it must own: it may outlive
  /// whoever waits for it.
  template <class Body, class Result = std::invoke_result_t<Body, OdbcLink&>>
  [[nodiscard]] Pending<Result> Start(Body body) {
    CheckAlive();
    Pending<Result> pending{.call = nullptr, .result = std::make_shared<std::optional<Result>>()};
    pending.call = worker_.Start([link = link_, result = pending.result, body = std::move(body)] {
      result->emplace(body(*link));
    });
    return pending;
  }

  /// Its result, or what it threw. `DatabaseError` (`ErrorKind::kGone`) when it did not come in
  /// time.
  template <class Result>
  [[nodiscard]] Result Finish(const Pending<Result>& pending) {
    Await(pending.call);
    return std::move(**pending.result);
  }

  template <class Body>
  [[nodiscard]] auto Call(Body body) {
    return Finish(Start(std::move(body)));
  }

  /// Lets go of what belongs to the connection's thread, there.
  template <class Object>
  void Release(std::shared_ptr<Object>&& object) {
    worker_.Start([object = std::move(object)]() mutable { object.reset(); });
  }

 private:
  void CheckAlive() const;
  /// Waits, and learns from the call whether the connection still stands.
  void Await(const OdbcWorker::Pending& call);
  /// Whether to wait on after `waited`; sets `reason_` when not.
  [[nodiscard]] bool StillWaits(std::chrono::milliseconds waited);

  std::chrono::milliseconds limit_;
  std::shared_ptr<WaitPort> port_;
  SqlDialect flavor_ = SqlDialect::kOther;
  bool dead_ = false;
  bool given_up_ = false;
  std::string reason_;
  std::shared_ptr<OdbcLink> link_;  ///< belongs to the thread once it is made
  OdbcWorker worker_;
};

}  // namespace desk::book
