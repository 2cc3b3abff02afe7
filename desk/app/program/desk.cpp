#include "app/program/desk.h"

#include <exception>
#include <filesystem>

#include "app/automation/com_system.h"
#include "app/automation/window_wheel.h"
#include "app/com.h"
#include "app/frame/new_book_dialog.h"
#include "app/program/book_place.h"
#include "app/program/book_settings.h"
#include "app/program/history_commands.h"
#include "app/program/name_column.h"
#include "app/program/new_window.h"
#include "app/program/print_commands.h"
#include "app/program/recent_commands.h"
#include "book/ledger/posting.h"
#include "book/odbc/wire_text.h"
#include "book/sample.h"
#include "host/report.h"
#include "host/utf.h"
#include "tavrix_version.h"
#include "viewkit/layout/m_mode.h"
#include "views/default_layout.h"

namespace desk::app {
namespace {

namespace fs = std::filesystem;
namespace host = tavrix::host;
using tavrix::host::Narrow;
using tavrix::host::Wide;

constexpr wchar_t kTitle[] = L"会计科目";
constexpr char kLeaveBook[] = "是否打开另一账簿？";
constexpr wchar_t kSampleFile[] = L"示例账簿.book";
constexpr char kSampleCompany[] = "示例商贸有限公司";

book::Template ContentOf(NewChart chart) {
  if (chart == NewChart::kEmpty) return book::LoadEmptyTemplate();
  return book::LoadTemplate(chart == NewChart::kSmallEnterprise
                                ? book::StandardChart::kSmallEnterprise
                                : book::StandardChart::kEnterprise);
}

NewBookPlan PlanOfNewBooks(const fs::path& folder) {
  NewBookPlan plan{.folder = folder.wstring(), .code_rule = Wide(book::Template().code_rule)};
  for (const std::string& name : book::BaseCurrencies()) plan.currencies.push_back(Wide(name));
  plan.why_no_rule = [](NewChart chart, const std::wstring& rule) {
    return Wide(book::WhyNoCodeRule(Narrow(rule), ContentOf(chart).accounts));
  };
  return plan;
}

}  // namespace

Desk::Desk()
    : folders_(DeskFolders::Find()),
      settings_(folders_),
      log_(folders_.user),
      frame_(FrameWindow::Make(*this)),
      user_({.owner = [this] { return frame_->Hwnd(); },
             .modal = [this](bool modal) { sheets_.SetModal(frame_->Hwnd(), modal); }}),
      wait_(std::make_shared<ServerWait>(frame_->Hwnd())),
      sheets_(frame_->Hwnd(), settings_,
              {.style = [this] { return frame_->CurrentStyle(); },
               .key = [this](auto& sheet, auto key,
                             auto with) { return UsePrintKey(Place(), sheet, key, with); }}),
      follower_(frame_->Hwnd(), MakeBookFollowerCalls()) {
  log_.Started();
  frame_->OnReport([this](const Report& report) { log_.Reported(report); });
  frame_->SetRecent(settings_.RecentNames());
  frame_->Reports().SetDesignHeight(settings_.ReportHeight());
  account_.emplace(*frame_, MakeFollowerCalls());
  account_->SetDesignWidth(settings_.AccountWidth());
  account_->SetShown(settings_.AccountShown());
  posting_ = PostingPane::Make(frame_->Hwnd(), frame_->CurrentStyle(), MakePostingPlan());
  book::OnUnsavedSettings([this](const std::string& text) { TellUnsaved(text); });
}

Desk::~Desk() {
  CloseBook();
  log_.Ended();
  // The desk's own settings are written last, when no window is left to tell of a failure.
  book::OnUnsavedSettings([](const std::string& text) {
    MessageBoxW(nullptr, Wide(text).c_str(), kTitle, MB_OK | MB_ICONWARNING);
  });
}

void Desk::Start(const std::wstring& book, int show) {
  settings_.Restore(frame_->Hwnd(), DeskSettings::kFrame, show);
  StepAside(frame_->Hwnd());
  UpdateWindow(frame_->Hwnd());
  if (book.empty()) {
    OpenSample();
  } else {
    Open(book);
  }
  OnFocusView();
  frame_->UpdateCommands();
}

int Desk::Run() {
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    wait_->OnMessage(message);
    KjkmView* view = View();
    const bool in_view = view != nullptr && view->Container().HasFocus();
    const bool used = sheets_.Translate(message) || posting_->Translate(message) ||
                      frame_->Translate(message, in_view) ||
                      (in_view && View() == view && view->Container().Translate(message));
    if (!used) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    // What a message has changed shows as soon as nothing more is waiting.
    if (frame_->Alive() && !PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
      Trapped({}, [this] { CatchUp(); });
      frame_->UpdateCommands();
      account_->Follow();
    }
  }
  return static_cast<int>(message.wParam);
}

void Desk::Trapped(const std::wstring& context, const std::function<void()>& body) {
  try {
    body();
  } catch (const std::exception& error) {
    // What says where it happened speaks of a book that is not open.
    const bool of_open = open_ && context.empty();
    Fail(context + Wide(host::ErrorText(error)), of_open ? NameOf(open_->file) : std::wstring());
  }
}

