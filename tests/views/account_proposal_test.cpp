#include "views/account_proposal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/matchers.h"
#include "support/test_book.h"

namespace desk::views {
namespace {

using Box = AccountProposal::Box;

TEST(AccountProposal, WhatTheAccountBesideHas) {
  const book::Book book =
      tavrix::test::MakeBook({{.code = "1001", .name = "现金", .category = "资产", .closed = true},
                              {.code = "1122",
                               .name = "应收",
                               .category = "资产",
                               .debit = false,
                               .currency = "美元",
                               .unit = "吨",
                               .customer = true,
                               .department = true,
                               .journal = true}});
  const auto plain = ProposalBeside(book.GetSession(), "1001");
  ASSERT_TRUE(plain);
  EXPECT_TRUE(plain->debit);
  EXPECT_THAT(plain->boxes, IsEmpty()) << "sealed is not proposed";
  const auto full = ProposalBeside(book.GetSession(), "1122");
  ASSERT_TRUE(full);
  EXPECT_FALSE(full->debit);
  EXPECT_THAT(full->boxes,
              ElementsAre(Box{.control = 204}, Box{.control = 206}, Box{.control = 209},
                          Box{.control = 201, .list = 400, .item = "美元"},
                          Box{.control = 202, .list = 403, .item = "吨"}));
  EXPECT_FALSE(ProposalBeside(book.GetSession(), "9999"));
  EXPECT_THAT(NewerAccounts(book.GetSession(), NewestAccount(book.GetSession()) - 1),
              ElementsAre("1122"));
}

}  // namespace
}  // namespace desk::views
