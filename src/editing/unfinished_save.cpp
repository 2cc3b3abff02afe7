#include "editing/unfinished_save.h"

#include <utility>

#include "editing/ledger_code.h"

namespace tavrix::editing {

void UnfinishedSave::Written(const std::string& from, const std::string& to) {
  // At most one step joins a parent, the last. Where it has seen that parent's flag, it may have
  // cleared it: the parent that the account still has keeps this in mind, one that it has left gets
  // its flag back.
  SaveStep join;
  if (!steps_.empty() && steps_.back().kind == SaveStep::Kind::kJoinParent) {
    join = std::move(steps_.back());
    steps_.pop_back();
  }
  if (from != to) {
    for (const char* ledger : kLedgers) {
      steps_.push_back({SaveStep::Kind::kMovePostings, from, ledger});
    }
    steps_.push_back({SaveStep::Kind::kLeaveParent, from});
  }
  steps_.push_back(std::move(join));
}

void UnfinishedSave::HandDown(const std::string& parent) {
  std::deque<SaveStep> moves;
  for (const char* ledger : kLedgers) {
    moves.push_back({SaveStep::Kind::kMovePostings, parent, ledger});
  }
  steps_.insert(steps_.begin() + 1, moves.begin(), moves.end());
}

}  // namespace tavrix::editing
