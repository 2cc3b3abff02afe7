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
  STDMETHODIMP get_Tabs(long* result) noexcept override {
    return With([&](viewkit::TabStrip& tabs) { com::Out(result) = tabs.Tabs(); });
  }
  STDMETHODIMP get_CurrTab(long* result) noexcept override {
    return With([&](viewkit::TabStrip& tabs) { com::Out(result) = tabs.CurrTab(); });
  }
  STDMETHODIMP put_CurrTab(long value) noexcept override {
    return With([&](viewkit::TabStrip& tabs) { tabs.SetCurrTab(static_cast<int>(value)); });
  }
  STDMETHODIMP get_TabKey(long tab, BSTR* result) noexcept override {
    return With(
        [&](viewkit::TabStrip& tabs) { GiveText(result, tabs.TabKey(static_cast<int>(tab))); });
  }
  STDMETHODIMP get_TabCaption(long tab, BSTR* result) noexcept override {
    return With(
        [&](viewkit::TabStrip& tabs) { GiveText(result, tabs.TabCaption(static_cast<int>(tab))); });
  }
  STDMETHODIMP get_BackColor(OLE_COLOR* result) noexcept override {
    return With([&](viewkit::TabStrip& tabs) { com::Out(result) = tabs.BackColor(); });
  }
};

class SearchBoxObject : public ChildControlObject<ISearchControl, viewkit::SearchBox> {
 public:
  using ChildControlObject::ChildControlObject;
  STDMETHODIMP get_Text(BSTR* result) noexcept override {
    return With([&](viewkit::SearchBox& box) { GiveText(result, box.Text()); });
  }
  STDMETHODIMP put_Text(BSTR value) noexcept override {
    return With([&](viewkit::SearchBox& box) { box.SetText(com::TextOf(value)); });
  }
  STDMETHODIMP get_FilterMode(VARIANT_BOOL* result) noexcept override {
    return With([&](viewkit::SearchBox& box) { com::Out(result) = com::Flag(box.FilterMode()); });
  }
  STDMETHODIMP Search() noexcept override {
    return With([](viewkit::SearchBox& box) { box.Search(); });
  }
  STDMETHODIMP get_SaveStatus(BSTR* result) noexcept override {
    return With([&](viewkit::SearchBox& box) { GiveText(result, box.SaveStatus()); });
  }
  STDMETHODIMP GetStatus(BSTR text) noexcept override {
    return With([&](viewkit::SearchBox& box) { box.GetStatus(com::TextOf(text)); });
  }
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
  STDMETHODIMP get_Value(long* result) noexcept override {
    return With([&](viewkit::CheckBox& box) { com::Out(result) = box.Value(); });
  }
  STDMETHODIMP put_Value(long value) noexcept override {
    return With([&](viewkit::CheckBox& box) { box.SetValue(static_cast<int>(value)); });
  }
};

class OptionButtonObject : public ClickableObject<IOptionControl, viewkit::OptionButton> {
 public:
  using ClickableObject::ClickableObject;
  STDMETHODIMP get_Value(VARIANT_BOOL* result) noexcept override {
    return With(
        [&](viewkit::OptionButton& button) { com::Out(result) = com::Flag(button.Value()); });
  }
  STDMETHODIMP put_Value(VARIANT_BOOL value) noexcept override {
    return With([&](viewkit::OptionButton& button) { button.SetValue(value != VARIANT_FALSE); });
  }
};

}  // namespace tavrix::component
