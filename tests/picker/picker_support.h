#pragma once

#include <memory>
#include <string>
#include <vector>

#include "book/host/parameters.h"
#include "picker/sel_kjkm.h"
#include "support/controls.h"
#include "support/recorder.h"
#include "support/scripted_user.h"
#include "support/test_book.h"
#include "support/test_wheel.h"

namespace tavrix::picker {

/// A picker over a fresh book, initialised but not refreshed. Names are the contract's.
class PickerFixture {
 public:
  explicit PickerFixture(const std::string& engine = test::DefaultEngine(),
                         std::vector<desk::book::Account> accounts = test::FewAccounts())
      : book(test::MakeBookOn(engine, std::move(accounts))) {
    book.Environment().make_mouse_event = [this] { return wheel; };
    picker.DoSelect.Add([this] { ++picks; });
    picker.DoCancel.Add([this] { ++cancels; });
    Init();
    picker.Resize(9000, 6000);
  }

  void Init() {
    (void)picker.Init(recorder.System(), 77, "");
    picker.SetPickerParameters(parameters);
  }
  /// The statements that `action` sends.
  template <class Action>
  std::vector<std::string> StatementsOf(Action&& action) {
    recorder.Clear();
    action();
    return recorder.Statements();
  }

  template <class Kind>
  [[nodiscard]] Kind& Control(const std::string& name, int index = 0) {
    return test::Find<Kind>(picker, name, index);
  }
  viewkit::FlexGrid& Vs() { return Control<viewkit::FlexGrid>("Vs"); }
  viewkit::TreeView& TV() { return Control<viewkit::TreeView>("TV"); }
  viewkit::SearchBox& Search() { return Control<viewkit::SearchBox>("SearchBox1"); }
  viewkit::CheckBox& Box(const char* name) { return Control<viewkit::CheckBox>(name); }
  viewkit::CommandButton& Cmd(int index) { return Control<viewkit::CommandButton>("Cmd", index); }
  std::string Count() { return Control<viewkit::Label>("LblCount").Caption(); }
  std::string Message() { return Control<viewkit::Label>("lblMessage").Caption(); }

  /// A column of the list's data rows; hidden rows in brackets.
  std::vector<std::string> Column(int col = 1) {
    std::vector<std::string> texts;
    for (int row = Vs().FixedRows(); row < Vs().Rows(); ++row) {
      const std::string text(Vs().TextMatrix(row, col));
      texts.push_back(Vs().RowHidden(row) ? "(" + text + ")" : text);
    }
    return texts;
  }
  std::vector<std::string> Picked() {
    std::vector<std::string> codes;
    for (std::int32_t at = 0; picker.Selected() && at < picker.Selected()->Count(); ++at) {
      codes.push_back(picker.Selected()->At(static_cast<std::size_t>(at))->ccode);
    }
    return codes;
  }
  int RowOf(const std::string& code) { return Vs().FindRow(code, Vs().FixedRows(), 1); }
  void SelectRows(const std::vector<std::string>& codes) {
    Vs().SetRow(0);
    for (const std::string& code : codes) Vs().SetSelected(RowOf(code), true);
  }
  void SelectNode(const std::string& key) { TV().Nodes().Item(key).SetSelected(true); }

  /// A key as a control with the focus passes it on: down, its own action, up.
  void Press(viewkit::Control& control, viewkit::Key key, viewkit::Modifiers modifiers = {}) {
    control.KeyDown.Raise(key, modifiers);
    if (&control == &Vs()) (void)Vs().HandleKey(key, modifiers);
    if (&control == &TV()) (void)TV().HandleKey(key, modifiers);
    auto* button = dynamic_cast<viewkit::CommandButton*>(&control);
    if (button != nullptr) (void)button->HandleKey(key, modifiers);
    control.KeyUp.Raise(key, modifiers);
  }

  desk::book::Book book;
  test::Recorder recorder{book.System()};
  test::ScriptedUser user;
  std::shared_ptr<desk::book::ParameterList> parameters =
      std::make_shared<desk::book::ParameterList>();
  std::shared_ptr<test::TestWheel> wheel = std::make_shared<test::TestWheel>();
  selKjkm picker{user};
  int picks = 0;
  int cancels = 0;
};

}  // namespace tavrix::picker
