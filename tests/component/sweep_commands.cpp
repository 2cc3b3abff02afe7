#include "component/sweep_commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "com/bstr.h"
#include "com/failure.h"
#include "component/loaded_library.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "qnPickerUI.h"
#include "tavrix.h"

namespace tavrix::test {

namespace {

using com::Bstr;

using Member = HRESULT (STDMETHODCALLTYPE IFormUI::*)(VARIANT_BOOL*);
using DataMember = HRESULT (STDMETHODCALLTYPE IFormUI::*)(VARIANT, VARIANT_BOOL*);

Command Form(const char* name, Member member, long row = 4) {
  Command command;
  command.name = name;
  command.answers = true;
  command.run = [member, row](Life& life) {
    EXPECT_EQ(life.Child<IFlexGrid>("Vs(0)")->put_Row(row), S_OK);
    return (life.object.As<IFormUI>().Get()->*member)(&life.answer);
  };
  return command;
}

Command WithData(const char* name, DataMember member) {
  Command command;
  command.name = name;
  command.answers = true;
  command.run = [member](Life& life) {
    return (life.object.As<IFormUI>().Get()->*member)(Variant(1.5).Get(), &life.answer);
  };
  return command;
}

Command Click(const char* name, const char* button) {
  return {name, [button](Life& life) {
            EXPECT_EQ(life.Child<IFlexGrid>("Vs")->put_Row(2), S_OK);
            return life.Child<IButtonControl>(button)->Click();
          }};
}

using Entries = std::vector<std::pair<std::string, Variant>>;

ComPtr<IDispatch> ParametersOf(const std::shared_ptr<StubHost>& host, const Entries& entries) {
  const auto gate = [host](const std::wstring& member) {
    if (host->gate) host->gate(member);
  };
  const auto find = [entries](const std::string& key) {
    const auto found =
        std::ranges::find_if(entries, [&](const auto& entry) { return entry.first == key; });
    return found == entries.end() ? nullptr : std::make_shared<Variant>(found->second);
  };
  return NamedObject::Make(
      {{L"Exists", [find](const StubCall& call) { return Variant(find(call.Text(0)) != nullptr); }},
       {L"Item",
        [find, gate](const StubCall& call) {
          const auto value = find(call.Text(0));
          return Variant(
              NamedObject::Make({{L"Value", [value](const StubCall&) { return *value; }}}, gate));
        }},
       {L"Clear", [](const StubCall&) { return Variant(); }}},
      gate);
}

HRESULT SetDesignParameters(Life& life) {
  const Entries colour{{"backcolor", Variant(std::int32_t{0x00FFFFFF})}};
  return life.object.As<IDesignUI>()->putref_Parameters(ParametersOf(life.host, colour).Get());
}

/// Only accounts that begin with a 1, one at a time.
HRESULT SetPickerParameters(Life& life) {
  const auto picker = life.object.As<IPickerUI>();
  const Entries entries{{"科目编码", Variant(std::string_view("1"))},
                        {"single", Variant(std::int32_t{1})},
                        {"ismx", Variant(std::int32_t{0})}};
  EXPECT_EQ(picker->putref_Parameters(ParametersOf(life.host, entries).Get()), S_OK);
  return picker->Refresh(&life.answer);
}

HRESULT Validate(Life& life) {
  const Bstr none;
  BSTR code = nullptr;
  BSTR name = nullptr;
  const HRESULT result = life.object.As<IPickerUI>()->Validate(none.Get(), none.Get(), none.Get(),
                                                               Bstr(std::string_view("1002")).Get(),
                                                               &code, &name, &life.answer);
  life.given = com::TextOf(code) + com::TextOf(name);
  EXPECT_TRUE(SUCCEEDED(result) || life.given.empty()) << life.given;
  SysFreeString(code);
  SysFreeString(name);
  return result;
}

/// The columns that the picker asks for, in its order.
void WidenRows(StubHost& host) {
  host.columns = {"i_id", "ccode", "ccode_name", "chelp", "bproperty", "cclass", "bclose", "bend"};
  const Variant zero(std::int32_t{0});
  const Variant one(std::int32_t{1});
  for (StubHost::Row& row : host.rows) {
    row = {row[4], row[0], row[1], Variant::Null(), one, row[6], zero, one};
  }
}

}  // namespace

Life::Life(const wchar_t* prog_id) {
  CLSID clsid{};
  com::Check(CLSIDFromProgID(prog_id, &clsid));
  com::Check(
      CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.PutVoid()));
}

long Life::RowsOf(const char* grid) const {
  long rows = -1;
  EXPECT_EQ(Child<IFlexGrid>(grid)->get_Rows(&rows), S_OK);
  return rows;
}

std::string Life::Shown(const char* grid) const {
  const auto cells = Child<IFlexGrid>(grid);
  long cols = 0;
  EXPECT_EQ(cells->get_Cols(&cols), S_OK);
  std::string shown;
  for (long row = 0; row < RowsOf(grid); ++row) {
    for (long col = 0; col < cols; ++col) {
      Bstr text;
      EXPECT_EQ(cells->get_TextMatrix(row, col, text.Put()), S_OK);
      shown += com::TextOf(text.Get()) + "\t";
    }
    shown += "\n";
  }
  return shown;
}

