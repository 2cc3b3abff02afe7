#include "picker/sel_kjkm_impl.h"

namespace tavrix::picker {

void selKjkm::SetWheelRange(Session& session) {
  const auto wheel = session.mcMouseEvent.Source();
  wheel->SetRange(session.mcMouseEvent.RangeOf(Vs_), Vs_.FixedRows());
}

void selKjkm::OnWheel(std::int32_t value) noexcept {
  Trapped([&] {
    const auto session = Running();
    session->mcMouseEvent.OnWheel(Vs_, value);
  });
}

void selKjkm::OnScrolled() noexcept {
  Trapped([this] {
    const auto session = session_;
    if (session) session->mcMouseEvent.OnScrolled(Vs_);
  });
}

void selKjkm::OnGridFocused() noexcept {
  Trapped([this] {
    const auto session = session_;
    if (session) session->mcMouseEvent.OnFocused(Vs_);
  });
}

}  // namespace tavrix::picker
