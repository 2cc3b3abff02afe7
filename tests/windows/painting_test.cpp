// Whatever has happened, a window shows what it shows when it is painted anew as a whole.

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <optional>
#include <string>
#include <tuple>

#include "host/non_copyable.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/win32/view_window.h"
#include "windows/desktop.h"
#include "windows/painting_scenes.h"

namespace tavrix::test {
namespace {

using viewkit::win32::ViewWindow;
using viewkit::win32::ViewWindowOptions;

constexpr const char* kScale = "TAVRIX_PAINTING_DPI";  // of the run at another scale

int Setting(const char* name, int otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : std::atoi(text);
}

HWND Window(const viewkit::Control& control) {
  return reinterpret_cast<HWND>(control.WindowHandle());
}

/// Where two pictures of one size differ first; empty where they are equal.
std::string Difference(const Picture& one, const Picture& other) {
  if (one == other) return {};
  RECT area{one.Width(), one.Height(), 0, 0};
  for (int y = 0; y < one.Height(); ++y) {
    for (int x = 0; x < one.Width(); ++x) {
      if (one.At(x, y) == other.At(x, y)) continue;
      const RECT pixel{x, y, x + 1, y + 1};
      area = {std::min<LONG>(area.left, x), std::min<LONG>(area.top, y),
              std::max(area.right, pixel.right), std::max(area.bottom, pixel.bottom)};
    }
  }
  return "from " + std::to_string(area.left) + "," + std::to_string(area.top) + " to " +
         std::to_string(area.right) + "," + std::to_string(area.bottom);
}

/// Whether the view's edge cuts a drop-down list off: the system paints what is left of it in one
/// way bit by bit and in another anew.
bool IsCutOffList(const viewkit::Control& control, HWND window) {
  if (dynamic_cast<const viewkit::ComboBox*>(&control) == nullptr) return false;
  RECT place{};
  RECT visible{};
  RECT view{};
  GetWindowRect(window, &place);
  GetWindowRect(GetParent(window), &view);
  return IntersectRect(&visible, &place, &view) == FALSE || EqualRect(&visible, &place) == FALSE;
}

class PaintingTest : public testing::TestWithParam<std::tuple<const char*, int>> {
 protected:
  PaintingTest() : scene_(MakeScene(std::get<0>(GetParam()))), dice_(Seed()) {
    const ViewWindowOptions options{
        .parent = frame_.Get(), .place = frame_.Client(), .resized = [this](int width, int height) {
          scene_->Resize(width, height);
        }};
    view_.emplace(scene_->Controls(), options);
  }
  ~PaintingTest() override { SetThreadDpiAwarenessContext(unaware_); }
  [[nodiscard]] static unsigned Seed() {
    const auto chosen = static_cast<unsigned>(std::get<1>(GetParam()));
    return chosen + static_cast<unsigned>(Setting("TAVRIX_PAINTING_SEED", 0));
  }
  std::string Act();
  std::string ActOnAControl();
  /// Compares what each window shows with what it shows painted anew; where they differ.
  [[nodiscard]] std::string Faults();

