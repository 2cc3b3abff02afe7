#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <olectl.h>
#include <oleidl.h>

#include <string>

#include "component/base/identity.h"
#include "component/base/variant.h"
#include "component/foreign_container.h"
#include "component/named_object.h"
#include "qnDesignUI.h"
#include "tavrix.h"
#include "viewkit/win32/handles.h"
#include "viewkit/win32/view_window.h"

namespace tavrix::test {
namespace {

using component::Face;

/// The properties that a container offers to all its controls.
struct Ambients {
  long back_color = 0x00C0D0E0;
  long fore_color = 0x00403020;
  std::wstring face = viewkit::win32::FontSpec::System().face;  // one that is there
  int points = 15;
};

ComPtr<IDispatch> FontOf(Ambients& ambients) {
  FONTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = ambients.face.data();
  description.cySize.int64 = 10'000LL * ambients.points;
  description.sWeight = FW_BOLD;
  description.sCharset = DEFAULT_CHARSET;
  ComPtr<IDispatch> font;
  EXPECT_EQ(OleCreateFontIndirect(&description, IID_IDispatch, font.PutVoid()), S_OK);
  return font;
}

/// The site of one control that fills a window.
class Site : public component::Identity,
             public Face<IOleClientSite>,
             public Face<IOleInPlaceSite>,
             public Face<IDispatch> {
 public:
  Site(HWND window, Ambients& ambients)
      : Face<IOleClientSite>(static_cast<Identity&>(*this)),
        Face<IOleInPlaceSite>(static_cast<Identity&>(*this)),
        Face<IDispatch>(static_cast<Identity&>(*this)),
        window_(window),
        ambients_(ambients) {
    Publish(IID_IOleClientSite, static_cast<IOleClientSite*>(this));
    Publish(IID_IOleInPlaceSite, static_cast<IOleInPlaceSite*>(this));
    Publish(IID_IDispatch, static_cast<IDispatch*>(this));
  }

  STDMETHODIMP SaveObject() noexcept override { return S_OK; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** result) noexcept override {
    *result = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP ShowObject() noexcept override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() noexcept override { return E_NOTIMPL; }

  STDMETHODIMP GetWindow(HWND* result) noexcept override {
    *result = window_;
    return S_OK;
  }
  STDMETHODIMP ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() noexcept override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() noexcept override { return S_OK; }
  STDMETHODIMP OnUIActivate() noexcept override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                RECT* place, RECT* clip, OLEINPLACEFRAMEINFO*) noexcept override {
    *frame = nullptr;
    *document = nullptr;
    GetClientRect(window_, place);
    *clip = *place;
    return S_OK;
  }
  STDMETHODIMP Scroll(SIZE) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() noexcept override { return S_OK; }
  STDMETHODIMP DiscardUndoState() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(const RECT*) noexcept override { return S_OK; }

  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                      UINT*) noexcept override {
    if (id == DISPID_AMBIENT_FONT) {
      *result = Variant(FontOf(ambients_)).Detach();
    } else if (id == DISPID_AMBIENT_FORECOLOR) {
      *result = Variant(std::int32_t{ambients_.fore_color}).Detach();
    } else if (id == DISPID_AMBIENT_BACKCOLOR) {
      *result = Variant(std::int32_t{ambients_.back_color}).Detach();
    } else {
      return DISP_E_MEMBERNOTFOUND;
    }
    return S_OK;
  }

 private:
  HWND window_;
  Ambients& ambients_;
};

/// The font of the child control with this name.
LOGFONTW FontOfChild(const ComPtr<IUnknown>& control, const char* name) {
  ComPtr<IDispatch> controls;
  ComPtr<IDispatch> child;
  EXPECT_EQ(control.As<IDesignUI>()->get_Controls(controls.Put()), S_OK);
  EXPECT_EQ(
      controls.As<IChildControls>()->get_Item(Variant(std::string_view(name)).Get(), child.Put()),
      S_OK);
  long window = 0;
  EXPECT_EQ(child.As<IChildControl>()->get_hWnd(&window), S_OK);
  const auto font = reinterpret_cast<HFONT>(
      SendMessageW(reinterpret_cast<HWND>(static_cast<INT_PTR>(window)), WM_GETFONT, 0, 0));
  LOGFONTW facts{};
  EXPECT_NE(GetObjectW(font, sizeof facts, &facts), 0);
  return facts;
}

/// In which colour the view has its labels drawn.
COLORREF TextColorOf(HWND view) {
  const HDC dc = GetDC(view);
  const HWND label = GetWindow(view, GW_CHILD);
  SendMessageW(view, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
               reinterpret_cast<LPARAM>(label));
  const COLORREF color = GetTextColor(dc);
  ReleaseDC(view, dc);
  return color;
}

TEST(AmbientProperties, GiveTheControlItsFontAndColourAndChangeThem) {
  const viewkit::win32::OwnedWindow window(CreateWindowExW(
      0, L"STATIC", L"", WS_POPUP, 0, 0, 400, 300, nullptr, nullptr, nullptr, nullptr));
  Ambients ambients;
  const auto site = component::MakeObject<Site>(window.Get(), ambients);
  CLSID clsid{};
  ComPtr<IUnknown> control;
  ASSERT_EQ(CLSIDFromProgID(L"tavrix.selKjkm", &clsid), S_OK);
  ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, control.PutVoid()),
            S_OK);
  const auto ole = control.As<IOleObject>();
  const auto client = site.As<IOleClientSite>();
  ASSERT_EQ(ole->SetClientSite(client.Get()), S_OK);
  long color = 0;
  EXPECT_EQ(control.As<_selKjkm>()->get_BackColor(&color), S_OK);
  EXPECT_EQ(color, ambients.back_color);
  RECT place{0, 0, 400, 300};
  ASSERT_EQ(ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, client.Get(), 0, window.Get(), &place),
            S_OK);

  LOGFONTW font = FontOfChild(control, "SearchBox1");
  // A font object tells the size that it has come to have, which may be half a point off.
  const auto pixels = [&] { return MulDiv(ambients.points, GetDpiForWindow(window.Get()), 72); };
  EXPECT_NEAR(-font.lfHeight, pixels(), 1);
  EXPECT_EQ(font.lfWeight, FW_BOLD);
  const HWND view = GetWindow(window.Get(), GW_CHILD);
  EXPECT_EQ(TextColorOf(view), 0x00403020U);
  ambients.points = 11;
  ambients.back_color = 0x00102030;
  ambients.fore_color = 0x00FFF0F0;
  EXPECT_EQ(control.As<IOleControl>()->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
  font = FontOfChild(control, "SearchBox1");
  EXPECT_NEAR(-font.lfHeight, pixels(), 1);
  EXPECT_EQ(TextColorOf(view), 0x00FFF0F0U);
  EXPECT_EQ(control.As<_selKjkm>()->get_BackColor(&color), S_OK);
  EXPECT_EQ(color, ambients.back_color);
  // A colour that a caller has set counts more than the container's.
  EXPECT_EQ(control.As<_selKjkm>()->put_BackColor(0x00FFFFFF), S_OK);
  EXPECT_EQ(control.As<IOleControl>()->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
  EXPECT_EQ(control.As<_selKjkm>()->get_BackColor(&color), S_OK);
  EXPECT_EQ(color, 0x00FFFFFF);
  EXPECT_EQ(ole->Close(OLECLOSE_NOSAVE), S_OK);
  EXPECT_EQ(ole->SetClientSite(nullptr), S_OK);
}

}  // namespace
}  // namespace tavrix::test
