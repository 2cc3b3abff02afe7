#include <gmock/gmock.h>

#include <map>
#include <set>

#include "book/chart/move_accounts.h"
#include "book/ledger/posting.h"
#include "sharing/random_chart.h"
#include "sharing/shared_book.h"
#include "support/matchers.h"

namespace tavrix::sharing {
namespace {

using desk::book::CommandKind;
using desk::book::MovePlan;
using desk::book::Session;
using namespace std::chrono_literals;

/// The codes that a subtree gets, thought out account by account: each keeps its own part behind
/// its parent's new code, with zeros before it as its new level wants. Nothing when one does not
/// fit.
class Expectation {
 public:
  Expectation(const RandomChart& chart, const std::string& from, const std::string& to)
      : rule_(chart.Rule()) {
    for (const std::string& code : chart.Codes()) {
      if (code == from) {
        moved_[code] = to;
      } else if (const auto parent = moved_.find(ParentOf(code)); parent != moved_.end()) {
        moved_[code] =
            parent->second + Fitted(code.substr(parent->first.size()), LevelOf(parent->second) + 1);
      } else {
        others_.insert(code);
      }
    }
    Judge(chart, from, to);
  }
  [[nodiscard]] bool Possible() const { return possible_; }
  [[nodiscard]] std::string CodeOf(const std::string& code) const {
    const auto found = moved_.find(code);
    return found == moved_.end() ? code : found->second;
  }
  [[nodiscard]] std::size_t LevelOf(const std::string& code) const {
    std::size_t length = 0;
    for (std::size_t level = 0; level < rule_.size(); ++level) {
      length += static_cast<std::size_t>(rule_[level] - '0');
      if (length == code.size()) return level + 1;
    }
    return 0;
  }
  [[nodiscard]] std::string ParentOf(const std::string& code) const {
    const std::size_t level = LevelOf(code);
    return level < 2
               ? ""
               : code.substr(0, code.size() - static_cast<std::size_t>(rule_[level - 1] - '0'));
  }
  [[nodiscard]] const std::map<std::string, std::string>& Moved() const { return moved_; }

 private:
  std::string Fitted(std::string part, std::size_t level) {
    if (level > rule_.size()) {
      possible_ = false;
      return part;
    }
    const auto width = static_cast<std::size_t>(rule_[level - 1] - '0');
    while (part.size() < width) part.insert(0, "0");
    while (part.size() > width && part[0] == '0') part.erase(0, 1);
    possible_ = possible_ && part.size() == width;
    return part;
  }
  void Judge(const RandomChart& chart, const std::string& from, const std::string& to) {
    const std::string parent = ParentOf(to);
    possible_ = possible_ && LevelOf(to) > 0 && to != from && !moved_.contains(parent) &&
                (parent.empty() || others_.contains(parent));
    for (const auto& [old, code] : moved_) possible_ = possible_ && !others_.contains(code);
    if (parent.empty() || parent == ParentOf(from)) return;
    for (const std::string ledger : kLedgers) {
      possible_ =
          possible_ && test::Scalar(chart.Book(), "select count(*) from " + ledger +
                                                      " where ccode='" + parent + "'") == "0";
    }
  }

