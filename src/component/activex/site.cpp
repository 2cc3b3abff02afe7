#include "component/activex/site.h"

#include <oleauto.h>
#include <olectl.h>

#include "com/failure.h"

namespace tavrix::component {

namespace {

constexpr LONG kTwipsPerPoint = 20;

}  // namespace

std::optional<com::Variant> Site::Ambient(DISPID id) const {
  const auto properties = client_.As<IDispatch>();
  if (!properties) return {};
  DISPPARAMS none{};
  com::Variant value;
  const HRESULT result = properties->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                            &none, value.Put(), nullptr, nullptr);
  if (FAILED(result) || value.Type() == VT_EMPTY) return {};
  return value;
}

std::optional<viewkit::Color> Site::AmbientColor(DISPID id) const {
  const auto value = Ambient(id);
  if (!value || (value->Type() != VT_I4 && value->Type() != VT_UI4)) return {};
  return value->Get().ulVal;
}

std::optional<viewkit::Color> Site::BackColor() const {
  return AmbientColor(DISPID_AMBIENT_BACKCOLOR);
}

viewkit::Color Site::ForeColor() const {
  return AmbientColor(DISPID_AMBIENT_FORECOLOR).value_or(viewkit::color::kButtonText);
}

viewkit::win32::FontSpec Site::Font() const {
  auto wanted = viewkit::win32::FontSpec::System();
  const auto value = Ambient(DISPID_AMBIENT_FONT);
  const auto font = value ? value->Object().As<IFont>() : nullptr;
  com::Bstr name;
  CY size{};
  BOOL bold = FALSE;
  BOOL italic = FALSE;
  const bool known = font && SUCCEEDED(font->get_Name(name.Put())) &&
                     SUCCEEDED(font->get_Size(&size)) && SUCCEEDED(font->get_Bold(&bold)) &&
                     SUCCEEDED(font->get_Italic(&italic));
  if (!known || size.int64 <= 0) return wanted;
  wanted.face = com::ViewOf(name.Get());
  wanted.height = static_cast<int>(size.int64 * kTwipsPerPoint / 10'000);  // currency: 1/10000
  wanted.bold = bold != FALSE;
  wanted.italic = italic != FALSE;
  return wanted;
}

std::string Site::DisplayName() const {
  const auto value = Ambient(DISPID_AMBIENT_DISPLAYNAME);
  return value && value->Type() == VT_BSTR ? com::TextOf(value->Get().bstrVal) : std::string();
}

}  // namespace tavrix::component
