#include "views/bar_fit.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace desk::views {
namespace {

/// What stands on the bar, by letters: lines are "|", "»" leads to the others.
std::string Fit(std::string_view items, int room) {
  std::vector<BarItem> bar;
  for (const char c : items) {
    bar.push_back({.width = c == '|' ? 2 : 10, .wanted = c != '-', .separator = c == '|'});
  }
  const BarFit fit = FitBar(bar, room, 5);
  std::string shown;
  for (std::size_t i = 0; i < bar.size(); ++i) {
    if (fit.shown[i]) shown += items[i];
  }
  return shown + (fit.more ? "»" : "");
}

TEST(BarFitTest, ShowsTheFirstThatFit) {
  EXPECT_EQ(Fit("ab|cd", 42), "ab|cd");
  EXPECT_EQ(Fit("ab|cd", 41), "ab|c»");
  EXPECT_EQ(Fit("ab|cd", 36), "ab»") << "no line at the end";
  EXPECT_EQ(Fit("ab|cd", 3), "»");
  EXPECT_EQ(Fit("|a|-|b|", 22), "a|b") << "what is not there leaves no second line";
  EXPECT_EQ(Fit("", 0), "");
}

}  // namespace
}  // namespace desk::views
