#pragma once

#include <memory>
#include <string>
#include <vector>

#include "book/odbc/odbc_channel.h"
#include "book/odbc/odbc_reader.h"
#include "host/non_copyable.h"

namespace desk::book {

/// The rows of a query on a server, fetched in portions; while one is passed on, the next comes.
class OdbcRows : public Rows, private tavrix::host::NonCopyable {
 public:
  OdbcRows(std::shared_ptr<OdbcChannel> channel, std::shared_ptr<OdbcReader> reader);
  ~OdbcRows() override;
  [[nodiscard]] bool Next() override;
  [[nodiscard]] int Columns() const override { return static_cast<int>(names_.size()); }
  [[nodiscard]] std::string ColumnName(int column) const override {
    return names_[static_cast<std::size_t>(column)];
  }
  [[nodiscard]] host::Value Get(int column) const override;
  void ReadAll(CellSink& sink) override;

 private:
  [[nodiscard]] OdbcChannel::Pending<OdbcPortion> Ask();

  std::shared_ptr<OdbcChannel> channel_;
  std::shared_ptr<OdbcReader> reader_;
  std::vector<std::string> names_;
  OdbcPortion portion_;
  std::size_t next_cell_ = 0;  ///< of the portion: where the row after the current one begins
  int most_ = 64;              ///< rows to ask for; grows, so that a short result costs little
};

}  // namespace desk::book
