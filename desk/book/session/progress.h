#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "book/database/database.h"

namespace desk::book {

/// How far long work has come.
struct WorkState {
  std::string step;       ///< what is being done, for the user
  std::int64_t done = 0;  ///< of `all`
  std::int64_t all = 0;   ///< 0: not known
};

/// What long work calls now and then, some times a second; false when the user has cancelled.
/// Empty: nobody looks.
using Progress = std::function<bool(const WorkState&)>;

/// The user has cancelled: the work's transaction is undone, and nothing of it is left.
class WorkCancelled : public DatabaseError {
 public:
  WorkCancelled() : DatabaseError(ErrorKind::kRefused, "已取消，账簿没有改变") {}
};

/// Tells how far work has come; `WorkCancelled` when the user has had enough.
inline void Tell(const Progress& progress, const WorkState& state) {
  if (progress && !progress(state)) throw WorkCancelled();
}

}  // namespace desk::book
