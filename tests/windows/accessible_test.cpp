// What assistive programs meet: asked through the system's own calls.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "accessible/accessible_object.h"
#include "host/non_copyable.h"
#include "maintenance/view_test.h"
#include "picker/picker_support.h"
#include "support/matchers.h"
#include "viewkit/win32/windows_user.h"
#include "windows/accessible_tree.h"
#include "windows/desktop.h"
#include "windows/shown.h"

namespace tavrix::test {
namespace {

using testing::Each;
using testing::SizeIs;

HWND Window(const viewkit::Control& control) {
  return reinterpret_cast<HWND>(control.WindowHandle());
}

/// COM on this thread, and windows that speak.
class Apartment : private host::NonCopyable {
 public:
  Apartment() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    accessible::OfferAccessibility();
  }
  ~Apartment() { CoUninitialize(); }
};

/// The events of a window's client area, in the words of a listener that asks what they are about.
class Listener : private host::NonCopyable {
 public:
  explicit Listener(HWND window) : window_(window) {
    listener = this;
    hook_ = SetWinEventHook(EVENT_OBJECT_FOCUS, EVENT_OBJECT_STATECHANGE, nullptr, Heard,
                            GetCurrentProcessId(), GetCurrentThreadId(), WINEVENT_OUTOFCONTEXT);
  }
  ~Listener() {
    UnhookWinEvent(hook_);
    listener = nullptr;
  }
  std::vector<std::string> While(const std::function<void()>& action) {
    Pump();
    heard_.clear();
    action();
    Pump();
    return heard_;
  }

 private:
  static void CALLBACK Heard(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child,
                             DWORD, DWORD) {
    if (listener == nullptr || window != listener->window_ || object != OBJID_CLIENT) return;
    ComPtr<IAccessible> about;
    VARIANT id{};
    AccessibleObjectFromEvent(window, static_cast<DWORD>(object), static_cast<DWORD>(child),
                              about.Put(), &id);
    const std::string name = about ? ElementOf(about, id).Name() : "nothing";
    const auto word = [event] {
      switch (event) {
        case EVENT_OBJECT_FOCUS:
          return "focus";
        case EVENT_OBJECT_SELECTION:
          return "selection";
        case EVENT_OBJECT_SELECTIONWITHIN:
          return "selections";
        case EVENT_OBJECT_STATECHANGE:
          return "state";
        default:
          return "event";
      }
    };
    listener->heard_.push_back(std::string(word()) + " " + name);
  }
  static inline Listener* listener = nullptr;
  HWND window_;
  HWINEVENTHOOK hook_;
  std::vector<std::string> heard_;
};

/// The view on accounts, as a whole.
class AccessibleView : public testing::Test {
 protected:
  AccessibleView() {
    test.Start();
    test.Grid().Outline(-1);
    shown.emplace(test.view);
  }
  [[nodiscard]] Element Grid() { return ClientOf(Window(test.Grid())); }
  [[nodiscard]] Element Row(const std::string& code) {
    for (const Element& row : Grid().Children()) {
      if (row.Name().starts_with(code + " ")) return row;
    }
    return {};
  }

