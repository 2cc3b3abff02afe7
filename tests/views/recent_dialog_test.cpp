#include "views/recent_dialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"
#include "support/temp_folder.h"

namespace desk::views {
namespace {

using viewkit::Key;

TEST(RecentDialog, ByKeysBooksArePinnedAndThoseThatHaveGoneAreTakenOff) {
  const tavrix::test::TempFolder folder;
  book::SharedSettingsFile file;
  book::RecentBooks books(file, folder.File("desk.txt"));
  for (const char* place : {"a", "gone", "c"}) books.Remember(place);
  RecentDialog dialog(books,
                      {.name = [](const std::string& place) { return "账簿 " + place; },
                       .may_be_there = [](const std::string& place) { return place != "gone"; }});
  auto& list = dynamic_cast<viewkit::FlexGrid&>(dialog.Controls().At(0));
  const auto names = [&] {
    std::vector<std::string> rows;
    for (int row = 1; row < list.Rows(); ++row) {
      std::string text;
      for (const int col : {RecentDialog::kPinned, RecentDialog::kName, RecentDialog::kState}) {
        text += list.TextMatrix(row, col);
      }
      rows.push_back(text);
    }
    return rows;
  };
  EXPECT_THAT(names(), ElementsAre("账簿 c", "账簿 gone找不到", "账簿 a"));
  list.SetRow(3);
  list.KeyDown.Raise(Key::kSpace, viewkit::Modifiers());
  EXPECT_THAT(names(), ElementsAre("★账簿 a", "账簿 c", "账簿 gone找不到"));
  EXPECT_EQ(list.Row(), 1) << "it stays chosen";
  list.SetRow(3);
  dialog.DefaultButton()->Click();
  EXPECT_EQ(dialog.Wanted(), "") << "what has gone is not opened";
  list.KeyDown.Raise(Key::kDelete, viewkit::Modifiers());
  EXPECT_THAT(names(), ElementsAre("★账簿 a", "账簿 c"));
  list.SetRow(2);
  dialog.DefaultButton()->Click();
  EXPECT_EQ(dialog.Wanted(), "c");
}

}  // namespace
}  // namespace desk::views
