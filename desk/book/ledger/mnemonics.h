#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "book/session/session.h"

/// The mnemonics of a chart.
namespace desk::book {

struct MnemonicAccount {
  std::int64_t id = 0;
  std::string code = {};
  std::string name = {};
  std::string mnemonic = {};  ///< as it is kept
};

struct NewMnemonic {
  MnemonicAccount account = {};  ///< as it was read
  std::string mnemonic = {};     ///< what it is to have
};

/// All accounts, in the order of their codes. `DatabaseError` when they cannot be read.
[[nodiscard]] std::vector<MnemonicAccount> ReadMnemonics(Session& session);

/// Writes all of them in one transaction, as one command of the history. An account that has been
/// given another name or mnemonic meanwhile, or is gone, is left as it is. How many were written.
std::size_t WriteMnemonics(Session& session, const std::vector<NewMnemonic>& wanted);

}  // namespace desk::book