Subject ViewCommands() {
  Subject view;
  view.prog_id = L"tavrix.Kjkm";
  view.grid = "Vs(0)";
  view.events = __uuidof(__Kjkm);
  view.init = [](Life& life) {
    const auto system = StubHost::System(life.host);
    IDispatch* given = system.Get();
    return life.object.As<IFormUI>()->Init(&given, 1, 0, &life.answer);
  };
  view.prepare = [](Life&) {};
  view.refresh = [](Life& life) {
    EXPECT_EQ(life.object.As<IFormUI>()->Refresh(&life.answer), S_OK);
  };
  view.message = [](const Life&) { return std::string(); };
  const auto grid = [](Life& life) { return life.Child<IFlexGrid>("Vs(0)"); };
  view.commands = {
      {"Init", view.init, true, true, true},
      Form("Refresh", &IFormUI::Refresh),
      Form("FileNew", &IFormUI::FileNew),
      Form("FileNewNext", &IFormUI::FileNewNext),
      Form("FileEdit", &IFormUI::FileEdit),
      Form("FileDelete", &IFormUI::FileDelete),
      Form("FileDelete of a first-level account", &IFormUI::FileDelete, 1),
      Form("RecordTop", &IFormUI::RecordTop),
      Form("RecordPrevious", &IFormUI::RecordPrevious),
      Form("RecordNext", &IFormUI::RecordNext),
      Form("RecordBottom", &IFormUI::RecordBottom),
      Form("FindNext", &IFormUI::FindNext),
      WithData("Find", &IFormUI::Find),
      WithData("Filter", &IFormUI::Filter),
      {"a tab", [](Life& life) { return life.Child<ITabControl>("vxVSTab")->put_CurrTab(2); }},
      {"a scrolled row", [grid](Life& life) { return grid(life)->put_TopRow(2); }},
      {"DoSaveFormStatus",
       [](Life& life) { return life.object.As<IFormUI>()->DoSaveFormStatus(); }},
      {"DoGetFormStatus", [](Life& life) { return life.object.As<IFormUI>()->DoGetFormStatus(); }},
      {"Parameters", &SetDesignParameters},
      {"Clear", [](Life& life) { return life.object.As<IFormUI>()->Clear(&life.answer); }},
  };
  return view;
}

Subject PickerCommands() {
  Subject picker;
  picker.prog_id = L"tavrix.selKjkm";
  picker.grid = "Vs";
  picker.events = __uuidof(__selKjkm);
  picker.init = [](Life& life) {
    const auto system = StubHost::System(life.host);
    IDispatch* given = system.Get();
    return life.object.As<IPickerUI>()->Init(&given, 1, nullptr, &life.answer);
  };
  picker.prepare = [](Life& life) { WidenRows(*life.host); };
  picker.refresh = [](Life& life) {
    // Its own `Refresh` reads a list again only when something has changed.
    EXPECT_EQ(life.Child<IButtonControl>("Cmd(2)")->Click(), S_OK);
    EXPECT_EQ(life.object.As<IPickerUI>()->Refresh(&life.answer), S_OK);
  };
  picker.message = [](const Life& life) {
    Bstr text;
    EXPECT_EQ(life.Child<ILabelControl>("lblMessage")->get_Caption(text.Put()), S_OK);
    return com::TextOf(text.Get());
  };
  const auto form = [](Life& life) { return life.object.As<IPickerUI>(); };
  const auto grid = [](Life& life) { return life.Child<IFlexGrid>("Vs"); };
  picker.commands = {
      {"Init of the picker", picker.init, true, true, true},
      {"Refresh of the picker", [form](Life& life) { return form(life)->Refresh(&life.answer); }},
      {"Validate", &Validate, true},
      Click("a pick", "Cmd(0)"),
      Click("giving up", "Cmd(1)"),
      Click("the refresh button", "Cmd(2)"),
      Click("the account form", "Cmd(3)"),
      {"closed accounts", [](Life& life) { return life.Child<ICheckControl>("Chk")->Click(); }},
      {"Text",
       [form](Life& life) { return form(life)->put_Text(Bstr(std::string_view("1002")).Get()); }},
      {"a scrolled row of the picker", [grid](Life& life) { return grid(life)->put_TopRow(2); }},
      {"DoSaveFormStatus of the picker",
       [form](Life& life) { return form(life)->DoSaveFormStatus(); }},
      {"DoGetFormStatus of the picker",
       [form](Life& life) { return form(life)->DoGetFormStatus(); }},
      {"picker's Parameters", &SetPickerParameters},
      {"Parameters of the picker", &SetDesignParameters},
      {"Clear of the picker", [form](Life& life) { return form(life)->Clear(); }},
  };
  return picker;
}

}  // namespace tavrix::test
