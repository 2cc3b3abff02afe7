#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "book/exchange/csv.h"
#include "book/exchange/gb18030.h"
#include "book/exchange/text_encoding.h"
#include "host/code_points.h"
#include "host/utf.h"
#include "support/matchers.h"

#ifndef _WIN32
#include <iconv.h>
#endif

// Texts of other programs: their encodings, and rows with separators.
namespace desk::book {
namespace {

#ifndef _WIN32
/// What the system's own conversion makes of each character of GB18030.
std::string BySystem(std::string bytes) {
  const iconv_t way = iconv_open("UTF-8", "GB18030");
  std::string text(bytes.size() * 2 + 16, '\0');
  char* from = bytes.data();
  std::size_t left = bytes.size();
  char* to = text.data();
  std::size_t room = text.size();
  const bool good = iconv(way, &from, &left, &to, &room) == 0;
  iconv_close(way);
  text.resize(text.size() - room);
  return good ? text : "\xEF\xBF\xBD";
}

TEST(Gb18030, AgreesWithTheSystemOnEveryCharacter) {
  int looked = 0;
  const auto same = [&](const std::string& bytes) {
    // Characters without a meaning there are no matter of taste here.
    const std::string expected = BySystem(bytes);
    if (expected == "\xEF\xBF\xBD") return;
    ++looked;
    ASSERT_EQ(FromGb18030(bytes), expected) << testing::PrintToString(bytes);
  };
  for (int lead = 0x81; lead <= 0xFE; ++lead) {
    for (int trail = 0x40; trail <= 0xFE; ++trail) {
      same({static_cast<char>(lead), static_cast<char>(trail)});
    }
    for (int i = 0; i < 12600; i += lead < 0x85 ? 1 : 7) {
      same({static_cast<char>(lead), static_cast<char>('0' + i / 1260),
            static_cast<char>(0x81 + i / 10 % 126), static_cast<char>('0' + i % 10)});
    }
  }
  EXPECT_GT(looked, 23'940 + 39'000 + 100'000);
}
#endif

TEST(Gb18030, BadBytesDoNotTakeTheirNeighboursAlong) {
  EXPECT_EQ(FromGb18030("a\xFF,\xD2"), "a\xEF\xBF\xBD,\xEF\xBF\xBD");
  EXPECT_EQ(FromGb18030("\x81\x30,b"),
            "\xEF\xBF\xBD"
            "0,b");
}

TEST(TextEncoding, IsFoundByTheBytes) {
  const std::string text = "科目编码,科目名称\r\n1001,𠮷野家 Müller\r\n";
  const std::u16string units = tavrix::host::ToUtf16(text);
  std::string little;
  std::string big;
  for (const char16_t unit : units) {
    little += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    big += {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
  }
  const auto read = [](const std::string& bytes) { return Decoded(bytes, FindEncoding(bytes)); };
  EXPECT_EQ(read(text), text);
  EXPECT_EQ(read("\xEF\xBB\xBF" + text), text);
  EXPECT_EQ(read(little), text);
  EXPECT_EQ(read(big), text);
  EXPECT_EQ(read("\xFF\xFE" + little), text);
  EXPECT_EQ(read("\xFE\xFF" + big), text);
  EXPECT_EQ(read("1001,\xBF\xE2\xB4\xE6\xCF\xD6\xBD\xF0"), "1001,库存现金");
}

TEST(Csv, CellsBetweenQuotesHoldAnything) {
  const SourceTable table = ReadCsv("a,\"b \"\"c\"\", d\n2\",e\r\n\r\n ,,\nf,\"\",g", ',');
  ASSERT_EQ(table.rows.size(), 2U);
  EXPECT_THAT(table.rows[0].cells, ElementsAre("a", "b \"c\", d\n2", "e"));
  EXPECT_THAT(table.rows[1].cells, ElementsAre("f", "", "g"));
  EXPECT_EQ(table.rows[1].number, 5);
  EXPECT_EQ(table.columns, 3U);
}

TEST(Csv, SeparatorIsFoundAmongTheRows) {
  EXPECT_EQ(FindSeparator("1001;Kasse, bar;Aktiva\n1002;Bank, giro;Aktiva\n"), ';');
  EXPECT_EQ(FindSeparator("a\tb,c\n1\t2\n3\t4\n"), '\t');
  EXPECT_EQ(FindSeparator("编码,名称\n1001,\"a;b;c\"\n1002,\"a;b;d\"\n"), ',');
  EXPECT_EQ(FindSeparator("sep=;\na,b,c;d\n"), ';');
  EXPECT_EQ(ReadCsv("sep=;\na,b;c\n", ';').rows.size(), 1U);
}

}  // namespace
}  // namespace desk::book
