#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "com/abi.h"
#include "com/dispatch_object.h"
#include "component/controls/model_reference.h"
#include "tavrix.h"
#include "viewkit/control.h"

namespace tavrix::component {

/// Gives a caller a text of its own.
inline void GiveText(BSTR* result, std::string_view text) {
  com::Out(result) = nullptr;
  *result = com::Bstr(text).Detach();
}

/// What callers see of a control inside a view: the members of IChildControl on the control's
/// model. `Interface` derives from IChildControl; `Others` are further interfaces. The view owns
/// the model; once it is gone, every member fails.
template <class Interface, class Model, class... Others>
class ChildControlObject : public com::DispatchObject<Interface, Others...> {
 public:
  explicit ChildControlObject(ModelReference<Model> model) : model_(std::move(model)) {
    this->AddInterface(__uuidof(IChildControl), static_cast<Interface*>(this));
  }

  STDMETHODIMP get_TypeName(BSTR* result) noexcept override {
    return With([&](Model& model) { GiveText(result, model.TypeName()); });
  }
  STDMETHODIMP get_Name(BSTR* result) noexcept override {
    return With([&](Model& model) { GiveText(result, model.Name()); });
  }
  STDMETHODIMP get_Index(long* result) noexcept override {
    return With([&](Model& model) {
      com::Out(result) = 0;
      if (!model.Index()) throw com::ComFailure(DISP_E_MEMBERNOTFOUND, "控件不在控件数组中");
      *result = *model.Index();
    });
  }
  STDMETHODIMP get_hWnd(long* result) noexcept override {
    // Handles keep to 32 bits, on x64 too.
    return With([&](Model& model) { com::Out(result) = static_cast<long>(model.WindowHandle()); });
  }
  STDMETHODIMP get_Visible(VARIANT_BOOL* result) noexcept override {
    return With([&](Model& model) { com::Out(result) = com::Flag(model.Visible()); });
  }
  STDMETHODIMP put_Visible(VARIANT_BOOL value) noexcept override {
    return With([&](Model& model) { model.SetVisible(value != VARIANT_FALSE); });
  }
  STDMETHODIMP get_Enabled(VARIANT_BOOL* result) noexcept override {
    return With([&](Model& model) { com::Out(result) = com::Flag(model.Enabled()); });
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
    return With([&](Model& model) { model.SetToolTipText(com::TextOf(value)); });
  }

 protected:
  /// Runs `body` on the model, which lives at least until it ends, as does the view's own object.
  template <class Body>
  [[nodiscard]] HRESULT With(const Body& body, const char* member = __builtin_FUNCTION()) noexcept {
    const auto run = [](const void* given, Model& model) {
      (*static_cast<const Body*>(given))(model);
    };
    return RunWith(run, std::addressof(body), member);
  }
  [[nodiscard]] const ModelReference<Model>& Reference() const { return model_; }

 private:
  /// `With` with its body as two pointers: what finds the model is there once.
  [[nodiscard]] HRESULT RunWith(void (*run)(const void* body, Model& model), const void* body,
                                const char* member) noexcept {
    const auto find = [&] {
      const auto model = model_.Lock();
      if (!model) throw com::ComFailure(CO_E_OBJNOTCONNECTED, "控件所在的视图已经关闭");
      run(body, *model);
    };
    return com::Guarded(__uuidof(Interface), find, member);
  }
  [[nodiscard]] HRESULT Get(int host::Bounds::*side, long* result,
                            const char* member = __builtin_FUNCTION()) noexcept {
    return With([&](Model& model) { com::Out(result) = model.GetBounds().*side; }, member);
  }
  [[nodiscard]] HRESULT Put(int host::Bounds::*side, long value,
                            const char* member = __builtin_FUNCTION()) noexcept {
    const auto put = [&](Model& model) {
      host::Bounds bounds = model.GetBounds();
      bounds.*side = static_cast<int>(value);
      model.SetBounds(bounds);
    };
    return With(put, member);
  }

  ModelReference<Model> model_;
};

}  // namespace tavrix::component