/// A command of the view, or a form of the picker, brings one page up to date at most.
void Desk::CatchUp() {
  KjkmView* view = View();
  if (view == nullptr || !view->Started() || !IsWindowEnabled(frame_->Hwnd())) return;
  const book::Session& session = open_->book.GetSession();
  if (session.Changes() != open_->shown) return ReadAgain();
  if (session.Postings() != open_->posted) return follower_.Note(), ReadPostings();
  view->NoteWidths();
}

void Desk::ReadAgain() {
  follower_.Note();
  open_->shown = open_->book.GetSession().Changes();
  View()->Reload();
  ReadPostings();
  // The view has cleared the line while it was reading.
  const std::string news = open_->teller.Next(open_->book.GetSession());
  if (!news.empty()) frame_->SetMessage(Wide(news));
}

void Desk::ReadPostings() {
  open_->posted = open_->book.GetSession().Postings();
  account_->Renew();
  sheets_.Follow();
}

bool Desk::MayLeave(const char* question) {
  return posting_->MayForget(question) && sheets_.MayClose();
}

void Desk::Fail(const std::wstring& text, const std::wstring& book) {
  frame_->AddReport({.text = text, .level = host::kLoadingError, .title = kTitle, .book = book});
  if (!open_) return frame_->Area().SetEmptyText(L"没有打开的账簿", text);
  if (!View()) frame_->Area().SetEmptyText(L"不能显示科目表", text);
}

void Desk::TellUnsaved(const std::string& text) {
  if (!frame_->Alive()) return;
  frame_->SetMessage(Wide(text));
  frame_->AddReport({.text = Wide(text),
                     .level = host::kCommandError,
                     .title = kTitle,
                     .book = open_ ? NameOf(open_->file) : std::wstring()});
}

void Desk::OnViewArea(const RECT& area) {
  if (View()) View()->Container().SetArea(area);
}

void Desk::OnActivate(bool active) {
  if (View()) View()->Container().OnFrameActivate(active);
}

bool Desk::OnFocusView() {
  return View() != nullptr && View()->Container().Focus();
}

void Desk::OnStyle() {
  posting_->SetStyle(frame_->CurrentStyle());
  account_->SetStyle(frame_->CurrentStyle());
  if (View()) View()->Container().OnAmbientChange();
}

bool Desk::OnClosing() {
  if (!MayLeave("是否关闭程序？")) return false;
  wait_->OnClosing();
  settings_.Save(frame_->Hwnd(), DeskSettings::kFrame);
  settings_.SaveReportHeight(frame_->Reports().DesignHeight());
  settings_.SaveAccountPane(account_->DesignWidth(), account_->Shown());
  CloseBook();
  return true;
}

void Desk::AskNew() {
  const auto choice = AskNewBook(frame_->Hwnd(), PlanOfNewBooks(folders_.books));
  if (!choice || !MayLeave(kLeaveBook)) return;
  Trapped(L"不能建立账簿：", [&] {
    book::Template content = ContentOf(choice->chart);
    content.code_rule = Narrow(choice->code_rule);
    book::SetBaseCurrency(content, Narrow(choice->currency));
    book::Book made = book::Book::Create(Narrow(choice->file), content);
    made.SetSetting(kDeskSection, kCompanyKey, Narrow(choice->company));
    made.SetSetting(kDeskSection, kCurrencyKey, Narrow(choice->currency));
    Show(std::move(made), choice->file);
  });
}

void Desk::AskOpen() {
  const auto file = AskOpenBook(frame_->Hwnd(), folders_.books.wstring());
  if (file) Open(*file);
}

void Desk::OpenRecent(std::size_t position) {
  const auto& recent = settings_.Recent().Entries();
  if (position >= recent.size()) return;
  const std::string place = recent[position].place;
  if (MayBeThere(Wide(place))) return Open(Wide(place));
  if (MayForgetBook(user_, place)) settings_.Recent().Forget(place);
  frame_->SetRecent(settings_.RecentNames());
}

void Desk::Open(const std::wstring& file) {
  Trapped(L"不能打开账簿“" + NameOf(file) + L"”：", [&] {
    if (!MayBeThere(file)) throw host::HostError("文件不存在");
    const std::wstring place = IsOnServer(file) ? file : fs::absolute(file).wstring();
    if (!MayLeave(kLeaveBook)) return;
    Show(book::Book::Open({.path = Narrow(place), .waiting = wait_}), place);
  });
}

void Desk::OpenSample() {
  const fs::path file = folders_.books / kSampleFile;
  if (fs::exists(file)) return Open(file.wstring());
  Trapped(L"不能建立示例账簿：", [&] {
    frame_->SetMessage(L"正在建立示例账簿...");
    book::Book sample =
        book::CreateSampleBook(Narrow(file.wstring()), book::StandardChart::kEnterprise);
    sample.SetSetting(kDeskSection, kCompanyKey, kSampleCompany);
    frame_->SetMessage({});
    Show(std::move(sample), file.wstring());
  });
}

