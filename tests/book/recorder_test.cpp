#include "support/recorder.h"

#include <gtest/gtest.h>

#include "host/calls.h"
#include "support/test_book.h"

namespace tavrix::test {
namespace {

using desk::book::Book;

class RecorderTest : public testing::Test {
 protected:
  Book book_ = MakeBook();
  Recorder recorder_{book_.System()};
};

TEST_F(RecorderTest, KeepsStatementsInOrder) {
  (void)host::QueryScalar(*recorder_.System(), "select 1");
  (void)host::ExecuteSql(*recorder_.System(), "delete from gl_accsum");
  (void)recorder_.System()->GetDatabase()->OpenSql("never run", 1);
  EXPECT_EQ(recorder_.Statements(),
            (std::vector<std::string>{"select 1", "delete from gl_accsum"}));
  EXPECT_EQ(recorder_.Count("GetDatabase"), 3);
}

/// Every call of a small command, each with every fault that it allows.
TEST_F(RecorderTest, EachCallCanFailOnce) {
  const auto command = [](host::SystemObject& system) {
    auto rows = host::QueryRows(system, "select ccode from gl_code");
    if (rows->Field(0).IsNull()) throw host::HostError("null");
    rows.Close();
    const std::string text = host::ExecuteSql(system, "delete from gl_accsum");
    if (!text.empty()) throw host::HostError(text);
    const auto id = system.NewIdentifier("gl_code", "i_id");
    if (!id.error.empty() || id.id <= 0) throw host::HostError(id.error);
  };
  command(*recorder_.System());
  const auto calls = recorder_.Calls();
  ASSERT_EQ(calls.size(), 11U);
  for (int n = 0; n < static_cast<int>(calls.size()); ++n) {
    for (const Fault fault : {Fault::kThrow, Fault::kErrorText, Fault::kNull}) {
      recorder_.Clear();
      recorder_.FailAt(n, fault);
      const bool allowed = calls[static_cast<std::size_t>(n)].Allows(fault);
      if (allowed) {
        EXPECT_THROW(command(*recorder_.System()), host::HostError) << n;
      } else {
        EXPECT_NO_THROW(command(*recorder_.System())) << n;
      }
      EXPECT_EQ(recorder_.Fired(), allowed) << n;
      EXPECT_NO_THROW(command(*recorder_.System())) << "the fault comes once";
    }
  }
}

TEST_F(RecorderTest, FailsACallByName) {
  recorder_.FailNext("Statement.Execute", Fault::kThrow, "坏了");
  EXPECT_NO_THROW((void)host::QueryScalar(*recorder_.System(), "select 1"));
  EXPECT_THROW((void)host::ExecuteSql(*recorder_.System(), "delete from gl_code"), host::HostError);
  EXPECT_EQ(Scalar(book_, "select count(*) from gl_code"), "8");
}

}  // namespace
}  // namespace tavrix::test
