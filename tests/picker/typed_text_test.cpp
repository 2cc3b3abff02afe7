#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/error.h"
#include "picker/picker_support.h"
#include "support/matchers.h"

namespace tavrix::picker {
namespace {

/// What a caller gets back.
struct Answer {
  std::string code = "old";
  std::string name = "old";
};

Answer Validate(PickerFixture& f, const std::string& text, const std::string& code = "",
                const std::string& name = "") {
  Answer answer;
  EXPECT_FALSE(f.picker.Validate("select 1", code, name, text, answer.code, answer.name));
  return answer;
}

class TypedText : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Dialects, TypedText, testing::ValuesIn(test::Engines()));

TEST_P(TypedText, IsSoughtAsCodeNameAndMnemonic) {
  PickerFixture f(GetParam());
  const std::string where =
      "select * FROM gl_code where (ccode='gh' OR ccode_name='gh' or chelp='gh')";
  EXPECT_THAT(f.StatementsOf([&] { EXPECT_EQ(Validate(f, "gh").code, "3"); }), ElementsAre(where));
  f.parameters->Set("科目编码", "10,2'2");
  f.parameters->Set("科目类别", "负债");
  f.parameters->Set("bcus", 0);
  f.parameters->Set("bsup", "0");
  f.parameters->Set("ismx", "1.0");
  EXPECT_THAT(f.StatementsOf([&] { EXPECT_EQ(Validate(f, "gh").name, "100201"); }),
              ElementsAre(where + " and (ccode like '10%' or ccode like '22%') and bcus=0 and "
                                  "bsup=0 and bend=1"));
  f.parameters->Set("科目编码", "");  // hides the category all the same
  f.parameters->Set("ismx", 2);
  EXPECT_THAT(f.StatementsOf([&] { Validate(f, "gh"); }),
              ElementsAre(where + " and bcus=0 and bsup=0"));
  f.parameters->Remove("科目编码");
  EXPECT_THAT(f.StatementsOf([&] { EXPECT_EQ(Validate(f, "gh").code, ""); }),
              ElementsAre(where + " and cclass='负债' and bcus=0 and bsup=0"));
}

TEST_P(TypedText, FillsResultAndStrings) {
  PickerFixture f(GetParam());
  const Answer answer = Validate(f, "应付账款", "ccode", "cclass");
  EXPECT_EQ(answer.code, "2202");
  EXPECT_EQ(answer.name, "负债");
  EXPECT_EQ(f.picker.GetValue().ToText(), "2202");
  EXPECT_EQ(f.picker.Text(), "负债");
  EXPECT_THAT(f.Picked(), ElementsAre("2202"));
  EXPECT_EQ(Validate(f, "2202", "cexch_name").code, "");  // no value gives an empty text
  EXPECT_EQ(Validate(f, "220").code, "");                 // no part of a code
  EXPECT_EQ(Validate(f, " 2202").name, "");
  EXPECT_THAT(f.Picked(), IsEmpty());
  EXPECT_EQ(f.picker.GetValue().ToText(), "");
  EXPECT_EQ(f.picks, 0);
}

TEST(TypedTextRules, LeafAndClosedAccounts) {
  auto accounts = test::FewAccounts();
  accounts[0].closed = true;
  accounts[2].help = "1001";  // a mnemonic like another one's code
  PickerFixture f(test::DefaultEngine(), accounts);
  f.picker.Refresh();
  f.SelectNode("r负债");  // narrows the list only
  EXPECT_EQ(Validate(f, "kcxj").name, "1001");
  Validate(f, "1001");
  EXPECT_EQ(f.Picked().size(), 1U);  // one of the two
  EXPECT_EQ(Validate(f, "1002").code, "2");
  f.parameters->Set("ismx", 1);
  EXPECT_EQ(Validate(f, "1002").code, "");
}

TEST(TypedTextRules, AFailureReachesTheCallerWithEmptyStrings) {
  PickerFixture f;
  Answer answer;
  const auto validate = [&](const char* text, const char* field) {
    return f.picker.Validate("", field, "", text, answer.code, answer.name);
  };
  EXPECT_THROW(validate("it's", ""), host::HostError);
  EXPECT_EQ(answer.code + answer.name, "");
  EXPECT_THROW(validate("1001", "no_such_field"), host::HostError);
  EXPECT_EQ(answer.code + answer.name, "");
  f.picker.Clear();
  EXPECT_THROW(validate("1001", ""), host::HostError);
}

TEST(TypedTextRules, HostileTextChangesNothing) {
  PickerFixture f;
  const auto before = test::AllRows(f.book, "select * from gl_code order by i_id");
  for (const std::string& text :
       {std::string("x');delete from gl_code;--"), std::string("'"), std::string("x';"),
        std::string("') union select * from gl_code--"), std::string(100000, '\''),
        std::string("\0'", 2), std::string("x'); update gl_code set ccode='1")}) {
    Answer answer;
    try {
      (void)f.picker.Validate("delete from gl_code", "", "", text, answer.code, answer.name);
    } catch (const host::HostError&) {
      EXPECT_EQ(answer.code, "");
    }
    f.picker.SetText(text);
  }
  EXPECT_EQ(test::AllRows(f.book, "select * from gl_code order by i_id"), before);
}

}  // namespace
}  // namespace tavrix::picker
