#include "component/controls/simple_faces.h"

namespace tavrix::component {

using viewkit::CheckBox;
using viewkit::OptionButton;
using viewkit::SearchBox;
using viewkit::TabStrip;

HRESULT TabFace::get_Tabs(long* result) noexcept {
  return With([&](TabStrip& tabs) { Out(result) = tabs.Tabs(); });
}

HRESULT TabFace::get_CurrTab(long* result) noexcept {
  return With([&](TabStrip& tabs) { Out(result) = tabs.CurrTab(); });
}

HRESULT TabFace::put_CurrTab(long value) noexcept {
  return With([&](TabStrip& tabs) { tabs.SetCurrTab(static_cast<int>(value)); });
}

HRESULT TabFace::get_TabKey(long tab, BSTR* result) noexcept {
  return With([&](TabStrip& tabs) { GiveText(result, tabs.TabKey(static_cast<int>(tab))); });
}

HRESULT TabFace::get_TabCaption(long tab, BSTR* result) noexcept {
  return With([&](TabStrip& tabs) { GiveText(result, tabs.TabCaption(static_cast<int>(tab))); });
}

HRESULT TabFace::get_BackColor(OLE_COLOR* result) noexcept {
  return With([&](TabStrip& tabs) { Out(result) = tabs.BackColor(); });
}

HRESULT SearchFace::get_Text(BSTR* result) noexcept {
  return With([&](SearchBox& box) { GiveText(result, box.Text()); });
}

HRESULT SearchFace::put_Text(BSTR value) noexcept {
  return With([&](SearchBox& box) { box.SetText(TextOf(value)); });
}

HRESULT SearchFace::get_FilterMode(VARIANT_BOOL* result) noexcept {
  return With([&](SearchBox& box) { Out(result) = Flag(box.FilterMode()); });
}

HRESULT SearchFace::Search() noexcept {
  return With([](SearchBox& box) { box.Search(); });
}

HRESULT SearchFace::get_SaveStatus(BSTR* result) noexcept {
  return With([&](SearchBox& box) { GiveText(result, box.SaveStatus()); });
}

HRESULT SearchFace::GetStatus(BSTR text) noexcept {
  return With([&](SearchBox& box) { box.GetStatus(TextOf(text)); });
}

HRESULT CheckFace::get_Value(long* result) noexcept {
  return With([&](CheckBox& box) { Out(result) = box.Value(); });
}

HRESULT CheckFace::put_Value(long value) noexcept {
  return With([&](CheckBox& box) { box.SetValue(static_cast<int>(value)); });
}

HRESULT OptionFace::get_Value(VARIANT_BOOL* result) noexcept {
  return With([&](OptionButton& button) { Out(result) = Flag(button.Value()); });
}

HRESULT OptionFace::put_Value(VARIANT_BOOL value) noexcept {
  return With([&](OptionButton& button) { button.SetValue(value != VARIANT_FALSE); });
}

}  // namespace tavrix::component
