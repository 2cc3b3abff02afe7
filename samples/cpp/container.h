// A window that holds one control: as little as a control needs to be seen and typed into.
#pragma once

#include "object.h"

/// The control's view of its container. Lives as long as the window.
class Site : public IOleClientSite, public IOleInPlaceSite, public IOleInPlaceFrame {
 public:
  explicit Site(HWND window) : window_(window) {}
  virtual ~Site() = default;

  /// Places the control over the whole window and shows it.
  HRESULT Show(IUnknown* control) {
    control->QueryInterface(__uuidof(IOleObject), reinterpret_cast<void**>(object_.Put()));
    if (!object_) return E_NOINTERFACE;
    object_->SetClientSite(this);
    RECT room = Room();
    return object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, window_, &room);
  }
  /// The window has got another size.
  void Resize() {
    const RECT room = Room();
    if (const auto placed = object_.As<IOleInPlaceObject>()) placed->SetObjectRects(&room, &room);
  }
  /// Offers a key to the control; true when it was used.
  bool Translate(MSG& message) {
    return active_ && active_->TranslateAccelerator(&message) == S_OK;
  }
  void Close() {
    if (!object_) return;
    object_->Close(OLECLOSE_NOSAVE);
    object_->SetClientSite(nullptr);
    object_ = {};
    active_ = {};
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    *result = nullptr;
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IOleClientSite))
      *result = static_cast<IOleClientSite*>(this);
    else if (IsEqualIID(iid, IID_IOleWindow) || IsEqualIID(iid, IID_IOleInPlaceSite))
      *result = static_cast<IOleInPlaceSite*>(this);
    else if (IsEqualIID(iid, IID_IOleInPlaceUIWindow) || IsEqualIID(iid, IID_IOleInPlaceFrame))
      *result = static_cast<IOleInPlaceFrame*>(this);
    return *result == nullptr ? E_NOINTERFACE : S_OK;
  }
  // The window owns it: references are not counted.
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  // IOleClientSite
  HRESULT STDMETHODCALLTYPE SaveObject() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) override {
    *moniker = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override {
    *container = nullptr;
    return E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

  // IOleWindow
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = window_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

  // IOleInPlaceSite
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window,
                                             LPRECT position, LPRECT clip,
                                             LPOLEINPLACEFRAMEINFO info) override {
    *frame = this;
    *window = nullptr;
    *position = *clip = Room();
    info->fMDIApp = FALSE;
    info->hwndFrame = window_;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT) override { return S_OK; }

  // IOleInPlaceUIWindow, IOleInPlaceFrame
  HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override {
    return INPLACE_E_NOTOOLSPACE;
  }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* active, LPCOLESTR) override {
    active_ = {};
    if (active != nullptr) active->AddRef();
    active_ = Ref<IOleInPlaceActiveObject>(active);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return S_OK; }
  /// A dialog of the control opens or closes.
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override {
    EnableWindow(window_, enable);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

 private:
  RECT Room() const {
    RECT room{};
    GetClientRect(window_, &room);
    return room;
  }

  HWND window_;
  Ref<IOleObject> object_;
  Ref<IOleInPlaceActiveObject> active_;
};
