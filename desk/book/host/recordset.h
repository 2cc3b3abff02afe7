#pragma once

#include <memory>
#include <string>
#include <vector>

#include "book/session/session.h"
#include "host/non_copyable.h"
#include "host/objects.h"

namespace desk::book {

/// A scrollable recordset that shows what was there when it was opened.
///
/// It reads from the running query as long as it is only asked for what comes next: a caller that
/// takes all rows at once gets them without a copy. Whatever needs to go back, or comes before a
/// write, takes the rows into memory first. One that `GetRows` has drained reads again.
///
/// As with ADO, members that need a row fail when the recordset is empty or stands at its end.
class SnapshotRecordset : public host::Recordset,
                          private LiveResult,
                          private tavrix::host::NonCopyable {
 public:
  /// Opens and stands on the first row. `DatabaseError` when the statement fails.
  SnapshotRecordset(std::shared_ptr<Session> session, std::string sql);
  ~SnapshotRecordset() override;

  [[nodiscard]] bool EndOfFile() override;
  [[nodiscard]] bool BeginningOfFile() override;
  [[nodiscard]] host::RowSet GetRows() override;
  /// As `GetRows`, with the kinds of the cells kept.
  void PassRows(CellSink& sink);
  [[nodiscard]] const std::vector<std::string>& ColumnNames() const { return names_; }
  void Find(const std::string& criteria) override;
  void MoveFirst() override;
  [[nodiscard]] host::Value Field(const std::string& name) override;
  [[nodiscard]] host::Value Field(int position) override;
  void Close() override;

 private:
  enum class State {
    kRunning,  ///< `rows_` stands on the current row, which is the first
    kDrained,  ///< all rows have been handed out and none was kept
    kKept,     ///< all rows are in `kept_`
    kClosed
  };

  void Keep() noexcept override;
  void KeepRows();
  void TakeRunningRows();
  void CheckOpen() const;
  void CheckRow();
  [[nodiscard]] std::size_t KeptRows() const;
  [[nodiscard]] int PositionOf(const std::string& name) const;
  [[nodiscard]] const host::Value& Kept(std::size_t row, std::size_t column) const;

  std::shared_ptr<Session> session_;
  std::string sql_;
  std::unique_ptr<Rows> rows_;
  std::vector<std::string> names_;
  std::vector<host::Value> kept_;
  std::size_t row_ = 0;
  bool empty_ = false;
  State state_ = State::kRunning;
  std::string failure_;  ///< why the rows could not be kept; every later use reports it
};

}  // namespace desk::book
