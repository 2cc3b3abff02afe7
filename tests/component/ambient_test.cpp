#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <olectl.h>
#include <oleidl.h>

#include "com/variant.h"
#include "component/loaded_library.h"
#include "component/own_container.h"
#include "qnDesignUI.h"
#include "tavrix.h"

namespace tavrix::test {
namespace {

/// The font of the child control with this name.
LOGFONTW FontOfChild(const ComPtr<IUnknown>& control, const char* name) {
  const ComPtr<IDispatch> child = ChildOf(control, name);
  long window = 0;
  EXPECT_EQ(child.As<IChildControl>()->get_hWnd(&window), S_OK);
  const auto font = reinterpret_cast<HFONT>(
      SendMessageW(reinterpret_cast<HWND>(static_cast<INT_PTR>(window)), WM_GETFONT, 0, 0));
  LOGFONTW facts{};
  EXPECT_NE(GetObjectW(font, sizeof facts, &facts), 0);
  return facts;
}

/// In which colour the view has its labels drawn.
COLORREF TextColorOf(HWND view) {
  const HDC dc = GetDC(view);
  const HWND label = GetWindow(view, GW_CHILD);
  SendMessageW(view, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
               reinterpret_cast<LPARAM>(label));
  const COLORREF color = GetTextColor(dc);
  ReleaseDC(view, dc);
  return color;
}

TEST(AmbientProperties, GiveTheControlItsFontAndColourAndChangeThem) {
  OwnContainer container;
  Ambients& ambients = container.ambients;
  const ComPtr<IUnknown> control = container.Place(L"tavrix.selKjkm");
  OLE_COLOR color = 0;
  EXPECT_EQ(control.As<_selKjkm>()->get_BackColor(&color), S_OK);
  EXPECT_EQ(color, static_cast<OLE_COLOR>(ambients.back_color));
  ASSERT_EQ(container.Do(control, OLEIVERB_INPLACEACTIVATE), S_OK);

  LOGFONTW font = FontOfChild(control, "SearchBox1");
  // A font object tells the size that it has come to have, which may be half a point off.
  const auto pixels = [&] {
    return MulDiv(ambients.points, GetDpiForWindow(container.window.Get()), 72);
  };
  EXPECT_NEAR(-font.lfHeight, pixels(), 1);
  EXPECT_EQ(font.lfWeight, FW_BOLD);
  const HWND view = container.ControlWindow();
  EXPECT_EQ(TextColorOf(view), 0x00403020U);
  ambients.points = 11;
  ambients.back_color = 0x00102030;
  ambients.fore_color = 0x00FFF0F0;
  EXPECT_EQ(control.As<IOleControl>()->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
  font = FontOfChild(control, "SearchBox1");
  EXPECT_NEAR(-font.lfHeight, pixels(), 1);
  EXPECT_EQ(TextColorOf(view), 0x00FFF0F0U);
  EXPECT_EQ(control.As<_selKjkm>()->get_BackColor(&color), S_OK);
  EXPECT_EQ(color, static_cast<OLE_COLOR>(ambients.back_color));
  // A colour that a caller has set counts more than the container's.
  EXPECT_EQ(control.As<_selKjkm>()->put_BackColor(0x00FFFFFF), S_OK);
  EXPECT_EQ(control.As<IOleControl>()->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
  EXPECT_EQ(control.As<_selKjkm>()->get_BackColor(&color), S_OK);
  EXPECT_EQ(color, 0x00FFFFFFU);
  container.Remove(control);
}

}  // namespace
}  // namespace tavrix::test
