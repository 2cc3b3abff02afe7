// Where the controls of the dialog stand.

#include "views/layout_dialog.h"

namespace desk::views {

namespace form = viewkit::form;

namespace {

// The arrangement, in twips. The frames hold three columns of labels and boxes.
constexpr int kThird = 2760;
constexpr int kBetween = 240;
constexpr int kFormWidth = 3 * kThird + 2 * kBetween + 4 * form::kMargin;
constexpr int kLabelWidth = 1170;

form::Rows ThirdOf(int frame_top, int third) {
  return form::Rows::InFrame(form::kMargin + third * (kThird + kBetween), frame_top, kLabelWidth,
                             kThird - kLabelWidth);
}

}  // namespace

void LayoutDialog::PutSetting(Setting& setting, const form::Rows& rows, int row) {
  if (!setting.label) return Put(setting.box->Control(), rows.Whole(row));
  Put(*setting.label, rows.Label(row));
  Put(setting.box->Control(), rows.Field(row));
}

void LayoutDialog::PlaceEverything() {
  constexpr int kListHeight = 3750;
  constexpr int kColumnRows = 4;
  constexpr int kGridRows = 2;
  const int top = PlaceList(kFormWidth, kListHeight);
  Put(frame_, {form::kMargin, top, kFormWidth - 2 * form::kMargin, form::FrameHeight(kColumnRows)});
  for (Setting& setting : settings_) {
    PutSetting(setting, ThirdOf(top, setting.property->third), setting.property->row);
  }
  const int grid_top = top + form::FrameHeight(kColumnRows) + form::kGap;
  grid_frame_.SetCaption("整个表格");
  Put(grid_frame_,
      {form::kMargin, grid_top, kFormWidth - 2 * form::kMargin, form::FrameHeight(kGridRows)});
  PlaceGrid(grid_top);
  PlaceButtons(kFormWidth, grid_top + form::FrameHeight(kGridRows) + form::kMargin);
}

void LayoutDialog::PlaceGrid(int top) {
  const form::Rows left = ThirdOf(top, 0);
  PutLabel("冻结(&L)", left.Label(0));
  Put(frozen_, left.Field(0));
  PutLabel("标题行高(&H)", ThirdOf(top, 1).Label(0));
  Put(header_height_, ThirdOf(top, 1).Field(0));
  PutLabel("数据行高(&B)", ThirdOf(top, 2).Label(0));
  Put(row_height_, ThirdOf(top, 2).Field(0));
  clear_totals_.SetCaption("没有要合计的列时，清除原有的小计和合计(&C)");
  Put(clear_totals_, left.At(1, 0, 2 * kThird + kBetween));
}

void LayoutDialog::PlaceWidths() {
  constexpr int kListHeight = 2400;
  constexpr int kWidthAll = 4800;
  constexpr int kLabel = 900;
  int top = PlaceList(kWidthAll, kListHeight);
  PutSetting(SettingOf(kShownProperty), {form::kMargin, top, 0, 1500}, 0);
  PutSetting(SettingOf(kWidthProperty),
             {kWidthAll / 2, top, kLabel, kWidthAll / 2 - kLabel - form::kMargin}, 0);
  top += form::kRowPitch;
  if (!plan_.for_others.empty()) {
    others_.SetCaption(plan_.for_others);
    Put(others_, {form::kMargin, top, kWidthAll - 2 * form::kMargin, form::kBoxHeight});
    top += form::kRowPitch;
  }
  PlaceButtons(kWidthAll, top + form::kMargin / 2);
}

void LayoutDialog::PlaceButtons(int width, int top) {
  if (plan_.has_defaults) {
    defaults_.SetCaption("恢复默认(&R)");
    Put(defaults_, {form::kMargin, top, form::kButtonWidth, form::kButtonHeight});
  }
  PutButtons("确定", width, top);
}

}  // namespace desk::views
