#include <windows.h>

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "support/matchers.h"
#include "viewkit/controls/search_box.h"
#include "viewkit/controls/splitter.h"
#include "viewkit/tree/tree_view.h"
#include "viewkit/win32/view_window.h"
#include "windows/desktop.h"

namespace tavrix::viewkit::win32 {
namespace {

class TreeWindowTest : public testing::Test {
 protected:
  TreeWindowTest() {
    root = &tree.Nodes().Add(nullptr, Relationship::kLast, "r", "会计科目");
    for (const char* category : {"资产", "负债", "权益"}) Add(root, category);
    tree.SetBounds({0, 0, 3000, 3000});
    search.SetBounds({3200, 0, 2000, 300});
    splitter.SetBounds({3000, 0, 120, 3000});
    controls.Add(tree);
    controls.Add(splitter);
    controls.Add(search);
    view.emplace(controls, ViewWindowOptions{.parent = frame.Get(), .place = frame.Client()});
    tree.NodeSelected.Add([this](TreeNode& node) { selected.push_back(node.Text()); });
  }
  TreeNode& Add(TreeNode* parent, const std::string& text) {
    return tree.Nodes().Add(parent, Relationship::kChild, "r" + text, text);
  }
  [[nodiscard]] HWND Window() const { return reinterpret_cast<HWND>(tree.WindowHandle()); }
  LRESULT Ask(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
    return SendMessageW(Window(), message, wparam, lparam);
  }
  [[nodiscard]] std::wstring CaretText() const {
    wchar_t text[64] = L"";
    TVITEMW item{};
    item.mask = TVIF_TEXT;
    item.hItem = reinterpret_cast<HTREEITEM>(Ask(TVM_GETNEXTITEM, TVGN_CARET));
    item.pszText = text;
    item.cchTextMax = 64;
    if (item.hItem != nullptr) Ask(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return text;
  }

  test::Frame frame;
  TreeView tree{"TV"};
  SearchBox search{"SearchBox1"};
  Splitter splitter{"Splitter1"};
  ControlList controls;
  std::vector<std::string> selected;
  TreeNode* root = nullptr;
  std::optional<ViewWindow> view;
};

TEST_F(TreeWindowTest, ShowsWhatTheModelHeldBeforeAndGetsLater) {
  EXPECT_EQ(Ask(TVM_GETCOUNT), 4);
  Add(root, "成本");
  EXPECT_EQ(Ask(TVM_GETCOUNT), 5);
  tree.Nodes().Remove(*tree.Nodes().Find("r资产"));
  EXPECT_EQ(Ask(TVM_GETCOUNT), 4);
  tree.Nodes().Move(*tree.Nodes().Find("r成本"), tree.Nodes().Find("r负债"));
  EXPECT_EQ(Ask(TVM_GETCOUNT), 4);
  tree.Nodes().Clear();
  EXPECT_EQ(Ask(TVM_GETCOUNT), 0);
}

TEST_F(TreeWindowTest, KeysSelectAndExpandInTheModel) {
  tree.SetFocus();
  tree.Select(root);
  test::Press(Window(), VK_RIGHT);
  EXPECT_TRUE(root->Expanded());
  test::Press(Window(), VK_DOWN);
  test::Press(Window(), VK_DOWN);
  EXPECT_THAT(selected, ElementsAre("会计科目", "资产", "负债"));
  EXPECT_EQ(CaretText(), L"负债");
  test::Press(Window(), VK_LEFT);
  test::Press(Window(), VK_LEFT);
  EXPECT_FALSE(root->Expanded());
}

TEST_F(TreeWindowTest, WhatTheModelSelectsIsSelectedOnce) {
  tree.Nodes().Find("r权益")->SetSelected(true);
  EXPECT_EQ(CaretText(), L"权益");
  EXPECT_THAT(selected, ElementsAre("权益"));
}

TEST_F(TreeWindowTest, RemovingTheSelectedNodeSelectsNothing) {
  root->SetExpanded(true);
  for (const bool through_messages : {false, true}) {
    TreeNode* node = tree.Nodes().FindId(root->FirstChild()->Id());
    tree.Select(node);
    selected.clear();
    if (through_messages) {
      const auto item = tree.Native().Send(tree_message::kGetNextItem, tree_message::kNextChild,
                                           Ask(TVM_GETNEXTITEM, TVGN_ROOT));
      EXPECT_NE(tree.Native().Send(tree_message::kDeleteItem, 0, item), 0);
    } else {
      tree.Nodes().Remove(*node);
    }
    EXPECT_EQ(tree.SelectedItem(), nullptr);
    EXPECT_EQ(CaretText(), L"");
    EXPECT_THAT(selected, ElementsAre());
  }
  EXPECT_EQ(tree.Nodes().Count(), 2);
}

TEST_F(TreeWindowTest, DeletingTheRootByMessageTakesAllBelowItAlong) {
  const LRESULT item = Ask(TVM_GETNEXTITEM, TVGN_ROOT);
  EXPECT_NE(tree.Native().Send(tree_message::kDeleteItem, 0, item), 0);
  EXPECT_EQ(tree.Nodes().Count(), 0);
  Add(nullptr, "新");
  EXPECT_EQ(Ask(TVM_GETCOUNT), 1);
}

TEST_F(TreeWindowTest, TheNodesOutliveTheWindow) {
  tree.Select(root);
  view.reset();
  EXPECT_EQ(tree.Nodes().Count(), 4);
  EXPECT_EQ(tree.SelectedItem(), root);
  EXPECT_THAT(selected, ElementsAre("会计科目"));
}

TEST_F(TreeWindowTest, AnExpandedNodeIsShownSoOnceItHasChildren) {
  TreeNode& late = Add(root, "成本");
  late.SetExpanded(true);
  root->SetExpanded(true);
  TreeNode& child = Add(&late, "生产成本");
  child.EnsureVisible();
  tree.ScrollTo(*root);
  EXPECT_EQ(tree.FirstSeen(), root);
  EXPECT_EQ(tree.LastSeen(), &child);
}

TEST_F(TreeWindowTest, TheSearchBoxSearchesAsOneTypes) {
  std::vector<std::string> searched;
  search.SearchRequested.Add([&] { searched.push_back(search.Text()); });
  test::Type(reinterpret_cast<HWND>(search.WindowHandle()), L"库存");
  search.SetText("现金");
  EXPECT_THAT(searched, ElementsAre("库", "库存", "现金"));
}

TEST_F(TreeWindowTest, TheSplitterFollowsThePointer) {
  splitter.Moved.Add([this] {
    host::Bounds bounds = splitter.GetBounds();
    bounds.left = splitter.Position();
    splitter.SetBounds(bounds);
  });
  const auto window = reinterpret_cast<HWND>(splitter.WindowHandle());
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 10));
  SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(23, 10));
  SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(8, 10));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(8, 10));
  SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(60, 10));
  EXPECT_EQ(splitter.Position(), 3000 + view->ToTwips(25));
}

}  // namespace
}  // namespace tavrix::viewkit::win32
