#include "host/report.h"
#include "maintenance/kjkm_impl.h"
#include "viewkit/layout/form_status.h"
#include "viewkit/layout/m_mode.h"

// What users have set in the view, kept from one time to the next. Nothing here is reported.
namespace tavrix::maintenance {

namespace {

/// The file is named after the view, not after the tab strip in it: the names of view and file stay
/// one.
constexpr const char* kStatusName = "Kjkm";

}  // namespace

void Kjkm::DoSaveFormStatus() {
  host::IgnoreErrors([this] {
    const auto system = Running()->pcSystem;
    SaveFormStatus(viewkit::GetSelfFilePath(kStatusName, *system), false);
  });
}

/// Saved in full, restored by widths alone, deliberately: the view has an order and an outline of
/// its own.
void Kjkm::DoGetFormStatus() {
  host::IgnoreErrors([this] {
    const auto system = Running()->pcSystem;
    GetFormStatus(viewkit::GetSelfFilePath(kStatusName, *system), true);
  });
}

void Kjkm::GetFormStatus(const std::string& psFile, bool pbWidthOnly) {
  const auto system = Running()->pcSystem;
  viewkit::GetFormStatus(controls_, psFile, pbWidthOnly, viewkit::StatusWalk::kForm, *system);
}

void Kjkm::SaveFormStatus(const std::string& psFile, bool pbWidthOnly) {
  const auto system = Running()->pcSystem;
  viewkit::SaveFormStatus(controls_, psFile, pbWidthOnly, viewkit::StatusWalk::kForm, *system);
}

}  // namespace tavrix::maintenance
