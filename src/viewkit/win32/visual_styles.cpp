#include "viewkit/win32/visual_styles.h"

#include "host/non_copyable.h"
#include "viewkit/win32/window.h"

namespace tavrix::viewkit::win32 {
namespace {

/// The context of this module's manifest, released when the module goes.
class ModuleContext : private host::NonCopyable {
 public:
  ModuleContext() {
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    description.hModule = ThisModule();
    description.lpResourceName = MAKEINTRESOURCEW(2);
    context_ = CreateActCtxW(&description);
  }
  ~ModuleContext() {
    if (Exists()) ReleaseActCtx(context_);
  }
  [[nodiscard]] bool Exists() const { return context_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE Get() const { return context_; }

 private:
  HANDLE context_;
};

}  // namespace

VisualStyles::VisualStyles() {
  static const ModuleContext context;
  active_ = context.Exists() && ActivateActCtx(context.Get(), &cookie_);
}

VisualStyles::~VisualStyles() {
  if (active_) DeactivateActCtx(0, cookie_);
}

}  // namespace tavrix::viewkit::win32
