#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

#include "com/bstr.h"
#include "component/loaded_library.h"
#include "component/stub_host.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "tavrix.h"

namespace tavrix::test {

/// The view for a caller that knows its interfaces, over a host of its own.
class View : public testing::Test {
 protected:
  View() { EXPECT_TRUE(form_ && design_); }

  [[nodiscard]] HRESULT Init() {
    const ComPtr<IDispatch> system = StubHost::System(host_);
    IDispatch* given = system.Get();
    VARIANT_BOOL done = VARIANT_FALSE;
    return form_->Init(&given, 1, 0, &done);
  }
  [[nodiscard]] bool Refresh() {
    VARIANT_BOOL done = VARIANT_FALSE;
    return SUCCEEDED(form_->Refresh(&done)) && done != VARIANT_FALSE;
  }
  [[nodiscard]] ComPtr<IFlexGrid> Grid(const char* name = "Vs(0)") {
    return ChildOf(object_, name).As<IFlexGrid>();
  }
  [[nodiscard]] static std::string Cell(const ComPtr<IFlexGrid>& grid, long row, long col) {
    com::Bstr text;
    EXPECT_EQ(grid->get_TextMatrix(row, col, text.Put()), S_OK);
    return com::TextOf(text.Get());
  }
  /// The text of the error that the last call left.
  [[nodiscard]] static std::string ErrorText() {
    ComPtr<IErrorInfo> info;
    com::Bstr text;
    if (GetErrorInfo(0, info.Put()) == S_OK) info->GetDescription(text.Put());
    return com::TextOf(text.Get());
  }

  std::shared_ptr<StubHost> host_ = FewAccounts();
  ComPtr<IUnknown> object_ = CreateView();
  ComPtr<IFormUI> form_ = object_.As<IFormUI>();
  ComPtr<IDesignUI> design_ = object_.As<IDesignUI>();
};

}  // namespace tavrix::test
