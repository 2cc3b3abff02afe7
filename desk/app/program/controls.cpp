#include "app/program/controls.h"

#include "host/error.h"
#include "qnDesignUI.h"

namespace desk::app {

namespace host = tavrix::host;
using tavrix::component::Check;
using tavrix::component::ComFailure;

ComPtr<IUnknown> CreateControl(const CLSID& clsid) {
  ComPtr<IUnknown> control;
  const HRESULT result =
      CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, control.PutVoid());
  if (SUCCEEDED(result)) return control;
  throw host::HostError("找不到科目控件 tavrix.dll，它应当与程序在同一文件夹：" +
                        tavrix::component::MeaningOf(result));
}

ComPtr<IChildControls> ControlsOf(IUnknown* control) {
  const auto design = Query<IDesignUI>(control);
  if (!design) throw ComFailure(E_NOINTERFACE);
  ComPtr<IDispatch> list;
  Check(design->get_Controls(list.Put()));
  auto controls = list.As<IChildControls>();
  if (!controls) throw ComFailure(E_NOINTERFACE);
  return controls;
}

}  // namespace desk::app
