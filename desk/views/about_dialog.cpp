#include "views/about_dialog.h"

#include <algorithm>
#include <utility>

#include "host/row_set.h"

namespace desk::views {

AboutDialog::AboutDialog(const std::string& heading, const std::vector<Fact>& facts, Calls calls)
    : DialogModel("DeskAbout"), text_(heading + "\r\n"), calls_(std::move(calls)) {
  SetCaption("关于");
  tavrix::host::RowSet rows(2);
  int count = 0;
  for (const Fact& fact : facts) {
    if (fact.text.empty()) continue;
    rows.AppendText(fact.label);
    rows.AppendText(fact.text);
    text_ += fact.label + "：" + fact.text + "\r\n";
    ++count;
  }
  constexpr int kWidth = 8400;
  constexpr int kEdge = 180;
  constexpr int kRow = 330;
  constexpr int kLine = 375;
  constexpr int kLabelWidth = 1350;
  heading_.SetCaption(heading);
  grid_.SetFixedRows(0);
  grid_.SetFixedCols(0);
  grid_.SetRowHeightMin(kRow);
  grid_.SetCols(2);
  grid_.SetSelectionMode(viewkit::SelectionMode::kByRow);
  grid_.SetAccessibleName("关于");
  grid_.SetRows(0);
  grid_.LoadRows(std::move(rows));
  grid_.SetColWidth(0, kLabelWidth);
  // Beyond the list's own width where a text needs it: it is scrolled then.
  grid_.AutoSize(1);
  grid_.SetColWidth(1, std::max(grid_.ColWidth(1), kWidth - 2 * kEdge - kLabelWidth - 90));
  copy_.SetCaption("复制(&C)");
  log_.SetCaption("日志文件夹(&L)");
  ok_.SetCaption("确定");
  const int list = count * kRow + 360;
  const int buttons = kEdge + kLine + list + kEdge;
  heading_.SetBounds({kEdge, kEdge, kWidth - 2 * kEdge, kLine});
  grid_.SetBounds({kEdge, kEdge + kLine, kWidth - 2 * kEdge, list});
  copy_.SetBounds({kEdge, buttons, 1200, kLine});
  log_.SetBounds({kEdge + 1290, buttons, 1650, kLine});
  ok_.SetBounds({kWidth - kEdge - 1200, buttons, 1200, kLine});
  SetSize(kWidth, buttons + kLine + kEdge);
  for (viewkit::Control* control :
       std::initializer_list<viewkit::Control*>{&heading_, &grid_, &copy_, &log_, &ok_}) {
    Add(*control);
  }
  SetButtons(ok_, ok_);
  copy_.Clicked.Add([this] { calls_.copy(text_); });
  log_.Clicked.Add([this] { calls_.open_log(); });
  ok_.Clicked.Add([this] { Close(); });
}

}  // namespace desk::views
