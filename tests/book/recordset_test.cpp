#include "book/host/recordset.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/calls.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

std::shared_ptr<host::Recordset> OpenRecordset(const Book& book, const std::string& sql) {
  return book.System()->GetDatabase()->OpenSql(sql, 1)->OpenRecordset();
}

class RecordsetTest : public testing::Test {
 protected:
  std::shared_ptr<host::Recordset> Open(const std::string& sql) {
    return OpenRecordset(book_, sql);
  }
  std::shared_ptr<host::Recordset> OpenCodes() {
    return Open("select i_id,ccode,igrade from gl_code order by ccode");
  }
  Book book_ = MakeBook();
};

TEST_F(RecordsetTest, GivesAllRowsFromTheCurrentOneOn) {
  const auto rows = OpenCodes();
  EXPECT_FALSE(rows->EndOfFile());
  EXPECT_EQ(rows->GetRows().Rows(), 8U);
  EXPECT_TRUE(rows->EndOfFile());
  EXPECT_FALSE(rows->BeginningOfFile());
  rows->MoveFirst();
  EXPECT_EQ(rows->Field("CCODE").ToText(), "1001");
  rows->Find(" ccode='5001'");
  const host::RowSet rest = rows->GetRows();
  ASSERT_EQ(rest.Rows(), 3U);
  EXPECT_EQ(rest.Text(0, 1), "5001");
  EXPECT_EQ(rest.Text(2, 2), "3");
}

TEST_F(RecordsetTest, FindsByTextAndNumber) {
  const auto rows = OpenCodes();
  rows->Find("igrade > 1");
  EXPECT_EQ(rows->Field(1).ToText(), "100201");
  rows->Find("[igrade]=3");
  EXPECT_EQ(rows->Field("ccode").ToText(), "50010101");
  rows->Find("ccode='1001'");
  EXPECT_TRUE(rows->EndOfFile()) << "it searches from the current row on";
  rows->MoveFirst();
  rows->Find("igrade<>1");
  EXPECT_EQ(rows->Field("i_id").ToLong(), 3);
  rows->MoveFirst();
  for (const char* bad :
       {"", "ccode", "ccode=", "ccode='1", "ccode like '1'", "=1", "ccode='1'2"}) {
    EXPECT_THROW(rows->Find(bad), host::HostError) << bad;
  }
  EXPECT_THROW(rows->Find("nothing=1"), host::HostError);
  EXPECT_EQ(rows->Field("ccode").ToText(), "1001");
}

TEST_F(RecordsetTest, AnEmptyOneBehavesAsEmpty) {
  const auto rows = Open("select ccode from gl_code where i_id=0");
  EXPECT_TRUE(rows->EndOfFile());
  EXPECT_TRUE(rows->BeginningOfFile());
  EXPECT_THROW((void)rows->Field(0), host::HostError);
  EXPECT_THROW((void)rows->GetRows(), host::HostError);
  EXPECT_THROW(rows->MoveFirst(), host::HostError);
}

TEST_F(RecordsetTest, ShowsWhatWasThereWhenItWasOpened) {
  const auto running = OpenCodes();
  const auto drained = OpenCodes();
  EXPECT_EQ(drained->GetRows().Rows(), 8U);
  EXPECT_EQ(host::ExecuteSql(*book_.System(), "delete from gl_code where ccode like '5%'"), "");
  (void)book_.System()->NewIdentifier("gl_code", "i_ID");
  EXPECT_EQ(running->GetRows().Rows(), 8U);
  drained->MoveFirst();
  drained->Find("ccode='5001'");
  EXPECT_FALSE(drained->EndOfFile());
  EXPECT_EQ(OpenCodes()->GetRows().Rows(), 5U);
}

TEST_F(RecordsetTest, KeepsKindsOfValues) {
  const std::string sql = "select null,1.5,'x',cclass,12 from gl_code where i_id=1";
  const auto rows = Open(sql);
  EXPECT_TRUE(rows->Field(0).IsNull());
  EXPECT_EQ(rows->Field(1).ToNumber(), 1.5);
  for (const bool kept : {false, true}) {
    const auto fresh = Open(sql);
    if (kept) fresh->Find("cclass='资产'");
    const host::RowSet set = fresh->GetRows();
    EXPECT_TRUE(set.IsNull(0, 0));
    EXPECT_EQ(set.Text(0, 1), "1.5");
    EXPECT_EQ(set.Text(0, 3), "资产");
    EXPECT_EQ(set.Text(0, 4), "12");
  }
}

TEST_F(RecordsetTest, RefusesWhatIsNotThere) {
  const auto rows = OpenCodes();
  EXPECT_THROW((void)rows->Field("nothing"), host::HostError);
  EXPECT_THROW((void)rows->Field(3), host::HostError);
  EXPECT_THROW((void)rows->Field(-1), host::HostError);
  rows->Close();
  rows->Close();
  EXPECT_THROW((void)rows->EndOfFile(), host::HostError);
  EXPECT_THROW(rows->MoveFirst(), host::HostError);
}

TEST(RecordsetLifeTest, OutlivesItsBook) {
  std::shared_ptr<host::Recordset> rows;
  {
    const Book book = MakeBook();
    rows = OpenRecordset(book, "select ccode from gl_code");
  }
  EXPECT_EQ(rows->GetRows().Rows(), 8U);
}

}  // namespace
}  // namespace desk::book
