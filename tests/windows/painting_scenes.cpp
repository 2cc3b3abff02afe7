#include "windows/painting_scenes.h"

#include <stdexcept>

#include "book/ledger/posting.h"
#include "maintenance/view_test.h"
#include "picker/picker_support.h"
#include "views/trial_balance_view.h"

namespace tavrix::test {
namespace {

using viewkit::TreeNode;

/// Some 200 accounts in four levels of the rule 4222.
std::vector<desk::book::Account> Chart() {
  constexpr const char* kCategories[] = {"资产", "负债", "权益", "成本", "损益"};
  std::vector<desk::book::Account> accounts;
  for (int head = 0; head < 15; ++head) {
    const std::string code = std::to_string(1001 + 400 * (head % 5) + head);
    const char* category = kCategories[head % 5];
    accounts.push_back({.code = code, .name = "银行存款", .category = category});
    for (int child = 1; child <= head % 4 * 2; ++child) {
      const std::string below = code + "0" + std::to_string(child);
      accounts.push_back({.code = below, .name = "人民币账户", .category = category});
      for (int leaf = 1; leaf <= child % 3 * 3; ++leaf) {
        accounts.push_back({.code = below + "0" + std::to_string(leaf),
                            .name = "工商银行某某支行的一个名称很长的账户",
                            .category = category,
                            .closed = leaf == 3});
      }
    }
  }
  return accounts;
}

/// A dialog that opens is closed again.
void CloseDialogs(ScriptedUser& user) {
  user.in_dialog = [](viewkit::DialogModel& dialog) { dialog.Unload(); };
}

class MaintenanceScene : public Scene {
 public:
  MaintenanceScene() {
    CloseDialogs(test_.user);
    test_.Start();
    test_.Grid().Outline(-1);
  }
  const viewkit::ControlList& Controls() override { return test_.view.Controls(); }
  void Resize(int width, int height) override { test_.view.Resize(width, height); }
  std::string ActAlone(Dice& dice) override {
    switch (dice.Below(4)) {
      case 0:
        test_.Tabs().SetCurrTab(dice.OneIn(2) ? 0 : dice.Below(7));
        return "tab";
      case 1:
        test_.wheel->turn(dice.Below(60));
        return "wheel of the host";
      case 2:
        if (dice.OneIn(4)) (void)test_.view.Refresh();
        return "refresh";
      default:
        test_.view.FileEdit();
        return "edit";
    }
  }

 private:
  ViewTest test_{MakeBook(Chart())};
};

class PickerScene : public Scene {
 public:
  PickerScene() : test_(DefaultEngine(), Chart()) {
    CloseDialogs(test_.user);
    (void)test_.picker.Refresh();
  }
  const viewkit::ControlList& Controls() override { return test_.picker.Controls(); }
  void Resize(int width, int height) override { test_.picker.Resize(width, height); }
  std::string ActAlone(Dice& dice) override {
    constexpr const char* kWanted[] = {"", "100", "账户", "无"};
    switch (dice.Below(6)) {
      case 0:
        test_.Search().SetText(dice.OneOf(kWanted));
        return "search";
      case 1:
        test_.Box(dice.OneIn(2) ? "Check" : "Chk").Click();
        return "box";
      case 2:
        test_.Control<viewkit::Splitter>("Splitter1").SetPosition(1000 + dice.Below(4000));
        return "splitter";
      case 3:
        test_.Cmd(2).Click();
        return "reload";
      case 4:
        test_.Press(test_.Search(), dice.OneIn(3) ? viewkit::Key::kUp : viewkit::Key::kDown);
        return "key in the search box";
      default:
        (void)test_.Search().SetFocus();
        return "focus away";
    }
  }

 private:
  picker::PickerFixture test_;
};

class BalanceScene : public Scene {
 public:
  BalanceScene() {
    CloseDialogs(user_);
    book_.Environment().user_folder = folder_.File("");
    for (const desk::book::Account& account : Chart()) {
      if (account.code.size() == 8 && !account.closed) Post(account.code);
    }
    view_ =
        std::make_unique<desk::views::TrialBalanceView>(book_.GetSession(), book_.System(), user_);
  }
  const viewkit::ControlList& Controls() override { return view_->Controls(); }
  void Resize(int width, int height) override { view_->Resize(width, height); }
  std::string ActAlone(Dice& dice) override {
    for (std::size_t at = 0; at < Controls().Count(); ++at) {
      auto* box = dynamic_cast<viewkit::CheckBox*>(&Controls().At(at));
      if (box != nullptr && dice.OneIn(2)) box->Click();
    }
    if (dice.OneIn(4)) view_->Reload();
    return "first levels";
  }

 private:
  void Post(const std::string& code) {
    const std::vector<desk::book::Entry> entries = {{.code = code, .debit = 123'450},
                                                    {.code = "1001", .credit = 123'450}};
    desk::book::Post(book_.GetSession(), {.year = 2024, .month = 1, .day = 1, .entries = entries});
  }

  TempFolder folder_;
  desk::book::Book book_ = MakeBook(Chart());
  ScriptedUser user_;
  std::unique_ptr<desk::views::TrialBalanceView> view_;
};

class TreeScene : public Scene {
 public:
  TreeScene() {
    TreeNode& root = tree_.Nodes().Add(nullptr, viewkit::Relationship::kLast, "r", "会计科目");
    for (const desk::book::Account& account : Chart()) Add(root, account);
    root.SetExpanded(true);
    controls_.Add(tree_);
  }
  const viewkit::ControlList& Controls() override { return controls_; }
  void Resize(int width, int height) override { tree_.SetBounds({0, 0, width, height}); }
  std::string ActAlone(Dice& dice) override {
    const int count = tree_.Nodes().Count();
    if (dice.OneIn(2) || count < 60) {
      TreeNode& parent = tree_.Nodes().Item(1 + dice.Below(count));
      tree_.Nodes().Add(&parent, viewkit::Relationship::kChild, "", "新的科目");
      return "node added";
    }
    TreeNode& node = tree_.Nodes().Item(2 + dice.Below(count - 1));
    if (node.FirstChild() == nullptr) tree_.Nodes().Remove(node);
    return "node removed";
  }

 private:
  void Add(TreeNode& root, const desk::book::Account& account) {
    TreeNode* parent = &root;
    for (const std::size_t length : {4U, 6U}) {
      if (account.code.size() <= length) break;
      parent = tree_.Nodes().Find("k" + account.code.substr(0, length));
    }
    tree_.Nodes().Add(parent, viewkit::Relationship::kChild, "k" + account.code,
                      account.code + "  " + account.name);
  }

  viewkit::TreeView tree_{"TV"};
  viewkit::ControlList controls_;
};

}  // namespace

std::unique_ptr<Scene> MakeScene(const std::string& name) {
  if (name == "maintenance") return std::make_unique<MaintenanceScene>();
  if (name == "picker") return std::make_unique<PickerScene>();
  if (name == "balance") return std::make_unique<BalanceScene>();
  if (name == "tree") return std::make_unique<TreeScene>();
  throw std::invalid_argument(name);
}

}  // namespace tavrix::test
