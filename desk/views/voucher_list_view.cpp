#include "views/voucher_list_view.h"

#include <algorithm>
#include <array>
#include <utility>

#include "book/ledger/money_text.h"
#include "host/error.h"
#include "host/grid_update.h"
#include "host/text.h"
#include "views/date_text.h"
#include "views/ledger_grid.h"
#include "views/typed_account.h"

namespace desk::views {

namespace {

using enum LedgerColumn::Kind;
constexpr std::array<LedgerColumn, VoucherListView::kColumns> kPlans = {{{"日期", 1260, kCentred},
                                                                         {"凭证号", 1890},
                                                                         {"摘要", 5000},
                                                                         {"金额", 1800, kAmount},
                                                                         {"制单", 1350}}};
constexpr int kMinSummary = 2400;

std::string TextOf(const viewkit::TextBox& box) {
  return std::string(host::Trimmed(box.Text()));
}

std::string DateOf(const viewkit::TextBox& box, bool last) {
  const std::string text = TextOf(box);
  if (text.empty()) return {};
  const auto date = ParseDate(text, last);
  if (!date) throw host::HostError("“" + text + "”不是日期，请键入如 2024-03-01 或 2024-03");
  return DateText(*date);
}

std::optional<std::int64_t> AmountOf(const viewkit::TextBox& box) {
  const std::string text = TextOf(box);
  if (text.empty()) return std::nullopt;
  const auto amount = book::ParseMoney(text);
  if (!amount) throw host::HostError("“" + text + "”：" + book::WhyNoMoney(text));
  return *amount < 0 ? -*amount : *amount;
}

/// What was looked for, in words.
std::string WordsOf(const book::VoucherSearch& search) {
  std::string words;
  const auto add = [&](const std::string& label, const std::string& text) {
    if (!text.empty()) words += (words.empty() ? "" : "    ") + label + text;
  };
  const bool dates = !search.first_date.empty() || !search.last_date.empty();
  if (dates) add("日期 ", search.first_date + " 至 " + search.last_date);
  add("科目 ", search.account);
  add("摘要或往来 ", search.text);
  if (search.least) add("金额 ", book::MoneyText(*search.least));
  if (search.most) add("至 ", book::MoneyText(*search.most));
  return words;
}

}  // namespace

VoucherListView::VoucherListView(book::Session& session, viewkit::UserPort& user,
                                 VoucherActions::Calls calls)
    : Sheet(user), session_(session), actions_(session, user, std::move(calls)) {
  MakeControls();
  Load();
}

void VoucherListView::MakeControls() {
  const std::pair<viewkit::Label*, const char*> labels[] = {
      {&date_label_, "日期(&D)"},     {&last_label_, "至"},         {&code_label_, "科目(&K)"},
      {&text_label_, "摘要往来(&T)"}, {&amount_label_, "金额(&M)"}, {&most_label_, "至"}};
  for (const auto& [label, caption] : labels) label->SetCaption(caption);
  const std::pair<viewkit::CommandButton*, const char*> buttons[] = {{&find_, "查找(&F)"},
                                                                     {&clear_, "清除(&E)"},
                                                                     {&open_, "打开(&O)"},
                                                                     {&copy_, "复制为新凭证(&N)"},
                                                                     {&reverse_, "冲销(&R)…"}};
  for (const auto& [button, caption] : buttons) button->SetCaption(caption);
  first_date_.SetPlaceholder("2024-03-01");
  last_date_.SetPlaceholder("2024-03");
  code_.SetPlaceholder("编码、名称或助记码");
  for (viewkit::TextBox* box : {&least_, &most_}) box->SetAlignRight(true);
  MakeLedgerGrid(grid_, kPlans, "凭证");
  for (viewkit::Control* control : std::initializer_list<viewkit::Control*>{
           &date_label_, &first_date_, &last_label_, &last_date_,    &code_label_,
           &code_,       &text_label_, &text_,       &amount_label_, &least_,
           &most_label_, &most_,       &find_,       &clear_,        &grid_,
           &lines_grid_, &note_,       &open_,       &copy_,         &reverse_}) {
    controls_.Add(*control);
  }
  find_.Clicked.Add([this] { Search(); });
  clear_.Clicked.Add([this] { ClearSearch(); });
  open_.Clicked.Add([this] { Open(); });
  copy_.Clicked.Add([this] { Copy(); });
  reverse_.Clicked.Add([this] { Reverse(); });
  grid_.DoubleClick.Add([this] { Open(); });
  grid_.RowColChange.Add([this] { Trapped([this] { ShowLines(); }); });
  lines_grid_.DoubleClick.Add(
      [this] { Trapped([this] { actions_.OpenAccount(lines_.ChosenCode()); }); });
}

book::VoucherSearch VoucherListView::ReadSearch() const {
  const std::string account = TextOf(code_);
  return {.first_date = DateOf(first_date_, false),
          .last_date = DateOf(last_date_, true),
          .account = account.empty() ? std::string() : TypedAccountCode(session_, account),
          .text = TextOf(text_),
          .least = AmountOf(least_),
          .most = AmountOf(most_)};
}

void VoucherListView::Search() {
  Trapped([this] {
    search_ = ReadSearch();
    Load();
    grid_.SetFocus();
  });
}

void VoucherListView::ClearSearch() {
  for (viewkit::TextBox* box : {&first_date_, &last_date_, &code_, &text_, &least_, &most_}) {
    box->SetText({});
  }
  Search();
  first_date_.SetFocus();
}

void VoucherListView::Load() {
  const viewkit::WaitCursor wait(User());
  heads_ = book::FindVouchers(session_, search_, kMax + 1);
  const bool more = heads_.size() > kMax;
  if (more) heads_.resize(kMax);
  sought_ = WordsOf(search_);
  if (more)
    sought_ += (sought_.empty() ? "" : "    ") + std::string("只列出最近的 ") +
               std::to_string(kMax) + " 张";
  ShowHeads(grid_.FixedRows());
  std::int64_t total = 0;
  for (const book::VoucherHead& head : heads_) total += head.total;
  note_.SetCaption(more ? "只列出最近的 " + std::to_string(kMax) + " 张凭证，请加上查找条件"
                        : std::to_string(heads_.size()) + " 张凭证    金额合计 " +
                              book::MoneyText(total));
}

void VoucherListView::ShowHeads(int row) {
  host::RowSet rows(kColumns);
  for (const book::VoucherHead& head : heads_) {
    rows.AppendText(head.date);
    rows.AppendText(book::VoucherName(head.key));
    rows.AppendText(head.summary);
    rows.AppendText(AmountCell(head.total));
    rows.AppendText(head.prepared_by);
  }
  {
    const host::GridUpdate update(grid_);
    grid_.LoadRows(std::move(rows));
    RedNegatives(grid_, kTotal, kTotal);
    grid_.SetRow(std::min(row, grid_.Rows() - 1));
  }
  ShowLines();
}

void VoucherListView::Read() {
  const auto before = Chosen();
  const int top = grid_.TopRow();
  Load();
  if (!before) return;
  const auto at = std::ranges::find(heads_, *before, &book::VoucherHead::key);
  if (at == heads_.end()) return;
  grid_.SetTopRow(top);
  grid_.SetRow(grid_.FixedRows() + static_cast<int>(at - heads_.begin()));
  grid_.ShowRow(grid_.Row());
}

std::optional<book::VoucherKey> VoucherListView::Chosen() const {
  const int at = grid_.Row() - grid_.FixedRows();
  if (at < 0 || at >= static_cast<int>(heads_.size())) return std::nullopt;
  return heads_[static_cast<std::size_t>(at)].key;
}

void VoucherListView::ShowLines() {
  const auto key = Chosen();
  for (viewkit::CommandButton* button : {&open_, &copy_, &reverse_}) {
    button->SetEnabled(key.has_value());
  }
  const auto voucher = key ? book::ReadVoucher(session_, *key) : std::nullopt;
  if (!voucher) return lines_.Clear();
  lines_.Show(session_, *voucher);
}

template <class Action>
void VoucherListView::OnChosen(Action&& action) {
  const auto key = Chosen();
  if (key) Trapped([&] { action(*key); });
}

void VoucherListView::Open() {
  OnChosen([this](const book::VoucherKey& key) { actions_.Open(key); });
}

void VoucherListView::Copy() {
  OnChosen([this](const book::VoucherKey& key) { actions_.Copy(key); });
}

void VoucherListView::Reverse() {
  OnChosen([this](const book::VoucherKey& key) {
    const auto made = actions_.Reverse(key);
    if (!made) return;
    Load();
    const auto at = std::ranges::find(heads_, *made, &book::VoucherHead::key);
    if (at != heads_.end()) {
      grid_.SetRow(grid_.FixedRows() + static_cast<int>(at - heads_.begin()));
      grid_.ShowRow(grid_.Row());
    }
    grid_.SetFocus();
    note_.SetCaption("已过账：" + book::VoucherName(*made) + "，冲销 " + book::VoucherName(key));
  });
}

std::vector<Sheet::MenuItem> VoucherListView::Menu() {
  const bool any = Chosen().has_value();
  return {{.text = "打开(&O)\tEnter", .run = [this] { Open(); }, .enabled = any},
          {.text = "复制为新凭证(&N)", .run = [this] { Copy(); }, .enabled = any},
          {.text = "冲销(&X)…", .run = [this] { Reverse(); }, .enabled = any}};
}

bool VoucherListView::InSearch() const {
  return std::ranges::any_of(std::array{&first_date_, &last_date_, &code_, &text_, &least_, &most_},
                             [](const viewkit::TextBox* box) { return box->Focused(); });
}

bool VoucherListView::UseKey(viewkit::Key key, viewkit::Modifiers) {
  if (key != viewkit::Key::kEnter) return false;
  if (grid_.Focused()) return Open(), true;
  if (InSearch()) return Search(), true;
  if (!lines_grid_.Focused()) return false;
  Trapped([this] { actions_.OpenAccount(lines_.ChosenCode()); });
  return true;
}

void VoucherListView::ArrangeSearch(int width) {
  constexpr int kDay = 1350;
  constexpr int kAmount = 1500;
  constexpr int kLabel = 1080;
  constexpr int kTo = 240;
  constexpr int kButton = 1200;
  constexpr int kGap = 240;
  const int right = std::min(width, 13'000) - Strip::kEdge;
  Strip first;
  first.PutLabel(date_label_, kLabel);
  first.Put(first_date_, kDay);
  first.PutLabel(last_label_, kTo);
  first.Put(last_date_, kDay, kGap);
  first.PutLabel(code_label_, 780);
  first.Put(code_, right - first.Left() - kButton - 90, 90);
  first.Put(clear_, kButton);
  Strip second(Strip::kLine + Strip::kEdge / 2);
  second.PutLabel(text_label_, kLabel);
  second.Put(text_, 2 * kDay + 90 + kTo + 60, kGap);
  second.PutLabel(amount_label_, 780);
  const int amount = std::min(kAmount, (right - second.Left() - kButton - kTo - 330) / 2);
  second.Put(least_, amount);
  second.PutLabel(most_label_, kTo);
  second.Put(most_, amount);
  second.Put(find_, 0);
  find_.SetBounds({clear_.GetBounds().left, most_.GetBounds().top, kButton, Strip::kLine});
}

void VoucherListView::Resize(int width, int height) {
  constexpr int kHead = Strip::kHeight + Strip::kLine + Strip::kEdge / 2;
  constexpr int kButton = 1650;
  constexpr int kLines = 2700;
  ArrangeSearch(width);
  const int foot = std::max(kHead, height - Strip::kHeight);
  const int lines = std::min(kLines, (foot - kHead) / 2);
  grid_.SetBounds({0, kHead, width, foot - kHead - lines - 60});
  lines_grid_.SetBounds({0, foot - lines, width, lines});
  FitColumn(grid_, kSummary, kMinSummary);
  lines_.Fit();
  Strip strip(foot);
  strip.PutLabel(note_, width - 2 * Strip::kEdge - 3 * (kButton + 90), 90);
  for (viewkit::CommandButton* button : {&open_, &copy_, &reverse_}) strip.Put(*button, kButton);
}

}  // namespace desk::views
