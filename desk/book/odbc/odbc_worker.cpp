#include "book/odbc/odbc_worker.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <utility>

namespace desk::book {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kBetweenQuestions(50);
constexpr std::chrono::seconds kFarewell(2);

}  // namespace

struct OdbcWorker::Call {
  Task task;
  bool ended = false;
  std::exception_ptr failure;
};

struct OdbcWorker::State {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Pending> calls;
  bool closing = false;
  bool left = false;  ///< a call was given up: nobody waits for the thread any more
  bool gone = false;  ///< the thread has nothing more to do
};

OdbcWorker::OdbcWorker()
    : state_(std::make_shared<State>()), thread_([state = state_] { Serve(state); }) {}

OdbcWorker::~OdbcWorker() {
  std::unique_lock lock(state_->mutex);
  state_->closing = true;
  state_->changed.notify_all();
  state_->changed.wait_for(lock, kFarewell, [&] { return state_->gone || state_->left; });
  const bool gone = state_->gone;
  lock.unlock();
  if (gone) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

void OdbcWorker::Serve(const std::shared_ptr<State>& state) {
  std::unique_lock lock(state->mutex);
  while (true) {
    state->changed.wait(lock, [&] { return state->closing || !state->calls.empty(); });
    if (state->calls.empty()) break;
    const Pending call = std::move(state->calls.front());
    state->calls.pop_front();
    lock.unlock();
    try {
      call->task();
    } catch (...) {
      call->failure = std::current_exception();
    }
    call->task = nullptr;  // what it owns goes in this thread
    lock.lock();
    call->ended = true;
    state->changed.notify_all();
  }
  state->gone = true;
  state->changed.notify_all();
}

OdbcWorker::Pending OdbcWorker::Start(Task task) {
  auto call = std::make_shared<Call>();
  call->task = std::move(task);
  const std::scoped_lock lock(state_->mutex);
  state_->calls.push_back(call);
  state_->changed.notify_all();
  return call;
}

bool OdbcWorker::Finish(const Pending& call, const StillWaits& still_waits) {
  const auto start = Clock::now();
  std::unique_lock lock(state_->mutex);
  while (!state_->changed.wait_for(lock, kBetweenQuestions, [&] { return call->ended; })) {
    lock.unlock();
    const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    const bool on = still_waits(waited);
    lock.lock();
    if (on || call->ended) continue;
    state_->left = true;
    return false;
  }
  if (call->failure) std::rethrow_exception(call->failure);
  return true;
}

}  // namespace desk::book
