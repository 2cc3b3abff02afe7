#pragma once

namespace tavrix::picker {

/// Columns of the account list, in the order of its queries.
enum Column { kId, kCode, kName, kMnemonic, kDirection, kCategory, kClosed, kLeaf, kColumns };

}  // namespace tavrix::picker
