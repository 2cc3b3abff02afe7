#include "views/voucher_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/text.h"
#include "support/controls.h"
#include "support/matchers.h"
#include "support/scripted_user.h"
#include "support/test_book.h"

namespace desk::views {
namespace {

using viewkit::Key;

/// Allows leaf accounts, as the picker does; a range allows those of customers.
class LeafChooser : public AccountChooser {
 public:
  explicit LeafChooser(book::Session& session) : session_(session) {}
  void SetParameters(const std::shared_ptr<book::ParameterList>& parameters) override {
    customers_ = parameters->Exists("bcus");
    single = parameters->Exists("single");
  }
  std::optional<std::string> Resolve(const std::string& typed) override {
    if (tavrix::host::LowerCase(typed) != typed) return std::nullopt;  // it compares with case
    for (const PostingAccount& account : FindTypedAccounts(session_, typed)) {
      if (account.leaf && (!customers_ || !account.wanted.empty())) return account.code;
    }
    return std::nullopt;
  }
  bool Filters() override { return true; }
  void Open(const std::string& text) override { sought = text; }
  [[nodiscard]] bool IsOpen() const override { return false; }

  std::optional<std::string> sought;
  bool single = false;

 private:
  book::Session& session_;
  bool customers_ = false;
};

class VoucherViewTest : public testing::Test {
 protected:
  VoucherViewTest() {
    tavrix::test::Run(book_, "update gl_code set bcus=1 where ccode='1122'");
    view_.FocusFirst();
  }
  template <class Kind>
  [[nodiscard]] Kind& Find(const std::string& name, int index = 0) const {
    return tavrix::test::Find<Kind>(view_, name, index);
  }
  /// Into the box that has the focus, and Enter.
  void Enter(const std::string& text) {
    for (const int box : {0, 1, 2, 3, 4}) {
      auto& typed = Find<viewkit::TextBox>("Txt", box);
      if (typed.Focused()) {
        typed.SetText(text);
        return view_.Enter();
      }
    }
    FAIL() << "no box to type " << text;
  }
  void Click(int button) { Find<viewkit::CommandButton>("Cmd", button).Click(); }
  [[nodiscard]] bool In(int box) const { return Find<viewkit::TextBox>("Txt", box).Focused(); }
  [[nodiscard]] const std::string& Text(int box) const {
    return Find<viewkit::TextBox>("Txt", box).Text();
  }
  [[nodiscard]] const std::string& Answer() const {
    return Find<viewkit::Label>("Lbl", 10).Caption();
  }
  [[nodiscard]] std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (int item = 1; item <= view_.Lines().Count(); ++item) {
      std::string line;
      for (const std::string& text : view_.Lines().ItemTexts(item)) line += text + "|";
      lines.push_back(std::move(line));
    }
    return lines;
  }
  [[nodiscard]] std::vector<std::string> Posted() const {
    return tavrix::test::AllRows(
        book_, "select ccode,debit,credit,customer,summary from gl_accvouch order by i_id");
  }

  enum Box { kSummary, kCode, kDebit, kCredit, kPartner };
  enum Button { kDrop, kAdd, kRemove, kClear, kPost, kSeveral, kTake };

