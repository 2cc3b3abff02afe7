#include "host/calls.h"

#include <gtest/gtest.h>

namespace tavrix::host {
namespace {

/// One row with one column, whatever the statement has asked for.
class Narrow : public Recordset {
 public:
  bool EndOfFile() override { return false; }
  bool BeginningOfFile() override { return false; }
  RowSet GetRows() override {
    RowSet rows(1);
    rows.AppendText("1001");
    return rows;
  }
  void Find(const std::string&) override {}
  void MoveFirst() override {}
  Value Field(const std::string&) override { return "1001"; }
  Value Field(int) override { return "1001"; }
  void Close() override {}
};

TEST(Calls, RowsThatLackColumnsAreNotRead) {
  Narrow rows;
  EXPECT_EQ(GivenRows(rows, 1).Rows(), 1U);
  EXPECT_THROW(static_cast<void>(GivenRows(rows, 2)), HostError);
}

}  // namespace
}  // namespace tavrix::host
