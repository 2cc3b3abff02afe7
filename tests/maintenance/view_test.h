#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "book/host/parameters.h"
#include "editing/fm_bkm_add.h"
#include "maintenance/kjkm.h"
#include "support/recorder.h"
#include "support/scripted_user.h"
#include "support/test_book.h"
#include "support/test_wheel.h"

namespace tavrix::test {

/// A maintenance view on a book, with everything that it raises.
class ViewTest {
 public:
  explicit ViewTest(desk::book::Book on = MakeBook()) : book(std::move(on)) {
    book.Environment().make_mouse_event = [this] { return wheel; };
    view.Message.Add([this](const std::string& text) { events.push_back("Message:" + text); });
    view.ErrMessage.Add(
        [this](const std::string& text, std::int32_t level, const std::string& title) {
          reports.push_back(text + "|" + std::to_string(level) + "|" + title);
          events.push_back("ErrMessage");
        });
  }

  void Start() {
    ASSERT_TRUE(view.Init(host.System(), 0, 0));
    ASSERT_TRUE(view.Refresh());
    ASSERT_EQ(reports, std::vector<std::string>());
    host.Clear();
    events.clear();
  }

  [[nodiscard]] viewkit::TabStrip& Tabs() {
    return dynamic_cast<viewkit::TabStrip&>(view.Controls().At(0));
  }
  [[nodiscard]] viewkit::FlexGrid& Grid(int page = 0) {
    return dynamic_cast<viewkit::FlexGrid&>(view.Controls().At(static_cast<std::size_t>(page) + 1));
  }
  /// The codes of a page's data rows, top down, with a dot for each outline level.
  [[nodiscard]] std::vector<std::string> Codes(int page = 0) {
    std::vector<std::string> codes;
    for (int row = Grid(page).FixedRows(); row < Grid(page).Rows(); ++row) {
      codes.push_back(std::string(static_cast<std::size_t>(Grid(page).RowOutlineLevel(row)), '.') +
                      std::string(Grid(page).TextMatrix(row, 0)));
    }
    return codes;
  }
  void Select(const std::string& code, int page = 0) {
    const int row = Grid(page).FindRow(code, 1, 0);
    ASSERT_GT(row, 0) << code;
    Grid(page).SetRow(row);
  }
  void Sql(const std::string& statement) { test::Run(book, statement); }
  /// Lets the account dialog, when it opens next, report the account as saved and close.
  void SaveInDialog(bool is_new, std::int32_t id) {
    user.in_dialog = [is_new, id](viewkit::DialogModel& dialog) {
      dynamic_cast<editing::FmBkmAdd&>(dialog).EvHasLoad.Raise(is_new, id);
      dialog.Unload();
    };
  }

  desk::book::Book book;
  std::shared_ptr<TestWheel> wheel = std::make_shared<TestWheel>();
  Recorder host{book.System()};
  ScriptedUser user;
  maintenance::Kjkm view{user};
  std::vector<std::string> events;
  std::vector<std::string> reports;
};

using Texts = std::vector<std::string>;

}  // namespace tavrix::test
