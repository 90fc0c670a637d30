#include "platform/linux/store/sqlite_settings_store.h"

#include "platform/linux/store/settings_database.h"

#include <sqlite3.h>

#include <algorithm>
#include <tuple>
#include <unistd.h>

namespace nimbara {

namespace {

constexpr int kPrimaryCode = 0xFF;

std::string tableOf(StoreArea area) {
  return std::string(enumName(area));
}

Result<SettingValues, SqliteProblem> valuesOf(SqliteConnection& connection, StoreArea area) {
  auto rows = connection.run("SELECT key, value FROM " + tableOf(area));
  if (!rows) return std::unexpected(rows.error());
  SettingValues values;
  for (auto& row : *rows) values.emplace(std::get<std::string>(row[0]), std::move(row[1]));
  return values;
}

bool isStored(SettingValues const& stored, std::string const& key, SettingValue const& value) {
  auto const found = stored.find(key);
  if (found == stored.end()) return false;
  // Truth values are stored as numbers.
  auto const* const flag = std::get_if<bool>(&value);
  return found->second == (flag == nullptr ? value : SettingValue(std::int64_t{*flag}));
}

void dropWhatIsStored(StoreChanges& changes, SettingValues const& stored) {
  std::erase_if(changes, [&stored](auto const& change) {
    auto const& [key, value] = change;
    return value ? isStored(stored, key, *value) : !stored.contains(key);
  });
}

Result<void, SqliteProblem> write(SqliteConnection& connection, StoreArea area, StoreChanges const& changes) {
  for (auto const& [key, value] : changes) {
    auto const done =
        value ? connection.run("INSERT OR REPLACE INTO " + tableOf(area) + " VALUES (?, ?)", {key, *value})
              : connection.run("DELETE FROM " + tableOf(area) + " WHERE key = ?", {key});
    if (!done) return std::unexpected(done.error());
  }
  return {};
}

/// A key of the user's is not to stay in the log.
bool replacesKey(SettingsRegistry const& registry, StoreChanges const& changes, SettingValues const& stored) {
  return std::ranges::any_of(changes, [&](auto const& change) {
    SettingDefinition const* const definition = registry.find(change.first);
    return definition != nullptr && definition->isSecret && stored.contains(change.first);
  });
}

/// The primary codes of a reader that SQLite does not let make its own files beside the database.
bool needsUnsharedReading(SqliteProblem const& problem) {
  int const code = problem.code & kPrimaryCode;
  return code == SQLITE_CANTOPEN || code == SQLITE_READONLY;
}

}  // namespace

SqliteSettingsStore::SqliteSettingsStore(std::filesystem::path directory, SettingsRegistry const& registry,
                                         SettingsUse use)
    : SettingsStore(registry), directory_(std::move(directory)), use_(use) {}

std::filesystem::path SqliteSettingsStore::file() const {
  return directory_ / kSettingsDatabaseName;
}

StoreError SqliteSettingsStore::errorOf(SqliteProblem const& problem, std::string_view doing) const {
  return settingsDatabaseError(file(), problem, doing);
}

Result<SettingValues, StoreError> SqliteSettingsStore::read(StoreArea area) {
  std::lock_guard const lock(mutex_);
  auto values = readLocked(area);
  if (use_ == SettingsUse::brief) {
    connection_.reset();
    giveBackSqliteCode();
  }
  return values;
}

Result<SettingValues, StoreError> SqliteSettingsStore::readLocked(StoreArea area) {
  if (connection_ && connection_->hasMoved()) connection_.reset();
  if (connection_) {
    auto values = valuesOf(*connection_, area);
    return values ? Result<SettingValues, StoreError>(std::move(*values))
                  : std::unexpected(errorOf(values.error(), "read"));
  }
  std::error_code error;
  if (!std::filesystem::exists(file(), error) && !error) return SettingValues{};
  if (auto const regular = checkSettingsFile(file(), "read"); !regular)
    return std::unexpected(regular.error());
  return readOnce(area, SqliteAccess::readOnly);
}

Result<SettingValues, StoreError> SqliteSettingsStore::readOnce(StoreArea area, SqliteAccess access) {
  auto connection = SqliteConnection::open(file(), access);
  if (connection && isOfNewerVersion(*connection)) return std::unexpected(newerSettings(file(), "read"));
  auto values = connection ? valuesOf(*connection, area) : std::unexpected(SqliteProblem(connection.error()));
  if (values) {
    // An unshared connection would never see a change.
    if (access == SqliteAccess::readOnly) connection_ = std::move(*connection);
    writable_ = false;
    return std::move(*values);
  }
  bool const retry = access == SqliteAccess::readOnly && needsUnsharedReading(values.error());
  if (retry) return readOnce(area, SqliteAccess::readOnlyUnshared);
  return std::unexpected(errorOf(values.error(), "read"));
}

Result<void, StoreError> SqliteSettingsStore::openForWriting() {
  if (connection_ && writable_ && !connection_->hasMoved()) return {};
  connection_.reset();
  if (auto regular = checkSettingsFile(file(), "changed"); !regular) return regular;
  if (auto const made = makeSettingsDatabase(directory_); !made) return made;
  std::error_code error;
  if (std::filesystem::file_size(file(), error) == 0 && !error) {
    return std::unexpected(errorOf({SQLITE_NOTADB, {}}, "changed"));
  }
  auto connection = SqliteConnection::open(file(), SqliteAccess::readWrite);
  if (!connection) return std::unexpected(errorOf(connection.error(), "changed"));
  if (isOfNewerVersion(*connection)) return std::unexpected(newerSettings(file(), "changed"));
  // A damaged file is not written to, not even where it is whole.
  auto const check = connection->run("PRAGMA quick_check(1)");
  if (!check) return std::unexpected(errorOf(check.error(), "changed"));
  if (check->empty() || check->front().front() != SettingValue(std::string("ok"))) {
    return std::unexpected(errorOf({SQLITE_CORRUPT, {}}, "changed"));
  }
  for (char const* const pragma : {"PRAGMA synchronous=FULL", "PRAGMA wal_autocheckpoint=64"}) {
    if (auto const set = connection->run(pragma); !set)
      return std::unexpected(errorOf(set.error(), "changed"));
  }
  connection_ = std::move(*connection);
  writable_ = true;
  return {};
}

Result<void, StoreError> SqliteSettingsStore::update(StoreArea area, StoreDecision const& decide) {
  std::lock_guard const lock(mutex_);
  if (auto const opened = openForWriting(); !opened) return opened;
  if (auto const begun = connection_->run("BEGIN IMMEDIATE"); !begun) {
    return std::unexpected(errorOf(begun.error(), "changed"));
  }
  auto changed = change(area, decide);
  // After some errors SQLite has already gone back by itself; a new connection is sure of it.
  if (!changed && !connection_->run("ROLLBACK")) connection_.reset();
  return changed;
}

Result<void, StoreError> SqliteSettingsStore::change(StoreArea area, StoreDecision const& decide) {
  auto const stored = valuesOf(*connection_, area);
  if (!stored) return std::unexpected(errorOf(stored.error(), "changed"));
  auto changes = decide(*stored);
  if (!changes) return std::unexpected(changes.error());
  dropWhatIsStored(*changes, *stored);
  auto written = write(*connection_, area, *changes);
  if (written) {
    if (auto const committed = connection_->run("COMMIT"); !committed) {
      written = std::unexpected(committed.error());
    }
  }
  if (!written) return std::unexpected(errorOf(written.error(), "changed"));
  if (changes->empty()) return {};
  // Who still reads the log keeps it until the next such change.
  if (area == StoreArea::settings && replacesKey(registry(), *changes, *stored))
    std::ignore = connection_->run("PRAGMA wal_checkpoint(TRUNCATE)");
  connection_->tidyAtEnd();
  announceSettingsChange(file());
  return {};
}

Result<std::unique_ptr<SettingsWatch>, StoreError> SqliteSettingsStore::watch() {
  if (auto const made = makeSettingsDirectory(directory_); !made) return std::unexpected(made.error());
  return watchSettingsDatabase(directory_);
}

}  // namespace nimbara
