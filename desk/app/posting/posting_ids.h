#pragma once

namespace desk::app {

/// Identifiers of the posting pane's children; IDOK is the button that adds a line.
enum PostingId {
  kPostingCode = 10,
  kPostingTake,
  kPostingRemove,
  kPostingClear,
  kPostingPost,
  kPostingDate = 20,
  kPostingSummary,
  kPostingDebit,
  kPostingCredit,
  kPostingPartner,
  kPostingList,
  kPostingLabel = 40,
};

}  // namespace desk::app
