#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "book/files/files.h"
#include "book/files/paths.h"
#include "book/host/settings_file.h"
#include "book/host/settings_text.h"
#include "host/error.h"
#include "support/test_book.h"

namespace desk::book {
namespace {

TEST(SettingsTextTest, KeepsWhatItDoesNotKnow) {
  const std::string text =
      "; 我的设置\n[Other]\na = 1\n\n[Vs]\nVsCol0 =  12 \nnonsense\n# note\n\n[Form]\n";
  SettingsText settings(text);
  EXPECT_EQ(settings.Text(), text);
  EXPECT_EQ(settings.Read("vs", "VSCOL0"), "12");
  EXPECT_FALSE(settings.Write("Vs", "VsCol0", "12"));
  EXPECT_TRUE(settings.Write("Vs", "VsCol1", "7"));
  EXPECT_TRUE(settings.Write("Other", "a", "2"));
  EXPECT_TRUE(settings.Write("New", "k", "v"));
  EXPECT_EQ(settings.Text(),
            "; 我的设置\n[Other]\na=2\n\n[Vs]\nVsCol0 =  12 \nnonsense\n# note\nVsCol1=7\n\n"
            "[Form]\n\n[New]\nk=v\n");
}

TEST(SettingsTextTest, NotesBehindNumbersGetALineOfTheirOwn) {
  SettingsText settings("[A]\nw=100 ; wide\nx=1\nf=0.00;(0.00)\ng=0# ;x\n[B]\nw = -2\t# two\n");
  EXPECT_TRUE(settings.Write("A", "w", "200"));
  EXPECT_TRUE(settings.Write("A", "x", "2"));
  EXPECT_TRUE(settings.Write("A", "w", "300"));
  EXPECT_TRUE(settings.Write("A", "f", "0"));
  EXPECT_TRUE(settings.Write("A", "g", "0.0 ; x"));
  EXPECT_TRUE(settings.Write("B", "w", "3"));
  EXPECT_EQ(settings.Text(), "[A]\n; wide\nw=300\nx=2\nf=0\ng=0.0 ; x\n[B]\n# two\nw=3\n");
  EXPECT_EQ(settings.Read("A", "g"), "0.0 ; x");
}

TEST(SettingsTextTest, AnyTextComesBack) {
  const std::string values[] = {
      "",    " blank ",     "a\r\nb\tc",   "\"quoted\"", "\"",           "C:\\new",  "\\n",
      "[x]", ";x",          "a=b",         "科目",       "\\",           "\"a\\\"",  "#",
      "x\\", "\"a\"0\"b\"", "\"a\"=\"b\"", "\"\"",       "\"a\\\\\"b\"", "\"\\\"0\""};
  for (const std::string& text : values) {
    SettingsText settings;
    settings.Write("s" + text, text, text);
    settings.Write("s" + text, text + "2", "other");
    const SettingsText read(settings.Text());
    EXPECT_EQ(read.Read("s" + text, text), text) << settings.Text();
    EXPECT_EQ(read.Read("s" + text, text + "2"), "other") << settings.Text();
  }
}

/// A value that begins and ends with a quote is one piece in quotes only when no other quote stands
/// between.
TEST(SettingsTextTest, FormatsOfSeveralQuotedPiecesStandAsTheyAre) {
  const std::string format = "\"RMB \"#,##0.00\"元\"";
  SettingsText settings("[A]\nf=" + format + "\ng=\"a b\"\n");
  EXPECT_EQ(settings.Read("A", "f"), format);
  EXPECT_EQ(settings.Read("A", "g"), "a b");
  EXPECT_FALSE(settings.Write("A", "f", format));
  settings.Write("A", "g", format);
  settings.Write("A", "h", "\"¥\"0.00");
  EXPECT_EQ(settings.Text(), "[A]\nf=" + format + "\ng=" + format + "\nh=\"¥\"0.00\n");
  EXPECT_EQ(SettingsText("[A]\nf=\"\\\"a\\\"0\\\"b\\\"\"\n").Read("A", "f"), "\"a\"0\"b\"")
      << "as such a format was written before";
}

TEST(SettingsTextTest, ReadsWhatPeopleWrite) {
  const SettingsText settings(
      "\xEF\xBB\xBF[A]\r\nk=1\r\n[a]\r\nk=2\r\n[broken\r\n=x\r\n\"=\r\nlast=3");
  EXPECT_EQ(settings.Read("A", "k"), "1") << "the first of two counts";
  EXPECT_EQ(settings.Read("A", "last"), "3") << "sections of one name are one";
  EXPECT_EQ(settings.Read("nothing", "k"), std::nullopt);
  EXPECT_EQ(SettingsText("k=1\n").Read("", "k"), std::nullopt);
  EXPECT_EQ(SettingsText("[ A ] ; see [B]\nk=1\n").Read("a", "K"), "1");
}

TEST(SettingsTextTest, KeepsHowTheFileWasSaved) {
  const auto written = [](const std::string& text) {
    SettingsText settings(text);
    settings.Write("A", "k", "2");
    return settings.Text();
  };
  EXPECT_EQ(written("[A]\nk=1\n\n"), "[A]\nk=2\n\n");
  EXPECT_EQ(written("\xEF\xBB\xBF[A]\r\nk=1\r\n"), "\xEF\xBB\xBF[A]\r\nk=2\r\n");
  const std::string wide("\xFF\xFE[\0A\0]\0\n\0;\0\xD1\x79\n\0k\0=\0\x31\0", 22);
  EXPECT_EQ(written(wide), "\xEF\xBB\xBF[A]\n;科\nk=2\n");
  std::string swapped;
  for (std::size_t i = 0; i < wide.size(); i += 2) swapped += {wide[i + 1], wide[i]};
  EXPECT_EQ(written(swapped + '\0'), written(wide)) << "the other byte order, and half a unit";
  EXPECT_EQ(written("[A]\nk=1\nx\r\r\n"), "[A]\nk=2\nx\r\r\n");
  EXPECT_EQ(written("[A]\n[B]\nx=1\n[a]\nk=1"), "[A]\n[B]\nx=1\n[a]\nk=2\n");
  EXPECT_EQ(written("[A]\n[B]\n[a]\n"), "[A]\nk=2\n[B]\n[a]\n");
  const std::string noise("\0\x1B\xC3(\n[A]\n\xB2\xE2\n", 12);
  EXPECT_EQ(written(noise), noise + "k=2\n") << "bytes that are no text stay";
}

class SettingsFileTest : public testing::Test {
 protected:
  [[nodiscard]] std::string OnDisk() const { return ReadFile(PathOf(path_)); }
  tavrix::test::TempFolder folder_;
  std::string path_ = folder_.File("设置.txt");
};

TEST_F(SettingsFileTest, ObjectsOnOneFileShareIt) {
  SharedSettingsFile second;
  {
    SharedSettingsFile first;
    first.SetFileName(path_);
    second.SetFileName(folder_.File("./设置.txt"));
    first.WriteValue("Vs", "VsCol0", "100");
    EXPECT_EQ(second.ReadValue("Vs", "VsCol0", ""), "100");
  }
  EXPECT_EQ(OnDisk(), "") << "replaced only when the last one goes";
  second.WriteValue("Vs", "VsCol1", "200");
  second.SetFileName(folder_.File("another.txt"));
  EXPECT_EQ(OnDisk(), "[Vs]\r\nVsCol0=100\r\nVsCol1=200\r\n");
  EXPECT_EQ(second.ReadValue("Vs", "VsCol0", "none"), "none");
}

TEST_F(SettingsFileTest, ReadingLeavesTheFileAlone) {
  SharedSettingsFile file;
  file.SetFileName(path_);
  EXPECT_EQ(file.ReadValue("a", "b", "c"), "c");
  file.SetFileName(folder_.File("x"));
  EXPECT_FALSE(std::filesystem::exists(PathOf(path_)));
}

TEST_F(SettingsFileTest, SaysAtOnceWhenItCannotWrite) {
  SharedSettingsFile file;
  EXPECT_THROW(file.WriteValue("a", "b", "c"), host::HostError);
  file.SetFileName(folder_.File("missing/x.txt"));
  EXPECT_THROW(file.WriteValue("a", "b", "c"), host::HostError);
  EXPECT_EQ(file.ReadValue("a", "b", "none"), "none");
}

TEST_F(SettingsFileTest, TellsOnceOfEachFileThatCouldNotBeSaved) {
  std::vector<std::string> told;
  OnUnsavedSettings([&](const std::string& text) { told.push_back(text); });
  {
    SharedSettingsFile file;
    file.SetFileName(folder_.File("missing/x.txt"));
    for (int i = 0; i < 3; ++i) EXPECT_THROW(file.WriteValue("a", "b", "c"), host::HostError);
    EXPECT_EQ(told.size(), 1U);
    file.SetFileName(path_);
    file.WriteValue("a", "b", "c");
    std::filesystem::create_directory(PathOf(path_));  // stands in the way at the end
  }
  OnUnsavedSettings({});
  ASSERT_EQ(told.size(), 2U);
  EXPECT_THAT(told[0], testing::HasSubstr("missing"));
  EXPECT_THAT(told[1], testing::HasSubstr("设置没有保存：不能写入文件"));
}

TEST_F(SettingsFileTest, LeavesAloneWhatItCannotRead) {
  SharedSettingsFile file;
  const std::string large = "[a]\nb=1\n" + std::string(1 << 20, ';');
  std::ofstream(PathOf(path_), std::ios::binary) << large;
  file.SetFileName(path_);
  EXPECT_EQ(file.ReadValue("a", "b", "none"), "none");
  EXPECT_THROW(file.WriteValue("a", "b", "2"), host::HostError);
  file.SetFileName(folder_.Path());
  EXPECT_THROW(file.WriteValue("a", "b", "2"), host::HostError);
  file.SetFileName(folder_.File("x"));
  EXPECT_TRUE(OnDisk() == large);
}

TEST_F(SettingsFileTest, WhatWouldMakeTheFileTooLargeIsRefusedBeforeItIsWritten) {
  {
    SharedSettingsFile file;
    file.SetFileName(path_);
    const std::string most(1000, 'x');
    for (int i = 0; i < 1000; ++i) file.WriteValue("a", "k" + std::to_string(i), most);
    EXPECT_THROW(file.WriteValue("a", "large", std::string(60'000, 'x')), host::HostError);
    EXPECT_EQ(file.ReadValue("a", "large", "none"), "none");
    for (int i = 0; i < 1000; ++i) file.WriteValue("a", "k0", std::to_string(i));
    file.WriteValue("a", "last", "1");
  }
  EXPECT_LE(OnDisk().size(), 1U << 20);
  SharedSettingsFile file;
  file.SetFileName(path_);
  EXPECT_EQ(file.ReadValue("a", "last", "none"), "1");
  EXPECT_EQ(file.ReadValue("a", "k0", "none"), "999");
}

TEST_F(SettingsFileTest, WhatIsTooLargeInUtf8OrWithItsLineEndsStaysAsItIs) {
  std::string utf16 = "\xFF\xFE";
  for (const char c : std::string("[a]\r\nb=")) utf16 += {c, '\0'};
  for (int i = 0; i < 400'000; ++i) utf16 += "\xD1\x79";  // 科
  for (const std::string& old : {utf16, "[a]\r\nb=1" + std::string(600'000, '\n')}) {
    std::ofstream(PathOf(path_), std::ios::binary) << old;
    {
      SharedSettingsFile file;
      file.SetFileName(path_);
      EXPECT_NE(file.ReadValue("a", "b", "none"), "none");
      EXPECT_THROW(file.WriteValue("a", "c", "2"), host::HostError);
    }
    EXPECT_TRUE(OnDisk() == old);
  }
}

TEST_F(SettingsFileTest, AFileThatCannotBeReplacedStays) {
  const std::string old = "[a]\r\nb=1\r\n";
  std::ofstream(PathOf(path_), std::ios::binary) << old;
  {
    SharedSettingsFile file;
    file.SetFileName(path_);
    file.WriteValue("a", "b", "2");
    EXPECT_EQ(OnDisk(), old);
    std::filesystem::remove(PathOf(path_));
    std::filesystem::create_directory(PathOf(path_));
  }
  std::size_t left = 0;
  for (const auto& entry : std::filesystem::directory_iterator(PathOf(folder_.Path()))) {
    EXPECT_EQ(entry.path(), PathOf(path_)) << "nothing half written is left";
    ++left;
  }
  EXPECT_EQ(left, 1U);
}

}  // namespace
}  // namespace desk::book
