#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <oaidl.h>

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

#include "com/bstr.h"
#include "component/loaded_library.h"
#include "qnDesignUI.h"
#include "qnFormUI.h"
#include "qnPickerUI.h"
#include "qnSystem.h"
#include "support/matchers.h"
#include "tavrix.h"

namespace tavrix::test {
namespace {

using com::Bstr;
using testing::UnorderedElementsAre;

TEST(Library, ExportsTheFourEntryPointsAndNeedsOnlyTheSystem) {
  const LoadedLibrary library;
  EXPECT_THAT(library.Exports(), UnorderedElementsAre("DllCanUnloadNow", "DllGetClassObject",
                                                      "DllRegisterServer", "DllUnregisterServer"));
  wchar_t system[MAX_PATH];
  const std::wstring folder(system, GetSystemDirectoryW(system, MAX_PATH));
  for (const std::string& name : library.Imports()) {
    const std::wstring file = folder + L"\\" + std::wstring(name.begin(), name.end());
    EXPECT_NE(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES) << name;
  }
}

TEST(Library, StaysLoadedAsLongAsAnythingLives) {
  const LoadedLibrary library;
  ASSERT_EQ(library.CanUnloadNow(), S_OK);
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(library.ClassObject(__uuidof(Kjkm), IID_IClassFactory, factory.PutVoid()), S_OK);
  EXPECT_EQ(library.CanUnloadNow(), S_FALSE);
  ComPtr<IDesignUI> view;
  ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(IDesignUI), view.PutVoid()), S_OK);
  factory->LockServer(TRUE);
  ComPtr<IDispatch> controls;
  EXPECT_EQ(view->get_Controls(controls.Put()), S_OK);
  view = nullptr;
  EXPECT_EQ(library.CanUnloadNow(), S_FALSE) << "the collection lives";
  controls = nullptr;
  EXPECT_EQ(library.CanUnloadNow(), S_FALSE) << "it is locked";
  factory->LockServer(FALSE);
  factory = nullptr;
  EXPECT_EQ(library.CanUnloadNow(), S_OK);
}

TEST(Library, RefusesOtherClassesAndWrongAggregation) {
  const LoadedLibrary library;
  void* result = &result;
  EXPECT_EQ(library.ClassObject(IID_IDispatch, IID_IClassFactory, &result),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(result, nullptr);
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(library.ClassObject(__uuidof(Kjkm), IID_IClassFactory, factory.PutVoid()), S_OK);
  EXPECT_EQ(library.ClassObject(__uuidof(Kjkm), IID_IStream, &result), E_NOINTERFACE);
  EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_IDispatch, &result), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, &result), E_NOINTERFACE);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, nullptr), E_POINTER);
}

TEST(Library, IsUnloadedByTheSystemAfterItsLastObject) {
  CoFreeUnusedLibrariesEx(0, 0);
  ComPtr<IUnknown> view = CreateView();
  EXPECT_NE(GetModuleHandleW(L"tavrix.dll"), nullptr);
  view = nullptr;
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_EQ(GetModuleHandleW(L"tavrix.dll"), nullptr);
}

/// Name and version of the type library that is resource `number` of the DLL, or of a file.
std::string LibraryName(const std::wstring& file) {
  ComPtr<ITypeLib> library;
  if (FAILED(LoadTypeLibEx(file.c_str(), REGKIND_NONE, library.Put()))) return "(none)";
  Bstr name;
  library->GetDocumentation(-1, name.Put(), nullptr, nullptr, nullptr);
  TLIBATTR* attributes = nullptr;
  library->GetLibAttr(&attributes);
  const std::string version =
      std::to_string(attributes->wMajorVerNum) + "." + std::to_string(attributes->wMinorVerNum);
  library->ReleaseTLibAttr(attributes);
  return com::TextOf(name.Get()) + " " + version;
}

TEST(TypeLibraries, StandInTheLibraryAndTheOthersBesideItToo) {
  const LoadedLibrary library;
  const std::wstring file = library.File();
  EXPECT_EQ(LibraryName(file), "tavrix 1.0");
  std::set<std::string> others;
  for (int i = 2; i <= 5; ++i) others.insert(LibraryName(file + L"\\" + std::to_wstring(i)));
  EXPECT_THAT(others,
              ElementsAre("qnDesignUI 1.0", "qnFormUI 1.0", "qnPickerUI 1.0", "qnSystem 1.0"));
  const std::wstring folder = file.substr(0, file.rfind(L'\\') + 1);
  for (const wchar_t* name : {L"qnDesignUI", L"qnFormUI", L"qnPickerUI", L"qnSystem"}) {
    EXPECT_TRUE(others.contains(LibraryName(folder + name + L".tlb")));
  }
}

