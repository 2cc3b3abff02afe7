#include "viewkit/wheel.h"
#include "host/calls.h"
#include "host/text.h"
#include "picker/session.h"
#include "picker/trap.h"

namespace tavrix::picker {

void selKjkm::SetWheelRange(Session& session) {
  const auto wheel = host::Required(session.mcMouseEvent, "MouseEvent");
  wheel->SetRange(host::ToLong32((Vs_.Rows() - 1) / session.m_ScrollRate), Vs_.FixedRows());
}

void selKjkm::OnWheel(std::int32_t value) noexcept {
  Trapped([&] {
    viewkit::ScrollByWheel(Vs_, value, Running()->m_ScrollRate);
    return true;
  });
}

void selKjkm::OnScrolled() noexcept {
  Trapped([this] {
    if (!session_ || !session_->mcMouseEvent) return true;
    const auto session = session_;
    session->mcMouseEvent->SetPosition(host::ToLong32(Vs_.TopRow() / session->m_ScrollRate));
    return true;
  });
}

void selKjkm::OnGridFocused() noexcept {
  Trapped([this] {
    if (!session_ || !session_->mcMouseEvent) return true;
    const auto wheel = session_->mcMouseEvent;
    const std::intptr_t window = Vs_.WindowHandle();
    if (wheel->AttachedTo() != window) wheel->Attach(window);
    return true;
  });
}

}  // namespace tavrix::picker
