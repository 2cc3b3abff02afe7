#include "app/com/values.h"

namespace desk::app {

BSTR NewBstr(std::string_view text) {
  if (text.empty()) return nullptr;
  return tavrix::component::Bstr(text).Detach();
}

}  // namespace desk::app
