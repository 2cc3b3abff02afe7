#include "viewkit/tree/tree_view.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

#include "viewkit/tree_support.h"

namespace tavrix::viewkit {
namespace {

/// Every link agrees with its counterpart, and collection and outline hold the same nodes.
void CheckLinks(const TreeView& tree) {
  int seen = 0;
  std::map<const TreeNode*, int> children;
  for (const TreeNode* node = tree.Nodes().FirstRoot(); node != nullptr;
       node = NextInOutline(*node)) {
    ++seen;
    ++children[node->Parent()];
    EXPECT_EQ(&tree.Nodes().Item(node->Index()), node);
    if (node->Next() != nullptr) {
      EXPECT_EQ(node->Next()->Previous(), node);
    } else {
      EXPECT_EQ(node->Parent() ? node->Parent()->LastChild() : tree.Nodes().LastRoot(), node);
    }
    if (const TreeNode* next = NextInOutline(*node)) {
      EXPECT_EQ(PreviousInOutline(*next), node);
    }
  }
  EXPECT_EQ(seen, tree.Nodes().Count());
  for (const auto& [parent, count] : children) {
    if (parent != nullptr) {
      EXPECT_EQ(parent->Children(), count);
    }
  }
}

TEST(TreeView, PlacesNodesByRelationship) {
  TreeView tree("TV");
  TreeNodes& nodes = tree.Nodes();
  TreeNode& b = nodes.Add(nullptr, Relationship::kNext, "b", "b");
  nodes.Add(&b, Relationship::kChild, "", "b1");
  nodes.Add(&b, Relationship::kNext, "", "d");
  nodes.Add(&b, Relationship::kNext, "", "c");
  nodes.Add(&b, Relationship::kPrevious, "", "a");
  nodes.Add(&b, Relationship::kLast, "", "z");
  nodes.Add(&b, Relationship::kFirst, "", "0");
  nodes.Add(nullptr, Relationship::kFirst, "", "-");
  std::string order;
  for (const TreeNode* node = nodes.FirstRoot(); node != nullptr; node = NextInOutline(*node)) {
    order += node->Text();
  }
  EXPECT_EQ(order, "-0abb1cdz");
  CheckLinks(tree);
  EXPECT_THROW(nodes.Add(nullptr, Relationship::kNext, "b", "again"), std::invalid_argument);
  EXPECT_EQ(nodes.Count(), 8);
}

TEST(TreeView, IndicesCloseUpAndRemovedNodesStayUsable) {
  TreeFixture f;
  const auto icbc = f.icbc->shared_from_this();
  f.icbc->SetSelected(true);
  f.tree.Nodes().Remove(*f.bank);
  CheckLinks(f.tree);
  EXPECT_EQ(f.Outline(), "资产\n 库存现金\n负债\n 应付账款\n");
  EXPECT_EQ(f.debts->Index(), 3);
  EXPECT_EQ(f.tree.SelectedItem(), nullptr);
  EXPECT_FALSE(icbc->InTree());
  EXPECT_EQ(icbc->Text(), "Bank ICBC");
  icbc->SetSelected(true);  // out of its tree: nothing happens
  EXPECT_EQ(f.tree.SelectedItem(), nullptr);
  EXPECT_EQ(f.tree.Nodes().Find("kBank ICBC"), nullptr);
  EXPECT_THROW((void)f.tree.Nodes().Item(5), std::out_of_range);
  f.Add(f.debts, "Bank ICBC");  // the key is free again
  f.tree.Nodes().Clear();
  EXPECT_EQ(f.tree.Nodes().Count(), 0);
  CheckLinks(f.tree);
}

TEST(TreeView, MovesSubtreesButNotBelowThemselves) {
  TreeFixture f;
  EXPECT_THROW(f.tree.Nodes().Move(*f.assets, f.icbc), std::invalid_argument);
  f.tree.Nodes().Move(*f.bank, f.debts);
  EXPECT_EQ(f.Outline(), "资产\n 库存现金\n负债\n 应付账款\n 银行存款\n  Bank ICBC\n  bank ccb\n");
  f.tree.Nodes().Move(*f.bank, nullptr);
  EXPECT_EQ(f.tree.Nodes().LastRoot(), f.bank);
  CheckLinks(f.tree);
}

TEST(TreeView, TellsOfEachSelectionOnce) {
  TreeFixture f;
  int told = 0;
  f.tree.NodeSelected.Add([&](TreeNode&) { ++told; });
  f.icbc->SetSelected(true);
  f.icbc->SetSelected(true);
  EXPECT_EQ(told, 1);
  f.bank->SetExpanded(true);
  f.assets->SetExpanded(true);
  f.assets->SetExpanded(false);  // the selection cannot stay where it is not seen
  EXPECT_EQ(f.tree.SelectedItem(), f.assets);
  EXPECT_EQ(told, 2);
  f.tree.Select(nullptr);
  EXPECT_EQ(told, 2);
}

TEST(TreeView, AListenerMayEmptyTheTree) {
  TreeFixture f;
  f.tree.NodeSelected.Add([&](TreeNode&) { f.helper.ClearTreeView(); });
  int later = 0;
  f.tree.NodeSelected.Add([&](TreeNode& node) { later += node.Text() == "Bank ICBC"; });
  EXPECT_TRUE(f.helper.ReSelectItem(f.icbc));
  EXPECT_EQ(later, 1);
  EXPECT_EQ(f.tree.Nodes().Count(), 0);
}

TEST(TreeView, ScrollsWithoutAWindow) {
  TreeView tree("TV");
  tree.SetBounds({0, 0, 3000, 5 * 240});  // room for five
  TreeNode& root = tree.Nodes().Add(nullptr, Relationship::kNext, "", "root");
  for (int i = 0; i < 20; ++i) tree.Nodes().Add(&root, Relationship::kChild, "", std::to_string(i));
  EXPECT_EQ(tree.LastSeen(), &root);  // collapsed
  TreeNode* tenth = &tree.Nodes().Item(11);
  tenth->EnsureVisible();
  EXPECT_TRUE(root.Expanded());
  EXPECT_EQ(tree.FirstSeen()->Text(), "9");
  EXPECT_EQ(tree.LastSeen()->Text(), "13");
  tree.Nodes().Item(13).EnsureVisible();  // seen already: nothing moves
  EXPECT_EQ(tree.FirstSeen()->Text(), "9");
  tree.ScrollTo(tree.Nodes().Item(21));  // the last page stays full
  EXPECT_EQ(tree.FirstSeen()->Text(), "15");
  tree.Nodes().Remove(*tree.FirstSeen());
  EXPECT_EQ(tree.FirstSeen(), &root) << "from the top where the first that was seen is gone";
  tree.ScrollTo(tree.Nodes().Item(5));
  root.SetExpanded(false);
  EXPECT_EQ(tree.FirstSeen(), &root);
}

TEST(TreeView, KeysMoveTheSelectionAsInTheNativeControl) {
  TreeFixture f;
  f.tree.SetBounds({0, 0, 3000, 3 * 240});
  const auto press = [&](Key key) {
    f.tree.HandleKey(key);
    return f.tree.SelectedItem()->Text();
  };
  f.assets->SetSelected(true);
  EXPECT_EQ(press(Key::kRight), "资产");  // expands first
  EXPECT_EQ(press(Key::kRight), "库存现金");
  EXPECT_EQ(press(Key::kDown), "银行存款");
  EXPECT_EQ(press(Key::kDown), "负债");  // 银行存款 is collapsed
  EXPECT_EQ(press(Key::kDown), "负债");
  EXPECT_EQ(press(Key::kPageUp), "库存现金");
  EXPECT_EQ(press(Key::kLeft), "资产");
  EXPECT_EQ(press(Key::kEnd), "负债");
  EXPECT_EQ(press(Key::kHome), "资产");
  EXPECT_EQ(press(Key::kUp), "资产");
  EXPECT_EQ(press(Key::kPageDown), "银行存款");
  EXPECT_EQ(press(Key::kLeft), "资产");
  EXPECT_EQ(press(Key::kLeft), "资产");  // collapses
  EXPECT_FALSE(f.assets->Expanded());
  EXPECT_EQ(press(Key::kLeft), "资产");
  EXPECT_EQ(press(Key::kDown), "负债");
  EXPECT_FALSE(f.tree.HandleKey(Key::kEnter));
  EXPECT_FALSE(f.tree.HandleKey(Key::kUp, {.control = true}) ||
               f.tree.HandleKey(Key::kUp, {.alt = true}));
  f.tree.Select(nullptr);
  EXPECT_EQ(press(Key::kDown), "负债") << "from the first where none is selected";
}

}  // namespace
}  // namespace tavrix::viewkit
