#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <olectl.h>

#include <map>
#include <set>
#include <string>

#include "component/loaded_library.h"
#include "host/utf.h"
#include "tavrix.h"

namespace tavrix::test {
namespace {

using host::Narrow;
using host::Wide;

constexpr const wchar_t* kScratch = L"Software\\tavrix_component_tests";

/// All values below a key: "path@name" to text.
using Values = std::map<std::string, std::string>;

void Collect(HKEY root, const std::wstring& path, Values& values) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  const std::string name = Narrow(path);
  values[name + "\\"] = "";  // the key itself, which may be empty
  wchar_t text[512];
  for (DWORD i = 0;; ++i) {
    DWORD length = 512;
    BYTE data[1024] = {};
    DWORD size = sizeof data - sizeof(wchar_t);
    if (RegEnumValueW(key, i, text, &length, nullptr, nullptr, data, &size) != ERROR_SUCCESS) break;
    values[name + "@" + Narrow(text)] = Narrow(reinterpret_cast<const wchar_t*>(data));
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = 512;
    if (RegEnumKeyExW(key, i, text, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    Collect(root, path.empty() ? text : path + L"\\" + text, values);
  }
  RegCloseKey(key);
}

/// The classes' part of the registry is a key of its own as long as the test runs.
class Registration : public testing::Test {
 protected:
  Registration() {
    RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);
    RegCreateKeyW(HKEY_CURRENT_USER, kScratch, &scratch_);
    // What others have registered.
    for (const wchar_t* other :
         {L"CLSID\\{other}", L"TypeLib\\{other}", L"Interface\\{other}", L"other.Class\\CLSID"}) {
      HKEY key = nullptr;
      RegCreateKeyW(scratch_, other, &key);
      RegCloseKey(key);
    }
    RegOverridePredefKey(HKEY_CLASSES_ROOT, scratch_);
  }
  ~Registration() override {
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(scratch_);
    RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);
  }
  [[nodiscard]] Values All() const {
    Values values;
    Collect(scratch_, L"", values);
    return values;
  }
  /// Names of the keys right under `path`.
  [[nodiscard]] std::set<std::string> KeysBelow(const std::wstring& path) const {
    std::set<std::string> keys;
    HKEY key = nullptr;
    RegOpenKeyExW(scratch_, path.c_str(), 0, KEY_READ, &key);
    wchar_t name[256];
    for (DWORD i = 0; RegEnumKeyW(key, i, name, 256) == ERROR_SUCCESS; ++i) {
      keys.insert(Narrow(name));
    }
    RegCloseKey(key);
    return keys;
  }

  const LoadedLibrary library_;
  HKEY scratch_ = nullptr;
};

std::string TextOfGuid(const GUID& guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, 40);
  return Narrow(text);
}

TEST_F(Registration, WritesTheClassesAndTheTypeLibraryAndNothingElse) {
  ASSERT_EQ(library_.Register(), S_OK);
  EXPECT_THAT(KeysBelow(L""), testing::UnorderedElementsAre(
                                  "CLSID", "Interface", "TypeLib", "other.Class", "tavrix.Kjkm",
                                  "tavrix.selKjkm", "tavrix.colKjkm", "tavrix.clsKjkm"));
  EXPECT_EQ(KeysBelow(L"CLSID").size(), 5U);
  const auto libraries = KeysBelow(L"TypeLib");
  ASSERT_EQ(libraries.size(), 2U);
  const std::string library_id = *libraries.begin();

  Values values = All();
  const std::pair<const char*, GUID> classes[] = {{"Kjkm", __uuidof(Kjkm)},
                                                  {"selKjkm", __uuidof(selKjkm)},
                                                  {"colKjkm", __uuidof(colKjkm)},
                                                  {"clsKjkm", __uuidof(clsKjkm)}};
  for (const auto& [name, clsid] : classes) {
    const std::string key = "CLSID\\" + TextOfGuid(clsid);
    const std::string prog_id = std::string("tavrix.") + name;
    EXPECT_EQ(values[prog_id + "\\CLSID@"], TextOfGuid(clsid));
    EXPECT_EQ(values[key + "\\ProgID@"], prog_id);
    EXPECT_EQ(values[key + "\\InprocServer32@"], Narrow(library_.File()));
    EXPECT_EQ(values[key + "\\InprocServer32@ThreadingModel"], "Apartment");
    EXPECT_EQ(values[key + "\\TypeLib@"], library_id);
    const bool control = clsid == __uuidof(Kjkm) || clsid == __uuidof(selKjkm);
    EXPECT_EQ(values.contains(key + "\\Control\\"), control) << name;
  }
  // The host's interfaces are the host's to register.
  for (const std::string& iid : KeysBelow(L"Interface")) {
    if (iid == "{other}") continue;
    EXPECT_EQ(values["Interface\\" + iid + "\\TypeLib@"], library_id);
  }
}

