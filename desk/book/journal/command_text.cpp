#include "book/journal/command_text.h"

#include <algorithm>

namespace desk::book {

namespace {

using enum CommandKind;

const char* Verb(CommandKind kind) {
  switch (kind) {
    case kAdd:
      return "新增科目 ";
    case kEdit:
      return "修改科目 ";
    case kDelete:
      return "删除科目 ";
    case kRenumber:
      return "改编码：科目 ";
    case kMove:
      return "移到其他上级：科目 ";
    case kMerge:
      return "合并科目 ";
    case kImport:
      return "导入科目 ";
    case kSeal:
      return "封存科目 ";
    case kUnseal:
      return "启封科目 ";
    case kMnemonics:
      return "补助记码：科目 ";
    case kUnknown:
      return "其他程序的改动：科目 ";
    case kOther:
      break;
  }
  return "改动科目 ";
}

std::string Count(std::int64_t number, const char* what) {
  return std::to_string(number) + what;
}

std::string CodeOf(const AccountChange& change) {
  static const std::size_t code = AccountColumn("ccode");
  return (change.Deleted() ? change.before : change.after).Text(code);
}

/// Parts of a sentence.
class Sentence {
 public:
  void Add(const std::string& part) { text_ += (text_.empty() ? "" : "；") + part; }
  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

class Outcome {
 public:
  Outcome(Session& session, HistoryEntry entry)
      : entry_(std::move(entry)),
        changes_(ReadChanges(session, entry_.id)),
        moves_(ReadMoves(session, entry_.id)),
        rule_(ReadRuleChange(session, entry_.id)) {}

  [[nodiscard]] std::string Text() {
    if (entry_.turn != 0 || (entry_.kind != kDelete && !entry_.title.empty())) {
      TellWhole();
      return told_.Text();
    }
    if (entry_.kind == kAdd) {
      TellAdded();
    } else if (entry_.kind == kDelete) {
      TellDeleted();
    } else {
      TellEdited();
    }
    TellNewLeaves();
    return told_.Text();
  }

 private:
  [[nodiscard]] std::vector<AccountChange> Those(bool (AccountChange::*is)() const) const {
    std::vector<AccountChange> those;
    std::ranges::copy_if(changes_, std::back_inserter(those),
                         [&](const AccountChange& change) { return (change.*is)(); });
    return those;
  }

  void TellWhole() {
    const char* turn = entry_.turn == 1 ? "已撤销：" : entry_.turn == 2 ? "已重做：" : "";
    told_.Add(turn + DeedText(entry_));
    // An import has said it already.
    if (changes_.size() > 1 && entry_.kind != kImport) {
      told_.Add(Count(static_cast<std::int64_t>(changes_.size()), " 个科目"));
    }
    if (entry_.postings > 0) told_.Add("移动了 " + Count(entry_.postings, " 笔分录"));
    if (rule_) told_.Add("编码规则由 " + rule_->from + " 改为 " + rule_->to);
  }

  /// One account by its code, several by their number.
  void TellOf(const std::vector<AccountChange>& those, const char* one, const char* several) {
    const auto count = static_cast<std::int64_t>(those.size());
    told_.Add(count == 1 ? one + CodeOf(those.front()) : several + Count(count, " 个科目"));
  }

  void TellAdded() {
    TellOf(Those(&AccountChange::Added), "新增科目 ", "新增了 ");
    TellHandedDown();
  }

  void TellHandedDown() {
    for (const PostingMove& move : moves_) {
      if (move.follows) continue;
      const std::string what =
          move.entries > 0 ? " " + Count(move.entries, " 笔分录") : std::string("余额");
      const bool named = told_.Text().find(move.to) != std::string::npos;
      told_.Add("上级 " + move.from + " 的" + what + "已转入" + (named ? "" : " " + move.to));
    }
  }

  void TellDeleted() { TellOf(Those(&AccountChange::Deleted), "已删除科目 ", "已删除 "); }

  void TellEdited() {
    static const std::size_t code = AccountColumn("ccode");
    for (const AccountChange& change : changes_) {
      if (change.Added() || change.Deleted() || !change.Differs(code)) continue;
      const std::string from = change.before.Text(code);
      std::string text = "编码 " + from + " 改为 " + change.after.Text(code);
      for (const PostingMove& move : moves_) {
        if (!move.follows || move.from != from) continue;
        text += move.entries > 0 ? "，移动了 " + Count(move.entries, " 笔分录") : "，余额随之转移";
      }
      told_.Add(text);
    }
    if (told_.Text().empty()) {
      told_.Add(changes_.size() > 1
                    ? "修改了 " + Count(static_cast<std::int64_t>(changes_.size()), " 个科目")
                    : "已修改科目 " + CodeOf(changes_.front()));
    }
    TellHandedDown();
  }

  /// Accounts that have lost the last one below them.
  void TellNewLeaves() {
    static const std::size_t leaf = AccountColumn("bend");
    for (const AccountChange& change : changes_) {
      const bool became = !change.Added() && !change.Deleted() && change.Differs(leaf) &&
                          change.before.Text(leaf) == "0";
      if (became) told_.Add("科目 " + CodeOf(change) + " 已成为末级");
    }
  }

  HistoryEntry entry_;
  std::vector<AccountChange> changes_;
  std::vector<PostingMove> moves_;
  std::optional<RuleChange> rule_;
  Sentence told_;
};

}  // namespace

std::string DeedText(const HistoryEntry& entry) {
  if (!entry.title.empty()) return entry.title;
  std::string text = Verb(entry.kind) + entry.subject;
  // A save changes the flag of the account above with it: that is not worth a number.
  const bool many = entry.kind != kAdd && entry.kind != kEdit && entry.accounts > 1;
  if (many) text += " 等 " + Count(entry.accounts, " 个");
  return text;
}

std::string CommandText(const HistoryEntry& entry) {
  const char* turn = entry.turn == 1 ? "撤销：" : entry.turn == 2 ? "重做：" : "";
  return turn + DeedText(entry);
}

std::string OutcomeText(Session& session, std::int64_t command) {
  const auto entry = ReadEntry(session, command);
  return entry ? Outcome(session, *entry).Text() : std::string();
}

std::string OutcomeTeller::Next(Session& session) {
  const std::int64_t last = session.LastCommand();
  if (last == told_) return {};
  told_ = last;
  return OutcomeText(session, last);
}

}  // namespace desk::book
