#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <olectl.h>
#include <oleidl.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "com/failure.h"
#include "component/event_sink.h"
#include "component/loaded_library.h"
#include "component/stub_host.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "support/matchers.h"
#include "tavrix.h"

namespace tavrix::test {
namespace {

/// The rules of identity hold from each interface to each other.
TEST(Identity, IsOneFromEveryInterfaceToEveryOther) {
  const IID interfaces[] = {IID_IUnknown,
                            IID_IDispatch,
                            __uuidof(_Kjkm),
                            __uuidof(IFormUI),
                            __uuidof(IDesignUI),
                            IID_IOleObject,
                            IID_IOleWindow,
                            IID_IOleInPlaceObject,
                            IID_IOleInPlaceActiveObject,
                            IID_IOleControl,
                            IID_IViewObject,
                            IID_IViewObject2,
                            IID_IPersist,
                            IID_IPersistStreamInit,
                            IID_IPersistPropertyBag,
                            IID_IPersistStorage,
                            IID_IConnectionPointContainer,
                            IID_IProvideClassInfo,
                            IID_IProvideClassInfo2,
                            IID_ISupportErrorInfo};
  const auto view = CreateView();
  std::vector<ComPtr<IUnknown>> pointers;
  for (const IID& iid : interfaces) {
    pointers.push_back(view.As<IUnknown>(iid));
    ASSERT_TRUE(pointers.back()) << pointers.size() - 1;
  }
  for (const auto& from : pointers) {
    EXPECT_EQ(from.As<IUnknown>(IID_IUnknown).Get(), pointers[0].Get());
    EXPECT_FALSE(from.As<IUnknown>(IID_IStream));
    for (std::size_t to = 0; to < pointers.size(); ++to) {
      EXPECT_EQ(from.As<IUnknown>(interfaces[to]).Get(), pointers[to].Get()) << to;
    }
  }
}

TEST(Identity, TellsItsClassItsEventsAndItsErrors) {
  const auto view = CreateView();
  const auto info = view.As<IProvideClassInfo2>();
  GUID source{};
  EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source), S_OK);
  EXPECT_EQ(source, __uuidof(__Kjkm));
  EXPECT_EQ(info->GetGUID(99, &source), E_INVALIDARG);
  ComPtr<ITypeInfo> description;
  ASSERT_EQ(info->GetClassInfo(description.Put()), S_OK);
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(description->GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, __uuidof(Kjkm));
  EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
  description->ReleaseTypeAttr(attributes);
  const auto errors = view.As<ISupportErrorInfo>();
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(IFormUI)), S_OK);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(IDesignUI)), S_OK);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(__uuidof(_Kjkm)), S_OK);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IOleObject), S_FALSE);
  ComPtr<IDispatch> controls;
  ComPtr<IDispatch> child;
  ASSERT_EQ(view.As<IDesignUI>()->get_Controls(controls.Put()), S_OK);
  ASSERT_EQ(controls.As<IChildControls>()->get_Item(Variant(std::int32_t{1}).Get(), child.Put()),
            S_OK);
  EXPECT_EQ(child.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(__uuidof(IChildControl)),
            S_OK);
}

TEST(Identity, AnswersEveryNameItIsAskedFor) {
  const auto view = CreateView().As<IDispatch>();
  std::wstring member = L"IDesignUI_Parameters";
  std::wstring argument = L"parameters";
  LPOLESTR names[] = {member.data(), argument.data()};
  DISPID ids[] = {4711, 4711};
  EXPECT_EQ(view->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, ids), S_OK);
  const DISPID known = ids[0];
  EXPECT_EQ(view->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
  EXPECT_THAT(ids, ElementsAre(known, DISPID_UNKNOWN));
}

