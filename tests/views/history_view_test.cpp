#include <gmock/gmock.h>

#include "book/journal/undo.h"
#include "host/calls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/test_book.h"
#include "views/history_view.h"

namespace desk::views {
namespace {

using Texts = std::vector<std::string>;

class HistoryViewTest : public testing::Test {
 protected:
  HistoryViewTest() { book_.GetSession().SetUser("张三"); }
  void Do(const std::string& sql) { ASSERT_EQ(tavrix::host::ExecuteSql(*book_.System(), sql), ""); }
  static Texts Rows(const viewkit::FlexGrid& grid, int first_col) {
    Texts rows;
    for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
      std::string text;
      for (int col = first_col; col < grid.Cols(); ++col) {
        text += (col == first_col ? "" : "|") + std::string(grid.TextMatrix(row, col));
      }
      rows.push_back(std::move(text));
    }
    return rows;
  }

  book::Book book_ = tavrix::test::MakeBook();
  tavrix::test::ScriptedUser user_;
  HistoryView::RunLong run_ = [](const std::string&, const auto& work) { work({}); };
};

TEST_F(HistoryViewTest, ListsCommandsAndWhatTheyChangedAndUndoesOne) {
  Do("update gl_code set ccode_name='现金',bdept=1 where i_id=1");
  Do("delete from gl_code where ccode like '1002%'");
  HistoryView view(book_.GetSession(), user_, run_);
  EXPECT_THAT(Rows(view.Grid(), HistoryView::kWho),
              ElementsAre("张三|删除科目 1002|3|", "张三|修改科目 1001 库存现金|1|"));
  EXPECT_THAT(Rows(view.Details(), HistoryView::kAccount),
              testing::Contains("1002 银行存款|删除|编码|1002|"));
  view.Grid().SetRow(2);
  EXPECT_THAT(Rows(view.Details(), HistoryView::kAccount),
              ElementsAre("1001 现金|修改|名称|库存现金|现金", "||部门核算|否|是"));

  user_.answers = {viewkit::UserPort::Answer::kYes};
  view.UndoButton().Click();
  EXPECT_EQ(Scalar(book_, "select ccode_name from gl_code where i_id=1"), "库存现金");
  EXPECT_THAT(Rows(view.Grid(), HistoryView::kWho),
              ElementsAre("张三|撤销：修改科目 1001 库存现金|1|", "张三|删除科目 1002|3|",
                          "张三|修改科目 1001 库存现金|1|已撤销"));
  EXPECT_EQ(view.Grid().Row(), 3) << "what was chosen stays chosen";
  EXPECT_FALSE(view.UndoButton().Enabled());
  view.Grid().SetRow(1);
  EXPECT_EQ(view.UndoButton().Caption(), "重做所选操作(&Z)");
}

TEST_F(HistoryViewTest, ARefusalIsTold) {
  Do("update gl_code set ccode_name='现金' where i_id=1");
  Do("update gl_code set ccode_name='别的' where i_id=1");
  HistoryView view(book_.GetSession(), user_, run_);
  view.Grid().SetRow(2);
  user_.answers = {viewkit::UserPort::Answer::kYes, viewkit::UserPort::Answer::kOk};
  view.UndoButton().Click();
  ASSERT_EQ(user_.questions.size(), 2U);
  EXPECT_THAT(user_.questions.back().text,
              testing::HasSubstr("不能撤销：科目 1001 之后又被 张三 修改过"));
  EXPECT_EQ(Scalar(book_, "select ccode_name from gl_code where i_id=1"), "别的");
}

}  // namespace
}  // namespace desk::views
