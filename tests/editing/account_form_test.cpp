#include "editing/account_form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <string>
#include <utility>

namespace tavrix::editing {
namespace {

using host::Bounds;
using viewkit::Control;

bool Overlap(const Bounds& a, const Bounds& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

bool Inside(const Bounds& inner, const Bounds& outer) {
  return inner.left >= outer.left && inner.top >= outer.top &&
         inner.left + inner.width <= outer.left + outer.width &&
         inner.top + inner.height <= outer.top + outer.height;
}

class AccountFormTest : public testing::Test {
 protected:
  AccountForm form_;

  template <class Visit>
  void ForEach(Visit visit) {
    for (std::size_t i = 0; i < form_.Controls().Count(); ++i) visit(form_.Controls().At(i));
  }
};

TEST_F(AccountFormTest, EveryControlHasItsOwnPlaceInsideTheForm) {
  const Bounds all{0, 0, form_.Width(), form_.Height()};
  ForEach([&](Control& one) {
    EXPECT_TRUE(Inside(one.GetBounds(), all)) << one.Name() << one.Index().value_or(-1);
    EXPECT_GT(one.GetBounds().width, 0);
    ForEach([&](Control& other) {
      if (&one == &other || !Overlap(one.GetBounds(), other.GetBounds())) return;
      // Only a frame may hold another control, and it holds it whole.
      const bool held = (one.TypeName() == "Frame" && Inside(other.GetBounds(), one.GetBounds())) ||
                        (other.TypeName() == "Frame" && Inside(one.GetBounds(), other.GetBounds()));
      EXPECT_TRUE(held && one.TypeName() != other.TypeName())
          << one.Name() << one.Index().value_or(-1) << " and " << other.Name()
          << other.Index().value_or(-1);
    });
  });
}

TEST_F(AccountFormTest, MnemonicsAreUniqueAndLeadToTheBoxBesideTheirLabel) {
  const std::regex mnemonic("[^()&]+\\(&[A-Z0-9]\\)");
  std::set<char> letters;
  Control* before = nullptr;
  ForEach([&](Control& control) {
    if (const auto* captioned = dynamic_cast<viewkit::Captioned*>(&control)) {
      const std::size_t mark = captioned->Caption().find('&');
      if (mark != std::string::npos) {
        EXPECT_TRUE(std::regex_match(captioned->Caption(), mnemonic)) << captioned->Caption();
        EXPECT_TRUE(letters.insert(captioned->Caption().at(mark + 1)).second)
            << captioned->Caption();
      }
    }
    // What an account is part of stands in a label beside its own, before which nothing stands.
    const auto* label = dynamic_cast<viewkit::Label*>(before);
    if (label != nullptr && !label->Caption().empty()) {
      EXPECT_EQ(control.GetBounds().left, before->GetBounds().left + before->GetBounds().width);
      EXPECT_TRUE(Overlap({0, before->GetBounds().top, 1, before->GetBounds().height},
                          {0, control.GetBounds().top, 1, control.GetBounds().height}));
    }
    before = &control;
  });
  // 7 labels, 2 options, 11 boxes, 2 buttons.
  EXPECT_EQ(std::string(letters.begin(), letters.end()), "12345BCDEFGJKLMNQRSWXY");
}

TEST_F(AccountFormTest, ItsRowsReadLikeTheAccountTheyShow) {
  // A frame counts by its upper edge; labels and boxes of one row end at the same line.
  std::map<std::pair<int, int>, std::string> cells;
  ForEach([&](Control& control) {
    const Bounds at = control.GetBounds();
    const bool frame = control.TypeName() == "Frame";
    const auto* captioned = dynamic_cast<viewkit::Captioned*>(&control);
    std::string text = captioned != nullptr ? captioned->Caption()
                                            : control.Name() + std::to_string(*control.Index());
    if (frame) text = "[" + text + "]";
    cells[{frame ? at.top : at.top + at.height, at.left}] = text;
  });
  std::map<int, std::string> rows;
  for (const auto& [place, text] : cells) rows[place.first] += " " + text;
  std::string form;
  for (const auto& [line, text] : rows) form += text + "\n";
  EXPECT_EQ(form,
            " [科目]\n"
            " 上级科目 \n"
            " 编码(&B) Txt0 类别(&L) Combo1\n"
            " 名称(&N) Txt1\n"
            " 助记码(&M) Txt3 余额方向 借方(&J) 贷方(&D)\n"
            " 英文名称(&E) Txt2\n"
            " [核算方式] [辅助核算]\n"
            " 外币核算(&W) Combo0 部门核算(&1) 个人往来(&2)\n"
            " 数量核算(&Q) Combo3 客户往来(&3) 供应商往来(&4)\n"
            " 账页格式(&Y) Combo4 项目核算(&5)\n"
            " 汇总到(&G) Combo2\n"
            " [标志]\n"
            " 日记账(&R) 银行账(&K) 封存(&F) 受控系统(&X) Txt4\n"
            " 保存(&S) 取消(&C)\n");
}

TEST_F(AccountFormTest, ControlsCarryTheNumbersThatAutomatedUsersKnow) {
  const int numbers[] = {
      form_.Identifier(form_.Txt(kNameBox)), form_.Identifier(form_.Chk(kProjectCheck)),
      form_.Identifier(form_.opt(kCreditOption)), form_.Identifier(form_.Combo(kBookTypeList)),
      form_.Identifier(form_.Cmd(kCancelButton))};
  EXPECT_THAT(numbers, testing::ElementsAre(101, 208, 301, 404, 501));
}

}  // namespace
}  // namespace tavrix::editing
