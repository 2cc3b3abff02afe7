#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <string>
#include <vector>

#include "component/event_sink.h"
#include "component/view_fixture.h"
#include "support/matchers.h"

namespace tavrix::test {
namespace {

using com::Bstr;

TEST_F(View, AnswersEarlyBoundCallers) {
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(Refresh());
  // A member without arguments that gives a flag.
  const auto check = [this](auto member, VARIANT_BOOL expected) {
    VARIANT_BOOL result = 7;
    EXPECT_EQ((form_.Get()->*member)(&result), S_OK);
    EXPECT_EQ(result, expected);
    EXPECT_EQ((form_.Get()->*member)(nullptr), E_POINTER);
  };
  check(&IFormUI::FileSave, VARIANT_TRUE);
  check(&IFormUI::FileCancel, VARIANT_TRUE);
  check(&IFormUI::Help, VARIANT_FALSE);
  check(&IFormUI::PrintSetup, VARIANT_FALSE);
  check(&IFormUI::RecordTop, VARIANT_TRUE);
  check(&IFormUI::RecordPrevious, VARIANT_TRUE);
  check(&IFormUI::RecordNext, VARIANT_TRUE);
  check(&IFormUI::RecordBottom, VARIANT_TRUE);
  check(&IFormUI::FindNext, VARIANT_TRUE);
  check(&IFormUI::get_IsDirty, VARIANT_FALSE);
  check(&IFormUI::FileDelete, VARIANT_FALSE);
  check(&IFormUI::FileEdit, VARIANT_FALSE);
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(form_->Find(Variant(1.5).Get(), &result), S_OK);
  EXPECT_EQ(form_->Filter(Variant(std::string_view("现金")).Get(), &result), S_OK);
  EXPECT_EQ(form_->Filter(Variant().Get(), &result), S_OK);
  EXPECT_EQ(form_->Filter(Variant::Null().Get(), &result), S_OK);
  EXPECT_THAT(host_->navigator_calls,
              ElementsAre("MoveTop grid", "MovePrevious grid", "MoveNext grid", "MoveBottom grid",
                          "FindNext grid", "Find grid 1.5", "Filter grid 现金",
                          "Filter grid (empty)", "Filter grid (null)"));
  Bstr name;
  EXPECT_EQ(form_->get_Attributes(Bstr(std::string_view("isVisibleNewNext")).Get(), name.Put()),
            S_OK);
  EXPECT_EQ(com::TextOf(name.Get()), "True");
  ComPtr<IDispatch> parameters(object_.As<IDispatch>());
  EXPECT_EQ(design_->get_Parameters(parameters.Put()), S_OK);
  EXPECT_FALSE(parameters);
}

TEST_F(View, SendsItsStatementsAndWheelRangeToTheHost) {
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(host_->statements.empty());
  EXPECT_TRUE(Refresh());
  ASSERT_EQ(host_->statements.size(), 7U);
  EXPECT_EQ(host_->statements[0],
            "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code order by ccode");
  EXPECT_EQ(host_->statements[6],
            "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code where "
            "cclass='损益' order by ccode");
  EXPECT_THAT(host_->wheel_calls, testing::IsSupersetOf({"SetRange 2", "Attach"}));
}

TEST_F(View, InitFailsWithTheHostsOwnText) {
  host_->gate = [](const std::wstring& member) {
    if (member == L"GetSetting") throw Raised{E_FAIL, "设置读不出"};
  };
  EXPECT_TRUE(FAILED(Init()));
  EXPECT_EQ(ErrorText(), "设置读不出");
  IDispatch* none = nullptr;
  VARIANT_BOOL done = VARIANT_TRUE;
  EXPECT_TRUE(FAILED(form_->Init(&none, 1, 0, &done)));
  EXPECT_EQ(done, VARIANT_FALSE);
  EXPECT_TRUE(FAILED(form_->Init(nullptr, 1, 0, &done)));
}

TEST_F(View, ReportsWhatAHostObjectRaises) {
  const EventLog log(object_.Get());
  ASSERT_EQ(Init(), S_OK);
  host_->gate = [](const std::wstring& member) {
    if (member == L"GetRows") throw Raised{DISP_E_EXCEPTION, "表不存在"};
  };
  EXPECT_TRUE(Refresh());
  host_->gate = [](const std::wstring& member) {
    if (member == L"OpenSql") throw BareFailure{E_ACCESSDENIED};
  };
  EXPECT_TRUE(Refresh());
  ASSERT_EQ(log.Errors().size(), 2U);
  EXPECT_EQ(log.Errors()[0], "DoRefresh表不存在|8|总账");
  // A bare code is told by its meaning, in the system's own words.
  EXPECT_THAT(log.Errors()[1], StartsWith("DoRefresh"));
  EXPECT_GT(log.Errors()[1].size(), std::string("DoRefresh|8|总账").size());
  host_->gate = {};
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(Cell(Grid(), 5, 0), "2202");
}

/// What `IGridRows` gives at once is what the members give one by one.
TEST_F(View, AGridGivesManyRowsAtOnce) {
  ASSERT_EQ(Init(), S_OK);
  ASSERT_TRUE(Refresh());
  const auto grid = Grid();
  const auto rows = grid.As<IGridRows>();
  ASSERT_TRUE(rows);
  long count = 0;
  grid->get_Rows(&count);
  ASSERT_GT(count, 3);
  const auto fetch = [&](long first, long wanted, Variant& levels, Variant& ends, Variant& text) {
    for (Variant* out : {&levels, &ends, &text}) {
      *out = Variant();
      out->InPlace()->vt = VT_ARRAY | VT_I4;
    }
    text.InPlace()->vt = VT_ARRAY | VT_UI1;
    return rows->GetRows(first, wanted, &levels.InPlace()->parray, &ends.InPlace()->parray,
                         &text.InPlace()->parray);
  };
  Variant levels;
  Variant ends;
  Variant text;
  ASSERT_EQ(fetch(1, 1000, levels, ends, text), S_OK);
  ASSERT_EQ(levels.Get().parray->rgsabound[0].cElements, static_cast<ULONG>(count - 1));
  const auto* level = static_cast<const LONG*>(levels.Get().parray->pvData);
  const auto* end = static_cast<const LONG*>(ends.Get().parray->pvData);
  const auto* bytes = static_cast<const char*>(text.Get().parray->pvData);
  LONG start = 0;
  for (long row = 1; row < count; ++row) {
    long expected = 0;
    grid->get_RowOutlineLevel(row, &expected);
    EXPECT_EQ(*level++, expected);
    for (long col = 0; col < 4; ++col, start = *end++) {  // the other columns are hidden
      EXPECT_EQ(std::string(bytes + start, bytes + *end), Cell(grid, row, col)) << row << col;
    }
  }
  EXPECT_EQ(text.Get().parray->rgsabound[0].cElements, static_cast<ULONG>(start));
  Variant none;
  EXPECT_EQ(fetch(count, 5, levels, ends, none), S_OK) << "behind the last row";
  EXPECT_EQ(none.Get().parray->rgsabound[0].cElements, 0U);
  EXPECT_EQ(fetch(count + 1, 5, levels, ends, none), E_INVALIDARG);
  EXPECT_EQ(fetch(0, -1, levels, ends, none), E_INVALIDARG);
  EXPECT_EQ(rows->GetRows(0, 1, nullptr, nullptr, nullptr), E_POINTER);
  ASSERT_EQ(grid->put_RowHidden(2, VARIANT_TRUE), S_OK);
  Variant states;
  states.InPlace()->vt = VT_ARRAY | VT_UI1;
  ASSERT_EQ(rows->GetStates(0, 1000, &states.InPlace()->parray), S_OK);
  ASSERT_EQ(states.Get().parray->rgsabound[0].cElements, static_cast<ULONG>(count));
  const auto* state = static_cast<const BYTE*>(states.Get().parray->pvData);
  int collapsed = 0;
  int below = 0;
  for (long row = 0; row < count; ++row) {
    VARIANT_BOOL closed = VARIANT_FALSE;
    grid->get_IsCollapsed(row, &closed);
    collapsed += closed != VARIANT_FALSE ? 1 : 0;
    EXPECT_EQ(state[row] & 3, (row == 2 ? 1 : 0) + (closed != VARIANT_FALSE ? 2 : 0)) << row;
    below += (state[row] & 5) == 0 ? 1 : 0;
  }
  EXPECT_GT(collapsed, 0);
  EXPECT_GT(below, 0);
  EXPECT_EQ(state[2] & 4, 0);
  Variant unused;
  EXPECT_EQ(rows->GetStates(count + 1, 5, &unused.InPlace()->parray), E_INVALIDARG);
  EXPECT_EQ(rows->GetStates(0, 1, nullptr), E_POINTER);

  hyper before = 0;
  hyper after = 0;
  ASSERT_EQ(rows->TextVersion(&before), S_OK);
  for (long row = 1; row < count; ++row) {
    static_cast<BYTE*>(states.Get().parray->pvData)[row] = row == 3 ? 1 : 0;
  }
  ASSERT_EQ(rows->SetStates(0, states.Get().parray), S_OK);
  for (long row = 1; row < count; ++row) {
    VARIANT_BOOL closed = VARIANT_TRUE;
    VARIANT_BOOL hidden = VARIANT_FALSE;
    grid->get_IsCollapsed(row, &closed);
    grid->get_RowHidden(row, &hidden);
    EXPECT_EQ(closed, VARIANT_FALSE) << row;
    EXPECT_EQ(hidden != VARIANT_FALSE, row == 3) << row;
  }
  EXPECT_EQ(rows->SetStates(1, states.Get().parray), E_INVALIDARG) << "more than there are";
  ASSERT_EQ(fetch(0, 1, levels, ends, none), S_OK);
  EXPECT_EQ(rows->SetStates(0, levels.Get().parray), E_INVALIDARG) << "no bytes";
  EXPECT_EQ(rows->SetStates(0, nullptr), E_INVALIDARG);
  ASSERT_EQ(rows->TextVersion(&after), S_OK);
  EXPECT_EQ(before, after) << "texts are as they were";
}

TEST_F(View, ObjectsHandedOutOutliveItSafely) {
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(Refresh());
  ComPtr<IDispatch> controls;
  ASSERT_EQ(design_->get_Controls(controls.Put()), S_OK);
  ComPtr<IUnknown> numbered;
  ASSERT_EQ(controls.As<IChildControls>()->get_NewEnum(numbered.Put()), S_OK);
  const auto walk = numbered.As<IEnumVARIANT>();
  const auto grid = Grid();
  form_ = nullptr;
  design_ = nullptr;
  object_ = nullptr;
  long rows = 0;
  EXPECT_TRUE(FAILED(grid->get_Rows(&rows)));
  EXPECT_NE(ErrorText(), "");
  EXPECT_TRUE(FAILED(grid->put_Row(1)));
  ComPtr<IDispatch> item;
  EXPECT_TRUE(
      FAILED(controls.As<IChildControls>()->get_Item(Variant(std::int32_t{1}).Get(), item.Put())));
  Variant child;
  if (walk->Next(1, child.Put(), nullptr) == S_OK) {
    VARIANT_BOOL visible = VARIANT_FALSE;
    EXPECT_TRUE(FAILED(child.Object().As<IChildControl>()->get_Visible(&visible)));
  }
}

/// Whether an account is in use, and which is its parent, is not guessed from what is no value.
TEST_F(View, DeletesNothingOnAnAnswerThatIsNone) {
  const EventLog log(object_.Get());
  Variant parent(std::string_view("1002"));
  host_->helpers["CodeRule"] =
      NamedObject::Make({{L"ParentCode", [&](const StubCall&) { return parent; }}});
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(Grid()->put_Row(3), S_OK);
  host_->statements.clear();
  const ComPtr<IDispatch> object = NamedObject::Make({});
  const auto expect_refused = [&](const char* what) {
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_EQ(form_->FileDelete(&done), S_OK);
    EXPECT_EQ(done, VARIANT_FALSE);
    ASSERT_FALSE(log.Errors().empty());
    EXPECT_EQ(log.Errors().back(), std::string("FileDelete->主程序没有提供：") + what + "|2|总账");
  };
  std::size_t refused = 0;
  for (const Variant& none : {Variant(ComPtr<IDispatch>()), Variant(object), Variant(),
                              Variant::Null(), Variant(true), RowArray({{Variant().Get()}})}) {
    host_->scalar = none;
    expect_refused("ScalarValue");
    EXPECT_EQ(log.Errors().size(), ++refused);
  }
  host_->scalar = Variant(std::string_view("many"));
  expect_refused("ScalarValue");
  host_->scalar = Variant(std::int32_t{0});
  for (const Variant& none :
       {Variant(ComPtr<IDispatch>()), Variant(object), Variant(), Variant::Null(), Variant(true)}) {
    parent = none;
    expect_refused("ParentCode");
  }
  EXPECT_EQ(log.Errors().size(), refused + 6);
  for (const std::string& statement : host_->statements) {
    EXPECT_THAT(statement, StartsWith("select count("));
  }
}

/// The host may let go of the view while the view calls it.
TEST_F(View, LivesToTheEndOfACallInWhichItsLastHolderLetsGo) {
  ASSERT_EQ(Init(), S_OK);
  IFormUI* const bare = form_.Get();
  // Something of the view's, to see by when it is gone.
  const auto grid = Grid();
  long rows = 0;
  bool lived = false;
  host_->gate = [&](const std::wstring& member) {
    if (member == L"OpenSql") {
      form_ = nullptr;
      design_ = nullptr;
      object_ = nullptr;
    }
    if (member == L"GetRows") lived = SUCCEEDED(grid->get_Rows(&rows));
  };
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(bare->Refresh(&done), S_OK);
  EXPECT_NE(done, VARIANT_FALSE) << "the call came to its end";
  EXPECT_TRUE(lived) << "on a view that was there";
  EXPECT_EQ(host_->statements.size(), 7U);
  EXPECT_FALSE(object_);
  EXPECT_TRUE(FAILED(grid->get_Rows(&rows))) << "and is gone after it";
}

TEST_F(View, GivesOneCollectionOfItsControls) {
  ComPtr<IDispatch> first;
  ComPtr<IDispatch> second;
  ASSERT_EQ(design_->get_Controls(first.Put()), S_OK);
  ASSERT_EQ(design_->get_Controls(second.Put()), S_OK);
  EXPECT_EQ(first.As<IUnknown>().Get(), second.As<IUnknown>().Get());
  const auto other = CreateView();
  ASSERT_EQ(other.As<IDesignUI>()->get_Controls(second.Put()), S_OK);
  EXPECT_NE(first.As<IUnknown>().Get(), second.As<IUnknown>().Get());
}

TEST_F(View, LivesToTheEndOfReadingParametersInWhichItsLastHolderLetsGo) {
  ComPtr<IDispatch> controls;
  ASSERT_EQ(design_->get_Controls(controls.Put()), S_OK);
  IDesignUI* const bare = design_.Get();
  const auto parameters =
      NamedObject::Make({{L"Exists", [&](const StubCall&) {
                            form_ = nullptr;
                            design_ = nullptr;
                            object_ = nullptr;
                            long count = 0;
                            EXPECT_EQ(controls.As<IChildControls>()->get_Count(&count), S_OK);
                            return Variant(false);
                          }}});
  EXPECT_EQ(bare->putref_Parameters(parameters.Get()), S_OK);
  EXPECT_FALSE(object_);
}

TEST_F(View, TheHostMayClearAndStartItAgainDuringAnEvent) {
  ASSERT_EQ(Init(), S_OK);
  int heard = 0;
  EventSink sink(object_.Get(), __uuidof(__Kjkm), [&](DISPID, const std::vector<Variant>&) {
    if (heard++ != 0) return S_OK;
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(form_->Clear(&done), S_OK);
    EXPECT_EQ(Init(), S_OK);
    return S_OK;
  });
  static_cast<void>(Refresh());
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(Cell(Grid(), 5, 0), "2202");
}

}  // namespace
}  // namespace tavrix::test
