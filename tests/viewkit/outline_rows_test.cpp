#include "viewkit/grid/outline_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace tavrix::viewkit {
namespace {

/// The same rows in the plainest way: everything is worked out anew from the definition.
struct PlainRow {
  bool node = false;
  int level = 0;
  bool collapsed = false;
  bool hidden = false;
};

class PlainOutline {
 public:
  std::vector<PlainRow> rows;

  [[nodiscard]] bool IsBelow(std::size_t row, std::size_t node) const {
    return !rows[row].node || rows[row].level > rows[node].level;
  }
  /// Parent, last row below, and whether it is shown, of every row.
  struct Truth {
    std::vector<int> parent;
    std::vector<int> last;
    std::vector<bool> shown;
  };
  [[nodiscard]] Truth WorkOut() const {
    Truth truth;
    std::vector<std::size_t> open;  // the nodes that the row lies below
    for (std::size_t row = 0; row < rows.size(); ++row) {
      while (!open.empty() && !IsBelow(row, open.back())) open.pop_back();
      truth.parent.push_back(open.empty() ? -1 : static_cast<int>(open.back()));
      truth.last.push_back(static_cast<int>(row));
      bool shown = !rows[row].hidden;
      for (const std::size_t node : open) {
        shown = shown && !rows[node].collapsed;
        truth.last[node] = static_cast<int>(row);
      }
      truth.shown.push_back(shown);
      if (rows[row].node) open.push_back(row);
    }
    return truth;
  }
};

/// Changes both alike, at random, and compares everything there is to ask.
class OutlineTwins {
 public:
  explicit OutlineTwins(unsigned seed) : random_(seed) {
    const int count = Below(1500);
    plain_.rows.resize(static_cast<std::size_t>(count));
    outline_.Reset(count);
    if (Below(3) > 0) MakeNodes();
  }

  void Step() {
    if (outline_.Rows() == 0) return Insert();
    const int row = Below(outline_.Rows());
    PlainRow& plain = plain_.rows[static_cast<std::size_t>(row)];
    switch (Below(20)) {
      case 0:
        return Insert();
      case 1:
        return Erase(row);
      case 2:
        return InsertAt();
      case 3:
        return EraseAt();
      case 4:
        return Reorder(row);
      case 5:
        return Collapse(Below(6) - 1);
      case 6:
        return Below(10) == 0 ? Clear() : MakeNodes();
      case 7:
      case 8:
        plain.node = Below(8) > 0;
        plain.collapsed = plain.collapsed && plain.node;
        return static_cast<void>(outline_.SetNode(row, plain.node));
      case 9:
      case 10:
        plain.level = Below(40) == 0 ? OutlineRows::kDeepest : Below(5);
        return static_cast<void>(outline_.SetLevel(row, plain.level));
      case 11:
      case 12:
        plain.hidden = Below(2) == 0;
        return static_cast<void>(outline_.SetHidden(row, plain.hidden));
      default:
        plain.collapsed = plain.node && Below(2) == 0;
        return static_cast<void>(outline_.SetCollapsed(row, plain.collapsed));
    }
  }

  void Check() const {
    const PlainOutline::Truth truth = plain_.WorkOut();
    const auto rows = static_cast<int>(plain_.rows.size());
    ASSERT_EQ(outline_.Rows(), rows);
    int position = 0;
    for (int row = 0; row < rows; ++row) {
      const auto place = static_cast<std::size_t>(row);
      const PlainRow& plain = plain_.rows[place];
      ASSERT_EQ(outline_.IsNode(row), plain.node) << row;
      ASSERT_EQ(outline_.Level(row), plain.level) << row;
      ASSERT_EQ(outline_.IsCollapsed(row), plain.collapsed) << row;
      ASSERT_EQ(outline_.IsHidden(row), plain.hidden) << row;
      ASSERT_EQ(outline_.Parent(row), truth.parent[place]) << row;
      ASSERT_EQ(outline_.LastOfNode(row), plain.node ? truth.last[place] : row) << row;
      ASSERT_EQ(outline_.IsShown(row), truth.shown[place]) << row;
      ASSERT_EQ(outline_.ShownBefore(row), position) << row;
      if (!truth.shown[place]) continue;
      ASSERT_EQ(outline_.ShownAt(position), row);
      ++position;
    }
    ASSERT_EQ(outline_.ShownBefore(rows), position);
    ASSERT_EQ(outline_.ShownCount(), position);
  }

