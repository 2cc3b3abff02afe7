// Where the controls of the dialog stand.

#include <algorithm>

#include "viewkit/controls/form_rows.h"
#include "views/import_dialog.h"

namespace desk::views {

using host::Bounds;
using viewkit::Alignment;
using namespace viewkit::form;

namespace {

// In twips. Boxes stand in three columns.
constexpr int kWidth = 9480;
constexpr int kInside = kWidth - 2 * kMargin;
constexpr int kThird = 2880;
constexpr int kBetween = (kInside - 3 * kThird) / 2;
constexpr int kLabel = 1170;
constexpr int kColumnsHeight = 1650;
constexpr int kLinesHeight = 2700;

struct GridColumn {
  const char* heading;
  int width;
};

/// A list of rows of texts.
void PrepareList(viewkit::FlexGrid& grid, std::initializer_list<GridColumn> columns) {
  grid.SetFixedRows(1);
  grid.SetFixedCols(0);
  grid.SetCols(static_cast<int>(columns.size()));
  int col = 0;
  for (const GridColumn& column : columns) {
    grid.SetTextMatrix(0, col, column.heading);
    grid.SetColWidth(col, column.width);
    grid.SetColDataType(col, viewkit::ColumnType::kString);
    grid.SetColAlignment(col, Alignment::kLeftCenter);
    grid.SetFixedAlignment(col, Alignment::kCenterCenter);
    ++col;
  }
  grid.SetSelectionMode(viewkit::SelectionMode::kByRow);
  grid.SetAllowSelection(false);
}

Rows ThirdOf(int top, int third) {
  return {kMargin + third * (kThird + kBetween), top, kLabel, kThird - kLabel};
}

}  // namespace

void ImportDialog::Put(viewkit::Control& control, const Bounds& bounds) {
  control.SetBounds(bounds);
  Add(control);
}

void ImportDialog::Place() {
  int top = kMargin;
  PlaceReading(top);
  top += 2 * kRowPitch;
  PlaceColumns(top);
  top += kColumnsHeight + kGap + kRowPitch;
  PlaceLines(top);
  top += kLinesHeight + kGap;
  constexpr int kButtons = 2 * viewkit::form::kButtonWidth + 2 * kGap;
  constexpr int kSkip = 2100;
  Put(summary_, {kMargin, top + 75, kInside - kButtons - kSkip, kBoxHeight - 30});
  skip_.SetCaption("跳过被拒绝的行(&K)");
  Put(skip_, {kMargin + kInside - kButtons - kSkip, top + 45, kSkip, kBoxHeight});
  ok_.SetCaption("导入(&I)");
  Put(ok_, viewkit::form::Button(kWidth, 1, top));
  cancel_.SetCaption("取消");
  Put(cancel_, viewkit::form::Button(kWidth, 0, top));
  SetSize(kWidth, top + kButtonHeight + kMargin);
}

void ImportDialog::PlaceReading(int top) {
  encoding_label_.SetCaption("文字编码(&E)");
  Put(encoding_label_, ThirdOf(top, 0).Label(0));
  Put(encoding_, ThirdOf(top, 0).Field(0));
  separator_label_.SetCaption("分隔符(&S)");
  Put(separator_label_, ThirdOf(top, 1).Label(0));
  Put(separator_, ThirdOf(top, 1).Field(0));
  rule_label_.SetCaption("编码规则(&R)");
  Put(rule_label_, ThirdOf(top, 2).Label(0));
  Put(rule_, ThirdOf(top, 2).Field(0));
  Put(header_, ThirdOf(top, 0).Whole(1));
  mnemonics_.SetCaption("没有助记码的，按拼音补上(&M)");
  Put(mnemonics_, ThirdOf(top, 1).At(1, 0, 2 * kThird));
}

void ImportDialog::PlaceColumns(int top) {
  PrepareList(columns_, {{"文件的列", 2850}, {"示例", 3300}, {"含义", 2550}});
  columns_.SetAccessibleName("文件的列");
  columns_.SetToolTipText("F2：改变所选列的含义");
  Put(columns_, {kMargin, top, kInside, kColumnsHeight});
  const int below = top + kColumnsHeight + kGap;
  meaning_label_.SetCaption("所选列的含义(&C)");
  constexpr int kMeaningLabel = 1500;
  const Rows rows = {kMargin, below, kMeaningLabel, 2400};
  Put(meaning_label_, rows.Label(0));
  Put(meaning_, rows.Field(0));
  problems_.SetCaption("只看被拒绝的行(&P)");
  Put(problems_, ThirdOf(below, 2).Whole(0));
}

void ImportDialog::PlaceLines(int top) {
  PrepareList(
      lines_,
      {{"行", 720}, {"结果", 720}, {"科目编码", 1350}, {"科目名称", 2400}, {"说明", kNoteWidth}});
  lines_.SetFixedAlignment(kNote, Alignment::kLeftCenter);
  lines_.SetAccessibleName("导入的结果");
  Put(lines_, {kMargin, top, kInside, kLinesHeight});
}

/// The list of lines gives way; what stands below it moves up.
void ImportDialog::FitInto(int height) {
  constexpr int kMin = 1200;
  const Bounds list = lines_.GetBounds();
  const int over = std::min(Height() - height, list.height - kMin);
  if (over <= 0) return;
  for (viewkit::Control* control :
       std::initializer_list<viewkit::Control*>{&summary_, &skip_, &ok_, &cancel_}) {
    Bounds bounds = control->GetBounds();
    bounds.top -= over;
    control->SetBounds(bounds);
  }
  lines_.SetBounds({list.left, list.top, list.width, list.height - over});
  SetSize(Width(), Height() - over);
}

}  // namespace desk::views
