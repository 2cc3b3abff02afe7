#include "book/files/log_file.h"

#include <gtest/gtest.h>

#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/session/engine_text.h"
#include "support/temp_folder.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

namespace fs = std::filesystem;

TEST(LogFileTest, LinesOfSeveralWritersOldFilesKeptTwice) {
  const tavrix::test::TempFolder folder;
  const fs::path path = PathOf(folder.File("日志.log"));
  const auto writer = [&](const char* name) {
    return LogFile({.path = path, .writer = name, .now = [] { return "12:00"; }, .most_bytes = 60});
  };
  const LogFile one = writer("[1]");
  const LogFile two = writer("[2]");
  one.Write("open", "账簿\r\nb");
  two.Write("close", "账簿");
  EXPECT_EQ(ReadFile(path), "12:00 [1] open 账簿  b\n12:00 [2] close 账簿\n");
  for (int i = 0; i < 20; ++i) one.Write("command", std::to_string(i));
  const fs::path first = PathOf(folder.File("日志.1.log"));
  const fs::path second = PathOf(folder.File("日志.2.log"));
  // What is kept is the end of what was written, without a gap.
  const std::string kept = ReadFile(second) + ReadFile(first) + ReadFile(path);
  EXPECT_TRUE(kept.ends_with("command 18\n12:00 [1] command 19\n"));
  EXPECT_NE(kept.find("command 17\n"), std::string::npos);
  for (const fs::path& file : {path, first, second}) EXPECT_LT(fs::file_size(file), 100u);
  int files = 0;
  for (const auto& entry : fs::directory_iterator(path.parent_path())) {
    files += entry.is_regular_file() ? 1 : 0;
  }
  EXPECT_EQ(files, 3);
}

TEST(LogFileTest, WhatCannotBeWrittenDisturbsNobody) {
  const tavrix::test::TempFolder folder;
  const LogFile nowhere({.path = PathOf(folder.File("no/such/folder/desk.log"))});
  nowhere.Write("open", "x");
  const fs::path taken = PathOf(folder.File("taken.log"));
  fs::create_directory(taken);
  LogFile({.path = taken}).Write("open", "x");
  EXPECT_TRUE(fs::is_directory(taken));
}

TEST(EngineTextTest, NameAndVersion) {
  const Book book = tavrix::test::MakeBook();
  const std::string text = EngineText(book.GetSession().Own());
  const bool server = tavrix::test::DefaultEngine() == "postgresql";
  EXPECT_TRUE(text.starts_with(server ? "PostgreSQL 1" : "SQLite 3.")) << text;
}

}  // namespace
}  // namespace desk::book
