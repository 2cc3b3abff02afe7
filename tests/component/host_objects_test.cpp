#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "component/event_sink.h"
#include "component/view_fixture.h"
#include "qnSystem.h"
#include "support/matchers.h"

/// What the host's objects give to a view, and how they are called.
namespace tavrix::test {
namespace {

using com::Bstr;

TEST_F(View, ShowsValuesOfEveryKind) {
  VARIANT date{};
  date.vt = VT_DATE;
  date.date = 45356.5;  // 2024-03-05, noon
  VARIANT decimal{};
  decimal.decVal.Lo64 = 1250;
  decimal.decVal.scale = 2;
  decimal.vt = VT_DECIMAL;
  VARIANT money{};
  money.vt = VT_CY;
  money.cyVal.int64 = -32500;
  VARIANT error{};
  error.vt = VT_ERROR;
  error.scode = DISP_E_PARAMNOTFOUND;
  VARIANT empty{};
  const Variant null = Variant::Null();
  Variant text(std::string_view("科目 'x' \xF0\x9F\x98\x80"));
  Variant whole(std::int32_t{-7});
  const Variant array = RowArray({{empty}});
  VARIANT by_reference{};
  by_reference.vt = VT_BYREF | VT_BSTR;
  by_reference.pbstrVal = &text.InPlace()->bstrVal;
  VARIANT small{};
  small.vt = VT_UI1;
  small.bVal = 200;
  VARIANT null_text{};
  null_text.vt = VT_BSTR;
  const VARIANT object = Variant(ComPtr<IDispatch>()).Get();

  const std::vector<std::pair<VARIANT, std::string>> kinds = {
      {date, "2024-03-05 12:00:00"},
      {decimal, "12.5"},
      {money, "-3.25"},
      {error, ""},
      {empty, ""},
      {null.Get(), ""},
      {text.Get(), "科目 'x' \xF0\x9F\x98\x80"},
      {whole.Reference(), "-7"},
      {array.Get(), ""},
      {by_reference, "科目 'x' \xF0\x9F\x98\x80"},
      {small, "200"},
      {null_text, ""},
      {object, ""},
      {Variant(0.1).Get(), "0.1"},
      {Variant(true).Get(), "True"}};
  std::vector<std::vector<VARIANT>> records;
  std::vector<Variant> codes;
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    codes.emplace_back(std::string_view("10" + std::to_string(i + 10)));
    records.push_back({codes.back().Get(), kinds[i].first, null.Get(), null.Get(), null.Get(),
                       Variant(std::int32_t{1}).Get(), null.Get()});
  }
  host_->whole_result = RowArray(records);
  const EventLog log(object_.Get());
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(Refresh());
  EXPECT_THAT(log.Errors(), testing::IsEmpty());
  const auto grid = Grid();
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    EXPECT_EQ(Cell(grid, static_cast<long>(i) + 1, 1), kinds[i].second) << i;
  }
}

/// A recordset may give an array of one type, or something that is no array of rows at all.
TEST_F(View, TakesTypedArraysAndRefusesWhatIsNone) {
  SAFEARRAYBOUND bounds[2] = {{7, 0}, {1, 1}};  // records counted from 1
  host_->whole_result.InPlace()->parray = SafeArrayCreate(VT_BSTR, 2, bounds);
  host_->whole_result.InPlace()->vt = VT_ARRAY | VT_BSTR;
  LONG position[2] = {0, 1};
  SafeArrayPutElement(host_->whole_result.Get().parray, position,
                      Bstr(std::string_view("1001")).Get());
  const EventLog log(object_.Get());
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(Cell(Grid(), 1, 0), "1001");
  EXPECT_THAT(log.Errors(), testing::IsEmpty());
  host_->whole_result = Variant(std::string_view("no rows"));
  EXPECT_TRUE(Refresh());
  EXPECT_THAT(log.Errors(), ElementsAre(StartsWith("DoRefresh")));
}

/// Rows in one piece are taken in preference; pieces that do not fit together are refused whole.
TEST_F(View, TakesRowsAsOnePieceOfText) {
  const std::wstring text = L"1001\xD83D\xDE00 x1资产";
  host_->row_texts = StubHost::RowTexts{7, {4, 8, -1, 8, 8, 9, 11}, text};
  const EventLog log(object_.Get());
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(Refresh());
  EXPECT_THAT(log.Errors(), testing::IsEmpty());
  EXPECT_EQ(Cell(Grid(), 1, 0), "1001");
  EXPECT_EQ(Cell(Grid(), 1, 1), "\xF0\x9F\x98\x80 x");
  for (const StubHost::RowTexts& broken :
       {StubHost::RowTexts{7, {4, 8, -1, 8, 8, 9, 12}, text},
        StubHost::RowTexts{7, {4, 8, -1, 7, 8, 9, 11}, text},
        StubHost::RowTexts{7, {4, 8, -1, 8, 8, 9}, text}, StubHost::RowTexts{0, {4}, text},
        StubHost::RowTexts{7, {}, text},
        StubHost::RowTexts{7, {4, 8, -1, 8, 8, 9, 11}, text, E_ACCESSDENIED},
        StubHost::RowTexts{7, {4, 8, -1, 8, 8, 9, 11}, text, S_OK, VT_R8}}) {
    host_->row_texts = broken;
    EXPECT_TRUE(Refresh());
  }
  EXPECT_EQ(log.Errors().size(), 7U);
  EXPECT_THAT(log.Errors(), testing::Each(StartsWith("DoRefresh")));
}