void Desk::Show(book::Book book, const std::wstring& file) {
  CloseBook();
  book.Environment().user_folder = Narrow(folders_.user.wstring());
  book.GetSession().SetUser(UserName());
  book.Environment().make_mouse_event = [] { return WindowWheel::Make(); };
  open_.emplace(OpenBook{.book = std::move(book), .file = file, .view = nullptr});
  log_.Opened(open_->book, file);
  if (MayBeKept(file)) settings_.Recent().Remember(Narrow(file));
  frame_->SetRecent(settings_.RecentNames());
  TellBook();
  TellWire();
  if (!open_->book.Faults().empty()) {
    Fail(L"账簿不完整：" + Wide(open_->book.Faults()), NameOf(file));
  }
  Trapped({}, [&] { StartView(); });
}

void Desk::StartView() {
  follower_.Note();
  ContainerPlan plan;
  plan.area = frame_->Area().Hwnd();
  plan.frame = frame_->Hwnd();
  plan.display_name = L"Kjkm1";
  plan.status_text = [this](const std::wstring& text) { frame_->SetMessage(text); };
  plan.tab_out = [this](bool backward) { frame_->FocusBeside(backward); };
  ViewEvents events;
  events.message = [this](const std::wstring& text) { frame_->SetMessage(text); };
  events.report = [this](const std::wstring& text, long level, const std::wstring& title) {
    if (unasked_) return unread_ = text, void();
    frame_->AddReport({.text = text, .level = level, .title = title, .book = NameOf(open_->file)});
  };
  open_->view = std::make_unique<KjkmView>(std::move(plan), std::move(events));
  const auto system = Make<ComSystem>(open_->book.System());
  views::EnsureLayout(
      views::DefaultLayout::kPicker,
      tavrix::viewkit::GetSelfFilePath(AccountPicker::StatusName(), *open_->book.System()));
  open_->view->Start(system.Get(), open_->book.System()->CreateGridNavigator());
  open_->view->OpenAgain(settings_.Branches().Read(Narrow(open_->file)));
  FitNameColumns(*open_->view, *open_->book.System(), frame_->CurrentStyle()->fonts);
  OnFocusView();
}

void Desk::KeepBranches() {
  if (View() == nullptr || !View()->Started() || !MayBeKept(open_->file)) return;
  try {
    settings_.Branches().Write(Narrow(open_->file), View()->OpenBranches());
  } catch (const std::exception&) {  // a view that does not answer has no branches
  }
}

void Desk::CloseBook() {
  if (!open_) return;
  log_.Closed(open_->file);
  follower_.Forget();
  sheets_.CloseAll();
  posting_->ForgetBook();
  KeepBranches();
  open_->view.reset();
  open_.reset();
  if (!frame_->Alive()) return;
  account_->Renew();
  frame_->SetMessage({});
  frame_->ResetBars();
  frame_->Reports().Clear();
  frame_->Reports().SetOpen(false);
  TellBook();
}

void Desk::TellBook() {
  if (!open_) {
    frame_->SetTitle({});
    frame_->SetBookTexts({}, {});
    return;
  }
  const std::wstring& file = open_->file;
  std::wstring company;
  std::wstring currency;
  Trapped({}, [&] {
    company = Wide(CompanyOf(open_->book));
    currency = Wide(CurrencyOf(open_->book));
  });
  const std::wstring name = NameOf(file);
  const std::wstring title = IsOnServer(file) ? name : fs::path(file).stem().wstring();
  frame_->SetTitle(company.empty() ? title : company);
  if (!currency.empty()) company += L"（本位币：" + currency + L"）";
  frame_->SetBookTexts(company, MarkedName(open_->book, file));
}

void Desk::TellWire() {
  const book::Wire wire = open_->book.GetSession().Own().Encryption();
  const std::wstring text = Wide(book::WireWarning(wire, Narrow(open_->file)));
  if (text.empty()) return;
  frame_->AddReport(
      {.text = text, .level = host::kCommandError, .title = kTitle, .book = NameOf(open_->file)});
}

PostingPlan Desk::MakePostingPlan() {
  PostingPlan plan;
  plan.session = [this] { return open_ ? &open_->book.GetSession() : nullptr; };
  plan.system = [this]() -> ComPtr<IDispatch> {
    if (!open_) return nullptr;
    return Make<ComSystem>(open_->book.System());
  };
  plan.selected_code = [this] {
    const auto account = View() ? View()->SelectedAccount() : std::nullopt;
    return account ? Narrow(account->code) : std::string();
  };
  plan.post = [this](const book::Voucher& voucher) {
    if (!open_) throw host::HostError("没有打开的账簿");
    return book::Post(open_->book.GetSession(), voucher);
  };
  plan.close = [this] { ShowPosting(false); };
  return plan;
}

void Desk::ShowPosting(bool shown) {
  posting_shown_ = shown;
  ShowWindow(posting_->Hwnd(), shown ? SW_SHOWNA : SW_HIDE);
  frame_->Dock(shown ? posting_->Hwnd() : nullptr, PostingPane::kDesignHeight);
  if (shown) return posting_->FocusFirst();
  OnFocusView();
}

}  // namespace desk::app
