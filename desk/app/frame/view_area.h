#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "app/frame/pane.h"
#include "app/frame/style.h"

namespace desk::app {

/// The middle of the frame, in which the view's control lives. Without one it says why.
class ViewArea : public Pane {
 public:
  struct Calls {
    std::function<void(const RECT&)> resized;
    std::function<void()> focused;
  };
  [[nodiscard]] static std::shared_ptr<ViewArea> Make(HWND parent, SharedStyle style, Calls calls);

  void SetStyle(SharedStyle style);
  /// What the empty area says: a headline, and a line on what to do.
  void SetEmptyText(std::wstring headline, std::wstring advice);

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void Arrange() override { calls_.resized(Client()); }
  void Paint(HDC dc, const RECT& area) override;

  SharedStyle style_;
  Calls calls_;
  std::wstring headline_ = L"没有打开的账簿";
  std::wstring advice_ = L"用“账簿”菜单新建或打开一个账簿";
};

}  // namespace desk::app