 private:
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  void MakeNodes() {
    std::vector<int> levels;
    for (std::size_t row = 0; row < plain_.rows.size(); ++row) {
      // Long stretches below one node, and short ones.
      levels.push_back(Below(200) == 0 ? 0 : Below(4) == 0 ? 1 + Below(2) : 3 + Below(2));
      plain_.rows[row].node = true;
      plain_.rows[row].level = levels.back();
    }
    outline_.MakeNodes([&](int row) { return levels[static_cast<std::size_t>(row)]; });
  }
  void Insert() {
    const int at = Below(3) == 0 ? outline_.Rows() : Below(outline_.Rows() + 1);
    const int count = Below(3) == 0 ? Below(600) : 1;
    plain_.rows.insert(plain_.rows.begin() + at, static_cast<std::size_t>(count), {});
    outline_.Insert(at, count);
  }
  void Erase(int at) {
    const int count = 1 + Below(Below(4) == 0 ? outline_.Rows() - at : 1);
    plain_.rows.erase(plain_.rows.begin() + at, plain_.rows.begin() + at + count);
    outline_.Erase(at, count);
  }
  RowList Places() {
    RowList places;
    for (int row = 0; row < outline_.Rows(); ++row) {
      if (Below(100) == 0) places.push_back(row);
    }
    return places;
  }
  void InsertAt() {
    const auto places = Places();
    for (std::size_t i = places.size(); i-- > 0;) {
      plain_.rows.insert(plain_.rows.begin() + places[i], PlainRow{});
    }
    outline_.InsertAt(places);
  }
  void EraseAt() {
    const auto places = Places();
    if (places.empty()) return;
    for (std::size_t i = places.size(); i-- > 0;) {
      plain_.rows.erase(plain_.rows.begin() + places[i]);
    }
    outline_.EraseAt(places);
  }
  void Reorder(int first) {
    std::vector<int> order(static_cast<std::size_t>(outline_.Rows() - first));
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random_);
    const std::vector<PlainRow> before(plain_.rows.begin() + first, plain_.rows.end());
    auto to = plain_.rows.begin() + first;
    for (const int from : order) *to++ = before[static_cast<std::size_t>(from)];
    outline_.Reorder(RowOrder(order, first));
  }
  void Collapse(int level) {
    for (PlainRow& row : plain_.rows) row.collapsed = row.node && level >= 0 && row.level >= level;
    outline_.CollapseTo(level);
  }
  void Clear() {
    for (PlainRow& row : plain_.rows) row = {.hidden = row.hidden};
    outline_.Clear();
  }

  std::mt19937 random_;
  PlainOutline plain_;
  OutlineRows outline_;
};

TEST(OutlineRowsTest, AgreesWithThePlainDefinitionWhateverIsDone) {
  for (unsigned seed = 1; seed <= 6 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    OutlineTwins twins(seed);
    for (int step = 0; step < 40 && !testing::Test::HasFailure(); ++step) {
      for (int unasked = step % 3; unasked >= 0; --unasked) twins.Step();
      twins.Check();
    }
  }
}

// A node is collapsed while nothing is below it, wherever it stands among the kept stretches.
TEST(OutlineRowsTest, WhatComesBelowACollapsedNodeIsNotShown) {
  OutlineRows outline;
  outline.Reset(600);
  outline.MakeNodes([](int) { return 0; });
  for (int row = 500; row >= 100; --row) {
    ASSERT_EQ(outline.ShownCount(), 600);
    ASSERT_TRUE(outline.SetCollapsed(row, true));
    ASSERT_EQ(outline.ShownCount(), 600);
    outline.Insert(row + 1, 1);  // a plain row
    ASSERT_FALSE(outline.IsShown(row + 1)) << row;
  }
}

}  // namespace
}  // namespace tavrix::viewkit
