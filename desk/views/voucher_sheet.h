#pragma once

#include <string>
#include <vector>

#include "book/ledger/vouchers.h"
#include "viewkit/controls/command_button.h"
#include "viewkit/controls/label.h"
#include "views/sheet.h"
#include "views/voucher_actions.h"
#include "views/voucher_lines.h"

namespace desk::views {

/// One posted voucher, to be read: it can be copied and taken back, never changed.
class VoucherSheet : public Sheet {
 public:
  /// Book and user must outlive the view. Throws what the book raises, and `host::HostError` when
  /// there is no such voucher.
  VoucherSheet(book::Session& session, viewkit::UserPort& user, const book::VoucherKey& key,
               VoucherActions::Calls calls);
  [[nodiscard]] static std::string KeyOf(const book::VoucherKey& key);

  // Sheet
  [[nodiscard]] std::string Title() const override;
  [[nodiscard]] std::string Subtitle() const override { return head_.Caption(); }
  [[nodiscard]] std::string Key() const override { return KeyOf(key_); }
  void Resize(int width, int height) override;
  [[nodiscard]] std::vector<MenuItem> Menu() override;
  [[nodiscard]] bool UseKey(viewkit::Key key, viewkit::Modifiers modifiers) override;

 private:
  void Read() override;
  void Load();
  void OpenAccount();
  void Copy();
  void Reverse();

  book::Session& session_;
  book::VoucherKey key_;
  VoucherActions actions_;

  viewkit::Label head_{"Lbl", 0};
  VoucherLines lines_{grid_};
  viewkit::Label state_{"Lbl", 1};
  viewkit::CommandButton copy_{"Cmd", 0};
  viewkit::CommandButton reverse_{"Cmd", 1};
};

}  // namespace desk::views
