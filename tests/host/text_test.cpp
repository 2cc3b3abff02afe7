#include "host/text.h"
#include "host/utf.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <string>

#include "host/code_points.h"
#include "host/number_text.h"

namespace tavrix::host {
namespace {

TEST(LeadingNumberTest, ReadsWhatTheTextBeginsWith) {
  EXPECT_EQ(LeadingNumber("2.5"), 2.5);
  EXPECT_EQ(LeadingNumber(" \t-3 rows"), -3);
  EXPECT_EQ(LeadingNumber("+.5x"), 0.5);
  EXPECT_EQ(LeadingNumber("1e2"), 100);
  EXPECT_EQ(LeadingNumber("1E+2"), 100);
  EXPECT_EQ(LeadingNumber("7e"), 7);
  for (const char* none : {"", "  ", "abc", "-", ".", "一", "inf", "nan"}) {
    EXPECT_EQ(LeadingNumber(none), 0) << none;
  }
}

TEST(LeadingNumberTest, StaysFinite) {
  EXPECT_EQ(LeadingNumber("1e999"), std::numeric_limits<double>::max());
  EXPECT_EQ(LeadingNumber("-1e999"), -std::numeric_limits<double>::max());
  EXPECT_EQ(LeadingNumber("1e-999") + LeadingNumber("1E-999"), 0);
  EXPECT_EQ(LeadingLong("99999999999"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(LeadingLong("-2.9"), -2);
  EXPECT_EQ(ToLong32(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(NumberTextTest, IsShort) {
  EXPECT_EQ(NumberText(1), "1");
  EXPECT_EQ(NumberText(-0.1), "-0.1");
  EXPECT_EQ(NumberText(123456789012), "123456789012");
  EXPECT_EQ(NumberText(1e300), "1e+300");
  EXPECT_EQ(NumberText(999999999999999), "999999999999999");
  EXPECT_EQ(NumberText(-1e15), "-1e+15");
  EXPECT_EQ(NumberText(0.0001), "0.0001");
  EXPECT_EQ(NumberText(-0.00009), "-9e-05");
  EXPECT_EQ(NumberText(0), "0");
}

template <class... Format>
std::string Standard(Format... format) {
  std::array<char, 1200> text;
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), format...).ptr};
}

void ExpectTheStandardTexts(double number) {
  const bool plain = std::abs(number) < 1e15 && std::abs(number) >= 1e-4;
  const std::string fixed = Standard(number, std::chars_format::fixed);
  ASSERT_EQ(NumberText(number), plain ? fixed : Standard(number));
  ASSERT_EQ(PlainNumberText(number), fixed);
  ASSERT_EQ(FixedText(number, 4), Standard(number, std::chars_format::fixed, 4));
  ASSERT_EQ(RoundedToDigits(number, 15),
            LeadingNumber(Standard(number, std::chars_format::general, 15)));
}

// The standard library's own texts, whose code the library does without for its size.
TEST(NumberTextTest, IsTheStandardLibrarysInEveryLocale) {
  std::mt19937_64 random(20260101);
  for (const char* locale : {"C", "de_DE.UTF-8", "German"}) {
    if (std::setlocale(LC_NUMERIC, locale) == nullptr) continue;
    for (int power = -1074; power < 1024; ++power) {
      const double number = std::ldexp(1.0, power);
      for (const double each : {number, -number, std::nextafter(number, 0.0)}) {
        ExpectTheStandardTexts(each);
      }
    }
    for (int i = 0; i < 4000 && !HasFatalFailure(); ++i) {
      const auto bits = random();
      const auto any = std::bit_cast<double>(bits);
      if (std::isfinite(any)) ExpectTheStandardTexts(any);
      ExpectTheStandardTexts(static_cast<double>(bits % 1'000'000'000'000'000) / 100);
      ExpectTheStandardTexts(static_cast<double>(bits >> (bits % 64)));
      const auto narrow = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
      if (!std::isfinite(narrow)) continue;
      ASSERT_EQ(Widened(narrow), LeadingNumber(Standard(narrow)));
    }
  }
  std::setlocale(LC_NUMERIC, "C");
}

TEST(Utf16Test, GoesThereAndBack) {
  const std::string text = "a科\xF0\xA0\x80\x80";
  EXPECT_EQ(ToUtf16(text), u"a科\U00020000");
  EXPECT_EQ(ToUtf8(ToUtf16(text)), text);
  EXPECT_EQ(TextLength(text), 4U);
  for (char32_t point = 1; point <= 0x10FFFF; point += point < 0x10000 ? 1 : 0x3FFF) {
    if (point >= 0xD800 && point < 0xE000) continue;
    std::string narrow;
    AppendUtf8(narrow, point);
    const std::u16string wide = ToUtf16(narrow);
    ASSERT_EQ(wide.size(), point < 0x10000 ? 1U : 2U) << static_cast<std::uint32_t>(point);
    ASSERT_TRUE(wide.size() == 2 || wide[0] == point) << static_cast<std::uint32_t>(point);
    ASSERT_EQ(ToUtf8(wide), narrow);
    ASSERT_EQ(TextLength(narrow), wide.size());
  }
  EXPECT_EQ(ToUtf16("\xF4\x8F\xBF\xBF"), u"\U0010FFFF");
}

TEST(Utf16Test, ReplacesWhatIsMalformed) {
  EXPECT_EQ(ToUtf16("\xFF"), u"\uFFFD");
  EXPECT_EQ(ToUtf16("a\xE7\xA7"), u"a\uFFFD\uFFFD");  // cut off
  EXPECT_EQ(ToUtf16("\xC0\x80"), u"\uFFFD\uFFFD");    // longer than need be
  for (const char* longer : {"\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF"}) {  // or half a pair
    EXPECT_EQ(ToUtf16(longer), u"\uFFFD\uFFFD\uFFFD");
  }
  for (const char* beyond : {"\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"}) {
    EXPECT_EQ(ToUtf16(beyond), u"\uFFFD\uFFFD\uFFFD\uFFFD");
  }
  EXPECT_EQ(ToUtf8(std::u16string{u'a', 0xD800, u'b'}),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(ToUtf8(std::u16string{0xDC00}), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(std::u16string{0xD800, 0xE000}), "\xEF\xBF\xBD\xEE\x80\x80");
  EXPECT_EQ(ToUtf8(std::u16string{0xDC00, 0xDC00}), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(CompareTextTest, OrdersAsCodeUnitsDo) {
  const std::vector<std::string> ordered = {"",
                                            "1001",
                                            "100101",
                                            "100101001",
                                            "100101002",
                                            "1002",
                                            "A",
                                            "a",
                                            "科",
                                            "\xF0\xA0\x80\x80",  // U+20000: a pair from D800 on
                                            "\xEE\x80\x80",      // U+E000
                                            "\xEF\xBC\xA1"};     // U+FF21
  for (std::size_t left = 0; left < ordered.size(); ++left) {
    for (std::size_t right = 0; right < ordered.size(); ++right) {
      const int expected = left < right ? -1 : left > right ? 1 : 0;
      EXPECT_EQ(CompareText(ordered[left], ordered[right]), expected) << left << " " << right;
      const std::u16string l = ToUtf16(ordered[left]);
      EXPECT_EQ(l.compare(ToUtf16(ordered[right])) < 0, expected < 0);
    }
  }
  EXPECT_EQ(CompareText("12345678\xF0\xA0\x80\x80", "12345678\xEF\xBC\xA1"), -1);
}

TEST(CompareNoCaseTest, OrdersTheLowerCaseForms) {
  EXPECT_EQ(CompareNoCase("abC", "ABc"), 0);
  EXPECT_EQ(CompareNoCase("É", "é"), 0);
  EXPECT_EQ(CompareNoCase("a", "B"), -1);
  EXPECT_EQ(CompareNoCase("ab", "A"), 1);
  EXPECT_EQ(CompareNoCase("_", "B"), -1);  // below the lower-case letters, above the others
  EXPECT_EQ(CompareNoCase("\xF0\xA0\x80\x80", "\xEF\xBC\xA1"), -1);
}

TEST(CaseTest, MapsLettersAndKeepsTheRest) {
  // Each kind of letter from its first to its last, and what stands beside them.
  EXPECT_EQ(LowerCase("@AZ[ÀÖ×ØÞßΑΡΣΫЀЁЏАЯ＠ＡＺ［科"), "@az[àö×øþßαρσϋѐёџая＠ａｚ［科");
  EXPECT_EQ(UpperCase("`az{àö÷øþÿαρσϋѐёџая｀ａｚ｛科"), "`AZ{ÀÖ÷ØÞÿΑΡΣΫЀЁЏАЯ｀ＡＺ｛科");
  EXPECT_TRUE(EqualNoCase("Vs", "vS"));
  EXPECT_FALSE(EqualNoCase("Vs", "Vss"));
}

TEST(CaselessTextTest, FindsWhatTheLowerCaseFormsHold) {
  const char* const kParts[] = {"a",  "A",    "b",    "Я", "я",
                                "科", "9",    "É",    "é", "Ａ",
                                "ａ", "\xE4", "\xBA", "k", "\xF0\xA0\x80\x80"};
  std::mt19937 random(7);
  const auto text = [&](unsigned most) {
    std::string parts;
    for (auto left = random() % (most + 1); left > 0; --left) {
      parts += kParts[random() % std::size(kParts)];
    }
    return parts;
  };
  int found = 0;
  for (int round = 0; round < 20'000; ++round) {
    const std::string sought = text(2);
    const std::string in = text(7);
    const CaselessText caseless(sought);
    const bool holds = LowerCase(in).find(LowerCase(sought)) != std::string::npos;
    ASSERT_EQ(caseless.IsIn(in), holds) << sought << " in " << in;
    ASSERT_EQ(caseless.IsStartOf(in), LowerCase(in).starts_with(LowerCase(sought))) << in;
    found += holds ? 1 : 0;
  }
  EXPECT_GT(found, 1000);
}

TEST(TrimmedTest, TakesBlanksOnly) {
  EXPECT_EQ(Trimmed("  a b  "), "a b");
  EXPECT_EQ(Trimmed("\ta "), "\ta");
  EXPECT_EQ(Trimmed("   "), "");
}

}  // namespace
}  // namespace tavrix::host
