#include <gmock/gmock.h>

#include "support/controls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/test_book.h"
#include "views/batch_dialog.h"
#include "views/merge_dialog.h"
#include "views/move_dialog.h"

namespace desk::views {
namespace {

using tavrix::test::LabelBehind;
using Texts = std::vector<std::string>;

/// A dialog's controls as a user finds them.
class Hands {
 public:
  explicit Hands(viewkit::DialogModel& dialog) : dialog_(dialog) { dialog.Opened(); }
  template <class Kind>
  Kind& Find(const std::string& name, int index = 0) {
    return tavrix::test::Find<Kind>(dialog_, name, index);
  }
  viewkit::FlexGrid& List() { return Find<viewkit::FlexGrid>("Vs"); }
  void Type(int box, const std::string& text) { Find<viewkit::TextBox>("Txt", box).SetText(text); }
  std::string Typed(int box) { return Find<viewkit::TextBox>("Txt", box).Text(); }
  std::string Status() { return Find<viewkit::Label>("Lbl", 9).Caption(); }
  bool MayEnter() { return dialog_.DefaultButton()->Enabled(); }
  void Enter() { dialog_.KeyDown(viewkit::Key::kEnter); }
  Texts Column(int col) {
    Texts texts;
    for (int row = List().FixedRows(); row < List().Rows(); ++row) {
      texts.emplace_back(List().TextMatrix(row, col));
    }
    return texts;
  }

 private:
  viewkit::DialogModel& dialog_;
};

class RearrangeDialogs : public testing::Test {
 protected:
  book::Session& GetSession() { return book_.GetSession(); }
  LongRunner Runner() {
    return [this](const std::string&, const std::function<void(const book::Progress&)>& work) {
      work([this](const book::WorkState&) { return !cancels_; });
    };
  }
  book::Book book_ = tavrix::test::MakeBook();
  bool cancels_ = false;
};

TEST_F(RearrangeDialogs, ShowsWhatANewCodeDoesWhileItIsTyped) {
  tavrix::test::AddPosting(book_, "gl_accvouch", "100201");
  MoveDialog dialog(GetSession(), "1002", MoveDialog::Purpose::kRenumber, Runner());
  Hands hands(dialog);
  EXPECT_EQ(hands.Typed(0 + 1), "1002");
  EXPECT_FALSE(hands.MayEnter());
  hands.Type(1, "1001");
  EXPECT_THAT(hands.Status(), HasSubstr("已被“库存现金”使用"));
  EXPECT_FALSE(hands.MayEnter());
  hands.Find<viewkit::CheckBox>("Chk").Click();
  EXPECT_THAT(hands.Column(0), ElementsAre("1002"));  // what hinders, alone
  hands.Type(1, " 1012 ");
  EXPECT_THAT(hands.Column(1), ElementsAre("1012", "101201", "101202"));
  EXPECT_EQ(hands.Status(), "将修改 3 个科目、1 条凭证分录");
  cancels_ = true;
  hands.Enter();
  EXPECT_TRUE(dialog.IsOpen());
  EXPECT_EQ(hands.Status(), "已取消，账簿没有改变");
  cancels_ = false;
  tavrix::test::Run(book_,
                    "update gl_code set ccode_name='别名' where ccode='100202'");  // another desk
  hands.Enter();
  EXPECT_TRUE(dialog.IsOpen());
  EXPECT_EQ(hands.Column(2).back(), "别名");
  hands.Enter();
  EXPECT_FALSE(dialog.IsOpen());
  EXPECT_TRUE(dialog.Done());
  EXPECT_EQ(Scalar(book_, "select ccode from gl_accvouch"), "101201");
}

TEST_F(RearrangeDialogs, ProposesACodeBelowTheParentThatIsTyped) {
  MoveDialog dialog(GetSession(), "2202", MoveDialog::Purpose::kMove, Runner());
  Hands hands(dialog);
  EXPECT_EQ(hands.Status(), "请输入新的上级科目");
  hands.Type(0, "银行存款");
  EXPECT_EQ(hands.Typed(1), "100203");
  EXPECT_THAT(hands.Column(3), ElementsAre(HasSubstr("由“负债”改为“资产”")));
  hands.Type(0, "银行");
  EXPECT_EQ(hands.Typed(1), "");
  EXPECT_EQ(hands.Status(), "没有科目“银行”");
  hands.Type(0, "yhck");
  hands.Enter();
  EXPECT_EQ(AllRows(book_, "select cclass,igrade from gl_code where ccode='100203'"),
            Texts{"资产|2"});
}

TEST_F(RearrangeDialogs, ComparesTheAccountsOfAMerge) {
  EXPECT_THROW(MergeDialog(GetSession(), "1002", Runner()), book::DatabaseError);
  tavrix::test::AddPosting(book_, "gl_accvouch", "100202");
  MergeDialog dialog(GetSession(), "100202", Runner());
  Hands hands(dialog);
  EXPECT_EQ(hands.Status(), "请输入要合并到的科目");
  hands.Type(0, "2202");
  EXPECT_THAT(hands.Status(), HasSubstr("供应商"));
  EXPECT_FALSE(hands.MayEnter());
  hands.Type(0, "gh");
  EXPECT_EQ(hands.Status(), "将转移 1 条凭证分录，并删除科目 100202 建行");
  hands.Enter();
  EXPECT_EQ(Scalar(book_, "select ccode from gl_accvouch"), "100201");
  EXPECT_EQ(Scalar(book_, "select count(*) from gl_code where ccode='100202'"), "0");
}

TEST_F(RearrangeDialogs, ChoosesAccountsByKeysAndSaysWhatStays) {
  tavrix::test::AddPosting(book_, "gl_accsum", "100201");
  BatchDialog dialog(GetSession(), "1002", Runner());
  Hands hands(dialog);
  EXPECT_EQ(hands.Status(), "将封存 3 个科目");
  hands.Find<viewkit::OptionButton>("Opt", 2).Click();
  EXPECT_EQ(hands.Status(), "将删除 1 个科目；2 个不能删除");
  EXPECT_THAT(hands.Column(4),
              ElementsAre("", "下级 100201 不能删除", "已经记账", "删除", "", "", "", ""));
  hands.Type(0, "5001");
  EXPECT_THAT(hands.Column(1), ElementsAre("5001", "500101", "50010101"));
  hands.List().KeyDown.Raise(static_cast<viewkit::Key>('A'), viewkit::Modifiers{.control = true});
  EXPECT_THAT(hands.Column(0), ElementsAre("√", "√", "√"));
  hands.List().SetRow(2);
  hands.List().KeyDown.Raise(viewkit::Key::kSpace, viewkit::Modifiers{});
  EXPECT_THAT(hands.Column(0), ElementsAre("", "", ""));  // none goes without what is below it
  hands.List().KeyDown.Raise(viewkit::Key::kSpace, viewkit::Modifiers{});
  EXPECT_EQ(hands.List().Row(), 2);
  hands.Type(0, "");
  EXPECT_EQ(hands.Status(), "将删除 3 个科目；2 个不能删除");
  hands.Enter();
  EXPECT_EQ(dialog.Changed(), 3);
  EXPECT_EQ(AllRows(book_, "select ccode from gl_code where bend=1 order by ccode"),
            (Texts{"1001", "100201", "2202", "5001"}));
}

}  // namespace
}  // namespace desk::views
