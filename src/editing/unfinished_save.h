#pragma once

#include <deque>
#include <string>

namespace tavrix::editing {

/// What has to follow once an account has been written.
struct SaveStep {
  enum class Kind {
    kMovePostings,  ///< those of `code` in `ledger` go to the account
    kLeaveParent,   ///< the parent of `code`, which the account had, may have become a leaf
    kJoinParent,  ///< the account's parent is no leaf any more. `code`: that parent, from when its
                  ///< flag has been seen to be set; empty before
  };
  Kind kind = Kind::kJoinParent;
  std::string code;
  const char* ledger = "";
};

/// A save whose account stands in the chart and which is not at its end. A statement that fails
/// leaves the steps from its own on to the next save; steps may be sent again without harm when it
/// is not known whether they stand.
class UnfinishedSave {
 public:
  explicit UnfinishedSave(bool is_new) : is_new_(is_new) {}

  /// The first statement that stood was the insert.
  [[nodiscard]] bool IsNew() const { return is_new_; }
  [[nodiscard]] bool Done() const { return steps_.empty(); }
  [[nodiscard]] SaveStep& Next() { return steps_.front(); }
  /// The next step stands.
  void Finish() { steps_.pop_front(); }

  /// The account has been written with the code `to`; its code was `from`, or none for an insert,
  /// which gives `to` twice. Steps that are left are for the new code from now on.
  void Written(const std::string& from, const std::string& to);
  /// The flag of `parent`, the next step's, is cleared: its postings are the next to be moved.
  void HandDown(const std::string& parent);

 private:
  std::deque<SaveStep> steps_;
  bool is_new_;
};

}  // namespace tavrix::editing
