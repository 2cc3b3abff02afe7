#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "component/base/abi.h"
#include "component/base/error_support.h"
#include "component/base/identity.h"
#include "component/controls/model_reference.h"
#include "tavrix.h"
#include "viewkit/control.h"

namespace tavrix::component {

/// Gives a caller a text of its own.
inline void GiveText(BSTR* result, std::string_view text) {
  Out(result) = nullptr;
  *result = Bstr(text).Detach();
}

/// What callers see of a control inside a view: the members of IChildControl on the control's
/// model. `Interface` derives from IChildControl. The view owns the model; once it is gone, every
/// member fails.
template <class Interface, class Model>
class ChildFace : public Identity, public DualFace<Interface> {
 public:
  explicit ChildFace(ModelReference<Model> model)
      : DualFace<Interface>(static_cast<Identity&>(*this)),
        model_(std::move(model)),
        errors_(*this) {
    PublishDual(__uuidof(Interface), this);
    Publish(__uuidof(IChildControl), this);
    Publish(IID_ISupportErrorInfo, &errors_);
  }

  STDMETHODIMP get_TypeName(BSTR* result) noexcept override {
    return With([&](Model& model) { GiveText(result, model.TypeName()); });
  }
  STDMETHODIMP get_Name(BSTR* result) noexcept override {
    return With([&](Model& model) { GiveText(result, model.Name()); });
  }
  STDMETHODIMP get_Index(long* result) noexcept override {
    return With([&](Model& model) {
      Out(result) = 0;
      if (!model.Index()) throw ComFailure(DISP_E_MEMBERNOTFOUND, "控件不在控件数组中");
      *result = *model.Index();
    });
  }
  STDMETHODIMP get_hWnd(long* result) noexcept override {
    // Handles keep to 32 bits, on x64 too.
    return With([&](Model& model) { Out(result) = static_cast<long>(model.WindowHandle()); });
  }
  STDMETHODIMP get_Visible(VARIANT_BOOL* result) noexcept override {
    return With([&](Model& model) { Out(result) = Flag(model.Visible()); });
  }
  STDMETHODIMP put_Visible(VARIANT_BOOL value) noexcept override {
    return With([&](Model& model) { model.SetVisible(value != VARIANT_FALSE); });
  }
  STDMETHODIMP get_Enabled(VARIANT_BOOL* result) noexcept override {
    return With([&](Model& model) { Out(result) = Flag(model.Enabled()); });
  }
  STDMETHODIMP put_Enabled(VARIANT_BOOL value) noexcept override {
    return With([&](Model& model) { model.SetEnabled(value != VARIANT_FALSE); });
  }
  STDMETHODIMP get_Left(long* result) noexcept override { return Get(&host::Bounds::left, result); }
  STDMETHODIMP put_Left(long value) noexcept override { return Put(&host::Bounds::left, value); }
  STDMETHODIMP get_Top(long* result) noexcept override { return Get(&host::Bounds::top, result); }
  STDMETHODIMP put_Top(long value) noexcept override { return Put(&host::Bounds::top, value); }
  STDMETHODIMP get_Width(long* result) noexcept override {
    return Get(&host::Bounds::width, result);
  }
  STDMETHODIMP put_Width(long value) noexcept override { return Put(&host::Bounds::width, value); }
  STDMETHODIMP get_Height(long* result) noexcept override {
    return Get(&host::Bounds::height, result);
  }
  STDMETHODIMP put_Height(long value) noexcept override {
    return Put(&host::Bounds::height, value);
  }
  STDMETHODIMP get_ToolTipText(BSTR* result) noexcept override {
    return With([&](Model& model) { GiveText(result, model.ToolTipText()); });
  }
  STDMETHODIMP put_ToolTipText(BSTR value) noexcept override {
    return With([&](Model& model) { model.SetToolTipText(TextOf(value)); });
  }

 protected:
  /// Runs `body` on the model, which lives at least until it ends, as does the view's own object.
  template <class Body>
  [[nodiscard]] HRESULT With(Body&& body) noexcept {
    return Guarded(__uuidof(Interface), [&] {
      const auto model = model_.Lock();
      if (!model) throw ComFailure(CO_E_OBJNOTCONNECTED, "控件所在的视图已经关闭");
      body(*model);
    });
  }
  [[nodiscard]] const ModelReference<Model>& Reference() const { return model_; }

 private:
  [[nodiscard]] HRESULT Get(int host::Bounds::*side, long* result) noexcept {
    return With([&](Model& model) { Out(result) = model.GetBounds().*side; });
  }
  [[nodiscard]] HRESULT Put(int host::Bounds::*side, long value) noexcept {
    return With([&](Model& model) {
      host::Bounds bounds = model.GetBounds();
      bounds.*side = static_cast<int>(value);
      model.SetBounds(bounds);
    });
  }

  ModelReference<Model> model_;
  ErrorSupport errors_;
};

}  // namespace tavrix::component