TEST_F(Registration, LeavesNoResidueHoweverOftenItRuns) {
  const Values before = All();
  ASSERT_EQ(library_.Register(), S_OK);
  const Values once = All();
  ASSERT_EQ(library_.Register(), S_OK);
  EXPECT_EQ(All(), once);
  EXPECT_EQ(library_.Unregister(), S_OK);
  EXPECT_EQ(All(), before);
  EXPECT_EQ(library_.Unregister(), S_OK);
  EXPECT_EQ(All(), before);
}

/// A key that takes no lasting keys below it makes the registration fail on its way.
TEST_F(Registration, ThatFailsLeavesWhatWasThere) {
  const auto block = [this](const std::wstring& key) {
    HKEY blocked = nullptr;
    RegCreateKeyExW(scratch_, key.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                    &blocked, nullptr);
    RegCloseKey(blocked);
  };
  const std::wstring last = L"CLSID\\" + Wide(TextOfGuid(__uuidof(clsKjkm)));
  block(last);
  const Values nothing = All();
  EXPECT_EQ(library_.Register(), SELFREG_E_CLASS);
  EXPECT_EQ(All(), nothing);
  RegDeleteTreeW(scratch_, last.c_str());
  ASSERT_EQ(library_.Register(), S_OK);
  // Another copy's, as far as it goes.
  const std::wstring file = L"CLSID\\" + Wide(TextOfGuid(__uuidof(Kjkm))) + L"\\InprocServer32";
  RegSetKeyValueW(scratch_, file.c_str(), nullptr, REG_SZ, L"C:\\a.dll", 18);
  RegDeleteTreeW(scratch_, last.c_str());
  block(last);
  const Values before = All();
  EXPECT_EQ(library_.Register(), SELFREG_E_CLASS);
  EXPECT_EQ(All(), before);
}

/// The registry that the system itself shows to programs of either size.
TEST(RegistrationOfBothSizes, TheOtherOnesNamesOutliveOne) {
  const LoadedLibrary library;
  const auto there = [](const wchar_t* key, REGSAM view = 0) {
    HKEY open = nullptr;
    const bool found =
        RegOpenKeyExW(HKEY_CLASSES_ROOT, key, 0, KEY_READ | view, &open) == ERROR_SUCCESS;
    if (found) RegCloseKey(open);
    return found;
  };
  if (there(L"tavrix.Kjkm")) GTEST_SKIP() << "the library is in use on this machine";
  if (FAILED(library.Register())) GTEST_SKIP() << "not allowed to register";
  constexpr REGSAM kOther = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
  const std::wstring class_key = L"CLSID\\" + Wide(TextOfGuid(__uuidof(Kjkm)));
  const std::wstring server = class_key + L"\\InprocServer32";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CLASSES_ROOT, server.c_str(), 0, nullptr, 0,
                            KEY_ALL_ACCESS | kOther, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(key);
  EXPECT_EQ(library.Unregister(), S_OK);
  const bool one_view = !there(server.c_str(), kOther);  // a system of one size alone
  if (!one_view) {
    EXPECT_FALSE(there(class_key.c_str()));
    EXPECT_TRUE(there(L"tavrix.Kjkm\\CLSID"));
    EXPECT_FALSE(there(L"tavrix.selKjkm")) << "which the other has not";
    HKEY classes = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, L"CLSID", 0, KEY_ALL_ACCESS | kOther, &classes),
              ERROR_SUCCESS);
    RegDeleteTreeW(classes, Wide(TextOfGuid(__uuidof(Kjkm))).c_str());
    RegCloseKey(classes);
  }
  EXPECT_EQ(library.Unregister(), S_OK);
  EXPECT_FALSE(there(L"tavrix.Kjkm"));
  if (one_view) GTEST_SKIP() << "the registry has one view only";
}

}  // namespace
}  // namespace tavrix::test
