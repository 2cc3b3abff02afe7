#include "app/container/control_site.h"

#include <olectl.h>

#include <cmath>
#include <exception>

#include "app/frame/style.h"

namespace desk::app {
namespace {

constexpr int kHimetricPerInch = 2540;
constexpr int kPointsPerInch = 72;

template <class Pointer>
HRESULT GiveNone(Pointer** result, HRESULT answer) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return answer;
}

ComPtr<IDispatch> MakeFont() {
  const tavrix::viewkit::win32::FontSpec wanted = DeskFont();
  FONTDESC description{};
  description.cbSizeofstruct = sizeof description;
  std::wstring face = wanted.face;
  description.lpstrName = face.data();
  // Currency counts ten-thousandths of a point.
  constexpr int kTwipsPerPoint = 20;
  description.cySize.int64 = 10000LL * wanted.height / kTwipsPerPoint;
  description.sWeight = wanted.bold ? FW_BOLD : FW_NORMAL;
  description.sCharset = DEFAULT_CHARSET;
  ComPtr<IDispatch> font;
  OleCreateFontIndirect(&description, IID_IDispatch, font.PutVoid());
  return font;
}

HRESULT GiveFlag(VARIANT& result, bool flag) {
  result.vt = VT_BOOL;
  result.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

HRESULT GiveColor(VARIANT& result, int system_color) {
  result.vt = VT_I4;
  result.lVal = static_cast<LONG>(0x80000000U | static_cast<unsigned>(system_color));
  return S_OK;
}

HRESULT GiveText(VARIANT& result, const std::wstring& text) {
  result.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (result.bstrVal == nullptr) return E_OUTOFMEMORY;
  result.vt = VT_BSTR;
  return S_OK;
}

HRESULT GiveFont(VARIANT& result) {
  ComPtr<IDispatch> font = MakeFont();
  if (!font) return DISP_E_MEMBERNOTFOUND;
  result.pdispVal = font.Detach();
  result.vt = VT_DISPATCH;
  return S_OK;
}

}  // namespace

ControlSite::ControlSite(const ContainerPlan& plan, ComPtr<InPlaceFrame> frame)
    : plan_(plan), frame_(std::move(frame)) {
  AddInterface(IID_IOleWindow, static_cast<IOleInPlaceSite*>(this));
}

void ControlSite::Retire() {
  plan_ = {};
  in_place_ = {};
  control_ = nullptr;
}

HWND ControlSite::ControlWindow() const {
  HWND window = nullptr;
  if (in_place_) in_place_->GetWindow(&window);
  return window;
}

STDMETHODIMP ControlSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) noexcept {
  return GiveNone(moniker, E_NOTIMPL);
}

STDMETHODIMP ControlSite::GetContainer(IOleContainer** container) noexcept {
  return GiveNone(container, E_NOINTERFACE);
}

STDMETHODIMP ControlSite::GetWindow(HWND* window) noexcept {
  if (window == nullptr) return E_POINTER;
  *window = plan_.area;
  return plan_.area != nullptr ? S_OK : E_FAIL;
}

STDMETHODIMP ControlSite::OnInPlaceActivate() noexcept {
  in_place_ = Query<IOleInPlaceObject>(control_);
  return S_OK;
}

STDMETHODIMP ControlSite::OnInPlaceDeactivate() noexcept {
  in_place_ = {};
  return S_OK;
}

STDMETHODIMP ControlSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                           RECT* position, RECT* clip,
                                           OLEINPLACEFRAMEINFO* info) noexcept {
  if (frame == nullptr || position == nullptr || clip == nullptr || info == nullptr) {
    return E_POINTER;
  }
  *frame = ComPtr<IOleInPlaceFrame>(frame_.Get()).Detach();
  if (document != nullptr) *document = nullptr;  // frame and document are one window
  GetClientRect(plan_.area, position);
  *clip = *position;
  info->fMDIApp = FALSE;
  info->hwndFrame = plan_.frame;
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

STDMETHODIMP ControlSite::OnPosRectChange(const RECT*) noexcept {
  if (!in_place_) return E_UNEXPECTED;
  RECT area{};
  GetClientRect(plan_.area, &area);  // a control always fills its area
  return in_place_->SetObjectRects(&area, &area);
}

STDMETHODIMP ControlSite::GetExtendedControl(IDispatch** control) noexcept {
  return GiveNone(control, E_NOTIMPL);
}

STDMETHODIMP ControlSite::TransformCoords(POINTL* himetric, POINTF* container,
                                          DWORD flags) noexcept {
  if (himetric == nullptr || container == nullptr) return E_POINTER;
  const float points = static_cast<float>(kPointsPerInch) / kHimetricPerInch;
  if ((flags & XFORMCOORDS_HIMETRICTOCONTAINER) != 0) {
    container->x = static_cast<float>(himetric->x) * points;
    container->y = static_cast<float>(himetric->y) * points;
    return S_OK;
  }
  himetric->x = std::lround(container->x / points);
  himetric->y = std::lround(container->y / points);
  return S_OK;
}

STDMETHODIMP ControlSite::TranslateAccelerator(MSG* message, DWORD) noexcept {
  if (message == nullptr) return E_POINTER;
  if (message->message != WM_KEYDOWN || message->wParam != VK_TAB || !plan_.tab_out) return S_FALSE;
  plan_.tab_out(GetKeyState(VK_SHIFT) < 0);
  return S_OK;
}

STDMETHODIMP ControlSite::GetTypeInfoCount(UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP ControlSite::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept {
  return GiveNone(info, E_NOTIMPL);
}

STDMETHODIMP ControlSite::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept {
  return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP ControlSite::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS*,
                                 VARIANT* result, EXCEPINFO*, UINT*) noexcept {
  if ((flags & DISPATCH_PROPERTYGET) == 0) return DISP_E_MEMBERNOTFOUND;
  if (result == nullptr) return E_POINTER;
  VariantInit(result);
  try {
    return Ambient(member, *result);
  } catch (const std::exception&) {
    return E_OUTOFMEMORY;
  }
}

HRESULT ControlSite::Ambient(DISPID member, VARIANT& result) const {
  switch (member) {
    case DISPID_AMBIENT_FONT:
      return GiveFont(result);
    case DISPID_AMBIENT_BACKCOLOR:
      return GiveColor(result, COLOR_BTNFACE);
    case DISPID_AMBIENT_FORECOLOR:
      return GiveColor(result, COLOR_BTNTEXT);
    case DISPID_AMBIENT_DISPLAYNAME:
      return GiveText(result, plan_.display_name);
    case DISPID_AMBIENT_LOCALEID:
      result.vt = VT_I4;
      result.lVal = static_cast<LONG>(GetUserDefaultLCID());
      return S_OK;
    case DISPID_AMBIENT_USERMODE:
    case DISPID_AMBIENT_SUPPORTSMNEMONICS:
      return GiveFlag(result, true);
    case DISPID_AMBIENT_UIDEAD:
    case DISPID_AMBIENT_SHOWGRABHANDLES:
    case DISPID_AMBIENT_SHOWHATCHING:
    case DISPID_AMBIENT_DISPLAYASDEFAULT:
    case DISPID_AMBIENT_MESSAGEREFLECT:
      return GiveFlag(result, false);
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

}  // namespace desk::app
