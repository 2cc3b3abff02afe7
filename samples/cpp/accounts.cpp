// The chart of accounts and the account picker from C++, bound early: prints both, then shows the
// chart in a window until it is closed. With /print it only prints, with /moment it closes the
// window at once.
#include <cstdio>
#include <string>

#include "container.h"
#include "host.h"
#include "object.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "qnPickerUI.h"
#include "tavrix.h"

/// Prints a line. Reports of the library are in Chinese: the console gets UTF-8.
void Print(const std::wstring& line) {
  std::string bytes(3 * line.size(), '\0');
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  std::puts(bytes.c_str());
}

/// Receives the events of a Kjkm, by their DISPIDs.
class Reports : public Object<__Kjkm> {
 public:
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments,
                                   VARIANT*, EXCEPINFO*, UINT*) override {
    constexpr DISPID kErrMessage = 2;
    // Arguments are in reverse order: title, level, text.
    if (event == kErrMessage && arguments->cArgs == 3)
      Print(std::wstring(arguments->rgvarg[0].bstrVal) + L": " + arguments->rgvarg[2].bstrVal);
    return S_OK;
  }
};

/// Prints the accounts of a pick.
void PrintPicked(IPickerUI* picker) {
  Ref<IDispatch> objects;
  picker->get_Objects(objects.Put());
  const auto accounts = objects.As<_colKjkm>();
  long count = 0;
  accounts->get_Count(&count);
  for (long i = 1; i <= count; ++i) {
    VARIANT position{};
    position.vt = VT_I4;
    position.lVal = i;
    Ref<_clsKjkm> account;
    Text code;
    Text name;
    accounts->get_Item(position, account.Put());
    account->get_ccode(code.Put());
    account->get_ccode_name(name.Put());
    Print(L"picked " + code.Words() + L": " + name.Words());
  }
}

/// Receives the events of a selKjkm. The picker outlives it.
class Picks : public Object<__selKjkm> {
 public:
  explicit Picks(IPickerUI* picker) : picker_(picker) {}
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    constexpr DISPID kDoSelect = 1;  // 2 is DoCancel
    if (event == kDoSelect) PrintPicked(picker_);
    return S_OK;
  }

 private:
  IPickerUI* picker_;
};

/// Connects a receiver to a view's events, as long as it lives.
class Connection {
 public:
  Connection(const Ref<IUnknown>& view, REFIID events, IUnknown* receiver) {
    view.As<IConnectionPointContainer>()->FindConnectionPoint(events, point_.Put());
    if (point_) point_->Advise(receiver, &cookie_);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() {
    if (point_) point_->Unadvise(cookie_);
  }

 private:
  Ref<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

template <class Class>
Ref<IUnknown> Create() {
  void* made = nullptr;
  const HRESULT result =
      CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, &made);
  if (FAILED(result))  // 80040154: the DLL of this program's size is not registered
    std::fprintf(stderr, "cannot create the control: %08lX\n", static_cast<unsigned long>(result));
  return Ref<IUnknown>(static_cast<IUnknown*>(made));
}

/// A control inside a view by its name.
template <class Interface>
Ref<Interface> Child(const Ref<IUnknown>& view, const wchar_t* name) {
  Ref<IDispatch> controls;
  Ref<IDispatch> child;
  const Text text(name);
  VARIANT key{};
  key.vt = VT_BSTR;
  key.bstrVal = text.Get();
  view.As<IDesignUI>()->get_Controls(controls.Put());
  controls.As<IChildControls>()->get_Item(key, child.Put());
  return child.As<Interface>();
}

std::wstring Cell(const Ref<IFlexGrid>& grid, long row, long col) {
  Text text;
  grid->get_TextMatrix(row, col, text.Put());
  return text.Words();
}

/// The rows of a list that show accounts, from `first` on up to `end`.
struct RowRange {
  long first = 0;
  long end = 0;
};
RowRange RowsOf(const Ref<IFlexGrid>& grid) {
  RowRange rows;
  grid->get_FixedRows(&rows.first);
  grid->get_Rows(&rows.end);
  return rows;
}

/// Loads the chart and prints the page of all accounts.
bool Load(const Ref<IUnknown>& view, IDispatch* system) {
  const auto form = view.As<IFormUI>();
  VARIANT_BOOL done = VARIANT_FALSE;
  if (FAILED(form->Init(&system, 0, 0, &done)) || done == VARIANT_FALSE) return false;
  form->Refresh(&done);  // every command is called so: form->FileNew(&done)
  const auto grid = Child<IFlexGrid>(view, L"Vs(0)");
  const RowRange rows = RowsOf(grid);
  Print(L"Kjkm: " + std::to_wstring(rows.end - rows.first) + L" accounts");
  for (long row = rows.first; row < rows.end; ++row) {
    Print(Cell(grid, row, 0) + L" " + Cell(grid, row, 1));
  }
  return true;
}

bool Pick(IDispatch* system) {
  const auto view = Create<selKjkm>();
  const auto picker = view.As<IPickerUI>();
  const Text host;
  VARIANT_BOOL done = VARIANT_FALSE;
  if (!picker || FAILED(picker->Init(&system, 1, host.Get(), &done)) || done == VARIANT_FALSE)
    return false;
  const Ref<Parameters> parameters(new Parameters);
  parameters->Add(L"single", L"1");  // one account; other keys: see the reference
  picker->putref_Parameters(parameters.Get());
  picker->Refresh(&done);
  const auto grid = Child<IFlexGrid>(view, L"Vs");
  const RowRange rows = RowsOf(grid);
  Print(L"selKjkm: " + std::to_wstring(rows.end - rows.first) + L" accounts");

  // What a user has typed elsewhere.
  const Text none;
  const Text code_field(L"ccode");
  const Text name_field(L"ccode_name");
  const Text typed(L"1002");
  Text code;
  Text name;
  picker->Validate(none.Get(), code_field.Get(), name_field.Get(), typed.Get(), code.Put(),
                   name.Put(), &done);
  Print(L"typed " + code.Words() + L": " + name.Words());

  // The picker raises DoSelect when the user has picked. Here the program does what the user would:
  // it makes a row current and clicks the OK button.
  const Ref<Picks> picks(new Picks(picker.Get()));
  const Connection connection(view, __uuidof(__selKjkm), picks.Get());
  grid->put_Row(rows.first);
  Child<IButtonControl>(view, L"Cmd(0)")->Click();
  picker->Clear();
  return true;
}

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
  auto* site = reinterpret_cast<Site*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_SIZE && site != nullptr) site->Resize();
  if (message == WM_CLOSE && site != nullptr) site->Close();  // while there is still a window
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(window, message, wide, parameter);
}

