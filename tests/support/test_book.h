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

/// 1001 to 1200, all of the first level: more than a list shows at once.
[[nodiscard]] std::vector<desk::book::Account> ManyAccounts();

/// Which engine and dialect the suite runs on, by the environment's TAVRIX_ENGINE: "sqlite" (when
/// it says nothing), "jet" (the Jet dialect on SQLite), or "postgresql" (the server that
/// TAVRIX_ODBC names by its connection string; without one all cases are skipped).
[[nodiscard]] const std::string& DefaultEngine();

/// The engines for the cases that are run for each dialect: both dialects on SQLite, or the one
/// engine that the environment asks for.
[[nodiscard]] std::vector<const char*> Engines();

/// The connection string of a place for a new book on the server of TAVRIX_ODBC.
[[nodiscard]] std::string NewServerPlace();

/// The server's connection string; empty where there is none.
[[nodiscard]] std::string ServerPlace();

/// A fresh book in memory or on the server, for a user without a folder of files, with `accounts`,
/// two currencies, two units and code rule 4222. In the chart the accounts have the identifiers 1,
/// 2, 3 ... in their order.
[[nodiscard]] desk::book::Book MakeBook(std::vector<desk::book::Account> accounts = FewAccounts(),
                                        const std::string& code_rule = "4222");
[[nodiscard]] desk::book::Book MakeBookOn(const std::string& engine,
                                          std::vector<desk::book::Account> accounts = FewAccounts(),
                                          const std::string& code_rule = "4222");

/// Runs a statement of the test's own on the book, past the checks on callers' statements.
void Run(const desk::book::Book& book, const std::string& sql);

/// The first column of the first row as text; "(none)" without a row, "(null)" for a null.
[[nodiscard]] std::string Scalar(const desk::book::Book& book, const std::string& sql);

/// All rows, columns joined by "|".
[[nodiscard]] std::vector<std::string> AllRows(const desk::book::Book& book,
                                               const std::string& sql);

/// Takes the engine's own rules on accounts and postings away: what the controls themselves leave
/// undone can then be seen, as on a host without such rules.
void DropLedgerRules(const desk::book::Book& book);

/// What is wrong with the chart and the ledgers: codes that are there twice, codes and levels that
/// do not fit, accounts without a parent, wrong leaf flags, postings on no leaf account.
[[nodiscard]] std::vector<std::string> BrokenRules(const desk::book::Book& book);

/// Adds a posting to `ledger` (gl_accvouch, gl_accass or gl_accsum).
void AddPosting(const desk::book::Book& book, const std::string& ledger, const std::string& code);

/// That `book`, with the test's eight accounts, reads and says why it does not write.
void ExpectReadOnly(const desk::book::Book& book);

}  // namespace tavrix::test

namespace desk {

using tavrix::test::AllRows;
using tavrix::test::MakeBook;
using tavrix::test::MakeBookOn;
using tavrix::test::Scalar;
using tavrix::test::TempFolder;

}  // namespace desk