  Apartment apartment;
  ViewTest test;
  std::optional<Shown<maintenance::Kjkm>> shown;
};

/// Every element is where its neighbours, its parent and its place on the screen say that it is.
void ExpectConsistent(const Element& parent) {
  const std::vector<Element> children = parent.Children();
  Element next = parent.Go(NAVDIR_FIRSTCHILD);
  for (const Element& child : children) {
    ASSERT_TRUE(next.object) << child.Spoken();
    EXPECT_EQ(next.Spoken(), child.Spoken());
    if (child.child == CHILDID_SELF) {
      ComPtr<IDispatch> above;
      ASSERT_EQ(child.object->get_accParent(above.Put()), S_OK);
      EXPECT_EQ(Element{above.As<IAccessible>()}.Spoken(), parent.Spoken());
    }
    const RECT place = child.Place();
    if (IsRectEmpty(&place) == FALSE) {
      VARIANT hit{};
      ASSERT_EQ(parent.object->accHitTest((place.left + place.right) / 2,
                                          (place.top + place.bottom) / 2, &hit),
                S_OK);
      EXPECT_EQ(ElementOf(parent.object, hit).Spoken(), child.Spoken());
      VariantClear(&hit);
    }
    ExpectConsistent(child);
    next = next.Go(NAVDIR_NEXT);
  }
  EXPECT_FALSE(next.object) << next.Spoken();
}

TEST_F(AccessibleView, ItsTreeHoldsTabsHeadersRowsLevelsAndCells) {
  test.Select("1001");
  ASSERT_TRUE(test.Grid().SetFocus());
  const std::string tree = TreeOf(ClientOf(shown->Handle()));
  std::printf("%s", tree.c_str());
  EXPECT_THAT(tree, HasSubstr("page tab list \"科目类别\"\n"
                              "    page tab \"全部\" (selected)\n"
                              "    page tab \"资产\"\n"));
  EXPECT_THAT(tree, HasSubstr("outline \"全部科目\" (focused)\n"
                              "    row \"科目编码 科目名称 外币币种 辅助核算\"\n"
                              "      column header \"科目编码\"\n"));
  EXPECT_THAT(tree, HasSubstr("outline item \"1001 库存现金\" = 0 (selected, focused)\n"
                              "      cell \"科目编码\" = 1001\n"
                              "      cell \"科目名称\" = 库存现金\n"));
  EXPECT_THAT(tree, HasSubstr("outline item \"1002 银行存款\" = 0 (expanded)\n"));
  EXPECT_THAT(tree, HasSubstr("outline item \"50010101 直接材料\" = 2\n"));
  ExpectConsistent(Grid());
  ExpectConsistent(ClientOf(Window(test.Tabs())));
}

TEST_F(AccessibleView, TheDefaultActionCollapsesExpandsAndEdits) {
  EXPECT_EQ(Row("1002").Action(), "折叠");
  EXPECT_EQ(Row("1002").DoDefaultAction(), S_OK);
  EXPECT_TRUE(test.Grid().IsCollapsed(2));
  EXPECT_EQ(Row("1002").State() & (STATE_SYSTEM_COLLAPSED | STATE_SYSTEM_EXPANDED),
            STATE_SYSTEM_COLLAPSED);
  EXPECT_FALSE(Row("100201").object) << "what is not shown is not told of";
  EXPECT_EQ(Row("1002").Action(), "展开");
  EXPECT_EQ(Row("1002").DoDefaultAction(), S_OK);
  EXPECT_FALSE(test.Grid().IsCollapsed(2));

  test.user.in_dialog = [](viewkit::DialogModel& dialog) { dialog.Unload(); };
  const Element leaf = Row("100202");
  EXPECT_EQ(leaf.Action(), "双击");
  EXPECT_EQ(leaf.DoDefaultAction(), S_OK);
  EXPECT_EQ(test.user.dialogs, 0) << "the caller has its answer first";
  Pump();
  EXPECT_EQ(test.user.dialogs, 1);
  EXPECT_EQ(test.Grid().TextMatrix(test.Grid().Row(), 0), "100202");

  const Element tab = ClientOf(Window(test.Tabs())).Children().at(2);
  EXPECT_EQ(tab.DoDefaultAction(), S_OK);
  EXPECT_EQ(test.Tabs().CurrTab(), 2);
}

TEST_F(AccessibleView, ChildrenAreNumberedAsScriptsDoIt) {
  const Element tabs = ClientOf(Window(test.Tabs()));
  VARIANT number{};
  number.vt = VT_I2;
  number.iVal = 2;
  com::Bstr name;
  EXPECT_EQ(tabs.object->get_accName(number, name.Put()), S_OK);
  EXPECT_EQ(com::TextOf(name.Get()), "资产");
  VARIANT left_out{};
  EXPECT_EQ(tabs.object->get_accName(left_out, name.Put()), S_OK);
  EXPECT_EQ(com::TextOf(name.Get()), "科目类别");
  left_out.vt = VT_ERROR;
  left_out.scode = DISP_E_PARAMNOTFOUND;
  EXPECT_EQ(tabs.object->get_accName(left_out, name.Put()), S_OK);
  EXPECT_EQ(tabs.Children().at(2).Go(NAVDIR_LEFT).Name(), "资产");
}

TEST_F(AccessibleView, SelectingMovesFocusAndRow) {
  EXPECT_EQ(Row("2202").Select(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION), S_OK);
  EXPECT_EQ(GetFocus(), Window(test.Grid()));
  EXPECT_EQ(test.Grid().TextMatrix(test.Grid().Row(), 0), "2202");
  VARIANT focus{};
  ASSERT_EQ(Grid().object->get_accFocus(&focus), S_OK);
  EXPECT_EQ(ElementOf(Grid().object, focus).Name(), "2202 应付账款");
  VariantClear(&focus);
  EXPECT_EQ(Row("1001").Select(SELFLAG_ADDSELECTION), S_FALSE) << "one row at a time";
  EXPECT_EQ(Grid().Children().at(0).Select(SELFLAG_TAKESELECTION), S_FALSE) << "the header";
}

TEST_F(AccessibleView, EventsTellWhatHasFocusWhatIsSelectedAndWhatOpens) {
  test.Select("1001");
  ASSERT_TRUE(test.Grid().SetFocus());
  {
    Listener grid(Window(test.Grid()));
    const HWND window = Window(test.Grid());
    EXPECT_THAT(grid.While([&] { Press(window, VK_DOWN); }),
                ElementsAre("selection 1002 银行存款", "focus 1002 银行存款"));
    EXPECT_THAT(grid.While([&] { Press(window, VK_LEFT); }), ElementsAre("state 1002 银行存款"));
    EXPECT_THAT(grid.While([&] { test.Tabs().SetFocus(); }), ElementsAre());
    EXPECT_THAT(grid.While([&] { test.Grid().SetFocus(); }),
                testing::Contains("focus 1002 银行存款"));
  }
  ASSERT_TRUE(test.Tabs().SetFocus());
  Listener tabs(Window(test.Tabs()));
  EXPECT_THAT(tabs.While([&] { Press(Window(test.Tabs()), VK_RIGHT); }),
              ElementsAre("selection 资产", "focus 资产"));
}

TEST_F(AccessibleView, WhatAClientHoldsOutlivesRowsAndView) {
  const Element grid = Grid();
  const Element row = Row("100202");
  const auto walk = row.object.As<IEnumVARIANT>();
  ASSERT_TRUE(walk);
  test.Grid().SetCollapsed(2, true);
  EXPECT_EQ(row.Name(), "");
  LONG count = -1;
  EXPECT_EQ(row.object->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
  test.Grid().SetCollapsed(2, false);
  EXPECT_EQ(row.Name(), "100202 建行");

  shown->Close();
  VARIANT value{};
  VARIANT self{};
  self.vt = VT_I4;
  LONG number = 0;
  ComPtr<IDispatch> parent;
  for (const Element* held : {&grid, &row}) {
    IAccessible& object = *held->object.Get();
    EXPECT_EQ(held->Spoken(), "unknown object");
    for (const HRESULT answer :
         {object.get_accParent(parent.Put()), object.get_accChildCount(&count),
          object.get_accRole(self, &value), object.get_accState(self, &value),
          object.get_accFocus(&value), object.get_accSelection(&value),
          object.accSelect(SELFLAG_TAKESELECTION, self),
          object.accLocation(&number, &number, &number, &number, self),
          object.accNavigate(NAVDIR_NEXT, self, &value), object.accHitTest(5, 5, &value),
          object.accDoDefaultAction(self)}) {
      EXPECT_EQ(answer, CO_E_OBJNOTCONNECTED);
    }
  }
  EXPECT_EQ(walk->Next(1, &value, nullptr), CO_E_OBJNOTCONNECTED);
}

TEST_F(AccessibleView, AHundredThousandRowsAreToldOfOnDemand) {
  viewkit::FlexGrid& grid = test.Grid();
  host::RowSet rows(2);
  for (int row = 0; row < 100'000; ++row) {
    rows.AppendText(std::to_string(row));
    rows.AppendText("科目");
  }
  grid.LoadRows(std::move(rows));
  Pump();
  const auto start = std::chrono::steady_clock::now();
  const Element element = Grid();
  LONG count = 0;
  ASSERT_EQ(element.object->get_accChildCount(&count), S_OK);
  EXPECT_EQ(count, 100'001);
  const Element last = element.Go(NAVDIR_LASTCHILD);
  EXPECT_EQ(last.Name(), "99999 科目");
  EXPECT_NE(last.State() & STATE_SYSTEM_OFFSCREEN, 0);
  EXPECT_EQ(last.Go(NAVDIR_PREVIOUS).Name(), "99998 科目");
  const auto walk = element.object.As<IEnumVARIANT>();
  ASSERT_EQ(walk->Skip(70'000), S_OK);
  VARIANT next{};
  ASSERT_EQ(walk->Next(1, &next, nullptr), S_OK);
  EXPECT_EQ(ElementOf(element.object, next).Name(), "69999 科目");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
}

// Control types of UI Automation, which not every toolchain names.
constexpr LONG kTabs = 50018;
constexpr LONG kTab = 50019;
constexpr LONG kTree = 50023;
constexpr LONG kTreeItem = 50024;
constexpr LONG kDataItem = 50029;

TEST_F(AccessibleView, UiAutomationSeesTheSameThroughTheSystemsBridge) {
  const Element tabs = ClientOf(Window(test.Tabs()));
  EXPECT_EQ(Grid().ControlType(), kTree);
  EXPECT_EQ(tabs.ControlType(), kTabs);
  EXPECT_THAT(tabs.ControlTypesInside(), testing::AllOf(SizeIs(7), Each(kTab)));
  std::vector<LONG> rows = Grid().ControlTypesInside();
  rows.erase(rows.begin());  // the header, which Wine knows no type for
  EXPECT_THAT(rows, testing::AllOf(SizeIs(8), Each(kTreeItem)));
  EXPECT_THAT(Row("1002").ControlTypesInside(), testing::AllOf(SizeIs(4), Each(kDataItem)));
}

class AccessiblePicker : public testing::Test, protected picker::PickerFixture {
 protected:
  AccessiblePicker() {
    picker.Refresh();
    shown.emplace(picker);
  }
  Apartment apartment;
  std::optional<Shown<picker::selKjkm>> shown;
};

TEST_F(AccessiblePicker, ItsTreeNamesWhatHasNoCaption) {
  const std::string tree = TreeOf(ClientOf(shown->Handle()));
  std::printf("%s", tree.c_str());
  EXPECT_THAT(tree, HasSubstr("\"科目类别\""));
  EXPECT_THAT(tree, HasSubstr("table \"科目\""));
  EXPECT_THAT(tree, HasSubstr("separator \"分隔条\""));
  EXPECT_THAT(tree, HasSubstr("\"查找科目\""));
}

TEST_F(AccessiblePicker, SeveralRowsAreSelectedOneByOneAndByKey) {
  const Element grid = ClientOf(Window(Vs()));
  const std::vector<Element> rows = grid.Children();
  Listener listener(Window(Vs()));
  EXPECT_EQ(rows.at(1).Select(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION), S_OK);
  EXPECT_EQ(rows.at(3).Select(SELFLAG_ADDSELECTION), S_OK);
  EXPECT_EQ(Vs().SelectedRows(), 2);
  EXPECT_EQ(rows.at(3).Select(SELFLAG_REMOVESELECTION), S_OK);
  EXPECT_EQ(rows.at(4).Select(SELFLAG_EXTENDSELECTION), S_OK);
  EXPECT_EQ(Vs().SelectedRows(), 4);
  EXPECT_EQ(rows.at(2).Select(SELFLAG_TAKEFOCUS), S_OK);
  EXPECT_EQ(rows.at(2).Select(SELFLAG_ADDSELECTION | SELFLAG_REMOVESELECTION), E_INVALIDARG);
  EXPECT_EQ(Vs().SelectedRows(), 4) << "the focus alone selects nothing";
  EnableWindow(GetAncestor(Window(Vs()), GA_ROOT), FALSE);  // as a modal dialog does
  EXPECT_EQ(rows.at(1).Select(SELFLAG_TAKESELECTION), S_FALSE);
  EXPECT_EQ(rows.at(1).DoDefaultAction(), S_FALSE);
  EnableWindow(GetAncestor(Window(Vs()), GA_ROOT), TRUE);
  EXPECT_EQ(Vs().SelectedRows(), 4);
  const HeldKey control(VK_CONTROL);
  const auto heard = listener.While([this] { SendMessageW(Window(Vs()), WM_KEYDOWN, 'A', 1); });
  EXPECT_EQ(Vs().SelectedRows(), Vs().Rows() - 1);
  EXPECT_THAT(heard, testing::Contains("selections 科目"));
  VARIANT all{};
  ASSERT_EQ(grid.object->get_accSelection(&all), S_OK);
  ASSERT_EQ(all.vt, VT_UNKNOWN);
  ComPtr<IEnumVARIANT> walk = com::Query<IEnumVARIANT>(all.punkVal);
  VariantClear(&all);
  EXPECT_EQ(walk->Skip(static_cast<ULONG>(Vs().Rows() - 1)), S_OK);
  EXPECT_EQ(walk->Skip(1), S_FALSE);
}

TEST_F(AccessibleView, TheDialogIsADialogWhoseBoxesHaveTheirLabelsNames) {
  std::string tree;
  viewkit::win32::WindowsUser user;
  test.user.in_dialog = [&](viewkit::DialogModel& dialog) {
    const Steps steps({[&] {
      tree = TreeOf(ClientOf(GetAncestor(GetFocus(), GA_ROOT)));
      dialog.Unload();
    }});
    user.ShowModal(dialog);
  };
  test.Select("1002");
  test.Grid().HandleDoubleClick(test.Grid().Row());
  std::printf("%s", tree.c_str());
  EXPECT_TRUE(tree.starts_with("dialog \"")) << tree;
  EXPECT_THAT(tree, HasSubstr("text \"名称(N)\" = 银行存款"));
  EXPECT_THAT(tree, HasSubstr("\"计量单位\" (unavailable)"));
}

}  // namespace
}  // namespace tavrix::test
