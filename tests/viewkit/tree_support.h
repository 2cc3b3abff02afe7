#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "viewkit/tree/c_tree_view.h"

namespace tavrix::viewkit {

/// Answers the find prompt by script.
class PromptUser : public UserPort {
 public:
  std::deque<std::string> inputs;
  std::vector<std::string> prompts;  // with their titles

  Answer Ask(const std::string&, const std::string&, Icon, Buttons) override { return Answer::kOk; }
  std::string Input(const std::string& prompt, const std::string& title) override {
    prompts.push_back(prompt + "|" + title);
    if (inputs.empty()) return {};
    std::string text = inputs.front();
    inputs.pop_front();
    return text;
  }
  void ShowModal(DialogModel&) override {}
  void SetWaitCursor(bool) override {}
  std::string ApplicationTitle() override { return {}; }
};

/// Writes every message down, then passes it on.
class RecordingTree : public NativeTree {
 public:
  explicit RecordingTree(NativeTree& inner) : inner_(inner) {}

  std::intptr_t Send(unsigned message, std::uintptr_t wparam, std::intptr_t lparam) override {
    messages.push_back(Line(message, static_cast<std::intptr_t>(wparam), lparam));
    return inner_.Send(message, wparam, lparam);
  }
  std::intptr_t SendRecord(unsigned message, const TreeItemRecord& record) override {
    messages.push_back(Line(message, 0, record.item));
    records.push_back(record);
    return inner_.SendRecord(message, record);
  }

  static std::string Line(unsigned message, std::intptr_t wparam, std::intptr_t lparam) {
    return std::to_string(message) + " " + std::to_string(wparam) + " " + std::to_string(lparam);
  }
  std::vector<std::string> messages;
  std::vector<TreeItemRecord> records;

 private:
  NativeTree& inner_;
};

/// A window that has items of its own and tells the model nothing: roots 101, 102, ... that can be
/// deleted unless it refuses.
class SilentWindow : public NativeTree {
 public:
  std::vector<TreeItem> roots;
  bool refuses = false;

  std::intptr_t Send(unsigned message, std::uintptr_t, std::intptr_t) override {
    if (message == 0x110A) return roots.empty() ? 0 : roots.front();
    if (message != 0x1101 || refuses) return 0;
    roots.erase(roots.begin());
    return 1;
  }
  std::intptr_t SendRecord(unsigned, const TreeItemRecord&) override { return 0; }
};

/// A tree with a helper:
/// 资产 (库存现金, 银行存款 (Bank ICBC, bank ccb)), 负债 (应付账款)
class TreeFixture {
 public:
  TreeFixture() {
    helper.HookCtrl(tree);
    helper.Selected.Add([this](TreeNode& node) { selected.push_back(node.Text()); });
    assets = Add(nullptr, "资产");
    Add(assets, "库存现金");
    bank = Add(assets, "银行存款");
    icbc = Add(bank, "Bank ICBC");
    ccb = Add(bank, "bank ccb");
    debts = Add(nullptr, "负债");
    payable = Add(debts, "应付账款");
  }

  TreeNode* Add(TreeNode* parent, const std::string& text) {
    const auto relationship = parent == nullptr ? Relationship::kLast : Relationship::kChild;
    return helper.NodeAdd(
        {.vRelative = parent, .eRelationship = relationship, .sKey = "k" + text, .sText = text});
  }
  /// The texts in outline order, one blank for each level.
  [[nodiscard]] std::string Outline() const {
    std::string lines;
    for (const TreeNode* node = tree.Nodes().FirstRoot(); node != nullptr;
         node = NextInOutline(*node)) {
      for (const TreeNode* up = node->Parent(); up != nullptr; up = up->Parent()) lines += " ";
      lines += node->Text() + "\n";
    }
    return lines;
  }

  TreeView tree{"TV"};
  PromptUser user;
  cTreeView helper{user};
  std::vector<std::string> selected;
  TreeNode* assets = nullptr;
  TreeNode* bank = nullptr;
  TreeNode* icbc = nullptr;
  TreeNode* ccb = nullptr;
  TreeNode* debts = nullptr;
  TreeNode* payable = nullptr;
};

}  // namespace tavrix::viewkit
