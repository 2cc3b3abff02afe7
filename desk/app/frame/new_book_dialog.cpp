#include "app/frame/new_book_dialog.h"

#include <commctrl.h>

#include <exception>
#include <filesystem>
#include <utility>

#include "app/frame/file_dialog.h"
#include "app/frame/resource.h"
#include "app/frame/search_strip.h"
#include "app/frame/style.h"
#include "viewkit/win32/window.h"

namespace desk::app {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t kFileTypes[] = L"账簿文件 (*.book)\0*.book\0所有文件\0*.*\0";

FileQuery QueryOf(bool open, const std::wstring& folder, const std::wstring& proposed) {
  return {.open = open,
          .title = open ? L"打开账簿" : L"新账簿的文件",
          .types = kFileTypes,
          .ending = kBookEnding + 1,
          .folder = folder,
          .proposed = proposed};
}

/// The dialog's state while it is open.
class NewBookDialog {
 public:
  explicit NewBookDialog(NewBookPlan plan) : plan_(std::move(plan)) {}

  [[nodiscard]] std::optional<NewBookChoice> Run(HWND owner) {
    const INT_PTR answer = DialogBoxParamW(win32::ThisModule(), MAKEINTRESOURCEW(IDD_NEW_BOOK),
                                           owner, Entry, reinterpret_cast<LPARAM>(this));
    if (answer != IDOK) return std::nullopt;
    return choice_;
  }

 private:
  static INT_PTR CALLBACK Entry(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    if (message == WM_INITDIALOG) SetWindowLongPtrW(dialog, DWLP_USER, lparam);
    auto* self = reinterpret_cast<NewBookDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (self == nullptr) return FALSE;
    try {
      return self->OnMessage(dialog, message, wparam);
    } catch (const std::exception&) {
      return FALSE;  // no memory: the dialog stays as it is
    }
  }

  INT_PTR OnMessage(HWND dialog, UINT message, WPARAM wparam) {
    if (message == WM_INITDIALOG) {
      Start(dialog);
      return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const WORD code = HIWORD(wparam);
    switch (LOWORD(wparam)) {
      case IDC_COMPANY:
        if (code == EN_CHANGE) ProposeFile(dialog);
        return TRUE;
      case IDC_CODE_RULE:
        if (code == EN_CHANGE) ShowRule(dialog);
        return TRUE;
      case IDC_FILE:
        if (code == EN_CHANGE && !proposing_) own_file_ = true;
        return TRUE;
      case IDC_BROWSE:
        Browse(dialog);
        return TRUE;
      case IDOK:
        Finish(dialog);
        return TRUE;
      case IDCANCEL:
        EndDialog(dialog, IDCANCEL);
        return TRUE;
      default:
        return FALSE;
    }
  }

  void Start(HWND dialog) {
    style_ = std::make_shared<const Style>(static_cast<int>(GetDpiForWindow(dialog)));
    SetFontsInside(dialog, *style_);
    CheckRadioButton(dialog, IDC_TEMPLATE_ENTERPRISE, IDC_TEMPLATE_EMPTY, IDC_TEMPLATE_ENTERPRISE);
    SendDlgItemMessageW(dialog, IDC_COMPANY, EM_LIMITTEXT, 60, 0);
    SendDlgItemMessageW(dialog, IDC_CODE_RULE, EM_LIMITTEXT, 12, 0);
    SetDlgItemTextW(dialog, IDC_CODE_RULE, plan_.code_rule.c_str());
    for (const std::wstring& currency : plan_.currencies) {
      SendDlgItemMessageW(dialog, IDC_CURRENCY, CB_ADDSTRING, 0,
                          reinterpret_cast<LPARAM>(currency.c_str()));
    }
    SendDlgItemMessageW(dialog, IDC_CURRENCY, CB_SETCURSEL, 0, 0);
    ProposeFile(dialog);
  }

  /// The lengths of codes that the rule makes: "4-6-8".
  static void ShowRule(HWND dialog) {
    std::wstring lengths;
    int length = 0;
    for (const wchar_t digit : WindowText(GetDlgItem(dialog, IDC_CODE_RULE))) {
      length += digit - L'0';
      lengths += (lengths.empty() ? L"各级编码长度 " : L"-") + std::to_wstring(length);
    }
    SetDlgItemTextW(dialog, IDC_RULE_TEXT, lengths.c_str());
  }

  [[nodiscard]] static NewChart ChosenChart(HWND dialog) {
    const auto checked = [&](int id) { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; };
    if (checked(IDC_TEMPLATE_EMPTY)) return NewChart::kEmpty;
    return checked(IDC_TEMPLATE_SMALL) ? NewChart::kSmallEnterprise : NewChart::kEnterprise;
  }

  /// The file follows the company's name until the user writes another.
  void ProposeFile(HWND dialog) {
    if (own_file_) return;
    std::wstring name = FileNameOf(WindowText(GetDlgItem(dialog, IDC_COMPANY)));
    if (name.empty()) name = L"新账簿";
    proposing_ = true;
    SetDlgItemTextW(dialog, IDC_FILE, (fs::path(plan_.folder) / (name + kBookEnding)).c_str());
    proposing_ = false;
  }

  void Browse(HWND dialog) {
    const std::wstring proposed = WindowText(GetDlgItem(dialog, IDC_FILE));
    const auto file = AskFile(dialog, QueryOf(false, plan_.folder, proposed));
    if (file) SetDlgItemTextW(dialog, IDC_FILE, file->path.c_str());
  }

  void Finish(HWND dialog) {
    choice_.chart = ChosenChart(dialog);
    choice_.code_rule = WindowText(GetDlgItem(dialog, IDC_CODE_RULE));
    choice_.currency = WindowText(GetDlgItem(dialog, IDC_CURRENCY));
    choice_.company = WindowText(GetDlgItem(dialog, IDC_COMPANY));
    choice_.file = WindowText(GetDlgItem(dialog, IDC_FILE));
    const std::wstring no_rule = plan_.why_no_rule(choice_.chart, choice_.code_rule);
    if (!no_rule.empty()) return Refuse(dialog, IDC_CODE_RULE, no_rule.c_str());
    if (choice_.company.empty()) return Refuse(dialog, IDC_COMPANY, L"请填写单位名称！");
    if (choice_.file.empty()) return Refuse(dialog, IDC_FILE, L"请填写账簿文件！");
    fs::path file = choice_.file;
    if (file.is_relative()) file = fs::path(plan_.folder) / file;
    if (!file.has_extension()) file += kBookEnding;
    if (fs::exists(file)) return Refuse(dialog, IDC_FILE, L"该文件已存在，请换一个文件名！");
    choice_.file = file.wstring();
    EndDialog(dialog, IDOK);
  }

  static void Refuse(HWND dialog, int id, const wchar_t* text) {
    MessageBoxW(dialog, text, L"提示：", MB_OK | MB_ICONWARNING);
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, id)), TRUE);
  }

  NewBookPlan plan_;
  NewBookChoice choice_;
  SharedStyle style_;
  bool own_file_ = false;
  bool proposing_ = false;
};

}  // namespace

std::optional<NewBookChoice> AskNewBook(HWND owner, NewBookPlan plan) {
  return NewBookDialog(std::move(plan)).Run(owner);
}

std::optional<std::wstring> AskOpenBook(HWND owner, const std::wstring& folder) {
  auto file = AskFile(owner, QueryOf(true, folder, {}));
  if (!file) return std::nullopt;
  return std::move(file->path);
}

}  // namespace desk::app
