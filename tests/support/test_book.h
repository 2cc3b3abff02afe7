#pragma once

#include <string>
#include <vector>

#include "book/book.h"
#include "support/temp_folder.h"

namespace tavrix::test {

/// The accounts that most tests want, in rule 4222:
/// 1001 库存现金, 1002 银行存款 (100201 工行, 100202 建行), 2202 应付账款, 5001 生产成本
/// (500101 基本生产成本 (50010101 直接材料)).
[[nodiscard]] std::vector<desk::book::Account> FewAccounts();

/// A fresh book in memory, for a user without a folder of files, with `accounts`, two currencies,
/// two units and code rule 4222. In the chart the accounts have the identifiers 1, 2, 3 ... in
/// their order.
[[nodiscard]] desk::book::Book MakeBook(std::vector<desk::book::Account> accounts = FewAccounts(),
                                        const std::string& code_rule = "4222");

/// Runs a statement of the test's own on the book, past the checks on callers' statements.
void Run(const desk::book::Book& book, const std::string& sql);

/// The first column of the first row as text; "(none)" without a row, "(null)" for a null.
[[nodiscard]] std::string Scalar(const desk::book::Book& book, const std::string& sql);

/// All rows, columns joined by "|".
[[nodiscard]] std::vector<std::string> AllRows(const desk::book::Book& book,
                                               const std::string& sql);

/// Adds a posting to `ledger` (gl_accvouch, gl_accass or gl_accsum).
void AddPosting(const desk::book::Book& book, const std::string& ledger, const std::string& code);

}  // namespace tavrix::test
