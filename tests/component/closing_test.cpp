#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <ole2.h>
#include <olectl.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "com/bstr.h"
#include "component/answers.h"
#include "component/loaded_library.h"
#include "component/own_container.h"
#include "component/resources.h"
#include "component/stub_host.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "qnPickerUI.h"
#include "tavrix.h"

/// In each call that a control makes of its host or of its container, the container takes it out.
namespace tavrix::test {
namespace {

using com::Bstr;

StubHost::Row PickerRow(int number) {
  const auto whole = [](int value) { return Variant(std::int32_t{value}); };
  const auto text = [](std::string_view content) { return Variant(content); };
  return {whole(number), text(std::to_string(1000 + number)),
          text("科目"),  text(""),
          whole(1),      text("资产"),
          whole(0),      whole(1)};
}

std::shared_ptr<StubHost> ManyRows(bool picker) {
  auto host = FewAccounts();
  if (picker) {
    host->columns = {"i_id",      "ccode",  "ccode_name", "chelp",
                     "bproperty", "cclass", "bclose",     "bend"};
    host->rows.clear();
  }
  for (int i = 1; i <= 30; ++i) {
    host->rows.push_back(picker ? PickerRow(i)
                                : AccountRow(std::to_string(3000 + i), "科目", 1, "资产", 100 + i));
  }
  return host;
}

/// A control in its container. Its interfaces are those of a caller who holds nothing.
struct Placed {
  explicit Placed(bool is_picker)
      : host(ManyRows(is_picker)),
        system(StubHost::System(host)),
        control(container.Place(is_picker ? L"tavrix.selKjkm" : L"tavrix.Kjkm")),
        form(control.As<IFormUI>().Get()),
        picker(control.As<IPickerUI>().Get()),
        ole(control.As<IOleObject>().Get()),
        ole_control(control.As<IOleControl>().Get()),
        in_place(control.As<IOleInPlaceObject>().Get()) {}

