#pragma once

#include "component/controls/child_control_object.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/option_button.h"
#include "viewkit/controls/search_box.h"
#include "viewkit/controls/tab_strip.h"

/// The small controls for callers.
namespace tavrix::component {

class TabStripObject : public ChildControlObject<ITabControl, viewkit::TabStrip> {
 public:
  using ChildControlObject::ChildControlObject;
  STDMETHODIMP get_Tabs(long* result) noexcept override;
  STDMETHODIMP get_CurrTab(long* result) noexcept override;
  STDMETHODIMP put_CurrTab(long value) noexcept override;
  STDMETHODIMP get_TabKey(long tab, BSTR* result) noexcept override;
  STDMETHODIMP get_TabCaption(long tab, BSTR* result) noexcept override;
  STDMETHODIMP get_BackColor(OLE_COLOR* result) noexcept override;
};

class SearchBoxObject : public ChildControlObject<ISearchControl, viewkit::SearchBox> {
 public:
  using ChildControlObject::ChildControlObject;
  STDMETHODIMP get_Text(BSTR* result) noexcept override;
  STDMETHODIMP put_Text(BSTR value) noexcept override;
  STDMETHODIMP get_FilterMode(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Search() noexcept override;
  STDMETHODIMP get_SaveStatus(BSTR* result) noexcept override;
  STDMETHODIMP GetStatus(BSTR text) noexcept override;
};

/// A control with a caption.
template <class Interface, class Model>
class CaptionedObject : public ChildControlObject<Interface, Model> {
 public:
  using ChildControlObject<Interface, Model>::ChildControlObject;
  STDMETHODIMP get_Caption(BSTR* result) noexcept override {
    return this->With([&](Model& model) { GiveText(result, model.Caption()); });
  }
};

using LabelObject = CaptionedObject<ILabelControl, viewkit::Label>;

/// A control that can be clicked.
template <class Interface, class Model>
class ClickableObject : public CaptionedObject<Interface, Model> {
 public:
  using CaptionedObject<Interface, Model>::CaptionedObject;
  STDMETHODIMP Click() noexcept override {
    return this->With([](Model& model) { model.Click(); });
  }
};

using ButtonObject = ClickableObject<IButtonControl, viewkit::CommandButton>;

class CheckBoxObject : public ClickableObject<ICheckControl, viewkit::CheckBox> {
 public:
  using ClickableObject::ClickableObject;
  STDMETHODIMP get_Value(long* result) noexcept override;
  STDMETHODIMP put_Value(long value) noexcept override;
};

class OptionButtonObject : public ClickableObject<IOptionControl, viewkit::OptionButton> {
 public:
  using ClickableObject::ClickableObject;
  STDMETHODIMP get_Value(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_Value(VARIANT_BOOL value) noexcept override;
};

}  // namespace tavrix::component
