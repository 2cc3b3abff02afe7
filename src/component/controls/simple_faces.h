#pragma once

#include "component/controls/child_face.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "viewkit/controls/option_button.h"
#include "viewkit/controls/search_box.h"
#include "viewkit/controls/tab_strip.h"

/// The small controls for callers.
namespace tavrix::component {

class TabFace : public ChildFace<ITabControl, viewkit::TabStrip> {
 public:
  using ChildFace::ChildFace;
  STDMETHODIMP get_Tabs(long* result) noexcept override;
  STDMETHODIMP get_CurrTab(long* result) noexcept override;
  STDMETHODIMP put_CurrTab(long value) noexcept override;
  STDMETHODIMP get_TabKey(long tab, BSTR* result) noexcept override;
  STDMETHODIMP get_TabCaption(long tab, BSTR* result) noexcept override;
  STDMETHODIMP get_BackColor(OLE_COLOR* result) noexcept override;
};

class SearchFace : public ChildFace<ISearchControl, viewkit::SearchBox> {
 public:
  using ChildFace::ChildFace;
  STDMETHODIMP get_Text(BSTR* result) noexcept override;
  STDMETHODIMP put_Text(BSTR value) noexcept override;
  STDMETHODIMP get_FilterMode(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Search() noexcept override;
  STDMETHODIMP get_SaveStatus(BSTR* result) noexcept override;
  STDMETHODIMP GetStatus(BSTR text) noexcept override;
};

/// A control with a caption.
template <class Interface, class Model>
class CaptionedFace : public ChildFace<Interface, Model> {
 public:
  using ChildFace<Interface, Model>::ChildFace;
  STDMETHODIMP get_Caption(BSTR* result) noexcept override {
    return this->With([&](Model& model) { GiveText(result, model.Caption()); });
  }
};

using LabelFace = CaptionedFace<ILabelControl, viewkit::Label>;

/// A control that can be clicked.
template <class Interface, class Model>
class ClickedFace : public CaptionedFace<Interface, Model> {
 public:
  using CaptionedFace<Interface, Model>::CaptionedFace;
  STDMETHODIMP Click() noexcept override {
    return this->With([](Model& model) { model.Click(); });
  }
};

using ButtonFace = ClickedFace<IButtonControl, viewkit::CommandButton>;

class CheckFace : public ClickedFace<ICheckControl, viewkit::CheckBox> {
 public:
  using ClickedFace::ClickedFace;
  STDMETHODIMP get_Value(long* result) noexcept override;
  STDMETHODIMP put_Value(long value) noexcept override;
};

class OptionFace : public ClickedFace<IOptionControl, viewkit::OptionButton> {
 public:
  using ClickedFace::ClickedFace;
  STDMETHODIMP get_Value(VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP put_Value(VARIANT_BOOL value) noexcept override;
};

}  // namespace tavrix::component
