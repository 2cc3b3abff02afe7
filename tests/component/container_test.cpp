#include <gtest/gtest.h>
#include <windows.h>

#include <oleidl.h>

#include <memory>
#include <string>
#include <utility>

#include "component/foreign_container.h"
#include "component/loaded_library.h"
#include "component/resources.h"
#include "component/stub_host.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "tavrix.h"

namespace tavrix::test {
namespace {

void Load(const ComPtr<IUnknown>& view, const std::shared_ptr<StubHost>& host) {
  const auto system = StubHost::System(host);
  const auto form = view.As<IFormUI>();
  IDispatch* given = system.Get();
  VARIANT_BOOL done = VARIANT_FALSE;
  ASSERT_EQ(form->Init(&given, 1, 0, &done), S_OK);
  ASSERT_EQ(form->Refresh(&done), S_OK);
  ASSERT_EQ(done, VARIANT_TRUE);
}

ComPtr<IFlexGrid> FirstGrid(const ComPtr<IUnknown>& view) {
  return ChildOf(view, "Vs(0)").As<IFlexGrid>();
}

HWND WindowOf(const ComPtr<IFlexGrid>& grid) {
  long handle = 0;
  EXPECT_EQ(grid->get_hWnd(&handle), S_OK);
  return reinterpret_cast<HWND>(static_cast<LONG_PTR>(handle));
}

SIZE SizeOf(HWND window) {
  RECT rectangle{};
  GetWindowRect(window, &rectangle);
  return {rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

long RowOf(const ComPtr<IFlexGrid>& grid) {
  long row = -99;
  EXPECT_EQ(grid->get_Row(&row), S_OK);
  return row;
}

class Placed : public testing::Test {
 protected:
  Placed() { Load(container_.Control(), host_); }

  std::shared_ptr<StubHost> host_ = FewAccounts();
  ForeignContainer container_{L"tavrix.Kjkm", 400, 300};
  ComPtr<IFlexGrid> grid_ = FirstGrid(container_.Control());
};

TEST_F(Placed, FillsItsContainerWhateverItsSize) {
  const HWND window = container_.ControlWindow();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(GetParent(window), container_.Window());
  EXPECT_TRUE(IsWindowVisible(window));
  for (const SIZE size : {SIZE{400, 300}, SIZE{720, 480}, SIZE{90, 60}, SIZE{500, 200}}) {
    container_.Resize(size.cx, size.cy);
    container_.Pump();
    EXPECT_EQ(container_.ControlWindow(), window) << "resized, not made anew";
    EXPECT_EQ(SizeOf(window).cx, size.cx);
    EXPECT_EQ(SizeOf(window).cy, size.cy);
    const HWND grid = WindowOf(grid_);
    EXPECT_TRUE(IsChild(window, grid));
    EXPECT_LE(SizeOf(grid).cx, size.cx);
    EXPECT_GT(SizeOf(grid).cx, size.cx / 2);
    EXPECT_LT(SizeOf(grid).cy, size.cy);
  }
}

TEST_F(Placed, KeysMoveTheRowThroughTheOutline) {
  SetFocus(WindowOf(grid_));
  ASSERT_EQ(GetFocus(), WindowOf(grid_));
  container_.Press(VK_HOME);
  container_.Press(VK_DOWN);
  const long second = RowOf(grid_);
  EXPECT_EQ(second, 2);
  // A closed node hides its rows from the keys, an open one does not.
  container_.Press(VK_DOWN);
  EXPECT_EQ(RowOf(grid_), 5);
  container_.Press(VK_UP);
  EXPECT_EQ(grid_->put_IsCollapsed(2, VARIANT_FALSE), S_OK);
  container_.Press(VK_DOWN);
  EXPECT_EQ(RowOf(grid_), 3);
  container_.Press(VK_END);
  EXPECT_EQ(RowOf(grid_), 5);
  container_.Press(VK_UP);
  EXPECT_EQ(RowOf(grid_), 4);
}

/// The container's own accelerators must not swallow what the outline uses.
TEST_F(Placed, TheOutlinesKeysAreTheGridsAndOthersTheContainers) {
  SetFocus(WindowOf(grid_));
  container_.Press(VK_HOME);
  container_.Press(VK_DOWN);
  const auto collapsed = [&] {
    VARIANT_BOOL is = VARIANT_FALSE;
    EXPECT_EQ(grid_->get_IsCollapsed(2, &is), S_OK);
    return is != VARIANT_FALSE;
  };
  for (const auto& [key, closed] :
       {std::pair{VK_ADD, false}, {VK_SUBTRACT, true}, {VK_MULTIPLY, false}}) {
    container_.Press(static_cast<WORD>(key));
    EXPECT_EQ(collapsed(), closed) << key;
  }
  const auto active = container_.Control().As<IOleInPlaceActiveObject>();
  for (const auto& [key, used] : {std::pair{VK_ADD, S_OK},
                                  {VK_SUBTRACT, S_OK},
                                  {VK_MULTIPLY, S_OK},
                                  {VK_NEXT, S_OK},
                                  {VK_ESCAPE, S_FALSE},
                                  {VK_F2, S_FALSE}}) {
    MSG message{GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(key), 1, 0, {}};
    EXPECT_EQ(active->TranslateAccelerator(&message), used) << key;
  }
}

TEST_F(Placed, TheHostsWheelIsAttachedToTheGridsWindow) {
  const HWND window = WindowOf(grid_);
  EXPECT_NE(window, nullptr);
  EXPECT_EQ(host_->wheel_window, static_cast<long>(reinterpret_cast<LONG_PTR>(window)));
}

TEST_F(Placed, OutlivesItsContainerWithoutAWindow) {
  const ComPtr<IUnknown> view = container_.Control();
  const HWND window = container_.ControlWindow();
  container_.Close();
  EXPECT_FALSE(IsWindow(window));
  long rows = 0;
  EXPECT_EQ(grid_->get_Rows(&rows), S_OK);
  EXPECT_EQ(rows, 6) << "it works without a container";
  EXPECT_EQ(WindowOf(grid_), nullptr);
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(view.As<IFormUI>()->Refresh(&done), S_OK);
  EXPECT_EQ(done, VARIANT_TRUE);
}

TEST(Container, PlacesThePickerToo) {
  ForeignContainer container(L"tavrix.selKjkm", 300, 400);
  EXPECT_NE(container.ControlWindow(), nullptr);
  container.Resize(500, 300);
  container.Pump();
  EXPECT_EQ(SizeOf(container.ControlWindow()).cx, 500);
}

/// Create, place, `Init`, `Refresh`, `Clear`, destroy.
void Cycle(const std::shared_ptr<StubHost>& host) {
  ForeignContainer container(L"tavrix.Kjkm", 400, 300);
  const auto view = container.Control();
  Load(view, host);
  container.Pump();
  UpdateWindow(container.ControlWindow());
  VARIANT_BOOL done = VARIANT_FALSE;
  EXPECT_EQ(view.As<IFormUI>()->Clear(&done), S_OK);
  host->statements.clear();
  host->wheel_calls.clear();
}

TEST(Container, AThousandLivesLeaveNothingBehind) {
  constexpr int kSettled = 200;
  constexpr int kCycles = 1000;
  constexpr std::ptrdiff_t kBytesPerCycle = 100;
  const auto host = FewAccounts();
  Resources settled;
  for (int cycle = 1; cycle <= kCycles && !testing::Test::HasFailure(); ++cycle) {
    Cycle(host);
    if (cycle == kSettled) settled = Resources::Now();
  }
  const Resources end = Resources::Now();
  EXPECT_EQ(end.windows, settled.windows);
  EXPECT_EQ(end.gdi_objects, settled.gdi_objects);
  EXPECT_GT(end.gdi_objects, 0) << "they were not counted";
  RecordProperty("heap_bytes_per_cycle",
                 std::to_string((end.heap_bytes - settled.heap_bytes) / (kCycles - kSettled)));
  EXPECT_LT(end.heap_bytes - settled.heap_bytes, kBytesPerCycle * (kCycles - kSettled));
  EXPECT_EQ(LoadedLibrary().CanUnloadNow(), S_OK);
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(GetModuleHandleW(L"tavrix.dll"), nullptr);
}

}  // namespace
}  // namespace tavrix::test
