#pragma once

// What only the sources of the class need.

#include <memory>
#include <string>
#include <utility>

#include "editing/fm_bkm_add.h"
#include "host/objects.h"
#include "host/report.h"
#include "maintenance/kjkm.h"
#include "viewkit/grid/wheel.h"

namespace tavrix::maintenance {

/// `Clear` lets go of it; a routine that is running then holds it, and all that it uses, to its
/// end.
struct Kjkm::Session {
  // Members end in reverse: the wheel source first, then the dialog, `pcSystem`, the data helper,
  // the code-rule helper, the helper for nothing and the navigator. Hosts rely on that order.
  std::shared_ptr<host::GridNavigator> navigator;
  std::shared_ptr<host::LogHelper> log_helper;  // created and released, asked for nothing
  std::shared_ptr<host::CodeRule> code_rule;
  std::shared_ptr<host::DataHelper> data_helper;
  std::shared_ptr<host::SystemObject> pcSystem;
  std::shared_ptr<editing::FmBkmAdd> mFrmBmAdd;
  viewkit::WheelScroll mcMouseEvent;
  bool started = false;  // `Init` has come to its end
  bool ended = false;    // by `Clear`
  std::string rule;      // setting "kmbm": one digit for each level
};

template <class Body>
host::TrapResult<Body> Kjkm::Trapped(std::string_view prefix, std::int32_t level,
                                     Body&& body) noexcept {
  const auto report = [this](const std::string& text, std::int32_t at) { Report(text, at); };
  return host::Trap(report, prefix, level, std::forward<Body>(body));
}

}  // namespace tavrix::maintenance