  void Begin() {
    ASSERT_EQ(container.Do(control, OLEIVERB_UIACTIVATE), S_OK);
    Init();
    EXPECT_EQ(form != nullptr ? form->Refresh(&done) : picker->Refresh(&done), S_OK);
    const auto grid = Child(form != nullptr ? "Vs(0)" : "Vs").As<IFlexGrid>();
    EXPECT_EQ(grid->put_Row(2), S_OK);
    EXPECT_EQ(grid->put_TopRow(30), S_OK);  // what changes the room at the end moves the rows
    Pump();
    for (const char* name : {"Vs(0)", "vxVSTab", "Vs", "TV", "SearchBox1", "Chk", "Check",
                             "ChkFind", "Cmd(0)", "Cmd(1)", "Cmd(2)", "Cmd(3)"}) {
      long window = 0;
      const auto child = Child(name).As<IChildControl>();
      if (child && SUCCEEDED(child->get_hWnd(&window))) {
        windows.emplace_back(name, reinterpret_cast<HWND>(static_cast<LONG_PTR>(window)));
      }
    }
    SetFocus(Window(form != nullptr ? "Vs(0)" : "Vs"));
  }
  void Init() {
    IDispatch* given = system.Get();
    EXPECT_EQ(
        form != nullptr ? form->Init(&given, 1, 0, &done) : picker->Init(&given, 1, nullptr, &done),
        S_OK);
  }
  [[nodiscard]] ComPtr<IDispatch> Child(const char* name) const {
    ComPtr<IDispatch> controls;
    ComPtr<IDispatch> child;
    control.As<IDesignUI>()->get_Controls(controls.Put());
    controls.As<IChildControls>()->get_Item(Variant(std::string_view(name)).Get(), child.Put());
    return child;
  }
  [[nodiscard]] HWND Window(const std::string& name) const {
    const auto found =
        std::ranges::find(windows, name, [](const auto& each) { return each.first; });
    return found == windows.end() ? nullptr : found->second;
  }
  static void Pump() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  void Press(const char* name, WPARAM key) const {
    SetFocus(Window(name));
    SendMessageW(Window(name), WM_KEYDOWN, key, 1);
    SendMessageW(Window(name), WM_KEYUP, key, 0xC0000001);
  }
  void Click(const char* name, int x, int y) const {
    // Lists of the system take the one from the queue while they handle the other.
    PostMessageW(Window(name), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    SendMessageW(Window(name), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    Pump();
  }
  void Place(int height) {
    const RECT place{0, 0, 400, height};
    EXPECT_EQ(in_place->SetObjectRects(&place, &place), S_OK);
  }
  void SetFontSize(int points) {
    container.ambients.points = points;
    EXPECT_EQ(ole_control->OnAmbientPropertyChange(DISPID_AMBIENT_FONT), S_OK);
  }

  OwnContainer container;
  std::shared_ptr<StubHost> host;
  ComPtr<IDispatch> system;
  ComPtr<IUnknown> control;
  IFormUI* form;
  IPickerUI* picker;
  IOleObject* ole;
  IOleControl* ole_control;
  IOleInPlaceObject* in_place;
  std::vector<std::pair<std::string, HWND>> windows;
  VARIANT_BOOL done = VARIANT_FALSE;
};

/// Something that a caller, a container or the user does.
struct Scene {
  const char* name;
  std::function<void(Placed& placed)> run;
  bool begun = true;  ///< the control is active and shows its list before
  std::function<void(Placed& placed)> prepare{};
};

void Draw(Placed& placed) {
  const HDC dc = CreateCompatibleDC(nullptr);
  const RECTL area{0, 0, 120, 80};
  static_cast<void>(placed.control.As<IViewObject>()->Draw(
      DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &area, nullptr, nullptr, 0));
  DeleteDC(dc);
}

/// What does not differ between the two controls is done with the view alone.
std::vector<Scene> WithAnyControl() {
  static constexpr const char* kGrid = "Vs(0)";
  const auto verb = [](LONG number) {
    return [number](Placed& placed) {
      static_cast<void>(placed.ole->DoVerb(number, nullptr, nullptr, 0, nullptr, nullptr));
    };
  };
  return {
      {"activate", verb(OLEIVERB_UIACTIVATE), false},
      {"show", verb(OLEIVERB_SHOW), false},
      {"draw", Draw, false},
      {"enter the container",
       [](Placed& placed) { placed.ole->SetClientSite(placed.container.MakeSite().Get()); }, false},
      {"init", [](Placed& placed) { placed.Init(); }, false},
      {"hide", verb(OLEIVERB_HIDE)},
      {"deactivate", [](Placed& placed) { placed.in_place->InPlaceDeactivate(); }},
      {"close", [](Placed& placed) { static_cast<void>(placed.ole->Close(OLECLOSE_SAVEIFDIRTY)); }},
      {"activate again", verb(OLEIVERB_UIACTIVATE), true,
       [](Placed& placed) {
         placed.in_place->UIDeactivate();
         SetFocus(placed.container.window.Get());
       }},
      {"larger", [](Placed& placed) { placed.Place(700); }},
      {"smaller font", [](Placed& placed) { placed.SetFontSize(6); }},
      {"larger font", [](Placed& placed) { placed.SetFontSize(30); }},
      {"lose the focus", [](Placed& placed) { SetFocus(placed.container.window.Get()); }},
      {"home key", [](Placed& placed) { placed.Press(kGrid, VK_HOME); }},
      {"enter key", [](Placed& placed) { placed.Press(kGrid, VK_RETURN); }},
      {"scroll", [](Placed& placed) { SendMessageW(placed.Window(kGrid), WM_VSCROLL, SB_TOP, 0); }},
  };
}

std::vector<Scene> OfTheView() {
  auto scenes = WithAnyControl();
  const std::vector<Scene> own = {
      {"refresh", [](Placed& placed) { placed.form->Refresh(&placed.done); }},
      {"new", [](Placed& placed) { placed.form->FileNew(&placed.done); }},
      {"delete", [](Placed& placed) { placed.form->FileDelete(&placed.done); }},
      {"clear", [](Placed& placed) { placed.form->Clear(&placed.done); }},
      {"save state", [](Placed& placed) { placed.form->DoSaveFormStatus(); }},
      {"tab", [](Placed& placed) { placed.Click("vxVSTab", 150, 8); }},
      {"tab key", [](Placed& placed) { placed.Press("vxVSTab", VK_RIGHT); }},
  };
  scenes.insert(scenes.end(), own.begin(), own.end());
  return scenes;
}

std::vector<Scene> OfThePicker() {
  return {
      {"init", [](Placed& placed) { placed.Init(); }, false},
      {"refresh", [](Placed& placed) { placed.picker->Refresh(&placed.done); }},
      {"text",
       [](Placed& placed) { placed.picker->put_Text(Bstr(std::wstring_view(L"1003")).Get()); }},
      {"clear", [](Placed& placed) { placed.picker->Clear(); }},
      {"check box", [](Placed& placed) { placed.Click("Chk", 3, 3); }},
      {"button", [](Placed& placed) { placed.Click("Check", 3, 3); }},
      {"first button", [](Placed& placed) { placed.Click("Cmd(0)", 3, 3); }},
      {"tree key", [](Placed& placed) { placed.Press("TV", VK_DOWN); }},
      {"tree click", [](Placed& placed) { placed.Click("TV", 60, 30); }},
      {"closing a branch",
       [](Placed& placed) {
         placed.Press("TV", VK_DOWN);
         placed.Press("TV", VK_LEFT);
         placed.Press("TV", VK_LEFT);
       }},
      {"typing",
       [](Placed& placed) {
         for (const WPARAM letter : {L'1', L'0', L'4'}) {
           SendMessageW(placed.Window("SearchBox1"), WM_CHAR, letter, 1);
         }
       }},
  };
}

/// The calls of a scene that the container leaves alone: all but `position`, where it takes the
/// control out, and lets go of all there is of it when `last` is set.
class Life {
 public:
  Life(const Scene& scene, bool picker) : scene_(scene), placed_(picker) {
    if (scene.begun) placed_.Begin();
    if (scene.prepare) scene.prepare(placed_);
  }
  [[nodiscard]] std::vector<std::string> Run(std::ptrdiff_t position, bool last) {
    std::vector<std::string> calls;
    const auto hear = [&](const std::string& member) {
      calls.push_back(member);
      if (std::ssize(calls) != position + 1 || !placed_.control) return S_OK;
      const auto kept = last ? std::exchange(placed_.control, nullptr) : placed_.control;
      placed_.container.Remove(kept);
      return S_OK;
    };
    placed_.container.on_call = hear;
    placed_.host->gate = [&](const std::wstring& member) {
      hear(std::string(member.begin(), member.end()));
    };
    {
      const Answers answers(IDYES);
      scene_.run(placed_);
    }
    placed_.host->gate = {};
    placed_.container.on_call = {};
    Placed::Pump();
    const bool struck = position >= 0 && std::ssize(calls) > position;
    EXPECT_TRUE(!struck || placed_.container.ControlWindow() == nullptr) << "still shown";
    EXPECT_EQ(std::ranges::count(placed_.container.modeless, false),
              std::ranges::count(placed_.container.modeless, true));
    if (placed_.control) placed_.container.Remove(placed_.control);
    return calls;
  }

 private:
  const Scene& scene_;
  Placed placed_;
};

/// The first call of each member, in which the container lets go of all, and the last one, if it is
/// another, in which it does not.
std::vector<std::pair<std::size_t, bool>> Chosen(const std::vector<std::string>& calls) {
  std::vector<std::pair<std::size_t, bool>> chosen;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const auto here = calls.begin() + static_cast<std::ptrdiff_t>(i);
    if (std::find(calls.begin(), here, *here) == here) {
      chosen.emplace_back(i, true);
    } else if (std::find(here + 1, calls.end(), *here) == calls.end()) {
      chosen.emplace_back(i, false);
    }
  }
  return chosen;
}

TEST(Closing, IsPossibleInEveryCallThatAControlMakes) {
  const LoadedLibrary library;
  const int windows = Resources::Now().windows;
  int lives = 0;
  for (const bool picker : {false, true}) {
    for (const Scene& scene : picker ? OfThePicker() : OfTheView()) {
      const auto calls = Life(scene, picker).Run(-1, false);
      EXPECT_FALSE(calls.empty()) << scene.name;
      for (const auto& [i, last] : Chosen(calls)) {
        SCOPED_TRACE(std::string(scene.name) + ", call " + std::to_string(i) + " " + calls[i]);
        static_cast<void>(Life(scene, picker).Run(static_cast<std::ptrdiff_t>(i), last));
        ++lives;
        EXPECT_EQ(library.CanUnloadNow(), S_OK);
        EXPECT_EQ(Resources::Now().windows, windows);
      }
    }
  }
  EXPECT_GT(lives, 100);
}

}  // namespace
}  // namespace tavrix::test
