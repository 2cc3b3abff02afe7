#include "book/odbc/odbc_rows.h"

#include <algorithm>
#include <utility>

namespace desk::book {

OdbcRows::OdbcRows(std::shared_ptr<OdbcChannel> channel, std::shared_ptr<OdbcReader> reader)
    : channel_(std::move(channel)), reader_(std::move(reader)), names_(reader_->Names()) {}

OdbcRows::~OdbcRows() {
  channel_->Release(std::move(reader_));
}

OdbcChannel::Pending<OdbcPortion> OdbcRows::Ask() {
  constexpr int kMax = 2048;
  const int most = std::exchange(most_, std::min(most_ * 4, kMax));
  return channel_->Start(
      [reader = reader_, most](OdbcLink& link) { return reader->Read(link, most); });
}

bool OdbcRows::Next() {
  if (next_cell_ == portion_.Cells()) {
    if (portion_.last) return false;
    portion_ = channel_->Finish(Ask());
    next_cell_ = 0;
    if (portion_.Cells() == 0) return false;
  }
  next_cell_ += names_.size();
  return true;
}

host::Value OdbcRows::Get(int column) const {
  return portion_.Get(next_cell_ - names_.size() + static_cast<std::size_t>(column));
}

void OdbcRows::ReadAll(CellSink& sink) {
  std::size_t first = next_cell_ - names_.size();
  while (!portion_.last) {
    const auto pending = Ask();
    portion_.Pass(first, sink);
    portion_ = channel_->Finish(pending);
    first = 0;
  }
  portion_.Pass(first, sink);
  next_cell_ = portion_.Cells();
}

}  // namespace desk::book
