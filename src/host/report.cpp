#include "host/report.h"

namespace tavrix::host {

std::string ErrorText(const std::exception& error) {
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) return "内存不足";
  return error.what();
}

}  // namespace tavrix::host
