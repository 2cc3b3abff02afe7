#pragma once

#include <array>
#include <string_view>

/// The vocabularies of the account table `gl_code`. The table stores the words themselves.
namespace tavrix::host {

/// Account categories (`cclass`), in the order of tabs, lists and tree nodes.
inline constexpr std::array<std::string_view, 6> kCategories = {"资产", "负债", "共同",
                                                                "权益", "成本", "损益"};

/// Categories whose accounts usually have their balance on the credit side.
inline constexpr std::array<std::string_view, 2> kCreditCategories = {"负债", "权益"};

/// Ledger page formats (`cbook_type`), in the order of the dialog's list.
namespace book_type {
inline constexpr std::string_view kAmount = "金额式";
inline constexpr std::string_view kAmountCurrency = "金额外币式";
inline constexpr std::string_view kAmountQuantity = "金额数量式";
inline constexpr std::string_view kAmountCurrencyQuantity = "金额外币数量式";
}  // namespace book_type
inline constexpr std::array<std::string_view, 4> kBookTypes = {
    book_type::kAmount, book_type::kAmountCurrency, book_type::kAmountQuantity,
    book_type::kAmountCurrencyQuantity};

/// Balance direction (`bproperty`).
inline constexpr std::string_view kDebit = "借";
inline constexpr std::string_view kCredit = "贷";

/// The settings section that all settings of the library stand in, and the keys it reads.
inline constexpr std::string_view kSystemSection = "system";
inline constexpr std::string_view kScrollRateSetting = "mouseeventscrollrate";
inline constexpr std::string_view kCodeRuleSetting = "kmbm";

}  // namespace tavrix::host
