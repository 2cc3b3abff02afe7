#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "com/bstr.h"
#include "com/events.h"
#include "com/late_object.h"
#include "component/event_sink.h"
#include "component/foreign_container.h"
#include "component/loaded_library.h"
#include "component/stub_host.h"
#include "qnDesignUI.h"
#include "qnPickerUI.h"
#include "qnSystem.h"
#include "support/matchers.h"
#include "tavrix.h"

namespace tavrix::test {
namespace {

using com::Bstr;

/// A wheel of the host that can be turned.
class Wheel : public NamedObject {
 public:
  Wheel()
      : NamedObject({{L"SetRange", [](const StubCall&) { return Variant(); }},
                     {L"Attach", [](const StubCall&) { return Variant(); }},
                     {L"AttachedTo", [](const StubCall&) { return Variant(std::int32_t{0}); }},
                     {L"Position",
                      [this](const StubCall&) {
                        if (on_position) on_position();
                        return Variant();
                      }},
                     {L"Detach", [](const StubCall&) { return Variant(); }}}) {
    AddInterface(IID_IConnectionPointContainer, &container_);
  }
  void Turn(std::int32_t value) { events_.Fire(1, {Variant(value)}); }
  std::function<void()> on_position;

 private:
  com::EventSource events_{*this, __uuidof(IHostMouseEvents)};
  com::ConnectionPointContainer container_{*this, events_};
};

StubHost::Row PickerRow(int id, std::string_view code, std::string_view name) {
  const auto text = [](std::string_view content) { return Variant(content); };
  const auto number = [](int content) { return Variant(std::int32_t{content}); };
  return {number(id), text(code),   text(name), text(""),
          number(1),  text("资产"), number(0),  number(1)};
}

/// Results of one library are of its own types, and each class describes itself.
TEST(PickedAccounts, AreTypedForEarlyBoundCallersAndTellTheirClass) {
  CLSID clsid{};
  ComPtr<_colKjkm> accounts;
  ASSERT_EQ(CLSIDFromProgID(L"tavrix.colKjkm", &clsid), S_OK);
  ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_colKjkm),
                             accounts.PutVoid()),
            S_OK);
  const Bstr text(std::string_view("1001"));
  ComPtr<_clsKjkm> account;
  ComPtr<_colKjkm> below;
  ASSERT_EQ(
      accounts->Add(text.Get(), 7, text.Get(), text.Get(), text.Get(), text.Get(), account.Put()),
      S_OK);
  ASSERT_EQ(account->get_colKjkm(below.Put()), S_OK);
  EXPECT_EQ(account->putref_colKjkm(accounts.Get()), S_OK);
  EXPECT_EQ(account->get_colKjkm(below.Put()), S_OK);
  EXPECT_EQ(below.Get(), accounts.Get());
  EXPECT_EQ(account->putref_colKjkm(nullptr), S_OK) << "ends the circle";
  const auto name_of = [](const auto& object) {
    ComPtr<ITypeInfo> described;
    Bstr name;
    const auto info = object.template As<IProvideClassInfo>();
    if (!info || FAILED(info->GetClassInfo(described.Put()))) return std::string("(none)");
    described->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr);
    return com::TextOf(name.Get());
  };
  EXPECT_EQ(name_of(accounts), "colKjkm");
  EXPECT_EQ(name_of(account), "clsKjkm");
}

