#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <oaidl.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "com/bstr.h"
#include "component/loaded_library.h"

namespace tavrix::test {
namespace {

using com::Bstr;

/// What programs outside rely on: the interface, then its members in the spelling that they use.
constexpr const char* kPublished = R"(
IFormUI Init Refresh FileNew FileNewNext FileEdit FileDelete FileSave FileCancel Check UnCheck Help
  PrintSetup DoPrint RecordTop RecordPrevious RecordNext RecordBottom Find FindNext Filter Clear
  DoSetStatus CheckStatus IsDirty GetID ReturnPrintName Attributes DoSaveFormStatus DoGetFormStatus;
IDesignUI Controls Parameters;
IPickerUI Init Refresh Validate Clear DoGetFormStatus DoSaveFormStatus Attributes IsDirty Objects
  Parameters Text Value;
__Kjkm Message ErrMessage; __selKjkm DoSelect DoCancel; _Kjkm BackColor; _selKjkm BackColor;
_clsKjkm ID ccode ccode_name chelp bpr cclass bclose bend cbook_type Change sKey colKjkm sbClear;
_colKjkm Item Add Count Remove NewEnum;
IChildControl TypeName Name Index hWnd Visible Enabled Left Top Width Height ToolTipText;
IFlexGrid TextMatrix Rows Cols FixedRows FixedCols FrozenCols Row Col TopRow RowHidden RowHeight
  IsSubtotal RowOutlineLevel IsCollapsed ColWidth ColHidden ColAlignment ColDataType ColFormat
  MergeCol Sort SelectionMode SelectedRows SelectedRow IsSelected CellForeColor CellBackColor
  CellFontBold;
ITreeNode Key Text Tag Parent Children Expanded Selected; ITreeNodes Item Count NewEnum;
ITreeControl Nodes SelectedItem; ITabControl Tabs CurrTab TabKey TabCaption BackColor;
ISearchControl Text FilterMode Search SaveStatus GetStatus; ICheckControl Value Caption Click;
IOptionControl Value Caption Click; IButtonControl Caption Click; ILabelControl Caption;
IChildControls Item Count NewEnum;
IHostSystem GetDatabase GetSetting NewIdentifier Rights Folders CreateHelper; IHostSetting Value;
IHostRights CanAdd CanEdit; IHostFolders UserFolder;
IHostDatabase OpenSql LastError ConnectionProperties; IHostError Description Clear;
IHostPropertySet Item; IHostProperty Value; IHostStatement Execute ScalarValue Recordset;
IHostRecordset EOF BOF GetRows Find Fields MoveFirst Close;
IHostCodeRule ParentCode LevelOf LengthAtLevel; IHostDataHelper SetDatabase;
IHostGridNavigator MoveTop MovePrevious MoveNext MoveBottom FindNext Find Filter;
IHostMouseEvent SetRange Attach Detach AttachedTo Position; IHostMouseEvents Wheel;
IHostSettingsFile FileName ReadValue WriteValue; IHostParameters Exists Item Clear;
)";

std::string Folded(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return name;
}

using MembersOfInterface = std::map<std::string, std::set<std::string>>;

MembersOfInterface Published() {
  MembersOfInterface published;
  std::istringstream all(kPublished);
  for (std::string part; std::getline(all, part, ';');) {
    std::istringstream words(part);
    std::string owner;
    if (!(words >> owner)) continue;
    for (std::string name; words >> name;) published[owner].insert(name);
  }
  return published;
}

/// What the type libraries in the DLL hold.
struct Built {
  MembersOfInterface members;
  std::set<std::string> names;  // of arguments and types too
  std::vector<std::string> without_help;
};

void ReadMember(ITypeInfo& info, const std::string& owner, const FUNCDESC& function, Built& built) {
  BSTR names[12] = {};
  UINT count = 0;
  info.GetNames(function.memid, names, 12, &count);
  for (UINT i = 0; i < count; ++i) {
    built.names.insert(com::TextOf(names[i]));
    if (i == 0) built.members[owner].insert(com::TextOf(names[i]));
    SysFreeString(names[i]);
  }
  Bstr name;
  Bstr help;
  info.GetDocumentation(function.memid, name.Put(), help.Put(), nullptr, nullptr);
  if (com::TextOf(help.Get()).empty())
    built.without_help.push_back(owner + "." + com::TextOf(name.Get()));
}

/// `info` as its table of methods, where it is a dual interface.
ComPtr<ITypeInfo> MethodsOf(const ComPtr<ITypeInfo>& info) {
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> methods;
  if (FAILED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference))) return info;
  info->GetRefTypeInfo(reference, methods.Put());
  return methods;
}

void ReadType(const ComPtr<ITypeInfo>& info, Built& built) {
  Bstr name;
  info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr);
  const std::string owner = com::TextOf(name.Get());
  built.names.insert(owner);
  const auto methods = MethodsOf(info);
  TYPEATTR* attributes = nullptr;
  if (FAILED(methods->GetTypeAttr(&attributes))) return;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(methods->GetFuncDesc(i, &function))) continue;
    ReadMember(*methods.Get(), owner, *function, built);
    methods->ReleaseFuncDesc(function);
  }
  methods->ReleaseTypeAttr(attributes);
}

Built ReadLibraries() {
  Built built;
  const LoadedLibrary library;
  for (int resource = 1; resource <= 5; ++resource) {
    ComPtr<ITypeLib> types;
    const std::wstring file = library.File() + L"\\" + std::to_wstring(resource);
    if (FAILED(LoadTypeLibEx(file.c_str(), REGKIND_NONE, types.Put()))) return {};
    for (UINT i = 0; i < types->GetTypeInfoCount(); ++i) {
      ComPtr<ITypeInfo> info;
      if (SUCCEEDED(types->GetTypeInfo(i, info.Put()))) ReadType(info, built);
    }
  }
  return built;
}

/// A type library keeps one spelling of a name, the first one in it: an argument that comes before
/// a member of the same name would give the member its own.
TEST(TypeLibraries, SpellEveryNameAsProgramsUseItAndExplainEveryMember) {
  const MembersOfInterface published = Published();
  const Built built = ReadLibraries();
  std::map<std::string, std::string> spelling;
  for (const auto& [owner, members] : published) {
    spelling[Folded(owner)] = owner;
    const auto found = built.members.find(owner);
    if (found == built.members.end()) {
      ADD_FAILURE() << owner << " is missing";
      continue;
    }
    EXPECT_THAT(found->second, testing::IsSupersetOf(members)) << owner;
    for (const auto& name : members) spelling[Folded(name)] = name;
  }
  for (const std::string& name : built.names) {
    const auto wanted = spelling.find(Folded(name));
    EXPECT_TRUE(wanted == spelling.end() || wanted->second == name) << name;
  }
  EXPECT_THAT(built.without_help, testing::IsEmpty());
}

}  // namespace
}  // namespace tavrix::test
