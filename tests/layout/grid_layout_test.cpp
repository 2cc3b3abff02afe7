
#include "layout/layout_support.h"

namespace tavrix::viewkit {
namespace {

using enum ColumnType;

TEST_F(LayoutTest, TheFileStandsInTheUsersFolder) {
  book_.Environment().user_folder = folder_.Path();
  const std::string separator = folder_.File("x").substr(folder_.Path().size(), 1);
  const std::string folder = folder_.Path() + separator + "selfbb";
  EXPECT_EQ(GetSelfFilePath("凭证77", *book_.System()), folder + separator + "凭证77.txt");
  EXPECT_TRUE(std::filesystem::is_directory(desk::book::PathOf(folder)));
  EXPECT_EQ(GetSelfFilePath("a", *book_.System()), folder + separator + "a.txt");

  book_.Environment().user_folder = folder_.File("not/there");
  EXPECT_EQ(GetSelfFilePath("a", *book_.System()).substr(folder_.Path().size()),
            separator + "not/there" + separator + "selfbb" + separator + "a.txt")
      << "one level only is made, and its failing is no error";
  EXPECT_FALSE(std::filesystem::exists(desk::book::PathOf(folder_.File("not"))));
  book_.Environment().user_folder = "";
  EXPECT_THROW((void)GetSelfFilePath("a", *book_.System()), host::HostError);
}

TEST_F(LayoutTest, SectionsAreNamedAfterTheGrid) {
  struct Case {
    const char* name;
    std::optional<int> index;
    const char* section;
  };
  for (const Case& each :
       {Case{"Vs", {}, "VsColWidth"}, Case{"vS", {}, "VsColWidth"}, Case{"Vs", 0, "VsColWidth_0"},
        Case{"VsList", {}, "VsColWidth_VsList"}, Case{"VsList", 2, "VsColWidth_VsList_2"}}) {
    Write("[" + std::string(each.section) + "]\nVsCol0=1234\n");
    FlexGrid grid(each.name, each.index);
    grid.SetCols(1);
    Apply(grid, true);
    EXPECT_EQ(grid.ColWidth(0), 1234) << each.section;
  }
}

TEST_F(LayoutTest, FormatsDisplayWithTheirDecimals) {
  const char* settings[] = {"xsnumber", "xsweight", "xsprice", "xswbje",
                            "xsybje",   "xswbtax",  "xsybtax", "xshl"};
  for (int i = 0; i < 8; ++i) {
    book_.SetSetting("system", settings[i], std::to_string((i + 3) % 8) + "位");
  }
  struct Case {
    ColumnType type;
    const char* format;
    const char* decimals;
    const char* kind;
    const char* result;
    const char* shown;
  };
  const std::string own = "0.0";
  const Case cases[] = {
      {kDouble, "#,##0.00", "3", "", "#,##0.###", "1,234.568"},
      {kDouble, "#,##0.00", "0", "1", "#,##0", "1,235"},
      {kDouble, "#,##0.00", " 2x", "1", "#,##0.##", "1,234.57"},
      {kDouble, "#,##0.00", "many", "", "#,##0", "1,235"},
      {kDouble, "#,##0", "1", "", "#,##0.#", "1,234.6"},
      {kEmpty, " #,##0.00 ", "", "1", "#,##0.###", "1,234.568"},
      {kDouble, "#,##0.00", "", "2", "#,##0.####", "1,234.5679"},
      {kDouble, "#,##0.00", "", "3", "#,##0.#####", "1,234.56789"},
      {kDouble, "#,##0.00", "", "4", "#,##0.######", "1,234.56789"},
      {kDouble, "#,##0.00", "", "5", "#,##0.#######", "1,234.56789"},
      {kDouble, "#,##0.00", "", "6", "#,##0", "1,235"},
      {kDouble, "#,##0.00", "", "7", "#,##0.#", "1,234.6"},
      {kDouble, "#,##0.00", "", "8.0", "#,##0.##", "1,234.57"},
      {kDouble, "#,##0.00", "", "9", "#,##0.00", "1,234.57"},
      {kDouble, "#,##0.00", "", "1.5", "#,##0.00", "1,234.57"},
      {kDouble, "###0.00", "", "", "###0.00", "1234.57"},
      {kDouble, "  ", "3", "1", "", "1234.56789"},
      {kString, " #,### ", "", "", "", "1234.56789"},
      {kCurrency, "#,##0.0", "3", "1", "#,##0.0", "1,234.6"},
      {kCurrency, " 0.0 ", "", "", "0.0", "1234.6"},
      {kDouble, "#,##0.00", "-1", "", "0.0", "1234.6"},
      {kDouble, "#,##0.00", "99999999999", "", "0.0", "1234.6"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(std::string(each.format) + "," + each.decimals + "," + each.kind);
    std::filesystem::remove(desk::book::PathOf(path_));
    Store("VsColDataType", "VsCol0", std::to_string(static_cast<int>(each.type)));
    Store("VsColFormat", "VsCol0", each.format);
    if (*each.decimals != '\0') Store("VsColFormat_Xs", "VsCol0", each.decimals);
    if (*each.kind != '\0') Store("VsColValDataType", "VsCol0", each.kind);
    FlexGrid grid("Vs");
    Fill(grid, {{"1234.56789"}});
    grid.SetColFormat(0, own);
    Apply(grid);
    EXPECT_EQ(grid.ColDataType(0), each.type);
    EXPECT_EQ(grid.ColFormat(0), each.result);
    EXPECT_EQ(Shown(grid), Lines{each.shown});
  }
}

TEST_F(LayoutTest, ColumnsComeBack) {
  Write(
      "[VsIsHidden]\nVsCol1=1\nVsCol2=0\nVsCol3=0\n[VsColWidth]\nVsCol0=700\nVsCol1=800\n"
      "VsCol2=0\nVsCol3=1500 ; breit\n[VsIsColMerge]\nVsCol0=1\nVsCol1=2\n[VsColAlignment]\n"
      "VsCol0=7\nVsCol1=99\n[Vs]\nVsRowHeight=600\nVsFixedRowHeight=900\nVsFixedCols=2\n");
  FlexGrid grid("Vs");
  Fill(grid, {{"a", "b", "c", "d"}, {"e", "f", "g", "h"}});
  grid.SetFixedCols(1);
  grid.SetMergeCol(1, true);
  Apply(grid, true);
  const auto widths = [&] {
    return std::vector<int>{grid.ColWidth(0), grid.ColWidth(1), grid.ColWidth(2), grid.ColWidth(3)};
  };
  EXPECT_EQ(widths(), (std::vector<int>{700, 0, 0, 1500}));
  EXPECT_FALSE(grid.ColHidden(1)) << "hidden by its width";
  EXPECT_TRUE(!grid.MergeCol(0) && grid.MergeCol(1) && grid.FrozenCols() == 0);
  EXPECT_EQ(grid.ColAlignment(0), Alignment::kGeneral);

  Apply(grid);
  EXPECT_EQ(widths(), (std::vector<int>{700, 0, 0, 1500}));
  EXPECT_TRUE(grid.MergeCol(0) && !grid.MergeCol(1)) << "anything but 1 is off";
  EXPECT_EQ(grid.ColAlignment(0), Alignment::kRightCenter);
  EXPECT_EQ(grid.ColAlignment(1), Alignment::kGeneral) << "no alignment has this number";
  EXPECT_EQ(grid.FrozenCols(), 2);
  EXPECT_EQ(grid.FixedCols(), 1);
  EXPECT_EQ(grid.RowHeight(0), 900);
  EXPECT_EQ(grid.RowHeight(1), 600);
  EXPECT_EQ(grid.RowHeight(2), 600);
}

TEST_F(LayoutTest, SortsFromLeftToRight) {
  Write("[VsIsSort]\nVsCol0=7\nVsCol1=4\nVsCol2=77\n");
  FlexGrid grid("Vs");
  Fill(grid, {{"b", "1", "x"}, {"a", "9", "y"}, {"c", "9", "z"}, {"a", "1", "w"}});
  Apply(grid);
  EXPECT_EQ(Shown(grid), (Lines{"a|9|y", "c|9|z", "a|1|w", "b|1|x"}));
  EXPECT_EQ(grid.Col(), 2);
}

TEST_F(LayoutTest, GrandTotalsAlone) {
  Write("[VsIsTotalOn]\nVsCol2=1\nVsCol3=1\n[VsIsHidden]\nVsCol0=1\n");
  FlexGrid grid("Vs");
  Fill(grid, {{"资产", "1001", "10", "0.5"}, {"负债", "2202", "20", "0.25"}});
  grid.SetColHidden(1, true);
  Apply(grid);
  Apply(grid);
  EXPECT_EQ(Shown(grid), (Lines{"资产|1001|10|0.5", "负债|2202|20|0.25", "合计||合计|0.75"}))
      << "once, with its caption in the first column that is seen";
  EXPECT_EQ(grid.CellBackColor(3, 3), 0xFFFF80U);
  EXPECT_EQ(grid.CellForeColor(3, 3), color::kDefault);
  EXPECT_TRUE(grid.CellFontBold(3, 3));
}

/// Fixed columns are no place for a caption, a label or for tidying.
TEST_F(LayoutTest, FixedColumnsKeepOutOfTotals) {
  const auto rows_of = [&](const std::string& text, bool hide) {
    Write(text);
    FlexGrid grid("Vs");
    Fill(grid,
         {{"1", "资产", "现金", "10"}, {"2", "资产", "现金", "5"}, {"3", "负债", "应付", "20"}});
    grid.SetFixedCols(1);
    grid.SetColHidden(1, hide);
    Apply(grid);
    EXPECT_EQ(grid.CellForeColor(3, 0), color::kDefault);
    return Shown(grid);
  };
  const std::string one = "[VsIsGroupOn]\nVsCol2=1\n[VsIsTotalOn]\nVsCol3=1\n";
  EXPECT_EQ(rows_of(one, false), (Lines{"1|资产|现金|10", "2|资产|现金|5", "|现金小计|现金小计|15",
                                        "3|负债|应付|20", "|应付小计|应付小计|20", "|合计||35"}));
  EXPECT_EQ(rows_of(one, true).back(), "|合计|合计|35") << "seen though its column is hidden";
  EXPECT_EQ(rows_of("[VsIsHidden]\nVsCol1=1\nVsCol2=1\n[VsIsTotalOn]\nVsCol3=1\n", false).back(),
            "|合计||合计")
      << "the label may take the place of the sum itself";
}

TEST_F(LayoutTest, SeveralGroupsBesideFixedColumns) {
  Write("[VsIsGroupOn]\nVsCol2=1\nVsCol3=1\n[VsIsTotalOn]\nVsCol0=1\nVsCol1=1\nVsCol4=1\n");
  FlexGrid grid("Vs");
  Fill(grid, {{"1", "7", "资产", "现金", "10"},
              {"2", "8", "资产", "现金", "5"},
              {"3", "9", "负债", "应付", "20"}});
  grid.SetFixedCols(1);
  Apply(grid);
  EXPECT_EQ(Shown(grid),
            (Lines{"1|7|资产|现金|10", "2|8|资产|现金|5", "3||资产|现金小计|15", "3||资产小计||15",
                   "3|9|负债|应付|20", "3||负债|应付小计|20", "3||负债小计||20", "6|24|||35"}))
      << "cleared from the first column that is not fixed to the one before the first group's";
}

TEST_F(LayoutTest, OneGroup) {
  Write("[VsIsGroupOn]\nVsCol1=1\n[VsIsTotalOn]\nVsCol2=1\n");
  FlexGrid grid("Vs");
  Fill(grid, {{"1001", "资产", "10"}, {"1002", "资产", "5"}, {"2202", "负债", "20"}});
  Apply(grid);
  EXPECT_EQ(Shown(grid), (Lines{"1001|资产|10", "1002|资产|5", "资产小计|资产小计|15",
                                "2202|负债|20", "负债小计|负债小计|20", "合计||35"}));
  EXPECT_EQ(grid.CellForeColor(3, 0), 128U);
  EXPECT_TRUE(grid.CellFontBold(3, 2));

  grid.SetTextMatrix(1, 2, "110");
  Apply(grid);
  EXPECT_EQ(Shown(grid).back(), "合计||135") << "built anew";
  EXPECT_EQ(grid.Rows(), 7);
}

TEST_F(LayoutTest, SeveralGroups) {
  Write("[VsIsGroupOn]\nVsCol1=1\nVsCol2=1\n[VsIsTotalOn]\nVsCol3=1\nVsCol4=1\n");
  FlexGrid grid("Vs");
  Fill(grid, {{"k", "资产", "现金", "1", "10"},
              {"k", "资产", "现金", "2", "20"},
              {"k", "资产", "银行", "3", "30"},
              {"k", "负债", "应付", "4", "40"}});
  Apply(grid);
  EXPECT_EQ(Shown(grid),
            (Lines{"k|资产|现金|1|10", "k|资产|现金|2|20", "|资产|现金小计|3|30",
                   "k|资产|银行|3|30", "|资产|银行小计|3|30", "|资产小计||6|60", "k|负债|应付|4|40",
                   "|负债|应付小计|4|40", "|负债小计||4|40", "合计|||10|100"}))
      << "what stands before the first group's column is not repeated";
}

TEST_F(LayoutTest, AGroupOnTheFirstColumnKeepsItsCaption) {
  Write("[VsIsGroupOn]\nVsCol0=1\nVsCol1=1\n[VsIsTotalOn]\nVsCol2=1\n");
  FlexGrid grid("Vs");
  Fill(grid, {{"资产", "现金", "1"}, {"资产", "银行", "3"}});
  Apply(grid);
  EXPECT_EQ(Shown(grid), (Lines{"资产|现金|1", "资产|现金小计|1", "资产|银行|3", "资产|银行小计|3",
                                "资产小计||4", "合计||4"}));
}

TEST_F(LayoutTest, ClearsTotalsOnlyWhenTold) {
  const auto rows_after = [&](const std::string& text) {
    Write(text);
    FlexGrid grid("Vs");
    Fill(grid, {{"a", "1"}, {"b", "2"}});
    SubtotalOptions own;
    own.total_on = 1;
    grid.Subtotal(SubtotalFunction::kSum, own);
    EXPECT_EQ(grid.Rows(), 4);
    Apply(grid);
    return grid.Rows();
  };
  EXPECT_EQ(rows_after("[Vs]\nVsTotalSave=0\n"), 4);
  EXPECT_EQ(rows_after("[VsIsGroupOn]\nVsCol0=1\n"), 4) << "a group without a total is none";
  EXPECT_EQ(rows_after("[Vs]\nVsTotalSave=1\n"), 3);
  Write("[VsIsTotalOn]\nVsCol0=1\nVsCol1=1\n[VsIsHidden]\nVsCol0=1\n");
  FlexGrid empty("Vs");
  empty.SetCols(2);
  empty.SetTextMatrix(0, 1, "金额");
  Apply(empty);
  EXPECT_EQ(empty.TextMatrix(0, 1), "金额") << "there is no total to name";
}

TEST_F(LayoutTest, SavesWhatTheGridHasAndNothingElse) {
  const std::string by_hand =
      "; 不要动\r\n[VsIsSort]\r\nVsCol0=1\r\n[VsColFormat_Xs]\r\nVsCol0=2\r\n"
      "[VsColValDataType]\r\nVsCol0=3\r\n[VsIsGroupOn]\r\nVsCol0=1\r\n[VsIsTotalOn]\r\nVsCol1=1\r\n"
      "[Vs]\r\nVsTotalSave=1\r\nother=x\r\n[未知]\r\na = b\r\n";
  Write(by_hand);
  FlexGrid grid("Vs");
  Fill(grid, {{"a", "b"}});
  grid.SetColWidth(0, 0);
  grid.SetColWidth(1, 777);
  grid.SetMergeCol(1, true);
  grid.SetColDataType(1, kDouble);
  grid.SetColFormat(1, "#,##0.00");
  grid.SetColAlignment(1, Alignment::kRightCenter);
  grid.SetFrozenCols(1);
  grid.SetRowHeight(0, 444);
  grid.SetRowHeight(1, 333);
  Save(grid, true);
  const std::string widths =
      "\r\n[VsIsHidden]\r\nVsCol0=1\r\nVsCol1=0\r\n\r\n[VsColWidth]\r\nVsCol1=777\r\n";
  EXPECT_EQ(OnDisk(), by_hand + widths);
  Save(grid);
  std::string all = by_hand;
  all.insert(all.find("[未知]"), "VsRowHeight=333\r\nVsFixedRowHeight=444\r\nVsFixedCols=1\r\n");
  EXPECT_EQ(OnDisk(),
            all + widths +
                "\r\n[VsIsColMerge]\r\nVsCol0=0\r\nVsCol1=1\r\n\r\n[VsColDataType]\r\n"
                "VsCol0=0\r\nVsCol1=5\r\n\r\n[VsColFormat]\r\nVsCol0=\r\nVsCol1=#,##0.00\r\n"
                "\r\n[VsColAlignment]\r\nVsCol0=9\r\nVsCol1=7\r\n");
  grid.SetColWidth(1, 0);
  Save(grid, true);
  EXPECT_EQ(Stored("VsColWidth", "VsCol1"), "777") << "the width to come back to";
}

TEST_F(LayoutTest, AMissingFileIsWrittenByAFullRestoreAlone) {
  FlexGrid grid("Vs");
  Fill(grid, {{"a"}});
  Apply(grid, true);
  EXPECT_FALSE(Exists());
  Apply(grid);
  EXPECT_EQ(Stored("VsColWidth", "VsCol0"), std::to_string(grid.ColWidth(0)));
}

TEST_F(LayoutTest, AGridThatEndsInAListenerHasItsFileByThen) {
  auto grid = std::make_unique<FlexGrid>("Vs");
  Fill(*grid, {{"a", "b"}});
  grid->RowColChange.Add([&] { grid.reset(); });
  Apply(*grid);
  EXPECT_EQ(grid, nullptr);
  EXPECT_TRUE(Exists());
}

}  // namespace
}  // namespace tavrix::viewkit
