#include "component/activex/view_object.h"

#include <vector>

#include "com/abi.h"
#include "component/activex/active_control.h"
#include "host/non_copyable.h"
#include "host/report.h"
#include "viewkit/win32/handles.h"
#include "viewkit/win32/window.h"

namespace tavrix::component {

using viewkit::win32::ViewWindow;

namespace {

/// Puts the view back into the size and its controls into the places that they have now, when it
/// goes: a picture changes nothing.
class KeptLayout : private host::NonCopyable {
 public:
  explicit KeptLayout(ActiveControl& control) : control_(control), size_(control.Size()) {
    const viewkit::ControlList& controls = control.View().Controls();
    for (std::size_t i = 0; i < controls.Count(); ++i) {
      places_.push_back(controls.At(i).GetBounds());
    }
  }
  ~KeptLayout() {
    host::IgnoreErrors([this] {
      control_.Resize(size_);
      const viewkit::ControlList& controls = control_.View().Controls();
      for (std::size_t i = 0; i < places_.size(); ++i) controls.At(i).SetBounds(places_[i]);
    });
  }

 private:
  ActiveControl& control_;
  SIZE size_;
  std::vector<host::Bounds> places_;
};

}  // namespace

HRESULT ViewObject::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC dc, LPCRECTL bounds,
                         LPCRECTL, WINBOOL(CALLBACK*)(ULONG_PTR), ULONG_PTR) noexcept {
  return com::Guarded(IID_IViewObject2, [&] {
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    const com::ComPtr<IUnknown> keep(&Control().ControllingUnknown());
    const RECTL& given = com::Out(bounds);
    RECT area{given.left, given.top, given.right, given.bottom};
    if (const ViewWindow* window = Control().Placement().Window()) {
      window->Draw(dc, area);
    } else {
      DrawWithoutWindow(dc, area);
    }
    return S_OK;
  });
}

/// Lends the view a window that is never shown, for one picture.
void ViewObject::DrawWithoutWindow(HDC dc, const RECT& area) {
  const int width = area.right - area.left;
  const int height = area.bottom - area.top;
  const viewkit::win32::OwnedWindow parent(
      CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 0, 0, width, height, nullptr,
                      nullptr, viewkit::win32::ThisModule(), nullptr));
  if (parent.Get() == nullptr) throw com::ComFailure(HRESULT_FROM_WIN32(GetLastError()));
  const KeptLayout kept(Control());
  viewkit::win32::ViewWindowOptions options;
  options.parent = parent.Get();
  options.place = {0, 0, width, height};
  options.back_color = Control().View().BackColor();
  options.fore_color = Control().ClientSite().ForeColor();
  options.font = Control().ClientSite().Font();
  options.resized = [this](int wide, int high) { Control().Resize({wide, high}); };
  const ViewWindow window(Control().View().Controls(), std::move(options));
  window.Draw(dc, area);
}

HRESULT ViewObject::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) noexcept {
  aspects_ = aspects;
  flags_ = flags;
  sink_ = com::ComPtr<IAdviseSink>(sink);
  return S_OK;
}

HRESULT ViewObject::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) noexcept {
  if (aspects != nullptr) *aspects = aspects_;
  if (flags != nullptr) *flags = flags_;
  if (sink != nullptr) sink_.CopyTo(sink);
  return S_OK;
}

HRESULT ViewObject::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL result) noexcept {
  return com::Guarded(IID_IViewObject2, [&] {
    com::Out(result) = Control().Extent();
    return aspect == DVASPECT_CONTENT ? S_OK : DV_E_DVASPECT;
  });
}

}  // namespace tavrix::component
