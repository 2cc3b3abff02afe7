#include "host/row_set.h"

#include <gtest/gtest.h>

namespace tavrix::host {
namespace {

TEST(RowSetTest, HoldsTextsNumbersAndNulls) {
  RowSet rows(3);
  EXPECT_EQ(rows.Rows(), 0U);
  rows.AppendText("科目");
  rows.AppendNull();
  rows.AppendInteger(INT64_MIN);
  rows.AppendText("");
  EXPECT_EQ(rows.Rows(), 1U);  // the second is not complete
  EXPECT_EQ(rows.Text(0, 0), "科目");
  EXPECT_TRUE(rows.IsNull(0, 1));
  EXPECT_EQ(rows.Text(0, 1), "");
  EXPECT_EQ(rows.Text(0, 2), "-9223372036854775808");
  EXPECT_EQ(RowSet().Rows(), 0U);
}

TEST(RowSetTest, HandsItsStorageOver) {
  RowSet rows(1);
  rows.Reserve(2, 8);
  rows.AppendText("a");
  rows.AppendText("");
  const RowSet::Storage storage = std::move(rows).Release();
  EXPECT_EQ(storage.columns, 1U);
  EXPECT_EQ(storage.text, "a");
  ASSERT_EQ(storage.cells.size(), 2U);
  EXPECT_EQ(storage.cells[1].length, 0U);
}

}  // namespace
}  // namespace tavrix::host
