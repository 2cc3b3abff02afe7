#include "server_bench.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "book/copy.h"
#include "book/database/connection_string.h"
#include "book/odbc/odbc_api.h"
#include "chart.h"
#include "host/account.h"
#include "host/utf.h"
#include "support/temp_folder.h"
#include "view.h"

namespace tavrix::bench {

namespace {

constexpr int kAccounts = 100000;
constexpr double kLimit = 1.2;

void Check(SQLRETURN result, const char* what) {
  if (!SQL_SUCCEEDED(result)) throw std::runtime_error(what);
}

/// ODBC as a program would use it that wants the texts of all cells and nothing else.
class BareConnection {
 public:
  explicit BareConnection(const std::string& place) {
    Check(SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment_), "environment");
    SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION,
                  reinterpret_cast<SQLPOINTER>(std::uintptr_t{SQL_OV_ODBC3}), 0);
    Check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_), "connection");
    std::u16string text = host::ToUtf16(place);
    Check(SQLDriverConnectW(connection_, nullptr, reinterpret_cast<SQLWCHAR*>(text.data()),
                            static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                            SQL_DRIVER_NOPROMPT),
          "connect");
  }
  BareConnection(const BareConnection&) = delete;
  BareConnection& operator=(const BareConnection&) = delete;
  ~BareConnection() {
    SQLDisconnect(connection_);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_);
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }

  /// Copies every cell's text, as the driver gives it, into `buffer`; gives the rows.
  int FetchAndCopy(const std::string& sql, std::u16string& buffer) const {
    SQLHANDLE statement = nullptr;
    Check(SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement), "statement");
    std::u16string text = host::ToUtf16(sql);
    Check(SQLExecDirectW(statement, reinterpret_cast<SQLWCHAR*>(text.data()),
                         static_cast<SQLINTEGER>(text.size())),
          "execute");
    SQLSMALLINT columns = 0;
    Check(SQLNumResultCols(statement, &columns), "columns");
    std::array<SQLWCHAR, 512> cell{};
    int rows = 0;
    for (; SQLFetch(statement) == SQL_SUCCESS; ++rows) {
      for (SQLUSMALLINT column = 1; column <= columns; ++column) {
        SQLLEN bytes = 0;
        Check(SQLGetData(statement, column, SQL_C_WCHAR, cell.data(),
                         static_cast<SQLLEN>(sizeof cell), &bytes),
              "cell");
        if (bytes > 0) buffer.append(cell.data(), cell.data() + bytes / 2);
      }
    }
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
    return rows;
  }

 private:
  SQLHANDLE environment_ = nullptr;
  SQLHANDLE connection_ = nullptr;
};

int FetchPages(const BareConnection& connection) {
  const std::string start = "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code";
  std::u16string buffer;
  int rows = connection.FetchAndCopy(start + " order by ccode", buffer);
  for (const std::string_view category : host::kCategories) {
    buffer.clear();
    rows += connection.FetchAndCopy(
        start + " where cclass='" + std::string(category) + "' order by ccode", buffer);
  }
  return rows;
}

}  // namespace

void MeasureServer(Figures& figures, const std::string& place) {
  const auto started = std::chrono::steady_clock::now();
  const test::TempFolder folder;
  const std::string file = folder.File("chart.book");
  (void)desk::book::Book::Create(file);
  FillChart(file, kAccounts);
  (void)desk::book::CopyBook(file, place);
  const std::chrono::duration<double> filled = std::chrono::steady_clock::now() - started;
  Figures::Tell("server: copying a book", kAccounts, filled.count(), "s");
  View view(place);
  const BareConnection connection(desk::book::DriverText(place));
  view.Refresh();
  const int rows = FetchPages(connection);
  int shown = 0;
  for (int page = 0; page < maintenance::Kjkm::kPages; ++page) shown += view.Page(page).Rows() - 1;
  if (rows != shown) throw std::runtime_error("the pages do not hold the rows of the server");
  const Pair pair = InTurn(
      7, [&] { (void)FetchPages(connection); }, [&] { view.Refresh(); });
  Figures::Tell("server: bare fetch", kAccounts, pair.floor, "ms");
  Figures::Tell("server: refresh", kAccounts, pair.measured, "ms");
  figures.Print("server: refresh over bare fetch", kAccounts, pair.Ratio(), kLimit);
}

}  // namespace tavrix::bench
