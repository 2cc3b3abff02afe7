#include "component/own_container.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include "com/com_object.h"
#include "com/failure.h"
#include "com/variant.h"

namespace tavrix::test {

using com::Variant;

namespace {

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

/// The frame around the container: a window without borders or menus to lend.
class Frame : public com::Implements<IOleInPlaceFrame> {
 public:
  explicit Frame(OwnContainer& container) : container_(container) {}
  STDMETHODIMP GetWindow(HWND* result) noexcept override {
    *result = container_.window.Get();
    return S_OK;
  }
  STDMETHODIMP ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetBorder(RECT*) noexcept override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP RequestBorderSpace(const BORDERWIDTHS*) noexcept override {
    return INPLACE_E_NOTOOLSPACE;
  }
  STDMETHODIMP SetBorderSpace(const BORDERWIDTHS*) noexcept override {
    return container_.Hear("SetBorderSpace");
  }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject*, LPCOLESTR) noexcept override {
    return container_.Hear("SetActiveObject");
  }
  STDMETHODIMP InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP RemoveMenus(HMENU) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP SetStatusText(LPCOLESTR) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP EnableModeless(BOOL enable) noexcept override {
    container_.modeless.push_back(enable != FALSE);
    return container_.Hear("EnableModeless");
  }
  STDMETHODIMP TranslateAccelerator(MSG*, WORD) noexcept override { return S_FALSE; }

 private:
  OwnContainer& container_;
};

/// The site of one control that fills a window.
class Site : public com::Implements<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch> {
 public:
  explicit Site(OwnContainer& container) : container_(container) {}

  STDMETHODIMP SaveObject() noexcept override {
    ++container_.saved;
    return container_.Hear("SaveObject");
  }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** result) noexcept override {
    *result = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP ShowObject() noexcept override { return container_.Hear("ShowObject"); }
  STDMETHODIMP OnShowWindow(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() noexcept override { return E_NOTIMPL; }

  STDMETHODIMP GetWindow(HWND* result) noexcept override {
    *result = container_.window.Get();
    return S_OK;
  }
  STDMETHODIMP ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() noexcept override {
    return container_.Hear("CanInPlaceActivate");
  }
  STDMETHODIMP OnInPlaceActivate() noexcept override {
    return container_.Hear("OnInPlaceActivate");
  }
  STDMETHODIMP OnUIActivate() noexcept override { return container_.Hear("OnUIActivate"); }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                RECT* place, RECT* clip,
                                OLEINPLACEFRAMEINFO* info) noexcept override {
    *frame = com::MakeObject<Frame>(container_).As<IOleInPlaceFrame>().Detach();
    *document = nullptr;
    GetClientRect(container_.window.Get(), place);
    if (container_.clips) *clip = *place;
    info->hwndFrame = container_.window.Get();
    info->haccel = container_.accelerators;
    info->cAccelEntries = container_.accelerators == nullptr ? 0 : 1;
    return container_.Hear("GetWindowContext");
  }
  STDMETHODIMP Scroll(SIZE) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) noexcept override { return container_.Hear("OnUIDeactivate"); }
  STDMETHODIMP OnInPlaceDeactivate() noexcept override {
    return container_.Hear("OnInPlaceDeactivate");
  }
  STDMETHODIMP DiscardUndoState() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(const RECT*) noexcept override { return S_OK; }

  STDMETHODIMP OnControlInfoChanged() noexcept override {
    ++container_.control_info_changes;
    return container_.Hear("OnControlInfoChanged");
  }
  STDMETHODIMP LockInPlaceActive(BOOL) noexcept override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG*, DWORD) noexcept override { return S_FALSE; }
  STDMETHODIMP OnFocus(BOOL) noexcept override { return container_.Hear("OnFocus"); }
  STDMETHODIMP ShowPropertyFrame() noexcept override { return E_NOTIMPL; }

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
      *result = Variant(FontOf(container_.ambients)).Detach();
    } else if (id == DISPID_AMBIENT_FORECOLOR) {
      *result = Variant(std::int32_t{container_.ambients.fore_color}).Detach();
    } else if (id == DISPID_AMBIENT_BACKCOLOR) {
      *result = Variant(std::int32_t{container_.ambients.back_color}).Detach();
    } else {
      return DISP_E_MEMBERNOTFOUND;
    }
    return container_.Hear("an ambient property");
  }

 private:
  OwnContainer& container_;
};

}  // namespace

OwnContainer::OwnContainer()
    : window(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 400, 300, nullptr,
                             nullptr, nullptr, nullptr)) {}

HRESULT OwnContainer::Hear(const char* member) {
  return on_call ? on_call(member) : S_OK;
}

ComPtr<IOleClientSite> OwnContainer::MakeSite() {
  return com::MakeObject<Site>(*this).As<IOleClientSite>();
}

ComPtr<IUnknown> OwnContainer::Place(const wchar_t* prog_id) {
  CLSID clsid{};
  ComPtr<IUnknown> control;
  com::Check(CLSIDFromProgID(prog_id, &clsid));
  com::Check(
      CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, control.PutVoid()));
  com::Check(control.As<IOleObject>()->SetClientSite(MakeSite().Get()));
  return control;
}

HRESULT OwnContainer::Do(const ComPtr<IUnknown>& control, LONG verb) {
  RECT place{0, 0, 400, 300};
  ComPtr<IOleClientSite> site;
  com::Check(control.As<IOleObject>()->GetClientSite(site.Put()));
  return control.As<IOleObject>()->DoVerb(verb, nullptr, site.Get(), 0, window.Get(), &place);
}

void OwnContainer::Remove(const ComPtr<IUnknown>& control) {
  EXPECT_EQ(control.As<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
  EXPECT_EQ(control.As<IOleObject>()->SetClientSite(nullptr), S_OK);
}

}  // namespace tavrix::test
