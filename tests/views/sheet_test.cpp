#include "views/sheet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/ledger/posting.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/temp_folder.h"
#include "support/test_book.h"
#include "views/account_ledger_view.h"
#include "views/history_view.h"
#include "views/opening_balance_view.h"
#include "views/trial_balance_view.h"
#include "views/voucher_list_view.h"
#include "views/voucher_sheet.h"

namespace desk::views {
namespace {

using testing::Not;

/// All sheets on one book, each with what it reads.
class SheetTest : public testing::Test {
 protected:
  SheetTest() {
    book_.Environment().user_folder = folder_.File("");
    book_.Environment().user_folder.pop_back();
    book::Session& session = book_.GetSession();
    book::Post(session,
               {.year = 2024,
                .month = 1,
                .day = 5,
                .entries = {{.code = "1001", .debit = 100}, {.code = "100201", .credit = 100}}});
    Add("gl_accsum", std::make_unique<TrialBalanceView>(session, book_.System(), user_));
    Add("gl_accvouch", std::make_unique<AccountLedgerView>(
                           session, user_, AccountLedgerView::Plan{.code = "1001"}));
    Add("gl_accsum", std::make_unique<OpeningBalanceView>(session, user_));
    Add("gl_accvouch", std::make_unique<VoucherListView>(session, user_, VoucherActions::Calls{}));
    Add("gl_accvouch",
        std::make_unique<VoucherSheet>(session, user_, book::VoucherKey{{2024, 1}, 1},
                                       VoucherActions::Calls{}));
    Add("desk_change", std::make_unique<HistoryView>(session, user_, HistoryView::RunLong()));
  }
  void Add(const char* table, std::unique_ptr<Sheet> sheet) {
    sheets_.push_back({table, std::move(sheet)});
  }
  void Rename(const std::string& from, const std::string& to) const {
    tavrix::test::Run(book_, "alter table " + from + " rename to " + to);
  }
  static std::string Shown(Sheet& sheet) {
    const viewkit::FlexGrid& grid = sheet.Grid();
    std::string text = std::to_string(grid.Row()) + ":";
    for (int row = 0; row < grid.Rows(); ++row) {
      for (int col = 0; col < grid.Cols(); ++col) text += grid.DisplayText(row, col) + "|";
    }
    return text;
  }

  tavrix::test::TempFolder folder_;
  book::Book book_ = tavrix::test::MakeBook();
  tavrix::test::ScriptedUser user_;
  struct Reader {
    const char* table;
    std::unique_ptr<Sheet> sheet;
  };
  std::vector<Reader> sheets_;
};

// Nobody has asked for it, and the user may be typing elsewhere.
TEST_F(SheetTest, FollowsTheBookWithoutABoxWhenItCannotBeRead) {
  for (const auto& [table, sheet] : sheets_) {
    SCOPED_TRACE(sheet->Title());
    const std::string before = Shown(*sheet);
    Rename(table, "elsewhere");
    EXPECT_THROW(sheet->Follow(), book::DatabaseError);
    EXPECT_THAT(user_.questions, IsEmpty());
    EXPECT_EQ(Shown(*sheet), before);
    sheet->Reload();
    EXPECT_THAT(user_.questions, Not(IsEmpty())) << "who asks is told";
    user_.questions.clear();
    Rename("elsewhere", table);
    EXPECT_NO_THROW(sheet->Follow());
    EXPECT_EQ(Shown(*sheet), before);
  }
}

TEST_F(SheetTest, AVoucherThatHasGoneIsSaidOnce) {
  tavrix::test::Run(book_, "delete from gl_accvouch");
  for (const auto& each : sheets_) EXPECT_NO_THROW(each.sheet->Follow()) << each.sheet->Title();
}

}  // namespace
}  // namespace desk::views