/// An object that is nothing but its declared interface: it has no calls by name.
template <class Interface>
class Declared : public com::Implements<Interface> {
 public:
  Declared() { this->AddInterface(IID_IDispatch, static_cast<Interface*>(this)); }
  STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) noexcept override {
    return E_NOTIMPL;
  }
};

class DeclaredRule : public Declared<IHostCodeRule> {
 public:
  STDMETHODIMP ParentCode(BSTR code, BSTR rule, BSTR* result) noexcept override {
    asked_ = com::TextOf(code) + "/" + com::TextOf(rule);
    *result = Bstr(std::string_view("1002")).Detach();
    return S_OK;
  }
  STDMETHODIMP LevelOf(BSTR, BSTR, long*) noexcept override {
    const Bstr text(std::string_view("级次算不出"));
    ComPtr<ICreateErrorInfo> info;
    CreateErrorInfo(info.Put());
    info->SetDescription(text.Get());
    SetErrorInfo(0, info.As<IErrorInfo>().Get());
    return E_ACCESSDENIED;
  }
  STDMETHODIMP LengthAtLevel(long level, BSTR, long* result) noexcept override {
    *result = 2 + 2 * level;
    return S_OK;
  }
  static std::string asked_;
};
std::string DeclaredRule::asked_;

class DeclaredWheel : public Declared<IHostMouseEvent> {
 public:
  STDMETHODIMP SetRange(long maximum, VARIANT first_row) noexcept override {
    calls_ += "SetRange " + std::to_string(maximum) +
              (first_row.vt == VT_ERROR ? "" : " " + std::to_string(first_row.lVal)) + ";";
    return S_OK;
  }
  STDMETHODIMP Attach(long) noexcept override {
    calls_ += "Attach;";
    return S_OK;
  }
  STDMETHODIMP Detach() noexcept override {
    calls_ += "Detach;";
    return S_OK;
  }
  STDMETHODIMP get_AttachedTo(long* result) noexcept override {
    *result = 0;
    return S_OK;
  }
  STDMETHODIMP put_Position(long position) noexcept override {
    calls_ += "Position " + std::to_string(position) + ";";
    return S_OK;
  }
  static std::string calls_;
};
std::string DeclaredWheel::calls_;

TEST_F(View, CallsAnObjectThroughItsDeclaredInterface) {
  host_->helpers["CodeRule"] = com::MakeObject<DeclaredRule>().As<IDispatch>();
  host_->helpers["MouseEvent"] = com::MakeObject<DeclaredWheel>().As<IDispatch>();
  DeclaredWheel::calls_.clear();
  const EventLog log(object_.Get());
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(Grid()->put_Row(4), S_OK);
  EXPECT_EQ(Grid()->put_TopRow(5), S_OK);
  host_->gate = [](const std::wstring& member) {
    if (member == L"ScalarValue") throw Raised{E_FAIL, "到此为止"};
  };
  VARIANT_BOOL done = VARIANT_TRUE;
  EXPECT_EQ(form_->FileDelete(&done), S_OK);
  EXPECT_EQ(DeclaredRule::asked_, "100202/4222");
  EXPECT_THAT(log.Errors(), ElementsAre("FileDelete->到此为止|2|总账"));
  EXPECT_EQ(form_->Clear(&done), S_OK);
  EXPECT_THAT(DeclaredWheel::calls_, StartsWith("SetRange 2;Attach;"));
  EXPECT_THAT(DeclaredWheel::calls_, testing::EndsWith("Detach;"));
}

/// What is no flag says neither that there are rows nor that there are none.
TEST_F(View, RefusesAFlagThatIsNone) {
  ASSERT_EQ(Init(), S_OK);
  for (const Variant& answer : {Variant(NamedObject::Make({})), Variant(), Variant::Null(),
                                Variant(std::string_view("no"))}) {
    const EventLog log(object_.Get());
    host_->gate = [&](const std::wstring& member) {
      if (member == L"EOF") throw Answered{answer};
    };
    static_cast<void>(Refresh());
    EXPECT_THAT(log.Errors(), testing::Each("DoRefresh主程序没有提供：EOF|8|总账"));
    EXPECT_FALSE(log.Errors().empty()) << answer.Type();
  }
}

TEST_F(View, TakesASettingThatIsNoTextAsAbsent) {
  ASSERT_EQ(Init(), S_OK);
  EXPECT_TRUE(Refresh());
  EXPECT_EQ(Grid()->put_ColWidth(1, 3210), S_OK);
  const auto width = [this] {
    long found = 0;
    EXPECT_EQ(Grid()->get_ColWidth(1, &found), S_OK);
    return found;
  };
  for (const Variant& answer : {Variant(ComPtr<IDispatch>()), Variant(NamedObject::Make({})),
                                Variant::Null(), Variant(), RowArray({{Variant(1.5).Get()}})}) {
    host_->gate = [&](const std::wstring& member) {
      if (member == L"ReadValue") throw Answered{answer};
    };
    EXPECT_EQ(form_->DoGetFormStatus(), S_OK);
    EXPECT_EQ(width(), 3210) << answer.Type();
  }
  host_->gate = [](const std::wstring& member) {
    if (member == L"ReadValue") throw Answered{Variant(std::int32_t{1500})};
  };
  EXPECT_EQ(form_->DoGetFormStatus(), S_OK);
  EXPECT_EQ(width(), 1500) << "a number is as good as its text";
}

}  // namespace
}  // namespace tavrix::test
