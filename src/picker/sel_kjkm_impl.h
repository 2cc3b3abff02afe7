#pragma once

// What only the sources of the class need.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "editing/fm_bkm_add.h"
#include "host/objects.h"
#include "host/report.h"
#include "picker/sel_kjkm.h"
#include "viewkit/grid/wheel.h"
#include "viewkit/tree/c_tree_view.h"

namespace tavrix::picker {

/// `Clear` lets go of it; a routine that is running then holds it, and all that it uses, to its
/// end.
struct selKjkm::Session {
  // Members end in reverse: the tree first, then the wheel source, the form and the system object.
  std::shared_ptr<host::SystemObject> m_System;
  std::shared_ptr<editing::FmBkmAdd> mfrmKjkm;  // made when it is first opened
  viewkit::WheelScroll mcMouseEvent;
  std::shared_ptr<viewkit::cTreeView> m_Tv;
  bool started = false;               // `Init` has come to its end
  bool ended = false;                 // by `Clear`
  std::int32_t program_id = 0;        // of the picker, as the host gave it
  std::int32_t m_MaintainProgID = 0;  // of the account maintenance
  std::string m_ParamKey;             // the filtering parameters at the last load
  bool m_Loaded = false;              // tree and list show what `m_ParamKey` says
  bool tree_stands = false;           // the tree shows it
  int tree_loads = 0;                 // begun so far
  std::string status_file;            // restored from; empty before the first time
};

template <class Body>
host::TrapResult<Body> selKjkm::Trapped(Body&& body) noexcept {
  const auto show = [this](const std::string& text, std::int32_t) { ShowError(text); };
  return host::Trap(show, "", host::kCommandError, std::forward<Body>(body));
}

}  // namespace tavrix::picker
