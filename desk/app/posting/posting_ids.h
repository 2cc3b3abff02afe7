#pragma once

namespace desk::app {

/// Identifiers of the posting pane's children; IDOK is the button that adds a line.
enum PostingId {
  kPostingCode = 10,
  kPostingDrop,
  kPostingSeveral,
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
  kPostingRange,
  kPostingRangeCodes,
  kPostingLabel = 40,
};

}  // namespace desk::app
