#include "book/ledger/mnemonic.h"

#include <gtest/gtest.h>

#include "book/ledger/template.h"

namespace desk::book {
namespace {

TEST(Mnemonic, IsWhatBookkeepersWrite) {
  // The standard charts have mnemonics that were written by hand.
  for (const StandardChart chart : kStandardCharts) {
    for (const Account& account : LoadTemplate(chart).accounts) {
      const std::string proposed = ProposeMnemonic(account.name);
      if (proposed == account.help) continue;
      ADD_FAILURE() << account.name << ": " << proposed << ", by hand " << account.help;
    }
  }
}

TEST(Mnemonic, OfManyReadingsTheOneOfTheWordCounts) {
  EXPECT_EQ(ProposeMnemonic("工商银行长沙分行"), "gsyhcsfh");
  EXPECT_EQ(ProposeMnemonic("重分类调整"), "cfltz");
  EXPECT_EQ(ProposeMnemonic("重要行政会议增长"), "zyxzhyzz");
}

TEST(Mnemonic, TakesLettersAndNumbersAlong) {
  EXPECT_EQ(ProposeMnemonic("IT 设备（2号库）"), "itsb2hk");
  EXPECT_EQ(ProposeMnemonic("Müller & Söhne GmbH"), "msgh");
  EXPECT_EQ(ProposeMnemonic("petty cash"), "pc");
  EXPECT_EQ(ProposeMnemonic("ＡＢＣ１号"), "abc1h");
  EXPECT_EQ(ProposeMnemonic("😀—𠮷"), "");
  EXPECT_EQ(ProposeMnemonic("一二三四五六七八九十一二三四五六七八九十百千"), "yesswlqbjsye");
}

}  // namespace
}  // namespace desk::book
