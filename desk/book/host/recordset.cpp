#include "book/host/recordset.h"

#include <exception>
#include <utility>

#include "book/sql/criteria.h"
#include "host/error.h"
#include "host/report.h"
#include "host/text.h"

namespace desk::book {

SnapshotRecordset::SnapshotRecordset(std::shared_ptr<Session> session, std::string sql)
    : session_(std::move(session)), sql_(std::move(sql)), rows_(session_->Query(sql_)) {
  for (int column = 0; column < rows_->Columns(); ++column) {
    names_.push_back(rows_->ColumnName(column));
  }
  empty_ = !rows_->Next();
  if (empty_) {
    rows_.reset();
    state_ = State::kKept;
  }
  session_->Add(*this);
}

SnapshotRecordset::~SnapshotRecordset() {
  session_->Remove(*this);
}

void SnapshotRecordset::CheckOpen() const {
  if (!failure_.empty()) throw host::HostError(failure_);
  if (state_ == State::kClosed) throw host::HostError("记录集已经关闭");
}

void SnapshotRecordset::CheckRow() {
  if (EndOfFile()) throw host::HostError("记录集没有当前记录");
}

std::size_t SnapshotRecordset::KeptRows() const {
  return names_.empty() ? 0 : kept_.size() / names_.size();
}

const host::Value& SnapshotRecordset::Kept(std::size_t row, std::size_t column) const {
  return kept_[row * names_.size() + column];
}

bool SnapshotRecordset::EndOfFile() {
  CheckOpen();
  if (state_ == State::kKept) return row_ >= KeptRows();
  return state_ == State::kDrained;
}

bool SnapshotRecordset::BeginningOfFile() {
  CheckOpen();
  return empty_;
}

void SnapshotRecordset::TakeRunningRows() {
  const int columns = rows_->Columns();
  do {
    for (int column = 0; column < columns; ++column) kept_.push_back(rows_->Get(column));
  } while (rows_->Next());
  rows_.reset();
}

void SnapshotRecordset::KeepRows() {
  CheckOpen();
  if (state_ == State::kKept) return;
  const bool drained = state_ == State::kDrained;
  if (drained) rows_ = session_->Query(sql_);
  if (!drained || rows_->Next()) TakeRunningRows();
  rows_.reset();
  state_ = State::kKept;
  row_ = drained ? KeptRows() : 0;
}

void SnapshotRecordset::Keep() noexcept {
  if (state_ != State::kRunning && state_ != State::kDrained) return;
  try {
    KeepRows();
  } catch (const std::exception& error) {
    rows_.reset();
    failure_ = host::ErrorText(error);
  }
}

host::RowSet SnapshotRecordset::GetRows() {
  host::RowSet rows(names_.size());
  session_->Reserve(sql_, rows);
  RowSetSink sink(rows);
  PassRows(sink);
  session_->NoteSize(sql_, rows);
  return rows;
}

void SnapshotRecordset::PassRows(CellSink& sink) {
  CheckRow();
  if (state_ == State::kKept) {
    for (std::size_t cell = row_ * names_.size(); cell < kept_.size(); ++cell) {
      PassCell(kept_[cell], sink);
    }
    row_ = KeptRows();
    return;
  }
  rows_->ReadAll(sink);
  rows_.reset();
  state_ = State::kDrained;
}

void SnapshotRecordset::Find(const std::string& criteria) {
  CheckRow();
  const Criteria wanted = Criteria::Parse(criteria);
  const auto column = static_cast<std::size_t>(PositionOf(wanted.column));
  KeepRows();
  while (row_ < KeptRows() && !wanted.Meets(Kept(row_, column))) ++row_;
}

void SnapshotRecordset::MoveFirst() {
  CheckOpen();
  if (empty_) throw host::HostError("记录集没有记录");
  if (state_ == State::kRunning) return;
  KeepRows();
  row_ = 0;
}

int SnapshotRecordset::PositionOf(const std::string& name) const {
  for (std::size_t i = 0; i < names_.size(); ++i) {
    if (host::EqualNoCase(names_[i], name)) return static_cast<int>(i);
  }
  throw host::HostError("记录集中没有这个列：" + name);
}

host::Value SnapshotRecordset::Field(const std::string& name) {
  CheckOpen();
  return Field(PositionOf(name));
}

host::Value SnapshotRecordset::Field(int position) {
  CheckRow();
  if (position < 0 || static_cast<std::size_t>(position) >= names_.size()) {
    throw host::HostError("记录集中没有这个列：" + std::to_string(position));
  }
  if (state_ == State::kKept) return Kept(row_, static_cast<std::size_t>(position));
  return rows_->Get(position);
}

void SnapshotRecordset::Close() {
  rows_.reset();
  kept_.clear();
  state_ = State::kClosed;
}

}  // namespace desk::book
