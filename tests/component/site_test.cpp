#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <ole2.h>
#include <olectl.h>

#include <string>
#include <utility>
#include <vector>

#include "com/bstr.h"
#include "component/answers.h"
#include "component/loaded_library.h"
#include "component/own_container.h"
#include "component/stub_host.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "support/matchers.h"
#include "tavrix.h"

namespace tavrix::test {
namespace {

ComPtr<IChildControls> ControlsOf(const ComPtr<IUnknown>& control) {
  ComPtr<IDispatch> controls;
  EXPECT_EQ(control.As<IDesignUI>()->get_Controls(controls.Put()), S_OK);
  return controls.As<IChildControls>();
}

template <class Interface>
ComPtr<Interface> Child(const ComPtr<IUnknown>& control, const char* name) {
  ComPtr<IDispatch> child;
  EXPECT_EQ(ControlsOf(control)->get_Item(Variant(std::string_view(name)).Get(), child.Put()),
            S_OK);
  return child.As<Interface>();
}

void Load(const ComPtr<IUnknown>& view, const std::shared_ptr<StubHost>& host) {
  const auto system = StubHost::System(host);
  IDispatch* given = system.Get();
  VARIANT_BOOL done = VARIANT_FALSE;
  ASSERT_EQ(view.As<IFormUI>()->Init(&given, 1, 0, &done), S_OK);
  ASSERT_EQ(view.As<IFormUI>()->Refresh(&done), S_OK);
}

/// What `FileDelete` answers with the first account current.
bool Delete(const ComPtr<IUnknown>& view) {
  EXPECT_EQ(Child<IFlexGrid>(view, "Vs(0)")->put_Row(1), S_OK);
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(view.As<IFormUI>()->FileDelete(&done), S_OK);
  return done != VARIANT_FALSE;
}

class Sited : public testing::Test {
 protected:
  OwnContainer container_;
};

TEST_F(Sited, LeavesTheContainersAcceleratorsAlone) {
  ACCEL key{FVIRTKEY, VK_F9, 1};
  container_.accelerators = CreateAcceleratorTableW(&key, 1);
  const auto control = container_.Place(L"tavrix.Kjkm");
  EXPECT_EQ(container_.Do(control, OLEIVERB_INPLACEACTIVATE), S_OK);
  EXPECT_EQ(CopyAcceleratorTableW(container_.accelerators, nullptr, 0), 1);
  container_.Remove(control);
  EXPECT_TRUE(DestroyAcceleratorTable(container_.accelerators));
}

TEST_F(Sited, IsShownAgainByEveryVerbThatShows) {
  const auto control = container_.Place(L"tavrix.Kjkm");
  for (const LONG verb :
       {OLEIVERB_SHOW, OLEIVERB_INPLACEACTIVATE, OLEIVERB_UIACTIVATE, OLEIVERB_PRIMARY}) {
    EXPECT_EQ(container_.Do(control, verb), S_OK);
    EXPECT_TRUE(IsWindowVisible(container_.ControlWindow())) << verb;
    EXPECT_EQ(container_.Do(control, OLEIVERB_HIDE), S_OK);
    EXPECT_FALSE(IsWindowVisible(container_.ControlWindow())) << verb;
  }
  EXPECT_EQ(container_.Do(control, 7), OLEOBJ_S_INVALIDVERB);
  EXPECT_TRUE(IsWindowVisible(container_.ControlWindow())) << "taken for the first verb";
  EXPECT_EQ(container_.Do(control, -77), E_NOTIMPL);
  auto* verbs = reinterpret_cast<IEnumOLEVERB*>(1);
  EXPECT_EQ(control.As<IOleObject>()->EnumVerbs(&verbs), OLEOBJ_E_NOVERBS);
  EXPECT_EQ(verbs, nullptr);
  container_.Remove(control);
}

TEST_F(Sited, LeavesASiteThatDoesNotTakeItAndItsOldOneForAnother) {
  const auto control = container_.Place(L"tavrix.Kjkm");
  std::vector<std::string> calls;
  std::string refused = "CanInPlaceActivate";
  container_.on_call = [&](const std::string& member) {
    calls.push_back(member);
    return member == refused ? E_FAIL : S_OK;
  };
  EXPECT_EQ(container_.Do(control, OLEIVERB_SHOW), E_FAIL);
  EXPECT_THAT(calls, ElementsAre(refused));
  refused = "OnInPlaceActivate";
  calls.clear();
  EXPECT_EQ(container_.Do(control, OLEIVERB_SHOW), E_FAIL);
  EXPECT_THAT(calls, ElementsAre("CanInPlaceActivate", refused));
  refused = "GetWindowContext";
  calls.clear();
  EXPECT_EQ(container_.Do(control, OLEIVERB_SHOW), E_FAIL);
  EXPECT_EQ(calls.back(), "OnInPlaceDeactivate");
  refused.clear();
  EXPECT_EQ(container_.Do(control, OLEIVERB_SHOW), S_OK);
  EXPECT_NE(container_.ControlWindow(), nullptr);
  OwnContainer other;
  calls.clear();
  EXPECT_EQ(control.As<IOleObject>()->SetClientSite(other.MakeSite().Get()), S_OK);
  EXPECT_THAT(calls, testing::Contains("OnInPlaceDeactivate"));
  EXPECT_EQ(container_.ControlWindow(), nullptr);
  other.clips = false;
  EXPECT_EQ(other.Do(control, OLEIVERB_SHOW), S_OK);
  const HRGN region = CreateRectRgn(0, 0, 0, 0);
  EXPECT_EQ(GetWindowRgn(other.ControlWindow(), region), ERROR) << "all of it is shown";
  DeleteObject(region);
  other.Remove(control);
}

TEST_F(Sited, TellsWhichKeysItsFocusedPartEats) {
  const auto control = container_.Place(L"tavrix.selKjkm");
  const auto eaten = [&] {
    CONTROLINFO info{};
    info.cb = sizeof info;
    EXPECT_EQ(control.As<IOleControl>()->GetControlInfo(&info), S_OK);
    return info.dwFlags;
  };
  const auto focus = [&](const char* name) {
    long window = 0;
    EXPECT_EQ(Child<IChildControl>(control, name)->get_hWnd(&window), S_OK);
    SetFocus(reinterpret_cast<HWND>(static_cast<LONG_PTR>(window)));
  };
  EXPECT_EQ(eaten(), 0U) << "not active";
  ASSERT_EQ(container_.Do(control, OLEIVERB_UIACTIVATE), S_OK);
  focus("Check");
  EXPECT_EQ(eaten(), 0U);
  container_.control_info_changes = 0;
  focus("Vs");
  EXPECT_EQ(eaten(), DWORD{CTRLINFO_EATS_RETURN});
  EXPECT_EQ(container_.control_info_changes, 1);
  focus("TV");
  EXPECT_EQ(container_.control_info_changes, 1) << "it eats the same";
  focus("Check");
  EXPECT_EQ(container_.control_info_changes, 2);
  container_.Remove(control);
}

TEST_F(Sited, TellsItsFrameOfModalWindows) {
  const auto host = FewAccounts();
  const auto control = container_.Place(L"tavrix.Kjkm");
  ASSERT_EQ(container_.Do(control, OLEIVERB_INPLACEACTIVATE), S_OK);
  Load(control, host);
  const Answers answers(IDNO);
  EXPECT_FALSE(Delete(control));
  EXPECT_EQ(answers.Boxes(), 1);
  EXPECT_THAT(container_.modeless, ElementsAre(false, true));
  container_.Remove(control);
}

/// The container lets go of the control, and of all there is of it, while its question is open.
TEST_F(Sited, EndsAfterTheCallInWhoseQuestionItsContainerLetGo) {
  const LoadedLibrary library;
  ComPtr<IUnknown> control = container_.Place(L"tavrix.Kjkm");
  ASSERT_EQ(container_.Do(control, OLEIVERB_INPLACEACTIVATE), S_OK);
  Load(control, FewAccounts());
  EXPECT_EQ(Child<IFlexGrid>(control, "Vs(0)")->put_Row(1), S_OK);
  IFormUI* const bare = control.As<IFormUI>().Get();
  container_.on_call = [&](const std::string& member) {
    if (control && member == "EnableModeless") container_.Remove(std::exchange(control, nullptr));
    return S_OK;
  };
  const Answers answers(IDYES);
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(bare->FileDelete(&done), S_OK);
  EXPECT_THAT(container_.modeless, ElementsAre(false, true)) << "its frame is not left disabled";
  EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

/// A program that handles no messages.
TEST(Console, NothingIsLeftOfAViewThatHasAsked) {
  const LoadedLibrary library;
  auto view = CreateView();
  Load(view, FewAccounts());
  const Answers answers(IDNO);
  EXPECT_FALSE(Delete(view));
  EXPECT_EQ(answers.Boxes(), 1);
  view = nullptr;
  EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST_F(Sited, SavesAtItsEndWhatHasChanged) {
  const auto control = container_.Place(L"tavrix.Kjkm");
  const auto ole = control.As<IOleObject>();
  const auto kept = control.As<IPersistStreamInit>();
  EXPECT_EQ(ole->Close(OLECLOSE_NOSAVE), S_OK);
  EXPECT_EQ(container_.saved, 0);
  EXPECT_EQ(kept->IsDirty(), S_OK) << "never saved";
  EXPECT_EQ(ole->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
  EXPECT_EQ(container_.saved, 1);
  ComPtr<IStream> stream;
  ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()), S_OK);
  EXPECT_EQ(kept->Save(stream.Get(), TRUE), S_OK);
  EXPECT_EQ(kept->IsDirty(), S_FALSE);
  EXPECT_EQ(ole->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
  EXPECT_EQ(container_.saved, 1) << "nothing has changed since";
  container_.Remove(control);
}

/// Hears that an object has been closed.
class CloseSink : public com::Implements<IAdviseSink> {
 public:
  explicit CloseSink(int& closed) : closed_(closed) {}
  STDMETHODIMP_(void) OnDataChange(FORMATETC*, STGMEDIUM*) noexcept override {}
  STDMETHODIMP_(void) OnViewChange(DWORD, LONG) noexcept override {}
  STDMETHODIMP_(void) OnRename(IMoniker*) noexcept override {}
  STDMETHODIMP_(void) OnSave() noexcept override {}
  STDMETHODIMP_(void) OnClose() noexcept override { ++closed_; }

 private:
  int& closed_;
};

TEST_F(Sited, ClosesThoughItsContainerCannotSaveIt) {
  const auto control = container_.Place(L"tavrix.Kjkm");
  int closed = 0;
  DWORD cookie = 0;
  const auto sink = com::MakeObject<CloseSink>(closed).As<IAdviseSink>();
  EXPECT_EQ(control.As<IOleObject>()->Advise(sink.Get(), &cookie), S_OK);
  for (const HRESULT answer : {E_ACCESSDENIED, E_NOTIMPL}) {
    ASSERT_EQ(container_.Do(control, OLEIVERB_SHOW), S_OK);
    container_.on_call = [answer](const std::string& member) {
      return member == "SaveObject" ? answer : S_OK;
    };
    EXPECT_EQ(control.As<IOleObject>()->Close(OLECLOSE_SAVEIFDIRTY),
              answer == E_NOTIMPL ? S_OK : answer);
    EXPECT_EQ(container_.ControlWindow(), nullptr);
  }
  EXPECT_EQ(closed, 2);
  container_.Remove(control);
}

/// Name, place and, of a grid, the widths of its columns, of each part.
std::vector<std::string> LayoutOf(const ComPtr<IUnknown>& control) {
  std::vector<std::string> lines;
  const auto controls = ControlsOf(control);
  long count = 0;
  EXPECT_EQ(controls->get_Count(&count), S_OK);
  for (long i = 1; i <= count; ++i) {
    ComPtr<IDispatch> item;
    EXPECT_EQ(controls->get_Item(Variant(std::int32_t{i}).Get(), item.Put()), S_OK);
    const auto child = item.As<IChildControl>();
    std::string line = std::to_string(i);
    for (const auto side : {&IChildControl::get_Left, &IChildControl::get_Top,
                            &IChildControl::get_Width, &IChildControl::get_Height}) {
      long length = 0;
      EXPECT_EQ((child.Get()->*side)(&length), S_OK);
      line += " " + std::to_string(length);
    }
    if (const auto grid = item.As<IFlexGrid>()) {
      long columns = 0;
      EXPECT_EQ(grid->get_Cols(&columns), S_OK);
      for (long column = 0; column < columns; ++column) {
        long width = 0;
        EXPECT_EQ(grid->get_ColWidth(column, &width), S_OK);
        line += " " + std::to_string(width);
      }
    }
    lines.push_back(line);
  }
  return lines;
}

TEST(Picture, LeavesTheLayoutOfAViewWithoutAWindow) {
  OwnContainer container;
  for (const wchar_t* prog_id : {L"tavrix.Kjkm", L"tavrix.selKjkm"}) {
    const auto control = container.Place(prog_id);
    SIZEL extent{9000, 7000};
    EXPECT_EQ(control.As<IOleObject>()->SetExtent(DVASPECT_CONTENT, &extent), S_OK);
    // What a host has placed itself stays there too.
    const char* name = prog_id[7] == L'K' ? "Vs(0)" : "Vs";
    EXPECT_EQ(Child<IChildControl>(control, name)->put_Left(333), S_OK);
    const auto before = LayoutOf(control);
    const HDC screen = GetDC(nullptr);
    const HDC dc = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 120, 80);
    const HGDIOBJ old = SelectObject(dc, bitmap);
    const RECTL area{0, 0, 120, 80};
    EXPECT_EQ(control.As<IViewObject>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc,
                                              &area, nullptr, nullptr, 0),
              S_OK);
    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    EXPECT_EQ(LayoutOf(control), before);
    container.Remove(control);
  }
}

/// The properties of a design as text, by name.
class Bag : public com::Implements<IPropertyBag> {
 public:
  STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog*) noexcept override {
    if (std::wstring(name) != name_) return E_INVALIDARG;
    *value = Variant(value_).Detach();
    return S_OK;
  }
  STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) noexcept override {
    name_ = name;
    value_ = Variant(*value);
    return S_OK;
  }