  book::Book book_ = tavrix::test::MakeBook({{.code = "1001", .name = "现金", .category = "资产"},
                                             {.code = "1002", .name = "银行", .category = "资产"},
                                             {.code = "100201", .name = "工行", .category = "资产"},
                                             {.code = "1122", .name = "应收", .category = "资产"},
                                             {.code = "1123", .name = "双名", .category = "资产"},
                                             {.code = "1124", .name = "双名", .category = "资产"}});
  tavrix::test::ScriptedUser user_;
  LeafChooser chooser_{book_.GetSession()};
  std::string selected_;
  VoucherView view_{
      {.session = [this] { return &book_.GetSession(); },
       .selected_code = [this] { return selected_; },
       .post =
           [this](const book::Voucher& voucher) { return book::Post(book_.GetSession(), voucher); },
       .account_left = [this] { ++times_left_; },
       .today = std::chrono::year(2024) / 5 / 31},
      chooser_,
      user_};
  int times_left_ = 0;
};

TEST_F(VoucherViewTest, WorksOutTheThirdOfForeignAmountRateAndAmount) {
  enum Foreign { kForeign = 6, kRate, kQuantity };
  tavrix::test::Run(book_,
                    "update gl_code set bexchange=1,cexch_name='美元',cmeasure='件' where "
                    "ccode='100201'");
  auto& foreign = Find<viewkit::TextBox>("Txt", kForeign);
  EXPECT_FALSE(foreign.Visible());
  const auto fill = [&](const char* amount_abroad, const char* rate, const char* debit) {
    Find<viewkit::TextBox>("Txt", kDebit).SetText(debit);
    foreign.SetText(amount_abroad);
    Find<viewkit::TextBox>("Txt", kRate).SetText(rate);
    if (*amount_abroad == '\0') Find<viewkit::TextBox>("Txt", kDebit).SetText(debit);
    Find<viewkit::TextBox>("Txt", kQuantity).SetText("2.5");
    Find<viewkit::TextBox>("Txt", kDebit).SetFocus();
    Click(kAdd);
  };
  const auto account = [&] {
    Find<viewkit::TextBox>("Txt", kCode).SetFocus();
    Enter("100201");
  };
  account();
  EXPECT_TRUE(foreign.Visible());
  EXPECT_TRUE(foreign.Focused()) << "before the amount";
  EXPECT_EQ(Find<viewkit::Label>("Lbl", 11).Caption(), "外币（美元）");
  fill("1,000.55", "6.5214", "");  // the amount
  account();
  fill("", "7", "100");  // the foreign amount
  account();
  fill("-10", "", "-71.23");  // the rate
  account();
  fill("1", "2", "999");  // typed last: foreign amount and rate
  account();
  fill("1", "x", "");
  EXPECT_THAT(Answer(), HasSubstr("汇率不正确"));
  Find<viewkit::TextBox>("Txt", kRate).SetText("1e300");
  Click(kAdd);
  EXPECT_THAT(Answer(), HasSubstr("过大"));
  Find<viewkit::TextBox>("Txt", kRate).SetText("-6554.99");
  Find<viewkit::TextBox>("Txt", kCode).SetText("1001");
  EXPECT_FALSE(foreign.Visible());
  Find<viewkit::TextBox>("Txt", kCredit).SetText("6555.76");
  Find<viewkit::TextBox>("Txt", kDebit).SetText("");
  Find<viewkit::TextBox>("Txt", kCredit).SetFocus();
  Click(kAdd);
  view_.Post();
  EXPECT_THAT(tavrix::test::AllRows(book_,
                                    "select debit,credit,currency_name,foreign_amount,quantity "
                                    "from gl_accvouch order by i_id"),
              ElementsAre("652499|0|美元|100055|2.5", "10000|0|美元|1429|2.5",
                          "-7123|0|美元|-1000|2.5", "200|0|美元|100|2.5", "0|655576||0|0"))
      << Answer() << testing::PrintToString(Lines());
}

// An account may have lost what its lines were once posted with.
TEST_F(VoucherViewTest, AnEditedCopyKeepsWhatHasNoBox) {
  const std::vector<book::Entry> entries = {{.summary = "甲",
                                             .code = "1001",
                                             .debit = 700,
                                             .auxiliary = {.person = "A/B"},
                                             .currency = "美元",
                                             .foreign_amount = 100,
                                             .quantity = 3},
                                            {.summary = "乙", .code = "100201", .credit = 700}};
  view_.Take({.entries = entries});
  for (const int line : {1, 2}) {
    Find<viewkit::ListView>("Lv").SetSelected(line, true);
    view_.EditChosen();
    Find<viewkit::TextBox>("Txt", kSummary).SetText("改");
    Find<viewkit::TextBox>("Txt", line == 1 ? kDebit : kCredit).SetFocus();
    Click(kAdd);
  }
  view_.Post();
  EXPECT_THAT(tavrix::test::AllRows(book_,
                                    "select summary,debit,person,currency_name,foreign_amount,"
                                    "quantity from gl_accvouch order by i_id"),
              ElementsAre("改|700|A/B|美元|100|3", "改|0|||0|0"))
      << Answer();
}

TEST_F(VoucherViewTest, EnterLeadsThroughAVoucher) {
  EXPECT_TRUE(Find<viewkit::DTPicker>("DTP").Focused());
  view_.Enter();
  Enter(" 收款 ");
  Enter("现金");
  EXPECT_EQ(Text(kCode), "1001");
  Enter("1,000.5");
  EXPECT_TRUE(In(kCode));
  EXPECT_THAT(Find<viewkit::Label>("Lbl", 9).Caption(), HasSubstr("差额 1,000.50"));
  Enter("1122");
  EXPECT_EQ(Find<viewkit::Label>("Lbl", 6).Caption(), "客户");
  Enter("");
  EXPECT_TRUE(In(kCredit)) << "the other side is next";
  EXPECT_TRUE(view_.UseCharacter(U'='));
  view_.Enter();
  EXPECT_TRUE(In(kPartner));
  Enter("");
  EXPECT_EQ(Answer(), "“应收”要填写客户");
  Enter("甲公司");
  EXPECT_THAT(Lines(),
              ElementsAre("1001|现金|收款|1,000.50|||", "1122|应收|收款||1,000.50|甲公司|"));
  Click(kPost);
  EXPECT_EQ(Answer(), "已过账：2024年5月第1号凭证");
  EXPECT_THAT(Posted(), ElementsAre("1001|100050|0||收款", "1122|0|100050|甲公司|收款"));
  EXPECT_THAT(Lines(), IsEmpty());
  EXPECT_TRUE(Find<viewkit::DTPicker>("DTP").Focused());
}

TEST_F(VoucherViewTest, WhatIsRefusedStaysInItsBox) {
  view_.Enter();
  view_.Enter();
  for (const auto& [typed, why] : {std::pair{"4711", "没有编码"},
                                   {"1002", "不是明细科目"},
                                   {"双名", "有2个科目符合"},
                                   {"1' or '1'='1", "单引号"}}) {
    Enter(typed);
    EXPECT_TRUE(In(kCode));
    EXPECT_EQ(Text(kCode), typed);
    EXPECT_THAT(Answer(), HasSubstr(why));
  }
  Find<viewkit::ComboBox>("Combo").SetListIndex(1);
  Enter("1001");
  EXPECT_THAT(Answer(), HasSubstr("不在所选范围“客户往来”之内"));
  Find<viewkit::ComboBox>("Combo").SetListIndex(0);
  tavrix::test::Run(book_, "update gl_code set chelp='xj' where ccode='1001'");
  Enter("XJ");  // mnemonics are known however they are written
  EXPECT_EQ(Text(kCode), "1001");
  EXPECT_THAT(Answer(), IsEmpty());
  Enter("1.005");
  EXPECT_TRUE(In(kDebit));
  EXPECT_THAT(Answer(), HasSubstr("借方"));
  Enter("0");
  EXPECT_EQ(Answer(), "请填写借方金额或贷方金额之一");
  EXPECT_THAT(Lines(), IsEmpty());

  // Who goes on from a refused account comes back to it; who leaves the entry does not.
  Find<viewkit::TextBox>("Txt", kCode).SetText("4711");
  Find<viewkit::TextBox>("Txt", kCode).SetFocus();
  const int left = times_left_;
  Find<viewkit::TextBox>("Txt", kCredit).SetFocus();
  EXPECT_EQ(times_left_, left + 1);
  view_.OnAccountLeft();
  EXPECT_TRUE(In(kCode));
  Find<viewkit::TextBox>("Txt", kSummary).SetFocus();
  view_.OnAccountLeft();
  EXPECT_TRUE(In(kSummary));
}

TEST_F(VoucherViewTest, SeveralAccountsAreFilledInOneByOne) {
  Find<viewkit::TextBox>("Txt", kCode).SetFocus();
  EXPECT_TRUE(view_.UseKey(Key{0x73}, {.shift = true}));
  EXPECT_EQ(chooser_.sought, "");
  EXPECT_FALSE(chooser_.single);
  view_.Picked({"1001", "100201"});
  EXPECT_TRUE(In(kDebit));
  Click(kPost);
  EXPECT_EQ(Answer(), "“现金”还没有金额");
  Enter("7");
  EXPECT_EQ(Text(kCode), "100201");
  EXPECT_TRUE(view_.UseCharacter(U'='));
  view_.Enter();
  EXPECT_EQ(Lines().size(), 2u);
  EXPECT_THAT(Text(kCode), IsEmpty());

  // The book has the last word, and what it refuses is brought back.
  tavrix::test::Run(book_, "update gl_code set bclose=1 where ccode='100201'");
  Click(kPost);
  EXPECT_THAT(Answer(), HasSubstr("科目已经封存"));
  EXPECT_EQ(Text(kCode), "100201");
  EXPECT_TRUE(In(kCode));
  auto& list = Find<viewkit::ListView>("Lv");
  list.SetFocus();
  EXPECT_EQ(list.FirstSelected(), 2);
  list.KeyDown.Raise(Key::kDelete, {});
  EXPECT_THAT(Lines(), ElementsAre("1001|现金||7.00|||"));
  EXPECT_THAT(Posted(), IsEmpty());
  list.SetSelected(1, true);
  view_.Enter();
  EXPECT_EQ(Text(kDebit), "7.00");
  selected_ = "1124";
  Click(kTake);
  EXPECT_EQ(Text(kCode), "1124");
  view_.Enter();
  EXPECT_THAT(Lines(), ElementsAre("1124|双名||7.00|||"));
}

TEST_F(VoucherViewTest, ThePickerBeginsWithWhatIsTyped) {
  auto& code = Find<viewkit::TextBox>("Txt", kCode);
  code.SetFocus();
  code.SetText("100");
  EXPECT_TRUE(view_.UseKey(Key::kDown, {.alt = true}));
  EXPECT_EQ(chooser_.sought, "100");
  EXPECT_TRUE(chooser_.single);
  view_.Picked({"1001"});
  Click(kDrop);
  EXPECT_EQ(chooser_.sought, "") << "an account must not narrow the list";
  EXPECT_FALSE(view_.UseKey(Key::kDown, {}));
  code.SetText("1001x");
  view_.Picked({});
  EXPECT_TRUE(In(kCode));
  EXPECT_EQ(Text(kCode), "1001x");
}

TEST_F(VoucherViewTest, NothingIsLostWithoutAQuestion) {
  EXPECT_TRUE(view_.MayForget("?"));
  Find<viewkit::TextBox>("Txt", kDebit).SetText("1");
  user_.answers = {viewkit::UserPort::Answer::kNo, viewkit::UserPort::Answer::kYes};
  EXPECT_FALSE(view_.MayForget("?"));
  view_.Picked({});
  Enter("1001");
  view_.Enter();
  EXPECT_EQ(Lines().size(), 1u);
  view_.FocusFirst();
  EXPECT_TRUE(In(kCode));
  Find<viewkit::CommandButton>("Cmd", kClear).SetFocus();
  EXPECT_EQ(&view_.DefaultButton(), &Find<viewkit::CommandButton>("Cmd", kClear));
  view_.Enter();
  EXPECT_THAT(user_.questions.back().text, HasSubstr("已录入的1条分录"));
  EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(VoucherViewTest, ControlsHaveTheirPlaceInEveryWidth) {
  for (const int width : {632, 800, 1052, 1900}) {
    view_.Resize(width * 15, 236 * 15);
    std::vector<tavrix::host::Bounds> places;
    for (std::size_t i = 0; i < view_.Controls().Count(); ++i) {
      const viewkit::Control& control = view_.Controls().At(i);
      if (control.Visible()) places.push_back(control.GetBounds());
    }
    for (auto a = places.begin(); a != places.end(); ++a) {
      EXPECT_LE(a->left + a->width, width * 15) << width;
      EXPECT_LE(a->top + a->height, 236 * 15) << width;
      EXPECT_TRUE(std::all_of(places.begin(), a,
                              [&](const auto& b) {
                                return b.left >= a->left + a->width ||
                                       a->left >= b.left + b.width || b.top >= a->top + a->height ||
                                       a->top >= b.top + b.height;
                              }))
          << width << ": " << a->left << "," << a->top;
    }
  }
}

}  // namespace
}  // namespace desk::views
