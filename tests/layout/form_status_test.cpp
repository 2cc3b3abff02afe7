#include "viewkit/layout/form_status.h"

#include <memory>

#include "layout/layout_support.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/date_picker.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/list_view.h"
#include "viewkit/controls/option_button.h"
#include "viewkit/controls/search_box.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/layout/status_controls.h"
#include "viewkit/tree/tree_view.h"

namespace tavrix::viewkit {
namespace {

using namespace std::chrono_literals;

/// A view with a control of each kind.
struct AllKinds {
  AllKinds() {
    for (Control* control : std::initializer_list<Control*>{
             &search, &text, &first_box, &second_box, &line, &combo, &yes, &no, &date, &own_date,
             &grid, &tree, &list, &plain, &label}) {
      controls.Add(*control);
    }
    combo.AddItem("人民币");
    combo.AddItem("美元");
    tree.Nodes().Add(nullptr, Relationship::kLast, "r", "会计科目");
    tree.Nodes().Add(nullptr, Relationship::kLast, "a", "ABC 资产");
    for (int i = 1; i <= 20; ++i) list.AddItem("item");
    list.SetBounds({0, 0, 1000, 1000});
    plain.SetCols(2);
    grid.SetCols(1);
  }
  /// Everything another value than at first.
  void Use() {
    search.SetFilterMode(true);
    text.SetValue("12");
    text.SetText("工行");
    first_box.SetValue(CheckBox::kChecked);
    second_box.SetValue(CheckBox::kGrayed);
    line.SetText(" 行\n2 ");
    combo.SetText("美元");
    yes.SetValue(true);
    date.SetValue(2024y / 2 / 29);
    own_date.SetValue(2024y / 3 / 1);
    grid.SetColWidth(0, 555);
    grid.SetFrozenCols(1);
    tree.Nodes().Item("a").SetSelected(true);
    list.SetSelectedItem(20);
    plain.SetColWidth(1, 321);
  }