 private:
  std::wstring name_;
  Variant value_;
};

class Kept : public testing::Test {
 protected:
  Kept() {
    EXPECT_EQ(view_.As<_Kjkm>()->put_BackColor(0x00123456), S_OK);
    SIZEL extent{9000, 7000};
    EXPECT_EQ(view_.As<IOleObject>()->SetExtent(DVASPECT_CONTENT, &extent), S_OK);
  }
  [[nodiscard]] static OLE_COLOR ColorOf(const ComPtr<IUnknown>& view) {
    OLE_COLOR color = 0;
    EXPECT_EQ(view.As<_Kjkm>()->get_BackColor(&color), S_OK);
    return color;
  }
  static void ExpectRestored(const ComPtr<IUnknown>& view) {
    EXPECT_EQ(ColorOf(view), 0x00123456U);
    SIZEL extent{};
    EXPECT_EQ(view.As<IOleObject>()->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
    EXPECT_EQ(extent.cx, 9000);
    EXPECT_EQ(extent.cy, 7000);
    EXPECT_EQ(view.As<IPersistStreamInit>()->IsDirty(), S_FALSE);
  }

  ComPtr<IUnknown> view_ = CreateView();
  ComPtr<IUnknown> other_ = CreateView();
};

TEST_F(Kept, ComesBackFromAStreamAndABrokenOneChangesNothing) {
  ComPtr<IStream> stream;
  ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()), S_OK);
  EXPECT_EQ(view_.As<IPersistStreamInit>()->Save(stream.Get(), TRUE), S_OK);
  const LARGE_INTEGER start{};
  ULARGE_INTEGER most{};
  ULARGE_INTEGER end{};
  EXPECT_EQ(view_.As<IPersistStreamInit>()->GetSizeMax(&most), S_OK);
  EXPECT_EQ(stream->Seek(start, STREAM_SEEK_CUR, &end), S_OK);
  EXPECT_LE(end.QuadPart, most.QuadPart);
  EXPECT_EQ(stream->Seek(start, STREAM_SEEK_SET, nullptr), S_OK);
  EXPECT_EQ(other_.As<IPersistStreamInit>()->Load(stream.Get()), S_OK);
  ExpectRestored(other_);
  EXPECT_TRUE(FAILED(other_.As<IPersistStreamInit>()->Load(stream.Get()))) << "at its end";
  const DWORD version = 99;
  EXPECT_EQ(stream->Seek(start, STREAM_SEEK_SET, nullptr), S_OK);
  EXPECT_EQ(stream->Write(&version, sizeof version, nullptr), S_OK);
  EXPECT_EQ(stream->Seek(start, STREAM_SEEK_SET, nullptr), S_OK);
  EXPECT_TRUE(FAILED(other_.As<IPersistStreamInit>()->Load(stream.Get()))) << "of the future";
  ExpectRestored(other_);
}