  std::string rule_;
  std::map<std::string, std::string> moved_;
  std::set<std::string> others_;
  bool possible_ = true;
};

std::string CellOf(const std::string& row, int column) {
  std::size_t start = 0;
  for (; column > 0; --column) start = row.find('|', start) + 1;
  return row.substr(start, row.find('|', start) - start);
}

class ChartMoves : public testing::TestWithParam<const char*> {
 protected:
  static MovePlan Plan(Session& session, const std::string& from, const std::string& to) {
    return PlanMove(session, desk::book::ReadMovedSubtree(session, from), to);
  }
  static auto Move(Session& session, const std::string& from, const std::string& to,
                   const desk::book::Progress& progress = {}) {
    return MoveAccounts(session, Plan(session, from, to), CommandKind::kMove, progress);
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, ChartMoves, testing::ValuesIn(SharedEngines()));

/// The code that a random move aims at: a free one below any account, the code of another, or one
/// that no rule knows.
std::string RandomTarget(RandomChart& chart, const std::string& from) {
  const std::string any = chart.Pick(chart.Codes());
  if (chart.Below(8) == 0) return any + (chart.Below(2) == 0 ? "" : "12345");
  const auto subtree = desk::book::ReadMovedSubtree(chart.GetSession(), from);
  const std::string parent = chart.Below(4) == 0 ? "" : any;
  return ProposeCode(chart.GetSession(), subtree, parent).value_or(any);
}

// Whole tables, row by row, against codes that were thought out without the statements' help.
TEST_P(ChartMoves, MovesWhatItShowsAndNothingElse) {
  int done = 0;
  for (unsigned seed = 1; seed <= ChartsOn(GetParam()); ++seed) {
    RandomChart chart(GetParam(), seed);
    for (int turn = 0; turn < 4; ++turn) {
      const std::string from = chart.Pick(chart.Codes());
      const std::string to = RandomTarget(chart, from);
      SCOPED_TRACE(std::to_string(seed) + ", rule " + chart.Rule() + ": " + from + " to " + to);
      const Expectation expected(chart, from, to);
      const MovePlan plan = Plan(chart.GetSession(), from, to);
      const Texts before = Contents(chart.Book());
      ASSERT_EQ(plan.Allowed(), expected.Possible()) << plan.WhyNot();
      const std::string refusal =
          Refusal([&] { MoveAccounts(chart.GetSession(), plan, CommandKind::kMove); });
      ASSERT_EQ(refusal, plan.WhyNot());
      const Texts after = Contents(chart.Book());
      if (!plan.Allowed()) {
        ASSERT_EQ(after, before);
        continue;
      }
      ++done;
      ASSERT_THAT(test::BrokenRules(chart.Book()), IsEmpty());
      ASSERT_EQ(after.size(), before.size());
      for (std::size_t i = 0; i < after.size(); ++i) {
        ASSERT_EQ(CellOf(after[i], 0), CellOf(before[i], 0));
        const bool posting = after[i].starts_with("gl_");
        const int code = posting ? 2 : 1;
        ASSERT_EQ(CellOf(after[i], code), expected.CodeOf(CellOf(before[i], code)));
        if (posting) continue;
        ASSERT_EQ(CellOf(after[i], 5), expected.CodeOf(CellOf(before[i], 5)));
        ASSERT_EQ(CellOf(after[i], 6), CellOf(before[i], 6));
      }
      for (const auto& row : plan.rows) ASSERT_EQ(row.new_code, expected.CodeOf(row.account.code));
    }
  }
  EXPECT_GT(done, ChartsOn(GetParam()));
}

TEST_P(ChartMoves, ACancelAtAnyPointLeavesEveryRow) {
  RandomChart chart(GetParam(), 7);
  const std::string from = chart.Codes().front();
  const auto subtree = desk::book::ReadMovedSubtree(chart.GetSession(), from);
  const std::string to = *ProposeCode(chart.GetSession(), subtree, "");
  const Texts before = Contents(chart.Book());
  const std::string commands = "select count(*) from desk_command";
  const std::string commands_before = test::Scalar(chart.Book(), commands);
  for (int asked = 0;; ++asked) {
    ASSERT_LT(asked, 100);
    int left = asked;
    const std::string refusal = Refusal([&] {
      Move(chart.GetSession(), from, to, [&](const desk::book::WorkState&) { return left-- > 0; });
    });
    if (refusal.empty()) {
      EXPECT_GT(asked, 6);
      break;
    }
    EXPECT_EQ(refusal, "已取消，账簿没有改变");
    ASSERT_EQ(Contents(chart.Book()), before) << asked;
    ASSERT_EQ(test::Scalar(chart.Book(), commands), commands_before);
  }
  EXPECT_NE(Contents(chart.Book()), before);
  // The rules work again.
  EXPECT_THAT(
      Refusal([&] { test::Run(chart.Book(), "delete from gl_code where ccode='" + to + "'"); }),
      HasSubstr("不能删除"));
}

TEST_P(ChartMoves, AnotherDeskPostsAndAddsMeanwhile) {
  const SharedBook shared(GetParam());
  const auto mine = shared.Open();
  const auto theirs = shared.Open(100ms);
  const auto post = [&](const std::string& debit) {
    return Refusal([&] {
      (void)Post(theirs.GetSession(),
                 {.year = 2026,
                  .month = 1,
                  .day = 1,
                  .entries = {{.code = debit, .debit = 5}, {.code = "1001", .credit = 5}}});
    });
  };
  Session& session = mine.GetSession();
  const MovePlan plan = Plan(session, "1002", "1009");
  ASSERT_EQ(post("10020001"), "");
  std::string during;
  const auto result =
      MoveAccounts(session, plan, CommandKind::kRenumber, [&](const desk::book::WorkState& state) {
        if (state.step == "正在修改科目") during = post("10020002");
        return true;
      });
  EXPECT_EQ(result.accounts, 3);
  EXPECT_EQ(result.postings, 2);  // what came after the plan was shown went along
  EXPECT_THAT(during, HasSubstr("正被其他用户使用"));
  EXPECT_THAT(post("10020002"), HasSubstr("没有这个科目"));
  EXPECT_EQ(post("10090002"), "");
  EXPECT_THAT(FaultsOf(mine), IsEmpty());
  const MovePlan stale = Plan(session, "1009", "1002");
  test::Run(theirs,
            "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(90,'资产','10090003',2,1)");
  EXPECT_THAT(Refusal([&] { MoveAccounts(session, stale, CommandKind::kRenumber); }),
              HasSubstr("其他用户刚修改"));
  EXPECT_EQ(test::Scalar(mine, "select count(*) from gl_code where ccode like '1009%'"), "4");
}

TEST_P(ChartMoves, PlansSayWhatElseChangesAndWhyNot) {
  const auto book = test::MakeBookOn(GetParam());
  Session& session = book.GetSession();
  test::AddPosting(book, "gl_accsum", "1001");
  test::AddPosting(book, "gl_accsum", "1009");  // of an account that is not there
  const auto why = [&](const std::string& from, const std::string& to) {
    return Plan(session, from, to).WhyNot();
  };
  EXPECT_THAT(why("2202", "100101"), HasSubstr("已经记账，请先为它增加一个下级"));
  EXPECT_THAT(why("2202", "1009"), HasSubstr("没有这个科目"));
  EXPECT_THAT(why("2202", "100"), HasSubstr("应当是 4、6、8、10 位"));
  EXPECT_THAT(why("2202", "100301"), HasSubstr("没有上级科目 1003"));
  EXPECT_THAT(why("1002", "10020103"), HasSubstr("不能移到自己的下级"));
  EXPECT_THAT(why("5001", "1002"), HasSubstr("银行存款"));
  EXPECT_THAT(why("2202", "2'02"), HasSubstr("引号"));
  const MovePlan plan = Plan(session, "50010101", "220201");
  EXPECT_THAT(plan.notes, testing::ElementsAre("2202 应付账款 不再是明细科目",
                                               "500101 基本生产成本 成为明细科目"));
  EXPECT_THAT(plan.rows[0].note,
              testing::AllOf(HasSubstr("由“成本”改为“负债”"), HasSubstr("余额方向")));
  // A subtree with codes that no level knows keeps them as long as the place is as deep.
  test::Run(book,
            "insert into gl_code(i_id,cclass,ccode,igrade,bend)values(90,'资产','100201x',0,1)");
  EXPECT_EQ(why("1002", "1005"), "");
  EXPECT_THAT(why("1002", "220205"), HasSubstr("100201x"));
}

}  // namespace
}  // namespace tavrix::sharing
