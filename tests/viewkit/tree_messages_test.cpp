#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"
#include "viewkit/tree/m_tree_view.h"
#include "viewkit/tree_support.h"

namespace tavrix::viewkit {
namespace {

TEST(TreeMessages, ClearingAsksAndDeletesRootByRoot) {
  TreeFixture f;
  const auto assets = std::to_string(f.assets->Id());
  const auto debts = std::to_string(f.debts->Id());
  RecordingTree native(f.tree.Native());
  f.tree.SetNative(&native);
  f.helper.ClearTreeView();
  // 11 WM_SETREDRAW, 4362 TVM_GETNEXTITEM with TVGN_ROOT, 4353 TVM_DELETEITEM.
  EXPECT_THAT(native.messages, ElementsAre("11 -1 0", "4362 0 0", "4353 0 " + assets, "4362 0 0",
                                           "4353 0 " + debts, "4362 0 0", "11 0 0"));
  EXPECT_EQ(f.tree.Nodes().Count(), 0);
  EXPECT_FALSE(f.tree.Painting());
  f.helper.Redraw(false);
  EXPECT_TRUE(f.tree.Painting());
}

TEST(TreeMessages, ClearingAnEmptyTreeDeletesNothing) {
  TreeFixture f;
  f.helper.ClearTreeView();
  RecordingTree native(f.tree.Native());
  f.tree.SetNative(&native);
  f.helper.ClearTreeView();
  EXPECT_THAT(native.messages, ElementsAre("11 -1 0", "4362 0 0", "11 0 0"));
}

TEST(TreeMessages, TheModelIsEmptyAfterAWindowThatTellsItNothing) {
  TreeFixture f;
  SilentWindow window;
  window.roots = {101, 102, 103};
  f.tree.SetNative(&window);
  f.helper.ClearTreeView();
  EXPECT_TRUE(window.roots.empty());
  EXPECT_EQ(f.tree.Nodes().Count(), 0);
}

TEST(TreeMessages, AWindowThatRefusesDoesNotHangTheProgram) {
  TreeFixture f;
  SilentWindow window;
  window.roots = {101};
  window.refuses = true;
  f.tree.SetNative(&window);
  f.helper.ClearTreeView();
  EXPECT_EQ(window.roots.size(), 1U);
}

TEST(TreeMessages, AHandleIsFoundByPosition) {
  TreeFixture f;
  RecordingTree native(f.tree.Native());
  f.tree.SetNative(&native);
  EXPECT_EQ(mTreeView::NodeHandle(f.tree, *f.ccb), f.ccb->Id());
  const auto id = [](const TreeNode* node) { return std::to_string(node->Id()); };
  EXPECT_THAT(native.messages,
              ElementsAre("4362 0 0",                              // the first root
                          "4362 4 " + id(f.assets),                // its first child
                          "4362 1 " + id(f.assets->FirstChild()),  // the next sibling
                          "4362 4 " + id(f.bank), "4362 1 " + id(f.icbc)));
  SilentWindow window;  // knows of no children, hands out the same root again and again
  f.tree.SetNative(&window);
  EXPECT_EQ(mTreeView::NodeHandle(f.tree, *f.payable), 0);
}

TEST(TreeMessages, TheCutLookIsSetThroughTheWindow) {
  TreeFixture f;
  RecordingTree native(f.tree.Native());
  f.tree.SetNative(&native);
  EXPECT_FALSE(f.helper.CutIconState(true));  // nothing selected
  EXPECT_TRUE(native.messages.empty());
  f.bank->SetSelected(true);
  EXPECT_TRUE(f.helper.CutIconState(true));
  EXPECT_TRUE(f.bank->GetLook().cut);
  EXPECT_TRUE(f.helper.CutIconState(false));
  EXPECT_FALSE(f.bank->GetLook().cut);
  ASSERT_EQ(native.records.size(), 2U);
  EXPECT_EQ(native.messages.back(), "4365 0 " + std::to_string(f.bank->Id()));
  EXPECT_EQ(native.records[0].mask, 24U);
  EXPECT_EQ(native.records[0].state_mask, 4U);
  EXPECT_EQ(native.records[0].state, 4U);
  EXPECT_EQ(native.records[1].state, 0U);
  // Bits outside the mask are not sent; a window that refuses gives false.
  EXPECT_TRUE(mTreeView::SetNodeState(f.tree, *f.bank, 4, 0xFF));
  EXPECT_EQ(native.records[2].state, 4U);
  SilentWindow window;
  window.roots = {101};
  f.tree.SetNative(&window);
  f.assets->SetSelected(true);
  EXPECT_FALSE(f.helper.CutIconState(true));
}

}  // namespace
}  // namespace tavrix::viewkit
