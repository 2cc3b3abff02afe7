#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "component/script_engine.h"
#include "host/utf.h"

namespace tavrix::test {
namespace {

constexpr const wchar_t* kKind = L"VBSCRIPT";
constexpr const char* kHostScript = "HOST";

std::string_view ScriptText(const std::string& name, const wchar_t* kind = kKind) {
  const HRSRC place = FindResourceW(nullptr, host::Wide(name).c_str(), kind);
  const HGLOBAL data = LoadResource(nullptr, place);
  return {static_cast<const char*>(LockResource(data)), SizeofResource(nullptr, place)};
}

BOOL CALLBACK CollectName(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR names) {
  const std::string text = host::Narrow(name);
  if (text != kHostScript) reinterpret_cast<std::vector<std::string>*>(names)->push_back(text);
  return TRUE;
}

std::vector<std::string> TestScripts() {
  std::vector<std::string> names;
  EnumResourceNamesW(nullptr, kKind, CollectName, reinterpret_cast<LONG_PTR>(&names));
  return names;
}

class Script : public testing::TestWithParam<std::string> {};

TEST_P(Script, RunsToItsEndWithoutAFinding) {
  ScriptFindings findings;
  ScriptEngine scripts(L"VBScript");
  scripts.AddObject(L"Assert", MakeAssert(findings));
  scripts.AddObject(L"Events", MakeEvents());
  ASSERT_EQ(scripts.Run("host.vbs", ScriptText(kHostScript)), "");
  EXPECT_EQ(scripts.Run(GetParam(), ScriptText(GetParam())), "");
  for (const std::string& failure : findings.failures) ADD_FAILURE() << failure;
  EXPECT_GT(findings.checks, 0);
}

INSTANTIATE_TEST_SUITE_P(All, Script, testing::ValuesIn(TestScripts()),
                         [](const auto& script) { return script.param; });

/// Objects of JScript cannot be called to read their data members. The control ends after the
/// engine has closed.
TEST(ScriptHost, MayHaveDataMembersThatAreNoFunctions) {
  ScriptFindings findings;
  CLSID clsid{};
  ComPtr<IDispatch> picker;
  ASSERT_EQ(CLSIDFromProgID(L"tavrix.selKjkm", &clsid), S_OK);
  ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, picker.PutVoid()),
            S_OK);
  ScriptEngine scripts(L"JScript");
  scripts.AddObject(L"Assert", MakeAssert(findings));
  // Wine's own way to create an object keeps its class for good.
  scripts.AddObject(L"picker", std::exchange(picker, nullptr));
  EXPECT_EQ(scripts.Run("data_members.js", ScriptText("DATA_MEMBERS", L"JSCRIPT")), "");
  for (const std::string& failure : findings.failures) ADD_FAILURE() << failure;
  EXPECT_GT(findings.checks, 0);
}

// The scripts above prove nothing unless a script that goes wrong is noticed.
TEST(ScriptEngine, TellsTheLineOfAnErrorAndCountsFindings) {
  ScriptFindings findings;
  ScriptEngine scripts(L"VBScript");
  scripts.AddObject(L"Assert", MakeAssert(findings));
  EXPECT_EQ(scripts.Run("bad", "Dim a\na = 1\nCall Missing.Member\n").substr(0, 7), "bad(3):");
  EXPECT_NE(scripts.Run("worse", "Dim (\n"), "");
  EXPECT_EQ(scripts.Run("good",
                        "Assert.Equal \"科目\", \"科目\", \"text\"\n"
                        "Assert.Equal 1, 2, \"numbers\"\nAssert.True False, \"flag\"\n"),
            "");
  EXPECT_EQ(findings.checks, 3);
  EXPECT_EQ(findings.failures, (std::vector<std::string>{"numbers: 1 instead of 2", "flag"}));
}

}  // namespace
}  // namespace tavrix::test
