#include "host/calls.h"
#include "host/report.h"
#include "host/text.h"
#include "maintenance/kjkm_impl.h"

namespace tavrix::maintenance {

// A copy: the host may start the view anew in these calls, and the session with it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void Kjkm::ArmWheel(std::shared_ptr<Session> session) {
  const auto wheel = host::Required(session->mcMouseEvent, "MouseEvent");
  const viewkit::FlexGrid& grid = CurrentGrid();
  wheel->SetRange(host::ToLong32((grid.Rows() - 1) / session->scroll_rate));
  if (session_ == session) wheel->Attach(grid.WindowHandle());
}

void Kjkm::OnWheel(std::int32_t value) noexcept {
  Trapped("mcMouseEvent_Wheel->", host::kLoadingError, [&] {
    const auto session = session_;
    const auto wheel = session->mcMouseEvent;
    session->wheel.OnWheel(CurrentGrid(), value, session->scroll_rate, *wheel);
  });
}

void Kjkm::OnScrolled(int page) noexcept {
  Trapped("Vs_AfterScroll->", host::kLoadingError, [&] {
    if (page != current_tab_ || !session_ || !session_->mcMouseEvent) return;
    const auto session = session_;
    const auto wheel = session->mcMouseEvent;
    session->wheel.OnScrolled(Grid(page), session->scroll_rate, *wheel);
  });
}

void Kjkm::OnGridFocused(int page) noexcept {
  Trapped("Vs_GotFocus->", host::kLoadingError, [&] {
    if (!session_ || !session_->mcMouseEvent) return;
    const auto wheel = session_->mcMouseEvent;
    const std::intptr_t window = Grid(page).WindowHandle();
    if (wheel->AttachedTo() != window) wheel->Attach(window);
  });
}

}  // namespace tavrix::maintenance
