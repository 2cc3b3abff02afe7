#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "editing/fm_bkm_add.h"
#include "support/recorder.h"
#include "support/scripted_user.h"
#include "support/test_book.h"

namespace tavrix::editing {

using Texts = std::vector<std::string>;

struct ReportSeen {
  std::string text;
  std::int32_t level = 0;
  friend bool operator==(const ReportSeen&, const ReportSeen&) = default;
  friend std::ostream& operator<<(std::ostream& out, const ReportSeen& report) {
    return out << report.text << " (" << report.level << ")";
  }
};
using Reports = std::vector<ReportSeen>;

/// How an opening of the dialog is asked for.
struct Opening {
  std::string category = {};
  bool is_new = true;
  bool below = false;
  std::string reference = {};
  std::int32_t id = 0;
};
inline Opening Below(std::string code, std::string category = "资产") {
  return {std::move(category), true, true, std::move(code), 0};
}
inline Opening Beside(std::string code, std::string category = "资产") {
  return {std::move(category), true, false, std::move(code), 0};
}
inline Opening Edit(std::int32_t id) {
  return {"", false, false, "", id};
}

/// The dialog over a book of its own; the user does what a script says.
class Editor {
 public:
  explicit Editor(desk::book::Book chart = test::MakeBook())
      : book(std::move(chart)), recorder(book.System()) {
    dialog->ErrMessage.Add(
        [this](const std::string& text, std::int32_t level, const std::string& title) {
          EXPECT_EQ(title, user.title);
          reports.push_back({text, level});
        });
    dialog->Message.Add([this](const std::string& text) { messages.push_back(text); });
    dialog->EvHasLoad.Add([this](bool is_new, std::int32_t id) { saved.emplace_back(is_new, id); });
  }

  /// Opens the dialog, lets the user act, and lets the user answer No to any question at the end.
  void Open(const Opening& how, const std::function<void()>& act) {
    user.in_dialog = [&](viewkit::DialogModel& shown) {
      shown.Opened();
      recorder.Clear();
      messages.clear();
      act();
    };
    dialog->py_SubProgram(recorder.System(), how.category, how.is_new, how.below, how.reference,
                          how.id);
    EXPECT_EQ(user.wait_depth, 0);
  }

  void SetCode(const std::string& text) { dialog->Txt(kCodeBox).SetText(text); }
  void SetName(const std::string& text) { dialog->Txt(kNameBox).SetText(text); }
  [[nodiscard]] std::string Code() { return dialog->Txt(kCodeBox).Text(); }
  [[nodiscard]] bool CodeHasFocus() { return dialog->FocusControl() == &dialog->Txt(kCodeBox); }
  void Save() { dialog->Cmd(kSaveButton).Click(); }

  desk::book::Book book;
  test::Recorder recorder;
  test::ScriptedUser user;
  std::shared_ptr<FmBkmAdd> dialog = std::make_shared<FmBkmAdd>(user);
  Reports reports;
  Texts messages;
  std::vector<std::pair<bool, std::int32_t>> saved;
};

/// What the user sees of the form: texts, lists and boxes in their order, "+" behind those enabled.
inline Texts Look(Editor& editor) {
  FmBkmAdd& dialog = *editor.dialog;
  const auto mark = [](const viewkit::Control& control) { return control.Enabled() ? "+" : "-"; };
  Texts look;
  for (int i = 0; i < kTexts; ++i) look.push_back(dialog.Txt(i).Text());
  for (int i = 0; i < kLists; ++i) look.push_back(dialog.Combo(i).Text() + mark(dialog.Combo(i)));
  for (int i = 0; i < kChecks; ++i) {
    look.push_back(std::to_string(dialog.Chk(i).Value()) + mark(dialog.Chk(i)));
  }
  return look;
}

/// Runs once for each SQL dialect.
class EditorTest : public testing::TestWithParam<const char*> {
 protected:
  [[nodiscard]] bool Jet() const { return std::string(GetParam()) == "jet"; }
  Editor editor_{test::MakeBookOn(GetParam())};
};

inline std::string DialectName(const testing::TestParamInfo<const char*>& info) {
  return info.param;
}

}  // namespace tavrix::editing
