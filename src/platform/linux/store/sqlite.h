// The little of SQLite that the settings store needs, without leaks: a connection, and statements that are
// run to their end. Knows nothing of settings. Not for several threads at once.
#pragma once

#include "base/result.h"
#include "platform/settings/settings.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace nimbara {

struct SqliteProblem {
  int code = 0;         ///< the extended result code
  std::string message;  ///< SQLite's own words
};

enum class SqliteAccess {
  readOnly,
  readOnlyUnshared,  ///< for files in folders where SQLite may create nothing; sees no later changes
  readWrite
};

class SqliteConnection {
 public:
  /// The file must exist. SQLite reads it only with the first statement.
  static Result<SqliteConnection, SqliteProblem> open(std::filesystem::path const& file, SqliteAccess access);

  /// Runs one statement. A blob or null in a row is read as an empty text.
  Result<std::vector<std::vector<SettingValue>>, SqliteProblem> run(
      std::string_view statement, std::vector<SettingValue> const& arguments = {});
  /// Whoever has written brings the log into the file when it is the last to close it; whoever has not leaves
  /// every byte as it was.
  void tidyAtEnd();
  /// True when the file has another name now, or none.
  bool hasMoved() const;

 private:
  struct Closer {
    void operator()(sqlite3* database) const;
  };

  SqliteConnection() = default;
  SqliteProblem problem() const;

  std::unique_ptr<sqlite3, Closer> database_;
};

/// Tells the system that the library's code is not needed now: a megabyte that counts to the process as long
/// as it runs. Code that is needed again comes back by itself from the file.
void giveBackSqliteCode();

}  // namespace nimbara
