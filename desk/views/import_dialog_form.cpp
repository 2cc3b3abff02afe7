// Where the controls of the dialog stand.

#include "views/import_dialog.h"

namespace desk::views {

using viewkit::Alignment;
namespace form = viewkit::form;

namespace {

// In twips. Boxes stand in three columns.
constexpr int kWidth = 9480;
constexpr int kInside = kWidth - 2 * form::kMargin;
constexpr int kThird = 2880;
constexpr int kBetween = (kInside - 3 * kThird) / 2;
constexpr int kLabel = 1170;
constexpr int kColumnsHeight = 1650;
constexpr int kLinesHeight = 2700;

form::Rows ThirdOf(int top, int third) {
  return {form::kMargin + third * (kThird + kBetween), top, kLabel, kThird - kLabel};
}

}  // namespace

void ImportDialog::Place() {
  int top = form::kMargin;
  PlaceReading(top);
  top += 2 * form::kRowPitch;
  PlaceColumns(top);
  top += kColumnsHeight + form::kGap + form::kRowPitch;
  PlaceLines(top);
  top += kLinesHeight + form::kGap;
  constexpr int kButtons = 2 * form::kButtonWidth + 2 * form::kGap;
  constexpr int kSkip = 2100;
  Put(summary_, {form::kMargin, top + 75, kInside - kButtons - kSkip, form::kBoxHeight - 30});
  skip_.SetCaption("跳过被拒绝的行(&K)");
  Put(skip_, {form::kMargin + kInside - kButtons - kSkip, top + 45, kSkip, form::kBoxHeight});
  PutButtons("导入(&I)", kWidth, top);
}

void ImportDialog::PlaceReading(int top) {
  PutLabel("文字编码(&E)", ThirdOf(top, 0).Label(0));
  Put(encoding_, ThirdOf(top, 0).Field(0));
  separator_label_ = &PutLabel("分隔符(&S)", ThirdOf(top, 1).Label(0));
  Put(separator_, ThirdOf(top, 1).Field(0));
  PutLabel("编码规则(&R)", ThirdOf(top, 2).Label(0));
  Put(rule_, ThirdOf(top, 2).Field(0));
  Put(header_, ThirdOf(top, 0).Whole(1));
  mnemonics_.SetCaption("没有助记码的，按拼音补上(&M)");
  Put(mnemonics_, ThirdOf(top, 1).At(1, 0, 2 * kThird));
}

void ImportDialog::PlaceColumns(int top) {
  constexpr TextColumn kColumns[] = {{"文件的列", 2850}, {"示例", 3300}, {"含义", 2550}};
  MakeTextList(columns_, kColumns, "文件的列");
  columns_.SetToolTipText("F2：改变所选列的含义");
  Put(columns_, {form::kMargin, top, kInside, kColumnsHeight});
  const int below = top + kColumnsHeight + form::kGap;
  constexpr int kMeaningLabel = 1500;
  const form::Rows rows = {form::kMargin, below, kMeaningLabel, 2400};
  PutLabel("所选列的含义(&C)", rows.Label(0));
  Put(meaning_, rows.Field(0));
  problems_.SetCaption("只看被拒绝的行(&P)");
  Put(problems_, ThirdOf(below, 2).Whole(0));
}

void ImportDialog::PlaceLines(int top) {
  constexpr TextColumn kColumns[] = {
      {"行", 720}, {"结果", 720}, {"科目编码", 1350}, {"科目名称", 2400}, {"说明", kNoteWidth}};
  MakeTextList(lines_, kColumns, "导入的结果");
  lines_.SetFixedAlignment(kNote, Alignment::kLeftCenter);
  PutList(lines_, {form::kMargin, top, kInside, kLinesHeight}, 1200);
}

}  // namespace desk::views
