// Rearranging accounts while other programs, which know nothing of the desk's lock, work in the
// book, and rearranging so much that it takes long.

#include <gmock/gmock.h>

#include <future>
#include <thread>

#include "book/chart/merge.h"
#include "book/journal/undo.h"
#include "host/calls.h"
#include "sharing/shared_book.h"

namespace tavrix::sharing {
namespace {

namespace book = desk::book;
using book::Session;
using book::WorkState;
using std::chrono::milliseconds;
using test::Scalar;
using Texts = std::vector<std::string>;

constexpr milliseconds kHasty(100);

class OtherPrograms : public testing::TestWithParam<const char*> {
 protected:
  [[nodiscard]] bool OnServer() const { return GetParam() == std::string("postgresql"); }
  static void Merge(const book::Book& in, const book::Progress& progress = {}) {
    Session& session = in.GetSession();
    (void)MergeAccounts(session, PlanMerge(session, "10020001", "10020002"), progress);
  }
  static void UndoLast(const book::Book& in) {
    (void)book::UndoCommand(in.GetSession(), in.GetSession().LastCommand());
  }
  /// Each `change` of `table` takes half a second more than it did.
  void SlowDown(const std::string& change, const std::string& table) const {
    test::Run(book_,
              "create function slow_" + table +
                  "()returns trigger language plpgsql as $$begin perform pg_sleep(0.5);return "
                  "null;end$$");
    test::Run(book_, "create trigger slow after " + change + " on " + table +
                         " for each statement execute function slow_" + table + "()");
  }
  [[nodiscard]] Texts Postings() const {
    return test::AllRows(book_, "select i_id,ccode,debit from gl_accvouch order by i_id");
  }

  SharedBook shared_{GetParam()};
  book::Book book_ = shared_.Open();
};
INSTANTIATE_TEST_SUITE_P(Engines, OtherPrograms, testing::ValuesIn(SharedEngines()));

TEST_P(OtherPrograms, APostingUnderWayGoesAlongWithAMergeAndBack) {
  test::AddPosting(book_, "gl_accvouch", "10020001");
  const book::Book other = shared_.Open();
  test::Run(other, "begin");
  test::Run(other, "insert into gl_accvouch(i_id,ccode)values(500,'10020001')");
  auto merge = std::async(std::launch::async, [&] { Merge(book_); });
  std::this_thread::sleep_for(milliseconds(300));
  test::Run(other, "commit");
  merge.get();
  EXPECT_EQ(Scalar(book_, "select count(*) from gl_accvouch where ccode='10020002'"), "2");
  UndoLast(book_);
  EXPECT_EQ(Scalar(book_, "select count(*) from gl_accvouch where ccode='10020001'"), "2");
}

TEST_P(OtherPrograms, NoneComesBetweenTheNoteOfPostingsAndTheirMove) {
  test::AddPosting(book_, "gl_accvouch", "10020001");
  if (OnServer()) SlowDown("insert", "desk_moved");
  const book::Book other = shared_.Open(kHasty);
  auto merge = std::async(std::launch::async, [&] { Merge(book_); });
  std::this_thread::sleep_for(milliseconds(200));
  std::string refusal;
  try {
    test::Run(other, "insert into gl_accvouch(i_id,ccode)values(500,'10020001')");
  } catch (const book::DatabaseError& error) {
    refusal = error.what();
  }
  merge.get();
  if (OnServer()) {
    EXPECT_THAT(refusal, testing::HasSubstr("正被其他用户使用"));
  }
  EXPECT_EQ(Scalar(book_, "select sum(row_count) from desk_moved"),
            Scalar(book_, "select count(*) from gl_accvouch where ccode='10020002'"));
}

TEST_P(OtherPrograms, NobodyChangesAccountsThatAnUndoHasLookedAt) {
  EXPECT_EQ(host::ExecuteSql(*book_.System(), "update gl_code set chelp='a' where i_id=1"), "");
  const book::Book other = shared_.Open(kHasty);
  bool changed = false;
  const book::Progress change = [&](const WorkState& state) {
    if (state.step != "正在恢复科目") return true;
    try {
      test::Run(other, "update gl_code set chelp='b' where i_id=1");
      changed = true;
    } catch (const book::DatabaseError&) {  // it has to wait
    }
    return true;
  };
  (void)book::UndoCommand(book_.GetSession(), book_.GetSession().LastCommand(), change);
  EXPECT_FALSE(changed) << "and the undo would have taken it back";
}

TEST_P(OtherPrograms, ALongMergeIsNotEndedByTheTimeLimit) {
  if (!OnServer()) GTEST_SKIP() << "files have no time limit";
  test::AddPosting(book_, "gl_accvouch", "10020001");
  SlowDown("update", "gl_accvouch");
  book_.GetSession().Own().SetTimeLimit(milliseconds(300));
  EXPECT_NO_THROW(Merge(book_));
  EXPECT_NO_THROW(UndoLast(book_));
  EXPECT_EQ(Scalar(book_, "show statement_timeout"), "300ms");
  EXPECT_EQ(Scalar(book_, "select ccode from gl_accvouch"), "10020001");
}

TEST_P(OtherPrograms, AMergeOfManyPostingsShowsHowFarItIsAndCanBeCancelled) {
  test::Run(
      book_,
      "insert into gl_accvouch(i_id,ccode,debit)with recursive n(i)as(select 1 union all select "
      "i+1 from n where i<40000)select i,case when i%3=0 then '10020002' else '10020001' end,i "
      "from n");
  const Texts before = Postings();
  std::vector<std::int64_t> seen;
  const book::Progress until_some_moved = [&](const WorkState& state) {
    if (state.all > 0) seen.push_back(state.done);
    return state.done == 0;
  };
  EXPECT_THROW(Merge(book_, until_some_moved), book::WorkCancelled);
  ASSERT_FALSE(seen.empty());
  EXPECT_GT(seen.back(), 0);
  EXPECT_LT(seen.back(), 26667) << "and not when all had moved";
  EXPECT_EQ(Postings(), before);
  EXPECT_EQ(Scalar(book_, "select count(*) from desk_moved"), "0");
  Merge(book_);
  EXPECT_EQ(Scalar(book_, "select count(*) from gl_accvouch where ccode='10020002'"), "40000");
  UndoLast(book_);
  EXPECT_EQ(Postings(), before);
}

}  // namespace
}  // namespace tavrix::sharing
