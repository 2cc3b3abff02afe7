#include "host/calls.h"
#include "host/text.h"
#include "picker/sel_kjkm_impl.h"

namespace tavrix::picker {

void selKjkm::SetWheelRange(Session& session) {
  const auto wheel = host::Required(session.mcMouseEvent, "MouseEvent");
  wheel->SetRange(host::ToLong32((Vs_.Rows() - 1) / session.m_ScrollRate), Vs_.FixedRows());
}

void selKjkm::OnWheel(std::int32_t value) noexcept {
  Trapped([&] {
    const auto session = Running();
    const auto wheel = session->mcMouseEvent;
    session->wheel.OnWheel(Vs_, value, session->m_ScrollRate, *wheel);
  });
}

void selKjkm::OnScrolled() noexcept {
  Trapped([this] {
    if (!session_ || !session_->mcMouseEvent) return;
    const auto session = session_;
    const auto wheel = session->mcMouseEvent;
    session->wheel.OnScrolled(Vs_, session->m_ScrollRate, *wheel);
  });
}

void selKjkm::OnGridFocused() noexcept {
  Trapped([this] {
    if (!session_ || !session_->mcMouseEvent) return;
    const auto wheel = session_->mcMouseEvent;
    const std::intptr_t window = Vs_.WindowHandle();
    if (wheel->AttachedTo() != window) wheel->Attach(window);
  });
}

}  // namespace tavrix::picker
