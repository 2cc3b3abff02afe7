#include "host/report.h"
#include "picker/sel_kjkm_impl.h"
#include "viewkit/layout/form_status.h"
#include "viewkit/layout/m_mode.h"

// What users have set in the picker, kept from one time to the next. Nothing here is reported.
namespace tavrix::picker {

void selKjkm::DoGetFormStatus() {
  host::IgnoreErrors([this] {
    const auto system = Running()->m_System;
    GetFormStatus(viewkit::GetSelfFilePath(StatusName(), *system), false);
  });
}

void selKjkm::DoSaveFormStatus() {
  host::IgnoreErrors([this] {
    const auto system = Running()->m_System;
    SaveFormStatus(viewkit::GetSelfFilePath(StatusName(), *system), false);
  });
}

void selKjkm::GetFormStatus(const std::string& psFile, bool pbWidthOnly) {
  const auto session = Running();
  const auto system = session->m_System;
  // Known before the walk: restoring a check box or the tree loads the list.
  session->status_file = psFile;
  viewkit::GetFormStatus(controls_, psFile, pbWidthOnly, viewkit::StatusWalk::kPicker, *system);
}

void selKjkm::SaveFormStatus(const std::string& psFile, bool pbWidthOnly) {
  const auto system = Running()->m_System;
  viewkit::SaveFormStatus(controls_, psFile, pbWidthOnly, viewkit::StatusWalk::kPicker, *system);
}

void selKjkm::RestoreTotals() {
  const auto session = session_;
  if (!session || session->status_file.empty()) return;
  const auto system = session->m_System;
  if (system) viewkit::ApplyVsRows(session->status_file, Vs_, *system);
}

}  // namespace tavrix::picker