/// The picker for a caller that knows its interfaces.
class Picker : public testing::Test {
 protected:
  Picker() {
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(L"tavrix.selKjkm", &clsid), S_OK);
    EXPECT_EQ(
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object_.PutVoid()),
        S_OK);
    picker_ = object_.As<IPickerUI>();
    host_->columns = {"i_id",      "ccode",  "ccode_name", "chelp",
                      "bproperty", "cclass", "bclose",     "bend"};
    for (int i = 1; i <= 100; ++i)
      host_->rows.push_back(PickerRow(i, std::to_string(1000 + i), ""));
  }

  [[nodiscard]] HRESULT Init() {
    ComPtr<IDispatch> system = StubHost::System(host_);
    IDispatch* given = system.Get();
    VARIANT_BOOL done = VARIANT_FALSE;
    const HRESULT result = picker_->Init(&given, 1, nullptr, &done);
    EXPECT_EQ(SUCCEEDED(result), done != VARIANT_FALSE);
    return result;
  }
  void Refresh() {
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(picker_->Refresh(&done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
  }
  [[nodiscard]] HRESULT Validate(const char* typed, BSTR* code, BSTR* name) {
    const Bstr none;
    VARIANT_BOOL result = VARIANT_TRUE;
    const HRESULT status =
        picker_->Validate(none.Get(), none.Get(), none.Get(), Bstr(std::string_view(typed)).Get(),
                          code, name, &result);
    EXPECT_EQ(result, VARIANT_FALSE);
    return status;
  }
  /// Begins on a host that has a wheel, and keeps it.
  [[nodiscard]] Wheel& StartWithWheel() {
    const ComPtr<IDispatch> wheel = com::MakeObject<Wheel>().As<IDispatch>();
    host_->helpers["MouseEvent"] = wheel;
    EXPECT_EQ(Init(), S_OK);
    Refresh();
    return *static_cast<Wheel*>(wheel.Get());
  }
  [[nodiscard]] ComPtr<IChildControls> Controls() {
    ComPtr<IDispatch> controls;
    EXPECT_EQ(object_.As<IDesignUI>()->get_Controls(controls.Put()), S_OK);
    return controls.As<IChildControls>();
  }
  template <class Interface>
  [[nodiscard]] ComPtr<Interface> Child(const char* name) {
    return ChildOf(object_, name).As<Interface>();
  }
  [[nodiscard]] std::string Message() {
    Bstr caption;
    EXPECT_EQ(Child<ILabelControl>("lblMessage")->get_Caption(caption.Put()), S_OK);
    return com::TextOf(caption.Get());
  }
  void PickSecond() {
    EXPECT_EQ(Child<IFlexGrid>("Vs")->put_IsSelected(2, VARIANT_TRUE), S_OK);
    EXPECT_EQ(Child<IButtonControl>("Cmd(0)")->Click(), S_OK);
  }
  /// The text of the error that the last call left.
  [[nodiscard]] static std::string ErrorText() {
    ComPtr<IErrorInfo> info;
    Bstr text;
    if (GetErrorInfo(0, info.Put()) == S_OK) info->GetDescription(text.Put());
    return com::TextOf(text.Get());
  }

  std::shared_ptr<StubHost> host_ = std::make_shared<StubHost>();
  ComPtr<IUnknown> object_;
  ComPtr<IPickerUI> picker_;
};

TEST_F(Picker, TellsWhatTheDefaultMemberOfACollectionRaises) {
  ASSERT_EQ(Init(), S_OK);
  const auto collection = NamedObject::Make({{L"", [](const StubCall&) -> Variant {
                                                throw Raised{E_ACCESSDENIED, "参数读不出"};
                                              }}});
  EXPECT_EQ(picker_->putref_Parameters(collection.Get()), S_OK);
  try {
    (void)com::LateObject(object_.As<IDispatch>())
        .Get(L"Parameters", {Variant(std::string_view("any"))});
    FAIL() << "it gave a value";
  } catch (const com::ComFailure& failure) {
    EXPECT_STREQ(failure.what(), "参数读不出");
    EXPECT_EQ(failure.Code(), E_ACCESSDENIED);
  }
}

TEST_F(Picker, ReplacesTheStringsOfAnEarlyBoundCaller) {
  ASSERT_EQ(Init(), S_OK);
  Bstr code(std::string_view("what stood there before"));
  Bstr name(std::string_view("too"));
  BSTR code_given = code.Detach();
  BSTR name_given = name.Detach();
  EXPECT_EQ(Validate("1001", &code_given, &name_given), S_OK);
  EXPECT_EQ(com::TextOf(code_given), "1");
  EXPECT_EQ(com::TextOf(name_given), "1001");
  EXPECT_EQ(host_->statements.back(),
            "select * FROM gl_code where (ccode='1001' OR ccode_name='1001' or chelp='1001')");
  host_->rows.clear();
  EXPECT_EQ(Validate("1001", &code_given, &name_given), S_OK);
  EXPECT_EQ(SysStringLen(code_given) + SysStringLen(name_given), 0U);
  EXPECT_EQ(Validate("1001", nullptr, &name_given), E_POINTER);
  // One variable for what is typed and for the code; so long a text is given back to the system at
  // once when it is freed.
  const std::wstring typed(400'000, L'7');
  SysFreeString(std::exchange(code_given, SysAllocString(typed.c_str())));
  VARIANT_BOOL result = VARIANT_FALSE;
  EXPECT_EQ(
      picker_->Validate(nullptr, nullptr, nullptr, code_given, &code_given, &name_given, &result),
      S_OK);
  EXPECT_THAT(host_->statements.back(), testing::HasSubstr("ccode='7777"));
  SysFreeString(code_given);
  SysFreeString(name_given);
}

TEST_F(Picker, TellsTheHostsOwnTextOfAFailure) {
  ASSERT_EQ(Init(), S_OK);
  Refresh();
  host_->gate = [](const std::wstring& member) {
    if (member == L"OpenSql") throw Raised{E_FAIL, "表被锁定"};
  };
  Bstr code(std::string_view("before"));
  BSTR code_given = code.Detach();
  BSTR name_given = nullptr;
  EXPECT_EQ(Validate("1001", &code_given, &name_given), E_FAIL);
  EXPECT_EQ(ErrorText(), "表被锁定");
  EXPECT_EQ(SysStringLen(code_given), 0U) << "both are empty after a failure";
  SysFreeString(code_given);
  EXPECT_EQ(Child<IButtonControl>("Cmd(2)")->Click(), S_OK);
  EXPECT_EQ(Message(), "表被锁定");
  EXPECT_EQ(Init(), E_FAIL);
  EXPECT_EQ(ErrorText(), "表被锁定");
  host_->gate = {};
  ASSERT_EQ(Init(), S_OK);
  Refresh();
  EXPECT_EQ(Message(), "");
}

TEST_F(Picker, FollowsTheHostsWheelUntilItIsCleared) {
  Wheel& source = StartWithWheel();
  const auto grid = Child<IFlexGrid>("Vs");
  const auto top = [&] {
    long row = 0;
    EXPECT_EQ(grid->get_TopRow(&row), S_OK);
    return row;
  };
  source.Turn(4);  // below the rate of 5: the row itself
  EXPECT_EQ(top(), 4);
  source.Turn(5);
  EXPECT_EQ(top(), 25);
  EXPECT_EQ(picker_->Clear(), S_OK);
  source.Turn(2);
  EXPECT_EQ(top(), 25);
}

/// A wheel that lets go of its control when the control tells it where the rows are.
TEST_F(Picker, LivesToTheEndOfAWheelsTurnInWhichItsLastHolderLetsGo) {
  Wheel& source = StartWithWheel();
  const auto controls = Controls();
  long count = 0;
  source.on_position = [&] {
    picker_ = nullptr;
    object_ = nullptr;
    EXPECT_EQ(controls->get_Count(&count), S_OK);
  };
  source.Turn(4);
  picker_ = nullptr;
  object_ = nullptr;
  EXPECT_TRUE(FAILED(controls->get_Count(&count)));
}

/// Whether the click is a call or the user's, who holds no reference.
TEST_F(Picker, LivesToTheEndOfAClickInWhichItsLastHolderLetsGo) {
  for (const bool by_user : {false, true}) {
    std::optional<ForeignContainer> container;
    if (by_user) {
      object_ = container.emplace(L"tavrix.selKjkm", 300, 400).Control();
      picker_ = object_.As<IPickerUI>();
    }
    ASSERT_EQ(Init(), S_OK);
    const auto controls = Controls();
    const auto ended = [&controls] {
      long count = 0;
      return FAILED(controls->get_Count(&count));
    };
    const auto refresh = Child<IButtonControl>("Cmd(2)");
    long window = 0;
    EXPECT_EQ(refresh->get_hWnd(&window), S_OK);
    int asked = 0;
    host_->gate = [&](const std::wstring& member) {
      if (member != L"OpenSql" || asked++ > 0) return;
      picker_ = nullptr;
      object_ = nullptr;
      if (container) container->Close();
      EXPECT_FALSE(ended()) << by_user;
    };
    if (by_user) {
      SendMessageW(reinterpret_cast<HWND>(static_cast<INT_PTR>(window)), BM_CLICK, 0, 0);
    } else {
      EXPECT_EQ(refresh->Click(), S_OK);
    }
    EXPECT_GT(asked, 0) << by_user;
    EXPECT_TRUE(ended()) << by_user;
    host_->gate = {};
  }
}

/// A host that closes its form when the pick is made.
TEST_F(Picker, MayBeClearedAndLetGoOfInItsOwnEvent) {
  ASSERT_EQ(Init(), S_OK);
  Refresh();
  std::vector<DISPID> heard;
  ComPtr<IDispatch> objects;
  long count = 0;
  std::unique_ptr<EventSink> sink;
  const auto listen = [&](DISPID event, const auto&) {
    heard.push_back(event);
    EXPECT_EQ(picker_->get_Objects(objects.Put()), S_OK);
    EXPECT_EQ(picker_->Clear(), S_OK);
    sink->Forget();
    picker_ = nullptr;
    object_ = nullptr;
    return S_OK;
  };
  sink = std::make_unique<EventSink>(object_.Get(), __uuidof(__selKjkm), listen);
  const auto controls = Controls();
  PickSecond();
  EXPECT_THAT(heard, ElementsAre(1));
  EXPECT_TRUE(FAILED(controls->get_Count(&count)));
  EXPECT_EQ(objects.As<_colKjkm>()->get_Count(&count), S_OK);
  EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace tavrix::test
