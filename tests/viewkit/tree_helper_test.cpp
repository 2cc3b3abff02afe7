#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"
#include "viewkit/tree_support.h"

namespace tavrix::viewkit {
namespace {

TEST(TreeHelper, FindsWithoutCaseAndWalksTheMatchesOnce) {
  TreeFixture f;
  TreeNode* found = nullptr;
  EXPECT_TRUE(f.helper.NodeFind(&found, "BANK"));
  EXPECT_EQ(found, f.icbc);
  EXPECT_TRUE(f.icbc->Selected());
  EXPECT_TRUE(f.icbc->IsShown());
  EXPECT_TRUE(f.helper.NodeFindNext(&found));  // text and place of the last find
  EXPECT_EQ(found, f.ccb);
  EXPECT_FALSE(f.helper.NodeFindNext(&found));
  EXPECT_EQ(found, nullptr);
  EXPECT_TRUE(f.helper.NodeFindNext(&found, "bank", f.assets->Index(), false));
  EXPECT_EQ(found, f.icbc);
  EXPECT_TRUE(f.ccb->Selected());  // not asked to select
  EXPECT_THAT(f.selected, ElementsAre("Bank ICBC", "bank ccb"));
  EXPECT_FALSE(f.helper.NodeFindNext(&found, "bank", 99));
}

TEST(TreeHelper, NodesAddedLaterAreFoundBelowTheirParentsAndRootsByAge) {
  TreeFixture f;
  f.tree.Nodes().Add(nullptr, Relationship::kFirst, "", "bank of banks");
  f.Add(f.assets->FirstChild(), "bank in the till");  // last by index, first in the outline
  TreeNode* found = nullptr;
  int matches = 0;
  for (bool more = f.helper.NodeFind(&found, "bank"); more; more = f.helper.NodeFindNext(&found)) {
    ++matches;
    EXPECT_EQ(matches == 1, found->Text() == "bank in the till");
    EXPECT_EQ(matches == 4, found->Text() == "bank of banks");
  }
  EXPECT_EQ(matches, 4);
}

TEST(TreeHelper, AsksForAnEmptyText) {
  TreeFixture f;
  TreeNode* found = f.bank;
  EXPECT_FALSE(f.helper.NodeFind(&found));
  EXPECT_EQ(found, nullptr);
  f.user.inputs = {"应付"};
  EXPECT_TRUE(f.helper.NodeFind(&found));
  EXPECT_EQ(found, f.payable);
  EXPECT_THAT(f.user.prompts,
              ElementsAre("输入要查找的节点名称:|查找记录", "输入要查找的节点名称:|查找记录"));
}

TEST(TreeHelper, FindsByKeyAndByTag) {
  TreeFixture f;
  TreeNode* found = nullptr;
  EXPECT_TRUE(f.helper.NodeFind(&found, "x", "k银行存款"));
  EXPECT_TRUE(f.bank->Selected());
  EXPECT_FALSE(f.helper.NodeFind(&found, "bank", "none"));
  f.icbc->SetTag("7");
  f.payable->SetTag("7");
  EXPECT_TRUE(f.helper.NodeFindTag(&found, "7"));
  EXPECT_EQ(found, f.icbc);
  EXPECT_TRUE(f.helper.NodeFindTag(&found, "7", "k负债"));
  EXPECT_EQ(found, f.payable);
  EXPECT_FALSE(f.helper.NodeFindTag(&found, "7", "k库存现金"));
  EXPECT_FALSE(f.helper.NodeFindTag(&found, "8"));
  EXPECT_FALSE(f.payable->Selected());
}

TEST(TreeHelper, MovesUnderAnotherParentOnly) {
  TreeFixture f;
  EXPECT_FALSE(f.helper.NodeMove(f.icbc, f.bank));
  EXPECT_FALSE(f.helper.NodeMove(f.bank, f.bank));
  EXPECT_FALSE(f.helper.NodeMove(nullptr, f.bank));
  EXPECT_TRUE(f.helper.NodeMove(f.debts, f.icbc, true));
  EXPECT_TRUE(f.debts->Expanded());
  EXPECT_TRUE(f.icbc->Selected());
  EXPECT_THAT(f.selected, ElementsAre("Bank ICBC"));
  EXPECT_EQ(f.Outline(), "资产\n 库存现金\n 银行存款\n  bank ccb\n负债\n 应付账款\n Bank ICBC\n");
}

TEST(TreeHelper, CopiesWithChildrenEvenBelowTheSourceItself) {
  TreeFixture f;
  std::vector<std::string> copied;
  f.helper.CopyNode.Add([&](TreeNode& source, TreeNode& copy) {
    EXPECT_NE(&source, &copy);
    EXPECT_TRUE(copy.Key().empty());
    copied.push_back(copy.Parent()->Text() + "/" + copy.Text());
  });
  f.bank->SetTag("5");
  EXPECT_TRUE(f.helper.NodeCopy(f.ccb, f.bank));
  EXPECT_THAT(copied, ElementsAre("bank ccb/银行存款", "银行存款/Bank ICBC", "银行存款/bank ccb"));
  EXPECT_EQ(f.ccb->FirstChild()->Tag(), "5");
  copied.clear();
  EXPECT_TRUE(f.helper.NodeCopy(f.debts, f.assets, false));
  EXPECT_THAT(copied, ElementsAre("负债/资产"));
  EXPECT_EQ(f.debts->LastChild()->Children(), 0);
}

TEST(TreeHelper, CopyingStopsWhenCancelled) {
  TreeFixture f;
  int copied = 0;
  f.helper.CopyNode.Add([&](TreeNode&, TreeNode&) { f.helper.CancelCopy(++copied == 2); });
  EXPECT_FALSE(f.helper.NodeCopy(f.debts, f.bank));
  EXPECT_EQ(copied, 2);
  EXPECT_EQ(f.Outline(),
            "资产\n 库存现金\n 银行存款\n  Bank ICBC\n  bank ccb\n"
            "负债\n 应付账款\n 银行存款\n  Bank ICBC\n");
  f.helper.CancelCopy(true);  // means the copy that runs, not the next one
  copied = 5;
  EXPECT_TRUE(f.helper.NodeCopy(f.debts, f.bank));
}

TEST(TreeHelper, DeletesAndSelectsTheNeighbour) {
  TreeFixture f;
  EXPECT_TRUE(f.helper.NodeDelete(f.ccb, true));
  EXPECT_TRUE(f.helper.NodeDelete(f.icbc, true));
  EXPECT_TRUE(f.helper.NodeDelete(f.debts));
  EXPECT_THAT(f.selected, ElementsAre("Bank ICBC", "银行存款"));
  EXPECT_FALSE(f.helper.NodeDelete(nullptr));
}

TEST(TreeHelper, WalksForwardAndTheSameWayBack) {
  TreeFixture f;
  EXPECT_FALSE(f.helper.MoveNodePrevious());
  while (f.helper.MoveNodeNext()) {
  }
  EXPECT_THAT(f.selected, ElementsAre("资产", "库存现金", "银行存款", "Bank ICBC", "bank ccb",
                                      "负债", "应付账款"));
  std::vector<std::string> there(f.selected.rbegin() + 1, f.selected.rend());
  f.selected.clear();
  while (f.helper.MoveNodePrevious()) {
  }
  EXPECT_EQ(f.selected, there);
}

TEST(TreeHelper, ReselectsAndRaisesOnceMore) {
  TreeFixture f;
  EXPECT_TRUE(f.helper.ReSelectItem());  // none selected: the first root
  EXPECT_TRUE(f.helper.ReSelectItem());
  EXPECT_TRUE(f.helper.ReSelectItem(f.payable));
  EXPECT_THAT(f.selected, ElementsAre("资产", "资产", "应付账款"));
  f.helper.ClearTreeView();
  EXPECT_FALSE(f.helper.ReSelectItem());
}

TEST(TreeHelper, TellsRelations) {
  TreeFixture f;
  int depth = -1;
  EXPECT_TRUE(f.helper.IsChildNode(f.icbc, f.assets, &depth));
  EXPECT_EQ(depth, 2);
  EXPECT_FALSE(f.helper.IsChildNode(f.assets, f.icbc, &depth));
  EXPECT_EQ(depth, 0);
  EXPECT_FALSE(f.helper.IsChildNode(f.icbc, f.icbc));
  EXPECT_TRUE(f.helper.IsParentNode(f.icbc, f.bank));
  EXPECT_EQ(f.helper.ParentNodeText(f.icbc), "银行存款");
  EXPECT_EQ(f.helper.ParentNodeText(f.assets), "");
  EXPECT_TRUE(f.helper.IsRootNode(f.debts));
}

TEST(TreeHelper, ExpandsScrollsAndKnowsWhatIsSeen) {
  TreeFixture f;
  f.tree.SetBounds({0, 0, 3000, 3 * 240});
  f.helper.ExpandAll();
  EXPECT_EQ(f.helper.NodeFirstViewable(), f.assets);
  EXPECT_EQ(f.helper.NodeLastViewable(), f.bank);
  f.helper.ScrollView(cTreeView::Scroll::kLineDown);
  EXPECT_EQ(f.helper.NodeLastViewable(), f.icbc);
  f.helper.ScrollView(cTreeView::Scroll::kPageDown);
  EXPECT_EQ(f.helper.NodeFirstViewable(), f.ccb);
  f.helper.ScrollView(cTreeView::Scroll::kTop);
  f.helper.ScrollView(static_cast<cTreeView::Scroll>(4));
  EXPECT_EQ(f.helper.NodeFirstViewable(), f.assets);
  f.helper.CollapseChildNodes(f.bank);
  EXPECT_TRUE(f.assets->Expanded());
  EXPECT_FALSE(f.bank->Expanded());
  f.helper.CollapseAll();
  EXPECT_FALSE(f.assets->Expanded());
}

TEST(TreeHelper, DragsOntoWhatAllowsIt) {
  TreeFixture f;
  std::vector<std::string> drops;
  f.helper.Dropped.Add([&](TreeNode& node, TreeNode& target) {
    EXPECT_FALSE(f.tree.Dragging());
    drops.push_back(node.Text() + ">" + target.Text());
  });
  f.tree.BeginDrag.Raise(*f.bank);
  EXPECT_FALSE(f.tree.Dragging());  // not enabled
  f.helper.DragEnabled = true;
  f.tree.BeginDrag.Raise(*f.bank);
  EXPECT_TRUE(f.tree.Dragging());
  for (TreeNode* target : {f.bank, f.icbc, f.assets}) {  // itself, below it, where it stands
    f.tree.DragOver.Raise(target);
    EXPECT_EQ(f.tree.DropTarget(), nullptr);
  }
  f.tree.DragOver.Raise(f.debts);
  EXPECT_EQ(f.tree.DropTarget(), f.debts);
  f.tree.Drop.Raise(f.debts);
  EXPECT_EQ(f.tree.DropTarget(), nullptr);
  EXPECT_THAT(drops, ElementsAre("银行存款>负债"));

  f.helper.Dragging.Add([&](TreeNode&, TreeNode& target, bool& allow) {
    if (&target == f.debts) allow = false;
  });
  f.tree.BeginDrag.Raise(*f.bank);
  f.tree.Drop.Raise(f.debts);
  f.tree.BeginDrag.Raise(*f.bank);
  f.tree.Drop.Raise(nullptr);
  f.tree.BeginDrag.Raise(*f.bank);
  f.tree.DragCancel.Raise();
  f.tree.Drop.Raise(f.payable);
  EXPECT_EQ(drops.size(), 1U);
  f.helper.StartDrag.Add([](TreeNode&, bool& allow) { allow = false; });
  f.tree.BeginDrag.Raise(*f.bank);
  EXPECT_FALSE(f.tree.Dragging());
}

TEST(TreeHelper, ADragEndsWithItsNode) {
  TreeFixture f;
  f.helper.DragEnabled = true;
  f.tree.BeginDrag.Raise(*f.bank);
  f.tree.Nodes().Remove(*f.assets);
  f.tree.DragOver.Raise(f.debts);
  EXPECT_FALSE(f.tree.Dragging());
}

TEST(TreeHelper, ShowsTheDragPictureOfItsImageList) {
  TreeFixture f;
  ImageList images;
  images.Add("DRAGICON");
  f.helper.HookCtrl(f.tree, &images);
  f.helper.DragEnabled = true;
  f.tree.BeginDrag.Raise(*f.bank);
  EXPECT_EQ(f.tree.DragPicture(), "DRAGICON");
  f.helper.UnHookCtrl();
  EXPECT_FALSE(f.tree.Dragging());
}

TEST(TreeHelper, ContextMenuFollowsItsMode) {
  TreeFixture f;
  std::vector<std::string> menus;
  f.helper.ContextMenu.Add(
      [&](TreeNode* node) { menus.push_back(node == nullptr ? "-" : node->Text()); });
  for (const long mode : {0L, 1L, 2L, 7L}) {
    f.helper.ContextMenuMode = mode;
    f.tree.ContextRequested.Raise(f.debts);
    f.tree.ContextRequested.Raise(nullptr);
  }
  EXPECT_THAT(menus, ElementsAre("负债", "负债", "-"));
  EXPECT_TRUE(f.debts->Selected());
  EXPECT_THAT(f.selected, ElementsAre("负债"));
}

TEST(TreeHelper, DoesNothingWithoutATree) {
  TreeFixture f;
  f.helper.UnHookCtrl();
  f.debts->SetSelected(true);
  EXPECT_THAT(f.selected, IsEmpty());
  EXPECT_EQ(f.helper.NodeAdd({.sText = "x"}), nullptr);
  EXPECT_FALSE(f.helper.NodeFind(nullptr, "资产"));
  EXPECT_FALSE(f.helper.MoveNodeNext());
  EXPECT_FALSE(f.helper.NodeDelete(f.debts));
  EXPECT_EQ(f.helper.NodeFirstViewable(), nullptr);
  f.helper.ClearTreeView();
  EXPECT_EQ(f.tree.Nodes().Count(), 7);
  EXPECT_TRUE(f.user.prompts.empty());
}

}  // namespace
}  // namespace tavrix::viewkit