TEST_F(Kept, ComesBackFromAStorage) {
  ComPtr<IStorage> storage;
  constexpr DWORD kMode =
      STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_DELETEONRELEASE;
  ASSERT_EQ(StgCreateDocfile(nullptr, kMode, 0, storage.Put()), S_OK);
  EXPECT_TRUE(FAILED(other_.As<IPersistStorage>()->Load(storage.Get()))) << "empty";
  EXPECT_EQ(view_.As<IPersistStorage>()->Save(storage.Get(), FALSE), S_OK);
  EXPECT_EQ(view_.As<IPersistStorage>()->IsDirty(), S_FALSE);
  EXPECT_EQ(other_.As<IPersistStorage>()->Load(storage.Get()), S_OK);
  ExpectRestored(other_);
}

TEST_F(Kept, ComesBackFromPropertiesByName) {
  const auto bag = com::MakeObject<Bag>().As<IPropertyBag>();
  const OLE_COLOR before = ColorOf(other_);
  EXPECT_EQ(other_.As<IPersistPropertyBag>()->Load(bag.Get(), nullptr), S_OK);
  EXPECT_EQ(ColorOf(other_), before) << "a property that is missing";
  EXPECT_EQ(view_.As<IPersistPropertyBag>()->Save(bag.Get(), TRUE, TRUE), S_OK);
  EXPECT_EQ(other_.As<IPersistPropertyBag>()->Load(bag.Get(), nullptr), S_OK);
  EXPECT_EQ(ColorOf(other_), 0x00123456U);
  VARIANT unsigned_color = Variant(2147483663.0).Detach();
  EXPECT_EQ(bag->Write(L"BackColor", &unsigned_color), S_OK);
  EXPECT_EQ(other_.As<IPersistPropertyBag>()->Load(bag.Get(), nullptr), S_OK);
  EXPECT_EQ(ColorOf(other_), 0x8000000F);
}

}  // namespace
}  // namespace tavrix::test
