#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace tavrix::test {
namespace {

/// Runs a test of this program as a program of its own, which loads the library anew. False when it
/// failed.
bool RunTest(std::wstring filter) {
  std::wstring program(MAX_PATH, L'\0');
  program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
  std::wstring line = L"\"" + program + L"\" --gtest_filter=" + filter;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &start, &process)) {
    return false;
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 1;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code == 0;
}

/// Without the times at their beginnings.
std::vector<std::string> LinesOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    const std::size_t time = std::min(line.find_first_not_of(" 0123456789"), line.size());
    lines.push_back(line.substr(time));
  }
  return lines;
}

TEST(Trace, TellsWhatGoesOnBetweenAHostAndAView) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() / L"跟踪.txt";
  std::filesystem::remove(file);
  ASSERT_TRUE(SetEnvironmentVariableW(L"TAVRIX_TRACE", file.c_str()));
  const bool passed = RunTest(L"*Script.RunsToItsEndWithoutAFinding/FAILURES");
  SetEnvironmentVariableW(L"TAVRIX_TRACE", nullptr);
  ASSERT_TRUE(passed);
  const std::vector<std::string> lines = LinesOf(file);
  // In this order, with other lines between them.
  auto at = lines.begin();
  for (const std::string_view wanted :
       {"call   IFormUI.Refresh", "failed 刷新数据时出错：", "event  ErrMessage(\"刷新数据时出错：",
        "call   IFormUI.Init", "host   CreateHelper(\"CodeRule\")", "host   OpenSql(\"",
        "failed DoRefresh", "failed 80004005 "}) {
    at = std::find_if(at, lines.end(),
                      [&](const std::string& line) { return line.starts_with(wanted); });
    ASSERT_NE(at, lines.end()) << wanted;
  }
}

}  // namespace
}  // namespace tavrix::test
