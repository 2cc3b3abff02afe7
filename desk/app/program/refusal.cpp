#include "app/program/refusal.h"

#include "book/session/progress.h"
#include "host/utf.h"

namespace desk::app {

void TellRefusal(const Workplace& place, const char* title, const std::function<void()>& body) {
  using tavrix::viewkit::UserPort;
  try {
    body();
  } catch (const book::WorkCancelled& cancelled) {
    place.frame.SetMessage(tavrix::host::Wide(cancelled.what()));
  } catch (const book::DatabaseError& error) {
    if (error.Kind() != book::ErrorKind::kRefused) throw;
    static_cast<void>(
        place.user.Ask(error.what(), title, UserPort::Icon::kWarning, UserPort::Buttons::kOk));
  }
}

}  // namespace desk::app