class Described : public testing::Test {
 protected:
  Described() { LoadTypeLibEx(file_.c_str(), REGKIND_NONE, own_.Put()); }

  /// "id name(parameter parameter)" of each member of an event set.
  [[nodiscard]] std::vector<std::string> Members(const GUID& guid) const {
    ComPtr<ITypeInfo> info;
    if (FAILED(own_->GetTypeInfoOfGuid(guid, info.Put()))) return {"missing"};
    std::vector<std::string> members;
    FUNCDESC* function = nullptr;
    for (UINT i = 0; SUCCEEDED(info->GetFuncDesc(i, &function)); ++i) {
      BSTR names[8] = {};
      UINT count = 0;
      info->GetNames(function->memid, names, 8, &count);
      std::string line = std::to_string(function->memid);
      for (UINT n = 0; n < count; ++n) {
        line += " " + com::TextOf(names[n]);
        SysFreeString(names[n]);
      }
      members.push_back(line);
      info->ReleaseFuncDesc(function);
    }
    return members;
  }

  const LoadedLibrary library_;
  const std::wstring file_ = library_.File();
  ComPtr<ITypeLib> own_;
};

TEST_F(Described, EventsCountFromOneInTheirOrder) {
  EXPECT_THAT(Members(__uuidof(__Kjkm)),
              ElementsAre("1 Message psMsg", "2 ErrMessage psMsg plLevel psTitle"));
  EXPECT_THAT(Members(__uuidof(__selKjkm)), ElementsAre("1 DoSelect", "2 DoCancel"));
}

/// "[flags] name" of what a class implements; s for a source, d for the default.
std::vector<std::string> Implemented(ITypeInfo& info) {
  std::vector<std::string> implemented;
  int flags = 0;
  for (UINT i = 0; SUCCEEDED(info.GetImplTypeFlags(i, &flags)); ++i) {
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> part;
    Bstr name;
    info.GetRefTypeOfImplType(i, &reference);
    info.GetRefTypeInfo(reference, part.Put());
    part->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr);
    const std::string kind = std::string((flags & IMPLTYPEFLAG_FDEFAULT) != 0 ? "d" : "") +
                             ((flags & IMPLTYPEFLAG_FSOURCE) != 0 ? "s" : "");
    implemented.push_back(kind + " " + com::TextOf(name.Get()));
  }
  return implemented;
}

TEST_F(Described, ClassesHaveTheirDefaultInterfacesAndEvents) {
  const auto of = [this](const GUID& clsid) {
    ComPtr<ITypeInfo> info;
    return FAILED(own_->GetTypeInfoOfGuid(clsid, info.Put())) ? std::vector<std::string>{"missing"}
                                                              : Implemented(*info.Get());
  };
  EXPECT_THAT(of(__uuidof(Kjkm)), ElementsAre("d _Kjkm", "ds __Kjkm"));
  EXPECT_THAT(of(__uuidof(selKjkm)), ElementsAre("d _selKjkm", "ds __selKjkm"));
  EXPECT_THAT(of(__uuidof(colKjkm)), ElementsAre("d _colKjkm"));
  EXPECT_THAT(of(__uuidof(clsKjkm)), ElementsAre("d _clsKjkm"));
}

/// Their objects answer more by name than the interfaces list.
TEST_F(Described, ControlsAreExtensibleForCompilersAndTheRestIsNot) {
  const auto closed = [this](const GUID& guid) {
    ComPtr<ITypeInfo> info;
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(own_->GetTypeInfoOfGuid(guid, info.Put()), S_OK);
    EXPECT_EQ(info->GetTypeAttr(&attributes), S_OK);
    const bool flag = (attributes->wTypeFlags & TYPEFLAG_FNONEXTENSIBLE) != 0;
    info->ReleaseTypeAttr(attributes);
    return flag;
  };
  EXPECT_FALSE(closed(__uuidof(_Kjkm)));
  EXPECT_FALSE(closed(__uuidof(_selKjkm)));
  EXPECT_TRUE(closed(__uuidof(IFlexGrid)));
}

/// What scripts rely on in a collection.
TEST_F(Described, CollectionsHaveADefaultMemberAndAnEnumerator) {
  for (const GUID& guid : {__uuidof(_colKjkm), __uuidof(IChildControls), __uuidof(ITreeNodes)}) {
    const auto members = Members(guid);
    EXPECT_TRUE(std::any_of(members.begin(), members.end(), [](const std::string& member) {
      return member.starts_with("0 Item");
    }));
    EXPECT_TRUE(std::any_of(members.begin(), members.end(), [](const std::string& member) {
      return member.starts_with("-4 NewEnum");
    }));
  }
}

}  // namespace
}  // namespace tavrix::test
