#include "book/host/grid_navigator.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <utility>

#include "support/outline_grid.h"
#include "viewkit/grid/flex_grid.h"

namespace desk::book {
namespace {

using tavrix::viewkit::FlexGrid;

/// Rows from 1: 1001 Cash, 1002 Bank (100201 ICBC, 100202 CCB (10020201 USD)), 5001 Cost.
class NavigatorTest : public testing::Test {
 protected:
  NavigatorTest() {
    grid_.SetFixedRows(1);
    grid_.SetCols(3);
    host::RowSet rows(3);
    const std::pair<const char*, const char*> accounts[] = {
        {"1001", "Cash"},  {"1002", "Bank"},         {"100201", "ICBC"},
        {"100202", "CCB"}, {"10020201", "USD 美元"}, {"5001", "Cost"}};
    for (const auto& [code, name] : accounts) {
      rows.AppendText(code);
      rows.AppendText(name);
      rows.AppendText("hidden");
    }
    grid_.LoadRows(std::move(rows));
    grid_.SetColHidden(2, true);
    tavrix::test::MakeOutline(grid_, {{1, 0}, {2, 0}, {3, 1}, {4, 1}, {5, 2}, {6, 0}});
  }
  [[nodiscard]] std::vector<int> Shown() const { return tavrix::test::ShownRows(grid_); }
  FlexGrid grid_{"Vs"};
  GridSearch search_;
};

TEST_F(NavigatorTest, MovesOverShownRows) {
  EXPECT_TRUE(search_.MoveNext(grid_));
  EXPECT_EQ(grid_.Row(), 1);
  EXPECT_FALSE(search_.MovePrevious(grid_));
  EXPECT_TRUE(search_.MoveNext(grid_));
  EXPECT_TRUE(search_.MoveNext(grid_));
  EXPECT_EQ(grid_.Row(), 6);
  EXPECT_FALSE(search_.MoveNext(grid_));
  EXPECT_TRUE(search_.MovePrevious(grid_));
  EXPECT_EQ(grid_.Row(), 2);
  EXPECT_TRUE(search_.MoveBottom(grid_));
  EXPECT_EQ(grid_.Row(), 6);
  EXPECT_TRUE(search_.MoveTop(grid_));
  EXPECT_EQ(grid_.Row(), 1);
}

TEST_F(NavigatorTest, FindOpensTheWayAndGoesRound) {
  EXPECT_TRUE(search_.Find(grid_, " c"));
  EXPECT_EQ(grid_.Row(), 1);
  EXPECT_TRUE(search_.FindNext(grid_));
  EXPECT_EQ(grid_.Row(), 3);
  EXPECT_TRUE(grid_.IsShown(3));
  EXPECT_TRUE(search_.Find(grid_, "usd"));
  EXPECT_EQ(grid_.Row(), 5);
  EXPECT_TRUE(grid_.IsShown(5));
  EXPECT_TRUE(search_.FindNext(grid_)) << "round to the row that stands";
  EXPECT_EQ(grid_.Row(), 5);
  EXPECT_TRUE(search_.Find(grid_, "1001"));
  EXPECT_EQ(grid_.Row(), 1);
}

TEST_F(NavigatorTest, FindsNothingWhereNothingIs) {
  EXPECT_FALSE(search_.FindNext(grid_));
  grid_.SetRow(2);
  for (const char* text : {"", "  ", "nowhere", "hidden"}) {
    EXPECT_FALSE(search_.Find(grid_, text)) << text;
  }
  EXPECT_FALSE(search_.Find(grid_, host::Value()));
  EXPECT_EQ(grid_.Row(), 2);
  grid_.SetRows(1);
  EXPECT_FALSE(search_.Find(grid_, "1001"));
  EXPECT_FALSE(search_.MoveTop(grid_));
  EXPECT_FALSE(search_.MoveBottom(grid_));
}

TEST_F(NavigatorTest, FilterKeepsAncestors) {
  grid_.SetRow(1);
  EXPECT_TRUE(search_.Filter(grid_, "美元"));
  EXPECT_EQ(Shown(), (std::vector{2, 4, 5}));
  EXPECT_EQ(grid_.Row(), 5) << "the current row was filtered away";
  EXPECT_FALSE(search_.Find(grid_, "ICBC"));
  EXPECT_TRUE(search_.Filter(grid_, "ICBC"));
  EXPECT_EQ(Shown(), (std::vector{2, 3}));
  EXPECT_FALSE(search_.Filter(grid_, "nowhere"));
  EXPECT_TRUE(Shown().empty());
  EXPECT_TRUE(search_.Filter(grid_, ""));
  EXPECT_EQ(Shown(), (std::vector{1, 2, 3, 4, 6}));
}

TEST_F(NavigatorTest, AFilterClosesAgainWhatItHasOpened) {
  grid_.SetCollapsed(2, false);  // by the user
  EXPECT_TRUE(search_.Filter(grid_, "美元"));
  EXPECT_EQ(Shown(), (std::vector{2, 4, 5}));
  EXPECT_TRUE(search_.Filter(grid_, "s")) << "another one, before the first is cleared";
  grid_.SetRow(1);
  EXPECT_TRUE(search_.Filter(grid_, ""));
  EXPECT_EQ(Shown(), (std::vector{1, 2, 3, 4, 6}));
  EXPECT_TRUE(search_.Filter(grid_, "美元"));
  grid_.SetRow(5);
  EXPECT_TRUE(search_.Filter(grid_, ""));
  EXPECT_TRUE(grid_.IsShown(5)) << "the account that was looked for does not go from sight";
}

// A row that comes or goes meanwhile moves all below it.
TEST_F(NavigatorTest, AFilterKnowsItsNodesByTheirCodes) {
  EXPECT_TRUE(search_.Filter(grid_, "USD"));
  const int added = grid_.AddItem();
  grid_.SetTextMatrix(added, 0, "0001");
  grid_.SetIsSubtotal(added, true);
  grid_.SortRows(0, tavrix::viewkit::SortOrder::kStringAscending, 1, added);
  grid_.SetRow(1);
  EXPECT_TRUE(search_.Filter(grid_, ""));
  EXPECT_EQ(Shown(), (std::vector{1, 2, 3, 7}));
}

TEST_F(NavigatorTest, TellsHowManyThereAreAndWhichOneItIs) {
  const auto tally = std::make_shared<SearchTally>();
  GridSearch search(tally, {});
  const auto told = [&] { return std::pair{tally->position, tally->matches}; };
  EXPECT_TRUE(search.Find(grid_, "C"));  // 1001 Cash, 100201 ICBC, 100202 CCB, 5001 Cost
  EXPECT_EQ(told(), std::pair(1, 4));
  EXPECT_TRUE(search.FindNext(grid_));
  EXPECT_EQ(told(), std::pair(2, 4));
  grid_.SetRow(6);
  EXPECT_TRUE(search.FindNext(grid_));
  EXPECT_EQ(told(), std::pair(1, 4)) << "round";
  EXPECT_FALSE(search.Find(grid_, "nowhere"));
  EXPECT_EQ(told(), std::pair(0, 0));
  EXPECT_TRUE(search.Filter(grid_, "100"));
  EXPECT_EQ(told(), std::pair(0, 5));
  EXPECT_TRUE(search.Find(grid_, "c"));
  EXPECT_EQ(tally->matches, 3) << "what is filtered away is not there";
}

// Matches are kept from one search to the next.
TEST_F(NavigatorTest, SearchesAgainWhatHasChangedMeanwhile) {
  const auto tally = std::make_shared<SearchTally>();
  GridSearch search(tally, {});
  const auto matches = [&](tavrix::viewkit::FlexGrid& grid) {
    EXPECT_TRUE(search.FindNext(grid));
    return tally->matches;
  };
  EXPECT_TRUE(search.Find(grid_, "c"));
  EXPECT_EQ(matches(grid_), 4);
  grid_.SetTextMatrix(1, 1, "Bank");
  EXPECT_EQ(matches(grid_), 3);
  grid_.SetTextMatrix(grid_.AddItem(), 1, "Credit");
  EXPECT_EQ(matches(grid_), 4);
  grid_.RemoveItem(6);
  EXPECT_EQ(matches(grid_), 3);
  grid_.SetTextMatrix(1, 0, "c");
  grid_.SetColHidden(0, true);
  EXPECT_EQ(matches(grid_), 3);
  grid_.SetColHidden(0, false);
  EXPECT_EQ(matches(grid_), 4);
  tavrix::viewkit::FlexGrid other("Vs");
  other.SetCols(1);
  other.SetTextMatrix(other.AddItem(), 0, "c");
  EXPECT_EQ(matches(other), 1);
}

TEST_F(NavigatorTest, FindsByWhatTheGridDoesNotShow) {
  GridSearch search(std::make_shared<SearchTally>(), [](const FoldedPattern& pattern) {
    return pattern.FoundIn("MeiYuan") ? std::vector<std::string>{"10020201"}
                                      : std::vector<std::string>{};
  });
  EXPECT_TRUE(search.Find(grid_, "ｍｅｉ"));
  EXPECT_EQ(grid_.Row(), 5);
  EXPECT_TRUE(search.Filter(grid_, "yuan"));
  EXPECT_EQ(Shown(), (std::vector{2, 4, 5}));
}

TEST(FoldedText, LeavesWhatCounts) {
  const std::pair<const char*, const char*> texts[] = {
      {"Dépréciation ÉLEVÉE", "depreciation elevee"},
      {"de\u0301pre\u0301ciation", "depreciation"},
      {"Œuvre, Ærø, Straße, Łódź", "oeuvre, aero, strasse, lodz"},
      {"L’achat\u00A0d’un «bien»", "l'achat d'un «bien»"},
      {"ＡＢＣ　１２３－（ａ）", "abc 123-(a)"},
      {"Ｌ＇ａｃｈａｔ", "l'achat"},
      {"lǚ Việt Ș", "lu viet s"},
      {"БАНК Ёлка", "банк ёлка"},
      {"银行存款 ①", "银行存款 ①"},
      {"\xff\xc3", "\uFFFD\uFFFD"},
      {"", ""}};
  for (const auto& [text, folded] : texts) EXPECT_EQ(Folded(text), folded) << text;
}

// Most texts are passed over without being folded.
TEST(FoldedText, FindsWhatTheFoldedTextHolds) {
  const std::vector<std::string> pieces = {
      "a",  "A",      "9",    "é",        "e\u0301", "Œ",      "存", "款",
      "Ｚ", "z",      "Б",    "\u3000",   " ",       "\u2019", "'",  "\U0001F600",
      "한", "\uFFFD", "\xe5", "\xe5\xad", "\xff",    "-",      "—"};
  std::mt19937 random(7);
  const auto text = [&](unsigned most) {
    std::string made;
    for (auto count = random() % (most + 1); count > 0; --count) {
      made += pieces[random() % pieces.size()];
    }
    return made;
  };
  int found = 0;
  for (int round = 0; round < 20'000; ++round) {
    const std::string sought = text(2);
    const std::string looked_through = text(8);
    const bool held = Folded(looked_through).find(Folded(sought)) != std::string::npos;
    ASSERT_EQ(FoldedPattern(sought).FoundIn(looked_through), held)
        << sought << " in " << looked_through;
    found += held ? 1 : 0;
  }
  EXPECT_GT(found, 4'000);
  EXPECT_LT(found, 16'000);
}

TEST_F(NavigatorTest, FindsNoTotals) {
  tavrix::viewkit::SubtotalOptions options;
  options.caption = "合计";
  grid_.Subtotal(tavrix::viewkit::SubtotalFunction::kSum, options);
  ASSERT_TRUE(grid_.IsTotalRow(7));
  EXPECT_FALSE(search_.Find(grid_, "合计"));
  EXPECT_FALSE(search_.Filter(grid_, "合计"));
  EXPECT_TRUE(search_.Filter(grid_, "1"));
  EXPECT_TRUE(grid_.RowHidden(7)) << "it does not sum up what is shown now";
}

}  // namespace
}  // namespace desk::book
