#include <optional>
#include <string>
#include <tuple>

#include "editor_test.h"
#include "host/report.h"

namespace tavrix::editing {
namespace {

using desk::book::Account;
using host::kCommandError;

class NextCodeTest : public EditorTest {};
INSTANTIATE_TEST_SUITE_P(Dialects, NextCodeTest, testing::ValuesIn(test::Engines()), DialectName);

struct NextCase {
  const char* reference;
  bool below;
  const char* next;  // empty: none
  const char* refusal;
};

TEST_P(NextCodeTest, CountsFromTheHighestCodeOfItsLevelAndCategory) {
  Editor editor(test::MakeBookOn(GetParam(), {{.code = "0101", .name = "a", .category = "共同"},
                                              {.code = "1001", .name = "b", .category = "资产"},
                                              {.code = "1002", .name = "c", .category = "资产"},
                                              {.code = "100201", .name = "d", .category = "资产"},
                                              {.code = "100207", .name = "e", .category = "资产"},
                                              {.code = "100209", .name = "f", .category = "负债"},
                                              {.code = "1003", .name = "g", .category = "资产"},
                                              {.code = "100399", .name = "h", .category = "资产"},
                                              {.code = "10A1", .name = "i", .category = "损益"},
                                              {.code = "9999", .name = "j", .category = "成本"}}));
  const NextCase cases[] = {
      {"1001", true, "100101", ""},
      {"1002", true, "100208", ""},  // 100209 is of another category
      {"100201", false, "100208", ""},
      {"1001", false, "1004", ""},
      {"1003", true, "100400", ""},  // the whole code is one number
      {"", true, "1004", ""},
      {"", false, "1004", ""},
      {"1001010101", true, "", " 本软件仅支持 4 级编码!"},
  };
  editor.Open(Edit(1), [&] {
    for (const NextCase& c : cases) {
      SCOPED_TRACE(c.reference);
      editor.reports.clear();
      EXPECT_EQ(editor.dialog->NextBm(c.reference, "资产", c.below).value_or(""), c.next);
      EXPECT_EQ(editor.reports, *c.next != 0 ? Reports{} : Reports({{c.refusal, kCommandError}}));
    }
    EXPECT_EQ(editor.dialog->NextBm("0101", "共同", false), "102");  // a leading zero is lost
    EXPECT_EQ(editor.dialog->NextBm("10A1", "损益", false), "11");
    EXPECT_EQ(editor.dialog->NextBm("1001", "权益", false), "0001");
    editor.reports.clear();
    EXPECT_EQ(editor.dialog->NextBm("9999", "成本", false), std::nullopt);
    EXPECT_EQ(editor.reports, (Reports{{" 已经没有空间容纳新的编码!", kCommandError}}));
  });
}

TEST_P(NextCodeTest, AsksTheChartInTheDialectOfTheDatabase) {
  editor_.Open(Edit(1), [&] {
    (void)editor_.dialog->NextBm("1002", "资产", true);
    (void)editor_.dialog->NextBm("1002", "资产", false);
    const Texts jet = {
        "Select TOP 1 ccode From gl_code Where len(ccode)=6 And  cclass='资产'"
        " and ccode Like '1002%' ORDER BY ccode desc",
        "Select TOP 1 ccode From gl_code Where len(ccode)=4 And  cclass='资产' ORDER BY ccode "
        "desc"};
    const Texts server = {
        "Select Max(ccode) as ccode From gl_code Where len(ccode)=6 And cclass='资产'"
        " and ccode Like '1002%'",
        "Select Max(ccode) as ccode From gl_code Where len(ccode)=4 And cclass='资产'"};
    EXPECT_EQ(editor_.recorder.Statements(), Jet() ? jet : server);
  });
}

TEST(NextCode, CountsExactlyWhateverTheLength) {
  // 9007199254740993 is the first whole number that a double cannot hold.
  Editor editor(test::MakeBook({{.code = "900719925", .category = "资产"},
                                {.code = "900719925474099299", .category = "资产"}},
                               "99"));
  editor.Open(Edit(1), [&] {
    EXPECT_EQ(editor.dialog->NextBm("900719925474099299", "资产", false), "900719925474099300");
  });
}

TEST(NextCode, TheProposalFollowsTheModeAndShowsItsStatus) {
  Editor editor;
  const std::tuple<bool, const char*, const char*> modes[] = {{true, "新增下级", "100203"},
                                                              {false, "新增同级", "1003"}};
  for (const auto& [below, caption, code] : modes) {
    editor.messages.clear();
    editor.user.in_dialog = [](viewkit::DialogModel&) {};
    editor.dialog->py_SubProgram(editor.recorder.System(), "资产", true, below, "1002");
    EXPECT_EQ(editor.dialog->Caption(), caption);
    EXPECT_EQ(editor.Code(), code);
    EXPECT_EQ(editor.messages, (Texts{"正在取新的编码", ""}));
  }
}

}  // namespace
}  // namespace tavrix::editing