  ControlList controls;
  OptionGroup group;
  SearchBox search{"SearchBox1"};
  vxTxt_S text{"Txt"};
  CheckBox first_box{"Chk", 0};
  CheckBox second_box{"Chk", 1};
  TextBox line{"Txt1"};
  ComboBox combo{ComboBox::Style::kList, "Combo"};
  OptionButton yes{group, "opt", 0};
  OptionButton no{group, "opt", 1};
  DTPicker date{"D"};
  gcDTP own_date{"D2"};
  FlexGrid grid{"VsList"};
  TreeView tree{"TV"};
  ListView list{"LV"};
  vxGrid plain{"G"};
  Label label{"L"};
};

class FormStatusTest : public LayoutTest {
 protected:
  void SaveAll(AllKinds& view, StatusWalk walk, bool width_only = false) {
    SaveFormStatus(view.controls, path_, width_only, walk, *book_.System());
  }
  void GetAll(AllKinds& view, StatusWalk walk, bool width_only = false) {
    GetFormStatus(view.controls, path_, width_only, walk, *book_.System());
  }
};

constexpr const char* kBoth =
    "VXTXT_S_Txt_Value=12\r\nVXTXT_S_Txt_Text=工行\r\nCHECKBOX_Chk_0=1\r\nCHECKBOX_Chk_1=2\r\n"
    "TEXTBOX_Txt1=\" 行\\n2 \"\r\nCOMBOBOX_Combo=美元\r\nOPTIONBUTTON_opt_0=True\r\n"
    "OPTIONBUTTON_opt_1=False\r\nTREEVIEW_TV=ABC 资产\r\n";

TEST_F(FormStatusTest, EachKindUnderItsKey) {
  AllKinds view;
  view.Use();
  SaveAll(view, StatusWalk::kPicker);
  std::string text = OnDisk();
  EXPECT_EQ(text.substr(0, text.find("\r\n\r\n") + 2),
            std::string("[Form]\r\nSEARCHBOX_SearchBox1=FilterMode=1\r\n") + kBoth +
                "LISTVIEW_LV=20\r\nVXGRID_G_Col0=960\r\nVXGRID_G_Col1=321\r\n");
  EXPECT_EQ(Stored("VsColWidth_VsList", "VsCol0"), "555");

  std::filesystem::remove(desk::book::PathOf(path_));
  SaveAll(view, StatusWalk::kForm);
  text = OnDisk();
  EXPECT_EQ(text.substr(0, text.find("\r\n\r\n") + 2),
            std::string("[Form]\r\n") + kBoth + "VXGRID_G_Col0=960\r\nVXGRID_G_Col1=321\r\n");

  std::filesystem::remove(desk::book::PathOf(path_));
  AllKinds unused;
  SaveAll(unused, StatusWalk::kPicker);
  EXPECT_EQ(Stored("Form", "TREEVIEW_TV"), "(none)") << "nothing is selected";
  EXPECT_EQ(Stored("Form", "LISTVIEW_LV"), "(none)");
}

TEST_F(FormStatusTest, EachKindComesBack) {
  AllKinds used;
  used.Use();
  SaveAll(used, StatusWalk::kPicker);
  Store("Form", "TREEVIEW_TV", "abc 资产");
  AllKinds view;
  GetAll(view, StatusWalk::kPicker);
  EXPECT_TRUE(view.search.FilterMode());
  EXPECT_EQ(view.text.Value(), "12");
  EXPECT_EQ(view.text.Text(), "工行");
  EXPECT_EQ(view.first_box.Value(), CheckBox::kChecked);
  EXPECT_EQ(view.second_box.Value(), CheckBox::kGrayed);
  EXPECT_EQ(view.line.Text(), " 行\n2 ");
  EXPECT_EQ(view.combo.Text(), "美元");
  EXPECT_TRUE(view.yes.Value() && !view.no.Value());
  EXPECT_EQ(view.date.Value(), DTPicker("x").Value()) << "left alone";
  EXPECT_EQ(view.own_date.Value(), gcDTP("x").Value());
  EXPECT_EQ(view.grid.ColWidth(0), 555);
  EXPECT_EQ(view.grid.FrozenCols(), 1);
  ASSERT_NE(view.tree.SelectedItem(), nullptr);
  EXPECT_EQ(view.tree.SelectedItem()->Key(), "a");
  EXPECT_EQ(view.list.SelectedItem(), 20);
  EXPECT_TRUE(view.list.Selected(20));
  EXPECT_GT(view.list.TopItem(), 1) << "scrolled into view";
  EXPECT_EQ(view.plain.ColWidth(1), 321);
}

TEST_F(FormStatusTest, AFormLeavesTreeSearchBoxAndListAlone) {
  AllKinds used;
  used.Use();
  SaveAll(used, StatusWalk::kPicker);
  AllKinds view;
  GetAll(view, StatusWalk::kForm, true);
  EXPECT_FALSE(view.search.FilterMode());
  EXPECT_EQ(view.tree.SelectedItem(), nullptr);
  EXPECT_EQ(view.list.SelectedItem(), 0);
  EXPECT_EQ(view.first_box.Value(), CheckBox::kChecked);
  EXPECT_EQ(view.grid.ColWidth(0), 555);
  EXPECT_EQ(view.grid.FrozenCols(), 0) << "of a grid widths alone";
}

TEST_F(FormStatusTest, WhatFitsNothingChangesNothing) {
  Write(
      "[Form]\nLISTVIEW_LV=21\nTREEVIEW_TV=nowhere\nCOMBOBOX_Combo=欧元\nCHECKBOX_Chk_0=7\n"
      "VXGRID_G_Col0=1e12\nVXGRID_G_Col1=-1\nSEARCHBOX_SearchBox1=?\n");
  for (const char* index : {"21", "0", "-1", "2.5", "1e300", "x"}) {
    Store("Form", "LISTVIEW_LV", index);
    AllKinds view;
    view.Use();
    view.list.SetSelectedItem(3);
    GetAll(view, StatusWalk::kPicker);
    EXPECT_EQ(view.list.SelectedItem(), 3) << index;
    EXPECT_EQ(view.tree.SelectedItem()->Key(), "a");
    EXPECT_EQ(view.combo.Text(), "美元");
    EXPECT_EQ(view.first_box.Value(), CheckBox::kChecked);
    EXPECT_EQ(view.text.Text(), "工行") << "a missing key";
    EXPECT_TRUE(view.search.FilterMode());
    EXPECT_EQ(view.plain.ColWidth(0), vxGrid::kDefaultColWidth);
  }
}

/// A control that has the name of a kind and nothing of it.
class Impostor : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string TypeName() const override { return "textbox"; }
};

TEST_F(FormStatusTest, AFailureStopsNothingButItself) {
  Impostor impostor("Txt1");
  TextBox line("Txt2");
  TextBox third("Txt3");
  ControlList controls;
  for (Control* control : std::initializer_list<Control*>{&impostor, &line, &third}) {
    controls.Add(*control);
  }
  third.SetText("x");
  SaveFormStatus(controls, path_, false, StatusWalk::kForm, *book_.System());
  EXPECT_EQ(Stored("Form", "TEXTBOX_Txt3"), "x");
  Store("Form", "TEXTBOX_Txt2", "y");
  Store("Form", "TEXTBOX_Txt3", "z");
  test::Recorder host(book_.System());
  host.FailNext("SettingsFile.ReadValue", test::Fault::kThrow);
  GetFormStatus(controls, path_, false, StatusWalk::kForm, *host.System());
  EXPECT_TRUE(host.Fired());
  EXPECT_EQ(line.Text(), "");
  EXPECT_EQ(third.Text(), "z");
  host.FailNext("CreateHelper", test::Fault::kNull);
  GetFormStatus(controls, path_, false, StatusWalk::kForm, *host.System());
}

/// Grids open the settings file too: it is replaced when the whole walk is over, not by each of
/// them.
TEST_F(FormStatusTest, TheFileIsReplacedOnceAtTheEnd) {
  AllKinds view;
  view.Use();
  test::Recorder host(book_.System());
  bool stood = false;
  host.OnCall([&](const test::HostCall&) { stood = stood || Exists(); });
  SaveFormStatus(view.controls, path_, false, StatusWalk::kPicker, *host.System());
  EXPECT_GT(host.Count("SettingsFile"), 1);
  EXPECT_FALSE(stood) << "somebody still uses it";
  EXPECT_EQ(Stored("VsColWidth_VsList", "VsCol0"), "555");
  EXPECT_NE(Stored("Form", "TEXTBOX_Txt1"), "(none)");
}

}  // namespace
}  // namespace tavrix::viewkit
