#include "platform/linux/store/sqlite.h"

#include "platform/linux/resident_code.h"

#include <sqlite3.h>

namespace nimbara {

namespace {

/// Writers hold the file for milliseconds; whoever waits longer than this waits for a process that hangs.
constexpr int kBusyTimeoutMs = 15'000;

struct Finaliser {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finaliser>;

/// SQLite names a file by a URI when it comes with options.
std::string uriOf(std::filesystem::path const& file) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string uri = "file:";
  for (char const c : file.string()) {
    auto const byte = static_cast<unsigned char>(c);
    bool const special = c == '%' || c == '?' || c == '#';
    if (special) {
      uri += '%';
      uri += kDigits[byte >> 4];
      uri += kDigits[byte & 15];
    } else {
      uri += c;
    }
  }
  return uri + "?immutable=1";
}

struct Binder {
  sqlite3_stmt* statement;
  int index;

  int operator()(bool flag) const { return sqlite3_bind_int(statement, index, flag ? 1 : 0); }
  int operator()(std::int64_t number) const { return sqlite3_bind_int64(statement, index, number); }
  int operator()(double number) const { return sqlite3_bind_double(statement, index, number); }
  int operator()(std::string const& text) const {
    return sqlite3_bind_text64(statement, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }
};

SettingValue column(sqlite3_stmt* statement, int index) {
  switch (sqlite3_column_type(statement, index)) {
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_column_int64(statement, index));
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, index);
    case SQLITE_TEXT:
      return std::string(reinterpret_cast<char const*>(sqlite3_column_text(statement, index)),
                         static_cast<std::size_t>(sqlite3_column_bytes(statement, index)));
    default:
      return std::string();
  }
}

std::vector<SettingValue> rowOf(sqlite3_stmt* statement) {
  std::vector<SettingValue> row;
  int const count = sqlite3_column_count(statement);
  row.reserve(static_cast<std::size_t>(count));
  for (int index = 0; index < count; ++index) row.push_back(column(statement, index));
  return row;
}

int flagsOf(SqliteAccess access) {
  int const mode = access == SqliteAccess::readWrite ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
  return mode | SQLITE_OPEN_NOMUTEX | (access == SqliteAccess::readOnlyUnshared ? SQLITE_OPEN_URI : 0);
}

}  // namespace

void giveBackSqliteCode() {
  giveBackCode("/libsqlite3.so");
}

void SqliteConnection::Closer::operator()(sqlite3* database) const {
  sqlite3_close_v2(database);
}

SqliteProblem SqliteConnection::problem() const {
  return {sqlite3_extended_errcode(database_.get()), sqlite3_errmsg(database_.get())};
}

Result<SqliteConnection, SqliteProblem> SqliteConnection::open(std::filesystem::path const& file,
                                                               SqliteAccess access) {
  std::string const name = access == SqliteAccess::readOnlyUnshared ? uriOf(file) : file.string();
  sqlite3* database = nullptr;
  int const code = sqlite3_open_v2(name.c_str(), &database, flagsOf(access), nullptr);
  SqliteConnection connection;
  connection.database_.reset(database);
  if (code != SQLITE_OK) return std::unexpected(SqliteProblem{code, sqlite3_errstr(code)});
  sqlite3_busy_timeout(database, kBusyTimeoutMs);
  // The log's files stay, so that a reader who may create nothing finds them.
  int persist = 1;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_PERSIST_WAL, &persist);
  sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  return connection;
}

Result<std::vector<std::vector<SettingValue>>, SqliteProblem> SqliteConnection::run(
    std::string_view statement, std::vector<SettingValue> const& arguments) {
  sqlite3_stmt* raw = nullptr;
  int code = sqlite3_prepare_v2(database_.get(), statement.data(), static_cast<int>(statement.size()), &raw,
                                nullptr);
  Statement const prepared(raw);
  for (std::size_t i = 0; i < arguments.size() && code == SQLITE_OK; ++i) {
    code = std::visit(Binder{raw, static_cast<int>(i) + 1}, arguments[i]);
  }
  if (code != SQLITE_OK) return std::unexpected(problem());
  std::vector<std::vector<SettingValue>> rows;
  while ((code = sqlite3_step(raw)) == SQLITE_ROW) rows.push_back(rowOf(raw));
  if (code != SQLITE_DONE) return std::unexpected(problem());
  return rows;
}

void SqliteConnection::tidyAtEnd() {
  sqlite3_db_config(database_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
}

bool SqliteConnection::hasMoved() const {
  int moved = 0;
  sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved != 0;
}

}  // namespace nimbara
