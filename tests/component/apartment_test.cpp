#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <string_view>
#include <thread>

#include "com/bstr.h"
#include "com/variant.h"
#include "component/loaded_library.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "tavrix.h"

namespace tavrix::test {
namespace {

using com::Bstr;
using com::Variant;

/// A view in an apartment of its own, used from another one, with nothing registered. Wine keeps
/// that apartment and what it holds: no test behind this one can see the library unloaded.
TEST(Apartments, EarlyBoundCallersReachAViewFromAnyThread) {
  std::string found;
  std::thread([&found] {
    if (FAILED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) return;
    {
      const auto view = CreateView();
      const auto form = view.As<IFormUI>();
      const auto design = view.As<IDesignUI>();
      found = form && design ? "interfaces" : "none";
      Bstr text;
      const Bstr name(std::string_view("isVisibleNewNext"));
      if (form && SUCCEEDED(form->get_Attributes(name.Get(), text.Put()))) {
        found += " " + com::TextOf(text.Get());
      }
      ComPtr<IDispatch> controls;
      if (design && SUCCEEDED(design->get_Controls(controls.Put())) && controls) {
        found += " controls";
      }
      OLE_COLOR color = 0;
      if (auto own = view.As<_Kjkm>(); own && SUCCEEDED(own->get_BackColor(&color)))
        found += " colour";
      ComPtr<IDispatch> child;
      auto all = controls ? controls.As<IChildControls>() : nullptr;
      if (all && SUCCEEDED(all->get_Item(Variant(std::string_view("Vs(0)")).Get(), child.Put()))) {
        const auto grid = child.As<IChildControl>();
        if (grid && SUCCEEDED(grid->get_TypeName(text.Put()))) {
          found += " " + com::TextOf(text.Get());
        }
        if (child.As<IGridRows>()) found += " rows";
      }
    }
    CoUninitialize();
  }).join();
  EXPECT_EQ(found, "interfaces True controls colour VSFlexGrid rows");
}

}  // namespace
}  // namespace tavrix::test
