#include "host/report.h"
#include "maintenance/kjkm_impl.h"

namespace tavrix::maintenance {

// A copy: the host may start the view anew in these calls, and the session with it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void Kjkm::ArmWheel(std::shared_ptr<Session> session) {
  const auto wheel = session->mcMouseEvent.Source();
  const viewkit::FlexGrid& grid = CurrentGrid();
  wheel->SetRange(session->mcMouseEvent.RangeOf(grid));
  if (session_ == session) wheel->Attach(grid.WindowHandle());
}

void Kjkm::OnWheel(std::int32_t value) noexcept {
  Trapped("mcMouseEvent_Wheel->", host::kLoadingError, [&] {
    const auto session = session_;
    session->mcMouseEvent.OnWheel(CurrentGrid(), value);
  });
}

void Kjkm::OnScrolled(int page) noexcept {
  Trapped("Vs_AfterScroll->", host::kLoadingError, [&] {
    const auto session = session_;
    if (session && page == current_tab_) session->mcMouseEvent.OnScrolled(Grid(page));
  });
}

void Kjkm::OnGridFocused(int page) noexcept {
  Trapped("Vs_GotFocus->", host::kLoadingError, [&] {
    const auto session = session_;
    if (session) session->mcMouseEvent.OnFocused(Grid(page));
  });
}

}  // namespace tavrix::maintenance