/// A call by name as a script engine makes it: arguments in reverse, the first of them named.
struct Late {
  explicit Late(const ComPtr<IUnknown>& object) : object_(object.As<IDispatch>()) {}
  [[nodiscard]] HRESULT Call(const wchar_t* name, std::vector<VARIANT> arguments,
                             std::vector<DISPID> named = {}) {
    std::wstring text = name;
    LPOLESTR given = text.data();
    DISPID id = 0;
    com::Check(object_->GetIDsOfNames(IID_NULL, &given, 1, LOCALE_USER_DEFAULT, &id));
    const bool puts = named == std::vector<DISPID>{DISPID_PROPERTYPUT};
    DISPPARAMS all{arguments.data(), named.data(), static_cast<UINT>(arguments.size()),
                   static_cast<UINT>(named.size())};
    return object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT,
                           puts ? DISPATCH_PROPERTYPUT : DISPATCH_METHOD, &all, nullptr, nullptr,
                           &wrong);
  }
  UINT wrong = 4711;

 private:
  ComPtr<IDispatch> object_;
};

TEST(LateCalls, TellWhichArgumentIsWrong) {
  Late view(CreateView());
  const Variant name(std::string_view("x"));
  EXPECT_EQ(view.Call(L"DoSetStatus", {name.Get(), name.Get()}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(view.wrong, 0U);
  EXPECT_EQ(view.Call(L"DoSetStatus", {name.Get(), name.Get()}, {0, 1}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(view.wrong, 1U) << "by its name";
  EXPECT_EQ(view.Call(L"DoSetStatus", {Variant(true).Get(), name.Get()}, {1, 0}), S_OK);
  EXPECT_EQ(view.Call(L"DoSetStatus", {name.Get(), Variant(true).Get()}, {9}),
            DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(view.wrong, 0U);
}

TEST(LateCalls, TakeAColorOfTheSystemWithoutASign) {
  const auto view = CreateView();
  VARIANT whole{};
  whole.vt = VT_UI4;
  whole.ulVal = 0x80000005;
  for (const VARIANT& color : {Variant(2147483653.0).Get(), whole}) {
    EXPECT_EQ(view.As<_Kjkm>()->put_BackColor(0), S_OK);
    EXPECT_EQ(Late(view).Call(L"BackColor", {color}, {DISPID_PROPERTYPUT}), S_OK);
    OLE_COLOR now = 0;
    EXPECT_EQ(view.As<_Kjkm>()->get_BackColor(&now), S_OK);
    EXPECT_EQ(now, 0x80000005);
  }
  const VARIANT beyond = Variant(4294967296.0).Get();
  EXPECT_EQ(Late(view).Call(L"BackColor", {beyond}, {DISPID_PROPERTYPUT}), DISP_E_OVERFLOW);
}

TEST(LateCalls, LeaveAVariableAloneThatTheMemberDoesNotFill) {
  const auto view = CreateView();
  Variant nothing;
  EXPECT_EQ(Late(view).Call(L"Check", {nothing.Reference()}), S_OK);
  EXPECT_EQ(nothing.Type(), VT_EMPTY);
  // A host that puts something else there meanwhile keeps it.
  const auto host = FewAccounts();
  Variant system(StubHost::System(host));
  host->gate = [&](const std::wstring&) { system = Variant(std::int32_t{5}); };
  const Variant one(std::int32_t{1});
  const VARIANT given = system.Reference();
  EXPECT_EQ(Late(view).Call(L"Init", {one.Get(), one.Get(), given}), S_OK);
  EXPECT_EQ(system.Type(), VT_I4);
}

/// A view that raises a report at each `Refresh`, because nobody has initialised it.
class Events : public testing::Test {
 protected:
  void Raise() {
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(view_.As<IFormUI>()->Refresh(&done), S_OK);
  }
  using Sink = std::unique_ptr<EventSink>;
  /// A listener that writes its name down and then does `more`.
  [[nodiscard]] Sink Listen(const char* name, std::function<HRESULT()> more = {}) {
    return std::make_unique<EventSink>(view_.Get(), __uuidof(__Kjkm),
                                       [this, name, more](DISPID, const std::vector<Variant>&) {
                                         heard_.emplace_back(name);
                                         return more ? more() : S_OK;
                                       });
  }

  ComPtr<IUnknown> view_ = CreateView();
  std::vector<std::string> heard_;
};

TEST_F(Events, ReachEverySinkThoughOneFails) {
  const Sink failing = Listen("failing", [] { return E_FAIL; });
  const Sink gone = Listen("disconnected", [] { return RPC_E_DISCONNECTED; });
  const Sink last = Listen("last");
  Raise();
  EXPECT_THAT(heard_, ElementsAre("failing", "disconnected", "last"));
  Raise();
  EXPECT_EQ(heard_.size(), 6U);
}

TEST_F(Events, SinksMayComeAndGoMeanwhile) {
  Sink late;
  Sink victim;
  Sink self;
  self = Listen("self", [&] {
    victim.reset();
    late = Listen("late");
    self->Stop();
    return S_OK;
  });
  victim = Listen("victim");
  const Sink last = Listen("last");
  Raise();
  EXPECT_THAT(heard_, ElementsAre("self", "last")) << "gone ones hear nothing, new ones not yet";
  heard_.clear();
  Raise();
  EXPECT_THAT(heard_, ElementsAre("last", "late"));
}

TEST_F(Events, Nest) {
  int depth = 0;
  const Sink nested = Listen("outer", [&] {
    if (++depth < 3) Raise();
    return S_OK;
  });
  const Sink last = Listen("last");
  Raise();
  EXPECT_THAT(heard_, ElementsAre("outer", "outer", "outer", "last", "last", "last"));
}

/// The object ends as soon as the call has ended in which its last holder has let go of it.
TEST_F(Events, OutliveTheLastHolderOfTheirObject) {
  ComPtr<IDispatch> controls;
  ASSERT_EQ(view_.As<IDesignUI>()->get_Controls(controls.Put()), S_OK);
  const auto alive = [&controls] {
    long count = 0;
    return SUCCEEDED(controls.As<IChildControls>()->get_Count(&count));
  };
  IFormUI* const bare = view_.As<IFormUI>().Get();
  Sink letting_go;
  Sink last;
  letting_go = Listen("letting go", [&] {
    letting_go->Forget();
    last->Forget();
    view_ = nullptr;
    EXPECT_TRUE(alive());
    return S_OK;
  });
  last = Listen("last");
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(bare->Refresh(&done), S_OK);
  EXPECT_THAT(heard_, ElementsAre("letting go", "last"));
  EXPECT_FALSE(alive());
}

/// An object that a view is a part of: it answers IFormUI and the like with the view's.
class Outer : public IUnknown {
 public:
  Outer() {
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(L"tavrix.Kjkm", &clsid), S_OK);
    EXPECT_EQ(CoCreateInstance(clsid, this, CLSCTX_INPROC_SERVER, IID_IUnknown, inner_.PutVoid()),
              S_OK);
  }
  STDMETHODIMP QueryInterface(REFIID iid, void** result) noexcept override {
    if (IsEqualGUID(iid, IID_IUnknown) == FALSE) return inner_->QueryInterface(iid, result);
    AddRef();
    *result = static_cast<IUnknown*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    EXPECT_GT(references_, 0U);
    return --references_;
  }
  [[nodiscard]] ULONG References() const { return references_; }
  [[nodiscard]] const ComPtr<IUnknown>& Inner() const { return inner_; }

 private:
  ULONG references_ = 1;
  ComPtr<IUnknown> inner_;
};

TEST(Aggregation, TheOuterObjectIsWhatCallersSeeAndNothingKeepsIt) {
  const LoadedLibrary library;
  ASSERT_EQ(library.CanUnloadNow(), S_OK);
  {
    Outer outer;
    const auto form = ComPtr<IUnknown>(&outer).As<IFormUI>();
    ASSERT_TRUE(form);
    EXPECT_EQ(form.As<IUnknown>().Get(), &outer);
    EXPECT_EQ(form.As<IDesignUI>().As<IUnknown>().Get(), &outer);
    EXPECT_NE(outer.Inner().Get(), &outer);
    int heard = 0;
    EventSink sink(&outer, __uuidof(__Kjkm), [&](DISPID, const auto&) {
      ++heard;
      return S_OK;
    });
    VARIANT_BOOL done = VARIANT_FALSE;
    const ULONG before = outer.References();
    EXPECT_EQ(form->Refresh(&done), S_OK);
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(outer.References(), before) << "no event holds it until messages are handled";
  }
  EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST_F(Events, ReachASinkThatKnowsNoneOfTheirInterfaces) {
  const auto note = [this](const StubCall&) {
    heard_.emplace_back("by number");
    return Variant();
  };
  const auto sink = NamedObject::Make({{L"Message", note}, {L"ErrMessage", note}});
  ComPtr<IConnectionPoint> point;
  ASSERT_EQ(
      view_.As<IConnectionPointContainer>()->FindConnectionPoint(__uuidof(__Kjkm), point.Put()),
      S_OK);
  DWORD cookie = 0;
  ASSERT_EQ(point->Advise(sink.Get(), &cookie), S_OK);
  Raise();
  EXPECT_THAT(heard_, ElementsAre("by number"));
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(Events, WaitWhileFrozen) {
  const Sink sink = Listen("thawed");
  const auto control = view_.As<IOleControl>();
  control->FreezeEvents(TRUE);
  control->FreezeEvents(TRUE);
  Raise();
  control->FreezeEvents(FALSE);
  EXPECT_TRUE(heard_.empty());
  control->FreezeEvents(FALSE);
  EXPECT_THAT(heard_, ElementsAre("thawed"));
  control->FreezeEvents(FALSE);  // one too many does no harm
  Raise();
  EXPECT_EQ(heard_.size(), 2U);
}

TEST_F(Events, WaitAgainWhenAListenerFreezesThem) {
  const auto control = view_.As<IOleControl>();
  const Sink sink = Listen("heard", [&] {
    control->FreezeEvents(TRUE);
    return S_OK;
  });
  control->FreezeEvents(TRUE);
  Raise();
  Raise();
  control->FreezeEvents(FALSE);
  EXPECT_EQ(heard_.size(), 1U);
  control->FreezeEvents(FALSE);
  EXPECT_EQ(heard_.size(), 2U);
}

TEST_F(Events, PointsFollowTheProtocol) {
  const auto container = view_.As<IConnectionPointContainer>();
  ComPtr<IConnectionPoint> point;
  EXPECT_EQ(container->FindConnectionPoint(IID_IPropertyNotifySink, point.Put()),
            CONNECT_E_NOCONNECTION);
  EXPECT_FALSE(point);
  ComPtr<IEnumConnectionPoints> points;
  ASSERT_EQ(container->EnumConnectionPoints(points.Put()), S_OK);
  ASSERT_EQ(points->Next(1, point.Put(), nullptr), S_OK);
  IID events{};
  EXPECT_EQ(point->GetConnectionInterface(&events), S_OK);
  EXPECT_EQ(events, __uuidof(__Kjkm));
  ComPtr<IConnectionPointContainer> back;
  EXPECT_EQ(point->GetConnectionPointContainer(back.Put()), S_OK);
  EXPECT_EQ(back.Get(), container.Get());
  EXPECT_NE(point.As<IUnknown>().Get(), view_.As<IUnknown>().Get()) << "an identity of its own";

  DWORD cookie = 7;
  EXPECT_EQ(point->Advise(nullptr, &cookie), E_POINTER);
  EXPECT_EQ(point->Advise(point.Get(), &cookie), CONNECT_E_CANNOTCONNECT);
  EXPECT_EQ(cookie, 0U);
  EXPECT_EQ(point->Unadvise(4711), CONNECT_E_NOCONNECTION);

  const Sink first = Listen("first");
  const Sink second = Listen("second");
  ComPtr<IEnumConnections> connections;
  ASSERT_EQ(point->EnumConnections(connections.Put()), S_OK);
  CONNECTDATA data[3] = {};
  ULONG fetched = 0;
  EXPECT_EQ(connections->Next(3, data, &fetched), S_FALSE);
  ASSERT_EQ(fetched, 2U);
  EXPECT_NE(data[0].dwCookie, data[1].dwCookie);
  for (ULONG i = 0; i < fetched; ++i) {
    EXPECT_EQ(point->Unadvise(data[i].dwCookie), S_OK);
    EXPECT_EQ(point->Unadvise(data[i].dwCookie), CONNECT_E_NOCONNECTION);
    data[i].pUnk->Release();
  }
  Raise();
  EXPECT_TRUE(heard_.empty());
}

}  // namespace
}  // namespace tavrix::test
