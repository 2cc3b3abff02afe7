// Layout files that cannot be read, or not as a whole.

#include <map>
#include <set>

#include "layout/layout_support.h"

namespace tavrix::viewkit {
namespace {

/// Everything that a layout sets.
std::map<std::string, std::string> LayoutOf(const FlexGrid& grid) {
  std::map<std::string, std::string> all;
  for (int col = 0; col < grid.Cols(); ++col) {
    const std::string n = std::to_string(col);
    all["width" + n] = std::to_string(grid.ColWidth(col));
    all["merge" + n] = grid.MergeCol(col) ? "1" : "0";
    all["type" + n] = std::to_string(static_cast<int>(grid.ColDataType(col)));
    all["format" + n] = grid.ColFormat(col);
    all["alignment" + n] = std::to_string(static_cast<int>(grid.ColAlignment(col)));
  }
  all["frozen"] = std::to_string(grid.FrozenCols());
  all["heights"] = std::to_string(grid.RowHeight(0)) + "/" + std::to_string(grid.RowHeight(1));
  for (const std::string& line : Shown(grid)) all["rows"] += line + "\n";
  return all;
}

/// Each reading of a key fails in turn: the layout is that of the same file without this key.
TEST_F(LayoutTest, AKeyThatCannotBeReadCountsAsAbsent) {
  book_.SetSetting("system", "xsprice", "1");
  const std::vector<std::pair<std::string, std::string>> kKeys{
      {"VsIsHidden|VsCol0", "0"},     {"VsIsHidden|VsCol1", "1"},
      {"VsColWidth|VsCol0", "700"},   {"VsColWidth|VsCol2", "800"},
      {"VsIsSort|VsCol1", "3"},       {"VsIsColMerge|VsCol0", "1"},
      {"VsColDataType|VsCol0", "8"},  {"VsColDataType|VsCol1", "5"},
      {"VsColFormat|VsCol1", "0.00"}, {"VsColValDataType|VsCol1", "3"},
      {"VsColFormat|VsCol2", "0.00"}, {"VsColFormat_Xs|VsCol2", "3"},
      {"VsColAlignment|VsCol0", "4"}, {"VsIsGroupOn|VsCol0", "1"},
      {"VsIsTotalOn|VsCol1", "1"},    {"VsIsTotalOn|VsCol2", "1"},
      {"Vs|VsTotalSave", "1"},        {"Vs|VsRowHeight", "600"},
      {"Vs|VsFixedRowHeight", "900"}, {"Vs|VsFixedCols", "1"}};
  const auto write_without = [&](const std::string& left_out) {
    std::filesystem::remove(desk::book::PathOf(path_));
    desk::book::SharedSettingsFile file;
    file.SetFileName(path_);
    for (const auto& [place, value] : kKeys) {
      const std::size_t bar = place.find('|');
      if (place != left_out) file.WriteValue(place.substr(0, bar), place.substr(bar + 1), value);
    }
  };
  const auto apply = [&](const test::Recorder& host) {
    FlexGrid grid("Vs");
    Fill(grid, {{"b", "2.25", "1"}, {"a", "1.25", "2"}});
    ApplyVsLayout(path_, grid, false, *host.System());
    return LayoutOf(grid);
  };
  std::set<std::string> read;
  write_without("");
  test::Recorder sound(book_.System());
  const auto whole = apply(sound);
  const std::vector<test::HostCall> calls = sound.Calls();
  for (std::size_t call = 0; call < calls.size(); ++call) {
    const test::HostCall& failing = calls[call];
    SCOPED_TRACE(failing.name + " " + failing.detail);
    write_without("");
    test::Recorder host(book_.System());
    host.FailAt(static_cast<int>(call), test::Fault::kThrow);
    const auto left = apply(host);
    EXPECT_TRUE(host.Fired());
    if (failing.detail.empty()) continue;
    read.insert(failing.detail);
    write_without(failing.detail);
    EXPECT_EQ(left, apply(sound));
  }
  for (const auto& [place, value] : kKeys) {
    EXPECT_TRUE(read.contains(place)) << place;
    write_without(place);
    EXPECT_EQ(apply(sound) == whole, place == "VsIsHidden|VsCol0" || place == "Vs|VsTotalSave")
        << place << " decides something";
  }
}

/// Whatever the file holds, the grid opens with what it had.
TEST_F(LayoutTest, BadFiles) {
  std::string endless = "[VsColWidth]\n";
  for (int i = 0; i < 60'000; ++i) endless += "VsCol9999999=1\n";
  const std::string cases[] = {
      "",
      std::string(3000, '\0'),
      "\xFF\xFE[\n\xC3",
      "[VsColWidth\nVsCol0=5\n",
      "VsCol0=5\n",
      "[VsColWidth]\n=5\nVsCol0\nVsCol1=1e999\n",
      "[VsColWidth]\nVsCol0=99999999999999999999\n",
      "[VsColWidth]\nVsCol0=-1e300\n[Vs]\nVsRowHeight=1e10\nVsFixedCols=-99999999\n",
      "[Vs]\nVsFixedCols=-1\n",
      "[VsColFormat]\nVsCol0=" + std::string(9000, '0'),
      "[VsColWidth]\n" + std::string(200'000, 'x') + "=5\n" + "VsCol0=" + std::string(9000, '9'),
      endless};
  for (const std::string& text : cases) {
    SCOPED_TRACE(text.substr(0, 40));
    Write(text);
    FlexGrid grid("Vs");
    Fill(grid, {{"a", "b"}});
    grid.SetColWidth(0, 700);
    grid.SetColFormat(0, "0.0");
    grid.SetFrozenCols(1);
    Apply(grid);
    EXPECT_EQ(grid.ColWidth(0), 700);
    EXPECT_EQ(grid.ColFormat(0), "0.0");
    EXPECT_EQ(grid.FrozenCols(), 1);
    Save(grid);
    EXPECT_EQ(Stored("VsColWidth", "VsCol0"), "700") << "and what it holds now can be kept";
  }
}

TEST_F(LayoutTest, AListenerThatThrowsStopsNoRestore) {
  Write("[VsColWidth]\nVsCol0=700\n[VsIsTotalOn]\nVsCol0=1\n");
  FlexGrid grid("Vs");
  Fill(grid, {{"1"}, {"2"}});
  grid.SetCol(0);
  grid.SetRow(1);
  grid.RowColChange.Add([] { throw host::HostError("no"); });
  grid.SelChange.Add([] { throw host::HostError("no"); });
  grid.SetCols(2);
  EXPECT_NO_THROW(Apply(grid));
  EXPECT_EQ(grid.ColWidth(0), 700);
  EXPECT_NO_THROW(ApplyVsRows(path_, grid, *book_.System()));
}

TEST_F(LayoutTest, FilesThatAreNoneOfOursStay) {
  FlexGrid grid("Vs");
  Fill(grid, {{"a"}});
  std::ofstream(desk::book::PathOf(path_)).close();
  std::filesystem::resize_file(desk::book::PathOf(path_), std::uintmax_t{100} << 20);
  Apply(grid);
  Save(grid);
  EXPECT_EQ(std::filesystem::file_size(desk::book::PathOf(path_)), std::uintmax_t{100} << 20);
  std::filesystem::remove(desk::book::PathOf(path_));
  std::filesystem::create_directory(desk::book::PathOf(path_));
  Apply(grid);
  Save(grid);
  EXPECT_TRUE(std::filesystem::is_directory(desk::book::PathOf(path_)));
  Save(grid);
  EXPECT_EQ(grid.ColWidth(0), 960);
}

}  // namespace
}  // namespace tavrix::viewkit