  /// Without it a program is told of 96 dots per inch at every scale.
  DPI_AWARENESS_CONTEXT unaware_ =
      SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
  Frame frame_;
  std::unique_ptr<Scene> scene_;
  Dice dice_;
  std::optional<ViewWindow> view_;
};

std::string PaintingTest::ActOnAControl() {
  for (std::size_t at = 0; at < scene_->Controls().Count(); ++at) {
    viewkit::Control& control = scene_->Controls().At(at);
    if (!control.Visible()) continue;
    auto* tree = dynamic_cast<viewkit::TreeView*>(&control);
    if (tree != nullptr && dice_.OneIn(2)) return RunOne(TreeActions(), *tree, dice_);
    auto* grid = dynamic_cast<viewkit::FlexGrid*>(&control);
    if (grid == nullptr) continue;
    const auto actions = dice_.OneIn(3) ? GridChanges() : GridInputs();
    return grid->Name() + " " + RunOne(actions, *grid, dice_);
  }
  return "nothing";
}

std::string PaintingTest::Act() {
  if (dice_.OneIn(40)) {
    RECT place = frame_.Client();
    place.right -= dice_.Below(200);
    place.bottom -= dice_.Below(150);
    view_->SetPlace(place);
    return "sized";
  }
  if (dice_.OneIn(12)) return scene_->ActAlone(dice_);
  return ActOnAControl();
}

std::string PaintingTest::Faults() {
  std::string faults;
  for (std::size_t at = 0; at < scene_->Controls().Count(); ++at) {
    const viewkit::Control& control = scene_->Controls().At(at);
    const HWND window = Window(control);
    if (!control.Visible() || IsCutOffList(control, window)) continue;
    UpdateWindow(window);
    const Picture before(window);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    const std::string difference = Difference(before, Picture(window));
    if (!difference.empty()) faults += control.Name() + " " + difference + "; ";
  }
  return faults;
}

TEST_P(PaintingTest, WhatWasPaintedBitByBitLooksAsPaintedAnew) {
  ASSERT_EQ(view_->Dpi(), Setting(kScale, 96));
  const char* wanted = std::getenv("TAVRIX_LONG");
  const int steps = wanted != nullptr && std::string(wanted) == "yes" ? 1000 : 200;
  std::deque<std::string> last;
  for (int step = 1; step <= steps; ++step) {
    for (int actions = dice_.OneIn(3) ? 2 + dice_.Below(2) : 1; actions > 0; --actions) {
      last.push_back(std::to_string(step) + " " + Act());
    }
    while (last.size() > 8) last.pop_front();
    Pump();
    const std::string faults = Faults();
    if (faults.empty()) continue;
    std::string story;
    for (const std::string& action : last) story += action + "; ";
    FAIL() << "seed " << Seed() << ", step " << step << ": " << faults << "\nafter: " << story;
  }
  RecordProperty("steps", steps);
}

INSTANTIATE_TEST_SUITE_P(Views, PaintingTest,
                         testing::Combine(testing::Values("maintenance", "picker", "balance",
                                                          "tree"),
                                          testing::Values(1, 2)),
                         [](const auto& run) {
                           return std::string(std::get<0>(run.param)) + "_seed_" +
                                  std::to_string(std::get<1>(run.param));
                         });

/// The scale of the system as programs find it that begin while this lives.
class SystemScale : private host::NonCopyable {
 public:
  explicit SystemScale(DWORD dpi) {
    RegCreateKeyW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", &key_);
    RegSetValueExW(key_, kDpi, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&dpi), sizeof dpi);
    SetEnvironmentVariableW(L"TAVRIX_PAINTING_DPI", std::to_wstring(dpi).c_str());
  }
  ~SystemScale() {
    SetEnvironmentVariableW(L"TAVRIX_PAINTING_DPI", nullptr);
    RegDeleteValueW(key_, kDpi);
    RegCloseKey(key_);
  }

 private:
  static constexpr const wchar_t* kDpi = L"LogPixels";
  HKEY key_ = nullptr;
};

TEST(PaintingAtAnotherScaleTest, LooksAsPaintedAnewToo) {
  const SystemScale scale(144);
  wchar_t program[MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  std::wstring command = L"windows_tests --gtest_filter=Views/PaintingTest.*";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION run{};
  ASSERT_TRUE(CreateProcessW(program, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                             &startup, &run));
  WaitForSingleObject(run.hProcess, INFINITE);
  DWORD failed = 1;
  GetExitCodeProcess(run.hProcess, &failed);
  CloseHandle(run.hThread);
  CloseHandle(run.hProcess);
  EXPECT_EQ(failed, 0U);
}

}  // namespace
}  // namespace tavrix::test