/// Shows the view until its window is closed; with `moment` it is closed at once.
bool Show(const Ref<IUnknown>& view, bool moment) {
  WNDCLASSW kind{};
  kind.lpfnWndProc = OnMessage;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.hCursor = LoadCursor(nullptr, IDC_ARROW);
  kind.lpszClassName = L"Accounts";
  RegisterClassW(&kind);
  const HWND window = CreateWindowExW(
      0, kind.lpszClassName, L"Accounts", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CW_USEDEFAULT,
      CW_USEDEFAULT, 800, 600, nullptr, nullptr, kind.hInstance, nullptr);
  if (window == nullptr) return false;
  Site site(window);
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&site));
  long handle = 0;
  if (SUCCEEDED(site.Show(view.Get()))) {
    // It was loaded without a window; a load with one measures the codes in the window's font.
    VARIANT_BOOL done = VARIANT_FALSE;
    view.As<IFormUI>()->Refresh(&done);
    Child<IFlexGrid>(view, L"Vs(0)")->get_hWnd(&handle);
  }
  if (moment) PostMessageW(window, WM_CLOSE, 0, 0);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (site.Translate(message)) continue;  // before the keys are translated
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return handle != 0;
}

/// Both controls; true when all went well.
bool Run(bool window, bool moment) {
  const Ref<Host> host(new Host);
  IHostSystem* system = host.Get();
  const auto view = Create<Kjkm>();
  if (!view) return false;

  const Ref<Reports> reports(new Reports);
  const Connection connection(view, __uuidof(__Kjkm), reports.Get());

  bool good = Load(view, system) && Pick(system);
  if (good && window) {
    good = Show(view, moment);
    if (!good) std::fputs("no window: under Wine it needs a display\n", stderr);
  }
  VARIANT_BOOL none = VARIANT_FALSE;
  view.As<IFormUI>()->Clear(&none);  // before the host's objects end
  return good;
}

int main(int count, char** words) {
  const std::string how = count > 1 ? words[1] : "";
  SetConsoleOutputCP(CP_UTF8);
  if (FAILED(OleInitialize(nullptr))) return 1;  // a single-threaded apartment
  const bool good = Run(how != "/print", how == "/moment");
  OleUninitialize();
  return good ? 0 : 1;
}
