#include "component/controls/simple_objects.h"

namespace tavrix::component {

using viewkit::CheckBox;
using viewkit::OptionButton;
using viewkit::SearchBox;
using viewkit::TabStrip;

HRESULT TabStripObject::get_Tabs(long* result) noexcept {
  return With([&](TabStrip& tabs) { com::Out(result) = tabs.Tabs(); });
}

HRESULT TabStripObject::get_CurrTab(long* result) noexcept {
  return With([&](TabStrip& tabs) { com::Out(result) = tabs.CurrTab(); });
}

HRESULT TabStripObject::put_CurrTab(long value) noexcept {
  return With([&](TabStrip& tabs) { tabs.SetCurrTab(static_cast<int>(value)); });
}

HRESULT TabStripObject::get_TabKey(long tab, BSTR* result) noexcept {
  return With([&](TabStrip& tabs) { GiveText(result, tabs.TabKey(static_cast<int>(tab))); });
}

HRESULT TabStripObject::get_TabCaption(long tab, BSTR* result) noexcept {
  return With([&](TabStrip& tabs) { GiveText(result, tabs.TabCaption(static_cast<int>(tab))); });
}

HRESULT TabStripObject::get_BackColor(OLE_COLOR* result) noexcept {
  return With([&](TabStrip& tabs) { com::Out(result) = tabs.BackColor(); });
}

HRESULT SearchBoxObject::get_Text(BSTR* result) noexcept {
  return With([&](SearchBox& box) { GiveText(result, box.Text()); });
}

HRESULT SearchBoxObject::put_Text(BSTR value) noexcept {
  return With([&](SearchBox& box) { box.SetText(com::TextOf(value)); });
}

HRESULT SearchBoxObject::get_FilterMode(VARIANT_BOOL* result) noexcept {
  return With([&](SearchBox& box) { com::Out(result) = com::Flag(box.FilterMode()); });
}

HRESULT SearchBoxObject::Search() noexcept {
  return With([](SearchBox& box) { box.Search(); });
}

HRESULT SearchBoxObject::get_SaveStatus(BSTR* result) noexcept {
  return With([&](SearchBox& box) { GiveText(result, box.SaveStatus()); });
}

HRESULT SearchBoxObject::GetStatus(BSTR text) noexcept {
  return With([&](SearchBox& box) { box.GetStatus(com::TextOf(text)); });
}

HRESULT CheckBoxObject::get_Value(long* result) noexcept {
  return With([&](CheckBox& box) { com::Out(result) = box.Value(); });
}

HRESULT CheckBoxObject::put_Value(long value) noexcept {
  return With([&](CheckBox& box) { box.SetValue(static_cast<int>(value)); });
}

HRESULT OptionButtonObject::get_Value(VARIANT_BOOL* result) noexcept {
  return With([&](OptionButton& button) { com::Out(result) = com::Flag(button.Value()); });
}

HRESULT OptionButtonObject::put_Value(VARIANT_BOOL value) noexcept {
  return With([&](OptionButton& button) { button.SetValue(value != VARIANT_FALSE); });
}

}  // namespace tavrix::component
