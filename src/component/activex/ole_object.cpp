#include "component/activex/ole_object.h"

#include <ole2.h>

#include <string_view>

#include "com/abi.h"
#include "component/activex/active_control.h"

namespace tavrix::component {

HRESULT OleObject::SetClientSite(IOleClientSite* site) noexcept {
  return com::Guarded(IID_IOleObject, [&] { Control().SetSite(site); });
}

HRESULT OleObject::GetClientSite(IOleClientSite** result) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    com::Out(result) = nullptr;
    Control().ClientSite().Client().CopyTo(result);
  });
}

HRESULT OleObject::Close(DWORD save) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    const com::ComPtr<IUnknown> keep(&Control().ControllingUnknown());
    // A control asks no question of its own at its end: to prompt means to save.
    const auto site = Control().ClientSite().Client();
    const bool saves = save != OLECLOSE_NOSAVE && site && Control().Dirty();
    const HRESULT saved = saves ? site->SaveObject() : S_OK;
    Control().Placement().Deactivate();
    if (const auto advised = advised_) advised->SendOnClose();
    // A container that keeps nothing says so; it is closed as well as any other.
    return saved == E_NOTIMPL || SUCCEEDED(saved) ? S_OK : saved;
  });
}

HRESULT OleObject::DoVerb(LONG verb, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    const com::ComPtr<IUnknown> keep(&Control().ControllingUnknown());
    InPlace& placement = Control().Placement();
    switch (verb) {
      case OLEIVERB_SHOW:
      case OLEIVERB_INPLACEACTIVATE:
        placement.Activate(false);
        return S_OK;
      case OLEIVERB_PRIMARY:
      case OLEIVERB_UIACTIVATE:
        placement.Activate(true);
        return S_OK;
      case OLEIVERB_HIDE:
        placement.UiDeactivate();
        placement.SetShown(false);
        return S_OK;
      case OLEIVERB_DISCARDUNDOSTATE:
        return S_OK;
      default:
        if (verb < 0) return E_NOTIMPL;
        placement.Activate(true);  // what it does not know it takes for the first of its own
        return OLEOBJ_S_INVALIDVERB;
    }
  });
}

HRESULT OleObject::EnumVerbs(IEnumOLEVERB** result) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    com::Out(result) = nullptr;
    return OLEOBJ_E_NOVERBS;
  });
}

HRESULT OleObject::GetUserClassID(CLSID* result) noexcept {
  return com::Guarded(IID_IOleObject, [&] { com::Out(result) = Control().Facts().clsid; });
}

HRESULT OleObject::GetUserType(DWORD, LPOLESTR* result) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    com::Out(result) = nullptr;
    const std::wstring_view name = Control().Facts().user_type;
    const std::size_t bytes = (name.size() + 1) * sizeof(wchar_t);
    auto* copy = static_cast<wchar_t*>(CoTaskMemAlloc(bytes));
    if (copy == nullptr) throw std::bad_alloc();
    memcpy(copy, name.data(), bytes);
    *result = copy;
  });
}

HRESULT OleObject::SetExtent(DWORD aspect, SIZEL* size) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (com::Out(size).cx < 0 || size->cy < 0) return E_INVALIDARG;
    Control().SetExtent(*size);
    return S_OK;
  });
}

HRESULT OleObject::GetExtent(DWORD aspect, SIZEL* result) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    com::Out(result) = {};
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    *result = Control().Extent();
    return S_OK;
  });
}

HRESULT OleObject::Advise(IAdviseSink* sink, DWORD* cookie) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    if (!advised_) com::Check(CreateOleAdviseHolder(advised_.Put()));
    return advised_->Advise(sink, cookie);
  });
}

HRESULT OleObject::Unadvise(DWORD cookie) noexcept {
  return com::Guarded(IID_IOleObject,
                      [&] { return advised_ ? advised_->Unadvise(cookie) : OLE_E_NOCONNECTION; });
}

HRESULT OleObject::EnumAdvise(IEnumSTATDATA** result) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    com::Out(result) = nullptr;
    return advised_ ? advised_->EnumAdvise(result) : S_OK;
  });
}

HRESULT OleObject::GetMiscStatus(DWORD aspect, DWORD* result) noexcept {
  return com::Guarded(IID_IOleObject, [&] {
    com::Out(result) = aspect == DVASPECT_CONTENT ? kMiscStatus : 0;
    return aspect == DVASPECT_CONTENT ? S_OK : DV_E_DVASPECT;
  });
}

}  // namespace tavrix::component
