#include "book/odbc/odbc_channel.h"

#include <algorithm>
#include <thread>

#include "host/non_copyable.h"

namespace desk::book {

namespace {

/// A server that lives ends a statement itself when its time is over; this is for one that does
/// not.
constexpr std::chrono::milliseconds kGrace(2000);
constexpr std::chrono::seconds kConnecting(10);

/// A server that is there answers a connection sooner than a statement.
std::chrono::milliseconds ConnectingLimit(const Place& place) {
  if (place.time_limit.count() == 0) return kConnecting;
  return std::min<std::chrono::milliseconds>(place.time_limit, kConnecting);
}

/// Driver and server may take long to hear of it, so nobody waits for that.
void CancelApart(std::shared_ptr<OdbcLink> link) {
  std::thread([link = std::move(link)] { link->Cancel(); }).detach();
}

/// Tells the port that the wait is over, however it ends.
class WaitScope : private tavrix::host::NonCopyable {
 public:
  explicit WaitScope(WaitPort* port) : port_(port) {}
  ~WaitScope() {
    if (port_ != nullptr) port_->OnWaited();
  }

 private:
  WaitPort* port_;
};

}  // namespace

OdbcChannel::OdbcChannel(const std::string& connection_string, const Place& place)
    : limit_(ConnectingLimit(place)), port_(place.waiting) {
  const bool read_only = place.access == Access::kReadOnly;
  const auto made = std::make_shared<std::shared_ptr<OdbcLink>>();
  Await(worker_.Start([made, connection_string, read_only] {
    *made = std::make_shared<OdbcLink>(connection_string, static_cast<int>(kConnecting.count()),
                                       read_only);
  }));
  link_ = std::move(*made);
  flavor_ = link_->Server();
  limit_ = place.time_limit;
}

OdbcChannel::~OdbcChannel() {
  Release(std::move(link_));
}

void OdbcChannel::CheckAlive() const {
  if (!Dead()) return;
  throw DatabaseError(ErrorKind::kGone, "与数据库服务器的连接已断开，这次操作没有完成");
}

bool OdbcChannel::StillWaits(std::chrono::milliseconds waited) {
  const bool late = limit_.count() > 0 && waited > limit_ + kGrace;
  const bool on = !late && (!port_ || port_->OnWait(waited));
  if (on) return true;
  reason_ = late ? "数据库服务器没有回答" : "已不再等待数据库服务器";
  return false;
}

void OdbcChannel::Await(const OdbcWorker::Pending& call) {
  const WaitScope scope(port_.get());
  bool ended = false;
  try {
    ended = worker_.Finish(call, [this](auto waited) { return StillWaits(waited); });
  } catch (const DatabaseError& error) {
    if (error.Kind() == ErrorKind::kGone) dead_ = true;
    throw;
  }
  if (ended) return;
  given_up_ = true;
  if (link_) CancelApart(link_);
  throw DatabaseError(ErrorKind::kGone, reason_);
}

}  // namespace desk::book
